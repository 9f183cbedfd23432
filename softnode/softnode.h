/*
 * softnode.h - control of the software accelerator.
 *
 * libkel-softnode stands in for the six closed libraries of a node. A control process that is linked to it needs
 * nothing from this header; tests and tools use it to make the node fail, to move its timing unit and to look inside.
 * Every function may be called from any thread.
 */
#ifndef SOFTNODE_H
#define SOFTNODE_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

#pragma GCC visibility push(default)

/* ---- Making it fail ---- */

/**
 * Adds fault rules, separated by semicolons. One rule is
 *
 *     function[:call[*times]]=result        "ork_qos_scheduler_create:3=-4"      the third call returns -4
 *                                           "kel_init_attach:2*3=10"             calls 2, 3 and 4 return 10
 *                                           "vorn_tu_wait_event=-5"              every call returns -5
 *
 * `function` is any closed function that returns a code, `call` counts that function's calls from 1 as of the moment
 * the rule was added, `result` is a decimal number that fits 32 bits. A call that a rule makes fail changes nothing in
 * the node. The environment variable KEL_SOFTNODE_FAULTS holds rules for a process that does not know this header; when
 * one of them cannot be read, the first closed call says so on standard error and ends the process with status 2.
 *
 * @return null, or what is wrong with the rules; then none was added. Release the text with free().
 */
char *softnode_faults_add(const char *rules);

/** Forgets every fault rule. */
void softnode_faults_clear(void);

/* ---- The timing unit ---- */

/** Sets what the timing unit reports from now on. Posts no event. At first: 40 cycles at a frequency of 250,000. */
void softnode_timing_reading_set(int64_t cycles, uint32_t frequency);

/** Posts an event to every open connection that subscribed to adjustments (type 6 announces one, of domain 0). */
void softnode_timing_event_post(uint32_t type, int32_t domain);

/**
 * Waits until the timing unit's users are at rest: every thread that opened a connection has taken all its events and
 * waits for the next one, or has failed and ended. A failure counts once the thread is gone, so that all it still had
 * to do is done by then.
 *
 * A thread is known from its vorn_tu_init() on, whether that succeeds or not. As long as none has come this far,
 * counted from the start of the process or the last softnode_reset(), nobody is at rest; so the call may follow at once
 * on what starts a thread. What it cannot know: a further thread that was started and has not come this far, and a
 * thread that ended without coming this far.
 *
 * @return 1 when they are at rest; 0 when they still are not after so many milliseconds.
 */
int softnode_timing_settle(uint32_t milliseconds);

/* ---- Looking in ---- */

/** Everything the node holds, as a JSON document with stable keys. Release it with free(). */
char *softnode_snapshot_json(void);

/**
 * Back to a node just switched on, without fault rules and with all call counts 0. Handles issued before are stale
 * afterwards; a thread that waits in vorn_tu_wait_event() gets SHUTDOWN (-5).
 */
void softnode_reset(void);

#pragma GCC visibility pop

#ifdef __cplusplus
}
#endif

#endif

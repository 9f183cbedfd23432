/*
 * softnode.h - control of the software accelerator.
 *
 * libkel-softnode stands in for the six closed libraries of a node. A control process that is linked to it needs
 * nothing from this header; tests and tools use it to load the node with traffic, to let its time pass, to make it
 * fail, to move its timing unit and to look inside. Every function may be called from any thread.
 *
 * Units are the same everywhere: rates are kbit/s (1,000 bits per second), bursts and thresholds octets, virtual time
 * nanoseconds since the node was switched on. Functions that can be refused answer with the driver kit's codes, whose
 * numbers stand beside them here, and change nothing then. Texts and documents are the caller's: release them with
 * free().
 *
 *     const uint8_t mac[6] = {2, 0, 0, 2, 0, 1};
 *     softnode_traffic_offer(mac, 1000, 1500);        // 1,000 frames of 1,500 octets, at this instant
 *     softnode_time_advance(1000000000);              // a second passes: what the shaping lets through has left
 *     char *document = softnode_snapshot_json();
 */
#ifndef SOFTNODE_H
#define SOFTNODE_H

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

#pragma GCC visibility push(default)

/* ---- Traffic in virtual time ---- */

/**
 * Offers frames for a destination, all at this instant of virtual time.
 *
 * Frames for an address that a path leads to enter the queue of that path. The first frame of a queue leaves when the
 * queue's token bucket (its rate and burst) holds it and the scheduler above is free. One frame after the other goes
 * through a scheduler, at its peak rate or the line rate, and the queues below take turns. So of frames that are
 * offered together one leaves at once, if nothing is ahead of it, and the others once time passes. Until then they wait
 * as long as the queue's threshold has room for them, in blocks of 256 octets that a frame begins; those that find none
 * are dropped. A frame longer than the burst of a shaped queue could never leave, and is dropped. A frame that left
 * arrives at its destination.
 *
 * Frames for a local address of a PCEP that no path leads to arrive at once. Frames for a path whose queue was removed
 * are dropped. What counts where is told with the counters in the snapshot (docs/software-accelerator.md).
 *
 * All that are offered count as sent by the PCEP with the lowest id whose remote address this is; those that arrive, as
 * received by the one with the lowest id whose local address this is.
 *
 * @param mac               destination, 6 octets in wire order
 * @param frames            how many; 0 offers nothing
 * @param octets_per_frame  length of each, 1 to 65535
 * @return 0; ORK_INVAL (-1): null pointer, impossible length; ORK_NOTAVAIL (-8): no path leads to this address, and no
 *         PCEP has it as its local address
 */
int32_t softnode_traffic_offer(const uint8_t mac[6], uint64_t frames, uint32_t octets_per_frame);

/**
 * Offers frames of one sender, all at this instant: a PCEP sends them to its remote address; a multicast group
 * replicates each of them to the remote address of every member, in the order of adding, and a copy counts as sent by
 * its member. From there they go as those of softnode_traffic_offer() do. Copies for a member that is no more are
 * dropped, as is all that is sent to an address that no path leads to and that no PCEP has as its local address.
 *
 * @param id                of a PCEP or of a group
 * @param frames            how many; 0 offers nothing
 * @param octets_per_frame  length of each, 1 to 65535
 * @return 0; ORK_INVAL (-1): impossible id or length; ORK_NOTAVAIL (-8): neither a PCEP nor a group has this id
 */
int32_t softnode_traffic_send(uint32_t id, uint64_t frames, uint32_t octets_per_frame);

/**
 * Lets virtual time pass. However an interval is cut into calls, what happens in it is the same. It takes as long as
 * there are frames that leave, not longer for a longer interval. After 2^64 - 1 nanoseconds time stands still.
 */
void softnode_time_advance(uint64_t nanoseconds);

/** @return virtual time, in nanoseconds since the node was switched on. It stands still unless it is told to pass. */
uint64_t softnode_time(void);

/* ---- Making it fail ---- */

/**
 * Adds fault rules, separated by semicolons or line ends; a # begins a comment up to the end of its line. One rule is
 *
 *     function[:call[*times]]=effect[,effect]
 *
 *     "ork_qos_scheduler_create:3=-4"            the third call returns -4
 *     "kel_init_attach:2*3=10"                   calls 2, 3 and 4 return 10
 *     "vorn_tu_wait_event=-5"                    every call returns -5
 *     "ork_bind=latency:250us"                   every call takes 250 microseconds of virtual time
 *     "ork_bind:1=latency:2ms,-4"                the first call takes 2 milliseconds and then returns -4
 *     "vorn_tu_get_nputimeoffset:2=block"        the second call blocks until softnode_faults_release()
 *
 * `function` is any closed function that returns a code; `call` counts its calls from 1, as of the moment the rule was
 * added. A rule has one result, one latency and one block at most. A call that meets it takes the latency, then blocks,
 * then returns the result, and has changed nothing in the node but the time; without a result it does its work as ever.
 * Of the rules that one call meets, the one added first counts, and it alone.
 *
 *     result     decimal, fits 32 bits; 0 makes a call that claims success and did nothing: what it should
 *                have written stays as it was, and who reads it may well crash. That is what such a rule is for.
 *     latency    1 to 4294967295, with the unit ns, us, ms or s
 *     block      for functions of the timing unit (vorn_tu_...). The call waits until it is released, and lets go of
 *                the node meanwhile. softnode_timing_settle() takes its thread for one at rest.
 *
 * The environment variable KEL_SOFTNODE_FAULTS holds rules for a process that does not know this header, or "@FILE", a
 * file with rules. When they cannot be read, the first closed call says so on standard error and ends the process with
 * status 2. A process with more rights than who started it, such as one with a set-user-ID file, has no such variable.
 *
 * @return null, or what is wrong with the first bad rule; then none was added. For a function that is not known this
 *         names those that are, and the one that was probably meant.
 */
char *softnode_faults_add(const char *rules);

/**
 * Switches the node on now; otherwise the first call that needs it does.
 *
 * @return null, or what is wrong with the rules of KEL_SOFTNODE_FAULTS: the next call that needs the node ends the process
 */
char *softnode_switch_on(void);

/**
 * Adds the rules of a file, which may have 16 MiB.
 *
 * @return null, or what is wrong, as FILE:LINE:COLUMN: message, without position for a file that cannot be read; then
 *         none was added
 */
char *softnode_faults_add_file(const char *file);

/**
 * Adds the rules of a text of `size` octets that the caller has read from a file of this name.
 *
 * @return as softnode_faults_add_file()
 */
char *softnode_faults_add_text(const char *file, const char *text, size_t size);

/** The rules in the order of adding, as a JSON array: `rule` as written, `hits` how many calls met it. */
char *softnode_faults_json(void);

/**
 * The functions that a rule may name, in alphabetical order, as a JSON array: `function`, and `codes`, with which
 * softnode_fault_sweep() lets it fail. A rule may give other codes.
 */
char *softnode_fault_functions_json(void);

/** Forgets every fault rule, and lets blocked calls go on. */
void softnode_faults_clear(void);

/**
 * Lets the calls go on that a rule blocks at this moment; later ones block as before.
 *
 * @return how many were released
 */
uint32_t softnode_faults_release(void);

/* ---- Trying every fault ---- */

/** What to do with the node, again and again. Every function is called with `context`. */
typedef struct softnode_scenario {
    uint32_t (*run)(void *context);         /**< drives a node just switched on; its result is reported */
    void (*clean_up)(void *context);        /**< what the caller does after that, failed or not; may be null */
    const char *(*describe)(void *context); /**< asked last: a note for the report; may be null, and answer null */
    void *context;                          /**< handed to each of them */
    uint32_t time_limit;                    /**< milliseconds for one run; 0: 10,000 */
} softnode_scenario;

/**
 * Runs a scenario once undisturbed, to note the closed functions that it calls. Then, for each of these calls and for
 * each of the codes that the function's library may answer with (docs/software-accelerator.md), runs it with that one
 * call failing, and with that call and all later ones of that function failing.
 *
 * Each run is a child process of its own, so that neither a crash nor a hang ends the sweep, and no run knows of
 * another. It has a node just switched on, without the fault rules of the caller or of KEL_SOFTNODE_FAULTS; the
 * caller's node is left alone. The fault is over when run() has returned: what clean_up() calls is neither counted nor
 * made to fail, and what is left after it belongs to nobody.
 *
 * Threads: a scenario may start some. Calls are counted for each thread by itself, because their order among each other
 * is different every time, and a fault hits the calls of its thread only. After run() and after clean_up() it is waited
 * until every thread has ended or rests in the timing unit, for a quarter of the time limit each at most. So the report
 * of a scenario is the same every time, unless its threads wait for nothing or for each other's calls. The process that
 * asks for the sweep should have one thread only, as a child gets a copy of the calling thread alone.
 *
 * @return a JSON document
 *     calls        closed calls of the undisturbed run, thread by thread, in their order:
 *         thread       0: the one that run() is called on; others from 1, in the order of their first calls
 *         function
 *         call         its number among the thread's calls of this function, from 1
 *     undisturbed  a run, see below. What it leaves is told as `left`.
 *     planned      how many runs there are to be
 *     runs         in the order of calls, codes, and first the single failure:
 *         thread, function, call, code, persistent      the fault; null each in `undisturbed`
 *         outcome      "returned", "crashed" (by a signal, or it ended the process) or "hung" (its time limit passed)
 *         result       of run(); null unless it returned
 *         note         of the scenario, or null
 *         left         objects that the undisturbed run does not leave: kind and name of each, in words that are the
 *                      same in every run (docs/software-accelerator.md). Null unless it returned.
 *         missing      objects that the undisturbed run leaves and this one does not; null unless it returned
 *     or null, when scenario or scenario->run is null, or no child process can be made
 */
char *softnode_fault_sweep(const softnode_scenario *scenario);

/**
 * Asked in front of each run with a fault, in the process that asked for the sweep.
 *
 * @param context  the scenario's
 * @param done     runs that are over
 * @param planned  runs that there are to be
 * @return 0 ends the sweep
 */
typedef int softnode_sweep_watcher(void *context, size_t done, size_t planned);

/** The same, watched. The report of a sweep that was ended has the runs until then. `watcher` may be null. */
char *softnode_fault_sweep_watched(const softnode_scenario *scenario, softnode_sweep_watcher *watcher);

/* ---- The timing unit ---- */

/** Sets what the timing unit reports from now on. Posts no event. At first: 40 cycles at a frequency of 250,000. */
void softnode_timing_reading_set(int64_t cycles, uint32_t frequency);

/** Posts an event to every open connection that subscribed to adjustments (type 6 announces one, of domain 0). */
void softnode_timing_event_post(uint32_t type, int32_t domain);

/**
 * Waits until the timing unit's users are at rest: every thread that opened a connection has taken all its events and
 * waits for the next one, or is blocked by a fault rule, or has failed and ended. A failure counts once the thread is
 * gone, so that all it still had to do is done by then.
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

/** Everything the node holds, as a JSON document with stable keys (docs/software-accelerator.md). */
char *softnode_snapshot_json(void);

/**
 * How many of each the node has room for, as a JSON document: schedulers, queues, paths, multicast groups, members of a
 * group. There is one path for each destination address. What finds no room is refused with ORK_OUTOFRANGE (-9), a queue
 * with 10. The document is always the same.
 */
char *softnode_limits_json(void);

/** A picture of the node for Graphviz: schedulers, queues with rates and destinations, end points, groups. */
char *softnode_graph_dot(void);

/**
 * Back to a node just switched on: time 0, no fault rules, all counts 0. Handles issued before are stale afterwards; a
 * thread that waits in vorn_tu_wait_event() gets SHUTDOWN (-5), as does one that a rule blocks.
 */
void softnode_reset(void);

#pragma GCC visibility pop

#ifdef __cplusplus
}
#endif

#endif

/*
 * softnode.h - control of the software accelerator.
 *
 * libkel-softnode replaces the six closed libraries of a node. A control process that links with it needs
 * nothing from this header. Tests and tools use it to offer traffic, to advance the node's time, to make calls fail, to
 * control the timing unit, and to look inside. Every function may be called from any thread.
 *
 * With KEL_SOFTNODE_SOCKET=PATH in its environment, a control process offers these functions to other processes of its
 * user, over a socket that it makes when the node is switched on (docs/protocol.md). A thread of the accelerator's own
 * calls them there. Without the variable, and in a process with raised rights, nothing is opened and no thread started. A
 * child of fork() serves nothing; exit() removes the socket. It reports on standard error why it cannot serve.
 *
 * Units are the same everywhere: rates are kbit/s (1,000 bits per second), bursts and thresholds octets, virtual time
 * nanoseconds since the node was switched on. A function that refuses returns a code of the driver kit, given here with
 * its number, and changes nothing. Texts and documents belong to the caller, who releases them with free().
 *
 *     const uint8_t mac[6] = {2, 0, 0, 2, 0, 1};
 *     softnode_traffic_offer(mac, 1000, 1500);        // 1,000 frames of 1,500 octets, at this instant
 *     softnode_time_advance(1000000000);              // a second passes: frames leave as the shaping allows
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
 * Frames for an address that a path leads to enter the queue of that path. The first frame of a queue leaves when no
 * token bucket on its way is in debt (rate and burst of the queue, peak and sustain of every scheduler above), it is
 * its turn, and the line of 10 Gbit/s that all share is free. So of frames that are offered together one leaves at
 * once, if none waits before it, and the others as time passes. Until then they wait in blocks of 256 octets, up to the
 * queue's threshold; further frames are dropped. A frame arrives at its destination with its last bit. Once parameters
 * are set, frames of more than the MTU and 22 octets are dropped.
 *
 * Frames for a local address of a PCEP that no path leads to arrive at once. Frames for a path whose queue was removed
 * are dropped. What the records of statistics count: softnode_global_statistics.
 *
 * Every offered frame counts as sent by the PCEP with the lowest id that has this remote address. Every frame that
 * arrives counts as received by the PCEP with the lowest id that has this local address.
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
 * its member. From there on they are handled as in softnode_traffic_offer(). Copies for a member that was removed are
 * dropped, and so are frames for an address that no path leads to and that no PCEP has as its local address.
 *
 * @param id                of a PCEP or of a group
 * @param frames            how many; 0 offers nothing
 * @param octets_per_frame  length of each, 1 to 65535
 * @return 0; ORK_INVAL (-1): impossible id or length; ORK_NOTAVAIL (-8): no PCEP and no group has this id
 */
int32_t softnode_traffic_send(uint32_t id, uint64_t frames, uint32_t octets_per_frame);

/** Why the service dropped a frame. */
typedef enum softnode_drop_reason {
    SOFTNODE_DROP_TOO_LONG, /**< longer than the MTU and 22 octets allow */
    SOFTNODE_DROP_NO_ROOM,  /**< the memory below its queue's threshold was in use */
    SOFTNODE_DROP_NO_WAY,   /**< nothing leads to its destination */
    SOFTNODE_DROP_NO_QUEUE  /**< the queue of its path was removed, maybe while it waited there */
} softnode_drop_reason;

/** @return how many frames the service dropped for this reason since the node was switched on */
uint64_t softnode_traffic_dropped(softnode_drop_reason reason);

/**
 * Offers one frame as softnode_traffic_offer() does. The watcher gets a report of its fate, with its identity.
 *
 * @param mac       destination, 6 octets in wire order
 * @param octets    its length, 1 to 65535
 * @param identity  the caller's number for it, not 0
 * @return as softnode_traffic_offer(); ORK_INVAL (-1) also for identity 0
 */
int32_t softnode_traffic_offer_one(const uint8_t mac[6], uint32_t octets, uint64_t identity);

/** What happened to a frame. */
typedef enum softnode_frame_fate {
    SOFTNODE_FRAME_SENT,   /**< it left its queue, or arrived without one */
    SOFTNODE_FRAME_DROPPED /**< for a softnode_drop_reason */
} softnode_frame_fate;

/** A frame that left the service or was dropped there. */
typedef struct softnode_frame {
    uint64_t identity;        /**< as it was offered */
    uint64_t queue;           /**< handle of the queue of the path to its destination, as in the snapshot; 0: no path */
    uint64_t entered;         /**< when it entered the service, nanoseconds of virtual time */
    uint64_t left;            /**< when its first bit left, or when it was dropped */
    softnode_frame_fate fate; /**< what happened to it */
    softnode_drop_reason reason; /**< why it was dropped; undefined if it was sent */
} softnode_frame;

/**
 * Called once for each frame that leaves or is dropped, in the order of these instants, while the node is locked: it must
 * not call functions of the node, nor any of this header.
 *
 * @param context  as passed to softnode_traffic_watch()
 * @param frame    valid during the call
 */
typedef void softnode_frame_watcher(void *context, const softnode_frame *frame);

/**
 * Sets the function that reports the fate of frames with an identity, until the next call or softnode_reset(). Other
 * frames are not reported, and cost no more than without a watcher.
 *
 *     uint8_t mac[6] = {2, 0, 0, 2, 0, 1};
 *     softnode_traffic_watch(note_it, &notes);
 *     softnode_traffic_offer_one(mac, 1500, 17);      // note_it() reports the fate of frame 17
 *     softnode_time_advance(1000000000);
 *     softnode_traffic_watch(NULL, NULL);
 *
 * @param watcher  null: nothing is reported
 * @param context  passed to it
 */
void softnode_traffic_watch(softnode_frame_watcher *watcher, void *context);

/**
 * Advances virtual time. The result is the same however an interval is divided into calls. The cost depends on the
 * number of frames that leave, not on the length of the interval. Time stops at 2^64 - 1 nanoseconds.
 */
void softnode_time_advance(uint64_t nanoseconds);

/** @return virtual time, in nanoseconds since the node was switched on; softnode_time_advance() and latencies advance it */
uint64_t softnode_time(void);

/* ---- Making calls fail ---- */

/**
 * Adds fault rules, separated by semicolons or line ends; a # begins a comment up to the end of its line. A rule is
 *
 *     function[:call[*times]]=effect[,effect]
 *
 *     "ork_qos_scheduler_create:3=-4"            the third call returns -4
 *     "kel_init_attach:2*3=10"                   calls 2, 3 and 4 return 10
 *     "vorn_tu_wait_event=-5"                    every call returns -5
 *     "ork_bind=latency:250us"                   every call takes 250 microseconds of virtual time
 *     "ork_bind:1=latency:2ms,-4"                the first call takes 2 milliseconds and then returns -4
 *     "vorn_tu_get_nputimeoffset:2=block"        the second call blocks until softnode_faults_release()
 *     "kel_init_attach:5=10,own-thread"          the fifth call of the thread that adds the rule returns 10
 *
 * `function` is any closed function that returns a code. `call` counts its calls from 1, starting when the rule is
 * added. A rule has at most one result, one latency and one block. A call that matches takes the latency, then blocks,
 * then returns the result and changes nothing in the node but the time; without a result it does its normal work. If
 * several rules match a call, only the one added first applies.
 *
 *     result     decimal, fits 32 bits. 0 makes a call that reports success and does nothing: its outputs stay
 *                unwritten, and a caller that reads them may crash.
 *     latency    1 to 4294967295, with the unit ns, us, ms or s
 *     own-thread beside an effect: only calls of the thread that adds the rule are counted and matched
 *     block      for functions of the timing unit (vorn_tu_...). The call waits until it is released, and does not
 *                lock the node meanwhile. softnode_timing_settle() counts its thread as at rest.
 *
 * The environment variable KEL_SOFTNODE_FAULTS has rules for a process that does not use this header, or "@FILE", a
 * file with rules. If they cannot be read, the first closed call reports that on standard error and ends the process with
 * status 2. A process with raised rights, such as a set-user-ID program, ignores the variable.
 *
 * @return null, or a message about the first bad rule; then none was added. For an unknown function the message lists the
 *         known ones and suggests the nearest.
 */
char *softnode_faults_add(const char *rules);

/**
 * Switches the node on now. Without this, the first call that needs the node does it.
 *
 * @return null, or what is wrong with the rules of KEL_SOFTNODE_FAULTS: the next call that needs the node ends the process
 */
char *softnode_switch_on(void);

/**
 * Adds the rules of a file of at most 16 MiB.
 *
 * @return null, or what is wrong as FILE:LINE:COLUMN: message, without a position if the file cannot be read; then none
 *         was added
 */
char *softnode_faults_add_file(const char *file);

/**
 * Adds the rules of a text in memory.
 *
 * @param text    need not end with a zero octet
 * @param size    of the text, in octets
 * @param line    in which the first bad rule is wrong, from 1; 0 if that has no position. Always written; may be null.
 * @param column  the same, in octets from 1
 * @return null, or a message without the position; then none was added
 */
char *softnode_faults_add_text(const char *text, size_t size, uint32_t *line, uint32_t *column);

/** The rules in the order of adding, as a JSON array: `rule` as written, `hits` how many calls matched it. */
char *softnode_faults_json(void);

/**
 * The functions that a rule can name, in alphabetical order, as a JSON array: `function`, and `codes`, which
 * softnode_fault_sweep() makes it return. A rule may use other codes.
 */
char *softnode_fault_functions_json(void);

/** Removes every fault rule and releases blocked calls. */
void softnode_faults_clear(void);

/**
 * Releases the calls that a rule blocks now; later ones block as before.
 *
 * @return how many were released
 */
uint32_t softnode_faults_release(void);

/* ---- Trying every fault ---- */

/** What a sweep runs repeatedly. Every function is called with `context`. */
typedef struct softnode_scenario {
    uint32_t (*run)(void *context);         /**< drives a node that has just been switched on; its result is reported */
    void (*clean_up)(void *context);        /**< called after run(), failed or not; may be null */
    const char *(*describe)(void *context); /**< called last: returns a note for the report, or null; may be null */
    void *context;                          /**< passed to each of them */
    uint32_t time_limit;                    /**< milliseconds for one run; 0: 10,000 */
} softnode_scenario;

/**
 * Runs a scenario once without faults and records the closed functions that it calls. Then, for each of these calls and
 * for each code that the function's library may return (docs/software-accelerator.md), runs it with that one call
 * failing, and with that call and all later ones of that function failing.
 *
 * Each run is a child process, so a crash or a hang does not end the sweep and no run affects another. It has a node that
 * has just been switched on, without the fault rules of the caller or of KEL_SOFTNODE_FAULTS; the caller's node is not
 * touched. The fault ends when run() returns: calls of clean_up() are neither counted nor made to fail. What is left after
 * clean_up() is reported.
 *
 * Threads: a scenario may start threads. Calls are counted per thread, because their order between threads differs from
 * run to run, and a fault affects only the calls of its thread. After run() and after clean_up() the sweep waits until
 * every thread has ended or waits in the timing unit, each time for at most a quarter of the time limit. So the report
 * of a scenario is the same every time, unless its threads do not wait for anything, or wait for each other's calls. The
 * calling process should have one thread only, because a child process has a copy of the calling thread alone.
 *
 * @return a JSON document
 *     calls        closed calls of the run without faults, thread by thread, in their order:
 *         thread       0: the one that run() is called on; others from 1, in the order of their first calls
 *         function
 *         call         its number among the thread's calls of this function, from 1
 *     undisturbed  the run without faults, see below; `left` is all that it leaves
 *     planned      how many runs the sweep has
 *     runs         in the order of calls, codes, and first the single failure:
 *         thread, function, call, code, persistent      the fault; null each in `undisturbed`
 *         outcome      "returned", "crashed" (by a signal, or it ended the process) or "hung" (its time limit passed)
 *         result       of run(); null unless it returned
 *         note         of the scenario: a JSON object as it is, anything else as a string; or null
 *         left         objects that the run without faults does not leave: kind and name of each, the same in every run
 *                      (docs/software-accelerator.md). Null unless it returned.
 *         missing      objects that the run without faults leaves and this one does not; null unless it returned
 *     or null, when scenario or scenario->run is null, or no child process can be created
 */
char *softnode_fault_sweep(const softnode_scenario *scenario);

/**
 * Called before each run with a fault, in the process that called softnode_fault_sweep_watched().
 *
 * @param context  the scenario's
 * @param done     how many runs are complete
 * @param planned  how many runs the sweep has
 * @return 0 ends the sweep
 */
typedef int softnode_sweep_watcher(void *context, size_t done, size_t planned);

/** The same with a watcher, which may be null. If it ends the sweep, the report has the runs so far. */
char *softnode_fault_sweep_watched(const softnode_scenario *scenario, softnode_sweep_watcher *watcher);

/* ---- The timing unit ---- */

/** Sets what the timing unit reports from now on; initially 40 cycles at a frequency of 250,000. Posts no event. */
void softnode_timing_reading_set(int64_t cycles, uint32_t frequency);

/** Posts an event to every open connection that subscribed to adjustments. Type 6, domain 0 announces an adjustment. */
void softnode_timing_event_post(uint32_t type, int32_t domain);

/**
 * Waits until the timing unit's users are at rest: every thread that opened a connection has taken all its events and
 * waits for the next one, or is blocked by a fault rule, or has failed and ended. A thread that failed counts as at rest
 * only when it has ended, so all its work is done then.
 *
 * A thread is known once it has called vorn_tu_init(), successful or not. While none has done so since the start of the
 * process or the last softnode_reset(), the users are not at rest; so this function may be called directly after what
 * starts a thread. It cannot know of a further thread that has not called vorn_tu_init() yet, or that ended without.
 *
 * @return 1 when they are at rest; 0 when they are not at rest after this time.
 */
int softnode_timing_settle(uint32_t milliseconds);

/* ---- Looking inside ---- */

/**
 * The counters in an ebcom_global_stats, whose 256 octets hold this record: copy them with memcpy(). "Sent" frames left
 * their queue; received = sent + dropped + waiting. Counters wrap around.
 *
 * The other records count, and are 0 where this table has no line:
 *
 * | Record            | Field                         | Counts                                                       |
 * |-------------------|-------------------------------|--------------------------------------------------------------|
 * | ebcom_queue_stats | pkts_rx, octets_rx            | frames that entered the queue                                |
 * |                   | pkts_tx, octets_tx            | frames that left it                                          |
 * |                   | pkts_dropped, octets_dropped  | frames too long for its burst, or without room               |
 * |                   | pkts_out_standing             | frames that wait in it                                       |
 * |                   | mem_blks_in_use               | blocks of 256 octets that these take                         |
 * | pcep_stats and    | out_cnt0, out_cnt1            | frames, octets sent                                          |
 * | ebcom_pcep_stats  | in_cnt0, in_cnt1              | frames, octets received                                      |
 * |                   | in_word0, in_cnt2             | frames, octets dropped: always 0, the queues drop            |
 */
typedef struct softnode_global_statistics {
    uint64_t frames_received; /**< frames that entered the service, with every copy of a replicated one */
    uint64_t octets_received; /**< their octets */
    uint64_t frames_sent;     /**< frames that left their queue, or arrived without one */
    uint64_t octets_sent;     /**< their octets */
    uint64_t frames_dropped;  /**< frames dropped in a queue, or because no queue or no path was there */
    uint64_t octets_dropped;  /**< their octets */
    uint64_t paths;           /**< paths that exist now */
    uint64_t pceps;           /**< PCEPs that exist now */
    uint64_t groups;          /**< multicast groups that exist now */
    uint64_t reserved[23];    /**< 0 */
} softnode_global_statistics;

/** All objects of the node, as a JSON document with stable keys (docs/software-accelerator-model.md). */
char *softnode_snapshot_json(void);

/** The snapshot's part `queues` alone, with counters, delays and depths: at most 64 queues, for any number of paths. */
char *softnode_queues_json(void);

/**
 * The limits of the node as a JSON document: how many schedulers, queues, paths, multicast groups, and members of a
 * group. There is one path for each destination address. What exceeds a limit is refused with ORK_OUTOFRANGE (-9), a
 * queue with 10. The document is always the same.
 */
char *softnode_limits_json(void);

/** A picture of the node for Graphviz: schedulers, queues with rates and destinations, end points, groups. */
char *softnode_graph_dot(void);

/**
 * Resets the node to one that has just been switched on: time 0, no fault rules, no watcher, all counts 0. Handles from before become
 * stale. A thread that waits in vorn_tu_wait_event(), or that a rule blocks, gets SHUTDOWN (-5).
 */
void softnode_reset(void);

#pragma GCC visibility pop

#ifdef __cplusplus
}
#endif

#endif

/**
 * @file kel_core_ic_ebcom.h
 * The EBCOM service: Ethernet frames of its own EtherType over the IC ports.
 *
 * A control process brings the service up in this order, and down in reverse order:
 *
 *     uint16_t out;
 *     kel_vsi_t vsi;
 *     const uint8_t settings[2] = {1, 2};
 *     const kel_ebcom_global_params params = {.icPortMTU = 1500, .etherType = 0x88B5};
 *     const kel_ebcom_path_config path = {.dst_mac = {2, 0, 0, 2, 0, 1}, .iell_port = 6};
 *     uint32_t rc = kel_core_ic_ebcom_global_param_set(&params, settings);
 *     if (rc == 0)
 *         rc = kel_core_ic_ebcom_interface_create(&vsi, &out);
 *     if (rc == 0)
 *         rc = kel_core_ic_ebcom_start();
 *     if (rc == 0)
 *         rc = kel_core_ic_ebcom_path_add(&path);
 *
 * Threads: the library takes no locks. Call functions that start, stop, add, remove or set from one thread, one at a
 * time. The global statistics, the capabilities and the timestamp conversion share no data: call them from any thread, as
 * far as the closed libraries allow. Queue statistics, look-ups and the dump read what paths change: do not add or remove
 * paths at the same time. The one thread that the library starts itself, "kel-time-stamp", shares no data with the rest.
 *
 * Return codes: 0 is success. 13 stands for any failed driver-kit call. Other codes are the companion library's
 * (`enum kel_init_rc` names those that this library returns itself); a code from a companion-library call is passed on
 * unchanged. kei_util_init_rc_str_get() returns the text of a code. Only the trace records show why a call failed.
 *
 * Unless a function says otherwise, a failed operation does not undo the steps before the failing one. Pointers are not
 * checked.
 */
#ifndef KEL_CORE_IC_EBCOM_H
#define KEL_CORE_IC_EBCOM_H

#include "platform/kel_init.h"
#include "platform/layout.h"
#include "platform/ork.h"

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

#pragma GCC visibility push(default)

/* ---- Start and stop ---- */

/**
 * Starts the EBCOM service: creates the table of destination counts if there is none yet, attaches to the
 * accelerator, starts a thread "kel-time-stamp" that keeps the accelerator's timestamp offset in step with the
 * node's timing unit, and builds the scheduler tree (kel_ic_ebcom_init_qos()).
 *
 * Every start whose attachment succeeds starts one more thread; nothing ends it from outside. A thread ends by itself at
 * its first failure, with an ERROR record; the last offset that it wrote stays in force. It blocks all signals except
 * SIGSEGV, SIGBUS, SIGFPE, SIGILL and SIGTRAP, so no handler of the process runs on it.
 *
 * If the table cannot be created, the start requests a node restart and continues.
 *
 * A second start without a stop builds a second scheduler tree and forgets the first one, which no stop can release.
 *
 * @return 0; the code of the failed attachment (no thread was started); 13 when the creation of the thread returns a
 *         negative number, and no schedulers are made then (a positive one counts as success, though there is no
 *         thread); the code of the failed scheduler set-up (the thread runs on, the schedulers made so far stay until
 *         a stop).
 */
uint32_t kel_core_ic_ebcom_start(void);

/**
 * Stops the EBCOM service: releases all queues, destination lists and schedulers (kel_ic_ebcom_deinit_qos()) and
 * nothing else. Paths stay in the driver kit, their counts stay until the process ends, and timestamp threads continue.
 * Remove all paths first: the library cannot delete them after a stop. A stop before the first start finds no table of
 * counts: GLib warns on standard error, and the result is 0.
 *
 * @return 0; the code of the failed take-down.
 */
uint32_t kel_core_ic_ebcom_stop(void);

/**
 * Converts a reading of the timing unit into the accelerator's timestamp offset: cycles times the whole part of
 * 1,000,000 / frequency. The quotient is truncated before the multiplication, which wraps on overflow: 250,000 gives
 * a factor of 4, 300,000 one of 3, anything above a million one of 0.
 *
 * @param cycles    cycle count
 * @param frequency clock frequency. Units are the timing unit's; nothing is scaled further.
 * @param ork_timestamp_offset written always; 0 when the frequency is 0
 * @return 0; 2 when the frequency is 0.
 */
uint32_t kel_ic_ebcom_cycles_to_ork_timestamp_offset(int64_t cycles, uint32_t frequency, int64_t *ork_timestamp_offset);

/* ---- Global parameters and capabilities ---- */

/** Service-wide Ethernet parameters. Only the low 16 bits of each are passed on, without a report. */
typedef struct kel_ebcom_global_params {
    uint32_t icPortMTU; /**< MTU of the IC ports, octets */
    uint32_t etherType; /**< EtherType of EBCOM frames */
} kel_ebcom_global_params;
KEL_LAYOUT_SIZE(kel_ebcom_global_params, 8);
KEL_LAYOUT_AT(kel_ebcom_global_params, etherType, 4);

/** Fixed limits of the service, as kel_core_ic_ebcom_capabilities_get() returns them. */
typedef struct kel_ebcom_capabilities {
    uint32_t max_burst_size;        /**< 1,048,575, in the unit of `burst_size` of a path */
    uint32_t max_pcep_id;           /**< 511 */
    uint32_t max_multicast_groups;  /**< 30 */
    uint32_t max_multicast_members; /**< 16 of each group */
} kel_ebcom_capabilities;
KEL_LAYOUT_SIZE(kel_ebcom_capabilities, 16);
KEL_LAYOUT_AT(kel_ebcom_capabilities, max_pcep_id, 4);
KEL_LAYOUT_AT(kel_ebcom_capabilities, max_multicast_groups, 8);
KEL_LAYOUT_AT(kel_ebcom_capabilities, max_multicast_members, 12);

/**
 * Passes the service-wide parameters to the driver kit. The library keeps no copy.
 *
 * @param params   read only
 * @param settings two 4-bit values, read only: the first becomes the low four bits of an octet, the second the high
 *                 ones; the upper four bits of each are dropped without a report
 * @return 0; the code of the failed attachment; 13 when the driver kit refuses.
 */
uint32_t kel_core_ic_ebcom_global_param_set(const kel_ebcom_global_params *params, const uint8_t settings[2]);

/**
 * Returns the fixed limits of the service; the same on every call, also before any start. Traces nothing.
 *
 * @param capabilities written always
 * @return 0.
 */
uint32_t kel_core_ic_ebcom_capabilities_get(kel_ebcom_capabilities *capabilities);

/* ---- The Ethernet interface ---- */

/**
 * Creates the EBCOM interface on the accelerator's event device and returns that device's VSI.
 *
 * The library does not remember the interface. The driver kit decides whether a second one is possible.
 *
 * @param vsi the VSI of the event device; written by the companion library, in the last step only
 * @param out 2 octets, set to 0 on success, untouched on failure
 * @return 0; the code of the failed attachment or companion call; 13 when the driver kit refuses. When only the VSI
 *         cannot be read, the interface stays.
 */
uint32_t kel_core_ic_ebcom_interface_create(kel_vsi_t *vsi, uint16_t *out);

/**
 * Deletes the EBCOM interface; works without a create in the same process.
 *
 * @return 0; the code of the failed attachment or companion call; 13 when the driver kit refuses.
 */
uint32_t kel_core_ic_ebcom_interface_delete(void);

/* ---- Paths ---- */

/** A path from an IC port to a destination, and the shaping of its queue. */
typedef struct kel_ebcom_path_config {
    uint8_t dst_mac[6];        /**< destination MAC address, wire order; bytes 2 and 3, from 0, give its location */
    uint8_t shaping_enabled;   /**< 0: unshaped queue, rate, threshold and burst of a new queue are ignored */
    int32_t iell_port;         /**< IC port; 0, 6 to 13 and 19 to 42 carry EBCOM */
    uint32_t shaping_rate;     /**< the platform's unit, passed on unchanged; kbit/s in the software accelerator */
    uint32_t buffer_threshold; /**< blocks of 256 octets */
    uint32_t burst_size;       /**< the platform's unit, passed on unchanged; octets in the software accelerator */
} kel_ebcom_path_config;
KEL_LAYOUT_SIZE(kel_ebcom_path_config, 24);
KEL_LAYOUT_AT(kel_ebcom_path_config, shaping_enabled, 6);
KEL_LAYOUT_AT(kel_ebcom_path_config, iell_port, 8);
KEL_LAYOUT_AT(kel_ebcom_path_config, shaping_rate, 12);
KEL_LAYOUT_AT(kel_ebcom_path_config, buffer_threshold, 16);
KEL_LAYOUT_AT(kel_ebcom_path_config, burst_size, 20);

/**
 * Adds a path to a destination: takes a reference on the port's queue, creates the path in the driver kit (on every
 * add, also for a known destination) and counts the destination.
 *
 * @param config read only, not kept
 * @return 0; 3 for a port without EBCOM, and for an EIOA destination on port 0; 7 when the port's queue has other
 *         shaping; 10 without memory for the destination, when the queue was there before; 13 when the driver kit
 *         refuses; or the code of a failed attachment or companion call. When it refuses the path itself, the reference
 *         on the queue is not released; when it refuses to read the queue's shaping, none was taken. When a new queue
 *         cannot be kept, see kel_ic_ebcom_add_shaper(), the driver kit is asked for a path without a queue: if it
 *         creates one, it is counted and the result is 0, but its removal returns 4.
 */
uint32_t kel_core_ic_ebcom_path_add(const kel_ebcom_path_config *config);

/**
 * Removes one path to a destination. The last removal for a MAC address deletes the path in the driver kit; the last one
 * on a port releases the port's queue.
 *
 * @param config the configuration that the path was added with, read only
 * @return 0; 4 when the destination was never added, not on this port, or before the last stop, which drops its
 *         reference on the queue but not its count; 3 for a port without EBCOM, and for an EIOA destination on port 0;
 *         13 when the driver kit refuses; or the code of a failed attachment or companion call. When the queue cannot be
 *         removed, or the driver kit refuses, the path and its count stay but the reference on the queue is released:
 *         another removal returns 4, unless kel_ic_ebcom_add_shaper() takes a reference again first.
 */
uint32_t kel_core_ic_ebcom_path_rem(const kel_ebcom_path_config *config);

/**
 * The MAC channel of an IC port. There is no mapping: every port except 0 is accepted, and nothing is written.
 *
 * @param iell_port IC port, any number
 * @param mac_chan  never written
 * @return 0; 3 for port 0.
 */
uint32_t kel_ic_ebcom_port_to_mac_chan(int32_t iell_port, uint8_t *mac_chan);

/* ---- Schedulers, shapers and look-ups underneath ---- */

/**
 * Builds the scheduler tree: a chain of seven level schedulers and, under the last, one scheduler for each of the five
 * groups of IC ports. Part of kel_core_ic_ebcom_start(). A tree that exists already is forgotten, not released.
 *
 * @return 0; the code of the first failing step; the schedulers made so far stay until kel_ic_ebcom_deinit_qos().
 */
uint32_t kel_ic_ebcom_init_qos(void);

/**
 * Releases every queue, destination list and scheduler, children before parents. A queue or scheduler that cannot be
 * removed is traced and forgotten. Part of kel_core_ic_ebcom_stop().
 *
 * @return 0; the code that stopped the walk over the ports; what is not released by then stays.
 */
uint32_t kel_ic_ebcom_deinit_qos(void);

/**
 * Takes a reference on the port's queue for a destination; the first one on a port creates the queue.
 *
 * @param config read only, not kept. An unshaped request matches an existing unshaped queue only when its rate and burst are 0.
 *               The buffer threshold is not compared.
 * @param path   only `queue_hdl` is written, with the port's queue, and only when a reference was taken
 * @return 0; 3 for a port without EBCOM; 7 when the existing queue has other shaping; 10 without memory, when the queue
 *         existed before; 13 when the driver kit refuses; or the code of a failed attachment or companion call. When
 *         a queue that this call created cannot be kept, it is removed again, retried without limit until that succeeds,
 *         and the result is 0. No reference was taken then, and the port keeps the handle of the removed queue until a
 *         stop: further adds on the port ask the driver kit about that queue.
 */
uint32_t kel_ic_ebcom_add_shaper(const kel_ebcom_path_config *config, ork_ebcom_pcep_path *path);

/**
 * Releases one reference on the port's queue; the last one removes the queue. The number of references left is
 * taken as 16 bits: 65,536 of them count as none.
 *
 * @param config read only
 * @param path   not used, not written
 * @return 0; 3 for a port without EBCOM; 4 when the destination has no reference on this port; or the code of the
 *         failed removal of the queue, which then stays known, without references.
 */
uint32_t kel_ic_ebcom_remove_shaper(const kel_ebcom_path_config *config, ork_ebcom_pcep_path *path);

/**
 * The queue that holds a reference for a destination. For a destination on several ports it is the one in the lowest port
 * group, and there the lowest queue; the accelerator sends through the queue of the path that was added last.
 *
 * @param dst_mac      6 bytes, wire order
 * @param queue_handle written on success only; the handle stays the library's
 * @return 0; 4 when no queue holds a reference for the destination.
 */
uint32_t kel_ic_ebcom_queue_handle_get(const uint8_t *dst_mac, void **queue_handle);

/**
 * The port group's scheduler above the queue that kel_ic_ebcom_queue_handle_get() finds.
 *
 * @param dst_mac          6 bytes, wire order
 * @param scheduler_handle written on success only; the handle stays the library's
 * @return 0; 4 when no queue holds a reference for the destination.
 */
uint32_t kel_ic_ebcom_scheduler_handle_get(const uint8_t *dst_mac, void **scheduler_handle);

/* ---- Statistics and the handle dump ---- */

/**
 * Reads the service's global counters. The record's layout is the driver kit's; that of the
 * software accelerator is softnode_global_statistics in softnode/softnode.h. Traces failures only.
 *
 * @param stats 256 octets, cleared first; the driver kit fills this record, even if it then refuses
 * @return 0; the code of the failed attachment; 13 when the driver kit refuses.
 */
uint32_t kel_ic_ebcom_get_global_stats(ebcom_global_stats *stats);

/**
 * Reads the service's global counters as text, laid out by the formatting library.
 *
 * @param buf    written always; the empty string when the counters cannot be read
 * @param len    size of the buffer, octets; at least 1
 * @param format the formatting library's selector
 * @return 0; the code of the failed reading; or what the formatting library returns at the end of the text.
 */
uint32_t kel_core_ic_ebcom_global_fmt_stats_get(char *buf, uint32_t len, uint8_t format);

/**
 * A second name for kel_core_ic_ebcom_global_fmt_stats_get().
 *
 * @param buf    written always; the empty string when the counters cannot be read
 * @param len    size of the buffer, octets; at least 1
 * @param format the formatting library's selector; only the low 8 bits count
 * @return as kel_core_ic_ebcom_global_fmt_stats_get().
 */
uint32_t kel_core_ic_ebcom_fmt_global_stats(char *buf, uint32_t len, uint32_t format);

/** Counters of a queue. A block of memory is 256 octets. */
typedef struct ebcom_queue_stats {
    uint32_t mem_blks_in_use;    /**< blocks that waiting packets use */
    uint32_t pkts_out_standing;  /**< packets that wait */
    uint32_t pkts_dropped;       /**< packets refused by the queue */
    uint32_t pkts_tx;            /**< packets that left */
    uint32_t pkts_rx;            /**< packets that arrived */
    uint64_t octets_dropped;     /**< octets refused by the queue */
    uint64_t octets_tx;          /**< octets that left */
    uint64_t octets_rx;          /**< octets that arrived */
    uint32_t max_burst_size;     /**< not measured: always 0 */
    uint32_t current_burst_size; /**< not measured: always 0 */
} ebcom_queue_stats;
KEL_LAYOUT_SIZE(ebcom_queue_stats, 56);
KEL_LAYOUT_AT(ebcom_queue_stats, pkts_out_standing, 4);
KEL_LAYOUT_AT(ebcom_queue_stats, pkts_dropped, 8);
KEL_LAYOUT_AT(ebcom_queue_stats, pkts_tx, 12);
KEL_LAYOUT_AT(ebcom_queue_stats, pkts_rx, 16);
KEL_LAYOUT_AT(ebcom_queue_stats, octets_dropped, 24);
KEL_LAYOUT_AT(ebcom_queue_stats, octets_tx, 32);
KEL_LAYOUT_AT(ebcom_queue_stats, octets_rx, 40);
KEL_LAYOUT_AT(ebcom_queue_stats, max_burst_size, 48);
KEL_LAYOUT_AT(ebcom_queue_stats, current_burst_size, 52);

/**
 * Reads the counters of the queue that kel_ic_ebcom_queue_handle_get() finds for a destination. Do not change paths
 * at the same time.
 *
 * @param dst_mac 6 bytes, wire order, read only
 * @param stats   56 octets, cleared first: zero when the counters cannot be read, filled when only a later step fails
 * @return 0; 4 when no queue holds a reference for the destination; or the code of the failed reading.
 */
uint32_t kel_core_ic_ebcom_queue_stats_get(const uint8_t *dst_mac, ebcom_queue_stats *stats);

/**
 * The packet counters as text: "EBCOM Queue statistics" with five lines, the last of them labelled "pkts_rq".
 *
 * @param dst_mac 6 bytes, wire order
 * @param buf     written always; the empty string when the counters cannot be read
 * @param len     size of the buffer, octets; at least 1
 * @param format  the formatting library's selector
 * @return 0; the code of the failed reading; or what the formatting library returns at the end of the text.
 */
uint32_t kel_core_ic_ebcom_queue_fmt_stats_get(const uint8_t *dst_mac, char *buf, uint32_t len, uint8_t format);

/**
 * A second name for kel_core_ic_ebcom_queue_fmt_stats_get().
 *
 * @param dst_mac 6 bytes, wire order
 * @param buf     written always; the empty string when the counters cannot be read
 * @param len     size of the buffer, octets; at least 1
 * @param format  the formatting library's selector; only the low 8 bits count
 * @return as kel_core_ic_ebcom_queue_fmt_stats_get().
 */
uint32_t kel_core_ic_ebcom_fmt_queue_stats(const uint8_t *dst_mac, char *buf, uint32_t len, uint32_t format);

/**
 * All counters as text: "EBCOM Queue statistics version 2" with ten lines. It shows the low 32 bits of the octet counters;
 * kel_core_ic_ebcom_queue_stats_get() returns all 64.
 *
 * @param dst_mac 6 bytes, wire order
 * @param buf     written always; the empty string when the counters cannot be read
 * @param len     size of the buffer, octets; at least 1
 * @param format  the formatting library's selector
 * @return as kel_core_ic_ebcom_queue_fmt_stats_get().
 */
uint32_t kel_core_ic_ebcom_queue_fmt_stats_get_2(const uint8_t *dst_mac, char *buf, uint32_t len, uint8_t format);

/**
 * The burst step of the queue counters. Burst sizes are not measured: nothing is read or written.
 *
 * @param queue_handle     not used
 * @param scheduler_handle not used
 * @param stats            not used
 * @return 0.
 */
uint32_t kel_ic_ebcom_set_burst_stats(void *queue_handle, void *scheduler_handle, ebcom_queue_stats *stats);

/**
 * Writes every scheduler and queue handle to the file "/tmp/KEL_DUMP_EBCOM_QOS_HANDLE_FILENAME", which it replaces: an
 * empty line, a banner, and 45 lines, empty slots included. The umask decides who can read the file. An existing file of
 * that name is truncated, and a symbolic link is followed.
 *
 * @return 0; 13 when the file cannot be opened (no record reports it) or a line cannot be written (the lines before it
 *         stay). Lines are buffered until the file is closed, and the result of closing is not checked: a full disk
 *         returns 0.
 */
uint32_t kel_core_ic_ebcom_qos_handle_dump(void);

#pragma GCC visibility pop

#ifdef __cplusplus
}
#endif

#endif

/**
 * @file kel_core_ic_pcep.h
 * PCEPs, packet communication end points: unicast ones between a local and a remote MAC address, and multicast groups of
 * them.
 *
 *     const kel_pcep_config config = {.remote_pcep_id = {9, 0, 0},                // little-endian: 9
 *                                     .local_mac = {2, 0, 0, 3, 0, 1},           // on the HSFP: gets bound
 *                                     .remote_mac = {2, 0, 0, 2, 0, 1},
 *                                     .vlan_id = 100, .priority = 5};
 *     uint32_t rc = kel_core_ic_pcep_start();
 *     if (rc == 0)
 *         rc = kel_core_ic_pcep_add(7, &config);
 *     if (rc == 0)
 *         rc = kel_core_ic_pcep_mc_group_add(300);
 *     if (rc == 0)
 *         rc = kel_core_ic_pcep_mc_member_add(300, 7);
 *
 * Unicast PCEPs and multicast groups share the ids 1 to 511. The library keeps a table of them from start to stop.
 * Calls before the start or after the stop pass null handles to the driver kit.
 *
 * Threads and return codes are as in kel_core_ic_ebcom.h: statistics and the dump read the table: do not add,
 * remove, start or stop at the same time.
 */
#ifndef KEL_CORE_IC_PCEP_H
#define KEL_CORE_IC_PCEP_H

#include "platform/kel_init.h"
#include "platform/layout.h"
#include "platform/ork.h"

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

#pragma GCC visibility push(default)

/* ---- Locations ---- */

/**
 * Returns where a MAC address sits, and its PCEP type, by its bytes 2 and 3, counted from 0: in 02:00:85:00:00:01, byte 2
 * is 0x85 and byte 3 is 0.
 *
 * | byte 3 | byte 2         | location | type |                         |
 * |--------|----------------|----------|------|-------------------------|
 * | 2      | any            | 2 OB     | 2    |                         |
 * | 3      | any            | 3 HSFP   | 2    |                         |
 * | 0      | the own MP id  | 1 CPU    | 1    | this processor          |
 * | 0      | 0x80 and above | 1 CPU    | 1    | a processor, not this one |
 * | anything else |         | 4 EIOA   | 0    |                         |
 *
 * The own MP id is the low 8 bits of the environment variable "MPID", in decimal; it is 0 if the variable is not a number
 * or not set. It is read for the first address with byte 3 = 0 and byte 2 below 0x80, and kept once it is not 0. While it
 * is 0, it is read again for each such address, and byte 2 = 0 counts as this processor.
 *
 * @param mac      6 bytes, wire order
 * @param location written always
 * @param type     written always
 * @return 0.
 */
uint32_t kel_ic_pcep_get_location_and_type_from_branch(const uint8_t *mac, uint32_t *location, uint32_t *type);

/* ---- Start, stop and the handle dump ---- */

/**
 * Starts the PCEP service: empties the table and attaches to the accelerator, once for all PCEP calls until the stop.
 *
 * @return 0; the code of the failed attachment; the table is empty in any case.
 */
uint32_t kel_core_ic_pcep_start(void);

/**
 * Stops the PCEP service: forgets the attachment and the table. PCEPs, bindings and groups stay in the driver kit, and
 * the count of groups keeps its value.
 *
 * @return 0.
 */
uint32_t kel_core_ic_pcep_stop(void);

/**
 * Lists the driver-kit handles of all PCEPs and groups through the companion library.
 *
 *     kel_core_ic_pcep_handle_dump(stdout);
 *
 * @param destination passed to the companion library, which expects a stdio stream (`FILE *`) open for writing; it
 *                    stays open and belongs to the caller
 * @return 0, also when the dump failed.
 */
uint32_t kel_core_ic_pcep_handle_dump(void *destination);

/**
 * The hook that the start calls for a multicast queue and scheduler. Creates none and writes nothing.
 *
 * @param attach           not used
 * @param queue_handle     not written
 * @param scheduler_handle not written
 * @return 0.
 */
uint32_t kel_core_ic_pcep_create_queue_and_scheduler_for_multicast(kel_attach_info *attach, uint64_t *queue_handle,
                                                                   uint64_t *scheduler_handle);

/* ---- Unicast PCEPs ---- */

/** The parameters of a new PCEP. */
typedef struct kel_pcep_config {
    uint8_t remote_pcep_id[3]; /**< little-endian */
    uint8_t reserved3;         /**< not read */
    uint8_t local_mac[6];      /**< wire order; a PCEP with a location on the HSFP is bound to the EHSFP */
    uint8_t remote_mac[6];     /**< wire order */
    uint16_t vlan_id;          /**< low 12 bits */
    uint8_t priority;          /**< low 3 bits */
    uint8_t byte19;            /**< passed to the driver kit unchanged */
    uint16_t word20;           /**< passed to the driver kit unchanged */
    uint8_t rest[22];          /**< kept, not read */
} kel_pcep_config;
KEL_LAYOUT_SIZE(kel_pcep_config, 44);
KEL_LAYOUT_AT(kel_pcep_config, reserved3, 3);
KEL_LAYOUT_AT(kel_pcep_config, local_mac, 4);
KEL_LAYOUT_AT(kel_pcep_config, remote_mac, 10);
KEL_LAYOUT_AT(kel_pcep_config, vlan_id, 16);
KEL_LAYOUT_AT(kel_pcep_config, priority, 18);
KEL_LAYOUT_AT(kel_pcep_config, byte19, 19);
KEL_LAYOUT_AT(kel_pcep_config, word20, 20);
KEL_LAYOUT_AT(kel_pcep_config, rest, 22);

/**
 * Creates a PCEP in the driver kit and, when its local address is on the HSFP, binds it to the EHSFP target.
 *
 * @param pcep_id 1 to 511
 * @param config  read only, copied
 * @return 0; 3 for an invalid id; 5 when the id is taken; 13 when the driver kit refuses. When only the binding fails,
 *         the PCEP stays in the driver kit and the id stays free.
 */
uint32_t kel_core_ic_pcep_add(uint32_t pcep_id, const kel_pcep_config *config);

/**
 * Unbinds a PCEP that was bound and deletes it in the driver kit. Its id is free afterwards, whatever the result: a PCEP
 * that the driver kit refused to delete is forgotten. The id of a multicast group returns 7 and is forgotten, too; the
 * group still counts against the 30. Groups that a PCEP is a member of still count it.
 *
 * @param pcep_id 1 to 511
 * @return 0; 3 for an invalid id; 4 for a free one; 7 for a multicast group; 13 when the driver kit refuses. After a
 *         failed unbinding, the PCEP is not deleted.
 */
uint32_t kel_core_ic_pcep_rem(uint32_t pcep_id);

/* ---- Multicast groups ---- */

/**
 * Creates a multicast group. There can be 30.
 *
 * @param mc_pcep_id 1 to 511
 * @return 0; 3 for an invalid id; 5 when the id is taken; 10 when there are 30 groups; 13 when the driver kit
 *         refuses.
 */
uint32_t kel_core_ic_pcep_mc_group_add(uint32_t mc_pcep_id);

/**
 * Deletes a multicast group without members. The group is forgotten and no longer counted, also when the driver kit
 * refuses. A free id lowers the count as well; below 0 it wraps, and every further group is refused with 10.
 *
 * @param mc_pcep_id 1 to 511
 * @return 0; 3 for an invalid id; 4 for a free one; 7 for a unicast PCEP; 6 while there are members; 13 when the driver
 *         kit refuses.
 */
uint32_t kel_core_ic_pcep_mc_group_rem(uint32_t mc_pcep_id);

/**
 * Adds a PCEP to a group, which can have 16 members. The driver kit checks whether it is a member already.
 *
 * @param mc_pcep_id the group, 1 to 511
 * @param uc_pcep_id the member, 1 to 511; its kind is not checked
 * @return 0; 3 for an invalid id; 4 for a free one; 7 when the first id is not of a group; 10 when it is full; 13 when
 *         the driver kit refuses.
 */
uint32_t kel_core_ic_pcep_mc_member_add(uint32_t mc_pcep_id, uint32_t uc_pcep_id);

/**
 * Removes a PCEP from a group. The number of members is decremented without a check; the driver kit checks whether this
 * was one.
 *
 * @param mc_pcep_id the group, 1 to 511
 * @param uc_pcep_id the member, 1 to 511; its entry must not be free
 * @return 0; 3 for an invalid id; 4 for a free one; 7 when the first id is not of a group; 13 when the driver kit refuses.
 */
uint32_t kel_core_ic_pcep_mc_member_rem(uint32_t mc_pcep_id, uint32_t uc_pcep_id);

/* ---- Statistics ---- */

/**
 * Reads a unicast PCEP's counters as the driver kit has them. Octets 16 to 63 stay 0. Traces failures only.
 *
 * @param pcep_id 1 to 511
 * @param stats   128 octets, cleared first: all zero on failure
 * @return 0; 3 for an invalid id; 4 for a free one; 11 for a multicast group; 13 when the driver kit refuses.
 */
uint32_t kel_ic_pcep_get_stats(uint32_t pcep_id, ebcom_pcep_stats *stats);

/**
 * The same counters in a record of 76 octets without gaps. The order of the words is part of the interface; the driver kit
 * defines what each counts. For the software accelerator see softnode_global_statistics in softnode/softnode.h.
 */
typedef struct __attribute__((packed)) pcep_stats {
    uint64_t in_cnt0;  /**< octet 64 of the driver kit's record */
    uint32_t in_word4; /**< octet 112 of the driver kit's record */
    uint32_t in_word0; /**< octet 72 of the driver kit's record */
    uint32_t in_word5; /**< octet 116 of the driver kit's record */
    uint32_t in_word1; /**< octet 76 of the driver kit's record */
    uint32_t in_word2; /**< octet 88 of the driver kit's record */
    uint64_t in_cnt1;  /**< octet 80 of the driver kit's record */
    uint32_t in_word3; /**< octet 92 of the driver kit's record */
    uint32_t in_word6; /**< octet 120 of the driver kit's record */
    uint64_t in_cnt2;  /**< octet 96 of the driver kit's record */
    uint64_t in_cnt3;  /**< octet 104 of the driver kit's record */
    uint64_t out_cnt0; /**< octet 0 of the driver kit's record */
    uint64_t out_cnt1; /**< octet 8 of the driver kit's record */
} pcep_stats;
KEL_LAYOUT_SIZE(pcep_stats, 76);
KEL_LAYOUT_AT(pcep_stats, in_word4, 8);
KEL_LAYOUT_AT(pcep_stats, in_word0, 12);
KEL_LAYOUT_AT(pcep_stats, in_word5, 16);
KEL_LAYOUT_AT(pcep_stats, in_word1, 20);
KEL_LAYOUT_AT(pcep_stats, in_word2, 24);
KEL_LAYOUT_AT(pcep_stats, in_cnt1, 28);
KEL_LAYOUT_AT(pcep_stats, in_word3, 36);
KEL_LAYOUT_AT(pcep_stats, in_word6, 40);
KEL_LAYOUT_AT(pcep_stats, in_cnt2, 44);
KEL_LAYOUT_AT(pcep_stats, in_cnt3, 52);
KEL_LAYOUT_AT(pcep_stats, out_cnt0, 60);
KEL_LAYOUT_AT(pcep_stats, out_cnt1, 68);

/**
 * Reads a unicast PCEP's counters into the compact record.
 *
 * @param pcep_id 1 to 511
 * @param stats   76 octets, cleared first: all zero on failure
 * @return as kel_ic_pcep_get_stats().
 */
uint32_t kel_core_ic_pcep_stats_get(uint32_t pcep_id, pcep_stats *stats);

/**
 * A second name for kel_core_ic_pcep_stats_get().
 *
 * @param pcep_id 1 to 511
 * @param stats   76 octets, cleared first: all zero on failure
 * @return as kel_ic_pcep_get_stats().
 */
uint32_t kel_core_ic_pcep_get_stats(uint32_t pcep_id, pcep_stats *stats);

/**
 * A unicast PCEP's counters as text, inbound ones first.
 *
 * @param pcep_id 1 to 511
 * @param buf     written always; the empty string when the counters cannot be read
 * @param len     size of the buffer, octets; at least 1
 * @param format  the formatting library's selector
 * @return as kel_ic_pcep_get_stats(), or what the formatting library returns at the end of the text.
 */
uint32_t kel_core_ic_pcep_fmt_stats_get(uint32_t pcep_id, char *buf, uint32_t len, uint8_t format);

/**
 * A second name for kel_core_ic_pcep_fmt_stats_get().
 *
 * @param pcep_id 1 to 511
 * @param buf     written always; the empty string when the counters cannot be read
 * @param len     size of the buffer, octets; at least 1
 * @param format  the formatting library's selector; only the low 8 bits count
 * @return as kel_core_ic_pcep_fmt_stats_get().
 */
uint32_t kel_core_ic_pcep_fmt_stats(uint32_t pcep_id, char *buf, uint32_t len, uint32_t format);

#pragma GCC visibility pop

#ifdef __cplusplus
}
#endif

#endif

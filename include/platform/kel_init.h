/*
 * kel_init.h - the companion initialisation library: attachment to the accelerator, the identity of its event
 * device, and the registry of QoS queues.
 *
 * Our own declarations of a closed library's interface, with names of ours for types, fields and constants.
 */
#ifndef PLATFORM_KEL_INIT_H
#define PLATFORM_KEL_INIT_H

#include "layout.h"

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/**
 * The return codes of the companion library that this project uses. kei_util_init_rc_str_get() returns their texts. Other
 * codes are possible and are passed on unchanged.
 */
enum kel_init_rc {
    KEL_RC_OK = 0,
    KEL_RC_ZERO_FREQUENCY = 2, /**< a timing reading without a frequency */
    KEL_RC_OUT_OF_RANGE = 3,   /**< unknown IC port, unsupported location, invalid PCEP id */
    KEL_RC_NOT_FOUND = 4,      /**< MAC address not configured, PCEP id free */
    KEL_RC_IN_USE = 5,         /**< PCEP id taken */
    KEL_RC_NOT_EMPTY = 6,      /**< multicast group with members */
    KEL_RC_MISMATCH = 7,       /**< other kind of PCEP, or other shaping than the queue already has */
    KEL_RC_LIMIT = 10,         /**< limit reached, or no memory */
    KEL_RC_UNSUPPORTED = 11,   /**< not offered for this kind of object */
    KEL_RC_FAILED = 13         /**< a driver-kit, thread or file call failed */
};

/** VSI of the accelerator's event device. */
typedef uint16_t kel_vsi_t;

/** The result of an attachment. The opaque parts belong to the companion library. */
typedef struct kel_attach_info {
    void *sys_handle; /**< the driver kit's system handle */
    uint8_t opaque8[120];
    uint64_t ehsfp_target; /**< target that PCEPs on the HSFP are bound to */
    void *ork_handle;      /**< first argument of the driver kit's calls */
    uint8_t opaque144[32];
} kel_attach_info;
KEL_LAYOUT_SIZE(kel_attach_info, 176);
KEL_LAYOUT_AT(kel_attach_info, opaque8, 8);
KEL_LAYOUT_AT(kel_attach_info, ehsfp_target, 128);
KEL_LAYOUT_AT(kel_attach_info, ork_handle, 136);
KEL_LAYOUT_AT(kel_attach_info, opaque144, 144);

/** Attaches the process to the accelerator and fills the record. May be called any number of times. */
uint32_t kel_init_attach(kel_attach_info *attach);

/** The Ethernet device identifier of the event device that EBCOM uses. */
uint32_t kel_init_eventdev_dev_id_ebcom_get(uint16_t *eth_dev_id);

/** The VSI of that event device. */
uint32_t kel_init_eventdev_vsi_ebcom_get(kel_vsi_t *vsi);

/** The parameters of a new queue. */
typedef struct kel_init_qos_queue_params {
    uint32_t mode;
    uint32_t rate;        /**< kbit/s; 0 together with a bucket_size of 0: unshaped */
    uint32_t threshold;   /**< octets */
    uint32_t bucket_size; /**< the largest burst, octets */
} kel_init_qos_queue_params;
KEL_LAYOUT_SIZE(kel_init_qos_queue_params, 16);
KEL_LAYOUT_AT(kel_init_qos_queue_params, rate, 4);
KEL_LAYOUT_AT(kel_init_qos_queue_params, threshold, 8);
KEL_LAYOUT_AT(kel_init_qos_queue_params, bucket_size, 12);

uint32_t kel_init_qos_queue_add(const kel_init_qos_queue_params *params, uint32_t five, void *scheduler,
                                uint16_t eth_dev_id, void **queue);
uint32_t kel_init_qos_queue_rem(void *queue);

/** Counters of a queue. A block is 256 octets. */
typedef struct qos_queue_stats {
    uint64_t octets_tx;
    uint64_t octets_rx;
    uint64_t octets_dropped;
    uint32_t pkts_dropped;
    uint32_t mem_blks_in_use;
    uint32_t pkts_out_standing;
    uint32_t pkts_tx;
    uint32_t pkts_rx;
    uint32_t word9; /**< not read by this library */
} qos_queue_stats;
KEL_LAYOUT_SIZE(qos_queue_stats, 48);
KEL_LAYOUT_AT(qos_queue_stats, octets_rx, 8);
KEL_LAYOUT_AT(qos_queue_stats, octets_dropped, 16);
KEL_LAYOUT_AT(qos_queue_stats, pkts_dropped, 24);
KEL_LAYOUT_AT(qos_queue_stats, mem_blks_in_use, 28);
KEL_LAYOUT_AT(qos_queue_stats, pkts_out_standing, 32);
KEL_LAYOUT_AT(qos_queue_stats, pkts_tx, 36);
KEL_LAYOUT_AT(qos_queue_stats, pkts_rx, 40);
KEL_LAYOUT_AT(qos_queue_stats, word9, 44);

uint32_t kel_init_qos_queue_stats_get(void *queue, qos_queue_stats *stats);

/**
 * Lists handles on a stdio stream. The accessors are called by index; an id of 0 marks a free entry.
 */
uint32_t kel_init_dump_ork_handles(void *destination, const char *title, uint32_t count,
                                   uint32_t (*id_get)(uint32_t index), uint64_t (*handle_get)(uint32_t index));

#ifdef __cplusplus
}
#endif

#endif

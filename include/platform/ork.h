/*
 * ork.h - the accelerator driver kit, as far as libkel-core-ic calls it.
 *
 * Our own declarations of a closed library's interface, with names of ours for types, fields and constants. A vendor's
 * library can replace the software accelerator; a vendor's header fits only if its names are the same. Every record has
 * the driver kit's layout.
 */
#ifndef PLATFORM_ORK_H
#define PLATFORM_ORK_H

#include "layout.h"

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/** Driver-kit return code: 0, or one of the negative numbers of ::ork_rc_value. */
typedef int32_t ork_rc;

enum ork_rc_value {
    ORK_OK = 0,
    ORK_INVAL = -1,
    ORK_UNSUPP = -2,
    ORK_NOPORT = -3,
    ORK_AGAIN = -4,
    ORK_SHUTDOWN = -5,
    ORK_NODOMAIN = -6,
    ORK_INTERNAL = -7,
    ORK_NOTAVAIL = -8,
    ORK_OUTOFRANGE = -9
};

/* ---- Status of the driver kit itself ---- */

/** Returns the system handle for ork_sys_status_get(). This library passes 0 and 1 and ignores the result. */
ork_rc ork_syshandle_get(uint32_t a, uint32_t b, void **sys_handle);

/** The driver kit's text for a code. The text belongs to the driver kit. */
const char *ork_sys_status_get(void *sys_handle, ork_rc rc);

/* ---- The EBCOM service ---- */

/** Service-wide Ethernet parameters. */
typedef struct ork_ebcom_global_config {
    uint16_t icPortMTU; /**< octets */
    uint16_t etherType;
    uint8_t nibbles; /**< two 4-bit settings: the first one low, the second one high */
    uint8_t reserved;
} ork_ebcom_global_config;
KEL_LAYOUT_SIZE(ork_ebcom_global_config, 6);
KEL_LAYOUT_AT(ork_ebcom_global_config, etherType, 2);
KEL_LAYOUT_AT(ork_ebcom_global_config, nibbles, 4);
KEL_LAYOUT_AT(ork_ebcom_global_config, reserved, 5);

ork_rc ork_ebcom_global_config_set(void *ork, const ork_ebcom_global_config *config);

ork_rc ork_ebcom_interface_create(void *ork, uint16_t eth_dev_id);
ork_rc ork_ebcom_interface_delete(void *ork, uint16_t eth_dev_id);

/** Sets the offset that the accelerator adds to its timestamps. May be called at the same time as any other operation. */
ork_rc ork_ebcom_timestamp_offset_set(void *ork, int64_t offset);

/** A path towards one destination MAC address. */
typedef struct ork_ebcom_pcep_path {
    uint8_t macAddr[6]; /**< wire order */
    int32_t pcepType;
    uint8_t eioaPort; /**< MAC channel of the IC port; read for EIOA destinations only */
    void *queue_hdl;  /**< queue that carries the path; null when the path is deleted */
} ork_ebcom_pcep_path;
KEL_LAYOUT_SIZE(ork_ebcom_pcep_path, 24);
KEL_LAYOUT_AT(ork_ebcom_pcep_path, pcepType, 8);
KEL_LAYOUT_AT(ork_ebcom_pcep_path, eioaPort, 12);
KEL_LAYOUT_AT(ork_ebcom_pcep_path, queue_hdl, 16);

ork_rc ork_ebcom_pcep_path_create(void *ork, const ork_ebcom_pcep_path *path);
ork_rc ork_ebcom_pcep_path_delete(void *ork, const ork_ebcom_pcep_path *path);

/**
 * The service's counters. The layout is the driver kit's: this library clears the record, lets the driver kit fill it, and
 * returns it.
 */
typedef struct ebcom_global_stats {
    uint8_t octets[256];
} ebcom_global_stats;
KEL_LAYOUT_SIZE(ebcom_global_stats, 256);

ork_rc ork_ebcom_global_statistics_get(void *ork, ebcom_global_stats *stats);

/* ---- PCEPs ---- */

/** The parameters of a new PCEP. */
typedef struct ork_ebcom_pcep_params {
    uint8_t sMac[6]; /**< local */
    uint8_t dMac[6]; /**< remote */
    uint16_t vlan;   /**< bits 0 to 11: vlanId; 12 to 14: priority, not where an 802.1Q tag has it; 15: 0 */
    uint16_t reserved14;
    uint32_t localPcepId;  /**< bits 0 to 23 */
    uint32_t remotePcepId; /**< bits 8 to 31; bits 0 to 7 are a byte of their own */
    uint16_t word24;
    uint16_t reserved26;
    uint8_t byte28; /**< always 1 */
    uint8_t reserved29[11];
} ork_ebcom_pcep_params;
KEL_LAYOUT_SIZE(ork_ebcom_pcep_params, 40);
KEL_LAYOUT_AT(ork_ebcom_pcep_params, dMac, 6);
KEL_LAYOUT_AT(ork_ebcom_pcep_params, vlan, 12);
KEL_LAYOUT_AT(ork_ebcom_pcep_params, reserved14, 14);
KEL_LAYOUT_AT(ork_ebcom_pcep_params, localPcepId, 16);
KEL_LAYOUT_AT(ork_ebcom_pcep_params, remotePcepId, 20);
KEL_LAYOUT_AT(ork_ebcom_pcep_params, word24, 24);
KEL_LAYOUT_AT(ork_ebcom_pcep_params, reserved26, 26);
KEL_LAYOUT_AT(ork_ebcom_pcep_params, byte28, 28);
KEL_LAYOUT_AT(ork_ebcom_pcep_params, reserved29, 29);

ork_rc ork_ebcom_pcep_create(void *ork, const ork_ebcom_pcep_params *params, uint64_t *handle);
ork_rc ork_ebcom_pcep_delete(void *ork, uint64_t handle);

/** What a PCEP has sent; the fields are named by their positions. */
typedef struct ebcom_pcep_outbound_stats {
    uint64_t out_cnt0;
    uint64_t out_cnt1;
    uint8_t rest[48];
} ebcom_pcep_outbound_stats;
KEL_LAYOUT_SIZE(ebcom_pcep_outbound_stats, 64);
KEL_LAYOUT_AT(ebcom_pcep_outbound_stats, out_cnt1, 8);
KEL_LAYOUT_AT(ebcom_pcep_outbound_stats, rest, 16);

/** What a PCEP has received. */
typedef struct ebcom_pcep_inbound_stats {
    uint64_t in_cnt0;
    uint32_t in_word0;
    uint32_t in_word1;
    uint64_t in_cnt1;
    uint32_t in_word2;
    uint32_t in_word3;
    uint64_t in_cnt2;
    uint64_t in_cnt3;
    uint32_t in_word4;
    uint32_t in_word5;
    uint32_t in_word6;
    uint8_t rest[4];
} ebcom_pcep_inbound_stats;
KEL_LAYOUT_SIZE(ebcom_pcep_inbound_stats, 64);
KEL_LAYOUT_AT(ebcom_pcep_inbound_stats, in_word0, 8);
KEL_LAYOUT_AT(ebcom_pcep_inbound_stats, in_word1, 12);
KEL_LAYOUT_AT(ebcom_pcep_inbound_stats, in_cnt1, 16);
KEL_LAYOUT_AT(ebcom_pcep_inbound_stats, in_word2, 24);
KEL_LAYOUT_AT(ebcom_pcep_inbound_stats, in_word3, 28);
KEL_LAYOUT_AT(ebcom_pcep_inbound_stats, in_cnt2, 32);
KEL_LAYOUT_AT(ebcom_pcep_inbound_stats, in_cnt3, 40);
KEL_LAYOUT_AT(ebcom_pcep_inbound_stats, in_word4, 48);
KEL_LAYOUT_AT(ebcom_pcep_inbound_stats, in_word5, 52);
KEL_LAYOUT_AT(ebcom_pcep_inbound_stats, in_word6, 56);
KEL_LAYOUT_AT(ebcom_pcep_inbound_stats, rest, 60);

/** The counters of one PCEP. */
typedef struct ebcom_pcep_stats {
    ebcom_pcep_outbound_stats outbound;
    ebcom_pcep_inbound_stats inbound;
} ebcom_pcep_stats;
KEL_LAYOUT_SIZE(ebcom_pcep_stats, 128);
KEL_LAYOUT_AT(ebcom_pcep_stats, inbound, 64);

ork_rc ork_ebcom_pcep_statistics_get(void *ork, uint64_t handle, ebcom_pcep_stats *stats);

/** Binds a PCEP to an event target. Words without a known meaning are named by their offsets. */
typedef struct ork_bind_params {
    uint32_t word0; /**< always 4 */
    uint32_t word4; /**< always 1 */
    uint32_t word8; /**< always 1 */
    uint32_t reserved12;
    void *ork_handle;
    uint64_t reserved24;
    uint32_t pcep_id;
    uint32_t word36; /**< always 2 */
    uint64_t target;
    uint8_t reserved48[12];
    uint32_t word60; /**< always 2 */
    uint8_t reserved64[20];
    uint8_t byte84; /**< always 1 */
    uint8_t reserved85[11];
} ork_bind_params;
KEL_LAYOUT_SIZE(ork_bind_params, 96);
KEL_LAYOUT_AT(ork_bind_params, word4, 4);
KEL_LAYOUT_AT(ork_bind_params, word8, 8);
KEL_LAYOUT_AT(ork_bind_params, reserved12, 12);
KEL_LAYOUT_AT(ork_bind_params, ork_handle, 16);
KEL_LAYOUT_AT(ork_bind_params, reserved24, 24);
KEL_LAYOUT_AT(ork_bind_params, pcep_id, 32);
KEL_LAYOUT_AT(ork_bind_params, word36, 36);
KEL_LAYOUT_AT(ork_bind_params, target, 40);
KEL_LAYOUT_AT(ork_bind_params, reserved48, 48);
KEL_LAYOUT_AT(ork_bind_params, word60, 60);
KEL_LAYOUT_AT(ork_bind_params, reserved64, 64);
KEL_LAYOUT_AT(ork_bind_params, byte84, 84);
KEL_LAYOUT_AT(ork_bind_params, reserved85, 85);

ork_rc ork_bind(void *sys_handle, const ork_bind_params *params);
ork_rc ork_unbind(void *sys_handle, const ork_bind_params *params);

/** The parameters of a new multicast group. */
typedef struct ork_ebcom_multicast_group {
    uint16_t pcep_id; /**< low 12 bits */
    uint8_t reserved[6];
} ork_ebcom_multicast_group;
KEL_LAYOUT_SIZE(ork_ebcom_multicast_group, 8);
KEL_LAYOUT_AT(ork_ebcom_multicast_group, reserved, 2);

ork_rc ork_ebcom_multicast_group_create(void *ork, const ork_ebcom_multicast_group *group, uint64_t *handle,
                                        uint64_t scheduler);
ork_rc ork_ebcom_multicast_group_delete(void *ork, uint64_t handle);

/** Members are identified by their PCEP id, not by a handle. */
ork_rc ork_ebcom_multicast_member_add(void *ork, uint64_t group_handle, uint32_t pcep_id);
ork_rc ork_ebcom_multicast_member_rem(void *ork, uint64_t group_handle, uint32_t pcep_id);

/* ---- QoS: schedulers and queues ---- */

typedef struct ork_qos_rate {
    uint64_t rate;
    uint32_t bucketSize;
} ork_qos_rate;
KEL_LAYOUT_SIZE(ork_qos_rate, 16);
KEL_LAYOUT_AT(ork_qos_rate, bucketSize, 8);

/** The parameters of a new scheduler. */
typedef struct ork_qos_scheduler_params {
    void *parent; /**< null: directly under the root */
    uint8_t tsScriptId;
    uint32_t shapingMode;
    uint32_t schedulingMode;
    uint32_t arbitrationMode;
    uint32_t serviceQuantum;
    struct {
        ork_qos_rate peak;
        struct {
            ork_qos_rate sustain;
        } sr_mr_u;
    } qosRates;
    int8_t lengthCorrection;
    uint8_t outputIdSelect;
    uint32_t bpDestIndex;
    int8_t timeScale;
    uint32_t rootId;
    uint8_t orkRootParentLevel;
    uint16_t vsiEthDevId;
} ork_qos_scheduler_params;
KEL_LAYOUT_SIZE(ork_qos_scheduler_params, 88);
KEL_LAYOUT_AT(ork_qos_scheduler_params, tsScriptId, 8);
KEL_LAYOUT_AT(ork_qos_scheduler_params, shapingMode, 12);
KEL_LAYOUT_AT(ork_qos_scheduler_params, schedulingMode, 16);
KEL_LAYOUT_AT(ork_qos_scheduler_params, arbitrationMode, 20);
KEL_LAYOUT_AT(ork_qos_scheduler_params, serviceQuantum, 24);
KEL_LAYOUT_AT(ork_qos_scheduler_params, qosRates.peak, 32);
KEL_LAYOUT_AT(ork_qos_scheduler_params, qosRates.sr_mr_u.sustain, 48);
KEL_LAYOUT_AT(ork_qos_scheduler_params, lengthCorrection, 64);
KEL_LAYOUT_AT(ork_qos_scheduler_params, outputIdSelect, 65);
KEL_LAYOUT_AT(ork_qos_scheduler_params, bpDestIndex, 68);
KEL_LAYOUT_AT(ork_qos_scheduler_params, timeScale, 72);
KEL_LAYOUT_AT(ork_qos_scheduler_params, rootId, 76);
KEL_LAYOUT_AT(ork_qos_scheduler_params, orkRootParentLevel, 80);
KEL_LAYOUT_AT(ork_qos_scheduler_params, vsiEthDevId, 82);

ork_rc ork_qos_scheduler_create(void *ork, const ork_qos_scheduler_params *params, uint32_t zero, void **scheduler);
ork_rc ork_qos_scheduler_delete(void *ork, void *scheduler);

/** shapingMode of a queue: what ork_qos_queue_get() reports. */
enum ork_qos_queue_shaping { ORK_QOS_QUEUE_UNSHAPED = 3, ORK_QOS_QUEUE_SHAPED = 4 };

/** What the driver kit reports about a queue. */
typedef struct ork_qos_queue {
    uint64_t rate;
    uint32_t bucketSize;
    uint32_t shapingMode; /**< ::ork_qos_queue_shaping */
} ork_qos_queue;
KEL_LAYOUT_SIZE(ork_qos_queue, 16);
KEL_LAYOUT_AT(ork_qos_queue, bucketSize, 8);
KEL_LAYOUT_AT(ork_qos_queue, shapingMode, 12);

ork_rc ork_qos_queue_get(void *ork, void *queue, ork_qos_queue *record);

#ifdef __cplusplus
}
#endif

#endif

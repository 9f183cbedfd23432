/*
 * ork.h - the accelerator driver kit, as far as libkel-core-ic calls it.
 *
 * These are our own declarations of a closed library's interface. A site that has the vendor's header puts that
 * one in its place; nothing of ours is implemented here. Every record is the driver kit's wire format.
 */
#ifndef PLATFORM_ORK_H
#define PLATFORM_ORK_H

#include "platform/layout.h"

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

/** Yields the system handle that ork_sys_status_get() wants. This library passes 0 and 1 and ignores the result. */
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

/** Sets the offset that the accelerator adds to its timestamps. May be called beside any other operation. */
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

/* ---- QoS: schedulers and queues ---- */

typedef struct ork_qos_rate {
    uint64_t rate;
    uint32_t bucketSize;
} ork_qos_rate;
KEL_LAYOUT_SIZE(ork_qos_rate, 16);
KEL_LAYOUT_AT(ork_qos_rate, bucketSize, 8);

/** What a new scheduler is made from. */
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

/** What the driver kit tells of a queue. */
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

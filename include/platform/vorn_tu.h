/*
 * vorn_tu.h - the timing-unit client: the NPU's time offset and the events that announce its adjustment.
 *
 * Our own declarations of a closed library's interface, with names of ours for types, fields and constants.
 * Return codes are numbered like the driver kit's.
 */
#ifndef PLATFORM_VORN_TU_H
#define PLATFORM_VORN_TU_H

#include "layout.h"

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/** Event type that announces an adjusted NPU time offset. */
enum vorn_tu_event_type { VORN_TU_EVENT_ADJNPUOFFS = 6 };

typedef struct vorn_tu_event {
    uint32_t type; /**< ::vorn_tu_event_type, among others */
    uint32_t reserved;
    int32_t domain;
} vorn_tu_event;
KEL_LAYOUT_SIZE(vorn_tu_event, 12);
KEL_LAYOUT_AT(vorn_tu_event, domain, 8);

typedef struct vorn_tu_nputimeoffset {
    int64_t cycles;
    uint32_t frequency;
} vorn_tu_nputimeoffset;
KEL_LAYOUT_SIZE(vorn_tu_nputimeoffset, 16);
KEL_LAYOUT_AT(vorn_tu_nputimeoffset, frequency, 8);

int32_t vorn_tu_init(void **handle);
int32_t vorn_tu_subscribe_adjnpuoffs(void *handle, int32_t domain);

/** Blocks until an event arrives. The event belongs to the client until vorn_tu_free_event() returns it. */
int32_t vorn_tu_wait_event(void *handle, vorn_tu_event **event);
int32_t vorn_tu_free_event(void *handle, vorn_tu_event **event);

int32_t vorn_tu_get_nputimeoffset(void *handle, uint32_t zero, vorn_tu_nputimeoffset *reading);

#ifdef __cplusplus
}
#endif

#endif

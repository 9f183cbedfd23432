/*
 * kel_fmt.h - the formatting library: counters as text in a caller's buffer.
 *
 * Our own declarations of a closed library's interface, with names of ours for types, fields and constants. Every
 * function appends to the text in the buffer; `format` selects a layout of the formatting library.
 */
#ifndef PLATFORM_KEL_FMT_H
#define PLATFORM_KEL_FMT_H

#include "ork.h"

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

uint32_t kel_fmt_header(char *buf, uint32_t len, uint8_t format, const char *title);
uint32_t kel_fmt_uint32(char *buf, uint32_t len, uint8_t format, const char *label, uint32_t value);
uint32_t kel_fmt_ebcom_global_stats(char *buf, uint32_t len, uint8_t format, const ebcom_global_stats *stats);

/** `inbound` and `outbound` are the blocks of an ::ebcom_pcep_stats. */
uint32_t kel_fmt_ebcom_pcep_inbound_stats(char *buf, uint32_t len, uint8_t format, const void *inbound);
uint32_t kel_fmt_ebcom_pcep_outbound_stats(char *buf, uint32_t len, uint8_t format, const void *outbound);

/** Completes the text; returns whether it fitted. */
uint32_t kel_fmt_end(char *buf, uint32_t len);

#ifdef __cplusplus
}
#endif

#endif

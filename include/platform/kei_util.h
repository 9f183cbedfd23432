/*
 * kei_util.h - the utility library: texts for return codes and MAC addresses.
 *
 * Our own declarations of a closed library's interface, with names of ours for types, fields and constants.
 */
#ifndef PLATFORM_KEI_UTIL_H
#define PLATFORM_KEI_UTIL_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/** The text of a companion-library code. The text belongs to the utility library. */
const char *kei_util_init_rc_str_get(uint32_t rc);

/** Writes the text of a 6-byte MAC address, 17 characters and the terminator, and returns `text`. */
char *macAddr2str(char *text, const uint8_t *mac);

#ifdef __cplusplus
}
#endif

#endif

/**
 * @file kei_util.h
 * The utility library: texts for return codes and MAC addresses.
 *
 * Our own declarations of a closed library's interface, with names of ours for types, fields and constants.
 */
#ifndef PLATFORM_KEI_UTIL_H
#define PLATFORM_KEI_UTIL_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/**
 * The text of a return code, for messages: "success" for 0.
 *
 *     printf("path: %s\n", kei_util_init_rc_str_get(kel_core_ic_ebcom_path_add(&path)));
 *
 * @param rc what a function of libkel-core-ic or of the companion library returned
 * @return a text that belongs to the utility library.
 */
const char *kei_util_init_rc_str_get(uint32_t rc);

/**
 * Writes a MAC address as text.
 *
 * @param text 18 octets: 17 characters and the terminator
 * @param mac  6 bytes, wire order
 * @return text.
 */
char *macAddr2str(char *text, const uint8_t *mac);

#ifdef __cplusplus
}
#endif

#endif

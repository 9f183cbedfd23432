/*
 * kel_core_ic_pcep.h - the PCEP side: where a MAC address sits in the node.
 *
 * A MAC address tells the location of its owner in bytes 2 and 3, counted from 0:
 *
 *     const uint8_t peer[6] = {2, 0, 0, 2, 0, 1};
 *     uint32_t location, type;
 *     kel_ic_pcep_get_location_and_type_from_branch(peer, &location, &type);      // location 2, "OB"
 *
 * Threads and return codes are as in kel_core_ic_ebcom.h.
 */
#ifndef KEL_CORE_IC_PCEP_H
#define KEL_CORE_IC_PCEP_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

#pragma GCC visibility push(default)

/**
 * Tells where a MAC address sits and which PCEP type goes with it:
 *
 * | byte 3 | byte 2                            | location | type |
 * |--------|-----------------------------------|----------|------|
 * | 2      | any                               | 2 OB     | 2    |
 * | 3      | any                               | 3 HSFP   | 2    |
 * | 0      | 0x80 and above, or the own MP id  | 1 CPU    | 1    |
 * | other  | other                             | 4 EIOA   | 0    |
 *
 * The own MP id is the low 8 bits of the environment variable "MPID", in decimal. It is read when it is first needed
 * and kept once it is not 0.
 *
 * @param mac      6 bytes, wire order
 * @param location written always
 * @param type     written always
 * @return 0.
 */
uint32_t kel_ic_pcep_get_location_and_type_from_branch(const uint8_t *mac, uint32_t *location, uint32_t *type);

#pragma GCC visibility pop

#ifdef __cplusplus
}
#endif

#endif

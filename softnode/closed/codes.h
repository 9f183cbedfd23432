/*
 * codes.h - how each of the two code spaces puts a refusal.
 *
 *     refusal     driver kit, timing unit   companion library
 *     granted     0                         0
 *     invalid     INVAL (-1)                OUT_OF_RANGE (3)
 *     gone        NOTAVAIL (-8)             NOT_FOUND (4)
 *     busy        AGAIN (-4)                IN_USE (5)
 *     no_device   NOPORT (-3)               OUT_OF_RANGE (3)
 *     full        OUTOFRANGE (-9)           LIMIT (10)
 *     no_domain   NODOMAIN (-6)             FAILED (13)
 *     shut_down   SHUTDOWN (-5)             FAILED (13)
 */
#ifndef SOFTNODE_CODES_H
#define SOFTNODE_CODES_H

#include "softnode/common/refusal.h"
#include "softnode/platform.h"

#include <cstdint>

namespace softnode
{

ork_rc driver_kit_code(Refusal refusal);
std::uint32_t companion_code(Refusal refusal);

} // namespace softnode

#endif

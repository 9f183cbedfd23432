/*
 * refusal.h - why the node says no, and how each of the two code spaces puts it.
 *
 *     refusal     meaning                                                driver kit, timing unit   companion library
 *     granted     done                                                   0                         0
 *     invalid     handle null, never issued or of another kind;          INVAL (-1)                OUT_OF_RANGE (3)
 *                 null pointer; field or argument with an impossible
 *                 value
 *     gone        handle of an object that is no more; interface,        NOTAVAIL (-8)             NOT_FOUND (4)
 *                 path, PCEP, binding or member that is not there
 *     busy        scheduler that still has schedulers, queues or         AGAIN (-4)                IN_USE (5)
 *                 groups; PCEP still bound; group that still has
 *                 members; second interface, binding or membership;
 *                 PCEP id in use
 *     no_device   Ethernet device other than the event device            NOPORT (-3)               OUT_OF_RANGE (3)
 *     full        no room in a table                                     OUTOFRANGE (-9)           LIMIT (10)
 *     no_domain   timing domain other than 0                             NODOMAIN (-6)             FAILED (13)
 *     shut_down   the node was switched off during a wait                SHUTDOWN (-5)             FAILED (13)
 *
 * A refused call changes nothing, neither in the node nor in what the caller's output pointers point to.
 */
#ifndef SOFTNODE_REFUSAL_H
#define SOFTNODE_REFUSAL_H

#include "softnode/platform.h"

#include <cstdint>

namespace softnode
{

/* Not a scoped enumeration, so that a check reads `if (const Refusal refusal = ...) return refusal;`. */
enum Refusal : std::uint8_t { granted, invalid, gone, busy, no_device, full, no_domain, shut_down };

ork_rc driver_kit_code(Refusal refusal);
std::uint32_t companion_code(Refusal refusal);

} // namespace softnode

#endif

/*
 * refusal.h - why the node says no. How the closed libraries put it: closed/codes.h.
 *
 *     granted     done
 *     invalid     handle null, never issued or of another kind; null pointer; field or argument with an impossible value
 *     gone        handle of an object that no longer exists; interface, path, PCEP, binding or member that is not there
 *     busy        scheduler that still has schedulers, queues or groups; PCEP still bound; group that still has members;
 *                 second interface, binding or membership; PCEP id in use
 *     no_device   Ethernet device other than the event device
 *     full        no room in a table
 *     no_domain   timing domain other than 0
 *     shut_down   the node was switched off during a wait
 *
 * A refused call changes nothing, neither in the node nor in what the caller's output pointers point to.
 */
#ifndef SOFTNODE_REFUSAL_H
#define SOFTNODE_REFUSAL_H

#include <cstdint>

namespace softnode
{

/* Not a scoped enumeration, so that a check reads `if (const Refusal refusal = ...) return refusal;`. */
enum Refusal : std::uint8_t { granted, invalid, gone, busy, no_device, full, no_domain, shut_down };

} // namespace softnode

#endif

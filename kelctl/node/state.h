// Everything that is counted of a node and drawn of it, in one document for those that watch it from outside.
#pragma once

#include "kelctl/results/result.h"
#include "kelctl/session/session.h"

namespace kelctl
{

// What read_statistics() shows, and with it:
//
// - `real`: when it was read, and `since`: when the session began; nanoseconds of this machine's monotonic clock.
//   `virtual`: those of virtual time, null on a vendor's platform.
// - `operations`: how many calls of each `operation` of the library returned each `code`.
// - `timestamp`: `real` of the last offset that the timestamp thread wrote; null before it, and without the tracer.
// - `schedulers`: their `name`s and the one `above`, null for the line.
// - of each queue its `scheduler`; `rate` in kbit/s, `burst` and `threshold` in octets, null if it is unshaped. Of each
//   PCEP the `location` of its local address. `made`: a number that no other queue or PCEP of the session had.
// - `groups`: `id` and `members`.
result take_state(session &session);

} // namespace kelctl

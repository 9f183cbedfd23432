// Makes of what exists what is wanted: `diff` and `apply`. The wanted node comes as the lines of a node file; nothing
// here opens a file.
#pragma once

#include "kelctl/language/command.h"
#include "kelctl/results/result.h"
#include "kelctl/session/session.h"

#include <vector>

namespace kelctl
{

// What would have to change. The status is 0 when nothing would, and 1 when anything would.
result difference_from(const std::vector<invocation> &wanted, session &session);

// Carries the difference out. After a step that fails, or a signal between two steps, the old node is restored as far
// as that can be; `left` of what is shown lists what is not as it was. An MP id that differs is refused before anything
// is done. `dry_run`: shows the steps and does nothing.
result apply(const std::vector<invocation> &wanted, bool dry_run, session &session);

} // namespace kelctl

// Brings the library, the session and the accelerator together again after a step of a change failed: what operations
// leave behind is docs/limits-and-sharp-edges.md.
#pragma once

#include "kelctl/change/discrepancies.h"
#include "kelctl/language/command.h"
#include "kelctl/session/session.h"

#include <cstdint>
#include <optional>

namespace kelctl
{

// `step`, which made or removed an object, failed with this code. Returns what it may have left that nobody can tell,
// and that stays.
std::optional<discrepancy> repair(const invocation &step, uint32_t code, session &session);

} // namespace kelctl

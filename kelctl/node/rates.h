// How fast counters went between two readings of them.
#pragma once

#include "kelctl/session/result.h"

#include <cstdint>

namespace kelctl
{

// Both readings are of the same queues and PCEPs (statistics.h); `passed` is what lies between, `time` when the second one
// was made, in nanoseconds. As docs/kelctl-json.md has it.
fields rates_between(const fields &before, const fields &now, uint64_t passed, uint64_t time);

} // namespace kelctl

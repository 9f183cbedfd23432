// Rates between two readings of the counters: what the live view shows. Its columns are views/counter_tables.cpp.
#pragma once

#include "kelctl/session/result.h"

#include <cstdint>

namespace kelctl
{

// `before` and `now` are what read_statistics() (statistics.h) showed, of the same queues and PCEPs. `passed`: virtual
// time between the two, not 0; `time`: virtual time of the second one since the first; both in nanoseconds. Returns the
// document of a step in docs/kelctl-json.md.
fields rates_between(const fields &before, const fields &now, uint64_t passed, uint64_t time);

} // namespace kelctl

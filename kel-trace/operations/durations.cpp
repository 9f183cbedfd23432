// Adds durations, and keeps the time at which the largest one began.
#include "kel-trace/operations/durations.h"

#include <algorithm>

namespace kel_trace
{

void durations::add(int64_t nanoseconds, int64_t begin)
{
    const auto lasted = static_cast<uint64_t>(std::max<int64_t>(nanoseconds, 0));
    if (spread.count() == 0 || lasted > spread.largest())
        largest_at = begin;
    spread.add(lasted);
}

void durations::add(const durations &other)
{
    if (other.spread.count() != 0 && (spread.count() == 0 || other.spread.largest() > spread.largest()))
        largest_at = other.largest_at;
    spread.add(other.spread);
}

} // namespace kel_trace

/*
 * virtual_clock.cpp - time that passes when it is told to, and its end.
 */
#include "softnode/traffic/virtual_clock.h"

#include <limits>

namespace softnode
{

namespace
{

constexpr Instant end_of_time = std::numeric_limits<Instant>::max();

} // namespace

std::optional<Instant> instant_at(Wide nanoseconds)
{
    if (nanoseconds > end_of_time)
        return std::nullopt;
    return static_cast<Instant>(nanoseconds);
}

Instant VirtualClock::now() const
{
    return now_;
}

void VirtualClock::advance(std::uint64_t nanoseconds)
{
    now_ = instant_at(Wide{now_} + nanoseconds).value_or(end_of_time);
}

void VirtualClock::reset()
{
    now_ = 0;
}

} // namespace softnode

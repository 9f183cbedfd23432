/*
 * virtual_clock.cpp - time that passes when it is advanced, and its end.
 */
#include "softnode/traffic/virtual_clock.h"

#include <algorithm>

namespace softnode
{

Instant VirtualClock::now() const
{
    return now_;
}

void VirtualClock::advance(std::uint64_t nanoseconds)
{
    now_ += std::min(nanoseconds, end_of_time - now_);
}

void VirtualClock::reset()
{
    now_ = 0;
}

} // namespace softnode

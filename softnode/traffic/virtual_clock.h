/*
 * virtual_clock.h - virtual time: nanoseconds since the node was switched on. It passes only when it is advanced.
 */
#ifndef SOFTNODE_VIRTUAL_CLOCK_H
#define SOFTNODE_VIRTUAL_CLOCK_H

#include <cstdint>
#include <limits>

namespace softnode
{

using Instant = std::uint64_t;

/* Room for what the highest rate moves in all of time. */
using Wide = unsigned __int128;

/* An instant to come. One behind the end of time does not. */
using Future = Wide;

constexpr Instant end_of_time = std::numeric_limits<Instant>::max();
constexpr Future never = ~Future{0};

class VirtualClock
{
public:
    Instant now() const;

    /** Lets time pass. It stops at the last instant, 584 years on. */
    void advance(std::uint64_t nanoseconds);

    void reset();

private:
    Instant now_ = 0;
};

} // namespace softnode

#endif

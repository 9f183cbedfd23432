/*
 * virtual_clock.h - virtual time: nanoseconds since the node was switched on. It stands still until it is told to pass.
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

    /** Lets time pass. It ends with the last instant there is, 584 years on, and stands still there. */
    void advance(std::uint64_t nanoseconds);

    void reset();

private:
    Instant now_ = 0;
};

} // namespace softnode

#endif

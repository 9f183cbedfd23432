/*
 * rate.h - what a rate moves in a time, exactly.
 *
 * A rate of 1 kbit/s moves 1,000 bits in 1,000,000,000 nanoseconds: a microbit in each. So whole kbit/s over whole
 * nanoseconds make whole microbits, and what is counted in them never has to be rounded.
 *
 * Frames leave at whole nanoseconds: at the first one by which they can. What a frame could leave earlier by is its
 * lead. Buckets and lines count from that very moment, so no fraction is lost on the way from frame to frame.
 */
#ifndef SOFTNODE_RATE_H
#define SOFTNODE_RATE_H

#include "softnode/traffic/virtual_clock.h"

#include <algorithm>
#include <cstdint>

namespace softnode
{

/* kbit/s */
using Rate = std::uint64_t;

using Microbits = Wide;

constexpr Microbits microbits_of(std::uint32_t octets)
{
    return Microbits{octets} * 8'000'000;
}

constexpr Microbits moved(Rate rate, std::uint64_t nanoseconds)
{
    return Microbits{rate} * nanoseconds;
}

/* A part of a nanosecond, at most a whole one: part / whole. */
struct Lead {
    Microbits part = 0;
    Microbits whole = 1;
};

constexpr bool operator<(const Lead &left, const Lead &right)
{
    return left.part * right.whole < right.part * left.whole;
}

/** What a rate moves in a lead; a part of a microbit counts as one. */
constexpr Microbits moved(Rate rate, const Lead &lead)
{
    return (lead.part * rate + lead.whole - 1) / lead.whole;
}

/** The lead of somebody who could go when a rate, not 0, was to move so much more. */
constexpr Lead lead_of(Microbits spare, Rate rate)
{
    return {std::min<Microbits>(spare, rate), rate};
}

/** Nanoseconds until a rate, not 0, has moved so much; a part of one counts as one. */
constexpr Wide time_to_move(Microbits microbits, Rate rate)
{
    return (microbits + rate - 1) / rate;
}

} // namespace softnode

#endif

/*
 * rate.h - what a rate moves in a time, exactly.
 *
 * A rate of 1 kbit/s moves 1,000 bits in 1,000,000,000 nanoseconds: a microbit in each. So whole kbit/s over whole
 * nanoseconds make whole microbits, and what is counted in them never has to be rounded.
 */
#ifndef SOFTNODE_RATE_H
#define SOFTNODE_RATE_H

#include "softnode/traffic/virtual_clock.h"

#include <cstdint>

namespace softnode
{

/* kbit/s */
using Rate = std::uint64_t;

/* Less than none: owed. 2^32 octets are 3.4e16. */
using Microbits = std::int64_t;

constexpr Microbits microbits_of(std::uint32_t octets)
{
    return Microbits{octets} * 8'000'000;
}

constexpr Wide moved(Rate rate, std::uint64_t nanoseconds)
{
    return Wide{rate} * nanoseconds;
}

/** Nanoseconds until a rate, not 0, has moved so much; a part of one counts as one. */
constexpr std::uint64_t time_to_move(std::uint64_t microbits, Rate rate)
{
    return microbits / rate + (microbits % rate != 0 ? 1 : 0);
}

} // namespace softnode

#endif

/*
 * token_bucket.cpp - tokens in and out.
 */
#include "softnode/traffic/token_bucket.h"

#include <algorithm>

namespace softnode
{

TokenBucket::TokenBucket(Rate rate, std::uint32_t burst) : rate_(rate), depth_(microbits_of(burst)), level_(depth_)
{
}

Future TokenBucket::opens_at() const
{
    if (level_ >= 0)
        return as_of_;
    if (rate_ == 0)
        return never;
    return Future{as_of_} + time_to_move(static_cast<std::uint64_t>(-level_), rate_);
}

void TokenBucket::charge(std::uint32_t octets, Instant now)
{
    const Microbits cost = microbits_of(octets);
    const Microbits most = std::max(depth_, cost);
    const Wide came_in = moved(rate_, now - as_of_);
    const Microbits held = came_in < static_cast<Wide>(most - level_) ? level_ + static_cast<Microbits>(came_in) : most;
    level_ = held - cost;
    as_of_ = now;
}

} // namespace softnode

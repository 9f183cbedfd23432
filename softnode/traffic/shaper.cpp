/*
 * shaper.cpp - every frame through every bucket.
 */
#include "softnode/traffic/shaper.h"

#include <algorithm>

namespace softnode
{

Shaper::Shaper(std::initializer_list<Limit> limits, std::int8_t correction) : correction_(correction)
{
    for (const Limit &limit : limits)
        if (limit.rate != 0 || limit.burst != 0)
            buckets_.emplace_back(limit.rate, limit.burst);
}

void Shaper::charge_buckets(std::uint32_t octets, Instant now)
{
    const auto cost = static_cast<std::uint32_t>(std::max<std::int64_t>(std::int64_t{octets} + correction_, 0));
    for (TokenBucket &bucket : buckets_) {
        bucket.charge(cost, now);
        opens_at_ = std::max(opens_at_, bucket.opens_at());
    }
}

} // namespace softnode

/*
 * token_bucket.cpp - tokens in and out.
 */
#include "softnode/traffic/token_bucket.h"

#include <algorithm>

namespace softnode
{

TokenBucket::TokenBucket(Rate rate, std::uint32_t depth)
    : rate_(rate), depth_(microbits_of(depth)), level_(microbits_of(depth))
{
}

bool TokenBucket::deep_enough_for(std::uint32_t octets) const
{
    return microbits_of(octets) <= depth_;
}

std::optional<Instant> TokenBucket::ready_at(std::uint32_t octets) const
{
    const Microbits wanted = microbits_of(octets);
    if (wanted <= level_)
        return as_of_;
    if (rate_ == 0 || wanted > depth_)
        return std::nullopt;
    return instant_at(as_of_ + time_to_move(wanted - level_, rate_));
}

Lead TokenBucket::lead(std::uint32_t octets, Instant now) const
{
    if (rate_ == 0)
        return {1, 1};
    return lead_of(level_ + moved(rate_, now - as_of_) - microbits_of(octets), rate_);
}

void TokenBucket::take(std::uint32_t octets, Instant now, const Lead &lead)
{
    /* No more than the depth when the frame could leave, and what came in since. */
    const Microbits most = depth_ + moved(rate_, lead);
    level_ = std::min(level_ + moved(rate_, now - as_of_), most) - microbits_of(octets);
    as_of_ = now;
}

} // namespace softnode

/*
 * shaper.h - how much a queue or a scheduler lets through: one token bucket for each limit that it has.
 */
#ifndef SOFTNODE_SHAPER_H
#define SOFTNODE_SHAPER_H

#include "softnode/traffic/token_bucket.h"

#include <cstdint>
#include <initializer_list>
#include <vector>

namespace softnode
{

/* A rate without a burst limits, and so does a burst without a rate: it is spent once. Neither: no limit. */
struct Limit {
    Rate rate = 0;           /* kbit/s */
    std::uint32_t burst = 0; /* octets */
};

class Shaper
{
public:
    /** correction: octets that each frame costs beside its own */
    Shaper(std::initializer_list<Limit> limits, std::int8_t correction);

    /** The first instant at which every bucket lets a frame go, maybe long ago. */
    Future opens_at() const
    {
        return opens_at_;
    }

    /** A frame leaves, at an instant no earlier than opens_at(). */
    void charge(std::uint32_t octets, Instant now)
    {
        if (!buckets_.empty())
            charge_buckets(octets, now);
    }

private:
    void charge_buckets(std::uint32_t octets, Instant now);

    std::vector<TokenBucket> buckets_;
    std::int8_t correction_;
    Future opens_at_ = 0;
};

} // namespace softnode

#endif

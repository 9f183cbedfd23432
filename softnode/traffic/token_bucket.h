/*
 * token_bucket.h - a token bucket: an octet of a frame costs an octet of tokens, tokens come in at a rate, and there
 * are never more of them than the bucket is deep. It is full at first.
 *
 * A queue that always has a frame waiting sends exactly at its rate, also where the bucket is as small as a frame, if
 * nothing but its tokens keeps the frame. Tokens that come in while it waits for its neighbours' turns, and find no
 * room in the bucket, are lost.
 */
#ifndef SOFTNODE_TOKEN_BUCKET_H
#define SOFTNODE_TOKEN_BUCKET_H

#include "softnode/traffic/rate.h"
#include "softnode/traffic/virtual_clock.h"

#include <cstdint>
#include <optional>

namespace softnode
{

class TokenBucket
{
public:
    /** depth: octets */
    TokenBucket(Rate rate, std::uint32_t depth);

    /** Whether it can hold enough for a frame at all. */
    bool deep_enough_for(std::uint32_t octets) const;

    /** The first instant at which there is enough for a frame, maybe long ago; null: never. */
    std::optional<Instant> ready_at(std::uint32_t octets) const;

    /** The lead of a frame that waited for tokens alone, at an instant no earlier than ready_at(). */
    Lead lead(std::uint32_t octets, Instant now) const;

    /** A frame leaves, at an instant no earlier than ready_at(), with a lead no longer than lead(). */
    void take(std::uint32_t octets, Instant now, const Lead &lead);

private:
    Rate rate_;
    Microbits depth_;
    Microbits level_;
    Instant as_of_ = 0; /* when there was as much as level_ */
};

} // namespace softnode

#endif

/*
 * token_bucket.h - a token bucket: an octet of a frame costs an octet of tokens, tokens come in at a rate, and the
 * bucket holds no more than its burst. It is full at first.
 *
 * A frame may leave while nothing is owed, and takes what it costs, also what is not there: the next one waits until
 * that has come in. A bucket holds what the frame that leaves costs, also where its burst is less. So frames that wait
 * for their tokens alone leave exactly at the rate, however small the burst is: a nanosecond brings in less than a
 * frame.
 */
#ifndef SOFTNODE_TOKEN_BUCKET_H
#define SOFTNODE_TOKEN_BUCKET_H

#include "softnode/traffic/rate.h"

#include <cstdint>

namespace softnode
{

class TokenBucket
{
public:
    /** burst: octets */
    TokenBucket(Rate rate, std::uint32_t burst);

    /** The first instant at which nothing is owed, maybe long ago. */
    Future opens_at() const;

    /** A frame leaves, at an instant no earlier than opens_at(). */
    void charge(std::uint32_t octets, Instant now);

private:
    Rate rate_;
    Microbits depth_;
    Microbits level_;
    Instant as_of_ = 0; /* when there was as much as level_ */
};

} // namespace softnode

#endif

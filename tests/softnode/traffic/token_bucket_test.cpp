/*
 * token_bucket_test.cpp - a token bucket alone.
 */
#include "softnode/traffic/token_bucket.h"

#include <gtest/gtest.h>

#include <limits>

using namespace softnode;

namespace
{

constexpr Instant last = std::numeric_limits<Instant>::max();
constexpr std::uint32_t deepest = std::numeric_limits<std::uint32_t>::max();

/* A frame leaves that waited for nothing but its tokens. */
void take(TokenBucket &bucket, std::uint32_t octets, Instant now)
{
    bucket.take(octets, now, bucket.lead(octets, now));
}

/* Has frames of one length leave as early as they can, from time 0 on. @return when the last one left */
Instant send(TokenBucket bucket, std::uint32_t frames, std::uint32_t octets)
{
    Instant now = 0;
    for (std::uint32_t frame = 0; frame < frames; ++frame) {
        const std::optional<Instant> ready = bucket.ready_at(octets);
        EXPECT_TRUE(ready);
        now = std::max(now, ready.value_or(now));
        take(bucket, octets, now);
    }
    return now;
}

} // namespace

TEST(TokenBucket, IsFullAtFirst)
{
    TokenBucket bucket(8, 3000);
    EXPECT_EQ(bucket.ready_at(3000), 0U);
    EXPECT_EQ(send(bucket, 2, 1500), 0U);
}

TEST(TokenBucket, WaitsForWhatIsMissing)
{
    /* 8 kbit/s are an octet in a millisecond. */
    TokenBucket bucket(8, 3000);
    take(bucket, 3000, 0);
    EXPECT_EQ(bucket.ready_at(1), 1'000'000U);
    EXPECT_EQ(bucket.ready_at(1500), 1'500'000'000U);
    take(bucket, 1500, 1'500'000'000);
    EXPECT_EQ(bucket.ready_at(3000), 4'500'000'000U);
}

TEST(TokenBucket, HoldsNoMoreThanItsDepth)
{
    TokenBucket bucket(8'000'000, 1000);
    EXPECT_TRUE(bucket.deep_enough_for(1000));
    EXPECT_FALSE(bucket.deep_enough_for(1001));
    EXPECT_FALSE(bucket.ready_at(1001));
    take(bucket, 1000, 0);
    bucket.take(1000, 1'000'000, {});
    EXPECT_EQ(bucket.ready_at(1), 1'000'001U) << "a rate of an octet a nanosecond, and nothing left over";
}

TEST(TokenBucket, WithoutARateGivesItsDepthAndThenNothing)
{
    TokenBucket bucket(0, 3000);
    for (const Instant now : {0U, 0U, 5U})
        take(bucket, 1000, now);
    EXPECT_FALSE(bucket.ready_at(1));
}

TEST(TokenBucket, WithoutADepthGivesNothing)
{
    EXPECT_FALSE(TokenBucket(8'000'000, 0).deep_enough_for(1));
    EXPECT_FALSE(TokenBucket(8'000'000, 0).ready_at(1));
}

TEST(TokenBucket, LosesNoFractionOfANanosecond)
{
    /* 64 octets at 9.9 Gbit/s take 51.717... nanoseconds: 10 Gbit/s for 99 of them would be 5120. */
    EXPECT_EQ(send(TokenBucket(9'900'000, 64), 100, 64), 5120U);
    EXPECT_EQ(send(TokenBucket(9'900'000, 64), 990'001, 64), 51'200'000U);
    /* Three in eight nanoseconds. */
    EXPECT_EQ(send(TokenBucket(3'000'000, 1), 300'001, 1), 800'000U);
}

TEST(TokenBucket, AFrameThatDidNotWaitCountsFromItsInstant)
{
    TokenBucket bucket(9'900'000, 64);
    bucket.take(64, 1000, {});
    EXPECT_EQ(bucket.ready_at(64), 1052U);
    bucket.take(64, 2000, {});
    EXPECT_EQ(bucket.ready_at(64), 2052U);
}

TEST(TokenBucket, AFrameThatWaitedLeavesBehindTheRestOfItsNanosecond)
{
    TokenBucket bucket(9'900'000, 64);
    take(bucket, 64, 0);
    take(bucket, 64, 52);
    EXPECT_EQ(bucket.ready_at(64), 104U) << "103.43";
    take(bucket, 64, 104);
    EXPECT_EQ(bucket.ready_at(64), 156U) << "155.15";
    take(bucket, 64, 156);
    EXPECT_EQ(bucket.ready_at(64), 207U) << "206.87";
}

TEST(TokenBucket, AFrameThatWaitedForSomethingElseLeavesNothingAboveTheDepth)
{
    TokenBucket bucket(8'000'000, 1000);
    bucket.take(1000, 500, {});
    EXPECT_EQ(bucket.ready_at(1000), 1500U);
    bucket.take(1000, 3000, {1, 2});
    EXPECT_EQ(bucket.ready_at(1), 3001U) << "it has half an octet";
    EXPECT_EQ(bucket.ready_at(1000), 4000U) << "3999.5";
}

TEST(TokenBucket, NeverIsWhenTimeEndsBefore)
{
    TokenBucket bucket(1, deepest);
    bucket.take(deepest, last - 1, {});
    EXPECT_FALSE(bucket.ready_at(1));
}

TEST(TokenBucket, StandsTheHighestRateOverAllOfTime)
{
    TokenBucket bucket(deepest, deepest);
    take(bucket, deepest, last);
    EXPECT_EQ(bucket.ready_at(536), last) << "what the highest rate moves in a nanosecond";
    EXPECT_FALSE(bucket.ready_at(537));
}

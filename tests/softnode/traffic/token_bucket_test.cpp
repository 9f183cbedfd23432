/*
 * token_bucket_test.cpp - a token bucket alone.
 */
#include "softnode/traffic/token_bucket.h"
#include "traffic/instants.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>

using namespace softnode;

namespace
{

constexpr std::uint32_t deepest = std::numeric_limits<std::uint32_t>::max();

/* Has frames of one length leave as early as they can, from time 0 on. @return when the last one left */
Instant send(TokenBucket bucket, std::uint32_t frames, std::uint32_t octets)
{
    Instant now = 0;
    for (std::uint32_t frame = 0; frame < frames; ++frame) {
        now = static_cast<Instant>(std::max(Future{now}, bucket.opens_at()));
        bucket.charge(octets, now);
    }
    return now;
}

} // namespace

TEST(TokenBucket, IsFullAtFirst)
{
    EXPECT_EQ(send(TokenBucket(8, 3000), 3, 1500), 0U) << "after two of them nothing is owed";
    EXPECT_EQ(send(TokenBucket(8, 3000), 4, 1500), 1500 * millisecond);
}

TEST(TokenBucket, AFrameMayTakeWhatIsNotThereAndTheNextOneWaitsForIt)
{
    TokenBucket bucket(8, 1499);
    bucket.charge(1500, 0);
    EXPECT_TRUE(bucket.opens_at() == millisecond);
    bucket.charge(1500, millisecond);
    EXPECT_TRUE(bucket.opens_at() == 1501 * millisecond);
}

TEST(TokenBucket, IsOpenWhileNothingIsOwed)
{
    TokenBucket bucket(8, 1500);
    bucket.charge(1500, 0);
    EXPECT_TRUE(bucket.opens_at() == 0) << "a frame that takes all that is there";
    bucket.charge(1, 0);
    EXPECT_TRUE(bucket.opens_at() == millisecond);
}

TEST(TokenBucket, HoldsNoMoreThanItsBurst)
{
    TokenBucket bucket(8, 1000);
    bucket.charge(600, 0);
    bucket.charge(600, 10'000 * millisecond);
    bucket.charge(600, 10'000 * millisecond);
    EXPECT_TRUE(bucket.opens_at() == 10'200 * millisecond);
}

TEST(TokenBucket, HoldsTheFrameThatLeavesHoweverSmallItsBurst)
{
    TokenBucket bucket(8, 0);
    bucket.charge(600, 10'000 * millisecond);
    EXPECT_TRUE(bucket.opens_at() == 10'000 * millisecond);
    bucket.charge(600, 10'000 * millisecond);
    EXPECT_TRUE(bucket.opens_at() == 10'600 * millisecond);
    bucket.charge(600, 11'000 * millisecond);
    EXPECT_TRUE(bucket.opens_at() == 11'200 * millisecond) << "400 octets came in while it waited for something else";
}

TEST(TokenBucket, WithoutARateLetsItsBurstPassAndTheFrameThatOwes)
{
    TokenBucket bucket(0, 2500);
    for (int frame = 0; frame < 2; ++frame)
        bucket.charge(1000, 0);
    EXPECT_TRUE(bucket.opens_at() == 0);
    bucket.charge(1000, 5);
    EXPECT_TRUE(bucket.opens_at() == never);
}

TEST(TokenBucket, WithoutARateAFrameOfAllThatIsLeftLeavesItOpen)
{
    TokenBucket bucket(0, 2500);
    bucket.charge(2500, 0);
    EXPECT_TRUE(bucket.opens_at() == 0);
    bucket.charge(1, 0);
    EXPECT_TRUE(bucket.opens_at() == never);
}

TEST(TokenBucket, LosesNoFractionOfANanosecondWhateverItsBurst)
{
    /* 64 octets at 9.9 Gbit/s take 51.717... nanoseconds: 99 of them 5120. */
    for (const std::uint32_t burst : {0U, 1U}) {
        EXPECT_EQ(send(TokenBucket(9'900'000, burst), 100, 64), 5120U);
        EXPECT_EQ(send(TokenBucket(9'900'000, burst), 990'001, 64), 51'200'000U);
    }
    EXPECT_EQ(send(TokenBucket(9'900'000, 64), 990'002, 64), 51'200'000U);
    /* Three in eight nanoseconds. */
    EXPECT_EQ(send(TokenBucket(3'000'000, 0), 300'001, 1), 800'000U);
}

TEST(TokenBucket, WhatWouldComeInAfterTheEndOfTimeNeverDoes)
{
    TokenBucket bucket(1, deepest);
    bucket.charge(deepest, end_of_time - 1);
    bucket.charge(1, end_of_time - 1);
    EXPECT_TRUE(bucket.opens_at() > end_of_time);
}

TEST(TokenBucket, StandsTheHighestRateOverAllOfTime)
{
    TokenBucket bucket(std::numeric_limits<Rate>::max(), deepest);
    bucket.charge(deepest, end_of_time);
    EXPECT_TRUE(bucket.opens_at() == end_of_time);
    bucket.charge(deepest, end_of_time);
    EXPECT_TRUE(bucket.opens_at() == Future{end_of_time} + 1);
}

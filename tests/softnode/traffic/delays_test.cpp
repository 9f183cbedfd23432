/*
 * delays_test.cpp - sums, and quantiles within 1 %.
 */
#include "softnode/traffic/delays.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <random>
#include <vector>

using softnode::Delays;

namespace
{

/* Compares with what sorting finds. */
void expect_close(const std::vector<std::uint64_t> &values)
{
    Delays delays;
    for (const std::uint64_t value : values)
        delays.add(value);
    std::vector<std::uint64_t> sorted = values;
    std::sort(sorted.begin(), sorted.end());
    for (const std::uint32_t percent : {1U, 50U, 99U, 100U}) {
        const auto exact = static_cast<double>(sorted[(sorted.size() * percent + 99) / 100 - 1]);
        EXPECT_NEAR(static_cast<double>(delays.percentile(percent)), exact, exact / 100) << percent;
    }
    EXPECT_EQ(delays.largest(), sorted.back());
    EXPECT_EQ(delays.frames(), sorted.size());
}

} // namespace

TEST(Delays, AreNothingAtFirst)
{
    const Delays delays;
    EXPECT_EQ(delays.frames(), 0U);
    EXPECT_EQ(delays.sum(), 0U);
    EXPECT_EQ(delays.largest(), 0U);
    EXPECT_EQ(delays.percentile(50), 0U);
}

TEST(Delays, ShortOnesAreExact)
{
    Delays delays;
    for (std::uint64_t delay = 0; delay < 128; ++delay)
        delays.add(delay);
    EXPECT_EQ(delays.percentile(50), 63U);
    EXPECT_EQ(delays.percentile(99), 126U);
    EXPECT_EQ(delays.percentile(100), 127U);
    EXPECT_EQ(delays.sum(), 127U * 128 / 2);
}

TEST(Delays, HalfOfTheFramesWaitedForTheMedianAtMost)
{
    Delays delays;
    for (const std::uint64_t delay : {10U, 20U, 30U, 40U, 50U})
        delays.add(delay);
    EXPECT_EQ(delays.percentile(50), 30U);
    delays.add(60);
    EXPECT_EQ(delays.percentile(50), 30U);
    EXPECT_EQ(delays.percentile(51), 40U);
}

TEST(Delays, NoneIsOverTheLargest)
{
    Delays delays;
    delays.add(1'000'000);
    EXPECT_EQ(delays.percentile(50), 1'000'000U);
}

TEST(Delays, QuantilesOfAnyMagnitudeAreWithinAHundredth)
{
    std::mt19937_64 random(1);
    for (unsigned bits = 1; bits <= 64; ++bits) {
        std::vector<std::uint64_t> values(1001);
        for (std::uint64_t &value : values)
            value = random() >> (64 - bits);
        expect_close(values);
    }
}

TEST(Delays, EveryDelayHasAPlace)
{
    for (unsigned bit = 0; bit < 64; ++bit)
        for (const std::uint64_t value : {(std::uint64_t{1} << bit) - 1, std::uint64_t{1} << bit})
            expect_close({value});
    expect_close({std::numeric_limits<std::uint64_t>::max()});
}

// Sums, and quantiles within 1 %.
#include "counting/histogram.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <random>
#include <vector>

namespace counting
{
namespace
{

// Compares with what sorting finds.
void expect_close(const std::vector<uint64_t> &values)
{
    histogram all;
    for (const uint64_t value : values)
        all.add(value);
    std::vector<uint64_t> sorted = values;
    std::sort(sorted.begin(), sorted.end());
    for (const unsigned percent : {1U, 50U, 99U, 100U}) {
        const auto exact = static_cast<double>(sorted[(sorted.size() * percent + 99) / 100 - 1]);
        EXPECT_NEAR(static_cast<double>(all.quantile(percent)), exact, exact / 100) << percent;
    }
    EXPECT_EQ(all.largest(), sorted.back());
    EXPECT_EQ(all.count(), sorted.size());
}

TEST(Histogram, IsEmptyAtFirst)
{
    const histogram all;
    EXPECT_EQ(all.count(), 0U);
    EXPECT_EQ(all.sum(), 0U);
    EXPECT_EQ(all.largest(), 0U);
    EXPECT_EQ(all.quantile(50), 0U);
}

TEST(Histogram, SmallOnesAreExact)
{
    histogram all;
    for (uint64_t one = 0; one < 128; ++one)
        all.add(one);
    EXPECT_EQ(all.quantile(50), 63U);
    EXPECT_EQ(all.quantile(99), 126U);
    EXPECT_EQ(all.quantile(100), 127U);
    EXPECT_EQ(all.sum(), 127U * 128 / 2);
}

TEST(Histogram, HalfAreTheMedianAtMost)
{
    histogram all;
    for (const uint64_t one : {10U, 20U, 30U, 40U, 50U})
        all.add(one);
    EXPECT_EQ(all.quantile(50), 30U);
    all.add(60);
    EXPECT_EQ(all.quantile(50), 30U);
    EXPECT_EQ(all.quantile(51), 40U);
}

TEST(Histogram, NoneIsOverTheLargest)
{
    histogram all;
    all.add(1'000'000);
    EXPECT_EQ(all.quantile(50), 1'000'000U);
}

TEST(Histogram, QuantilesOfAnyMagnitudeAreWithinAHundredth)
{
    std::mt19937_64 random(1);
    for (unsigned bits = 1; bits <= 64; ++bits) {
        std::vector<uint64_t> values(1001);
        for (uint64_t &value : values)
            value = random() >> (64 - bits);
        expect_close(values);
    }
}

TEST(Histogram, EveryNumberHasAPlace)
{
    for (unsigned bit = 0; bit < 64; ++bit)
        for (const uint64_t value : {(uint64_t{1} << bit) - 1, uint64_t{1} << bit})
            expect_close({value});
    expect_close({std::numeric_limits<uint64_t>::max()});
}

TEST(Histogram, EqualOnesHaveExactQuantiles)
{
    histogram all;
    for (int i = 0; i < 10; ++i)
        all.add(5'000'000);
    EXPECT_EQ(all.quantile(1), 5'000'000U);
    EXPECT_EQ(all.quantile(99), 5'000'000U);
}

TEST(Histogram, SumIsAsIfAddedOneByOne)
{
    histogram one;
    histogram other;
    histogram both;
    for (uint64_t value = 1; value < 2000; value += 7) {
        (value % 2 ? one : other).add(value * value);
        both.add(value * value);
    }
    one.add(histogram());
    one.add(other);
    EXPECT_EQ(one.count(), both.count());
    EXPECT_EQ(one.sum(), both.sum());
    EXPECT_EQ(one.largest(), both.largest());
    for (const unsigned percent : {1U, 50U, 99U})
        EXPECT_EQ(one.quantile(percent), both.quantile(percent)) << percent;
}

} // namespace
} // namespace counting

// Sums, largest and quantiles.
#include "kel-trace/operations/durations.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

namespace kel_trace
{
namespace
{

TEST(Durations, TotalAndLargestAreExact)
{
    durations all;
    for (const int64_t one : {5'000'000, 7, 5'000'001, 3})
        all.add(one, one * 10);
    EXPECT_EQ(all.count(), 4U);
    EXPECT_EQ(all.total(), 10'000'011);
    EXPECT_EQ(all.largest(), 5'000'001);
    EXPECT_EQ(all.largest_at(), 50'000'010);
}

TEST(Durations, EqualOnesHaveExactQuantiles)
{
    durations all;
    for (int i = 0; i < 10; ++i)
        all.add(5'000'000, 0);
    EXPECT_EQ(all.quantile(50), 5'000'000);
    EXPECT_EQ(all.quantile(99), 5'000'000);
}

TEST(Durations, QuantilesAreWithinOnePercent)
{
    durations all;
    std::vector<int64_t> values;
    uint64_t state = 1;
    for (int i = 0; i < 10'000; ++i) { // over ten powers of two
        state = state * 6364136223846793005U + 1442695040888963407U;
        values.push_back(static_cast<int64_t>((state >> 33) % (uint64_t{1000} << (i % 10))) + 1);
        all.add(values.back(), 0);
    }
    std::ranges::sort(values);
    for (const unsigned percent : {1U, 50U, 90U, 99U, 100U}) {
        const auto exact = static_cast<double>(*(values.begin() + 10'000 * static_cast<int>(percent) / 100 - 1));
        EXPECT_NEAR(static_cast<double>(all.quantile(percent)), exact, exact / 100) << percent;
    }
}

TEST(Durations, SumIsAsIfAddedOneByOne)
{
    durations one;
    durations other;
    durations both;
    for (int64_t value = 1; value < 2000; value += 7) {
        (value % 2 ? one : other).add(value * value, value);
        both.add(value * value, value);
    }
    one.add(other);
    EXPECT_EQ(one.count(), both.count());
    EXPECT_EQ(one.total(), both.total());
    EXPECT_EQ(one.largest_at(), both.largest_at());
    EXPECT_EQ(one.quantile(50), both.quantile(50));
}

TEST(Durations, ClockThatStepsBackCountsAsNothing)
{
    durations all;
    all.add(-5, 0);
    EXPECT_EQ(all.total(), 0);
    EXPECT_EQ(all.quantile(50), 0);
    EXPECT_EQ(durations().quantile(99), 0);
}

} // namespace
} // namespace kel_trace

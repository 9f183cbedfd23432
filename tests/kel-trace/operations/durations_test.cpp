// The begin of the largest. Sums and quantiles are the histogram's.
#include "kel-trace/operations/durations.h"

#include <gtest/gtest.h>

namespace kel_trace
{
namespace
{

TEST(Durations, LargestHasItsBegin)
{
    durations all;
    for (const int64_t one : {5'000'000, 7, 5'000'001, 3})
        all.add(one, one * 10);
    EXPECT_EQ(all.spread.sum(), 10'000'011U);
    EXPECT_EQ(all.spread.largest(), 5'000'001U);
    EXPECT_EQ(all.largest_at, 50'000'010);
}

TEST(Durations, OfEqualOnesTheFirstIsTheLargest)
{
    durations all;
    all.add(0, 7);
    all.add(0, 8);
    EXPECT_EQ(all.largest_at, 7);
}

TEST(Durations, SumHasTheBeginOfTheLarger)
{
    durations one;
    durations other;
    one.add(5, 1);
    other.add(6, 2);
    one.add(durations());
    EXPECT_EQ(one.largest_at, 1);
    one.add(other);
    EXPECT_EQ(one.largest_at, 2);
    EXPECT_EQ(one.spread.count(), 2U);
    durations none;
    none.add(other);
    EXPECT_EQ(none.largest_at, 2);
}

TEST(Durations, ClockThatStepsBackCountsAsNothing)
{
    durations all;
    all.add(-5, 0);
    EXPECT_EQ(all.spread.count(), 1U);
    EXPECT_EQ(all.spread.largest(), 0U);
}

} // namespace
} // namespace kel_trace

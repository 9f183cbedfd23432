/*
 * rate_test.cpp - what rates move.
 */
#include "softnode/traffic/rate.h"

#include <gtest/gtest.h>

#include <limits>

using namespace softnode;

namespace
{

constexpr std::uint64_t most = std::numeric_limits<std::uint64_t>::max();

} // namespace

TEST(Rate, MovesOctetsInTheirTime)
{
    /* 10 Gbit/s are 1.25 octets a nanosecond. */
    EXPECT_TRUE(moved(10'000'000, 4) == microbits_of(5));
    EXPECT_TRUE(moved(8, 1'000'000) == microbits_of(1));
    EXPECT_TRUE(moved(0, 1'000'000) == 0);
}

TEST(Rate, APartOfANanosecondCountsAsOne)
{
    EXPECT_EQ(time_to_move(microbits_of(64), 10'000'000), 52U);
    EXPECT_EQ(time_to_move(microbits_of(1250), 10'000'000), 1000U);
    EXPECT_EQ(time_to_move(1, 10'000'000), 1U);
    EXPECT_EQ(time_to_move(0, 10'000'000), 0U);
    EXPECT_EQ(time_to_move(1, most), 1U);
}

TEST(Rate, TheHighestRateOverAllOfTimeDoesNotOverflow)
{
    EXPECT_TRUE(moved(most, most) / most == most);
}

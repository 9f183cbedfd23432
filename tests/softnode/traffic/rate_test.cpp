/*
 * rate_test.cpp - what rates move.
 */
#include "softnode/traffic/rate.h"

#include <gtest/gtest.h>

#include <limits>

using namespace softnode;

TEST(Rate, MovesOctetsInTheirTime)
{
    /* 10 Gbit/s are 1.25 octets a nanosecond. */
    EXPECT_TRUE(moved(10'000'000, 4) == microbits_of(5));
    EXPECT_TRUE(moved(8, 1'000'000) == microbits_of(1));
    EXPECT_TRUE(moved(0, 1'000'000) == 0);
}

TEST(Rate, APartOfANanosecondCountsAsOne)
{
    EXPECT_TRUE(time_to_move(microbits_of(64), 10'000'000) == 52);
    EXPECT_TRUE(time_to_move(microbits_of(1250), 10'000'000) == 1000);
    EXPECT_TRUE(time_to_move(1, 10'000'000) == 1);
    EXPECT_TRUE(time_to_move(0, 10'000'000) == 0);
}

TEST(Rate, LeadsAreComparedAcrossRates)
{
    EXPECT_TRUE((Lead{1, 3} < Lead{2, 5}));
    EXPECT_FALSE((Lead{2, 5} < Lead{1, 3}));
    EXPECT_FALSE((Lead{1, 3} < Lead{3, 9}));
}

TEST(Rate, ALeadIsAtMostANanosecond)
{
    EXPECT_TRUE(moved(1000, lead_of(250, 1000)) == 250);
    EXPECT_TRUE(moved(7, lead_of(250, 1000)) == 2) << "1.75";
    EXPECT_TRUE(moved(1000, lead_of(microbits_of(1), 1000)) == 1000);
    EXPECT_TRUE(moved(1000, Lead{}) == 0);
}

TEST(Rate, TheHighestRateOverAllOfTimeDoesNotOverflow)
{
    constexpr std::uint64_t most = std::numeric_limits<std::uint64_t>::max();
    EXPECT_TRUE(moved(most, most) / most == most);
}

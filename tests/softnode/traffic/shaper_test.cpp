/*
 * shaper_test.cpp - limits together.
 */
#include "softnode/traffic/shaper.h"
#include "traffic/instants.h"

#include <gtest/gtest.h>

using namespace softnode;

TEST(Shaper, WithoutALimitIsAlwaysOpen)
{
    Shaper shaper({{0, 0}, {0, 0}}, 0);
    shaper.charge(65'535, 0);
    EXPECT_TRUE(shaper.opens_at() == 0);
}

TEST(Shaper, ARateWithoutABurstLimitsAndSoDoesABurstWithoutARate)
{
    Shaper rate({{8, 0}}, 0);
    rate.charge(100, 0);
    EXPECT_TRUE(rate.opens_at() == 100 * millisecond);
    Shaper burst({{0, 99}}, 0);
    burst.charge(100, 0);
    EXPECT_TRUE(burst.opens_at() == never);
}

TEST(Shaper, OfTwoLimitsTheTighterCounts)
{
    /* The first frame owes the higher rate; the third one the lower. */
    Shaper shaper({{80, 0}, {8, 250}}, 0);
    shaper.charge(100, 0);
    EXPECT_TRUE(shaper.opens_at() == 10 * millisecond);
    shaper.charge(100, 10 * millisecond);
    EXPECT_TRUE(shaper.opens_at() == 20 * millisecond);
    shaper.charge(100, 20 * millisecond);
    EXPECT_TRUE(shaper.opens_at() == 50 * millisecond) << "280 octets were there";
}

TEST(Shaper, ACorrectionIsAddedToEveryFrame)
{
    Shaper longer({{8, 0}}, 20);
    longer.charge(100, 0);
    EXPECT_TRUE(longer.opens_at() == 120 * millisecond);
    Shaper shorter({{8, 0}}, -18);
    shorter.charge(100, 0);
    EXPECT_TRUE(shorter.opens_at() == 82 * millisecond);
}

TEST(Shaper, NoFrameCostsLessThanNothing)
{
    Shaper shaper({{8, 0}}, -128);
    shaper.charge(100, 0);
    EXPECT_TRUE(shaper.opens_at() == 0);
}

/*
 * virtual_clock_test.cpp - time, up to its end.
 */
#include "softnode/traffic/virtual_clock.h"

#include <gtest/gtest.h>

#include <limits>

using namespace softnode;

namespace
{

constexpr Instant last = std::numeric_limits<Instant>::max();

} // namespace

TEST(VirtualClock, StandsStillUntilItIsTold)
{
    VirtualClock clock;
    EXPECT_EQ(clock.now(), 0U);
    clock.advance(0);
    EXPECT_EQ(clock.now(), 0U);
}

TEST(VirtualClock, AddsUpWhatPasses)
{
    VirtualClock clock;
    clock.advance(5);
    clock.advance(1'000'000'000);
    EXPECT_EQ(clock.now(), 1'000'000'005U);
}

TEST(VirtualClock, StandsStillAtTheEndOfTime)
{
    VirtualClock clock;
    clock.advance(last - 1);
    EXPECT_EQ(clock.now(), last - 1);
    clock.advance(1);
    EXPECT_EQ(clock.now(), last);
    clock.advance(last);
    EXPECT_EQ(clock.now(), last);
}

TEST(VirtualClock, AResetIsTimeZero)
{
    VirtualClock clock;
    clock.advance(7);
    clock.reset();
    EXPECT_EQ(clock.now(), 0U);
}

TEST(VirtualClock, NoInstantIsAfterTheEndOfTime)
{
    EXPECT_EQ(instant_at(0), 0U);
    EXPECT_EQ(instant_at(last), last);
    EXPECT_FALSE(instant_at(Wide{last} + 1));
}

/*
 * virtual_clock_test.cpp - time, up to its end.
 */
#include "softnode/traffic/virtual_clock.h"

#include <gtest/gtest.h>

using namespace softnode;

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
    clock.advance(end_of_time - 1);
    EXPECT_EQ(clock.now(), end_of_time - 1);
    clock.advance(1);
    EXPECT_EQ(clock.now(), end_of_time);
    clock.advance(end_of_time);
    EXPECT_EQ(clock.now(), end_of_time);
}

TEST(VirtualClock, AResetIsTimeZero)
{
    VirtualClock clock;
    clock.advance(7);
    clock.reset();
    EXPECT_EQ(clock.now(), 0U);
}

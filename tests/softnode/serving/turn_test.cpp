/*
 * turn_test.cpp - who has the turn when several want it.
 */
#include "softnode/serving/turn.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <mutex>
#include <thread>

using namespace std::chrono_literals;

TEST(Turn, IsKeptAwayFromWhoTakesItAgainAndAgain)
{
    softnode::Turn turn;
    std::atomic<bool> inside = false;
    std::atomic<bool> ended = false;
    std::thread busy([&] {
        while (!ended) {
            const std::lock_guard mine(turn);
            inside = true;
            inside = false;
        }
    });
    for (int i = 0; i < 1000; ++i) {
        ASSERT_TRUE(turn.keep_away(1h));
        ASSERT_FALSE(inside);
        turn.let_in();
    }
    ended = true;
    busy.join();
}

TEST(Turn, IsTakenWhenEveryKeeperLetsIn)
{
    softnode::Turn turn;
    std::atomic<int> keepers = 2;
    ASSERT_TRUE(turn.keep_away(1h));
    ASSERT_TRUE(turn.keep_away(1h));
    std::thread taker([&] {
        const std::lock_guard mine(turn);
        EXPECT_EQ(keepers, 0);
    });
    --keepers;
    turn.let_in();
    --keepers;
    turn.let_in();
    taker.join();
}

TEST(Turn, IsWaitedForOnlySoLong)
{
    softnode::Turn turn;
    turn.lock();
    EXPECT_FALSE(turn.keep_away(1ms));
    turn.unlock();
    EXPECT_TRUE(turn.keep_away(1ms));
}

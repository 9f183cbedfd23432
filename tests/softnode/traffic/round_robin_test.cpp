/*
 * round_robin_test.cpp - turns alone.
 */
#include "softnode/traffic/round_robin.h"

#include <gtest/gtest.h>

#include <vector>

using namespace softnode;

namespace
{

constexpr Handle first = static_cast<Handle>(1);
constexpr Handle second = static_cast<Handle>(2);
constexpr Handle third = static_cast<Handle>(3);

/* So many turns at an instant, by queues that take part again at once. */
std::vector<Handle> turns(RoundRobin &round, std::size_t count, Instant now)
{
    std::vector<Handle> taken;
    for (std::size_t turn = 0; turn < count; ++turn) {
        taken.push_back(round.take_turn(now));
        round.join(taken.back(), now);
    }
    return taken;
}

} // namespace

TEST(RoundRobin, IsNobodysTurnAtFirst)
{
    EXPECT_FALSE(RoundRobin().next());
}

TEST(RoundRobin, EverybodyHasATurnInTheOrderOfHandles)
{
    RoundRobin round;
    for (const Handle queue : {third, first, second})
        round.join(queue, 0);
    EXPECT_EQ(turns(round, 7, 5), (std::vector<Handle>{first, second, third, first, second, third, first}));
}

TEST(RoundRobin, WhoCannotSendYetIsPassedOver)
{
    RoundRobin round;
    round.join(first, 0);
    round.join(second, 100);
    round.join(third, 0);
    EXPECT_EQ(turns(round, 3, 99), (std::vector<Handle>{first, third, first}));
    EXPECT_EQ(turns(round, 3, 100), (std::vector<Handle>{second, third, first}));
}

TEST(RoundRobin, TheNextTurnIsWhenTheFirstOneMaySend)
{
    RoundRobin round;
    round.join(second, 300);
    round.join(first, 200);
    EXPECT_EQ(round.next(), 200U);
    EXPECT_EQ(round.take_turn(200), first);
    EXPECT_EQ(round.next(), 300U);
}

TEST(RoundRobin, WhoMightHaveHadItsTurnBeforeCanHaveItAtAnyInstant)
{
    RoundRobin round;
    round.join(first, 200);
    round.join(second, 200);
    EXPECT_EQ(round.take_turn(250), first);
    EXPECT_EQ(round.next(), 0U);
    EXPECT_EQ(round.take_turn(251), second);
    EXPECT_FALSE(round.next());
}

TEST(RoundRobin, ATurnIsOneFrameUntilTheQueueTakesPartAgain)
{
    RoundRobin round;
    round.join(first, 0);
    round.join(second, 0);
    EXPECT_EQ(round.take_turn(0), first);
    EXPECT_EQ(round.take_turn(0), second);
    EXPECT_FALSE(round.next());
    round.join(second, 0);
    EXPECT_EQ(round.take_turn(0), second);
}

TEST(RoundRobin, WhoLeavesHasNoTurn)
{
    RoundRobin round;
    for (const Handle queue : {first, second, third})
        round.join(queue, 0);
    EXPECT_EQ(round.take_turn(0), first);
    round.leave(second);
    EXPECT_EQ(round.take_turn(0), third);
    round.join(first, 7);
    round.leave(first);
    round.leave(first);
    EXPECT_FALSE(round.next());
}

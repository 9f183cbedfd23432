/*
 * round_robin_test.cpp - turns alone.
 */
#include "softnode/traffic/round_robin.h"

#include "softnode/traffic/scheduler.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <vector>

using namespace softnode;

namespace
{

struct Someone : Scheduler {
    explicit Someone(std::uint32_t octets) : Scheduler(Shaper({}, 0), octets)
    {
    }
};

class RoundRobinTest : public testing::Test
{
protected:
    /* Who has so many turns, with frames of a length each. */
    std::vector<const Child *> turns(std::size_t count, std::uint32_t octets)
    {
        std::vector<const Child *> taken;
        while (taken.size() < count) {
            taken.push_back(&round.turn());
            round.spend(round.turn(), octets);
        }
        return taken;
    }

    RoundRobin round;
    Someone a{1000};
    Someone b{1000};
    Someone c{2000};
};

} // namespace

TEST_F(RoundRobinTest, IsEmptyAtFirst)
{
    EXPECT_TRUE(round.empty());
}

TEST_F(RoundRobinTest, TurnsGoRoundInTheOrderOfJoining)
{
    for (Someone *each : {&b, &a, &c})
        round.join(*each);
    EXPECT_EQ(turns(7, 2000), (std::vector<const Child *>{&b, &a, &c, &c, &b, &a, &c}))
        << "the second round of b and a pays for the first";
}

TEST_F(RoundRobinTest, ATurnEndsWithTheFrameThatUsesItUp)
{
    round.join(a);
    round.join(b);
    EXPECT_EQ(turns(6, 500), (std::vector<const Child *>{&a, &a, &b, &b, &a, &a}));
}

TEST_F(RoundRobinTest, ATurnWithAnOctetLeftGoesOn)
{
    round.join(a);
    round.join(b);
    EXPECT_EQ(turns(3, 999), (std::vector<const Child *>{&a, &a, &b}));
}

TEST_F(RoundRobinTest, WhatAFrameHasBeyondTheTurnIsTakenOffTheNextOne)
{
    round.join(a);
    round.join(b);
    EXPECT_EQ(turns(8, 600), (std::vector<const Child *>{&a, &a, &b, &b, &a, &a, &b, &b}));
    EXPECT_EQ(a.credit, -400);
    EXPECT_EQ(turns(1, 600), (std::vector<const Child *>{&a}));
}

TEST_F(RoundRobinTest, ATurnOfOneOctetIsATurn)
{
    round.join(a);
    round.join(b);
    round.spend(round.turn(), 1999);
    EXPECT_EQ(turns(2, 500), (std::vector<const Child *>{&b, &b}));
    EXPECT_EQ(&round.turn(), &a);
    EXPECT_EQ(a.credit, 1);
}

TEST_F(RoundRobinTest, WhoLeavesHasNoTurn)
{
    for (Someone *each : {&a, &b, &c})
        round.join(*each);
    round.leave(b);
    EXPECT_EQ(turns(3, 2000), (std::vector<const Child *>{&a, &c, &c}));
    round.leave(c);
    EXPECT_EQ(&round.turn(), &a);
    round.leave(a);
    EXPECT_TRUE(round.empty());
}

TEST_F(RoundRobinTest, WhoLeavesKeepsWhatItOwesAndLosesWhatItHas)
{
    round.join(a);
    round.spend(round.turn(), 300);
    round.leave(a);
    EXPECT_EQ(a.credit, 0);
    round.join(a);
    round.spend(round.turn(), 1700);
    round.leave(a);
    EXPECT_EQ(a.credit, -700);
    EXPECT_EQ(a.next, nullptr) << "it takes no part";
}

TEST_F(RoundRobinTest, AQuantumIsAtLeastTheShortestFrame)
{
    EXPECT_EQ(Someone(0).quantum, 64U);
    EXPECT_EQ(Someone(63).quantum, 64U);
    EXPECT_EQ(Someone(65).quantum, 65U);
}

TEST_F(RoundRobinTest, OctetsAreInProportionToQuantaWhateverTheLengths)
{
    const std::array<Someone *, 3> all{&a, &b, &c};
    const std::array<std::uint32_t, 3> lengths{64, 1500, 700};
    std::array<std::int64_t, 3> sent{};
    for (Someone *each : all)
        round.join(*each);
    for (int frame = 0; frame < 10'000; ++frame) {
        const auto who = static_cast<std::size_t>(std::find(all.begin(), all.end(), &round.turn()) - all.begin());
        round.spend(*all[who], lengths[who]);
        sent[who] += lengths[who];
        ASSERT_LE(std::abs(sent[0] - sent[1]), 1000 + 1500);
        ASSERT_LE(std::abs(2 * sent[1] - sent[2]), 2000 + 2 * 1500);
    }
}

/*
 * timing_unit_test.cpp - the timing unit alone: no thread waits here.
 */
#include "softnode/node/timing_unit.h"

#include <gtest/gtest.h>

#include <vector>

using softnode::ConnectionState;
using softnode::Handle;
using softnode::Refusal;
using softnode::User;

namespace
{

constexpr vorn_tu_event adjustment{VORN_TU_EVENT_ADJNPUOFFS, 0, 0};
constexpr User alice = 1;
constexpr User bob = 2;

class TimingUnit : public testing::Test
{
protected:
    Handle subscribed(User user)
    {
        timing.join(user);
        const Handle connection = timing.open(user);
        EXPECT_EQ(timing.subscribe(connection, 0), Refusal::granted);
        return connection;
    }

    vorn_tu_event *take(Handle connection, User user = alice)
    {
        vorn_tu_event *taken = nullptr;
        EXPECT_EQ(timing.take_event(connection, user, taken), Refusal::granted);
        return taken;
    }

    softnode::TimingUnit timing;
    vorn_tu_event *event = nullptr;
};

} // namespace

TEST_F(TimingUnit, ReadsFortyCyclesAtAQuarterMegahertzAtFirst)
{
    vorn_tu_nputimeoffset reading{};
    ASSERT_EQ(timing.read(timing.open(alice), reading), Refusal::granted);
    EXPECT_EQ(reading.cycles, 40);
    EXPECT_EQ(reading.frequency, 250'000U);
}

TEST_F(TimingUnit, ReadsWhatWasSetLast)
{
    timing.set_reading({-7, 300'000});
    vorn_tu_nputimeoffset reading{};
    ASSERT_EQ(timing.read(timing.open(alice), reading), Refusal::granted);
    EXPECT_EQ(reading.cycles, -7);
    EXPECT_EQ(reading.frequency, 300'000U);
}

TEST_F(TimingUnit, OnlyDomainZeroCanBeSubscribed)
{
    const Handle connection = timing.open(alice);
    EXPECT_EQ(timing.subscribe(connection, 1), Refusal::no_domain);
    EXPECT_EQ(timing.subscribe(connection, -1), Refusal::no_domain);
    EXPECT_FALSE(timing.connections().at(connection).subscribed);
    EXPECT_EQ(timing.subscribe(connection, 0), Refusal::granted);
    EXPECT_TRUE(timing.connections().at(connection).subscribed);
}

TEST_F(TimingUnit, EveryOperationRefusesWhatIsNoConnection)
{
    vorn_tu_nputimeoffset reading{};
    for (const Handle wrong : {Handle::null, static_cast<Handle>(0x5c00000001)}) {
        EXPECT_EQ(timing.subscribe(wrong, 0), Refusal::invalid);
        EXPECT_EQ(timing.take_event(wrong, alice, event), Refusal::invalid);
        EXPECT_EQ(timing.give_back(wrong, event), Refusal::invalid);
        EXPECT_EQ(timing.read(wrong, reading), Refusal::invalid);
    }
}

TEST_F(TimingUnit, EveryOperationRefusesAConnectionOfBeforeAReset)
{
    const Handle stale = subscribed(alice);
    timing.reset();
    vorn_tu_nputimeoffset reading{};
    EXPECT_EQ(timing.subscribe(stale, 0), Refusal::gone);
    EXPECT_EQ(timing.take_event(stale, alice, event), Refusal::gone);
    EXPECT_EQ(timing.give_back(stale, event), Refusal::gone);
    EXPECT_EQ(timing.read(stale, reading), Refusal::gone);
}

TEST_F(TimingUnit, AnEventReachesEverySubscriberAndNobodyElse)
{
    const Handle first = subscribed(alice);
    const Handle second = subscribed(bob);
    const Handle deaf = timing.open(alice);
    timing.post({6, 0, 3});
    for (const Handle connection : {first, second}) {
        const vorn_tu_event *taken = take(connection);
        ASSERT_NE(taken, nullptr);
        EXPECT_EQ(taken->type, 6U);
        EXPECT_EQ(taken->domain, 3);
    }
    EXPECT_EQ(take(deaf), nullptr);
}

TEST_F(TimingUnit, EventsComeInTheOrderTheyWerePosted)
{
    const Handle connection = subscribed(alice);
    timing.post({5, 0, 0});
    timing.post({6, 0, 1});
    EXPECT_EQ(take(connection)->type, 5U);
    EXPECT_EQ(take(connection)->type, 6U);
    EXPECT_EQ(take(connection), nullptr);
}

TEST_F(TimingUnit, NoEventIsNullWhateverWasThere)
{
    vorn_tu_event before{};
    event = &before;
    ASSERT_EQ(timing.take_event(subscribed(alice), alice, event), Refusal::granted);
    EXPECT_EQ(event, nullptr);
}

TEST_F(TimingUnit, AnEventPostedBeforeTheSubscriptionIsMissed)
{
    timing.post(adjustment);
    EXPECT_EQ(take(subscribed(alice)), nullptr);
}

TEST_F(TimingUnit, AnEventIsGivenBackOnce)
{
    const Handle connection = subscribed(alice);
    timing.post(adjustment);
    event = take(connection);
    EXPECT_EQ(timing.give_back(connection, event), Refusal::granted);
    EXPECT_EQ(timing.give_back(connection, event), Refusal::invalid);
}

TEST_F(TimingUnit, AnEventTheConnectionDidNotTakeIsNotTakenBack)
{
    const Handle connection = subscribed(alice);
    const Handle other = subscribed(bob);
    timing.post(adjustment);
    event = take(connection);
    vorn_tu_event foreign{};
    EXPECT_EQ(timing.give_back(connection, &foreign), Refusal::invalid);
    EXPECT_EQ(timing.give_back(connection, nullptr), Refusal::invalid);
    EXPECT_EQ(timing.give_back(other, event), Refusal::invalid);
    EXPECT_EQ(timing.give_back(connection, event), Refusal::granted);
}

TEST_F(TimingUnit, ARecordThatCameBackIsUsedAgain)
{
    const Handle connection = subscribed(alice);
    timing.post({5, 0, 0});
    event = take(connection);
    ASSERT_EQ(timing.give_back(connection, event), Refusal::granted);
    timing.post({6, 0, 2});
    EXPECT_EQ(take(connection), event);
    EXPECT_EQ(event->type, 6U);
    EXPECT_EQ(event->domain, 2);
}

TEST_F(TimingUnit, ARecordIsHandedOutOnceUntilItComesBack)
{
    const Handle connection = subscribed(alice);
    for (const std::uint32_t type : {5U, 6U, 7U})
        timing.post({type, 0, 0});
    event = take(connection);
    ASSERT_EQ(timing.give_back(connection, event), Refusal::granted);
    const vorn_tu_event *second = take(connection);
    EXPECT_NE(take(connection), second);
    EXPECT_EQ(second->type, 6U);
}

TEST_F(TimingUnit, RecordsThatCameBackTogetherAreHandedOutOnceEach)
{
    const Handle connection = subscribed(alice);
    for (int count = 0; count < 4; ++count)
        timing.post(adjustment);
    vorn_tu_event *const first = take(connection);
    vorn_tu_event *const second = take(connection);
    ASSERT_EQ(timing.give_back(connection, first), Refusal::granted);
    ASSERT_EQ(timing.give_back(connection, second), Refusal::granted);
    const vorn_tu_event *third = take(connection);
    EXPECT_NE(take(connection), third);
}

TEST_F(TimingUnit, ARecordThatIsOutAtAResetIsLeftAlone)
{
    const Handle connection = subscribed(alice);
    timing.post({5, 0, 9});
    event = take(connection);
    timing.reset();
    const Handle fresh = subscribed(alice);
    timing.post({6, 0, 0});
    EXPECT_NE(take(fresh), event);
    EXPECT_EQ(event->type, 5U);
    EXPECT_EQ(event->domain, 9);
}

TEST_F(TimingUnit, IsNotSettledBeforeAnybodyArrived)
{
    EXPECT_FALSE(timing.settled());
    timing.join(alice);
    EXPECT_FALSE(timing.settled());
}

TEST_F(TimingUnit, IsSettledOnceItsUserWaits)
{
    const Handle connection = subscribed(alice);
    EXPECT_FALSE(timing.settled());
    EXPECT_EQ(take(connection), nullptr);
    EXPECT_TRUE(timing.settled());
}

TEST_F(TimingUnit, WhoWaitsHasArrived)
{
    EXPECT_EQ(take(timing.open(alice)), nullptr);
    EXPECT_TRUE(timing.settled());
}

TEST_F(TimingUnit, IsNotSettledWhileAnEventIsLeft)
{
    const Handle connection = subscribed(alice);
    take(connection);
    timing.post(adjustment);
    EXPECT_FALSE(timing.settled()) << "posted, not taken";
    EXPECT_NE(take(connection), nullptr);
    EXPECT_FALSE(timing.settled()) << "taken, at work";
    EXPECT_EQ(take(connection), nullptr);
    EXPECT_TRUE(timing.settled());
}

TEST_F(TimingUnit, IsSettledOnlyWhenAllUsersWait)
{
    const Handle first = subscribed(alice);
    const Handle second = subscribed(bob);
    take(first, alice);
    EXPECT_FALSE(timing.settled());
    take(second, bob);
    EXPECT_TRUE(timing.settled());
}

TEST_F(TimingUnit, AUserThatLeftIsNotWaitedFor)
{
    const Handle connection = subscribed(alice);
    timing.post(adjustment);
    timing.leave(alice);
    EXPECT_TRUE(timing.settled());
    EXPECT_EQ(timing.state(connection), ConnectionState::ended);
}

TEST_F(TimingUnit, AUserThatLeftIsNotAtRest)
{
    take(subscribed(alice));
    timing.leave(alice);
    EXPECT_EQ(timing.users_at_rest(), 0U);
}

TEST_F(TimingUnit, AUserWithoutConnectionIsWaitedForUntilItLeaves)
{
    take(subscribed(alice), alice);
    timing.join(bob);
    EXPECT_FALSE(timing.settled());
    timing.leave(bob);
    EXPECT_TRUE(timing.settled());
}

TEST_F(TimingUnit, AConnectionsStateFollowsItsUser)
{
    const Handle connection = subscribed(alice);
    EXPECT_EQ(timing.state(connection), ConnectionState::working);
    take(connection);
    EXPECT_EQ(timing.state(connection), ConnectionState::waiting);
    timing.post(adjustment);
    EXPECT_EQ(timing.state(connection), ConnectionState::working);
    timing.leave(alice);
    EXPECT_EQ(timing.state(connection), ConnectionState::ended);
}

TEST_F(TimingUnit, AConnectionBelongsToWhoWaitedOnItLast)
{
    const Handle connection = subscribed(alice);
    take(connection, bob);
    timing.leave(alice);
    EXPECT_EQ(timing.state(connection), ConnectionState::waiting);
    timing.leave(bob);
    EXPECT_EQ(timing.state(connection), ConnectionState::ended);
}

TEST_F(TimingUnit, WhatIsLeftOnAConnectionKeepsWhoWaitedOnItLast)
{
    const Handle handed_over = subscribed(alice);
    timing.post(adjustment);
    timing.post(adjustment);
    const Handle kept = timing.open(alice);
    take(kept, alice);
    EXPECT_EQ(timing.users_at_rest(), 0U);
    take(handed_over, bob);
    EXPECT_EQ(timing.users_at_rest(), 1U) << "alice, who has nothing left to take";
    take(handed_over, bob);
    take(handed_over, bob);
    EXPECT_EQ(timing.users_at_rest(), 2U);
}

TEST_F(TimingUnit, WhatIsLeftOnAConnectionKeepsWhoTookItOver)
{
    const Handle taken_over = subscribed(alice);
    timing.post(adjustment);
    timing.post(adjustment);
    EXPECT_NE(take(taken_over, bob), nullptr);
    take(timing.open(bob), bob);
    EXPECT_EQ(timing.users_at_rest(), 0U);
}

TEST_F(TimingUnit, WhoTakesAnEventOfAnotherIsAtWork)
{
    const Handle taken_over = subscribed(alice);
    timing.post(adjustment);
    take(timing.open(bob), bob);
    EXPECT_EQ(timing.users_at_rest(), 1U);
    EXPECT_NE(take(taken_over, bob), nullptr);
    EXPECT_EQ(timing.users_at_rest(), 0U);
}

TEST_F(TimingUnit, AUserThatIsHeldIsAtRestWhateverIsLeftForIt)
{
    const Handle connection = subscribed(alice);
    timing.post(adjustment);
    timing.hold(alice, 7);
    EXPECT_TRUE(timing.holds(alice));
    EXPECT_TRUE(timing.settled());
    EXPECT_EQ(timing.state(connection), ConnectionState::blocked);
    EXPECT_EQ(timing.held().at(alice), 7U);
}

TEST_F(TimingUnit, AUserThatIsHeldHasArrived)
{
    timing.hold(alice, 7);
    EXPECT_TRUE(timing.settled());
    EXPECT_EQ(timing.let_go(), 1U);
    EXPECT_FALSE(timing.settled());
}

TEST_F(TimingUnit, UsersThatAreLetGoAreWhereTheyWere)
{
    const Handle connection = subscribed(alice);
    timing.hold(alice, 7);
    timing.hold(bob, 7);
    EXPECT_EQ(timing.let_go(), 2U);
    EXPECT_FALSE(timing.holds(alice));
    EXPECT_EQ(timing.state(connection), ConnectionState::working);
    EXPECT_EQ(timing.let_go(), 0U);
}

TEST_F(TimingUnit, CountsTheUsersAtRest)
{
    EXPECT_EQ(timing.users_at_rest(), 0U);
    take(subscribed(alice), alice);
    timing.hold(bob, 7);
    timing.join(3);
    EXPECT_EQ(timing.users_at_rest(), 2U);
    timing.post(adjustment);
    EXPECT_EQ(timing.users_at_rest(), 1U);
}

TEST_F(TimingUnit, KnowsWhoRestsAmongThousands)
{
    constexpr User users = 5'000;
    std::vector<Handle> connections;
    for (User user = 1; user <= users; ++user)
        connections.push_back(subscribed(user));
    for (int round = 0; round < 2; ++round) {
        for (User user = 1; user <= users; ++user) {
            ASSERT_EQ(timing.users_at_rest(), user - 1);
            while (take(connections[user - 1], user) != nullptr)
                ASSERT_FALSE(timing.settled());
        }
        EXPECT_TRUE(timing.settled());
        timing.post(adjustment);
        EXPECT_EQ(timing.users_at_rest(), 0U);
    }
}

TEST_F(TimingUnit, AResetForgetsUsersAndReading)
{
    take(subscribed(alice));
    timing.hold(bob, 7);
    timing.set_reading({1, 2});
    timing.reset();
    EXPECT_FALSE(timing.holds(bob));
    EXPECT_FALSE(timing.settled());
    EXPECT_EQ(timing.connections().size(), 0U);
    EXPECT_EQ(timing.reading().cycles, 40);
    EXPECT_EQ(timing.reading().frequency, 250'000U);
}

TEST_F(TimingUnit, AResetForgetsWhatWasLeft)
{
    subscribed(alice);
    take(timing.open(bob), bob);
    timing.post(adjustment);
    timing.reset();
    take(subscribed(alice));
    EXPECT_EQ(timing.users_at_rest(), 1U);
    EXPECT_TRUE(timing.settled()) << "nobody waits for bob";
}

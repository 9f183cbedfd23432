/*
 * vorn_tu_test.cpp - the timing-unit client through its C functions, with threads that wait.
 */
#include "control.h"
#include "follower.h"

#include "platform/vorn_tu.h"

#include <cstdint>
#include <gmock/gmock.h>
#include <thread>
#include <vector>

namespace
{

constexpr std::uint32_t generous = 60'000; /* milliseconds; never reached when all is well */

class VornTu : public ControlledNode
{
protected:
    static void *open()
    {
        void *connection = nullptr;
        EXPECT_EQ(vorn_tu_init(&connection), ORK_OK);
        return connection;
    }

    static void *subscribed()
    {
        void *connection = open();
        EXPECT_EQ(vorn_tu_subscribe_adjnpuoffs(connection, 0), ORK_OK);
        return connection;
    }

    void expect_each_call_to_answer(int32_t rc, void *connection)
    {
        vorn_tu_event record{};
        vorn_tu_event *event = &record;
        vorn_tu_nputimeoffset reading{11, 22};
        EXPECT_EQ(vorn_tu_subscribe_adjnpuoffs(connection, 0), rc);
        EXPECT_EQ(vorn_tu_wait_event(connection, &event), rc);
        EXPECT_EQ(vorn_tu_free_event(connection, &event), rc);
        EXPECT_EQ(vorn_tu_get_nputimeoffset(connection, 0, &reading), rc);
        EXPECT_EQ(event, &record);
        EXPECT_EQ(reading.cycles, 11);
        EXPECT_EQ(reading.frequency, 22U);
    }
};

using TimingSettle = VornTu;
using TimingReset = VornTu;

} // namespace

TEST_F(VornTu, EveryCallRefusesAWrongConnection)
{
    open();
    for (void *wrong : {static_cast<void *>(nullptr), foreign, ork, create_scheduler()})
        expect_each_call_to_answer(ORK_INVAL, wrong);
}

TEST_F(VornTu, EveryCallRefusesAConnectionOfBeforeAReset)
{
    void *stale = open();
    softnode_reset();
    expect_each_call_to_answer(ORK_NOTAVAIL, stale);
}

TEST_F(VornTu, NullPointersAreRefused)
{
    void *connection = open();
    EXPECT_EQ(vorn_tu_init(nullptr), ORK_INVAL);
    EXPECT_EQ(vorn_tu_wait_event(connection, nullptr), ORK_INVAL);
    EXPECT_EQ(vorn_tu_free_event(connection, nullptr), ORK_INVAL);
    EXPECT_EQ(vorn_tu_get_nputimeoffset(connection, 0, nullptr), ORK_INVAL);
}

TEST_F(VornTu, OnlyDomainZeroCanBeSubscribed)
{
    void *connection = open();
    EXPECT_EQ(vorn_tu_subscribe_adjnpuoffs(connection, 1), ORK_NODOMAIN);
    EXPECT_EQ(look_into_node().at("timing_unit").at("connections")[0].at("subscribed"), false);
}

TEST_F(VornTu, ReadingIsWhatTheControlInterfaceSet)
{
    void *connection = open();
    vorn_tu_nputimeoffset reading{};
    ASSERT_EQ(vorn_tu_get_nputimeoffset(connection, 0, &reading), ORK_OK);
    EXPECT_EQ(reading.cycles, 40);
    EXPECT_EQ(reading.frequency, 250'000U);
    softnode_timing_reading_set(-7, 0);
    ASSERT_EQ(vorn_tu_get_nputimeoffset(connection, 0, &reading), ORK_OK);
    EXPECT_EQ(reading.cycles, -7);
    EXPECT_EQ(reading.frequency, 0U);
}

TEST_F(VornTu, ReadingRefusesASecondArgumentOtherThanZero)
{
    vorn_tu_nputimeoffset reading{11, 22};
    EXPECT_EQ(vorn_tu_get_nputimeoffset(open(), 1, &reading), ORK_INVAL);
    EXPECT_EQ(reading.cycles, 11);
}

TEST_F(VornTu, AnEventIsTakenAndHandedBack)
{
    void *connection = subscribed();
    softnode_timing_event_post(6, 3);
    vorn_tu_event *event = nullptr;
    ASSERT_EQ(vorn_tu_wait_event(connection, &event), ORK_OK);
    ASSERT_NE(event, nullptr);
    EXPECT_EQ(event->type, 6U);
    EXPECT_EQ(event->domain, 3);
    EXPECT_EQ(look_into_node().at("timing_unit").at("connections")[0].at("events_outstanding"), 1);
    EXPECT_EQ(vorn_tu_free_event(connection, &event), ORK_OK);
    EXPECT_EQ(event, nullptr);
    EXPECT_EQ(look_into_node().at("timing_unit").at("connections")[0].at("events_outstanding"), 0);
}

TEST_F(VornTu, OnlyAnEventThatIsOutCanBeHandedBack)
{
    void *connection = subscribed();
    softnode_timing_event_post(6, 0);
    vorn_tu_event *event = nullptr;
    ASSERT_EQ(vorn_tu_wait_event(connection, &event), ORK_OK);
    vorn_tu_event on_our_side{};
    vorn_tu_event *wrong = &on_our_side;
    EXPECT_EQ(vorn_tu_free_event(connection, &wrong), ORK_INVAL);
    EXPECT_EQ(wrong, &on_our_side);
    wrong = nullptr;
    EXPECT_EQ(vorn_tu_free_event(connection, &wrong), ORK_INVAL);
    vorn_tu_event *twice = event;
    EXPECT_EQ(vorn_tu_free_event(connection, &event), ORK_OK);
    EXPECT_EQ(vorn_tu_free_event(connection, &twice), ORK_INVAL);
    EXPECT_NE(twice, nullptr);
}

TEST_F(VornTu, AWaitEndsWithTheNextEvent)
{
    Follower follower;
    ASSERT_EQ(softnode_timing_settle(generous), 1);
    softnode_timing_event_post(5, 0);
    softnode_timing_event_post(6, 0);
    ASSERT_EQ(softnode_timing_settle(generous), 1);
    EXPECT_EQ(follower.events(), (std::vector<std::uint32_t>{5, 6}));
}

TEST_F(VornTu, EveryFollowerGetsEveryEvent)
{
    Follower first;
    ASSERT_EQ(softnode_timing_settle(generous), 1);
    Follower second;
    while (look_into_node().at("timing_unit").at("connections").size() < 2)
        std::this_thread::yield();
    ASSERT_EQ(softnode_timing_settle(generous), 1);
    for (int count = 0; count < 100; ++count)
        softnode_timing_event_post(6, 0);
    ASSERT_EQ(softnode_timing_settle(generous), 1);
    EXPECT_EQ(first.events().size(), 100U);
    EXPECT_EQ(second.events().size(), 100U);
}

TEST_F(TimingSettle, FindsNobodyAtFirst)
{
    EXPECT_EQ(softnode_timing_settle(0), 0);
    EXPECT_EQ(softnode_timing_settle(1), 0);
}

TEST_F(TimingSettle, IsGoodRightAfterAThreadWasStarted)
{
    for (int count = 0; count < 50; ++count) {
        Follower follower;
        ASSERT_EQ(softnode_timing_settle(generous), 1);
        EXPECT_EQ(look_into_node().at("timing_unit").at("connections")[0].at("state"), "waiting");
    }
}

TEST_F(TimingSettle, DoesNotTakeAnIdleConnectionForAWaitingOne)
{
    subscribed();
    EXPECT_EQ(softnode_timing_settle(1), 0);
    EXPECT_EQ(look_into_node().at("timing_unit").at("connections")[0].at("state"), "working");
}

TEST_F(TimingSettle, WaitsForAThreadThatFailedToEnd)
{
    ASSERT_EQ(add_faults("vorn_tu_wait_event=-7"), "");
    Follower follower;
    ASSERT_EQ(softnode_timing_settle(generous), 1);
    EXPECT_EQ(look_into_node().at("timing_unit").at("connections")[0].at("state"), "ended");
    follower.join();
    EXPECT_EQ(follower.ended_with(), ORK_INTERNAL);
    EXPECT_EQ(softnode_timing_settle(0), 1);
}

TEST_F(TimingSettle, WaitsForAThreadThatFailsOverAnEventToEnd)
{
    Follower follower;
    ASSERT_EQ(softnode_timing_settle(generous), 1);
    ASSERT_EQ(add_faults("vorn_tu_free_event=-1"), "");
    softnode_timing_event_post(6, 0);
    softnode_timing_event_post(6, 0);
    ASSERT_EQ(softnode_timing_settle(generous), 1);
    follower.join();
    EXPECT_EQ(follower.events().size(), 1U);
    EXPECT_EQ(follower.ended_with(), ORK_INVAL);
}

TEST_F(TimingSettle, TakesAThreadThatNeverGotAConnectionForSettledOnceItEnded)
{
    ASSERT_EQ(add_faults("vorn_tu_init=-8"), "");
    Follower follower;
    ASSERT_EQ(softnode_timing_settle(generous), 1);
    follower.join();
    EXPECT_EQ(follower.ended_with(), ORK_NOTAVAIL);
    EXPECT_TRUE(look_into_node().at("timing_unit").at("connections").empty());
}

TEST_F(TimingReset, EndsAWaitWithShutdown)
{
    Follower follower;
    ASSERT_EQ(softnode_timing_settle(generous), 1);
    softnode_reset();
    follower.join();
    EXPECT_EQ(follower.ended_with(), ORK_SHUTDOWN);
    EXPECT_EQ(softnode_timing_settle(0), 0);
}

TEST_F(TimingReset, StrandsNoThreadWhereverItIs)
{
    for (int count = 0; count < 50; ++count) {
        Follower first;
        Follower second;
        for (int event = 0; event < count; ++event)
            softnode_timing_event_post(6, 0);
        for (Follower *one : {&first, &second}) {
            one->end();
            EXPECT_THAT(one->ended_with(), testing::AnyOf(ORK_SHUTDOWN, ORK_NOTAVAIL));
        }
    }
}

TEST_F(TimingReset, LeavesAnEventThatIsOutReadable)
{
    void *connection = subscribed();
    softnode_timing_event_post(6, 4);
    vorn_tu_event *event = nullptr;
    ASSERT_EQ(vorn_tu_wait_event(connection, &event), ORK_OK);
    softnode_reset();
    EXPECT_EQ(event->type, 6U);
    EXPECT_EQ(event->domain, 4);
    EXPECT_EQ(vorn_tu_free_event(connection, &event), ORK_NOTAVAIL);
}

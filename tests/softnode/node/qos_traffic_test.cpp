/*
 * qos_traffic_test.cpp - frames through queues and schedulers: which one leaves when.
 */
#include "softnode/node/qos_graph.h"

#include "softnode/common/facts.h"

#include <gtest/gtest.h>

#include <limits>
#include <utility>
#include <vector>

namespace facts = softnode::facts;
using softnode::Fate;
using softnode::Handle;
using softnode::Instant;
using softnode::Refusal;

namespace
{

constexpr Instant end_of_time = std::numeric_limits<Instant>::max();
constexpr std::uint32_t roomy = 2'560'000; /* octets */

/* An instant, and the last octet of a destination. */
using Departures = std::vector<std::pair<Instant, int>>;

class QosTraffic : public testing::Test
{
protected:
    /* Peak rate in kbit/s. */
    Handle scheduler(std::uint64_t rate = 0, Handle parent = Handle::null)
    {
        ork_qos_scheduler_params params{};
        params.parent = softnode::pointer_of(parent);
        params.qosRates.peak.rate = rate;
        params.vsiEthDevId = facts::event_device;
        Handle created = Handle::null;
        EXPECT_EQ(graph.create_scheduler(params, created), Refusal::granted);
        return created;
    }

    Handle queue(Handle under, std::uint32_t rate = 0, std::uint32_t burst = 0, std::uint32_t threshold = roomy)
    {
        Handle added = Handle::null;
        EXPECT_EQ(graph.add_queue({1, rate, threshold, burst}, facts::queue_kind, under, facts::event_device, added),
                  Refusal::granted);
        return added;
    }

    /* Frames enter a queue, for a destination that ends in an octet. Of those that leave at once, one at a time can. */
    std::uint64_t enter(Handle queue, std::uint8_t destination, const softnode::Frames &frames, Instant now)
    {
        return graph.enter(queue, {{2, 0, 0, 0, 0, destination}}, frames, now);
    }

    /* Everything that leaves in the course of so many nanoseconds, each of them looked at. */
    Departures depart(Instant from, Instant to)
    {
        Departures departures;
        for (Instant now = from; now <= to; ++now)
            while (const auto frame = graph.depart(now))
                departures.emplace_back(now, frame->destination[5]);
        return departures;
    }

    std::uint64_t depart_all(Instant now)
    {
        std::uint64_t count = 0;
        while (graph.depart(now))
            ++count;
        return count;
    }

    softnode::QosGraph graph;
};

} // namespace

TEST_F(QosTraffic, AnUnshapedQueueSendsAtTheLineRate)
{
    enter(queue(scheduler()), 1, {4, 1250}, 10);
    EXPECT_EQ(depart(10, 10'000), (Departures{{10, 1}, {1010, 1}, {2010, 1}, {3010, 1}}));
}

TEST_F(QosTraffic, FractionsOfANanosecondAddUp)
{
    enter(queue(scheduler()), 1, {6, 64}, 0);
    EXPECT_EQ(depart(0, 1000), (Departures{{0, 1}, {52, 1}, {103, 1}, {154, 1}, {205, 1}, {256, 1}}));
}

TEST_F(QosTraffic, ASchedulersPeakRateIsWhatItsQueuesShare)
{
    const Handle slow = scheduler(5'000'000);
    enter(queue(slow), 1, {2, 1250}, 0);
    enter(queue(slow), 2, {2, 1250}, 0);
    EXPECT_EQ(depart(0, 10'000), (Departures{{0, 1}, {2000, 2}, {4000, 1}, {6000, 2}}));
}

TEST_F(QosTraffic, NothingIsFasterThanTheLine)
{
    for (const std::uint64_t rate : {facts::line_rate + 1, std::numeric_limits<std::uint64_t>::max()}) {
        graph.reset();
        enter(queue(scheduler(rate)), 1, {2, 1250}, 0);
        EXPECT_EQ(depart(0, 5000), (Departures{{0, 1}, {1000, 1}}));
    }
}

TEST_F(QosTraffic, SchedulersDoNotWaitForEachOther)
{
    const Handle parent = scheduler(1000);
    enter(queue(scheduler(0, parent)), 1, {2, 1250}, 0);
    enter(queue(scheduler(0, parent)), 2, {2, 1250}, 0);
    EXPECT_EQ(depart(0, 5000), (Departures{{0, 1}, {0, 2}, {1000, 1}, {1000, 2}}));
}

TEST_F(QosTraffic, AShapedQueueSendsItsBurstAndThenAtItsRate)
{
    /* 80,000 kbit/s: 100 octets take 10,000 nanoseconds; on the line, 80. */
    enter(queue(scheduler(), 80'000, 300), 1, {6, 100}, 0);
    EXPECT_EQ(depart(0, 40'000), (Departures{{0, 1}, {80, 1}, {160, 1}, {10'000, 1}, {20'000, 1}, {30'000, 1}}));
}

TEST_F(QosTraffic, AShapedQueueIsFullWhenItIsCreatedHoweverLate)
{
    enter(queue(scheduler(), 80'000, 300), 1, {4, 100}, 1'000'000);
    EXPECT_EQ(depart(1'000'000, 1'020'000),
              (Departures{{1'000'000, 1}, {1'000'080, 1}, {1'000'160, 1}, {1'010'000, 1}}));
}

TEST_F(QosTraffic, QueuesTakeTurnsAmongThoseThatMaySend)
{
    const Handle shared = scheduler();
    enter(queue(shared), 1, {4, 1250}, 0);
    enter(queue(shared, 1'000'000, 1250), 2, {3, 1250}, 0);
    enter(queue(shared), 3, {3, 1250}, 0);
    EXPECT_EQ(depart(0, 25'000), (Departures{{0, 1},
                                             {1000, 2},
                                             {2000, 3},
                                             {3000, 1},
                                             {4000, 3},
                                             {5000, 1},
                                             {6000, 3},
                                             {7000, 1},
                                             {11'000, 2},
                                             {21'000, 2}}));
}

TEST_F(QosTraffic, ATurnIsAFrameHoweverLong)
{
    const Handle shared = scheduler();
    enter(queue(shared), 1, {2, 2500}, 0);
    enter(queue(shared), 2, {2, 125}, 0);
    EXPECT_EQ(depart(0, 10'000), (Departures{{0, 1}, {2000, 2}, {2100, 1}, {4100, 2}}));
}

/* Frames of 1,200 nanoseconds, of which a queue alone sends one in 3,000 at its rate, and the other in 3,871. */
TEST_F(QosTraffic, ABucketWithoutRoomForANeighboursFrameLosesTokens)
{
    const Handle shared = scheduler();
    const Handle faster = queue(shared, 4'000'000, 1500, 20'000'000);
    const Handle slower = queue(shared, 3'100'000, 1500, 20'000'000);
    enter(faster, 1, {10'000, 1500}, 0);
    enter(slower, 2, {10'000, 1500}, 0);
    depart_all(10'000'000);
    EXPECT_EQ(graph.queues().at(faster).counters[Fate::sent].frames, 2584U);
    EXPECT_EQ(graph.queues().at(slower).counters[Fate::sent].frames, 2584U);
}

TEST_F(QosTraffic, ABucketWithRoomForANeighboursFrameKeepsItsRate)
{
    const Handle shared = scheduler();
    const Handle faster = queue(shared, 4'000'000, 3000, 20'000'000);
    const Handle slower = queue(shared, 3'100'000, 3000, 20'000'000);
    enter(faster, 1, {10'000, 1500}, 0);
    enter(slower, 2, {10'000, 1500}, 0);
    depart_all(10'000'000);
    EXPECT_EQ(graph.queues().at(faster).counters[Fate::sent].frames, 3335U);
    EXPECT_EQ(graph.queues().at(slower).counters[Fate::sent].frames, 2584U);
}

TEST_F(QosTraffic, AFrameThatArrivesWhileTheSchedulerIsBusyWaitsForIt)
{
    const Handle shared = scheduler();
    enter(queue(shared), 1, {1, 1250}, 0);
    EXPECT_EQ(depart(0, 0).size(), 1U);
    enter(queue(shared), 2, {1, 1250}, 400);
    EXPECT_EQ(depart(400, 5000), (Departures{{1000, 2}}));
}

TEST_F(QosTraffic, AFrameThatCannotLeaveAtOnceNeedsRoom)
{
    const Handle shared = scheduler();
    const Handle cramped = queue(shared, 0, 0, 0);
    EXPECT_EQ(enter(cramped, 1, {1, 1250}, 0), 0U);
    EXPECT_EQ(depart(0, 0).size(), 1U);
    EXPECT_EQ(enter(cramped, 1, {1, 1250}, 999), 1U);
    EXPECT_EQ(enter(cramped, 1, {1, 1250}, 1000), 0U);
}

TEST_F(QosTraffic, AQueueWithoutARateKeepsWhatItsBurstDoesNotCover)
{
    const Handle stuck = queue(scheduler(), 0, 250);
    enter(stuck, 1, {4, 100}, 0);
    EXPECT_EQ(depart_all(end_of_time), 2U);
    EXPECT_EQ(graph.queues().at(stuck).waiting().frames, 2U);
}

TEST_F(QosTraffic, NothingLeavesARemovedQueueAndItsNeighboursGoOn)
{
    const Handle shared = scheduler();
    const Handle removed = queue(shared);
    enter(removed, 1, {3, 1250}, 0);
    enter(queue(shared), 2, {2, 1250}, 0);
    EXPECT_EQ(depart(0, 0), (Departures{{0, 1}}));
    ASSERT_EQ(graph.remove_queue(removed), Refusal::granted);
    EXPECT_EQ(depart(1, 5000), (Departures{{1000, 2}, {2000, 2}}));
}

TEST_F(QosTraffic, RemovingTheOnlyQueueLeavesNothingToDo)
{
    const Handle only = queue(scheduler());
    enter(only, 1, {3, 1250}, 0);
    ASSERT_EQ(graph.remove_queue(only), Refusal::granted);
    EXPECT_FALSE(graph.depart(end_of_time));
}

TEST_F(QosTraffic, WhatWouldLeaveAfterTheEndOfTimeNeverDoes)
{
    enter(queue(scheduler(1)), 1, {3, 65'535}, end_of_time - 10);
    EXPECT_EQ(depart_all(end_of_time), 1U);
    enter(queue(scheduler(), 1, 100), 2, {3, 100}, end_of_time - 10);
    EXPECT_EQ(depart_all(end_of_time), 1U);
}

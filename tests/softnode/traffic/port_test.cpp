/*
 * port_test.cpp - frames through a tree of schedulers and queues: which one leaves when.
 */
#include "softnode/traffic/port.h"

#include <gtest/gtest.h>

#include <deque>
#include <utility>
#include <vector>

namespace
{

using softnode::Fate;
using softnode::Handle;
using softnode::Instant;
using softnode::Limit;
using softnode::Mac;
using softnode::Queue;
using softnode::Scheduler;

constexpr std::uint32_t roomy = 25'600'000; /* octets */
constexpr std::uint64_t second = 1'000'000'000;

/* A microsecond on the line, with what goes before and behind it. */
constexpr std::uint32_t microsecond = 1230;

/* An instant, and the last octet of a destination. */
using Departures = std::vector<std::pair<Instant, int>>;

class Port : public testing::Test
{
protected:
    Scheduler &scheduler(std::initializer_list<Limit> limits = {}, Scheduler *above = nullptr,
                         std::uint32_t quantum = 3036)
    {
        schedulers.emplace_back(softnode::Shaper(limits, 0), quantum);
        port.attach(schedulers.back(), above);
        return schedulers.back();
    }

    Queue &queue(Scheduler &under, std::uint32_t rate = 0, std::uint32_t burst = 0, std::uint32_t threshold = roomy)
    {
        queues.emplace_back(Handle::null, softnode::QueueParams{rate, threshold, burst}, under.quantum, 0);
        port.attach(queues.back(), &under);
        return queues.back();
    }

    /* Frames enter one after the other, for a destination that ends in an octet; those that leave at once do. */
    std::uint64_t enter(Queue &entered, std::uint8_t destination, const softnode::Frames &frames, Instant now = 0)
    {
        const std::vector<Mac> there{{2, 0, 0, 0, 0, destination}};
        const std::uint64_t dropped = port.enter(entered, there, {1, frames.length, frames.identity}, now);
        while (const auto departure = port.depart(now))
            at_once.emplace_back(departure->left, departure->frame.destination[5]);
        if (frames.count == 1)
            return dropped;
        return dropped + port.enter(entered, there, {frames.count - 1, frames.length, frames.identity}, now);
    }

    /* Everything that left at once, and then what leaves up to an instant. */
    Departures depart(Instant until)
    {
        Departures departures = std::exchange(at_once, {});
        while (const auto departure = port.depart(until))
            departures.emplace_back(departure->left, departure->frame.destination[5]);
        return departures;
    }

    static std::uint64_t octets_sent(const Queue &queue)
    {
        return queue.counters[Fate::sent].octets;
    }

    /* Octets of each that leave within ten seconds after the first one, in kbit/s. */
    std::vector<std::uint64_t> rates(const std::vector<Queue *> &measured)
    {
        depart(second);
        std::vector<std::uint64_t> before;
        for (const Queue *each : measured)
            before.push_back(octets_sent(*each));
        depart(11 * second);
        std::vector<std::uint64_t> found;
        for (std::size_t number = 0; number < measured.size(); ++number)
            found.push_back((octets_sent(*measured[number]) - before[number]) * 8 / 10'000);
        return found;
    }

    std::deque<Scheduler> schedulers;
    std::deque<Queue> queues;
    softnode::Port port;
    Departures at_once;
};

} // namespace

TEST_F(Port, SendsAtTheLineRate)
{
    enter(queue(scheduler()), 1, {4, microsecond}, 10);
    EXPECT_EQ(depart(10'000), (Departures{{10, 1}, {1010, 1}, {2010, 1}, {3010, 1}}));
}

TEST_F(Port, FractionsOfANanosecondAddUp)
{
    enter(queue(scheduler()), 1, {6, 44});
    EXPECT_EQ(depart(1000), (Departures{{0, 1}, {52, 1}, {103, 1}, {154, 1}, {205, 1}, {256, 1}}));
}

TEST_F(Port, AFrameArrivesWithItsLastBitAndKeepsItsIdentity)
{
    Queue &only = queue(scheduler());
    const std::vector<Mac> there{{2, 0, 0, 0, 0, 1}};
    port.enter(only, there, {1, microsecond, 77}, 5);
    const auto departure = port.depart(5);
    ASSERT_TRUE(departure);
    EXPECT_EQ(departure->left, 5U);
    EXPECT_TRUE(departure->arrives == 996) << "995.4";
    EXPECT_EQ(departure->frame.identity, 77U);
    EXPECT_EQ(departure->frame.entered, 5U);
}

TEST_F(Port, AllSchedulersShareTheLine)
{
    for (std::uint8_t destination = 1; destination <= 8; ++destination)
        enter(queue(scheduler()), destination, {100'000, 1480});
    std::uint64_t octets = 0;
    depart(second / 10);
    for (const Queue &each : queues)
        octets += octets_sent(each) + 20 * each.counters[Fate::sent].frames;
    EXPECT_EQ(octets, 125'001'000U) << "10 Gbit/s and the frame that just left";
}

TEST_F(Port, ASchedulersRateIsWhatAllBelowItShare)
{
    Scheduler &limited = scheduler({{10'000, 1500}});
    std::vector<Queue *> measured;
    for (const std::uint32_t rate : {6'000U, 3'000U, 3'000U, 4'000U})
        measured.push_back(&queue(scheduler({}, &limited), rate, 3000));
    for (Queue *each : measured)
        enter(*each, 1, {10'000, 1500});
    const std::vector<std::uint64_t> found = rates(measured);
    EXPECT_NEAR(static_cast<double>(found[0] + found[1] + found[2] + found[3]), 10'000, 5);
    for (const std::uint64_t each : found)
        EXPECT_NEAR(static_cast<double>(each), 2'500, 250) << "no queue has less of it than its neighbours";
}

TEST_F(Port, EveryLevelOfAChainBinds)
{
    Scheduler &top = scheduler({{10'000, 0}});
    Scheduler *lowest = &top;
    for (int level = 0; level < 5; ++level)
        lowest = &scheduler({{level == 2 ? 4'000U : 0U, level == 2 ? 3036U : 0U}}, lowest);
    Queue &limited = queue(*lowest);
    Queue &beside = queue(top);
    enter(limited, 1, {10'000, 1500});
    enter(beside, 2, {10'000, 1500});
    const std::vector<std::uint64_t> found = rates({&limited, &beside});
    EXPECT_NEAR(static_cast<double>(found[0]), 4'000, 3);
    EXPECT_NEAR(static_cast<double>(found[1]), 6'000, 3);
}

TEST_F(Port, ShapersOfOneFrameKeepTheirRatesUnderOneThatFits)
{
    for (const std::uint32_t burst : {0U, 1U, 1499U, 1500U}) {
        Scheduler &shared = scheduler({{6'000, burst}});
        Queue &faster = queue(shared, 4'000, burst);
        Queue &slower = queue(shared, 2'000, burst);
        enter(faster, 1, {10'000, 1500});
        enter(slower, 2, {10'000, 1500});
        const std::vector<std::uint64_t> found = rates({&faster, &slower});
        EXPECT_NEAR(static_cast<double>(found[0]), 4'000, 2) << burst;
        EXPECT_NEAR(static_cast<double>(found[1]), 2'000, 2) << burst;
        port.detach(faster);
        port.detach(slower);
        port.reset();
    }
}

TEST_F(Port, AFrameLongerThanTheBurstLeaves)
{
    /* 8,000 kbit/s: an octet in a microsecond. */
    enter(queue(scheduler(), 8'000, 1499), 1, {3, 1500});
    EXPECT_EQ(depart(second), (Departures{{0, 1}, {1'216, 1}, {1'501'000, 1}})) << "1 is owed, and then 1,501";
}

TEST_F(Port, AShapedQueueSendsItsBurstAndThenAtItsRate)
{
    /* 80,000 kbit/s: 100 octets take 10,000 nanoseconds; on the line, 96. */
    enter(queue(scheduler(), 80'000, 300), 1, {7, 100}, second);
    EXPECT_EQ(depart(2 * second), (Departures{{second, 1},
                                              {second + 96, 1},
                                              {second + 192, 1},
                                              {second + 288, 1},
                                              {second + 10'000, 1},
                                              {second + 20'000, 1},
                                              {second + 30'000, 1}}));
}

TEST_F(Port, SiblingsHaveEqualOctetsWhateverTheirFrames)
{
    Scheduler &shared = scheduler({{100'000, 1500}});
    Queue &small = queue(shared);
    Queue &large = queue(shared);
    enter(small, 1, {100'000, 64});
    enter(large, 2, {10'000, 1500});
    depart(second / 10);
    EXPECT_NEAR(static_cast<double>(octets_sent(small)), static_cast<double>(octets_sent(large)), 3036 + 1500);
}

TEST_F(Port, SchedulersHaveOctetsInProportionToTheirQuanta)
{
    Scheduler &shared = scheduler({{100'000, 0}});
    Queue &one = queue(scheduler({}, &shared, 3000));
    Queue &other = queue(scheduler({}, &shared, 1000));
    enter(one, 1, {10'000, 1500});
    enter(other, 2, {10'000, 64});
    depart(second / 10);
    EXPECT_NEAR(static_cast<double>(octets_sent(one)), 3.0 * static_cast<double>(octets_sent(other)), 3000 + 3 * 1500);
}

TEST_F(Port, OneThatIsShutLeavesTheOthersTheLine)
{
    Queue &slow = queue(scheduler({{8, 0}}));
    Queue &fast = queue(scheduler());
    enter(slow, 1, {3, microsecond});
    enter(fast, 2, {3, microsecond});
    EXPECT_EQ(depart(10'000), (Departures{{0, 1}, {1000, 2}, {2000, 2}, {3000, 2}}));
}

TEST_F(Port, AFrameThatArrivesWhileTheLineIsBusyWaitsForIt)
{
    enter(queue(scheduler()), 1, {1, microsecond}, 0);
    enter(queue(scheduler()), 2, {1, microsecond}, 400);
    EXPECT_EQ(depart(5000), (Departures{{0, 1}, {1000, 2}}));
    EXPECT_EQ(queues[1].delays.largest(), 600U);
    EXPECT_EQ(queues[1].deepest.frames, 1U);
}

TEST_F(Port, AFrameThatCannotLeaveAtOnceNeedsRoom)
{
    Queue &cramped = queue(scheduler(), 0, 0, 0);
    EXPECT_EQ(enter(cramped, 1, {1, microsecond}, 0), 0U);
    EXPECT_EQ(enter(cramped, 1, {1, microsecond}, 999), 1U) << "the line is busy";
    EXPECT_EQ(enter(cramped, 1, {1, microsecond}, 1000), 0U);
    Queue &shut = queue(scheduler({{8, 0}}), 0, 0, 0);
    EXPECT_EQ(enter(shut, 1, {1, 100}, second), 0U);
    EXPECT_EQ(enter(shut, 1, {1, 100}, second + 5000), 0U) << "a bucket holds a frame";
    EXPECT_EQ(enter(shut, 1, {1, 100}, second + 10'000), 1U);
}

TEST_F(Port, AQueueWithoutARateKeepsWhatItsBurstDoesNotCover)
{
    Queue &stuck = queue(scheduler(), 0, 250);
    enter(stuck, 1, {5, 100});
    EXPECT_EQ(depart(softnode::end_of_time).size(), 3U) << "the third one owes";
    EXPECT_EQ(stuck.waiting().frames, 2U);
}

TEST_F(Port, NothingLeavesADetachedQueueAndItsNeighboursGoOn)
{
    Scheduler &shared = scheduler();
    Queue &removed = queue(shared);
    enter(removed, 1, {3, microsecond});
    enter(queue(shared), 2, {2, microsecond});
    EXPECT_EQ(depart(0), (Departures{{0, 1}}));
    port.detach(removed);
    EXPECT_EQ(depart(5000), (Departures{{1000, 2}, {2000, 2}}));
}

TEST_F(Port, DetachingTheOnlyQueueLeavesNothingToDo)
{
    Queue &only = queue(scheduler({{8, 0}}, &scheduler()));
    enter(only, 1, {3, microsecond});
    depart(0);
    port.detach(only);
    EXPECT_TRUE(depart(softnode::end_of_time).empty());
}

TEST_F(Port, DetachingAQueueThatIsShutLeavesNothingToDo)
{
    Queue &only = queue(scheduler(), 8, 0);
    enter(only, 1, {3, microsecond});
    depart(0);
    port.detach(only);
    EXPECT_TRUE(depart(softnode::end_of_time).empty());
}

/* A turn is a frame. The shaper owes a microsecond's frame, and opens when the line has carried it. */
TEST_F(Port, WhoOpensWhenTheLineIsFreeComesBehindThoseThatWaitForIt)
{
    Queue &opening = queue(scheduler({}, nullptr, 1000), 9'840'000, 0);
    Queue &waiting = queue(scheduler({}, nullptr, 1000));
    enter(opening, 1, {2, microsecond});
    enter(waiting, 2, {2, microsecond});
    EXPECT_EQ(depart(second), (Departures{{0, 1}, {1000, 2}, {2000, 1}, {3000, 2}}));
}

/* 8,000,000 kbit/s: an octet in a nanosecond. One owes its frame from 0 on, the other what is not there at 1000. */
TEST_F(Port, OfThoseThatOpenAtOneInstantTheOneThatWasAttachedFirstLeavesFirst)
{
    Scheduler &shared = scheduler();
    Queue &earlier = queue(shared, 8'000'000);
    Queue &later = queue(shared, 8'000'000);
    enter(later, 2, {2, microsecond});
    enter(earlier, 1, {2, microsecond});
    EXPECT_EQ(depart(second), (Departures{{0, 2}, {1000, 1}, {2000, 1}, {3000, 2}}));
}

/* The scheduler still owes what the queue that is gone had sent. */
TEST_F(Port, AQueueBelowASchedulerThatIsShutWaitsForItOnce)
{
    Scheduler &shared = scheduler({{8'000, 0}});
    Queue &removed = queue(shared);
    Queue &neighbour = queue(scheduler());
    enter(removed, 1, {3, microsecond});
    EXPECT_EQ(depart(0), (Departures{{0, 1}}));
    port.detach(removed);
    Queue &late = queue(shared);
    enter(late, 2, {5, microsecond}, 1000);
    enter(neighbour, 3, {10'000, microsecond}, 1000);
    depart(10'000'000);
    EXPECT_EQ(late.counters[Fate::sent].frames, 5U);
    EXPECT_EQ(neighbour.counters[Fate::sent].frames, 9'995U) << "all that the line carries beside";
}

TEST_F(Port, WhatWouldLeaveAfterTheEndOfTimeNeverDoes)
{
    Queue &waiting = queue(scheduler({{1, 0}}));
    enter(waiting, 1, {3, 65'535}, softnode::end_of_time - 10);
    EXPECT_EQ(depart(softnode::end_of_time).size(), 1U);
    EXPECT_EQ(waiting.waiting().frames, 2U);
}

TEST_F(Port, AResetForgetsWhatWasWaiting)
{
    Queue &shut = queue(scheduler(), 8, 0);
    enter(shut, 1, {3, microsecond});
    enter(queue(scheduler()), 2, {3, microsecond});
    depart(0);
    port.reset();
    EXPECT_TRUE(depart(softnode::end_of_time).empty());
}

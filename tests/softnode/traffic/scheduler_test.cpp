/*
 * scheduler_test.cpp - queues that share one line. With the tree around them: node/qos_traffic_test.cpp.
 */
#include "softnode/traffic/scheduler.h"

#include <gtest/gtest.h>

#include <optional>
#include <vector>

using softnode::DestinationMacs;
using softnode::Handle;
using softnode::Instant;

namespace
{

const DestinationMacs there{{2, 0, 0, 2, 0, 1}};
constexpr std::uint32_t octets = 125; /* a microsecond at 1 Gbit/s */

class Scheduler : public testing::Test
{
protected:
    Handle add_queue()
    {
        return queues.add({Handle::null, {0, 256'000, 0}});
    }

    std::uint64_t enter(Handle queue, std::uint64_t frames, Instant now = 0)
    {
        return scheduler.enter(queue, queues, there, {frames, octets}, now);
    }

    /* When so many frames leave, one after the other. */
    std::vector<Instant> depart(std::size_t frames)
    {
        std::vector<Instant> departures;
        for (; frames != 0; --frames) {
            departures.push_back(scheduler.next_departure().value());
            scheduler.depart(departures.back(), queues);
        }
        return departures;
    }

    std::uint64_t sent(Handle queue) const
    {
        return queues.at(queue).counters[softnode::Fate::sent].frames;
    }

    softnode::Registry<softnode::Queue> queues{softnode::Kind::queue};
    softnode::Scheduler scheduler{1'000'000};
};

} // namespace

TEST_F(Scheduler, WithoutFramesHasNothingToSend)
{
    EXPECT_EQ(scheduler.next_departure(), std::nullopt);
    enter(add_queue(), 1);
    depart(1);
    EXPECT_EQ(scheduler.next_departure(), std::nullopt);
}

TEST_F(Scheduler, IsBusyForTheTimeThatTheOctetsTake)
{
    enter(add_queue(), 3);
    EXPECT_EQ(depart(3), (std::vector<Instant>{0, 1'000, 2'000}));
}

TEST_F(Scheduler, WithoutAPeakRateHasTheLineRate)
{
    for (const std::uint64_t peak : {0ULL, 10'000'000ULL, 100'000'000ULL}) {
        scheduler = softnode::Scheduler(peak);
        enter(add_queue(), 3);
        EXPECT_EQ(depart(3), (std::vector<Instant>{0, 100, 200})) << peak;
    }
}

TEST_F(Scheduler, HasItsQueuesTakeTurns)
{
    const Handle one = add_queue();
    const Handle other = add_queue();
    enter(one, 10);
    enter(other, 10);
    depart(6);
    EXPECT_EQ(sent(one), 3U);
    EXPECT_EQ(sent(other), 3U);
}

TEST_F(Scheduler, GoesOnWithTheOthersWhenAQueueLeaves)
{
    const Handle one = add_queue();
    const Handle other = add_queue();
    enter(one, 10);
    enter(other, 10);
    scheduler.leave(one);
    depart(4);
    EXPECT_EQ(sent(one), 0U);
    EXPECT_EQ(sent(other), 4U);
    scheduler.leave(other);
    EXPECT_EQ(scheduler.next_departure(), std::nullopt);
}

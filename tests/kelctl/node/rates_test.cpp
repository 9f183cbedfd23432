// Rates of given readings.
#include "kelctl/node/rates.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kelctl
{
namespace
{

using testing::SizeIs;

constexpr uint64_t second = 1'000'000'000;

statistics with_queue(uint32_t frames, uint64_t octets, uint32_t dropped = 0, uint32_t waiting = 0)
{
    statistics read;
    ebcom_queue_stats stats{};
    stats.pkts_tx = frames;
    stats.octets_tx = octets;
    stats.pkts_dropped = dropped;
    stats.pkts_out_standing = waiting;
    read.queues = {{.port = 6, .stats = stats}};
    return read;
}

statistics with_pcep(const std::string &text)
{
    statistics read;
    read.pceps = {{.id = 7, .text = text}};
    return read;
}

TEST(Rates, QueueRatesAreThoseOfWhatLeft)
{
    const auto found = rates_between(with_queue(100, 1000), with_queue(150, 126'000, 3, 4), second / 2);
    ASSERT_THAT(found.queues, SizeIs(1));
    const queue_rates &queue = found.queues[0];
    EXPECT_TRUE(queue.known);
    EXPECT_EQ(queue.port, 6);
    EXPECT_EQ(queue.sent.frames, 150u);
    EXPECT_EQ(queue.sent.frames_per_second, 100u);
    EXPECT_EQ(queue.sent.kbit_per_second, 2000u);
    EXPECT_EQ(queue.dropped, 3u);
    EXPECT_EQ(queue.waiting, 4u);
}

TEST(Rates, FramesThatWrappedAroundIn32BitsAreCounted)
{
    const auto found = rates_between(with_queue(0xFFFF'FFFF, 0), with_queue(9, 0), second);
    EXPECT_EQ(found.queues.at(0).sent.frames_per_second, 10u);
}

TEST(Rates, QueueThatTheLibraryDoesNotFindIsNotKnown)
{
    statistics unknown;
    unknown.queues = {{.port = 10, .stats = std::nullopt}};
    const auto found = rates_between(unknown, unknown, second);
    EXPECT_FALSE(found.queues.at(0).known);
    EXPECT_EQ(found.queues.at(0).port, 10);
}

TEST(Rates, PcepCountersAreFoundByTheirNamesInAnyBlock)
{
    const auto found = rates_between(
        with_pcep(
            R"({"in": {"frames_received": 1, "octets_received": 0}, "out": {"frames_sent": 5, "octets_sent": 0}})"),
        with_pcep(R"({"in": {"frames_received": 3, "octets_received": 250, "frames_dropped": 9},
                      "out": {"frames_sent": 25, "octets_sent": 2500}})"),
        2 * second);
    ASSERT_THAT(found.pceps, SizeIs(1));
    const pcep_rates &pcep = found.pceps[0];
    EXPECT_EQ(pcep.id, 7u);
    EXPECT_EQ(pcep.sent.frames, 25u);
    EXPECT_EQ(pcep.sent.frames_per_second, 10u);
    EXPECT_EQ(pcep.sent.kbit_per_second, 10u);
    EXPECT_EQ(pcep.received.frames, 3u);
    EXPECT_EQ(pcep.received.frames_per_second, 1u);
    EXPECT_EQ(pcep.received.kbit_per_second, 1u);
    EXPECT_EQ(pcep.dropped, 9u);
}

TEST(Rates, CountersThatAreNotThereAreZero)
{
    const auto found = rates_between(with_pcep("no document"), with_pcep("{}"), second);
    EXPECT_EQ(found.pceps.at(0).sent.frames, 0u);
    EXPECT_EQ(found.pceps.at(0).dropped, 0u);
}

} // namespace
} // namespace kelctl

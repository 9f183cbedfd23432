// Traffic played on a software accelerator that has only a PCEP.
#include "kelctl/accelerator/traffic_player.h"

#include "kel/kel_core_ic_pcep.h"
#include "kelctl/accelerator/software_accelerator.h"
#include "kelctl/input/interruption.h"
#include "kelctl/jobs/take_down.h"
#include "script_session.h"
#include "softnode/softnode.h"

#include <gtest/gtest.h>

#include <csignal>

namespace kelctl
{
namespace
{

constexpr uint64_t millisecond = 1'000'000;

class TrafficPlayer : public testing::Test
{
protected:
    TrafficPlayer()
    {
        softnode_reset();
        EXPECT_EQ(here.run("pcep start").status, exit_done);
        EXPECT_EQ(
            here.run("pcep add 7 --remote-id 1 --local 02:00:00:02:00:01 --remote 02:00:00:02:00:02 --vlan 1").status,
            exit_done);
    }

    ~TrafficPlayer() override
    {
        take_down(here);
    }

    static uint64_t received()
    {
        ebcom_pcep_stats stats{};
        EXPECT_EQ(kel_ic_pcep_get_stats(7, &stats), 0u);
        return stats.inbound.in_cnt0;
    }

    static uint64_t sent()
    {
        ebcom_pcep_stats stats{};
        EXPECT_EQ(kel_ic_pcep_get_stats(7, &stats), 0u);
        return stats.outbound.out_cnt0;
    }

    static traffic_entry to_the_pcep()
    {
        traffic_entry entry;
        entry.to = parse_mac_address("02:00:00:02:00:01");
        entry.octets = 100;
        entry.frames_per_second = 1000;
        return entry;
    }

    script_session here;
    traffic_player player;
};

TEST_F(TrafficPlayer, FramesComeWhileVirtualTimePasses)
{
    advance_virtual_time(5); // the schedule counts from where it begins
    player.add(to_the_pcep());
    EXPECT_EQ(received(), 0u);
    player.pass(10 * millisecond);
    EXPECT_EQ(received(), 10u);
    EXPECT_EQ(virtual_time(), 10 * millisecond + 5);
    EXPECT_EQ(player.pass(millisecond / 2), millisecond / 2);
    EXPECT_EQ(received(), 11u);
}

TEST_F(TrafficPlayer, BurstsComeAtOnceAndSendersSend)
{
    traffic_entry burst;
    burst.from = 7;
    burst.octets = 64;
    burst.frames_per_second = 1000;
    burst.burst = 20;
    player.add(burst);
    player.pass(1);
    EXPECT_EQ(sent(), 20u);
}

TEST_F(TrafficPlayer, WithoutTrafficTimePassesAllTheSame)
{
    player.pass(123);
    EXPECT_EQ(virtual_time(), 123u);
}

TEST_F(TrafficPlayer, InterruptionEndsItWhereItIs)
{
    const interruption_watch watch;
    player.add(to_the_pcep());
    player.pass(millisecond);
    std::raise(SIGINT);
    EXPECT_EQ(player.pass(1000 * millisecond), 0u);
    EXPECT_EQ(received(), 1u);
}

TEST_F(TrafficPlayer, StreamCountsItsTimesFromWhenItIsAdded)
{
    player.pass(5 * millisecond);
    traffic_entry late = to_the_pcep();
    late.start = millisecond;
    late.stop = 3 * millisecond;
    player.add(late);
    player.pass(millisecond);
    EXPECT_EQ(received(), 0u);
    player.pass(100 * millisecond);
    EXPECT_EQ(received(), 2u);
}

TEST_F(TrafficPlayer, FramesForWhatDoesNotExistAreLost)
{
    traffic_entry nowhere = to_the_pcep();
    nowhere.to = parse_mac_address("02:00:00:02:00:09");
    player.add(nowhere);
    EXPECT_EQ(player.pass(millisecond), millisecond);
    EXPECT_EQ(received(), 0u);
}

} // namespace
} // namespace kelctl

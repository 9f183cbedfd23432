// Traffic played on a software accelerator where only a PCEP stands.
#include "kelctl/traffic_player.h"

#include "kel/kel_core_ic_pcep.h"
#include "kelctl/interruption.h"
#include "kelctl/node_file.h"
#include "kelctl/pcep_steps.h"
#include "kelctl/software_accelerator.h"
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
        file.pceps = {{.id = 7,
                       .remote_id = 1,
                       .local_mac = parse_mac_address("02:00:00:02:00:01").value(),
                       .remote_mac = parse_mac_address("02:00:00:02:00:02").value(),
                       .vlan = 1,
                       .priority = 0,
                       .at = {},
                       .id_at = {}}};
        node = std::make_unique<bring_up>(pcep_steps(file), log);
        EXPECT_FALSE(node->up([](size_t) {}));
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

    traffic_entry to_the_pcep() const
    {
        traffic_entry entry;
        entry.to = file.pceps[0].local_mac;
        entry.octets = 100;
        entry.frames_per_second = 1000;
        return entry;
    }

    node_file file;
    trace_log log{nullptr};
    std::unique_ptr<bring_up> node;
};

TEST_F(TrafficPlayer, FramesComeWhileVirtualTimePasses)
{
    advance_virtual_time(5); // the schedule counts from where it begins
    traffic_player player({to_the_pcep()});
    EXPECT_EQ(received(), 0u);
    player.pass(10 * millisecond);
    EXPECT_EQ(received(), 10u);
    EXPECT_EQ(virtual_time(), 10 * millisecond + 5);
    player.pass(millisecond / 2);
    EXPECT_EQ(received(), 11u);
    EXPECT_EQ(player.time(), 10 * millisecond + millisecond / 2);
}

TEST_F(TrafficPlayer, BurstsComeAtOnceAndSendersSend)
{
    traffic_entry burst;
    burst.from = 7;
    burst.octets = 64;
    burst.frames_per_second = 1000;
    burst.burst = 20;
    traffic_player player({burst});
    player.pass(1);
    EXPECT_EQ(sent(), 20u);
}

TEST_F(TrafficPlayer, WithoutTrafficTimePassesAllTheSame)
{
    traffic_player player({});
    player.pass(123);
    EXPECT_EQ(virtual_time(), 123u);
}

TEST_F(TrafficPlayer, InterruptionEndsItWhereItIs)
{
    const interruption_watch watch;
    traffic_player player({to_the_pcep()});
    player.pass(millisecond);
    std::raise(SIGINT);
    player.pass(1000 * millisecond);
    EXPECT_EQ(player.time(), millisecond);
    EXPECT_EQ(received(), 1u);
}

TEST_F(TrafficPlayer, DestinationThatTheAcceleratorDoesNotKnowIsAMistake)
{
    traffic_entry nowhere = to_the_pcep();
    nowhere.to = parse_mac_address("02:00:00:02:00:09");
    traffic_player player({nowhere});
    EXPECT_THROW(player.pass(1), std::logic_error);
}

} // namespace
} // namespace kelctl

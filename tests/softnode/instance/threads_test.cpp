/*
 * threads_test.cpp - every function from any thread at once: whoever looks in finds a node that adds up.
 *
 * What this finds, it finds under the thread sanitizer.
 */
#include "control.h"
#include "follower.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string_view>
#include <thread>
#include <vector>

namespace
{

using json = notation::document;

constexpr std::uint32_t generous = 60'000; /* milliseconds; never reached when all is well */
constexpr std::array<std::uint8_t, 6> destination{2, 0, 0, 2, 0, 1};

std::uint64_t waiting_in_queues(const json &node, const char *what)
{
    std::uint64_t waiting = 0;
    for (const json &queue : node.at("queues"))
        waiting += queue.at("waiting").at(what).number<std::uint64_t>();
    return waiting;
}

void expect_to_add_up(const json &node)
{
    const json &counted = node.at("statistics");
    for (const char *what : {"frames", "octets"})
        EXPECT_EQ(counted.at("received").at(what).number<std::uint64_t>(),
                  counted.at("sent").at(what).number<std::uint64_t>() +
                      counted.at("dropped").at(what).number<std::uint64_t>() + waiting_in_queues(node, what));
}

class Threads : public ControlledNode
{
protected:
    /* Lays a path through a queue of its own and takes both away again. */
    void configure(void *scheduler)
    {
        ork_ebcom_pcep_path path{};
        std::copy(destination.begin(), destination.end(), path.macAddr);
        path.pcepType = 1;
        void *const queue = add_queue(scheduler, 1'000, 1'500);
        path.queue_hdl = queue;
        EXPECT_EQ(ork_ebcom_pcep_path_create(ork, &path), ORK_OK);
        const std::uint64_t pcep = create_pcep(1);
        softnode_timing_event_post(VORN_TU_EVENT_ADJNPUOFFS, 0);
        EXPECT_EQ(ork_ebcom_pcep_delete(ork, pcep), ORK_OK);
        EXPECT_EQ(ork_ebcom_pcep_path_delete(ork, &path), ORK_OK);
        EXPECT_EQ(kel_init_qos_queue_rem(queue), 0U);
    }

    /* Frames come and time passes, whether there is a path at the moment or not. */
    void load() const
    {
        const std::int32_t rc = softnode_traffic_offer(destination.data(), 10, 300);
        EXPECT_TRUE(rc == ORK_OK || rc == ORK_NOTAVAIL) << rc;
        softnode_time_advance(1'000'000);
    }

    void look_in() const
    {
        ebcom_global_stats statistics{};
        EXPECT_EQ(ork_ebcom_global_statistics_get(ork, &statistics), ORK_OK);
        expect_to_add_up(look_into_node());
        const std::unique_ptr<char, void (*)(void *)> picture(softnode_graph_dot(), std::free);
        EXPECT_TRUE(std::string_view(picture.get()).starts_with("digraph"));
    }
};

} // namespace

TEST_F(Threads, ConfigureLoadReadAndFollowTheTimingUnitAtOnce)
{
    constexpr int rounds = 100;
    void *const scheduler = create_scheduler();
    Follower follower;
    ASSERT_EQ(softnode_timing_settle(generous), 1);

    std::atomic<bool> configured = false;
    std::thread loader([&] {
        while (!configured)
            load();
    });
    std::thread reader([&] {
        while (!configured)
            look_in();
    });
    for (int round = 0; round < rounds; ++round)
        configure(scheduler);
    configured = true;
    loader.join();
    reader.join();

    ASSERT_EQ(softnode_timing_settle(generous), 1);
    EXPECT_EQ(follower.events().size(), static_cast<std::size_t>(rounds));
    expect_to_add_up(look_into_node());
}

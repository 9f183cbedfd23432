// The destinations of all ports together, through the operations that keep them: what stands where after many
// changes.
#include "scripted_platform.h"
#include "shaper_requests.h"
#include "transcript.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <map>
#include <random>
#include <vector>

namespace
{

// What the library should know, in the plainest form: per port its queue, and its destinations in the order of
// adding.
class plain_registry
{
public:
    uint32_t add(int32_t iell_port, const mac_address &destination)
    {
        port &at = ports_[iell_port];
        if (at.destinations.empty())
            at.queue = scripted::queue(++queues_);
        at.destinations.push_back(destination);
        return 0;
    }

    uint32_t remove(int32_t iell_port, const mac_address &destination)
    {
        std::vector<mac_address> &destinations = ports_[iell_port].destinations;
        const auto found = std::ranges::find(destinations, destination);
        if (found == destinations.end())
            return 4;
        destinations.erase(found);
        return 0;
    }

    void *queue_of(const mac_address &destination)
    {
        for (const qos_port &each : qos_ports)
            if (const port &at = ports_[each.iell_port]; std::ranges::count(at.destinations, destination) > 0)
                return at.queue;
        return untouched;
    }

private:
    struct port {
        void *queue = nullptr;
        std::vector<mac_address> destinations;
    };

    std::map<int32_t, port> ports_;
    uint32_t queues_ = 0;
};

// They differ in one octet each, the first or the last ones among them.
constexpr mac_address similar_destinations[] = {
    {2, 0, 0, 2, 0, 1}, {2, 0, 0, 2, 0, 2}, {2, 0, 0, 2, 1, 1},
    {2, 0, 0, 3, 0, 1}, {2, 1, 0, 2, 0, 1}, {3, 0, 0, 2, 0, 1},
};

constexpr int32_t some_ports[] = {0, 6, 24, 8, 42};

} // namespace

TEST(Destinations, StandAsInPlainListsAfterAnyChanges)
{
    scheduler_tree_up();
    plain_registry expected;
    std::mt19937 random(1);
    uint32_t copies = 0;
    for (int change = 0; change < 3000; ++change) {
        const mac_address &destination = similar_destinations[random() % std::size(similar_destinations)];
        const int32_t port = some_ports[random() % std::size(some_ports)];
        if (random() % 2 == 0) {
            ASSERT_EQ(add(unshaped(port, destination)), expected.add(port, destination));
            ++copies;
        } else {
            ASSERT_EQ(remove(unshaped(port, destination)), expected.remove(port, destination));
        }
        for (const mac_address &each : similar_destinations)
            ASSERT_EQ(queue_of(each), expected.queue_of(each)) << change;
        transcript::forget();
    }
    EXPECT_EQ(scripted::calls_of("malloc"), copies);
}

TEST(Destinations, OneOnEveryPortIsFoundOnTheFirstOneLeft)
{
    scheduler_tree_up();
    plain_registry expected;
    for (auto place = std::rbegin(qos_ports); place != std::rend(qos_ports); ++place) {
        const qos_port &each = *place;
        for (int copy = 0; copy < 2; ++copy)
            ASSERT_EQ(add(unshaped(each.iell_port)), expected.add(each.iell_port, peer));
        ASSERT_EQ(queue_of(peer), expected.queue_of(peer));
    }
    for (const qos_port &each : qos_ports) {
        for (int copy = 0; copy < 2; ++copy) {
            ASSERT_EQ(remove(unshaped(each.iell_port)), expected.remove(each.iell_port, peer));
            ASSERT_EQ(queue_of(peer), expected.queue_of(peer));
        }
        transcript::forget();
    }
    EXPECT_EQ(queue_of(peer), untouched);
}

TEST(Destinations, AThousandAreToldApart)
{
    scheduler_tree_up();
    plain_registry expected;
    std::mt19937 random(1);
    std::vector<mac_address> destinations(1000);
    for (mac_address &each : destinations)
        std::ranges::generate(each, [&random] { return static_cast<uint8_t>(random()); });
    const auto port_of = [](size_t number) { return some_ports[number % std::size(some_ports)]; };

    for (size_t i = 0; i < destinations.size(); ++i)
        ASSERT_EQ(add(unshaped(port_of(i), destinations[i])), expected.add(port_of(i), destinations[i]));
    transcript::forget();
    for (size_t i = 0; i < destinations.size(); i += 2)
        ASSERT_EQ(remove(unshaped(port_of(i), destinations[i])), expected.remove(port_of(i), destinations[i]));
    transcript::forget();
    for (const mac_address &each : destinations)
        ASSERT_EQ(queue_of(each), expected.queue_of(each));
    transcript::forget();
}

TEST(Destinations, AreAllForgottenAtTakeDown)
{
    scheduler_tree_up();
    constexpr int32_t port_of_one_path = 7;
    EXPECT_EQ(add(unshaped(port_of_one_path, peer)), 0U);
    for (const int32_t port : some_ports)
        for (const mac_address &each : similar_destinations)
            EXPECT_EQ(add(unshaped(port, each)), 0U);
    EXPECT_EQ(kel_ic_ebcom_deinit_qos(), 0U);
    for (const mac_address &each : similar_destinations)
        EXPECT_EQ(queue_of(each), untouched);
    EXPECT_EQ(remove(unshaped(port_of_one_path, peer)), 4U);
    for (const int32_t port : some_ports)
        EXPECT_EQ(remove(unshaped(port)), 4U);
}

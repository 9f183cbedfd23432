// Which queue serves which port, found out on a node of the software accelerator.
#include "kelctl/node/read_back.h"

#include "kelctl/jobs/take_down.h"
#include "kelctl/library/trace_log.h"
#include "script_session.h"
#include "softnode/softnode.h"

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kelctl
{
namespace
{

using testing::ElementsAre;
using testing::Pair;
using testing::UnorderedElementsAre;

class ReadBack : public testing::Test
{
protected:
    ReadBack()
    {
        softnode_reset();
    }

    ~ReadBack() override
    {
        take_down(here);
    }

    // Brings up unshaped paths; the port knowledge of that node.
    port_knowledge ports_with(std::vector<std::pair<const char *, int32_t>> wanted)
    {
        EXPECT_EQ(here.run("ebcom start").status, exit_done);
        for (const auto &[mac, port] : wanted)
            EXPECT_EQ(here.run(fmt::format("ebcom path add {} --port {}", mac, port)).status, exit_done);
        node = read_snapshot(settled_document().value());
        return ports_of(node, here.paths);
    }

    // The ports in the order in which their queues were created.
    std::vector<int32_t> ports_in_order(const port_knowledge &ports)
    {
        std::vector<int32_t> found;
        for (const snapshot::queue &queue : node.queues)
            found.push_back(ports.port_of_queue.at(queue.self));
        return found;
    }

    script_session here;
    snapshot node;
};

TEST_F(ReadBack, QueueBelongsToThePortOfItsDestinations)
{
    const auto ports = ports_with({{"02:00:00:02:00:01", 42}, {"02:00:00:02:00:02", 6}, {"02:00:00:02:00:03", 0}});
    EXPECT_THAT(ports_in_order(ports), ElementsAre(42, 6, 0));
}

TEST_F(ReadBack, PortsThatOnlyShareDestinationsAreFoundToo)
{
    const auto ports = ports_with(
        {{"02:00:00:02:00:01", 42}, {"02:00:00:02:00:01", 12}, {"02:00:00:02:00:02", 7}, {"02:00:00:02:00:01", 6}});
    EXPECT_THAT(ports_in_order(ports), ElementsAre(42, 12, 7, 6));
}

TEST_F(ReadBack, QueueIsFoundByADestinationThatTheLibraryFindsOnIt)
{
    const auto ports = ports_with({{"02:00:00:02:00:01", 42},
                                   {"02:00:00:02:00:01", 12},
                                   {"02:00:00:02:00:02", 6},
                                   {"02:00:00:02:00:01", 6},
                                   {"02:00:00:02:00:03", 12},
                                   {"02:00:00:02:00:03", 42},
                                   {"02:00:00:02:00:04", 42}});
    std::map<int32_t, std::string> found_by;
    for (const auto &[queue, mac] : ports.found_by)
        found_by[ports.port_of_queue.at(queue)] = to_text(mac);
    EXPECT_THAT(found_by, ElementsAre(Pair(6, "02:00:00:02:00:01"), Pair(12, "02:00:00:02:00:03"),
                                      Pair(42, "02:00:00:02:00:04")));
}

TEST_F(ReadBack, QueueWhoseDestinationsAreAllFoundElsewhereIsFoundByNone)
{
    const auto ports = ports_with({{"02:00:00:02:00:01", 42}, {"02:00:00:02:00:01", 6}});
    ASSERT_EQ(ports.found_by.size(), 1u);
    EXPECT_EQ(ports.port_of_queue.at(ports.found_by.begin()->first), 6);
    EXPECT_EQ(ports.port_of_queue.size(), 2u);
}

TEST_F(ReadBack, DestinationsAreKeptPerPort)
{
    const auto ports = ports_with({{"02:00:00:02:00:01", 6}, {"02:00:00:02:00:01", 6}, {"02:00:00:02:00:01", 7}});
    const mac_address mac = parse_mac_address("02:00:00:02:00:01").value();
    EXPECT_THAT(ports.destinations, UnorderedElementsAre(Pair(6, ElementsAre(mac)), Pair(7, ElementsAre(mac))));
}

TEST_F(ReadBack, DestinationsThatAStopForgotLeadNowhere)
{
    ports_with({{"02:00:00:02:00:01", 6}});
    const added_paths added = here.paths;
    ASSERT_EQ(here.run("ebcom stop").status, exit_done);
    const auto ports = ports_of(*current_snapshot(), added);
    EXPECT_TRUE(ports.found_by.empty());
    EXPECT_TRUE(ports.port_of_queue.empty());
}

TEST_F(ReadBack, TimestampOffsetIsThereOnceSettled)
{
    softnode_timing_reading_set(7, 500'000);
    ports_with({});
    EXPECT_EQ(node.timestamp_offset, 14);
}

TEST_F(ReadBack, TimestampThreadThatGivesUpIsNotWaitedFor)
{
    EXPECT_EQ(softnode_faults_add("vorn_tu_get_nputimeoffset=-8"), nullptr);
    ports_with({});
    EXPECT_EQ(node.timestamp_offset, std::nullopt);
    EXPECT_EQ(here.log().background_failures().empty(), !here.log().installed());
}

} // namespace
} // namespace kelctl

// Rendering of given snapshots. The whole of it, on a real node, is the expected output of up_test.cpp.
#include "kelctl/views/node_view.h"

#include "terminal/terminal.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <regex>
#include <sstream>

namespace kelctl
{
namespace
{

using testing::EndsWith;
using testing::HasSubstr;

mac_address mac(const char *text)
{
    return parse_mac_address(text).value();
}

snapshot small_node()
{
    snapshot node;
    node.schedulers = {{0x10, 0}, {0x11, 0x10}, {0x12, 0x11}, {0x13, 0x11}};
    node.queues = {{.self = 0x20, .scheduler = 0x12, .rate = 1000, .burst = 2048, .threshold = 512, .shaped = true},
                   {.self = 0x21, .scheduler = 0x12, .rate = 0, .burst = 0, .threshold = 5'120'000, .shaped = false}};
    node.paths = {{mac("02:00:00:02:00:01"), 0x20}};
    return node;
}

std::string plain(const snapshot &node, const port_knowledge &ports = {}, std::optional<size_t> added_paths = {},
                  std::optional<size_t> width = {})
{
    return node_view(node, ports, added_paths, {terminal::painter(false), width});
}

snapshot::pcep pcep(uint32_t id, const char *local_mac, const char *remote_mac)
{
    return {.id = id,
            .remote_id = 9,
            .local_mac = mac(local_mac),
            .remote_mac = mac(remote_mac),
            .vlan = 100,
            .priority = 5,
            .bound = false};
}

TEST(NodeView, ShowsChainsGroupsQueuesAndDestinations)
{
    const port_knowledge ports = {.port_of_queue = {{0x20, 6}, {0x21, 7}},
                                  .unit_of_scheduler = {{0x12, "RLU1"}, {0x13, "RLU2"}},
                                  .destinations = {{6, {mac("02:00:00:02:00:01")}}},
                                  .found_by = {}};
    EXPECT_THAT(plain(small_node(), ports), EndsWith("\n\n"
                                                     "schedulers and queues\n"
                                                     "0x10 - 0x11, a chain of 2 levels\n"
                                                     "  0x12  RLU1\n"
                                                     "    RLU1P (6)   1 Mbit/s, burst 2 KiB, threshold 512 octets\n"
                                                     "      02:00:00:02:00:01 OB\n"
                                                     "    RLU1Q (7)   unshaped, threshold 5000 KiB\n"
                                                     "  0x13  RLU2  no queues\n"
                                                     "\n"));
}

TEST(NodeView, QueueOfNoKnownPortIsToldByItsHandle)
{
    EXPECT_THAT(plain(small_node()), HasSubstr("\n  0x12\n    queue 0x20  "));
}

TEST(NodeView, DestinationOfAnotherQueueSaysThroughWhichItIsSent)
{
    const port_knowledge ports = {
        .port_of_queue = {{0x20, 6}, {0x21, 7}},
        .unit_of_scheduler = {},
        .destinations = {{6, {mac("02:00:00:02:00:01")}}, {7, {mac("02:00:00:02:00:01"), mac("02:00:00:02:00:09")}}},
        .found_by = {}};
    const std::string view = plain(small_node(), ports);
    EXPECT_THAT(view, HasSubstr("02:00:00:02:00:01 OB, sent through RLU1P (6)\n"));
    EXPECT_THAT(view, HasSubstr("02:00:00:02:00:09 OB, without a queue\n"));
}

TEST(NodeView, ThousandsOfDestinationsAreSummarisedUnlessAskedFor)
{
    snapshot node = small_node();
    node.paths.clear();
    for (uint32_t i = 0; i < 10'000; ++i)
        node.paths.push_back({counted_up(mac("02:00:00:02:00:00"), 2 * i), 0x20});
    EXPECT_THAT(plain(node), HasSubstr("      02:00:00:02:00:26 OB\n      9,980 more rows; --all shows them\n"));
    const std::string all = node_view(node, {}, {}, {.paint = terminal::painter(false), .most_rows = {}});
    EXPECT_THAT(all, HasSubstr("      02:00:00:02:4e:1e OB\n"));
    EXPECT_THAT(all, testing::Not(HasSubstr("more rows")));
}

TEST(NodeView, ASchedulerWithQueuesOfItsOwnIsInNoChain)
{
    snapshot node;
    node.schedulers = {{0x10, 0}, {0x11, 0x10}};
    EXPECT_THAT(plain(node), HasSubstr("0x10 - 0x11, a chain of 2 levels"));
    node.queues = {{.self = 0x20, .scheduler = 0x10, .rate = 0, .burst = 0, .threshold = 512, .shaped = false}};
    EXPECT_THAT(plain(node), testing::Not(HasSubstr("chain")));
}

TEST(NodeView, FitsItsPage)
{
    snapshot node = small_node();
    node.schedulers = {{0x5c00000001, 0}, {0x12, 0x5c00000001}};
    node.queues[0].rate = 4'294'967'295;
    node.queues[0].burst = 1'048'575;
    node.queues[0].threshold = 4'294'967'040;
    node.pceps = {pcep(511, "02:00:00:03:00:01", "02:00:00:03:00:01")};
    node.pceps[0].remote_id = 0xFF'FFFF;
    node.pceps[0].bound = true;
    node.groups = {{511, std::vector<uint32_t>(16, 510)}};
    for (const size_t width : {40u, 60u, 80u}) {
        std::istringstream lines(plain(node, {}, 1, width));
        for (std::string line; std::getline(lines, line);)
            EXPECT_LE(line.size(), width) << line;
    }
}

TEST(NodeView, ColoursChangeNothingElse)
{
    const std::string coloured = node_view(small_node(), {}, 1, {terminal::painter(true)});
    EXPECT_THAT(coloured, HasSubstr("\x1b[1mschedulers and queues\x1b[0m\n"));
    EXPECT_EQ(std::regex_replace(coloured, std::regex("\x1b\\[[0-9;]*m"), ""), plain(small_node(), {}, 1));
}

TEST(NodeView, SaysWhatIsNotThere)
{
    EXPECT_EQ(plain({}, {}, 0), "interface     none\n"
                                "parameters    not set\n"
                                "capabilities  burst up to 1048575 octets, PCEP ids up to 511\n"
                                "multicast     up to 30 groups of up to 16 members\n"
                                "timestamp     no offset\n"
                                "paths         0 added, to 0 destinations through 0 queues\n"
                                "\n"
                                "schedulers and queues\n"
                                "\n");
}

TEST(NodeView, SaysWhatIsThere)
{
    snapshot node = small_node();
    node.interface = {7, 258};
    node.globals = {1500, 0x0800, {1, 15}};
    node.timestamp_offset = -3;
    const std::string view = plain(node, {}, 2);
    EXPECT_THAT(view, HasSubstr("interface     Ethernet device 7, VSI 258\n"));
    EXPECT_THAT(view, HasSubstr("parameters    MTU 1500 octets, EtherType 0x0800, settings 1 and 15\n"));
    EXPECT_THAT(view, HasSubstr("timestamp     offset -3\n"));
    EXPECT_THAT(view, HasSubstr("paths         2 added, to 1 destination through 2 queues\n"));
}

TEST(NodeView, ShowsPcepsWithTheirLocationsAndWhatIsBoundAndGroupsWithTheirMembers)
{
    snapshot node;
    node.pceps = {pcep(7, "02:00:00:03:00:01", "02:00:00:02:00:01"), pcep(8, "02:00:00:01:00:01", "02:00:80:00:00:01")};
    node.pceps[0].bound = true;
    node.groups = {{300, {3, 1, 511}}, {4, {}}};
    EXPECT_THAT(plain(node), EndsWith("\n\n"
                                      "      remote                                                            bound\n"
                                      "PCEP      id  VLAN  pri  local                   remote                 to\n"
                                      "   7       9   100    5  02:00:00:03:00:01 HSFP  02:00:00:02:00:01 OB   EHSFP\n"
                                      "   8       9   100    5  02:00:00:01:00:01 EIOA  02:00:80:00:00:01 CPU\n"
                                      "\n"
                                      "group  members\n"
                                      "  300  3 1 511\n"
                                      "    4  none\n"
                                      "\n"));
}

} // namespace
} // namespace kelctl

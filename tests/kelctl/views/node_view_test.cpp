// Rendering of given snapshots. The whole of it, on a real node, is the expected output of up_test.cpp.
#include "kelctl/views/node_view.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

namespace kelctl
{
namespace
{

using testing::ContainsRegex;
using testing::HasSubstr;
using testing::Not;

const painter plain(false);

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

TEST(TreeView, ShowsChainsGroupsQueuesAndDestinations)
{
    const port_knowledge ports = {
        .port_of_queue = {{0x20, 6}, {0x21, 7}}, .destinations = {{6, {mac("02:00:00:02:00:01")}}}, .found_by = {}};
    EXPECT_EQ(tree_view(small_node(), ports, plain),
              "Schedulers and queues                   rate            burst          threshold\n"
              "0x10 - 0x11, a chain of 2 levels\n"
              "  0x12  RLU1\n"
              "    RLU1P (6)                       1 Mbit/s            2 KiB         512 octets\n"
              "      02:00:00:02:00:01                      OB\n"
              "    RLU1Q (7)                       unshaped                -           5000 KiB\n"
              "  0x13  no queues\n");
}

TEST(TreeView, QueueOfNoKnownPortIsToldByItsHandle)
{
    EXPECT_THAT(tree_view(small_node(), {}, plain), HasSubstr("\n  0x12\n    queue 0x20  "));
}

TEST(TreeView, DestinationOfAnotherQueueSaysThroughWhichItIsSent)
{
    const port_knowledge ports = {
        .port_of_queue = {{0x20, 6}, {0x21, 7}},
        .destinations = {{6, {mac("02:00:00:02:00:01")}}, {7, {mac("02:00:00:02:00:01"), mac("02:00:00:02:00:09")}}},
        .found_by = {}};
    const std::string view = tree_view(small_node(), ports, plain);
    EXPECT_THAT(view, HasSubstr("02:00:00:02:00:01                      OB   sent through RLU1P (6)\n"));
    EXPECT_THAT(view, HasSubstr("02:00:00:02:00:09                      OB   without a queue\n"));
}

TEST(TreeView, FitsEightyColumns)
{
    snapshot node = small_node();
    node.schedulers = {{0x5c00000001, 0}, {0x12, 0x5c00000001}};
    node.queues[0].rate = 4'294'967'295;
    node.queues[0].burst = 1'048'575;
    node.queues[0].threshold = 4'294'967'040;
    std::istringstream lines(tree_view(node, {}, plain));
    for (std::string line; std::getline(lines, line);)
        EXPECT_LE(line.size(), 80u) << line;
}

TEST(TreeView, ColoursChangeNothingElse)
{
    const std::string coloured = tree_view(small_node(), {}, painter(true));
    EXPECT_THAT(coloured, ContainsRegex("\x1b\\[1mSchedulers and queues .*threshold\x1b\\[0m\n"));
    EXPECT_THAT(tree_view(small_node(), {}, plain), Not(HasSubstr("\x1b")));
}

TEST(ServiceView, SaysWhatIsNotThere)
{
    EXPECT_EQ(service_view({}, {1'048'575, 511, 30, 16}, 0, plain),
              "Interface     none\n"
              "Parameters    not set\n"
              "Capabilities  burst up to 1048575 octets, PCEP ids up to 511\n"
              "              up to 30 multicast groups of up to 16 members\n"
              "Timestamp     no offset\n"
              "Paths         0 added, to 0 destinations through 0 queues\n");
}

TEST(ServiceView, SaysWhatIsThere)
{
    snapshot node = small_node();
    node.interface = {7, 258};
    node.globals = {1500, 0x0800, {1, 15}};
    node.timestamp_offset = -3;
    const std::string view = service_view(node, {}, 2, plain);
    EXPECT_THAT(view, HasSubstr("Interface     Ethernet device 7, VSI 258\n"));
    EXPECT_THAT(view, HasSubstr("Parameters    MTU 1500 octets, EtherType 0x0800, settings 1 and 15\n"));
    EXPECT_THAT(view, HasSubstr("Timestamp     offset -3\n"));
    EXPECT_THAT(view, HasSubstr("Paths         2 added, to 1 destination through 2 queues\n"));
}

TEST(ContentsText, CountsWhatIsThere)
{
    snapshot node = small_node();
    EXPECT_EQ(contents_text(node), "4 schedulers, 2 queues, 1 path");
    node.interface = {7, 258};
    node.queues.clear();
    node.paths.clear();
    EXPECT_EQ(contents_text(node), "4 schedulers, the interface");
    node.pceps.resize(2);
    node.groups.resize(1);
    EXPECT_EQ(contents_text(node), "4 schedulers, 2 PCEPs, 1 multicast group, the interface");
    EXPECT_EQ(contents_text({}), "");
}

} // namespace
} // namespace kelctl

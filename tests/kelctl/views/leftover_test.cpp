// Objects of given snapshots, by their names.
#include "kelctl/views/leftover.h"

#include "notation/json.h"
#include "terminal/folding.h"

#include <gtest/gtest.h>

namespace kelctl
{
namespace
{

mac_address mac(const char *text)
{
    return parse_mac_address(text).value();
}

snapshot small_node()
{
    snapshot node;
    node.schedulers = {{0x5c01, 0}, {0x5c02, 0x5c01}};
    node.queues = {{.self = 0x5c03, .scheduler = 0x5c02, .rate = 0, .burst = 0, .threshold = 0, .shaped = false}};
    node.paths = {{mac("02:00:00:02:00:01"), 0x5c03}};
    node.pceps.resize(1);
    node.pceps[0].id = 7;
    node.groups = {{300, {7}}, {301, {}}};
    node.interface = {7, 258};
    return node;
}

TEST(Leftover, NothingOfAnEmptyNode)
{
    EXPECT_EQ(leftover_view({}, terminal::usual_width), "");
    EXPECT_EQ(contents_text({}), "");
    EXPECT_EQ(leftover_fields({}), fields::array());
}

TEST(Leftover, EveryKindHasALineWithItsNames)
{
    EXPECT_EQ(leftover_view(small_node(), terminal::usual_width), "  2 schedulers:        0x5c01 0x5c02\n"
                                                                  "  1 queue:             0x5c03\n"
                                                                  "  1 path:              02:00:00:02:00:01\n"
                                                                  "  1 PCEP:              7\n"
                                                                  "  2 multicast groups:  300 301\n"
                                                                  "  1 interface:         Ethernet device 7\n");
}

TEST(Leftover, ContentsCountEveryKind)
{
    EXPECT_EQ(contents_text(small_node()), "2 schedulers, 1 queue, 1 path, 1 PCEP, 2 multicast groups, 1 interface");
}

TEST(Leftover, OnlyTheFirstOfManyAreNamed)
{
    snapshot node;
    for (uint32_t i = 0; i < 10'000; ++i)
        node.paths.push_back({counted_up(mac("02:00:00:02:00:00"), i), 0});
    EXPECT_EQ(leftover_view(node, terminal::usual_width),
              "  10,000 paths:        02:00:00:02:00:00 02:00:00:02:00:01 02:00:00:02:00:02\n"
              "                       02:00:00:02:00:03 02:00:00:02:00:04 02:00:00:02:00:05\n"
              "                       02:00:00:02:00:06 02:00:00:02:00:07 02:00:00:02:00:08\n"
              "                       02:00:00:02:00:09 02:00:00:02:00:0a 02:00:00:02:00:0b\n"
              "                       and 9,988 more\n");
    EXPECT_EQ(leftover_fields(node).size(), 10'000u);
}

TEST(Leftover, ProgramsGetKindAndNameOfEach)
{
    EXPECT_EQ(notation::to_json(leftover_fields(small_node())),
              R"([{"kind":"scheduler","name":"0x5c01"},{"kind":"scheduler","name":"0x5c02"},)"
              R"({"kind":"queue","name":"0x5c03"},{"kind":"path","name":"02:00:00:02:00:01"},)"
              R"({"kind":"pcep","name":"7"},{"kind":"group","name":"300"},{"kind":"group","name":"301"},)"
              R"({"kind":"interface","name":"Ethernet device 7"}])");
}

} // namespace
} // namespace kelctl

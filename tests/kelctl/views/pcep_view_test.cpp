// Rendering of given PCEPs and groups.
#include "kelctl/views/pcep_view.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

namespace kelctl
{
namespace
{

using testing::HasSubstr;

const painter plain(false);

snapshot::pcep pcep(uint32_t id, const char *local_mac, const char *remote_mac)
{
    return {.id = id,
            .remote_id = 9,
            .local_mac = parse_mac_address(local_mac).value(),
            .remote_mac = parse_mac_address(remote_mac).value(),
            .vlan = 100,
            .priority = 5,
            .bound = false};
}

TEST(PcepView, NodeWithNeitherShowsNothing)
{
    EXPECT_EQ(pcep_view({}, plain), "");
}

TEST(PcepView, ShowsAddressesWithTheirLocationsAndWhatIsBound)
{
    snapshot node;
    node.pceps = {pcep(7, "02:00:00:03:00:01", "02:00:00:02:00:01"), pcep(8, "02:00:00:01:00:01", "02:00:80:00:00:01")};
    node.pceps[0].bound = true;
    EXPECT_EQ(pcep_view(node, plain),
              "PCEP remote id VLAN prio  local                  remote                 bound to\n"
              "   7         9  100    5  02:00:00:03:00:01 HSFP 02:00:00:02:00:01 OB   EHSFP\n"
              "   8         9  100    5  02:00:00:01:00:01 EIOA 02:00:80:00:00:01 CPU\n"
              "\n");
}

TEST(PcepView, ShowsGroupsWithTheirMembers)
{
    snapshot node;
    node.groups = {{300, {3, 1, 511}}, {4, {}}};
    EXPECT_EQ(pcep_view(node, plain), "Group  members\n"
                                      "  300  3 1 511\n"
                                      "    4  none\n"
                                      "\n");
}

TEST(PcepView, FitsEightyColumns)
{
    snapshot node;
    node.pceps = {pcep(511, "02:00:00:03:00:01", "02:00:00:03:00:01")};
    node.pceps[0].remote_id = 0xFF'FFFF;
    node.pceps[0].vlan = 4095;
    node.pceps[0].bound = true;
    node.groups = {{511, std::vector<uint32_t>(16, 510)}};
    std::istringstream lines(pcep_view(node, plain));
    for (std::string line; std::getline(lines, line);)
        EXPECT_LE(line.size(), 80u) << line;
}

TEST(PcepView, HeadingsArePainted)
{
    snapshot node;
    node.groups = {{300, {}}};
    EXPECT_THAT(pcep_view(node, painter(true)), HasSubstr("\x1b[1mGroup  members\x1b[0m\n"));
}

} // namespace
} // namespace kelctl

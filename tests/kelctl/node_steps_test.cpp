// The steps of a whole node file.
#include "kelctl/node_steps.h"

#include <gtest/gtest.h>

namespace kelctl
{
namespace
{

node_file node_with(uint32_t paths, bool with_pcep)
{
    node_file node;
    node.paths.resize(1);
    node.paths[0].dst_mac = *parse_mac_address("02:00:00:02:00:01");
    node.paths[0].port = 6;
    node.paths[0].count = paths;
    node.pceps.resize(with_pcep ? 1 : 0);
    return node;
}

TEST(NodeSteps, PathsFollowTheServiceAndPcepsFollowThem)
{
    const node_file node = node_with(3, true);
    const node_steps steps = steps_of(node);
    ASSERT_EQ(steps.all.size(), 3u + 3 + 2);
    EXPECT_EQ(steps.before_paths, 3u);
    EXPECT_EQ(steps.all[2].make.text(), "kel_core_ic_ebcom_start()");
    EXPECT_EQ(steps.all[5].make.text(),
              "kel_core_ic_ebcom_path_add(dst_mac=02:00:00:02:00:03, port=RLU1P (6), unshaped)");
    EXPECT_EQ(steps.all[6].make.text(), "kel_core_ic_pcep_start()");
}

TEST(NodeSteps, MayBeMoved)
{
    const node_file node = node_with(1, false);
    node_steps steps = steps_of(node);
    const node_steps moved = std::move(steps);
    EXPECT_EQ(moved.all.back().undo.text(),
              "kel_core_ic_ebcom_path_rem(dst_mac=02:00:00:02:00:01, port=RLU1P (6), unshaped)");
}

TEST(NodeSteps, PathsAreCountedAsTheyAreMade)
{
    EXPECT_EQ(path_count({}), 0u);
    const node_file node = node_with(5, false);
    EXPECT_EQ(path_count(node), 5u);
    EXPECT_EQ(steps_of(node).paths.size(), 5u);
}

} // namespace
} // namespace kelctl

// The PCEP steps of a node file, made on the software accelerator.
#include "kelctl/pcep_steps.h"

#include "kelctl/standing.h"
#include "softnode/softnode.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kelctl
{
namespace
{

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

pcep_entry entry(uint32_t id, const char *local_mac)
{
    pcep_entry made;
    made.id = id;
    made.remote_id = 0xABCDEF;
    made.local_mac = parse_mac_address(local_mac).value();
    made.remote_mac = parse_mac_address("02:00:00:02:00:09").value();
    made.vlan = 4095;
    made.priority = 7;
    return made;
}

multicast_entry group(uint32_t id, std::vector<uint32_t> members)
{
    multicast_entry made;
    made.id = id;
    for (const uint32_t member : members)
        made.members.push_back({member, {}});
    return made;
}

node_file small_node()
{
    node_file node;
    node.pceps = {entry(511, "02:00:00:03:00:01"), entry(1, "02:00:00:02:00:01")};
    node.groups = {group(300, {1, 511}), group(2, {}), group(301, {511})};
    return node;
}

class PcepSteps : public testing::Test
{
protected:
    PcepSteps()
    {
        softnode_reset();
    }

    // Nothing fails in any of these tests without a fault rule.
    std::optional<failure> up(bring_up &standing)
    {
        return standing.up([](size_t) {});
    }

    trace_log log{nullptr};
};

TEST_F(PcepSteps, FileWithoutPcepsAndGroupsHasNone)
{
    EXPECT_THAT(pcep_steps({}), IsEmpty());
}

TEST_F(PcepSteps, GroupAloneStartsTheServiceToo)
{
    node_file node;
    node.groups = {group(7, {})};
    EXPECT_THAT(pcep_steps(node), SizeIs(2));
}

TEST_F(PcepSteps, GoThroughServicePcepsGroupsAndMembers)
{
    const node_file node = small_node();
    std::vector<std::string> made;
    for (const step &step : pcep_steps(node))
        made.push_back(step.make.text());
    EXPECT_THAT(made, ElementsAre("kel_core_ic_pcep_start()",
                                  "kel_core_ic_pcep_add(pcep_id=511, remote_pcep_id=11259375, "
                                  "local_mac=02:00:00:03:00:01, remote_mac=02:00:00:02:00:09, vlan_id=4095, "
                                  "priority=7)",
                                  "kel_core_ic_pcep_add(pcep_id=1, remote_pcep_id=11259375, "
                                  "local_mac=02:00:00:02:00:01, remote_mac=02:00:00:02:00:09, vlan_id=4095, "
                                  "priority=7)",
                                  "kel_core_ic_pcep_mc_group_add(mc_pcep_id=300)",
                                  "kel_core_ic_pcep_mc_group_add(mc_pcep_id=2)",
                                  "kel_core_ic_pcep_mc_group_add(mc_pcep_id=301)",
                                  "kel_core_ic_pcep_mc_member_add(mc_pcep_id=300, uc_pcep_id=1)",
                                  "kel_core_ic_pcep_mc_member_add(mc_pcep_id=300, uc_pcep_id=511)",
                                  "kel_core_ic_pcep_mc_member_add(mc_pcep_id=301, uc_pcep_id=511)"));
}

TEST_F(PcepSteps, EveryStepIsUndoneByItsOpposite)
{
    const node_file node = small_node();
    std::vector<std::string> undone;
    for (const step &step : pcep_steps(node))
        undone.push_back(step.undo.text());
    EXPECT_THAT(undone, ElementsAre("kel_core_ic_pcep_stop()", "kel_core_ic_pcep_rem(pcep_id=511)",
                                    "kel_core_ic_pcep_rem(pcep_id=1)", "kel_core_ic_pcep_mc_group_rem(mc_pcep_id=300)",
                                    "kel_core_ic_pcep_mc_group_rem(mc_pcep_id=2)",
                                    "kel_core_ic_pcep_mc_group_rem(mc_pcep_id=301)",
                                    "kel_core_ic_pcep_mc_member_rem(mc_pcep_id=300, uc_pcep_id=1)",
                                    "kel_core_ic_pcep_mc_member_rem(mc_pcep_id=300, uc_pcep_id=511)",
                                    "kel_core_ic_pcep_mc_member_rem(mc_pcep_id=301, uc_pcep_id=511)"));
}

TEST_F(PcepSteps, BringTheNodeUpAndDown)
{
    const node_file node = small_node();
    bring_up standing(pcep_steps(node), log);
    ASSERT_FALSE(up(standing));

    const auto stands = current_snapshot();
    ASSERT_TRUE(stands);
    ASSERT_THAT(stands->pceps, SizeIs(2));
    EXPECT_EQ(stands->pceps[0].id, 511u);
    EXPECT_EQ(stands->pceps[0].remote_id, 0xABCDEFu);
    EXPECT_EQ(to_text(stands->pceps[0].local_mac), "02:00:00:03:00:01");
    EXPECT_EQ(to_text(stands->pceps[0].remote_mac), "02:00:00:02:00:09");
    EXPECT_EQ(stands->pceps[0].vlan, 4095);
    EXPECT_EQ(stands->pceps[0].priority, 7);
    EXPECT_TRUE(stands->pceps[0].bound);
    EXPECT_FALSE(stands->pceps[1].bound);
    ASSERT_THAT(stands->groups, SizeIs(3));
    EXPECT_EQ(stands->groups[0].id, 300u);
    EXPECT_THAT(stands->groups[0].members, ElementsAre(1, 511));
    EXPECT_THAT(stands->groups[1].members, IsEmpty());

    EXPECT_THAT(standing.down().refused, IsEmpty());
    EXPECT_TRUE(current_snapshot()->empty());
}

// On a whole node nobody can tell how many attachments of the timestamp thread come before that of the start.
TEST_F(PcepSteps, ServiceThatCannotAttachIsAFailedStart)
{
    ASSERT_EQ(softnode_faults_add("kel_init_attach=10"), nullptr);
    const node_file node = small_node();
    bring_up standing(pcep_steps(node), log);
    const auto failed = up(standing);
    ASSERT_TRUE(failed);
    EXPECT_EQ(failed->operation, "kel_core_ic_pcep_start()");
    EXPECT_EQ(failed->code, 10u);
    EXPECT_THAT(standing.down().refused, IsEmpty());
    EXPECT_TRUE(current_snapshot()->empty());
}

TEST_F(PcepSteps, PcepWhoseBindingFailedIsLeftAndNotToldAsAFailedRemoval)
{
    ASSERT_EQ(softnode_faults_add("ork_bind=-4"), nullptr);
    node_file node;
    node.pceps = {entry(5, "02:00:00:02:00:01"), entry(6, "02:00:00:03:00:01")};
    bring_up standing(pcep_steps(node), log);
    const auto failed = up(standing);
    ASSERT_TRUE(failed);
    EXPECT_EQ(failed->code, 13u);

    const take_down done = standing.down();
    EXPECT_THAT(done.refused, IsEmpty());
    EXPECT_FALSE(done.refused_leftover);
    const auto left = current_snapshot();
    ASSERT_THAT(left->pceps, SizeIs(1));
    EXPECT_EQ(left->pceps[0].id, 6u);
    EXPECT_FALSE(left->pceps[0].bound);
}

} // namespace
} // namespace kelctl

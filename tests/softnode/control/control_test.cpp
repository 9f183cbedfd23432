/*
 * control_test.cpp - the control interface over the process-wide node: snapshot and reset.
 */
#include "control.h"

#include "softnode/common/facts.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string_view>

namespace facts = softnode::facts;

namespace
{

class Snapshot : public ControlledNode
{
};

class Reset : public ControlledNode
{
};

} // namespace

TEST_F(Snapshot, CountsRuleHits)
{
    ASSERT_EQ(add_faults("kel_init_attach:1*2=10"), "");
    for (int count = 0; count < 3; ++count)
        kel_init_attach(&attach);
    EXPECT_EQ(look_into_node().at("faults"), notation::read_json(R"([{"rule": "kel_init_attach:1*2=10", "hits": 2}])"));
    EXPECT_EQ(look_into_node().at("calls").at("kel_init_attach"), 4);
}

TEST_F(Snapshot, LimitsAreTheSizesOfTheTables)
{
    const std::unique_ptr<char, decltype(&std::free)> limits(softnode_limits_json(), std::free);
    EXPECT_EQ(notation::read_json(limits.get()), (notation::document{{"schedulers", facts::most_schedulers},
                                                                     {"queues", facts::most_queues},
                                                                     {"paths", facts::most_paths},
                                                                     {"groups", facts::most_groups},
                                                                     {"members", facts::most_members}}));
}

TEST_F(Snapshot, HandlesPrintAsTheCallerPrintsThem)
{
    char printed[32];
    std::snprintf(printed, sizeof printed, "%p", create_scheduler());
    EXPECT_EQ(look_into_node().at("schedulers")[0].at("handle"), printed);
}

TEST_F(Snapshot, HasAPictureBesideIt)
{
    char printed[32];
    std::snprintf(printed, sizeof printed, "%p", create_scheduler());
    const std::unique_ptr<char, void (*)(void *)> picture(softnode_graph_dot(), std::free);
    ASSERT_NE(picture, nullptr);
    EXPECT_NE(std::string_view(picture.get()).find(printed), std::string_view::npos);
}

TEST_F(Reset, LeavesANodeJustSwitchedOn)
{
    switch_on_afresh();
    const auto before = look_into_node();
    add_queue(create_scheduler());
    create_pcep(1);
    create_group(100);
    softnode_timing_reading_set(1, 2);
    ASSERT_EQ(add_faults("kel_init_attach=10"), "");
    ASSERT_NE(look_into_node(), before);
    switch_on_afresh();
    EXPECT_EQ(look_into_node(), before);
}

TEST_F(Reset, MakesEveryHandleStale)
{
    void *const kit = ork;
    void *const scheduler = create_scheduler();
    void *const queue = add_queue(scheduler);
    const std::uint64_t pcep = create_pcep(1);
    const std::uint64_t group = create_group(100);
    switch_on_afresh();
    EXPECT_EQ(ork_ebcom_interface_create(kit, device), ORK_NOTAVAIL);
    EXPECT_EQ(ork_qos_scheduler_delete(ork, scheduler), ORK_NOTAVAIL);
    EXPECT_EQ(kel_init_qos_queue_rem(queue), 4U);
    EXPECT_EQ(ork_ebcom_pcep_delete(ork, pcep), ORK_NOTAVAIL);
    EXPECT_EQ(ork_ebcom_multicast_group_delete(ork, group), ORK_NOTAVAIL);
}

/*
 * graph_layout_test.cpp - what shares a box of the picture.
 */
#include "softnode/views/graph_layout.h"

#include "node/traffic.h"

#include "softnode/common/facts.h"

#include <gtest/gtest.h>

using namespace softnode;

namespace
{

class GraphLayout : public testing::Test
{
protected:
    Handle add_scheduler(Handle parent = Handle::null)
    {
        const ork_qos_scheduler_params params = scheduler_params(parent);
        Handle scheduler = Handle::null;
        EXPECT_EQ(node.qos.create_scheduler(params, scheduler), Refusal::granted);
        return scheduler;
    }

    Handle add_queue(Handle scheduler)
    {
        Handle queue = Handle::null;
        EXPECT_EQ(node.qos.add_queue({1, 0, 0, 0}, facts::queue_kind, scheduler, facts::event_device, queue),
                  Refusal::granted);
        return queue;
    }

    void add_path(std::uint8_t number, Handle queue)
    {
        EXPECT_EQ(node.create_path({{2, 0, 2, 2, 0, number}, 2, 0, pointer_of(queue)}), Refusal::granted);
    }

    void add_group(std::uint16_t id, Handle scheduler)
    {
        Handle group = Handle::null;
        EXPECT_EQ(node.create_group({id, {}}, scheduler, group), Refusal::granted);
    }

    Node node;
};

using Chains = std::vector<SchedulerChain>;

Mac mac(std::uint8_t number)
{
    return {2, 0, 2, 2, 0, number};
}

} // namespace

TEST_F(GraphLayout, SchedulersInARowAreOneChain)
{
    const Handle first = add_scheduler();
    const Handle second = add_scheduler(first);
    const Handle third = add_scheduler(second);
    EXPECT_EQ(scheduler_chains(node), (Chains{{first, second, third}}));
}

TEST_F(GraphLayout, AChainEndsWhereTheTreeForks)
{
    const Handle first = add_scheduler();
    const Handle second = add_scheduler(first);
    const Handle left = add_scheduler(second);
    const Handle right = add_scheduler(second);
    EXPECT_EQ(scheduler_chains(node), (Chains{{first, second}, {left}, {right}}));
}

TEST_F(GraphLayout, AChainEndsWhereAQueueOrAGroupHangs)
{
    const Handle first = add_scheduler();
    const Handle second = add_scheduler(first);
    const Handle third = add_scheduler(second);
    add_queue(first);
    add_group(100, second);
    EXPECT_EQ(scheduler_chains(node), (Chains{{first}, {second}, {third}}));
}

TEST_F(GraphLayout, SchedulersUnderTheRootAreChainsOfTheirOwn)
{
    const Handle first = add_scheduler();
    const Handle second = add_scheduler();
    EXPECT_EQ(scheduler_chains(node), (Chains{{first}, {second}}));
}

TEST_F(GraphLayout, DestinationsAreSortedByQueue)
{
    const Handle scheduler = add_scheduler();
    const Handle empty = add_queue(scheduler);
    const Handle queue = add_queue(scheduler);
    add_path(2, queue);
    add_path(1, queue);
    const auto destinations = destinations_of(node);
    ASSERT_EQ(destinations.size(), 2U);
    EXPECT_EQ(destinations.at(empty).count, 0U);
    EXPECT_EQ(destinations.at(queue).count, 2U);
    EXPECT_EQ(destinations.at(queue).shown, (std::vector<Mac>{mac(1), mac(2)}));
}

TEST_F(GraphLayout, OnlyAHandfulOfDestinationsIsShown)
{
    const Handle queue = add_queue(add_scheduler());
    for (std::uint8_t number = 1; number <= 7; ++number)
        add_path(number, queue);
    const Destinations destinations = destinations_of(node).at(queue);
    EXPECT_EQ(destinations.count, 7U);
    ASSERT_EQ(destinations.shown.size(), 5U);
    EXPECT_EQ(destinations.line_of(mac(5)), 4U);
    EXPECT_FALSE(destinations.line_of(mac(6)));
}

TEST_F(GraphLayout, PathsWithoutQueueStandUnderNone)
{
    const Handle queue = add_queue(add_scheduler());
    add_path(1, queue);
    ASSERT_EQ(node.remove_queue(queue), Refusal::granted);
    const auto destinations = destinations_of(node);
    ASSERT_EQ(destinations.size(), 1U);
    EXPECT_EQ(destinations.at(Handle::null).count, 1U);
}

TEST_F(GraphLayout, PcepsAreFoundByTheirIds)
{
    ork_ebcom_pcep_params params{};
    params.localPcepId = 9;
    params.byte28 = 1;
    Handle pcep = Handle::null;
    ASSERT_EQ(node.pceps.create_pcep(params, pcep), Refusal::granted);
    EXPECT_EQ(pceps_by_id(node.pceps), (PcepsById{{9, pcep}}));
}

/*
 * node_test.cpp - what concerns more than one family of objects.
 */
#include "softnode/node.h"

#include "softnode/facts.h"

#include <gtest/gtest.h>

namespace facts = softnode::facts;
using softnode::Handle;
using softnode::Refusal;

namespace
{

class Node : public testing::Test
{
protected:
    void SetUp() override
    {
        ork_qos_scheduler_params params{};
        params.vsiEthDevId = facts::event_device;
        ASSERT_EQ(node.qos.create_scheduler(params, scheduler), Refusal::granted);
        queue = add_queue();
    }

    Handle add_queue()
    {
        Handle added = Handle::null;
        EXPECT_EQ(node.qos.add_queue({1, 0, 0, 0}, facts::queue_kind, scheduler, facts::event_device, added),
                  Refusal::granted);
        return added;
    }

    static ork_ebcom_pcep_path path_through(Handle queue)
    {
        return {{2, 0, 2, 2, 0, 1}, 2, 0, softnode::pointer_of(queue)};
    }

    const softnode::Path &the_path() const
    {
        return node.ebcom.paths().at({2, 0, 2, 2, 0, 1});
    }

    softnode::Node node;
    Handle scheduler = Handle::null;
    Handle queue = Handle::null;
};

} // namespace

TEST_F(Node, APathLeadsThroughItsQueue)
{
    ASSERT_EQ(node.create_path(path_through(queue)), Refusal::granted);
    EXPECT_EQ(the_path().queue, queue);
    EXPECT_EQ(the_path().pcep_type, 2);
}

TEST_F(Node, APathThroughWhatIsNoQueueIsRefused)
{
    EXPECT_EQ(node.create_path(path_through(Handle::null)), Refusal::invalid);
    EXPECT_EQ(node.create_path(path_through(scheduler)), Refusal::invalid);
    EXPECT_EQ(node.create_path(path_through(static_cast<Handle>(0x1234))), Refusal::invalid);
    EXPECT_TRUE(node.ebcom.paths().empty());
}

TEST_F(Node, APathThroughARemovedQueueIsRefused)
{
    ASSERT_EQ(node.remove_queue(queue), Refusal::granted);
    EXPECT_EQ(node.create_path(path_through(queue)), Refusal::gone);
}

TEST_F(Node, RemovingAQueueLeavesItsPathsWithoutOne)
{
    ASSERT_EQ(node.create_path(path_through(queue)), Refusal::granted);
    ASSERT_EQ(node.remove_queue(queue), Refusal::granted);
    EXPECT_EQ(the_path().queue, Handle::null);
}

TEST_F(Node, APathWithoutQueueGetsOneWhenItIsCreatedAgain)
{
    ASSERT_EQ(node.create_path(path_through(queue)), Refusal::granted);
    ASSERT_EQ(node.remove_queue(queue), Refusal::granted);
    const Handle fresh = add_queue();
    ASSERT_EQ(node.create_path(path_through(fresh)), Refusal::granted);
    EXPECT_EQ(the_path().queue, fresh);
}

TEST_F(Node, RemovingWhatIsNoQueueIsRefused)
{
    EXPECT_EQ(node.remove_queue(Handle::null), Refusal::invalid);
    EXPECT_EQ(node.remove_queue(scheduler), Refusal::invalid);
    ASSERT_EQ(node.remove_queue(queue), Refusal::granted);
    EXPECT_EQ(node.remove_queue(queue), Refusal::gone);
}

TEST_F(Node, TwoNodesShareNothing)
{
    softnode::Node other;
    EXPECT_EQ(other.qos.schedulers().size(), 0U);
    EXPECT_EQ(other.remove_queue(queue), Refusal::invalid);
}

TEST_F(Node, AResetReachesEveryFamily)
{
    const Handle driver_kit = node.attachment.driver_kit();
    ASSERT_EQ(node.create_path(path_through(queue)), Refusal::granted);
    node.timing.open(1);
    node.restarts.push_back({1, "file", "reason"});
    ASSERT_EQ(node.faults.add("kel_init_attach=1"), "");
    node.reset();
    EXPECT_EQ(node.attachment.check_driver_kit(driver_kit), Refusal::gone);
    EXPECT_EQ(node.qos.check_queue(queue), Refusal::gone);
    EXPECT_TRUE(node.ebcom.paths().empty());
    EXPECT_EQ(node.timing.connections().size(), 0U);
    EXPECT_TRUE(node.restarts.empty());
    EXPECT_TRUE(node.faults.entries().empty());
}

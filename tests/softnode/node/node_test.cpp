/*
 * node_test.cpp - what concerns more than one family of objects.
 */
#include "softnode/node/node.h"

#include "traffic.h"

#include "softnode/common/facts.h"

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
        const ork_qos_scheduler_params params = scheduler_params();
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

    Handle create_pcep(std::uint32_t id)
    {
        ork_ebcom_pcep_params params{};
        params.localPcepId = id;
        params.byte28 = 1;
        Handle created = Handle::null;
        EXPECT_EQ(node.pceps.create_pcep(params, created), Refusal::granted);
        return created;
    }

    Handle create_group(std::uint16_t id, Handle through)
    {
        Handle created = Handle::null;
        EXPECT_EQ(node.create_group({id, {}}, through, created), Refusal::granted);
        return created;
    }

    ork_bind_params binding_of(std::uint32_t pcep_id) const
    {
        ork_bind_params params{};
        params.word0 = 4;
        params.word4 = 1;
        params.word8 = 1;
        params.ork_handle = softnode::pointer_of(node.attachment.driver_kit());
        params.pcep_id = pcep_id;
        params.word36 = 2;
        params.target = static_cast<std::uint64_t>(node.attachment.ehsfp_target());
        params.word60 = 2;
        params.byte84 = 1;
        return params;
    }

    void expect_no_binding(const ork_bind_params &params, Refusal refusal)
    {
        EXPECT_EQ(node.bind(params), refusal);
        EXPECT_EQ(node.unbind(params), refusal);
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
    EXPECT_EQ(node.qos.check_queue(the_path().queue), Refusal::gone);
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

TEST_F(Node, ASchedulerThatGroupsSendThroughIsNotDeleted)
{
    ASSERT_EQ(node.remove_queue(queue), Refusal::granted);
    const Handle group = create_group(100, scheduler);
    EXPECT_EQ(node.delete_scheduler(scheduler), Refusal::busy);
    ASSERT_EQ(node.pceps.delete_group(group), Refusal::granted);
    EXPECT_EQ(node.delete_scheduler(scheduler), Refusal::granted);
}

TEST_F(Node, DeletingWhatIsNoSchedulerIsRefused)
{
    create_group(100, Handle::null);
    EXPECT_EQ(node.delete_scheduler(Handle::null), Refusal::invalid);
    EXPECT_EQ(node.delete_scheduler(queue), Refusal::invalid);
    EXPECT_EQ(node.delete_scheduler(scheduler), Refusal::busy) << "it has a queue";
    ASSERT_EQ(node.remove_queue(queue), Refusal::granted);
    ASSERT_EQ(node.delete_scheduler(scheduler), Refusal::granted);
    EXPECT_EQ(node.delete_scheduler(scheduler), Refusal::gone);
}

TEST_F(Node, AGroupSendsThroughASchedulerOrNone)
{
    Handle untouched = static_cast<Handle>(0x1234);
    EXPECT_EQ(node.create_group({1, {}}, queue, untouched), Refusal::invalid);
    EXPECT_EQ(node.create_group({1, {}}, static_cast<Handle>(0x1234), untouched), Refusal::invalid);
    create_group(1, scheduler);
    create_group(2, Handle::null);
    const ork_qos_scheduler_params params = scheduler_params();
    Handle stale = Handle::null;
    ASSERT_EQ(node.qos.create_scheduler(params, stale), Refusal::granted);
    ASSERT_EQ(node.delete_scheduler(stale), Refusal::granted);
    EXPECT_EQ(node.create_group({3, {}}, stale, untouched), Refusal::gone);
    EXPECT_EQ(untouched, static_cast<Handle>(0x1234));
}

TEST_F(Node, ABindingTiesAPcepToTheEhsfpTarget)
{
    const Handle pcep = create_pcep(17);
    ASSERT_EQ(node.bind(binding_of(17)), Refusal::granted);
    EXPECT_EQ(node.pceps.pceps().at(pcep).target, node.attachment.ehsfp_target());
    ASSERT_EQ(node.unbind(binding_of(17)), Refusal::granted);
    EXPECT_EQ(node.pceps.pceps().at(pcep).target, Handle::null);
}

TEST_F(Node, ABindingNeedsAWellFormedRecord)
{
    create_pcep(17);
    ork_bind_params params = binding_of(17);
    params.word36 = 1;
    expect_no_binding(params, Refusal::invalid);
}

TEST_F(Node, ABindingNeedsTheDriverKitHandleAndTheTarget)
{
    create_pcep(17);
    ork_bind_params params = binding_of(17);
    params.ork_handle = softnode::pointer_of(node.attachment.system());
    expect_no_binding(params, Refusal::invalid);
    params = binding_of(17);
    params.target = static_cast<std::uint64_t>(node.attachment.driver_kit());
    expect_no_binding(params, Refusal::invalid);
    params.target = 0;
    expect_no_binding(params, Refusal::invalid);
}

TEST_F(Node, ABindingWithHandlesOfBeforeAResetIsRefused)
{
    const ork_bind_params stale = binding_of(17);
    node.reset();
    create_pcep(17);
    ork_bind_params params = binding_of(17);
    params.ork_handle = stale.ork_handle;
    expect_no_binding(params, Refusal::gone);
    params = binding_of(17);
    params.target = stale.target;
    expect_no_binding(params, Refusal::gone);
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
    const Handle pcep = create_pcep(1);
    node.timing.open(1);
    node.restarts.push_back({1, "file", "reason"});
    node.reset();
    EXPECT_EQ(node.attachment.check_driver_kit(driver_kit), Refusal::gone);
    EXPECT_EQ(node.qos.check_queue(queue), Refusal::gone);
    EXPECT_TRUE(node.ebcom.paths().empty());
    EXPECT_EQ(node.pceps.delete_pcep(pcep), Refusal::gone);
    EXPECT_EQ(node.timing.connections().size(), 0U);
    EXPECT_TRUE(node.restarts.empty());
}

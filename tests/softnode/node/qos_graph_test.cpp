/*
 * qos_graph_test.cpp - schedulers and queues alone.
 */
#include "softnode/node/qos_graph.h"

#include "traffic.h"

#include "softnode/common/facts.h"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

namespace facts = softnode::facts;
using softnode::Fate;
using softnode::Handle;
using softnode::Refusal;

namespace
{

const std::vector<softnode::Mac> there{numbered_mac(1)};

class QosGraph : public testing::Test
{
protected:
    Handle scheduler(Handle parent = Handle::null)
    {
        Handle handle = Handle::null;
        EXPECT_EQ(graph.create_scheduler(scheduler_params(parent), handle), Refusal::granted);
        return handle;
    }

    Refusal add_queue(Handle scheduler, Handle &queue)
    {
        return graph.add_queue(queue_params, facts::queue_kind, scheduler, facts::event_device, queue);
    }

    Handle queue(Handle scheduler)
    {
        Handle handle = Handle::null;
        EXPECT_EQ(add_queue(scheduler, handle), Refusal::granted);
        return handle;
    }

    kel_init_qos_queue_params queue_params{1, 1000, 25'600, 64};
    Handle untouched = static_cast<Handle>(0x1234);
    softnode::QosGraph graph;
};

} // namespace

TEST_F(QosGraph, ASchedulerWithoutParentHangsUnderTheRoot)
{
    const Handle root = scheduler();
    EXPECT_EQ(graph.schedulers().at(root).parent, Handle::null);
}

TEST_F(QosGraph, ASchedulerHangsUnderItsParent)
{
    const Handle top = scheduler();
    const Handle below = scheduler(top);
    EXPECT_EQ(graph.schedulers().at(below).parent, top);
}

TEST_F(QosGraph, SchedulerParametersAreKeptAsGiven)
{
    ork_qos_scheduler_params given = scheduler_params();
    given.shapingMode = 3;
    given.serviceQuantum = 1518;
    given.rootId = 20;
    Handle handle = Handle::null;
    ASSERT_EQ(graph.create_scheduler(given, handle), Refusal::granted);
    const ork_qos_scheduler_params &kept = graph.schedulers().at(handle).params;
    EXPECT_EQ(kept.shapingMode, 3U);
    EXPECT_EQ(kept.schedulingMode, 11U);
    EXPECT_EQ(kept.arbitrationMode, 7U);
    EXPECT_EQ(kept.serviceQuantum, 1518U);
    EXPECT_EQ(kept.rootId, 20U);
}

TEST_F(QosGraph, AParentThatIsNoSchedulerIsRefused)
{
    const Handle top = scheduler();
    for (const Handle parent : {static_cast<Handle>(0x1234), queue(top)})
        EXPECT_EQ(graph.create_scheduler(scheduler_params(parent), untouched), Refusal::invalid);
    EXPECT_EQ(untouched, static_cast<Handle>(0x1234));
    EXPECT_EQ(graph.schedulers().size(), 1U);
}

TEST_F(QosGraph, ADeletedParentIsGone)
{
    const Handle parent = scheduler();
    ASSERT_EQ(graph.delete_scheduler(parent), Refusal::granted);
    EXPECT_EQ(graph.create_scheduler(scheduler_params(parent), untouched), Refusal::gone);
}

TEST_F(QosGraph, ASchedulerOnAnotherDeviceIsRefused)
{
    ork_qos_scheduler_params elsewhere = scheduler_params();
    elsewhere.vsiEthDevId = facts::event_device + 1;
    EXPECT_EQ(graph.create_scheduler(elsewhere, untouched), Refusal::no_device);
    EXPECT_EQ(untouched, static_cast<Handle>(0x1234));
}

TEST_F(QosGraph, ASchedulerOfOtherModesIsRefused)
{
    for (const auto mode : {&ork_qos_scheduler_params::schedulingMode, &ork_qos_scheduler_params::arbitrationMode})
        for (const std::uint32_t other : {0U, 6U, 8U, 10U, 12U}) {
            ork_qos_scheduler_params params = scheduler_params();
            params.*mode = other;
            EXPECT_EQ(graph.create_scheduler(params, untouched), Refusal::invalid);
        }
    EXPECT_EQ(untouched, static_cast<Handle>(0x1234));
    EXPECT_EQ(graph.schedulers().size(), 0U);
}

TEST_F(QosGraph, TheSchedulerAfterTheLastOneThatFitsIsRefused)
{
    for (std::size_t count = 0; count < facts::most_schedulers; ++count)
        scheduler();
    EXPECT_EQ(graph.create_scheduler(scheduler_params(), untouched), Refusal::full);
    EXPECT_EQ(untouched, static_cast<Handle>(0x1234));
}

TEST_F(QosGraph, DeletingASchedulerMakesRoomForAnother)
{
    for (std::size_t count = 1; count < facts::most_schedulers; ++count)
        scheduler();
    ASSERT_EQ(graph.delete_scheduler(scheduler()), Refusal::granted);
    EXPECT_NE(scheduler(), Handle::null);
}

TEST_F(QosGraph, DeletingASchedulerWithChildrenIsRefused)
{
    const Handle top = scheduler();
    const Handle below = scheduler(top);
    EXPECT_EQ(graph.delete_scheduler(top), Refusal::busy);
    EXPECT_EQ(graph.delete_scheduler(below), Refusal::granted);
    EXPECT_EQ(graph.delete_scheduler(top), Refusal::granted);
}

TEST_F(QosGraph, DeletingASchedulerWithQueuesIsRefused)
{
    const Handle top = scheduler();
    const Handle below = queue(top);
    EXPECT_EQ(graph.delete_scheduler(top), Refusal::busy);
    EXPECT_EQ(graph.remove_queue(below), Refusal::granted);
    EXPECT_EQ(graph.delete_scheduler(top), Refusal::granted);
}

TEST_F(QosGraph, OnlySchedulersCanBeDeletedAsSchedulers)
{
    const Handle top = scheduler();
    EXPECT_EQ(graph.delete_scheduler(Handle::null), Refusal::invalid);
    EXPECT_EQ(graph.delete_scheduler(queue(top)), Refusal::invalid);
    EXPECT_EQ(graph.delete_scheduler(static_cast<Handle>(0x1234)), Refusal::invalid);
}

TEST_F(QosGraph, DeletingASchedulerTwiceIsRefused)
{
    const Handle top = scheduler();
    ASSERT_EQ(graph.delete_scheduler(top), Refusal::granted);
    EXPECT_EQ(graph.delete_scheduler(top), Refusal::gone);
}

TEST_F(QosGraph, AQueueIsKeptAsGivenUnderItsScheduler)
{
    const Handle top = scheduler();
    const softnode::Queue &kept = graph.queues().at(queue(top));
    EXPECT_EQ(kept.scheduler, top);
    EXPECT_EQ(kept.rate, 1000U);
    EXPECT_EQ(kept.threshold, 25'600U);
    EXPECT_EQ(kept.bucket_size, 64U);
}

TEST_F(QosGraph, AQueueOfAnotherModeOrKindIsRefused)
{
    const Handle top = scheduler();
    EXPECT_EQ(graph.add_queue(queue_params, 4, top, facts::event_device, untouched), Refusal::invalid);
    queue_params.mode = 2;
    EXPECT_EQ(add_queue(top, untouched), Refusal::invalid);
    EXPECT_EQ(untouched, static_cast<Handle>(0x1234));
    EXPECT_EQ(graph.queues().size(), 0U);
}

TEST_F(QosGraph, AQueueUnderSomethingElseThanASchedulerIsRefused)
{
    const Handle top = scheduler();
    for (const Handle wrong : {Handle::null, static_cast<Handle>(0x1234), queue(top)})
        EXPECT_EQ(add_queue(wrong, untouched), Refusal::invalid);
}

TEST_F(QosGraph, AQueueUnderADeletedSchedulerIsRefused)
{
    const Handle top = scheduler();
    ASSERT_EQ(graph.delete_scheduler(top), Refusal::granted);
    EXPECT_EQ(add_queue(top, untouched), Refusal::gone);
}

TEST_F(QosGraph, AQueueOnAnotherDeviceIsRefused)
{
    const std::uint16_t elsewhere = facts::event_device + 1;
    EXPECT_EQ(graph.add_queue(queue_params, facts::queue_kind, scheduler(), elsewhere, untouched), Refusal::no_device);
}

TEST_F(QosGraph, TheQueueAfterTheLastOneThatFitsIsRefused)
{
    const Handle top = scheduler();
    for (std::size_t count = 0; count < facts::most_queues; ++count)
        queue(top);
    EXPECT_EQ(add_queue(top, untouched), Refusal::full);
    EXPECT_EQ(untouched, static_cast<Handle>(0x1234));
}

TEST_F(QosGraph, OnlyQueuesCanBeRemovedAsQueues)
{
    EXPECT_EQ(graph.remove_queue(Handle::null), Refusal::invalid);
    EXPECT_EQ(graph.remove_queue(scheduler()), Refusal::invalid);
    EXPECT_EQ(graph.remove_queue(static_cast<Handle>(0x1234)), Refusal::invalid);
}

TEST_F(QosGraph, RemovingAQueueTwiceIsRefused)
{
    const Handle below = queue(scheduler());
    ASSERT_EQ(graph.remove_queue(below), Refusal::granted);
    EXPECT_EQ(graph.remove_queue(below), Refusal::gone);
}

TEST_F(QosGraph, AShapedQueueReadsBackAsGiven)
{
    ork_qos_queue record{};
    ASSERT_EQ(graph.read_queue(queue(scheduler()), record), Refusal::granted);
    EXPECT_EQ(record.rate, 1000U);
    EXPECT_EQ(record.bucketSize, 64U);
    EXPECT_EQ(record.shapingMode, 4U);
}

TEST_F(QosGraph, AQueueIsShapedOnceItHasARateOrABucket)
{
    const auto mode_with = [this](std::uint32_t rate, std::uint32_t bucket_size) {
        queue_params.rate = rate;
        queue_params.bucket_size = bucket_size;
        ork_qos_queue record{};
        EXPECT_EQ(graph.read_queue(queue(scheduler()), record), Refusal::granted);
        return record.shapingMode;
    };
    EXPECT_EQ(mode_with(0, 0), 3U);
    EXPECT_EQ(mode_with(1, 0), 4U);
    EXPECT_EQ(mode_with(0, 1), 4U);
}

TEST_F(QosGraph, ReadingAQueueThatIsNotThereLeavesTheRecord)
{
    const Handle removed = queue(scheduler());
    ASSERT_EQ(graph.remove_queue(removed), Refusal::granted);
    ork_qos_queue record{11, 22, 33};
    EXPECT_EQ(graph.read_queue(removed, record), Refusal::gone);
    EXPECT_EQ(graph.read_queue(Handle::null, record), Refusal::invalid);
    EXPECT_EQ(graph.read_queue(scheduler(), record), Refusal::invalid);
    EXPECT_EQ(record.rate, 11U);
    EXPECT_EQ(record.bucketSize, 22U);
    EXPECT_EQ(record.shapingMode, 33U);
}

TEST_F(QosGraph, ASchedulerIsCheckedForWhatItIs)
{
    const Handle top = scheduler();
    EXPECT_EQ(graph.check_scheduler(top), Refusal::granted);
    EXPECT_EQ(graph.check_scheduler(Handle::null), Refusal::invalid);
    EXPECT_EQ(graph.check_scheduler(queue(scheduler())), Refusal::invalid);
    ASSERT_EQ(graph.delete_scheduler(top), Refusal::granted);
    EXPECT_EQ(graph.check_scheduler(top), Refusal::gone);
}

TEST_F(QosGraph, CountersAreTheirQueues)
{
    queue_params = {1, 0, 7 * 512, 0};
    const Handle counted = queue(scheduler());
    const Handle idle = queue(scheduler());
    EXPECT_EQ(graph.enter(counted, there, {9, 300}, 0), 2U);
    for (int frame = 0; frame < 4; ++frame)
        ASSERT_TRUE(graph.depart(1000));
    const softnode::Queue &busy = graph.queues().at(counted);
    EXPECT_EQ(busy.counters[Fate::received].frames, 9U);
    EXPECT_EQ(busy.counters[Fate::sent].frames, 4U);
    EXPECT_EQ(busy.counters[Fate::dropped].frames, 2U);
    EXPECT_EQ(busy.waiting().frames, 3U);
    EXPECT_EQ(busy.waiting().blocks, 6U);
    EXPECT_EQ(graph.queues().at(idle).counters[Fate::received].frames, 0U);
    EXPECT_EQ(graph.queues().at(idle).waiting().frames, 0U);
}

/* 800 kbit/s: an octet in 10 microseconds. */
TEST_F(QosGraph, PeakSustainAndCorrectionOfASchedulerLimitWhatIsBelow)
{
    const auto second_leaves = [this](const ork_qos_scheduler_params &of_scheduler) {
        graph.reset();
        softnode::Handle limited = Handle::null;
        EXPECT_EQ(graph.create_scheduler(of_scheduler, limited), Refusal::granted);
        kel_init_qos_queue_params unshaped{1, 0, 25'600, 0};
        std::swap(queue_params, unshaped);
        const Handle below = queue(limited);
        std::swap(queue_params, unshaped);
        graph.enter(below, there, {1, 100}, 0);
        EXPECT_TRUE(graph.depart(0));
        graph.enter(below, there, {1, 100}, 0);
        const auto departure = graph.depart(1'000'000'000);
        return departure ? departure->left : 0;
    };
    ork_qos_scheduler_params params = scheduler_params();
    EXPECT_EQ(second_leaves(params), 96U) << "the line";
    params.qosRates.peak = {800, 0};
    EXPECT_EQ(second_leaves(params), 1'000'000U);
    params.lengthCorrection = 20;
    EXPECT_EQ(second_leaves(params), 1'200'000U);
    params.qosRates.sr_mr_u.sustain = {400, 20};
    EXPECT_EQ(second_leaves(params), 2'000'000U);
    params.qosRates.peak = {0, 0};
    EXPECT_EQ(second_leaves(params), 2'000'000U);
    params.qosRates.sr_mr_u.sustain = {400, 120};
    EXPECT_EQ(second_leaves(params), 96U);
}

TEST_F(QosGraph, AQueueHasItsSchedulersQuantumAndCorrection)
{
    ork_qos_scheduler_params given = scheduler_params();
    given.serviceQuantum = 500;
    given.lengthCorrection = 4;
    Handle above = Handle::null;
    ASSERT_EQ(graph.create_scheduler(given, above), Refusal::granted);
    queue_params = {1, 800, 25'600, 100};
    const Handle below = queue(above);
    EXPECT_EQ(graph.queues().at(below).quantum, 500U);
    EXPECT_EQ(graph.schedulers().at(above).quantum, 500U);
    graph.enter(below, there, {1, 100}, 0);
    EXPECT_TRUE(graph.depart(0));
    graph.enter(below, there, {1, 100}, 0);
    EXPECT_EQ(graph.depart(1'000'000'000)->left, 40'000U) << "4 octets are owed";
}

TEST_F(QosGraph, NothingHappensWhenADeletedSchedulerWouldHaveOpened)
{
    ork_qos_scheduler_params given = scheduler_params();
    given.qosRates.peak = {800, 0};
    queue_params = {1, 0, 25'600, 0};
    Handle shut = Handle::null;
    ASSERT_EQ(graph.create_scheduler(given, shut), Refusal::granted);
    const Handle below = queue(shut);
    graph.enter(below, there, {1, 100}, 0);
    EXPECT_TRUE(graph.depart(0));
    graph.enter(below, there, {1, 100}, 0);
    ASSERT_EQ(graph.remove_queue(below), Refusal::granted);
    ASSERT_EQ(graph.delete_scheduler(shut), Refusal::granted);
    EXPECT_FALSE(graph.depart(1'000'000'000));
}

TEST_F(QosGraph, AResetLeavesNothingAndMakesHandlesStale)
{
    const Handle top = scheduler();
    const Handle below = queue(top);
    EXPECT_EQ(graph.enter(below, there, {1, 64}, 0), 0U);
    graph.reset();
    EXPECT_FALSE(graph.depart(1'000'000'000));
    EXPECT_EQ(graph.schedulers().size(), 0U);
    EXPECT_EQ(graph.queues().size(), 0U);
    EXPECT_EQ(graph.delete_scheduler(top), Refusal::gone);
    EXPECT_EQ(graph.remove_queue(below), Refusal::gone);
}

/*
 * queue_test.cpp - what enters a queue, waits in it, leaves it or is dropped.
 */
#include "softnode/traffic/queue.h"

#include <gtest/gtest.h>

#include <limits>
#include <vector>

namespace
{

using softnode::Fate;
using softnode::Handle;
using softnode::Instant;

constexpr Handle scheduler = static_cast<Handle>(0x5c00000001);
const std::vector<softnode::Mac> there{{2, 0, 0, 2, 0, 1}};
constexpr std::uint64_t countless = std::numeric_limits<std::uint64_t>::max();

/* A queue of so many blocks of memory. */
softnode::Queue queue_of(std::uint32_t rate, std::uint32_t blocks, std::uint32_t burst)
{
    return softnode::Queue(scheduler, {rate, blocks * 256, burst}, 0, 0);
}

std::uint64_t frames(const softnode::Queue &queue, Fate fate)
{
    return queue.counters[fate].frames;
}

/* What came in is what went out, what was dropped and what waits, in frames and in octets. */
void expect_conserved(const softnode::Queue &queue)
{
    const auto waiting = queue.waiting();
    const auto &received = queue.counters[Fate::received];
    const auto &sent = queue.counters[Fate::sent];
    const auto &dropped = queue.counters[Fate::dropped];
    EXPECT_EQ(received.frames, sent.frames + dropped.frames + waiting.frames);
    EXPECT_EQ(received.octets, sent.octets + dropped.octets + waiting.octets);
}

} // namespace

TEST(Queue, IsKeptAsGiven)
{
    const softnode::Queue queue(scheduler, {1000, 25'600, 64}, 1518, 0);
    EXPECT_EQ(queue.scheduler, scheduler);
    EXPECT_EQ(queue.rate, 1000U);
    EXPECT_EQ(queue.threshold, 25'600U);
    EXPECT_EQ(queue.bucket_size, 64U);
    EXPECT_EQ(queue.quantum, 1518U);
}

TEST(Queue, IsShapedOnceItHasARateOrABucket)
{
    EXPECT_FALSE(queue_of(0, 1, 0).shaped());
    EXPECT_TRUE(queue_of(1, 1, 0).shaped());
    EXPECT_TRUE(queue_of(0, 1, 1).shaped());
}

TEST(Queue, FramesWaitAsLongAsThereIsRoomAndTheOthersAreDropped)
{
    softnode::Queue queue = queue_of(0, 10, 0);
    EXPECT_EQ(queue.enter(there, {12, 300}, 0, false), 7U);
    EXPECT_EQ(frames(queue, Fate::received), 12U);
    EXPECT_EQ(frames(queue, Fate::dropped), 7U);
    EXPECT_EQ(queue.waiting().frames, 5U);
    EXPECT_EQ(queue.waiting().blocks, 10U);
    expect_conserved(queue);
}

TEST(Queue, AFrameThatCanLeaveAtOnceNeedsNoRoom)
{
    softnode::Queue queue = queue_of(0, 0, 0);
    EXPECT_EQ(queue.enter(there, {1, 300}, 0, true), 0U);
    EXPECT_EQ(queue.send(0).length, 300U);
    EXPECT_EQ(queue.enter(there, {1, 300}, 0, false), 1U);
    expect_conserved(queue);
}

TEST(Queue, FramesOfAnyLengthEnter)
{
    softnode::Queue queue = queue_of(8, 256, 1);
    EXPECT_EQ(queue.enter(there, {1, 65'535}, 0, false), 0U);
    EXPECT_TRUE(queue.backlogged());
    expect_conserved(queue);
}

TEST(Queue, AFrameThatLeavesHasWaitedSinceItEntered)
{
    softnode::Queue queue = queue_of(0, 100, 0);
    queue.enter(there, {2, 64}, 10, false);
    queue.enter(there, {1, 64}, 20, false);
    for (const Instant now : {15U, 45U, 120U})
        queue.send(now);
    EXPECT_EQ(queue.delays.count(), 3U);
    EXPECT_EQ(queue.delays.sum(), 5U + 35 + 100);
    EXPECT_EQ(queue.delays.largest(), 100U);
    EXPECT_EQ(queue.delays.quantile(50), 35U);
}

TEST(Queue, TheDeepestBacklogIsTheMostThatEverWaited)
{
    softnode::Queue queue = queue_of(0, 8, 0);
    queue.enter(there, {1, 2000}, 0, true);
    queue.send(0);
    EXPECT_EQ(queue.deepest.frames, 0U) << "what leaves at once never waits";
    queue.enter(there, {3, 100}, 0, false);
    for (int frame = 0; frame < 3; ++frame)
        queue.send(0);
    queue.enter(there, {2, 1000}, 0, false);
    EXPECT_EQ(queue.deepest.frames, 3U);
    EXPECT_EQ(queue.deepest.octets, 2000U);
    EXPECT_EQ(queue.deepest.blocks, 8U);
}

TEST(Queue, TellsWhoIsNext)
{
    softnode::Queue queue = queue_of(0, 1, 0);
    EXPECT_FALSE(queue.backlogged());
    EXPECT_EQ(&queue.next_queue(), &queue);
}

TEST(Queue, CopiesToSeveralDestinationsShareTheRoomFrameByFrame)
{
    const std::vector<softnode::Mac> two{{2, 0, 0, 2, 0, 1}, {2, 0, 0, 2, 0, 2}};
    softnode::Queue queue = queue_of(0, 5, 0);
    EXPECT_EQ(queue.enter(two, {10, 64}, 0, false), 15U);
    for (const std::size_t turn : {0U, 1U, 0U, 1U, 0U})
        EXPECT_EQ(queue.send(0).destination, two[turn]);
    expect_conserved(queue);
}

TEST(Queue, CopiesThatFitLeaveTheRestOfTheRoom)
{
    const std::vector<softnode::Mac> two{{2, 0, 0, 2, 0, 1}, {2, 0, 0, 2, 0, 2}};
    softnode::Queue queue = queue_of(0, 5, 0);
    EXPECT_EQ(queue.enter(two, {2, 64}, 0, false), 0U);
    EXPECT_EQ(queue.waiting().frames, 4U);
    expect_conserved(queue);
}

TEST(Queue, MoreFramesThanCanBeCountedAreDroppedAllTheSame)
{
    const std::vector<softnode::Mac> three{{2, 0, 0, 2, 0, 1}, {2, 0, 0, 2, 0, 2}, {2, 0, 0, 2, 0, 3}};
    softnode::Queue queue = queue_of(0, 100, 0);
    EXPECT_EQ(queue.enter(there, {countless, 64}, 0, false), countless - 100);
    EXPECT_EQ(queue.waiting().frames, 100U);
    queue.enter(three, {countless, 65'535}, 0, false);
    EXPECT_EQ(queue.waiting().frames, 100U);
    expect_conserved(queue);
}

TEST(Queue, CopiesThatComeToFewByOverflowAreNotAdmittedByIt)
{
    /* Three times this is 2 to the power of 64 and 2 more. */
    const std::vector<softnode::Mac> three{{2, 0, 0, 2, 0, 1}, {2, 0, 0, 2, 0, 2}, {2, 0, 0, 2, 0, 3}};
    softnode::Queue queue = queue_of(0, 100, 0);
    queue.enter(three, {0x5555'5555'5555'5556, 64}, 0, false);
    EXPECT_EQ(queue.waiting().frames, 100U);
    expect_conserved(queue);
}

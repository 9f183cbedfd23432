/*
 * queue_test.cpp - what enters a queue, waits in it, leaves it or is dropped.
 */
#include "softnode/traffic/queue.h"

#include <gtest/gtest.h>

#include <limits>

namespace
{

using softnode::DestinationMacs;
using softnode::Fate;
using softnode::Handle;
using softnode::Instant;

constexpr Handle scheduler = static_cast<Handle>(0x5c00000001);
const DestinationMacs there{{2, 0, 0, 2, 0, 1}};
constexpr std::uint64_t countless = std::numeric_limits<std::uint64_t>::max();

/* A queue of so many blocks of memory. */
softnode::Queue queue_of(std::uint32_t rate, std::uint32_t blocks, std::uint32_t burst)
{
    return {scheduler, {rate, blocks * 256, burst}};
}

std::uint64_t frames(const softnode::Queue &queue, Fate fate)
{
    return queue.counters[fate].frames;
}

/* The first frame leaves, with no lead. */
softnode::Frame send(softnode::Queue &queue, Instant now)
{
    return queue.send(now, {});
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
    const softnode::Queue queue(scheduler, {1000, 25'600, 64});
    EXPECT_EQ(queue.scheduler, scheduler);
    EXPECT_EQ(queue.rate, 1000U);
    EXPECT_EQ(queue.threshold, 25'600U);
    EXPECT_EQ(queue.bucket_size, 64U);
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
    EXPECT_EQ(send(queue, 0).length, 300U);
    EXPECT_EQ(queue.enter(there, {1, 300}, 0, false), 1U);
    expect_conserved(queue);
}

TEST(Queue, AFrameBehindAnotherNeedsRoom)
{
    softnode::Queue queue = queue_of(0, 1, 0);
    EXPECT_EQ(queue.enter(there, {1, 64}, 0, false), 0U);
    EXPECT_EQ(queue.enter(there, {1, 64}, 5, true), 1U);
}

TEST(Queue, AFrameThatTheBucketDoesNotHoldNeedsRoom)
{
    softnode::Queue queue = queue_of(8, 0, 1500);
    EXPECT_EQ(queue.enter(there, {1, 1000}, 0, true), 0U);
    send(queue, 0);
    EXPECT_EQ(queue.enter(there, {1, 1000}, 0, true), 1U);
    EXPECT_EQ(queue.enter(there, {1, 1000}, 499'999'999, true), 1U);
    EXPECT_EQ(queue.enter(there, {1, 1000}, 500'000'000, true), 0U) << "500 octets at 8 kbit/s";
}

TEST(Queue, AFrameLongerThanTheBurstIsDropped)
{
    softnode::Queue queue = queue_of(1000, 100, 1000);
    EXPECT_EQ(queue.enter(there, {3, 1001}, 0, true), 3U);
    EXPECT_EQ(queue.waiting().frames, 0U);
    EXPECT_EQ(queue.enter(there, {1, 1000}, 0, true), 0U);
    expect_conserved(queue);
}

TEST(Queue, AnUnshapedQueueTakesFramesOfAnyLength)
{
    softnode::Queue queue = queue_of(0, 256, 0);
    EXPECT_EQ(queue.enter(there, {1, 65'535}, 0, false), 0U);
    EXPECT_EQ(queue.ready_at(), 0U);
}

TEST(Queue, TheFirstFrameLeavesWhenTheBucketHoldsIt)
{
    softnode::Queue queue = queue_of(8, 100, 1500);
    EXPECT_FALSE(queue.ready_at());
    ASSERT_EQ(queue.enter(there, {3, 1000}, 7, false), 0U);
    EXPECT_EQ(queue.ready_at(), 0U) << "since ever";
    send(queue, 7);
    EXPECT_EQ(queue.ready_at(), 500'000'007U);
    send(queue, 500'000'007);
    EXPECT_EQ(queue.ready_at(), 1'500'000'007U);
    expect_conserved(queue);
}

TEST(Queue, WithoutARateSendsTheBurstAndThenNothing)
{
    softnode::Queue queue = queue_of(0, 100, 2500);
    ASSERT_EQ(queue.enter(there, {3, 1000}, 0, false), 0U);
    send(queue, 0);
    send(queue, 0);
    EXPECT_FALSE(queue.ready_at());
    EXPECT_EQ(queue.waiting().frames, 1U);
}

TEST(Queue, CopiesToSeveralDestinationsShareTheRoomFrameByFrame)
{
    const DestinationMacs two{{2, 0, 0, 2, 0, 1}, {2, 0, 0, 2, 0, 2}};
    softnode::Queue queue = queue_of(0, 5, 0);
    EXPECT_EQ(queue.enter(two, {10, 64}, 0, false), 15U);
    for (const std::size_t turn : {0U, 1U, 0U, 1U, 0U})
        EXPECT_EQ(send(queue, 0).destination, two[turn]);
    expect_conserved(queue);
}

TEST(Queue, MoreFramesThanCanBeCountedAreDroppedAllTheSame)
{
    const DestinationMacs three{{2, 0, 0, 2, 0, 1}, {2, 0, 0, 2, 0, 2}, {2, 0, 0, 2, 0, 3}};
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
    const DestinationMacs three{{2, 0, 0, 2, 0, 1}, {2, 0, 0, 2, 0, 2}, {2, 0, 0, 2, 0, 3}};
    softnode::Queue queue = queue_of(0, 100, 0);
    queue.enter(three, {0x5555'5555'5555'5556, 64}, 0, false);
    EXPECT_EQ(queue.waiting().frames, 100U);
    expect_conserved(queue);
}

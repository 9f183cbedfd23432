/*
 * frame_queue_test.cpp - frames in, frames out, and the memory between.
 */
#include "softnode/traffic/frame_queue.h"

#include <gtest/gtest.h>

#include <limits>
#include <utility>
#include <vector>

using namespace softnode;

namespace
{

constexpr Mac a{2, 0, 0, 2, 0, 1};
constexpr Mac b{2, 0, 0, 2, 0, 2};
constexpr Mac c{2, 0, 0, 2, 0, 3};
constexpr std::uint32_t roomy = 256'000;

void push(FrameQueue &frames, std::vector<Mac> destinations, const Frames &pushed, Instant now = 0)
{
    frames.push(destinations, pushed, now);
}

/* The destinations of all that waits. */
std::vector<Mac> destinations_of(FrameQueue frames)
{
    std::vector<Mac> destinations;
    while (!frames.empty())
        destinations.push_back(frames.pop().destination);
    return destinations;
}

} // namespace

TEST(FrameQueue, IsEmptyAtFirst)
{
    const FrameQueue frames(roomy);
    EXPECT_TRUE(frames.empty());
    EXPECT_EQ(frames.waiting().frames, 0U);
}

TEST(FrameQueue, FirstInIsFirstOut)
{
    FrameQueue frames(roomy);
    push(frames, {a}, {2, 100});
    push(frames, {b}, {1, 300});
    EXPECT_EQ(frames.pop().destination, a);
    EXPECT_EQ(frames.pop().length, 100U);
    EXPECT_EQ(frames.pop().destination, b);
    EXPECT_TRUE(frames.empty());
}

TEST(FrameQueue, CountsWhatWaits)
{
    FrameQueue frames(roomy);
    push(frames, {a}, {3, 257});
    push(frames, {a}, {1, 256});
    EXPECT_EQ(frames.waiting().frames, 4U);
    EXPECT_EQ(frames.waiting().octets, 3U * 257 + 256);
    EXPECT_EQ(frames.waiting().blocks, 7U);
    frames.pop();
    EXPECT_EQ(frames.waiting().frames, 3U);
    EXPECT_EQ(frames.waiting().octets, 2U * 257 + 256);
    EXPECT_EQ(frames.waiting().blocks, 5U);
}

TEST(FrameQueue, AFrameTakesTheBlocksThatItBegins)
{
    const FrameQueue frames(36 * 256);
    EXPECT_EQ(frames.room_for(1), 36U);
    EXPECT_EQ(frames.room_for(256), 36U);
    EXPECT_EQ(frames.room_for(257), 18U);
    EXPECT_EQ(frames.room_for(9000), 1U);
    EXPECT_EQ(frames.room_for(9217), 0U);
}

TEST(FrameQueue, APartOfABlockIsNoRoom)
{
    EXPECT_EQ(FrameQueue(255).room_for(1), 0U);
    EXPECT_EQ(FrameQueue(511).room_for(1), 1U);
}

TEST(FrameQueue, RoomIsWhatWaitingFramesLeave)
{
    FrameQueue frames(10 * 256);
    push(frames, {a}, {3, 300});
    EXPECT_EQ(frames.room_for(256), 4U);
    EXPECT_EQ(frames.room_for(300), 2U);
    frames.pop();
    EXPECT_EQ(frames.room_for(300), 3U);
}

TEST(FrameQueue, ThereIsNoRoomWhileAFrameStandsAboveTheThreshold)
{
    FrameQueue frames(0);
    push(frames, {a}, {1, 64});
    EXPECT_EQ(frames.room_for(64), 0U);
    frames.pop();
    EXPECT_EQ(frames.waiting().blocks, 0U);
}

TEST(FrameQueue, ARunGoesToItsDestinationsInTurn)
{
    FrameQueue frames(roomy);
    push(frames, {a, b, a}, {5, 64});
    EXPECT_EQ(destinations_of(frames), (std::vector<Mac>{a, b, a, a, b}));
}

TEST(FrameQueue, OneAtATimeAndAllAtOnceIsTheSame)
{
    FrameQueue at_once(roomy);
    push(at_once, {a, b}, {6, 64});
    FrameQueue singly(roomy);
    for (int frame = 0; frame < 3; ++frame)
        push(singly, {a, b}, {2, 64});
    EXPECT_EQ(destinations_of(singly), destinations_of(at_once));
}

TEST(FrameQueue, TurnsBeginAgainWithEveryPush)
{
    FrameQueue frames(roomy);
    push(frames, {a, b, c}, {2, 64});
    push(frames, {a, b, c}, {3, 64});
    EXPECT_EQ(destinations_of(frames), (std::vector<Mac>{a, b, a, b, c}));
}

TEST(FrameQueue, AFrameKeepsItsIdentityAndWhenItEntered)
{
    FrameQueue frames(roomy);
    push(frames, {a}, {1, 64, 7}, 10);
    push(frames, {a}, {1, 64, 8}, 10);
    push(frames, {a}, {1, 64, 8}, 20);
    for (const auto &[identity, entered] : {std::pair{7U, 10U}, {8U, 10U}, {8U, 20U}}) {
        const Frame frame = frames.pop();
        EXPECT_EQ(frame.identity, identity);
        EXPECT_EQ(frame.entered, entered);
    }
}

TEST(FrameQueue, ManyRunsComeOutInTheirOrder)
{
    FrameQueue frames(256 * 1000);
    std::uint32_t out = 0;
    for (std::uint32_t in = 1; in <= 900; ++in) {
        push(frames, {a}, {1, in});
        if (in % 3 == 0) {
            EXPECT_EQ(frames.pop().length, ++out);
        }
    }
    while (!frames.empty())
        EXPECT_EQ(frames.pop().length, ++out);
    EXPECT_EQ(out, 900U);
    EXPECT_EQ(frames.waiting().octets, 0U);
}

TEST(FrameQueue, AnotherLengthIsAnotherRun)
{
    FrameQueue frames(roomy);
    push(frames, {a}, {1, 64});
    push(frames, {a}, {1, 65});
    push(frames, {a}, {1, 64});
    EXPECT_EQ(frames.pop().length, 64U);
    EXPECT_EQ(frames.pop().length, 65U);
    EXPECT_EQ(frames.pop().length, 64U);
}

TEST(FrameQueue, AFrameLikeOneThatLeftIsARunOfItsOwn)
{
    FrameQueue frames(roomy);
    for (const std::uint32_t length : {1U, 2U, 3U, 4U})
        push(frames, {a}, {1, length});
    for (int frame = 0; frame < 4; ++frame)
        frames.pop();
    for (const std::uint32_t length : {1U, 2U, 4U})
        push(frames, {a}, {1, length});
    for (const std::uint32_t length : {1U, 2U, 4U})
        EXPECT_EQ(frames.pop().length, length);
}

TEST(FrameQueue, NoFramesAreNoRun)
{
    FrameQueue frames(roomy);
    push(frames, {a}, {0, 64});
    EXPECT_TRUE(frames.empty());
}

TEST(FrameQueue, FillsTheLargestMemory)
{
    FrameQueue frames(std::numeric_limits<std::uint32_t>::max());
    EXPECT_EQ(frames.room_for(1), 16'777'215U);
    push(frames, {a}, {16'777'215, 1});
    EXPECT_EQ(frames.room_for(1), 0U);
    EXPECT_EQ(frames.waiting().blocks, 16'777'215U);
}

// Frames through a queue that sends nothing any more, which no node file can ask for, and a replay that is interrupted.
#include "kelctl/replay/replayed_frames.h"

#include "kelctl/input/interruption.h"
#include "kelctl/jobs/take_down.h"
#include "kelctl/node/read_back.h"
#include "kelctl/replay/replay_steps.h"
#include "script_session.h"
#include "softnode/softnode.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>

namespace kelctl
{
namespace
{

constexpr uint32_t length = 96; // without the check sequence

captured_frame frame_to(uint8_t last, uint64_t time)
{
    return {time, length, {2, 0, 0, 2, 0, last}};
}

class ReplayedFrames : public testing::Test
{
protected:
    // A bucket that the first frame empties, and that is never filled again.
    ReplayedFrames()
    {
        softnode_reset();
        for (const char *line : {"ebcom start", "ebcom path add --raw 02:00:00:02:00:05 --port 6 --rate 0 --burst 99"})
            EXPECT_EQ(here.run(line).status, exit_done) << line;
        node = current_snapshot().value();
    }

    ~ReplayedFrames() override
    {
        take_down(here);
    }

    script_session here;
    snapshot node;
};

TEST_F(ReplayedFrames, OnesThatNeverLeaveAreWaitedForUntilTheEndOfTime)
{
    const std::vector<captured_frame> frames = {frame_to(5, 0), frame_to(5, 0), frame_to(4, 0)};
    const replayed all = replay_frames(frames, node);
    EXPECT_TRUE(all.whole);
    EXPECT_EQ(all.frames[0].fate, frame_fate::sent);
    EXPECT_EQ(all.frames[1].fate, frame_fate::never_left);
    EXPECT_EQ(all.frames[1].queue, node.queues[0].self);
    EXPECT_EQ(all.frames[2].fate, frame_fate::no_way);
    EXPECT_EQ(all.frames[2].queue, 0u);

    const auto queues = replay_steps(all, frames, ports_of(node, here.paths));
    ASSERT_EQ(queues.size(), 2u);
    EXPECT_EQ(queues[0].name, "no path");
    EXPECT_EQ(queues[0].steps[0].dropped, 1u);
    EXPECT_EQ(queues[1].name, "RLU1P");
    EXPECT_EQ(queues[1].steps[0].dropped, 0u);
    EXPECT_EQ(queues[1].steps[0].backlog, octets_of(frames[1]));
    EXPECT_EQ(queues[1].steps[0].octets_sent, octets_of(frames[0]));
}

TEST_F(ReplayedFrames, AreNotWholeAfterAnInterruption)
{
    const interruption_watch watch;
    std::raise(SIGINT);
    const std::vector<captured_frame> frames = {frame_to(5, 0)};
    const replayed all = replay_frames(frames, node);
    EXPECT_FALSE(all.whole);
    EXPECT_TRUE(all.frames.empty());
}

} // namespace
} // namespace kelctl

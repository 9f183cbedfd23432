// Lines through a pipe.
#include "kelctl/input/line_input.h"

#include "kelctl/input/interruption.h"

#include <gtest/gtest.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <thread>
#include <unistd.h>

namespace kelctl
{
namespace
{

class LineInput : public testing::Test
{
protected:
    LineInput()
    {
        EXPECT_EQ(pipe(ends.data()), 0);
    }
    ~LineInput() override
    {
        close(ends[0]);
        end();
    }

    void give(const std::string &text) const
    {
        EXPECT_EQ(write(ends[1], text.data(), text.size()), static_cast<ssize_t>(text.size()));
    }

    void end()
    {
        if (ends[1] >= 0)
            close(ends[1]);
        ends[1] = -1;
    }

    const interruption_watch watch;
    std::array<int, 2> ends{-1, -1};
};

TEST_F(LineInput, LinesComeWithoutTheirEndsAndTheLastMayHaveNone)
{
    give("a\n\nbc");
    end();
    line_input input(ends[0]);
    EXPECT_EQ(input.next(), "a");
    EXPECT_EQ(input.next(), "");
    EXPECT_EQ(input.next(), "bc");
    EXPECT_EQ(input.next(), std::nullopt);
}

TEST_F(LineInput, LineIsGivenBeforeTheInputEnds)
{
    line_input input(ends[0]);
    give("first\nsec");
    EXPECT_EQ(input.next(), "first");
    give("ond\n");
    EXPECT_EQ(input.next(), "second");
}

TEST_F(LineInput, LongLinesStayWhole)
{
    give(std::string(50'000, 'x') + "\n");
    EXPECT_EQ(line_input(ends[0]).next(), std::string(50'000, 'x'));
}

TEST_F(LineInput, EndIsNoError)
{
    end();
    line_input input(ends[0]);
    EXPECT_EQ(input.next(), std::nullopt);
    EXPECT_EQ(input.error(), 0);
}

TEST_F(LineInput, WhatCannotBeReadIsNotAnEnd)
{
    const int folder = open("/", O_RDONLY | O_DIRECTORY);
    line_input input(folder);
    EXPECT_EQ(input.next(), std::nullopt);
    EXPECT_EQ(input.error(), EISDIR);
    close(folder);
}

TEST_F(LineInput, InterruptionEndsTheWait)
{
    line_input input(ends[0]);
    std::thread other([] { kill(getpid(), SIGTERM); });
    EXPECT_EQ(input.next(), std::nullopt);
    other.join();
    EXPECT_TRUE(terminated());
}

} // namespace
} // namespace kelctl

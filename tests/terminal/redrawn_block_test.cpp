// What is written to draw a block again. A stream that is no terminal has no height to cut at.
#include "terminal/redrawn_block.h"

#include "tests/terminal/captured_stream.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <pty.h>
#include <string_view>
#include <unistd.h>

namespace terminal
{
namespace
{

TEST(RedrawnBlock, BlocksFollowEachOtherWithAnEmptyLineBetween)
{
    captured_stream stream;
    redrawn_block block(stream.stream(), false);
    block.draw("a\nb\n");
    block.draw("c\n");
    EXPECT_EQ(stream.text(), "a\nb\n\nc\n\n");
}

TEST(RedrawnBlock, OnATerminalEachIsDrawnOverTheOneBefore)
{
    captured_stream stream;
    redrawn_block block(stream.stream(), true);
    block.draw("a\nb\n");
    block.draw("c\n");
    block.draw("d\n");
    EXPECT_EQ(stream.text(), "\x1b[?7l\x1b[Ka\n\x1b[Kb\n\x1b[J\x1b[?7h"
                             "\x1b[?7l\x1b[2A\x1b[Kc\n\x1b[J\x1b[?7h"
                             "\x1b[?7l\x1b[1A\x1b[Kd\n\x1b[J\x1b[?7h");
}

TEST(RedrawnBlock, OnATerminalWithoutRoomForTwoLinesNothingIsCut)
{
    for (const uint16_t rows : {uint16_t{0}, uint16_t{1}}) {
        const winsize size = {.ws_row = rows, .ws_col = 80, .ws_xpixel = 0, .ws_ypixel = 0};
        int terminal = -1;
        int programs_end = -1;
        ASSERT_EQ(openpty(&terminal, &programs_end, nullptr, nullptr, &size), 0);
        const std::unique_ptr<std::FILE, int (*)(std::FILE *)> stream(fdopen(programs_end, "w"), std::fclose);
        redrawn_block(stream.get(), true).draw("a\nb\nc\n");
        std::array<char, 100> shown{};
        const ssize_t octets = read(terminal, shown.data(), shown.size());
        EXPECT_NE(std::string_view(shown.data(), static_cast<size_t>(octets)).find("c\r\n"), std::string_view::npos);
        close(terminal);
    }
}

TEST(RedrawnBlock, IsLeftWithAnEmptyLineOnATerminalOnly)
{
    captured_stream terminal;
    redrawn_block block(terminal.stream(), true);
    block.leave();
    EXPECT_EQ(terminal.text(), "");
    block.draw("a\n");
    block.leave();
    block.draw("b\n");
    EXPECT_EQ(terminal.text(), "\x1b[?7l\x1b[Ka\n\x1b[J\x1b[?7h\n"
                               "\x1b[?7l\x1b[Kb\n\x1b[J\x1b[?7h");

    captured_stream file;
    redrawn_block listed(file.stream(), false);
    listed.draw("a\n");
    listed.leave();
    EXPECT_EQ(file.text(), "a\n\n");
}

} // namespace
} // namespace terminal

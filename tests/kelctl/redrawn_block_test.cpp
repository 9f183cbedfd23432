// What is written to draw a block again. A stream that is no terminal has no height to cut at.
#include "kelctl/redrawn_block.h"

#include "captured_stream.h"

#include <gtest/gtest.h>

namespace kelctl
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
    EXPECT_EQ(stream.text(), "\x1b[?7la\x1b[K\nb\x1b[K\n\x1b[J\x1b[?7h"
                             "\x1b[?7l\x1b[2Ac\x1b[K\n\x1b[J\x1b[?7h"
                             "\x1b[?7l\x1b[1Ad\x1b[K\n\x1b[J\x1b[?7h");
}

} // namespace
} // namespace kelctl

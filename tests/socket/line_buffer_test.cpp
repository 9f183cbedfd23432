// Lines, in whatever pieces they come.
#include "socket/line_buffer.h"

#include <gtest/gtest.h>

#include <string>

namespace sockets
{
namespace
{

TEST(LineBuffer, HasNoLineBeforeItsEnd)
{
    line_buffer lines(10);
    EXPECT_TRUE(lines.empty());
    lines.append("ab");
    EXPECT_FALSE(lines.empty());
    EXPECT_FALSE(lines.has_line());
    EXPECT_EQ(lines.take_line(), std::nullopt);
    lines.append("c\n");
    EXPECT_TRUE(lines.has_line());
    EXPECT_EQ(lines.take_line(), "abc");
    EXPECT_TRUE(lines.empty());
}

TEST(LineBuffer, TakesLinesInTheirOrder)
{
    line_buffer lines(10);
    lines.append("a\n\nb");
    lines.append("c\nd");
    EXPECT_EQ(lines.take_line(), "a");
    EXPECT_EQ(lines.take_line(), "");
    EXPECT_EQ(lines.take_line(), "bc");
    EXPECT_EQ(lines.take_line(), std::nullopt);
    lines.append("\n");
    EXPECT_EQ(lines.take_line(), "d");
}

TEST(LineBuffer, ALineMayBeAsLongAsItMayBe)
{
    line_buffer lines(3);
    lines.append("abc");
    EXPECT_FALSE(lines.too_long());
    lines.append("\nabcdefgh\n");
    EXPECT_FALSE(lines.too_long());
    EXPECT_EQ(lines.take_line(), "abc");
    EXPECT_TRUE(lines.too_long());
}

TEST(LineBuffer, IsTooLongBeforeItsEnd)
{
    line_buffer lines(3);
    lines.append("abcd");
    EXPECT_TRUE(lines.too_long());
}

} // namespace
} // namespace sockets

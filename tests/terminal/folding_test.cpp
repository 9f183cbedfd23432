// Where lines are broken.
#include "terminal/folding.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace terminal
{
namespace
{

TEST(Folding, LinesAreBrokenAtBlanksWithinEightyColumns)
{
    EXPECT_EQ(wrapped("> ", ""), "> \n");
    EXPECT_EQ(wrapped("> ", "a b"), "> a b\n");
    EXPECT_EQ(wrapped("> ", std::string(75, 'x') + " ab c"), "> " + std::string(75, 'x') + " ab\n  c\n");
    EXPECT_EQ(wrapped("> ", std::string(100, 'x') + " a"), "> " + std::string(100, 'x') + "\n  a\n");
}

TEST(Folding, PartsStayWhole)
{
    const std::vector<std::string> parts = {std::string(70, 'x'), "[--rate RATE]", "[--burst SIZE]"};
    EXPECT_EQ(wrapped("> ", parts), "> " + std::string(70, 'x') + "\n  [--rate RATE] [--burst SIZE]\n");
}

TEST(Folding, LinesAreFoldedAtBlanksAndGoOnFurtherIn)
{
    EXPECT_EQ(folded("short", 10), "short\n");
    EXPECT_EQ(folded("", 10), "\n");
    EXPECT_EQ(folded("  one two three four", 12), "  one two\n      three\n      four\n");
    EXPECT_EQ(folded("exactly ten", 11), "exactly ten\n");
    EXPECT_EQ(folded("exactly  ten", 11), "exactly\n    ten\n");
    EXPECT_EQ(folded("exactly    ten", 12), "exactly  ten\n");
    EXPECT_EQ(folded("exactly    ten", 13), "exactly   ten\n");
}

TEST(Folding, WordsWiderThanTheLineStayWhole)
{
    EXPECT_EQ(folded("  0123456789abcdef x", 8), "  0123456789abcdef\n      x\n");
    EXPECT_EQ(folded("a 0123456789abcdef   ", 8), "a\n0123456789abcdef\n");
    EXPECT_EQ(folded("          ", 4), "          \n");
}

TEST(Folding, IndentationGivesWayToAWordThatFitsWithLess)
{
    EXPECT_EQ(folded("  one 234567 three", 8), "  one\n  234567\n   three\n");
}

TEST(Folding, CallsThatAreTooLongAreBrokenBeforeTheirArguments)
{
    EXPECT_EQ(folded("failed: add_path(mac=0123, port=6)", 17), "failed: add_path(\n    mac=0123,\n    port=6)\n");
    EXPECT_EQ(folded("failed: add(a=1)", 10), "failed:\n  add(a=1)\n");
    EXPECT_EQ(folded("add(mac=1)", 8), "add(\n  mac=1)\n");
    EXPECT_EQ(folded("failed: remove_all(): x", 10), "failed:\nremove_all():\n    x\n");
    EXPECT_EQ(folded("/tmp/node(1).toml: x", 10), "/tmp/node(1).toml:\n    x\n");
    EXPECT_EQ(folded("(file.cpp:12)", 10), "(file.cpp:12)\n");
}

TEST(Folding, ColumnsAreCountedNotOctets)
{
    EXPECT_EQ(folded("\x1b[1;31mfailed:\x1b[0m why", 11), "\x1b[1;31mfailed:\x1b[0m why\n");
    EXPECT_EQ(folded("\xc3\xa4\xc3\xa4 \xc3\xb6", 4), "\xc3\xa4\xc3\xa4 \xc3\xb6\n");
}

} // namespace
} // namespace terminal

// Given texts as tables.
#include "kelctl/terminal/side_by_side.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

namespace kelctl
{
namespace
{

using testing::HasSubstr;

const painter plain(false);

TEST(SideBySide, NumbersOfTheSameLineStandInOneLine)
{
    EXPECT_EQ(side_by_side("PCEP",
                           {{"1", "Inbound:\n  frames   0\n  octets  12\n"},
                            {"22", "Inbound:\n  frames  18446744073709551615\n  octets   7\n"}},
                           plain),
              "PCEP             1        22\n"
              "Inbound:\n"
              "  frames         0 18446744073709551615\n"
              "  octets        12         7\n");
}

TEST(SideBySide, LastLineNeedsNoEndAndEmptyLinesAreLeftOut)
{
    EXPECT_EQ(side_by_side("x", {{"1", "a 1\n\nb 2"}}, plain), "x         1\n"
                                                               "a         1\n"
                                                               "b         2\n");
}

TEST(SideBySide, WordsThatEndInANumberAreWords)
{
    EXPECT_EQ(side_by_side("x", {{"1", "version2\na 1\n  17\n"}}, plain), "x         1\n"
                                                                          "version2\n"
                                                                          "a         1\n"
                                                                          "  17\n");
}

TEST(SideBySide, WhatDoesNotFitGoesIntoFurtherTables)
{
    const std::vector<titled_text> texts(9, {"511", "frames_received 1\n"});
    const std::string tables = side_by_side("PCEP", texts, plain);
    EXPECT_EQ(tables, "PCEP                  511       511       511       511       511       511\n"
                      "frames_received         1         1         1         1         1         1\n"
                      "PCEP                  511       511       511\n"
                      "frames_received         1         1         1\n");
    std::istringstream lines(tables);
    for (std::string line; std::getline(lines, line);)
        EXPECT_LE(line.size(), 80u) << line;
}

TEST(SideBySide, TextsOfOtherLayoutsFollowEachOther)
{
    EXPECT_EQ(side_by_side("PCEP", {{"1", "a 1\n"}, {"2", "b 1\n"}}, plain), "PCEP 1\na 1\n\nPCEP 2\nb 1\n\n");
    EXPECT_EQ(side_by_side("PCEP", {{"1", "a 1\n"}, {"2", "a 1\nb 2\n"}}, plain),
              "PCEP 1\na 1\n\nPCEP 2\na 1\nb 2\n\n");
    EXPECT_EQ(side_by_side("PCEP", {{"1", "a 1\n"}, {"2", "a\n"}}, plain), "PCEP 1\na 1\n\nPCEP 2\na\n\n");
}

TEST(SideBySide, NoTextsAreNoTable)
{
    EXPECT_EQ(side_by_side("PCEP", {}, plain), "");
}

TEST(SideBySide, LongLabelsLeaveRoomForOneColumnAtLeast)
{
    const std::string label(100, 'x');
    EXPECT_EQ(side_by_side("", {{"1", label + " 1"}, {"2", label + " 2"}}, plain),
              std::string(100, ' ') + "         1\n" + label + "         1\n" + std::string(100, ' ') + "         2\n" +
                  label + "         2\n");
}

TEST(SideBySide, HeadingIsPainted)
{
    EXPECT_THAT(side_by_side("x", {{"1", "a 1\n"}}, painter(true)), HasSubstr("\x1b[1mx         1\x1b[0m\n"));
}

} // namespace
} // namespace kelctl

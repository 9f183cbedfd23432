// Foreign text and misspelt words.
#include "terminal/text.h"

#include <gtest/gtest.h>

#include <vector>

namespace kelctl
{
namespace
{

constexpr std::string_view words[] = {"ic_port_mtu", "ether_type", "settings"};

TEST(Text, ControlCharactersNeverReachTheTerminal)
{
    EXPECT_EQ(printable("a\x1b[31m\nb\x7f"), "a?[31m?b?");
}

TEST(Text, LongTextIsCutBetweenCharacters)
{
    const std::string text = std::string(159, 'x') + "\xc3\xa4 and more";
    EXPECT_EQ(printable(text), std::string(159, 'x') + "...");
    EXPECT_EQ(printable(std::string(160, 'x')), std::string(160, 'x'));
    EXPECT_EQ(printable(std::string(161, '\x80')), "...") << "no character begins in it";
}

TEST(Text, QuotedTextStandsInQuotes)
{
    EXPECT_EQ(in_quotes("a\tb"), "\"a?b\"");
}

TEST(Text, CaseDoesNotTellWordsApart)
{
    EXPECT_TRUE(same_word("rlu1P", "RLU1p"));
    EXPECT_FALSE(same_word("RLU1P", "RLU1"));
    EXPECT_FALSE(same_word("RLU1", "RLU1P"));
}

TEST(Text, NearestWordIsAtMostTwoLettersAway)
{
    EXPECT_EQ(nearest("ethertype", words), "ether_type");
    EXPECT_EQ(nearest("Setting", words), "settings");
    EXPECT_EQ(nearest("ic_prot_mtu", words), "ic_port_mtu");
    EXPECT_EQ(nearest("ic_port", words), "");
    EXPECT_EQ(nearest("", words), "");
    EXPECT_EQ(nearest(std::string(100'000, 'x'), words), "");
}

TEST(Text, NearestOfSeveralIsTheOneWithFewestWrongLetters)
{
    constexpr std::string_view close[] = {"coint", "count"};
    EXPECT_EQ(nearest("countt", close), "count");
}

TEST(Text, NearestOfSeveralThatAreEquallyNearIsNone)
{
    constexpr std::string_view ports[] = {"RLU1P", "RLU2P", "RLU3P"};
    EXPECT_EQ(nearest("RLU9P", ports), "");
    EXPECT_EQ(nearest("RLU2Q", ports), "RLU2P");
    EXPECT_EQ(did_you_mean("RLU9P", ports), "");
    EXPECT_EQ(did_you_mean("RUL2P", ports), "; did you mean \"RLU2P\"?");
}

TEST(Text, WithoutControlsNothingIsCut)
{
    EXPECT_EQ(without_controls(std::string(1000, 'x') + "\n"), std::string(1000, 'x') + "?");
}

TEST(Text, LinesAreBrokenAtBlanksWithinEightyColumns)
{
    EXPECT_EQ(wrapped("> ", ""), "> \n");
    EXPECT_EQ(wrapped("> ", "a b"), "> a b\n");
    EXPECT_EQ(wrapped("> ", std::string(75, 'x') + " ab c"), "> " + std::string(75, 'x') + " ab\n  c\n");
    EXPECT_EQ(wrapped("> ", std::string(100, 'x') + " a"), "> " + std::string(100, 'x') + "\n  a\n");
}

TEST(Text, PartsStayWhole)
{
    const std::vector<std::string> parts = {std::string(70, 'x'), "[--rate RATE]", "[--burst SIZE]"};
    EXPECT_EQ(wrapped("> ", parts), "> " + std::string(70, 'x') + "\n  [--rate RATE] [--burst SIZE]\n");
}

TEST(Text, LinesAreFoldedAtBlanksAndGoOnFurtherIn)
{
    EXPECT_EQ(folded("short", 10), "short\n");
    EXPECT_EQ(folded("", 10), "\n");
    EXPECT_EQ(folded("  one two three four", 12), "  one two\n      three\n      four\n");
    EXPECT_EQ(folded("exactly ten", 11), "exactly ten\n");
    EXPECT_EQ(folded("exactly  ten", 11), "exactly\n    ten\n");
    EXPECT_EQ(folded("exactly    ten", 12), "exactly  ten\n");
    EXPECT_EQ(folded("exactly    ten", 13), "exactly   ten\n");
}

TEST(Text, WordsWiderThanTheLineStayWhole)
{
    EXPECT_EQ(folded("  0123456789abcdef x", 8), "  0123456789abcdef\n      x\n");
    EXPECT_EQ(folded("a 0123456789abcdef   ", 8), "a\n0123456789abcdef\n");
    EXPECT_EQ(folded("          ", 4), "          \n");
}

TEST(Text, IndentationGivesWayToAWordThatFitsWithLess)
{
    EXPECT_EQ(folded("  one 234567 three", 8), "  one\n  234567\n   three\n");
}

TEST(Text, CallsThatAreTooLongAreBrokenBeforeTheirArguments)
{
    EXPECT_EQ(folded("failed: add_path(mac=0123, port=6)", 17), "failed: add_path(\n    mac=0123,\n    port=6)\n");
    EXPECT_EQ(folded("failed: add(a=1)", 10), "failed:\n  add(a=1)\n");
    EXPECT_EQ(folded("add(mac=1)", 8), "add(\n  mac=1)\n");
    EXPECT_EQ(folded("failed: remove_all(): x", 10), "failed:\nremove_all():\n    x\n");
    EXPECT_EQ(folded("/tmp/node(1).toml: x", 10), "/tmp/node(1).toml:\n    x\n");
    EXPECT_EQ(folded("(file.cpp:12)", 10), "(file.cpp:12)\n");
}

TEST(Text, CountsAreInTheSingularForOneOnly)
{
    EXPECT_EQ(count_of(0, "path"), "0 paths");
    EXPECT_EQ(count_of(1, "path"), "1 path");
    EXPECT_EQ(count_of(3500, "path"), "3,500 paths");
    EXPECT_EQ(count_of(1, "entry", "entries"), "1 entry");
    EXPECT_EQ(count_of(2, "entry", "entries"), "2 entries");
}

TEST(Text, ColumnsAreCountedNotOctets)
{
    EXPECT_EQ(folded("\x1b[1;31mfailed:\x1b[0m why", 11), "\x1b[1;31mfailed:\x1b[0m why\n");
    EXPECT_EQ(folded("\xc3\xa4\xc3\xa4 \xc3\xb6", 4), "\xc3\xa4\xc3\xa4 \xc3\xb6\n");
}

} // namespace
} // namespace kelctl

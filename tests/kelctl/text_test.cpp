// Foreign text and misspelt words.
#include "kelctl/text.h"

#include <gtest/gtest.h>

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

} // namespace
} // namespace kelctl

// Misspelt words.
#include "text/nearest.h"

#include <gtest/gtest.h>

#include <string>

using text::did_you_mean;
using text::nearest;
using text::same_word;

namespace
{

constexpr std::string_view words[] = {"ic_port_mtu", "ether_type", "settings"};

} // namespace

TEST(Nearest, FindsTheWordWithAsManyLettersTooFewTooManyOrWrong)
{
    EXPECT_EQ(nearest("ethertype", words, 1), "ether_type");
    EXPECT_EQ(nearest("etherr_type", words, 1), "ether_type");
    EXPECT_EQ(nearest("ether-type", words, 1), "ether_type");
    EXPECT_EQ(nearest("ic_prot_mtu", words, 2), "ic_port_mtu");
    EXPECT_EQ(nearest("ic_prot_mtu", words, 1), "");
    EXPECT_EQ(nearest("ic_port", words), "");
    EXPECT_EQ(nearest("settings", words, 0), "settings");
}

TEST(Nearest, TellsNoCases)
{
    EXPECT_EQ(nearest("SETTINGS", words, 0), "settings");
}

TEST(Nearest, PrefersTheFewestWrongLetters)
{
    constexpr std::string_view close[] = {"coint", "count"};
    EXPECT_EQ(nearest("countt", close, 2), "count");
}

TEST(Nearest, GuessesNothingWhereSeveralAreEquallyNear)
{
    constexpr std::string_view ports[] = {"RLU1P", "RLU2P", "RLU3P"};
    EXPECT_EQ(nearest("RLU9P", ports, 2), "");
    EXPECT_EQ(nearest("RLU2Q", ports), "RLU2P");
    EXPECT_EQ(did_you_mean("RLU9P", ports), "");
    EXPECT_EQ(did_you_mean("RUL2P", ports), "; did you mean \"RLU2P\"?");
}

TEST(Nearest, LeavesALetterOfTheWordThatIsGuessed)
{
    constexpr std::string_view brief[] = {"ab"};
    EXPECT_EQ(nearest("", brief, 2), "");
    EXPECT_EQ(nearest("xy", brief, 2), "");
    EXPECT_EQ(nearest("ay", brief, 2), "ab");
}

TEST(Nearest, GuessesNothingForAWordThatIsFarLonger)
{
    EXPECT_EQ(nearest(std::string(100'000, 'x'), words, 2), "");
    EXPECT_EQ(nearest("settings" + std::string(100'000, ' '), words, 2), "");
}

TEST(Nearest, CaseDoesNotTellWordsApart)
{
    EXPECT_TRUE(same_word("rlu1P", "RLU1p"));
    EXPECT_FALSE(same_word("RLU1P", "RLU1"));
    EXPECT_FALSE(same_word("RLU1", "RLU1P"));
}

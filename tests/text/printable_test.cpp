// Text from outside.
#include "text/printable.h"

#include <gtest/gtest.h>

#include <string>

namespace text
{
namespace
{

TEST(Printable, ControlCharactersNeverReachTheTerminal)
{
    EXPECT_EQ(printable("a\x1b[31m\nb\x7f"), "a?[31m?b?");
}

TEST(Printable, LongTextIsCutBetweenCharacters)
{
    const std::string text = std::string(159, 'x') + "\xc3\xa4 and more";
    EXPECT_EQ(printable(text), std::string(159, 'x') + "...");
    EXPECT_EQ(printable(std::string(160, 'x')), std::string(160, 'x'));
    EXPECT_EQ(printable(std::string(161, '\x80')), "...") << "no character begins in it";
}

TEST(Printable, QuotedTextStandsInQuotes)
{
    EXPECT_EQ(in_quotes("a\tb"), "\"a?b\"");
}

TEST(Printable, WithoutControlsNothingIsCut)
{
    EXPECT_EQ(without_controls(std::string(1000, 'x') + "\n"), std::string(1000, 'x') + "?");
}

} // namespace
} // namespace text

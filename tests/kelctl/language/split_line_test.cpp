// Lines taken apart.
#include "kelctl/language/command_line.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kelctl
{
namespace
{

using testing::AllOf;
using testing::ElementsAre;
using testing::Field;
using testing::IsEmpty;

auto word_at(const std::string &text, uint32_t column, uint32_t end)
{
    return AllOf(Field(&word::text, text), Field(&word::column, column), Field(&word::end, end));
}

auto is_text(const std::string &text)
{
    return Field(&word::text, text);
}

// "3: what is wrong at column 3".
std::string problem_of(const std::string &line)
{
    try {
        words_of(line);
    } catch (const wrong_line &wrong) {
        return std::to_string(wrong.column()) + ": " + wrong.what();
    }
    return "nothing is wrong";
}

TEST(Words, BlanksSeparateThem)
{
    EXPECT_THAT(words_of("  a\tbc  d\r"), ElementsAre(word_at("a", 3, 4), word_at("bc", 5, 7), word_at("d", 9, 10)));
}

TEST(Words, EmptyLinesAndCommentsHaveNone)
{
    EXPECT_THAT(words_of(""), IsEmpty());
    EXPECT_THAT(words_of(" \t\r"), IsEmpty());
    EXPECT_THAT(words_of("  # ebcom start"), IsEmpty());
}

TEST(Words, CommentBeginsOnlyWhereAWordCould)
{
    EXPECT_THAT(words_of("a#b c # d"), ElementsAre(is_text("a#b"), is_text("c")));
    EXPECT_THAT(words_of("'#' \\#"), ElementsAre(is_text("#"), is_text("#")));
}

TEST(Words, QuotesKeepBlanksAndMayStandWithinAWord)
{
    EXPECT_THAT(words_of("\"100 Mbit/s\" --rate='1 Gbit/s' ''"),
                ElementsAre(word_at("100 Mbit/s", 1, 13), word_at("--rate=1 Gbit/s", 14, 31), word_at("", 32, 34)));
}

TEST(Words, BackslashKeepsTheNextCharacterButNotInSingleQuotes)
{
    EXPECT_THAT(words_of(R"(a\ b "c\"d" 'e\f')"), ElementsAre(is_text("a b"), is_text("c\"d"), is_text("e\\f")));
}

TEST(Words, ColumnsCountCharactersNotOctets)
{
    EXPECT_THAT(words_of("\xc3\xa4\xc3\xb6 b"), ElementsAre(word_at("\xc3\xa4\xc3\xb6", 1, 3), word_at("b", 4, 5)));
    EXPECT_THAT(words_of("\xc3\x81 b"), ElementsAre(word_at("\xc3\x81", 1, 2), word_at("b", 3, 4)));
}

TEST(Words, OpenQuotesAndABackslashAtTheEndAreWrongWhereTheyStand)
{
    EXPECT_EQ(problem_of("a 'b c"), "3: the closing quotation mark is missing");
    EXPECT_EQ(problem_of("a \"b\\\""), "3: the closing quotation mark is missing");
    EXPECT_EQ(problem_of("ab\\"), "3: nothing follows the backslash");
}

} // namespace
} // namespace kelctl

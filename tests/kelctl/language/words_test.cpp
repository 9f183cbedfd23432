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

uint32_t column_of_problem(const std::string &line)
{
    try {
        words_of(line);
    } catch (const wrong_line &wrong) {
        return wrong.column();
    }
    ADD_FAILURE() << "nothing is wrong with " << line;
    return 0;
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
}

TEST(Words, OpenQuotesAndABackslashAtTheEndAreWrongWhereTheyStand)
{
    EXPECT_EQ(column_of_problem("a 'b c"), 3u);
    EXPECT_EQ(column_of_problem("a \"b\\\""), 3u);
    EXPECT_EQ(column_of_problem("ab\\"), 3u);
}

} // namespace
} // namespace kelctl

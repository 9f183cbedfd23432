/*
 * table_layout_test.cpp - the three layouts, step by step.
 */
#include "softnode/closed/table_layout.h"

#include "tests/notation/print.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>

using namespace softnode;

namespace
{

const TableLayout &text = table_layout(0);
const TableLayout &csv = table_layout(1);
const TableLayout &json = table_layout(2);

std::string with_title(const TableLayout &layout, std::string_view table, std::string_view title)
{
    const TableLine line{title};
    return layout.with(table, {&line, 1}).value();
}

std::string with_row(const TableLayout &layout, std::string_view table, std::string_view label, std::uint64_t value)
{
    const TableLine line{label, value};
    return layout.with(table, {&line, 1}).value();
}

/* Two titles; the numbers are the smallest and the largest. */
std::string example(const TableLayout &layout)
{
    std::string table = with_title(layout, "", "Ports");
    table = with_row(layout, table, "up", 0);
    table = with_row(layout, table, "down", UINT64_MAX);
    table = with_title(layout, table, "Errors");
    return with_row(layout, table, "current_burst_size", 4'294'967'295);
}

} // namespace

TEST(TableLayout, TextIsAligned)
{
    EXPECT_EQ(example(text), "Ports:\n"
                             "  up                                          0\n"
                             "  down                     18446744073709551615\n"
                             "Errors:\n"
                             "  current_burst_size                 4294967295\n");
}

TEST(TableLayout, CsvIsPairs)
{
    EXPECT_EQ(example(csv), "title,Ports\nup,0\ndown,18446744073709551615\ntitle,Errors\n"
                            "current_burst_size,4294967295\n");
}

TEST(TableLayout, JsonHasAnObjectPerTitle)
{
    EXPECT_EQ(example(json), R"({
  "Ports": {
    "up": 0,
    "down": 18446744073709551615
  },
  "Errors": {
    "current_burst_size": 4294967295
  }
})");
}

TEST(TableLayout, EveryOtherFormatIsText)
{
    for (unsigned format = 3; format <= 255; ++format)
        EXPECT_EQ(&table_layout(static_cast<std::uint8_t>(format)), &text);
}

TEST(TableLayout, RowsNeedNoTitle)
{
    EXPECT_EQ(with_row(csv, "", "up", 1), "up,1\n");
    EXPECT_EQ(with_row(json, "", "up", 1), "{\n  \"up\": 1\n}");
    EXPECT_EQ(with_row(json, "{}", "up", 1), "{\n  \"up\": 1\n}");
    EXPECT_EQ(with_row(json, with_row(json, "", "up", 1), "down", 2), "{\n  \"up\": 1,\n  \"down\": 2\n}");
}

TEST(TableLayout, ATitleNeedsNoRows)
{
    EXPECT_EQ(with_title(text, "", "Ports"), "Ports:\n");
    EXPECT_EQ(with_title(json, "", "Ports"), "{\n  \"Ports\": {}\n}");
}

TEST(TableLayout, ALongLabelMovesItsNumber)
{
    EXPECT_EQ(with_row(text, "", "a label of twenty-six char", 7),
              "  a label of twenty-six char                    7\n");
}

TEST(TableLayout, LinesStayLines)
{
    EXPECT_EQ(with_title(text, "", "one\ntwo\t"), "one two :\n");
    EXPECT_EQ(with_row(csv, "", "one\r\ntwo", 1), "one  two,1\n");
}

TEST(TableLayout, CsvQuotesWhatItsReadersWouldSplit)
{
    EXPECT_EQ(with_row(csv, "", "a,b", 1), "\"a,b\",1\n");
    EXPECT_EQ(with_title(csv, "", "the \"best\""), "title,\"the \"\"best\"\"\"\n");
}

TEST(TableLayout, JsonTakesAnyLetters)
{
    const std::string table = with_row(json, "", "quote \" line \n cut \xc3", 1);
    EXPECT_EQ(notation::read_json(table), (notation::document{{"quote \" line \n cut \xef\xbf\xbd", 1}}));
}

TEST(TableLayout, ARepeatedTitleOrLabelReplacesTheEarlierOneInJson)
{
    std::string table = with_row(json, example(json), "current_burst_size", 1);
    table = with_row(json, with_title(json, table, "Ports"), "up", 2);
    EXPECT_EQ(notation::read_json(table),
              (notation::document{{"Errors", {{"current_burst_size", 1}}}, {"Ports", {{"up", 2}}}}));
}

TEST(TableLayout, OnlyAJsonObjectIsGoneOnWithAsJson)
{
    for (const char *table : {"", "{}", "{\"up\": 1}"})
        EXPECT_NE(json.with(table, {}), std::nullopt) << table;
    for (const char *other : {"Ports:\n", "[]", "1", "{", "{\"up\": 1"})
        EXPECT_EQ(json.with(other, {}), std::nullopt) << other;
    for (const TableLayout *lines : {&text, &csv})
        EXPECT_EQ(lines->with("anything", {}), "anything");
}

TEST(TableLayout, TakingAwayTheLastUndoesTheSteps)
{
    for (const TableLayout *layout : {&text, &csv, &json}) {
        const std::string title = with_title(*layout, "", "Ports");
        const std::string row = with_row(*layout, title, "up", 1);
        const std::string second = with_row(*layout, row, "down", 2);
        const std::string other = with_title(*layout, second, "Errors");
        EXPECT_EQ(layout->without_last(other), second);
        EXPECT_EQ(layout->without_last(second), row);
        EXPECT_EQ(layout->without_last(row), title);
    }
}

TEST(TableLayout, TakingAwayFromNothingLeavesNothing)
{
    EXPECT_EQ(text.without_last(""), "");
    EXPECT_EQ(csv.without_last(with_title(csv, "", "Ports")), "");
    EXPECT_EQ(json.without_last(""), "{}");
    EXPECT_EQ(json.without_last(with_title(json, "", "Ports")), "{}");
}

TEST(TableLayout, TheMarkStandsLast)
{
    EXPECT_EQ(text.with_mark("Ports:\n"), "Ports:\n(truncated)\n");
    EXPECT_EQ(csv.with_mark("title,Ports\n"), "title,Ports\ntruncated,true\n");
    EXPECT_EQ(json.with_mark("{\"Ports\": {}}"), "{\n  \"Ports\": {},\n  \"truncated\": true\n}");
    EXPECT_EQ(json.with_mark("{\"truncated\": 5, \"up\": 1}"), "{\n  \"up\": 1,\n  \"truncated\": true\n}");
}

TEST(TableLayout, NoMarkAloneIsLongerThanTheLongest)
{
    std::size_t longest = 0;
    for (const TableLayout *layout : {&text, &csv, &json})
        longest = std::max(longest, layout->with_mark("").size() + 1);
    EXPECT_EQ(longest, longest_mark);
}

TEST(TableLayout, AMarkIsRecognisedInEveryLayout)
{
    for (const TableLayout *layout : {&text, &csv, &json}) {
        EXPECT_TRUE(is_marked(layout->with_mark(example(*layout))));
        EXPECT_TRUE(is_marked(layout->with_mark("")));
        EXPECT_FALSE(is_marked(example(*layout)));
    }
    EXPECT_FALSE(is_marked(""));
}

TEST(TableLayout, NoTitleOrRowPassesForAMark)
{
    for (const TableLayout *layout : {&text, &csv, &json})
        for (const char *words : {"(truncated)", "truncated", "truncated,true", "(truncated)\n", "truncated,true\n",
                                  "\"truncated\": true", "\n  \"truncated\": true\n}"}) {
            EXPECT_FALSE(is_marked(with_title(*layout, "", words))) << words;
            EXPECT_FALSE(is_marked(with_row(*layout, "", words, 1))) << words;
        }
}

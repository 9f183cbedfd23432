/*
 * text_table_test.cpp - a table in a buffer: what fits, what is cut, and what is never touched.
 */
#include "softnode/closed/text_table.h"

#include "tests/notation/print.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

using namespace softnode;

namespace
{

constexpr char canary = '\x5a';

/* A buffer with an empty text in it and canaries behind it. */
class Buffer
{
public:
    explicit Buffer(std::uint32_t length) : length_(length), octets_(length + 8, canary)
    {
        if (length != 0)
            octets_[0] = '\0';
    }

    char *data()
    {
        return octets_.data();
    }

    std::uint32_t length() const
    {
        return length_;
    }

    TextTable table(std::uint8_t format)
    {
        return {data(), length_, format};
    }

    std::string text() const
    {
        return octets_.data();
    }

    bool terminated() const
    {
        return std::find(octets_.begin(), octets_.begin() + length_, '\0') != octets_.begin() + length_;
    }

    bool overrun() const
    {
        return std::any_of(octets_.begin() + length_, octets_.end(), [](char octet) { return octet != canary; });
    }

private:
    std::uint32_t length_;
    std::vector<char> octets_;
};

/* One thing that is added. */
struct Step {
    const char *title; /* null: a row */
    const char *label;
    std::uint64_t value;
};

constexpr Step steps[] = {
    {"Ports", nullptr, 0},   {nullptr, "up", 5},     {nullptr, "a_much_longer_label_than_that", 6},
    {nullptr, "x", 7},       {"Errors", nullptr, 0}, {nullptr, "y", 8},
    {nullptr, "lengthy", 9}, {nullptr, "z", 10}};

Refusal add(TextTable table, const Step &step)
{
    return step.title ? table.add_title(step.title) : table.add_row(step.label, step.value);
}

/* The table after each number of steps, from none to all, in a buffer where everything fits. */
std::vector<std::string> stages(std::uint8_t format)
{
    Buffer buffer(1000);
    std::vector<std::string> texts{""};
    for (const Step &step : steps) {
        EXPECT_EQ(add(buffer.table(format), step), Refusal::granted);
        texts.push_back(buffer.text());
    }
    return texts;
}

class TextTableFormats : public testing::TestWithParam<std::uint8_t>
{
};

} // namespace

TEST_P(TextTableFormats, ATableThatFitsExactlyIsWhole)
{
    const std::string full = stages(GetParam()).back();
    Buffer buffer(static_cast<std::uint32_t>(full.size() + 1));
    for (const Step &step : steps)
        EXPECT_EQ(add(buffer.table(GetParam()), step), Refusal::granted);
    EXPECT_EQ(buffer.text(), full);
    EXPECT_EQ(check_whole(buffer.data(), buffer.length()), Refusal::granted);
    EXPECT_FALSE(buffer.overrun());
}

TEST_P(TextTableFormats, AShorterBufferHoldsFirstStepsAndTheMark)
{
    const std::vector<std::string> texts = stages(GetParam());
    for (std::uint32_t length = 1; length <= texts.back().size(); ++length) {
        SCOPED_TRACE(length);
        Buffer buffer(length);
        Refusal last = Refusal::granted;
        for (const Step &step : steps)
            last = add(buffer.table(GetParam()), step);
        EXPECT_EQ(last, Refusal::full);
        EXPECT_EQ(check_whole(buffer.data(), length), Refusal::full);
        EXPECT_TRUE(buffer.terminated());
        EXPECT_FALSE(buffer.overrun());

        std::string most; /* the most steps that fit together with the mark */
        for (const std::string &text : texts)
            if (const std::string marked = table_layout(GetParam()).with_mark(text); marked.size() < length)
                most = marked;
        EXPECT_EQ(buffer.text(), length < longest_mark ? "" : most);
    }
}

TEST_P(TextTableFormats, NothingIsAddedOnceTheTableIsCut)
{
    const std::string full = stages(GetParam()).back();
    Buffer buffer(static_cast<std::uint32_t>(full.size() + 1));
    for (const Step &step : steps)
        ASSERT_EQ(add(buffer.table(GetParam()), step), Refusal::granted);
    ASSERT_EQ(buffer.table(GetParam()).add_row(std::string(100, 'l'), 1), Refusal::full);
    const std::string cut = buffer.text();
    EXPECT_EQ(buffer.table(GetParam()).add_row("", 1), Refusal::full);
    EXPECT_EQ(buffer.text(), cut);
}

TEST_P(TextTableFormats, ACutTableIsNotGoneOnWithEvenInALongerBuffer)
{
    Buffer buffer(1000);
    ASSERT_EQ(TextTable(buffer.data(), 40, GetParam()).add_title(std::string(100, 't')), Refusal::full);
    EXPECT_EQ(buffer.table(GetParam()).add_row("up", 1), Refusal::full);
}

TEST_P(TextTableFormats, ABufferOfLengthZeroIsNeitherReadNorWritten)
{
    Buffer buffer(0);
    EXPECT_EQ(buffer.table(GetParam()).add_title("Ports"), Refusal::full);
    EXPECT_EQ(buffer.table(GetParam()).add_row("up", 1), Refusal::full);
    EXPECT_EQ(check_whole(buffer.data(), 0), Refusal::full);
    EXPECT_FALSE(buffer.overrun());
}

TEST_P(TextTableFormats, ABlockIsATitleAndARowPerCounter)
{
    constexpr Field fields[] = {{"one", [](const void *) -> std::uint64_t { return 1; }},
                                {"two", [](const void *) -> std::uint64_t { return 2; }}};
    Buffer in_one(1000);
    ASSERT_EQ(in_one.table(GetParam()).add_block({"Numbers", fields}, nullptr), Refusal::granted);
    Buffer in_steps(1000);
    ASSERT_EQ(in_steps.table(GetParam()).add_title("Numbers"), Refusal::granted);
    ASSERT_EQ(in_steps.table(GetParam()).add_row("one", 1), Refusal::granted);
    ASSERT_EQ(in_steps.table(GetParam()).add_row("two", 2), Refusal::granted);
    EXPECT_EQ(in_one.text(), in_steps.text());
    for (std::uint32_t length = 0; length <= in_steps.text().size() + 1; ++length) {
        SCOPED_TRACE(length);
        Buffer short_one(length);
        Buffer short_steps(length);
        const Refusal of_one = short_one.table(GetParam()).add_block({"Numbers", fields}, nullptr);
        short_steps.table(GetParam()).add_title("Numbers");
        short_steps.table(GetParam()).add_row("one", 1);
        EXPECT_EQ(of_one, short_steps.table(GetParam()).add_row("two", 2));
        EXPECT_TRUE(length == 0 || short_one.text() == short_steps.text());
        EXPECT_FALSE(short_one.overrun());
    }
}

INSTANTIATE_TEST_SUITE_P(All, TextTableFormats, testing::Values(0, 1, 2, 255));

TEST(TextTable, JsonIsReadableAtEveryLength)
{
    const std::string full = stages(2).back();
    for (std::uint32_t length = longest_mark; length <= full.size() + 1; ++length) {
        Buffer buffer(length);
        for (const Step &step : steps)
            add(buffer.table(2), step);
        const notation::document document = notation::read_json(buffer.text());
        const notation::document *truncated = document.find("truncated");
        EXPECT_EQ(truncated && truncated->boolean(), length <= full.size()) << length;
    }
}

TEST(TextTable, ABufferThatIsNullOrNotTerminatedIsRefused)
{
    std::vector<char> unterminated(64, canary);
    for (char *wrong : {static_cast<char *>(nullptr), unterminated.data()}) {
        EXPECT_EQ(TextTable(wrong, 64, 0).add_title("Ports"), Refusal::invalid);
        EXPECT_EQ(TextTable(wrong, 64, 0).add_row("up", 1), Refusal::invalid);
        EXPECT_EQ(check_whole(wrong, 64), Refusal::invalid);
    }
    EXPECT_EQ(unterminated, std::vector<char>(64, canary));
}

TEST(TextTable, JsonAfterSomethingElseIsRefused)
{
    Buffer buffer(100);
    ASSERT_EQ(buffer.table(0).add_title("Ports"), Refusal::granted);
    EXPECT_EQ(buffer.table(2).add_row("up", 1), Refusal::invalid);
    EXPECT_EQ(buffer.text(), "Ports:\n");
}

TEST(TextTable, AnEmptyTextIsWholeWhereATableCouldBe)
{
    Buffer buffer(longest_mark);
    EXPECT_EQ(check_whole(buffer.data(), buffer.length()), Refusal::granted);
    EXPECT_EQ(check_whole(buffer.data(), longest_mark - 1), Refusal::full);
    EXPECT_EQ(check_whole("a", 2), Refusal::granted) << "no table, and shorter than one";
}

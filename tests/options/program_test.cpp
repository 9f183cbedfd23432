// Command lines of programs that are made up: one with commands, one that runs another program.
#include "options/program.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace
{

using namespace testing;
using words = std::vector<std::string>;

struct request : options::request {
    bool loud = false;
    std::string to;
    int times = 0;
};

void set_times(options::request &asked, std::string_view value)
{
    static_cast<request &>(asked).times = static_cast<int>(value.size());
}

constexpr options::option rows[] = {
    {"--to", "FILE", "where it goes", options::into<&request::to>},
    {"--times", "TALLY", "how often", set_times, "write"},
    {"--loud", "", "say so", options::into<&request::loud>},
    options::help_option,
    options::version_option,
};
constexpr options::command commands[] = {{"read", "read it"}, {"write", "write it"}};
constexpr options::meaning statuses[] = {{"0", "done"}};

constexpr options::program with_commands = {
    .name = "scribe",
    .usage = "COMMAND [OPTION]... PLACE...",
    .about = "Reads and writes.",
    .commands = commands,
    .options = rows,
    .exit_statuses = statuses,
};
constexpr options::program runner = {
    .name = "runner",
    .usage = "[OPTION]... PROGRAM [ARGUMENT]...",
    .about = "Runs.",
    .options = rows,
    .exit_statuses = statuses,
    .runs_another = true,
};

std::string refusal(const options::program &of, const words &all)
{
    request asked;
    try {
        options::parse(of, all, asked);
    } catch (const options::wrong_request &wrong) {
        return wrong.what();
    }
    return "none";
}

std::string answer(const options::program &of, const words &all)
{
    request asked;
    options::parse(of, all, asked);
    return asked.answer.value_or("none");
}

TEST(Parse, OptionsStandAnywhere)
{
    request asked;
    EXPECT_THAT(options::parse(with_commands, words{"--loud", "write", "a", "--to=x=y", "b", "--times", "|||"}, asked),
                ElementsAre("a", "b"));
    EXPECT_EQ(asked.command, 1U);
    EXPECT_TRUE(asked.loud);
    EXPECT_EQ(asked.to, "x=y");
    EXPECT_EQ(asked.times, 3);
    EXPECT_EQ(asked.answer, std::nullopt);
}

TEST(Parse, AfterTwoDashesThereAreNoOptions)
{
    request asked;
    EXPECT_THAT(options::parse(with_commands, words{"read", "--", "--loud", "--"}, asked), ElementsAre("--loud", "--"));
    EXPECT_FALSE(asked.loud);
}

TEST(Parse, WhatFollowsAProgramIsItsOwn)
{
    request asked;
    EXPECT_THAT(options::parse(runner, words{"--to", "x", "sh", "--loud", "--", "-c"}, asked),
                ElementsAre("sh", "--loud", "--", "-c"));
    EXPECT_FALSE(asked.loud);
}

TEST(Parse, RefusesWhatThereIsNot)
{
    EXPECT_EQ(refusal(with_commands, {"raed"}), "unknown command \"raed\"; did you mean \"read\"?");
    EXPECT_EQ(refusal(with_commands, {"--lod"}), "unknown option \"--lod\"; did you mean \"--loud\"?");
    EXPECT_EQ(refusal(with_commands, {"read", "-l"}), "unknown option \"-l\"");
    EXPECT_EQ(refusal(with_commands, {"read", "--times", "|"}), "--times is an option of \"write\"");
    EXPECT_EQ(refusal(with_commands, {"--times", "|", "read"}), "--times is an option of \"write\"");
    EXPECT_EQ(refusal(with_commands, {"--times", "|"}), "none");
    EXPECT_EQ(refusal(with_commands, {"--loud=1"}), "--loud takes no value");
    for (const words &all : std::vector<words>{{"--to"}, {"--to="}, {"--to", ""}})
        EXPECT_EQ(refusal(with_commands, all), "--to requires a value");
}

TEST(Answer, IsHelpOrTheVersion)
{
    EXPECT_EQ(answer(with_commands, {"read"}), "none");
    EXPECT_EQ(answer(with_commands, {"--help"}), options::help_text(with_commands));
    EXPECT_THAT(answer(runner, {"--version"}), MatchesRegex("runner [0-9.]+\n"));
}

TEST(Help, ShowsEveryRow)
{
    EXPECT_EQ(options::help_text(with_commands), "usage: scribe COMMAND [OPTION]... PLACE...\n"
                                                 "\n"
                                                 "Reads and writes.\n"
                                                 "\n"
                                                 "Commands:\n"
                                                 "  read                read it\n"
                                                 "  write               write it\n"
                                                 "\n"
                                                 "Options:\n"
                                                 "  --to FILE           where it goes\n"
                                                 "  --times TALLY       how often (write)\n"
                                                 "  --loud              say so\n"
                                                 "  --help              print this help\n"
                                                 "  --version           print the version\n"
                                                 "\n"
                                                 "Exit status:\n"
                                                 "  0                   done\n");
}

TEST(Completion, OffersWhatMayFollow)
{
    const struct {
        words typed;
        std::string offered;
    } lines[] = {
        {{""}, "read\tread it\nwrite\twrite it\n"},
        {{"w"}, "write\twrite it\n"},
        {{"write", ""}, "@files\n"},
        {{"--l"}, "--loud\tsay so\n"},
        {{"--t"}, "--to\twhere it goes\n"},
        {{"write", "--t"}, "--to\twhere it goes\n--times\thow often\n"},
        {{"read", "--t"}, "--to\twhere it goes\n"},
        {{"--to", "-"}, "@files\n"},
        {{"--to", "read", "w"}, "write\twrite it\n"},
        {{"write", "--times", ""}, ""},
        {{"write", "--", "--l"}, "@files\n"},
        {{"write", "--", "place", "--l"}, "@files\n"},
        {{"write", "place", "--lo"}, "--loud\tsay so\n"},
        {{"--loud", "re"}, "read\tread it\n"},
    };
    for (const auto &[typed, offered] : lines) {
        words asking = typed;
        asking.insert(asking.begin(), "--complete");
        EXPECT_EQ(answer(with_commands, asking), offered) << typed.back();
    }
}

TEST(Completion, OfAProgramsWordsIsItsOwn)
{
    EXPECT_EQ(options::completion_text(runner, words{}), "@files\n");
    EXPECT_EQ(options::completion_text(runner, words{""}), "@files\n");
    EXPECT_EQ(options::completion_text(runner, words{"--to", "x", "--lo"}), "--loud\tsay so\n");
    EXPECT_EQ(options::completion_text(runner, words{"sh", "--lo"}), "@files\n");
}

} // namespace

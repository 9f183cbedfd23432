// The grammar: what becomes of words, and what is said of wrong ones.
#include "kelctl/command_line.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ostream>

namespace kelctl
{
namespace
{

using testing::ElementsAre;

invocation parsed(const std::string &line)
{
    return parse(words_of(line), place::script);
}

TEST(CommandLine, ArgumentsAreReadByTheirKinds)
{
    const invocation asked =
        parsed("ebcom path add 0200.0202.0001 --port rlu1p --rate '100 Mbit/s' --burst=4KiB --threshold 512");
    EXPECT_EQ(asked.row->name, "ebcom path add");
    EXPECT_EQ(asked.chosen->function, "kel_core_ic_ebcom_path_add");
    EXPECT_EQ(to_text(asked.given.mac("MAC")), "02:00:02:02:00:01");
    EXPECT_EQ(asked.given.number<int32_t>("--port"), 6);
    EXPECT_EQ(asked.given.number<uint32_t>("--rate"), 100'000u);
    EXPECT_EQ(asked.given.number<uint32_t>("--burst"), 4096u);
    EXPECT_EQ(asked.given.number<uint32_t>("--threshold"), 512u);
}

TEST(CommandLine, DefaultsCountWhereNothingIsGiven)
{
    const invocation asked = parsed("ebcom path add 02:00:02:02:00:01 --port 6");
    EXPECT_FALSE(asked.given.has("--rate"));
    EXPECT_EQ(asked.given.number<uint32_t>("--threshold"), 5000u * 1024);
}

TEST(CommandLine, OptionsMayStandAnywhereAfterTheCommand)
{
    const invocation asked = parsed("group member add --json 300 --trace 7");
    EXPECT_TRUE(asked.json);
    EXPECT_TRUE(asked.trace);
    EXPECT_EQ(asked.given.id("GROUP"), 300u);
    EXPECT_EQ(asked.given.id("ID"), 7u);
}

TEST(CommandLine, SharedOptionsMayStandBeforeTheCommand)
{
    const invocation asked = parsed("--json ebcom start");
    EXPECT_TRUE(asked.json);
    EXPECT_FALSE(asked.trace);
    EXPECT_EQ(asked.row->name, "ebcom start");
}

TEST(CommandLine, TwoDashesEndTheOptions)
{
    EXPECT_EQ(parsed("trace message -- --json").given.text("TEXT"), "--json");
    EXPECT_EQ(parsed("trace message -- --help").given.text("TEXT"), "--help");
}

TEST(CommandLine, ValueOfAnOptionMayBeginWithADash)
{
    EXPECT_EQ(parsed("ebcom timestamp offset --cycles -5 --frequency 1").given.number<int64_t>("--cycles"), -5);
}

TEST(CommandLine, VariantChoosesTheFunctionAndTheFirstIsTheDefault)
{
    EXPECT_EQ(parsed("pcep stats 7").chosen->function, "kel_core_ic_pcep_fmt_stats_get");
    EXPECT_EQ(parsed("pcep stats 7 --variant record").chosen->function, "kel_core_ic_pcep_stats_get");
}

TEST(CommandLine, HelpMeansTheCommandSoFarWhateverElseIsMissing)
{
    const auto words_of_help = [](const std::string &line) {
        const invocation asked = parsed(line);
        EXPECT_EQ(asked.row->name, "help");
        return asked.given.get<std::vector<std::string>>("COMMAND");
    };
    EXPECT_THAT(words_of_help("ebcom path add --port 6 --help"), ElementsAre("ebcom", "path", "add"));
    EXPECT_THAT(words_of_help("ebcom path -h"), ElementsAre("ebcom", "path"));
    EXPECT_THAT(words_of_help("--help"), ElementsAre());
    EXPECT_THAT(words_of_help("help ebcom start"), ElementsAre("ebcom", "start"));
}

struct wrong_command {
    const char *name;
    const char *line;
    uint32_t column;
    const char *message;
};

void PrintTo(const wrong_command &wrong, std::ostream *out)
{
    *out << wrong.name;
}

const wrong_command wrong_commands[] = {
    {"Nothing", "--json", 7, "A command is required"},
    {"UnknownWord", "ebom start", 1, "there is no command \"ebom\"; did you mean \"ebcom\"?"},
    {"UnknownSecondWord", "ebcom pth add", 7, "there is no command \"ebcom pth\"; did you mean \"ebcom path\"?"},
    {"UnknownWordBeforeHelp", "down --help", 1, "there is no command \"down\""},
    {"WordIsMissing", "ebcom path", 11, "\"ebcom path\" is followed by one of these: add, remove"},
    {"NotInAScript", "up node.toml", 1, "\"up\" cannot be used here"},
    {"UnknownLeadingOption", "--wat ebcom start", 1, "there is no option \"--wat\""},
    {"UnknownOption", "group add 300 --jsno", 15, "\"group add\" has no option \"--jsno\"; did you mean \"--json\"?"},
    {"OptionTwice", "ebcom path remove 02:00:02:02:00:01 --port 6 --port 7", 46, "--port is given twice"},
    {"ValueIsMissing", "ebcom path remove 02:00:02:02:00:01 --port", 43, "--port: a value is missing"},
    {"FlagWithValue", "ebcom start --json=yes", 13, "--json takes no value"},
    {"RequiredArgument", "group add", 10, "GROUP is required"},
    {"RequiredOption", "ebcom path remove 02:00:02:02:00:01  # to where?", 36, "--port is required"},
    {"OneWordTooMany", "group add 300 301", 15, "\"301\" is one word too many"},
    {"OneNeedsTheOther", "ebcom path add 02:00:02:02:00:01 --port 6 --rate 5", 51, "--rate needs --burst as well"},
    {"OptionOfAnotherVariant", "pcep stats 7 --format csv --variant record", 43,
     "--format means nothing to --variant record"},
    {"ValueIsWrong", "group add 512", 11, "GROUP: 512 is not in 1 to 511"},
    {"ValueBehindEqualsIsWrong", "pcep stats 7 --format=cvs", 14,
     "--format: \"cvs\" is neither text, csv, json nor a number; did you mean \"csv\"?"},
};

class WrongCommand : public testing::TestWithParam<wrong_command>
{
};

TEST_P(WrongCommand, IsToldWithItsColumn)
{
    try {
        parsed(GetParam().line);
        FAIL() << "nothing is wrong with " << GetParam().line;
    } catch (const wrong_line &wrong) {
        EXPECT_STREQ(wrong.what(), GetParam().message);
        EXPECT_EQ(wrong.column(), GetParam().column);
    }
}

INSTANTIATE_TEST_SUITE_P(Kinds, WrongCommand, testing::ValuesIn(wrong_commands),
                         [](const auto &tested) { return std::string(tested.param.name); });

TEST(CommandLine, WordsOfNoLineHaveNoColumn)
{
    try {
        parse({{.text = "group"}, {.text = "add"}, {.text = "512"}}, place::program);
        FAIL();
    } catch (const wrong_line &wrong) {
        EXPECT_EQ(wrong.column(), 0u);
    }
}

} // namespace
} // namespace kelctl

// The grammar: what becomes of words, and what is said of wrong ones.
#include "kelctl/language/command_line.h"

#include "kelctl/commands/commands.h"
#include "made_up_commands.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <ostream>

namespace kelctl
{
namespace
{

using testing::ElementsAre;

invocation parsed(const std::string &line)
{
    return parse(made_up_commands(), words_of(line), source::script);
}

TEST(CommandLine, ArgumentsAreReadByTheirKinds)
{
    const invocation asked = parsed("lamp add 0200.0202.0001 --port rlu1p --rate '100 Mbit/s' --burst=4KiB --level 5");
    EXPECT_EQ(asked.row->name, "lamp add");
    EXPECT_EQ(asked.chosen->function, "lamp_add");
    EXPECT_EQ(to_text(asked.given.mac("MAC")), "02:00:02:02:00:01");
    EXPECT_EQ(asked.given.number<int32_t>("--port"), 6);
    EXPECT_EQ(asked.given.number<uint32_t>("--rate"), 100'000u);
    EXPECT_EQ(asked.given.number<uint32_t>("--burst"), 4096u);
    EXPECT_EQ(asked.given.number<uint32_t>("--level"), 5u);
}

TEST(CommandLine, DefaultsCountWhereNothingIsGiven)
{
    const invocation asked = parsed("lamp add 02:00:02:02:00:01 --port 6");
    EXPECT_FALSE(asked.given.has("--rate"));
    EXPECT_EQ(asked.given.number<uint32_t>("--level"), 3u);
}

TEST(CommandLine, OptionsMayStandAnywhereAfterTheCommand)
{
    const invocation asked = parsed("lamp group join --json 300 --trace 7");
    EXPECT_TRUE(asked.shown.json);
    EXPECT_TRUE(asked.shown.trace);
    EXPECT_EQ(asked.given.id("GROUP"), 300u);
    EXPECT_EQ(asked.given.id("ID"), 7u);
}

TEST(CommandLine, SharedOptionsSayHowResultsAreShown)
{
    const auto shown = [](const std::string &option) {
        const manner asked = parsed("leave " + option).shown;
        return std::vector<bool>{asked.json, asked.trace, asked.brief, asked.quiet, asked.all};
    };
    EXPECT_THAT(shown(""), ElementsAre(false, false, false, false, false));
    EXPECT_THAT(shown("--json"), ElementsAre(true, false, false, false, false));
    EXPECT_THAT(shown("--trace"), ElementsAre(false, true, false, false, false));
    EXPECT_THAT(shown("--brief"), ElementsAre(false, false, true, false, false));
    EXPECT_THAT(shown("--quiet"), ElementsAre(false, false, false, true, false));
    EXPECT_THAT(shown("--all"), ElementsAre(false, false, false, false, true));
}

TEST(CommandLine, SharedOptionsMayStandBeforeAndWithinTheCommand)
{
    for (const char *line : {"--json lamp group drop 7", "lamp --json group drop 7"}) {
        const invocation asked = parsed(line);
        EXPECT_TRUE(asked.shown.json) << line;
        EXPECT_FALSE(asked.shown.trace) << line;
        EXPECT_EQ(asked.row->name, "lamp group drop") << line;
    }
}

TEST(CommandLine, TwoDashesEndTheOptions)
{
    EXPECT_EQ(parsed("say -- --json").given.text("TEXT"), "--json");
    EXPECT_EQ(parsed("say -- --help").given.text("TEXT"), "--help");
}

TEST(CommandLine, ValueOfAnOptionMayLookLikeAnOption)
{
    EXPECT_EQ(parsed("turn --degrees -5").given.number<int64_t>("--degrees"), -5);
    for (const char *value : {"--help", "-h", "--json", "--"}) {
        const invocation asked = parsed(std::string("say hello --prefix ") + value);
        EXPECT_EQ(asked.row->name, "say") << value;
        EXPECT_EQ(asked.given.text("--prefix"), value);
        EXPECT_FALSE(asked.shown.json) << value;
    }
}

TEST(CommandLine, VariantChoosesTheFunctionAndTheFirstIsTheDefault)
{
    EXPECT_EQ(parsed("lamp show 02:00:02:02:00:01").chosen->function, "lamp_text");
    EXPECT_EQ(parsed("lamp show 02:00:02:02:00:01 --variant record").chosen->function, "lamp_record");
}

TEST(CommandLine, AFlagThatIsGivenIsTrue)
{
    const invocation asked = parse(made_up_commands(), words_of("load lamps --keep-going"), source::program);
    EXPECT_TRUE(asked.given.get<bool>("--keep-going"));
}

TEST(CommandLine, HelpMeansTheCommandSoFarWhateverElseIsMissing)
{
    const auto words_of_help = [](const std::string &line) {
        const invocation asked = parsed(line);
        EXPECT_EQ(asked.row->name, "help");
        return asked.given.get<std::vector<std::string>>("COMMAND");
    };
    EXPECT_THAT(words_of_help("lamp group join --wat x --help"), ElementsAre("lamp", "group", "join"));
    EXPECT_THAT(words_of_help("lamp group -h"), ElementsAre("lamp", "group"));
    EXPECT_THAT(words_of_help("--help lamp"), ElementsAre("lamp"));
    EXPECT_THAT(words_of_help("--help"), ElementsAre());
    EXPECT_THAT(words_of_help("help lamp add"), ElementsAre("lamp", "add"));
    EXPECT_TRUE(parsed("lamp --help --json").shown.json);
}

TEST(CommandLine, HelpIsACommandOfTheTable)
{
    std::vector<command> rows = made_up_rows();
    std::erase_if(rows, [](const command &row) { return row.name == "help"; });
    const command_table without(std::move(rows), {});
    EXPECT_THROW(parse(without, words_of("lamp --help"), source::script), wrong_line);
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
    {"UnknownWord", "lmp add", 1, "unknown command \"lmp\"; did you mean \"lamp\"?"},
    {"UnknownSecondWord", "lamp gruop add", 6, "unknown command \"lamp gruop\"; did you mean \"lamp group\"?"},
    {"UnknownWordBeforeHelp", "down --help", 1, "unknown command \"down\""},
    {"UnknownWordBehindHelp", "--help down", 8, "unknown command \"down\""},
    {"WordsMadeOneByQuotes", "'lamp group' drop 7", 1,
     "\"lamp group\" is one word; write the words of a command without quotation marks: lamp group"},
    {"LaterWordsMadeOneByQuotes", "lamp 'group drop 7'", 6,
     "\"group drop 7\" is one word; write the words of a command without quotation marks: lamp group drop 7"},
    {"UnknownWordsMadeOneByQuotes", "'lmp group' drop", 1, "unknown command \"lmp group\""},
    {"WordIsMissing", "lamp group", 11, "\"lamp group\" requires one of these words: make, drop, join"},
    {"NotInAScript", "load lamps", 1, "\"load\" cannot be used here"},
    {"UnknownLeadingOption", "--wat lamp add", 1, "unknown option \"--wat\""},
    {"UnknownOption", "lamp group drop 300 --jsno", 21,
     "\"lamp group drop\" has no option \"--jsno\"; did you mean \"--json\"?"},
    {"OptionTwice", "lamp remove 02:00:02:02:00:01 --port 6 --port 7", 40, "--port is given twice"},
    {"ValueIsMissing", "lamp remove 02:00:02:02:00:01 --port", 37, "--port requires a value"},
    {"FlagWithValue", "leave --json=yes", 7, "--json takes no value"},
    {"HelpWithValue", "leave --help=yes", 7, "--help takes no value"},
    {"RequiredArgument", "lamp group drop", 16, "GROUP is required"},
    {"RequiredOption", "lamp remove 02:00:02:02:00:01  # from where?", 30, "--port is required"},
    {"OneWordTooMany", "lamp group drop 300 301", 21, "unexpected argument \"301\""},
    {"OneNeedsTheOther", "lamp add 02:00:02:02:00:01 --port 6 --rate 5", 45, "--rate requires --burst"},
    {"OptionOfAnotherVariant", "lamp show 02:00:02:02:00:01 --format csv --variant record", 58,
     "--format cannot be used with --variant record"},
    {"ValueIsWrong", "lamp group drop 512", 17, "GROUP: 512 is not in the range 1 to 511"},
    {"ValueBehindEqualsIsWrong", "lamp show 02:00:02:02:00:01 --format=cvs", 29,
     "--format: \"cvs\" is not text, csv, json or a number; did you mean \"csv\"?"},
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

TEST(CommandLine, OneOfTwoArgumentsIsRequired)
{
    const argument lamp = {.name = "ID", .kind = kind::pcep_id(), .help = "its id", .instead = "--port"};
    const argument port = {.name = "--port", .kind = kind::port(), .help = "its port", .instead = "ID"};
    const command_table table(
        {{.name = "find", .variants = {{.run = done_at_once}}, .help = "Find a lamp", .arguments = {lamp, port}}}, {});
    const auto problem = [&](const char *line) -> std::string {
        try {
            parse(table, words_of(line), source::script);
        } catch (const wrong_line &wrong) {
            return wrong.what();
        }
        return "";
    };
    EXPECT_EQ(problem("find"), "ID or --port is required");
    EXPECT_EQ(problem("find 7 --port 6"), "ID and --port cannot be used together");
    EXPECT_EQ(problem("find 7"), "");
    EXPECT_EQ(problem("find --port 6"), "");
}

TEST(CommandLine, NoCodeIsExpectedOfWhatCallsNoFunction)
{
    try {
        parse(commands(), words_of("expect 4 snapshot"), source::script);
        FAIL();
    } catch (const wrong_line &wrong) {
        EXPECT_STREQ(wrong.what(), "\"snapshot\" calls no function of the library, and has no code to expect");
        EXPECT_EQ(wrong.column(), 8u);
    }
}

template <const char *const &Name> std::optional<objection> refuse(const arguments &)
{
    return objection{Name, "is not good"};
}

const char *const refused_value = "FILE";
const char *const refused_flag = "--keep-going";
const char *const refused_default = "--other";

TEST(CommandLine, WhatACommandsCheckRefusesIsToldWhereItsValueIsOrAtTheEnd)
{
    std::vector<command> rows = made_up_rows();
    const auto load = std::ranges::find(rows, "load", &command::name);
    const auto column_with = [&](argument_check check) -> uint32_t {
        load->check = check;
        try {
            parse(command_table(rows, {}), words_of("load lamps --keep-going"), source::program);
        } catch (const wrong_line &wrong) {
            return wrong.column();
        }
        return 0;
    };
    EXPECT_EQ(column_with(refuse<refused_value>), 6u);
    EXPECT_EQ(column_with(refuse<refused_flag>), 24u);
    EXPECT_EQ(column_with(refuse<refused_default>), 24u);
}

TEST(OptionBeforeACommand, IsTakenOutOfTheWords)
{
    const auto taken = [](const std::string &line) {
        std::vector<word> words = words_of(line);
        std::string text = take_option_before_command(words, "--node").value_or("none");
        for (const word &one : words)
            text += " " + one.text;
        return text;
    };
    EXPECT_EQ(taken("--node edge lamp add"), "edge lamp add");
    EXPECT_EQ(taken("--json --node=edge lamp add"), "edge --json lamp add");
    EXPECT_EQ(taken("--node --json lamp"), "--json lamp");
    EXPECT_EQ(taken("lamp --node edge"), "none lamp --node edge");
    EXPECT_EQ(taken("--nodes edge"), "none --nodes edge");
    EXPECT_EQ(taken(""), "none");
    try {
        taken("--json --node");
        FAIL();
    } catch (const wrong_line &wrong) {
        EXPECT_STREQ(wrong.what(), "--node: a value is missing");
        EXPECT_EQ(wrong.column(), 0u);
    }
}

TEST(CommandLine, WordsOfNoLineHaveNoColumn)
{
    for (const auto &words :
         {std::vector<word>{}, {{.text = "lamp"}, {.text = "group"}, {.text = "drop"}, {.text = "512"}}}) {
        try {
            parse(made_up_commands(), words, source::program);
            FAIL();
        } catch (const wrong_line &wrong) {
            EXPECT_EQ(wrong.column(), 0u);
        }
    }
}

} // namespace
} // namespace kelctl

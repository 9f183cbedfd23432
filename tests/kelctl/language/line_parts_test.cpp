// What each word of a line is.
#include "kelctl/language/line_parts.h"

#include "kelctl/commands/commands.h"
#include "kelctl/language/command_line.h"
#include "made_up_commands.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kelctl
{
namespace
{

using testing::ElementsAre;
using testing::IsEmpty;

line_parts parts(std::string_view line, source where = source::script)
{
    return parts_of(made_up_commands(), words_of(line), where);
}

// "--port=6", "MAC=02:..."; "?" for what the command has not.
std::vector<std::string> arguments(const line_parts &parts)
{
    std::vector<std::string> words;
    for (const argument_word &one : parts.arguments)
        words.push_back((one.meant ? one.meant->name : "?") + (one.value ? "=" + one.value->text : ""));
    return words;
}

TEST(LineParts, CommandAndItsArguments)
{
    const line_parts line = parts("lamp add x --port=6 --rate 5 y --wat");
    EXPECT_EQ(line.name, "lamp add");
    EXPECT_EQ(line.row, made_up_commands().find("lamp add"));
    EXPECT_FALSE(line.unknown);
    EXPECT_THAT(arguments(line), ElementsAre("MAC=x", "--port=6", "--rate=5", "?=y", "?"));
}

TEST(LineParts, AWordOfNoLineHasNoPlace)
{
    const word alone = {.text = "lamp"};
    EXPECT_EQ(alone.column, 0u);
    EXPECT_EQ(alone.end, 0u);
}

TEST(LineParts, ValueOfAnOptionIsTheNextWordWhateverItIs)
{
    EXPECT_THAT(arguments(parts("say hello --prefix --help")), ElementsAre("TEXT=hello", "--prefix=--help"));
    EXPECT_THAT(arguments(parts("say hello --prefix --")), ElementsAre("TEXT=hello", "--prefix=--"));
    EXPECT_TRUE(parts("say hello --prefix").arguments.back().awaits_value());
}

TEST(LineParts, OptionsOfEveryCommandMayStandAnywhere)
{
    EXPECT_THAT(arguments(parts("--json lamp --trace group -h")), ElementsAre("--json", "--trace", "--help"));
    EXPECT_EQ(parts("--json lamp --trace group").name, "lamp group");
    EXPECT_THAT(arguments(parts("say --json hello -h")), ElementsAre("--json", "TEXT=hello", "--help"));
}

TEST(LineParts, TwoDashesEndTheOptions)
{
    const line_parts line = parts("say -- --json");
    EXPECT_TRUE(line.options_ended);
    EXPECT_THAT(arguments(line), ElementsAre("TEXT=--json"));
}

line_parts of_the_program(std::string_view line, source where = source::script)
{
    return parts_of(commands(), words_of(line), where);
}

TEST(LineParts, VersionIsACommandAndAnOptionWithoutOne)
{
    EXPECT_EQ(of_the_program("--version", source::program).name, "version");
    EXPECT_EQ(of_the_program("version", source::program).name, "version");
    EXPECT_EQ(parts("lamp --version").unknown->text, "--version");
}

TEST(LineParts, CodeToExpectStandsBeforeTheCommand)
{
    const line_parts line = of_the_program("expect 4 pcep remove x");
    EXPECT_EQ(line.expected->text, "4");
    EXPECT_EQ(line.name, "pcep remove");
    EXPECT_THAT(arguments(line), ElementsAre("ID=x"));
}

TEST(LineParts, ExpectIsACommandUntilItsCodeComes)
{
    EXPECT_EQ(of_the_program("expect 4").expected->text, "4");
    EXPECT_EQ(of_the_program("expect").name, "expect");
    EXPECT_EQ(of_the_program("expect --help").name, "expect");
    EXPECT_EQ(of_the_program("expect 4 pcep stop", source::program).unknown->text, "expect");
}

TEST(LineParts, WithoutARowExpectIsAnUnknownWord)
{
    EXPECT_EQ(parts("expect 4 lamp add x").unknown->text, "expect");
}

TEST(LineParts, WhatBelongsToNoCommandIsUnknown)
{
    EXPECT_EQ(parts("lamp nothing add").unknown->text, "nothing");
    EXPECT_EQ(parts("--wat lamp").unknown->text, "--wat");
    EXPECT_EQ(parts("load lamps").unknown->text, "load");
    EXPECT_EQ(parts("load lamps", source::program).row->name, "load");
    EXPECT_THAT(arguments(parts("lamp nothing add")), IsEmpty());
    EXPECT_THAT(arguments(parts("lamp nothing --json")), ElementsAre("--json"));
}

} // namespace
} // namespace kelctl

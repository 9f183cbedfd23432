// Help as a table gives it.
#include "kelctl/language/help.h"

#include "made_up_commands.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kelctl
{
namespace
{

using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

std::string help_on(std::string_view name)
{
    return help_of(*made_up_commands().find(name));
}

std::string overview(source where)
{
    return help_of_words(made_up_commands(), "", where);
}

TEST(Help, OfACommandTellsArgumentsOptionsFunctionAndExample)
{
    EXPECT_EQ(help_on("lamp remove"), R"(Remove a lamp

Usage: lamp remove MAC --port PORT

Arguments:
  MAC                   address of the lamp

Options:
  --port PORT           socket; name or 0 to 50
  --json                show results as JSON, one document for each command
  --trace               print the library's trace records as they are fired
  --raw                 take what the C interface takes, without the limits of
                        values
  --help                print this help

Function of the library:
  lamp_remove()

Example:
  lamp remove 02:00:00:02:00:01 --port RLU1P
)");
}

TEST(Help, UsageBracketsWhatCanBeLeftOutAndBreaksBetweenArguments)
{
    EXPECT_THAT(help_on("lamp add"),
                HasSubstr("Usage: lamp add MAC --port PORT [--rate RATE] [--burst SIZE] [--level N]\n"));
    EXPECT_THAT(help_on("load"), HasSubstr("Usage: load FILE [--keep-going]\n"));
    EXPECT_THAT(help_on("help"), HasSubstr("Usage: help [COMMAND...]\n"));
}

TEST(Help, DetailsDefaultsAndRangesAreTold)
{
    EXPECT_THAT(help_on("lamp add"), HasSubstr("\nA lamp shines at once.\n"));
    EXPECT_THAT(help_on("lamp add"), HasSubstr("brightness; 0 to 7 (default 3)\n"));
}

TEST(Help, VariantsAreToldWithTheirFunctions)
{
    EXPECT_THAT(help_on("lamp show"), HasSubstr("\nFunctions of the library, by --variant:\n"
                                                "  text                  lamp_text()\n"
                                                "  record                lamp_record()\n"));
}

TEST(Help, CommandWithoutAFunctionNamesNone)
{
    EXPECT_THAT(help_on("say"), Not(HasSubstr("of the library:")));
}

TEST(Help, OfWordsListsWhatBeginsWithThem)
{
    EXPECT_EQ(help_of_words(made_up_commands(), "lamp group", source::shell),
              "Commands:\n"
              "  lamp group make       Make a group\n"
              "  lamp group drop       Drop a group\n"
              "  lamp group join       Let a lamp join a group\n");
}

TEST(Help, WholeOfTheProgramTellsStatusesAndEnvironment)
{
    const std::string help = overview(source::program);
    EXPECT_THAT(help, StartsWith("Control process of a node"));
    for (const char *part : {"Usage: kelctl COMMAND ...\n", "\n  load  ", "\n  lamp ...  ",
                             "\nInstead of a command:\n  --version  ", "\nExit status:\n", "\n  NO_COLOR  "})
        EXPECT_THAT(help, HasSubstr(part));
    EXPECT_THAT(help, Not(HasSubstr("\n  leave  ")));
}

TEST(Help, WholeOfTheShellHasItsCommandsOnly)
{
    const std::string help = overview(source::shell);
    EXPECT_THAT(help, StartsWith("Commands:\n"));
    EXPECT_THAT(help, HasSubstr("\n  leave  "));
    EXPECT_THAT(help, Not(HasSubstr("\n  load  ")));
    EXPECT_THAT(help, Not(HasSubstr("Exit status")));
}

} // namespace
} // namespace kelctl

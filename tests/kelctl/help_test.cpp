// Help as the table gives it.
#include "kelctl/help.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

namespace kelctl
{
namespace
{

using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

std::string help_on(std::string_view name)
{
    return help_of(*find_command(name));
}

TEST(Help, OfACommandTellsArgumentsOptionsFunctionAndExample)
{
    EXPECT_EQ(help_on("ebcom path remove"), R"(Remove one path to a destination

Usage: ebcom path remove MAC --port PORT

Arguments:
  MAC                   address of the destination

Options:
  --port PORT           IC port; name or 0 to 50
  --json                show results as JSON, one document for each command
  --trace               print the library's trace records as they are fired
  --help                print this help

Function of the library:
  kel_core_ic_ebcom_path_rem()

Example:
  ebcom path remove 02:00:02:02:00:01 --port RLU1P
)");
}

TEST(Help, UsageBracketsWhatCanBeLeftOutAndBreaksBetweenArguments)
{
    EXPECT_THAT(help_on("ebcom path add"),
                HasSubstr("Usage: ebcom path add MAC --port PORT [--rate RATE] [--burst SIZE]\n"
                          "       [--threshold SIZE]\n"));
    EXPECT_THAT(help_on("run"), HasSubstr("Usage: run SCRIPT [--keep-going]\n"));
    EXPECT_THAT(help_on("help"), HasSubstr("Usage: help [COMMAND...]\n"));
}

TEST(Help, DefaultsAndRangesAreTold)
{
    EXPECT_THAT(help_on("pcep add"), HasSubstr("VLAN priority; 0 to 7 (default 0)\n"));
}

TEST(Help, VariantsAreToldWithTheirFunctions)
{
    EXPECT_THAT(help_on("trace message"), HasSubstr("\nFunctions of the library, by --variant:\n"
                                                    "  values                kel_trace_internal_format_str()\n"
                                                    "  list                  kel_trace_internal_vformat_str()\n"));
}

TEST(Help, CommandWithoutAFunctionNamesNone)
{
    EXPECT_THAT(help_on("ports"), Not(HasSubstr("of the library:")));
}

TEST(Help, OfWordsListsWhatBeginsWithThem)
{
    EXPECT_EQ(help_of_words("group member", place::shell),
              "Commands:\n"
              "  group member add      Add a PCEP to a multicast group\n"
              "  group member remove   Remove a PCEP from a multicast group\n");
}

void expect_narrow(const std::string &help)
{
    std::istringstream lines(help);
    for (std::string line; std::getline(lines, line);)
        EXPECT_LE(line.size(), 80u) << line;
}

TEST(Help, FitsEightyColumns)
{
    for (const command &row : commands())
        expect_narrow(help_of(row));
    for (const place where : {place::program, place::script, place::shell}) {
        expect_narrow(help_of_words("", where));
        for (const command_group &group : command_groups())
            expect_narrow(help_of_words(group.name, where));
    }
}

TEST(Help, WholeOfTheProgramTellsStatusesAndEnvironment)
{
    const std::string help = help_of_words("", place::program);
    EXPECT_THAT(help, StartsWith("Control process of a node"));
    for (const char *part : {"Usage: kelctl COMMAND ...\n", "\n  up  ", "\n  ebcom ...  ",
                             "\nInstead of a command:\n  --version  ", "\nExit status:\n", "\n  NO_COLOR  "})
        EXPECT_THAT(help, HasSubstr(part));
    EXPECT_THAT(help, Not(HasSubstr("\n  exit  ")));
}

TEST(Help, WholeOfTheShellHasItsCommandsOnly)
{
    const std::string help = help_of_words("", place::shell);
    EXPECT_THAT(help, StartsWith("Commands:\n"));
    EXPECT_THAT(help, HasSubstr("\n  exit  "));
    EXPECT_THAT(help, Not(HasSubstr("\n  up  ")));
    EXPECT_THAT(help, Not(HasSubstr("Exit status")));
}

} // namespace
} // namespace kelctl

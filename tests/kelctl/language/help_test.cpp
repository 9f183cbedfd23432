// Help as a table gives it.
#include "kelctl/language/help.h"

#include "made_up_commands.h"

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
    return help_of(*made_up_commands().find(name), source::program, 80);
}

std::string overview(source where)
{
    return help_of_words(made_up_commands(), "", where, 80);
}

TEST(Help, OfACommandTellsArgumentsOptionsFunctionAndExample)
{
    EXPECT_EQ(help_on("lamp remove"), R"(Remove a lamp

Usage: kelctl lamp remove MAC --port PORT

Arguments:
  MAC                   address of the lamp

Options:
  --port PORT           socket; name or 0 to 50
  --json                show results as JSON, one document per command
  --trace               print the library's trace records as they occur
  --brief               report failures without their trace records
  --quiet               print failures only
  --all                 show all rows and problems, however many
  --raw                 accept any value that the C interface accepts
  --help                print this help

Function of the library:
  lamp_remove()

Example:
  kelctl lamp remove 02:00:00:02:00:01 --port RLU1P
)");
}

TEST(Help, UsageBracketsWhatCanBeLeftOutAndBreaksBetweenArguments)
{
    EXPECT_THAT(help_on("lamp add"),
                HasSubstr("Usage: kelctl lamp add MAC --port PORT [--rate RATE] [--burst SIZE] [--level N]\n"));
    EXPECT_THAT(help_on("load"), HasSubstr("Usage: kelctl load FILE [--keep-going]\n"));
    EXPECT_THAT(help_on("help"), HasSubstr("Usage: kelctl help [COMMAND...]\n"));
}

TEST(Help, IsTypedWithoutKelctlInTheShell)
{
    const std::string help = help_of(*made_up_commands().find("lamp remove"), source::shell, 80);
    EXPECT_THAT(help, HasSubstr("Usage: lamp remove MAC --port PORT\n"));
    EXPECT_THAT(help, HasSubstr("Example:\n  lamp remove 02:00:00:02:00:01"));
}

TEST(Help, LongExampleIsOneLineToTheSystemsShell)
{
    const command &row = *made_up_commands().find("lamp add");
    EXPECT_THAT(help_of(row, source::program, 40), HasSubstr("Example:\n"
                                                             "  kelctl lamp add 02:00:00:02:00:01 \\\n"
                                                             "  --port RLU1P\n"));
    EXPECT_THAT(help_of(row, source::shell, 40), HasSubstr("  lamp add 02:00:00:02:00:01 --port\n  RLU1P\n"));
}

TEST(Help, FitsNarrowTerminalsAndUsesWideOnes)
{
    const command &row = *made_up_commands().find("lamp add");
    std::istringstream lines(help_of(row, source::shell, 40));
    for (std::string line; std::getline(lines, line);)
        EXPECT_LE(line.size(), 40u) << line;
    EXPECT_THAT(help_of(row, source::shell, 48), HasSubstr("  --quiet               print failures only\n"));
    EXPECT_THAT(help_of(row, source::shell, 120),
                HasSubstr("  --raw                 accept any value that the C interface accepts\n"));
}

TEST(Help, LeftColumnIsAsWideAsTheWidestOption)
{
    const command_table table({{.name = "blink",
                                .variants = {{.run = done_at_once}},
                                .help = "Blink",
                                .arguments = {{.name = "--as-often-as-possible",
                                               .kind = kind::number({0, 7, "0 to 7"}),
                                               .help = "per second"}}}},
                              {});
    EXPECT_THAT(help_of(*table.find("blink"), source::shell, 80),
                HasSubstr("\n  --as-often-as-possible N  per second; 0 to 7\n"
                          "  --json                    show results as JSON"));
}

TEST(Help, HintNamesTheHelpOfTheCommand)
{
    EXPECT_EQ(help_hint("lamp add", source::program), "See \"kelctl lamp add --help\".\n");
    EXPECT_EQ(help_hint("lamp add", source::shell), "See \"lamp add --help\".\n");
    EXPECT_EQ(help_hint("", source::program), "See \"kelctl --help\".\n");
    EXPECT_EQ(help_hint("", source::shell), "See \"help\".\n");
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

TEST(Help, CommandOfTheSoftwareAcceleratorSaysSo)
{
    const command_table table(
        {{.name = "blink", .variants = {{.run = done_at_once}}, .help = "Blink", .needs_accelerator = true}}, {});
    EXPECT_THAT(help_of(*table.find("blink"), source::shell, 80), HasSubstr("\nRequires the software accelerator.\n"));
}

TEST(Help, CommandWithoutAFunctionNamesNone)
{
    EXPECT_THAT(help_on("say"), Not(HasSubstr("of the library:")));
}

TEST(Help, OfWordsListsWhatBeginsWithThem)
{
    EXPECT_EQ(help_of_words(made_up_commands(), "lamp group", source::shell, 80),
              "Commands:\n"
              "  lamp group make       Make a group\n"
              "  lamp group drop       Drop a group\n"
              "  lamp group join       Let a lamp join a group\n");
}

TEST(Help, WholeOfTheProgramTellsOptionsStatusesAndEnvironment)
{
    EXPECT_EQ(overview(source::program), R"(Control process of a node: configures the IC side of its packet accelerator.

Usage: kelctl [--node NAME | --softnode PATH] COMMAND ...

Commands:
  turn                  Turn all lamps
  load                  Load lamps from a file
  say                   Blink a text
  help                  Show help

Command groups:
  lamp ...              lamps and groups of them

Common options:
  --json                show results as JSON, one document per command
  --trace               print the library's trace records as they occur
  --brief               report failures without their trace records
  --quiet               print failures only
  --all                 show all rows and problems, however many
  --raw                 accept any value that the C interface accepts
  --help                print this help

Before a command:
  --node NAME           let the process that holds this node carry the command
                        out; see "nodes"
  --softnode PATH       ask the process on the software accelerator that serves
                        this socket

Instead of a command:
  --version             print the version

Exit status:
  0                     done
  1                     an operation failed, or was interrupted; standard error
                        shows which and why
  2                     the command line, a script or the node file is wrong;
                        nothing was started

Environment:
  MPID                  own MP id, unless the node file gives one
  NO_COLOR              if not empty: no colours on a terminal
  XDG_RUNTIME_DIR       where the sockets of nodes are, unless root holds them:
                        those are in /run/kelctl
  XDG_STATE_HOME        where the shell keeps its history
  KEL_SOFTNODE_FAULTS   fault rules of the software accelerator, such as
                        "ork_ebcom_pcep_path_create:3=-4", or "@FILE" for a file
                        of rules
  KEL_SOFTNODE_SOCKET   socket at which a process on the software accelerator
                        can be asked, with --softnode

"kelctl help COMMAND" shows the arguments of a command.
)");
}

TEST(Help, NotationsOfValuesAreToldOnce)
{
    EXPECT_EQ(value_notations(),
              "Addresses are written 02:00:00:02:00:01, 02-00-00-02-00-01 or 0200.0002.0001, ports by name or number. "
              "Numbers may be hexadecimal after 0x. The units of rates are kbit/s, Mbit/s or Gbit/s, those of sizes "
              "octets, KiB or MiB; a number without a unit is in kbit/s or octets. Times require a unit: ns, us, ms or "
              "s.");
}

TEST(Help, GroupsWithoutACommandThereAreLeftOut)
{
    const command_table table(
        {{.name = "lamp add", .variants = {{.run = done_at_once}}, .help = "Add a lamp", .sources = {source::program}}},
        {{"lamp", "lamps"}});
    EXPECT_THAT(help_of_words(table, "", source::program, 80), HasSubstr("\n  lamp ...  "));
    EXPECT_THAT(help_of_words(table, "", source::shell, 80), Not(HasSubstr("lamp")));
}

TEST(Help, WholeOfTheShellHasItsCommandsOnly)
{
    EXPECT_EQ(overview(source::shell), R"(Commands:
  turn                  Turn all lamps
  say                   Blink a text
  help                  Show help
  leave                 Leave

Command groups:
  lamp ...              lamps and groups of them

Common options:
  --json                show results as JSON, one document per command
  --trace               print the library's trace records as they occur
  --brief               report failures without their trace records
  --quiet               print failures only
  --all                 show all rows and problems, however many
  --raw                 accept any value that the C interface accepts
  --help                print this help

"help COMMAND" shows the arguments of a command, or the commands of a group.
)");
}

} // namespace
} // namespace kelctl

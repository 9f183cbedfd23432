// `kelctl shell` where nobody types: lines through a pipe.
#include "program.h"
#include "terminal_session.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>

namespace
{

using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

program_outcome shell_of(const std::string &lines, const std::vector<std::string> &more = {})
{
    return run_kelctl(
        {.arguments = with({"shell"}, more), .environment = {}, .folder = KELCTL_SOURCE_DIR, .in = lines});
}

TEST(Shell, NoPromptIsPrintedIntoAPipe)
{
    const auto outcome = shell_of("trace message a\n\n# nothing\ntrace message b");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.out, "a\nb\n");
    EXPECT_EQ(outcome.err, "");
}

TEST(Shell, QuitLeavesAndQuestionMarkHelps)
{
    const auto outcome = shell_of("? group member\nquit\ntrace message never\n");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_THAT(outcome.out, StartsWith("Commands:\n  group member add "));
    EXPECT_THAT(outcome.out, Not(HasSubstr("never")));
    EXPECT_EQ(outcome.err, "");
}

TEST(Shell, LinesAreRunAsTheyComeAndTheWorstIsTheStatus)
{
    const auto outcome = shell_of("pcep start\npcep remove 7\ntrace message still\n");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.out, "still\n");
    EXPECT_THAT(outcome.err, testing::HasSubstr("-:2: failed: kel_core_ic_pcep_rem(pcep_id=7)\n"));

    const auto wrong = shell_of("trace message first\n pcep rmove 7\ntrace message still\n");
    EXPECT_EQ(wrong.status, 2);
    EXPECT_EQ(wrong.out, "first\nstill\n");
    EXPECT_EQ(wrong.err, "-:2:7: unknown command \"pcep rmove\"; did you mean \"pcep remove\"?\n");
}

TEST(Shell, NodeOfTheFileStandsWhileItRuns)
{
    const auto outcome = shell_of("ebcom queue handle 02:00:00:02:00:01\n", {"examples/node.toml"});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(outcome.out, "The node is up: 17 paths, 4 PCEPs, 2 multicast groups\n"
                           "handle  0x5d00000001\n"
                           "Taken down. The node is empty again.\n");
}

TEST(Shell, WhatWasTypedIsTakenDownWithTheNode)
{
    const std::string typed = "group add 44\nebcom path add 02:00:00:03:00:07 --port 42\ngroup member add 44 1\n";
    const auto text = shell_of(typed, {"examples/node.toml"});
    EXPECT_EQ(text.status, 0);
    EXPECT_EQ(text.err, "");
    EXPECT_THAT(text.out, EndsWith("Taken down. The node is empty again.\n"));

    const auto printed = shell_of(typed, {"examples/node.toml", "--json"});
    EXPECT_THAT(printed.out, HasSubstr(R"("undone":["group member remove 44 1",)"
                                       R"("ebcom path remove 02:00:00:03:00:07 --port RLU4W","group remove 44",)"));
}

TEST(Shell, WhatALineTakesAwayIsMissedAtTheTakeDown)
{
    const auto less = shell_of("pcep remove 4\n", {"examples/node.toml"});
    EXPECT_EQ(less.status, 1);
    EXPECT_THAT(less.err,
                HasSubstr("failed: kel_core_ic_pcep_mc_member_rem(mc_pcep_id=301, uc_pcep_id=4)\n  code 4: "));
}

TEST(Shell, NodeThatDoesNotStandRunsNoLine)
{
    const auto outcome = run_kelctl({.arguments = {"shell", "examples/node.toml"},
                                     .environment = {{"KEL_SOFTNODE_FAULTS", "ork_ebcom_pcep_create:2=-4"}},
                                     .folder = KELCTL_SOURCE_DIR,
                                     .in = "trace message never\n"});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.out, "");
    EXPECT_THAT(outcome.err, testing::HasSubstr("examples/node.toml:136: failed: kel_core_ic_pcep_add(pcep_id=2, "));
    EXPECT_THAT(outcome.err, EndsWith("Taken down. The node is empty again.\n"));
}

TEST(Shell, WrongNodeFileStartsNothing)
{
    const auto outcome = shell_of("trace message never\n", {"/nowhere/node.toml"});
    EXPECT_EQ(outcome.status, 2);
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(outcome.err, "/nowhere/node.toml: cannot be read: No such file or directory\n"
                           "/nowhere/node.toml: 1 problem, nothing was started\n");
}

TEST(Shell, WhatCannotBeReadIsNotAnEnd)
{
    const std::vector<std::string> from_a_folder = {"sh", "-c", "exec \"$@\" </", "sh"};
    const auto alone = run_kelctl({.arguments = {"shell"}, .through = from_a_folder});
    EXPECT_EQ(alone.status, 1);
    EXPECT_EQ(alone.err, "-: cannot be read: Is a directory\n");

    const auto around = run_kelctl(
        {.arguments = {"shell", "examples/node.toml"}, .folder = KELCTL_SOURCE_DIR, .through = from_a_folder});
    EXPECT_EQ(around.status, 1);
    EXPECT_EQ(around.err, "-: cannot be read: Is a directory\n");
    EXPECT_THAT(around.out, EndsWith("Taken down. The node is empty again.\n"));

    const auto printed = run_kelctl({.arguments = {"shell", "--json"}, .through = from_a_folder});
    EXPECT_EQ(printed.status, 1);
    EXPECT_EQ(printed.err, "");
    EXPECT_THAT(printed.out, HasSubstr(R"("error":{"message":"cannot be read: Is a directory","file":"-",)"));
}

// Its lines are read from the terminal without an editor, which would need both.
TEST(Shell, TypedLinesWhoseOutputIsNoTerminalAreRunAsPipedOnes)
{
    terminal_session shell({.arguments = {"shell"}, .through = {"sh", "-c", "\"$@\" | sed s/^/read:/", "sh"}});
    shell.type("trace message here\n\x04");
    shell.wait_for("read:here");
    EXPECT_EQ(shell.wait_for_end(), 0);
    EXPECT_EQ(shell.screen().find("kelctl>"), std::string::npos);
}

TEST(Shell, CtrlCEndsLinesThatAreReadFromAPipe)
{
    const file_in_folder folder("none", "");
    running_kelctl shell(
        {.arguments = {"shell"},
         .folder = folder.folder(),
         .through = {"sh", "-c", "mkfifo lines; exec <>lines; echo trace message here >lines; exec \"$@\"", "sh"}});
    EXPECT_TRUE(shell.shows("here\n"));
    shell.signal(SIGINT);
    EXPECT_EQ(shell.finish().status, 1);
}

TEST(Shell, ClosedInputHasNoLines)
{
    const auto outcome = run_kelctl({.arguments = {"shell", "examples/node.toml"},
                                     .folder = KELCTL_SOURCE_DIR,
                                     .through = {"sh", "-c", "exec \"$@\" <&-", "sh"}});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_THAT(outcome.out, EndsWith("Taken down. The node is empty again.\n"));
}

TEST(Shell, JsonIsALineForEachCommandAndOneForTheShell)
{
    const auto outcome = shell_of("trace point\nwhat\n", {"--json"});
    EXPECT_EQ(outcome.status, 2);
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(outcome.out,
              R"({"command":"trace point","arguments":{},"file":"-","line":1,"ok":true,"code":0,"text":"success",)"
              R"("result":{}})"
              "\n"
              R"({"command":null,"arguments":{},"ok":false,"code":null,"text":null,"result":{},"error":{"message":)"
              R"("unknown command \"what\"","file":"-","line":2,"column":1}})"
              "\n"
              R"({"command":"shell","arguments":{},"ok":false,"code":null,"text":null,"result":{}})"
              "\n");
}

} // namespace

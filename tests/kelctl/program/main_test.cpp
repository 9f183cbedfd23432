// What the program makes of its arguments, before there is a command.
#include "program.h"
#include "tests/notation/print.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

namespace
{

using testing::HasSubstr;

program_outcome kelctl(const std::vector<std::string> &arguments)
{
    return run_kelctl({.arguments = arguments});
}

TEST(Main, WrongOnesAreToldWithStatus2)
{
    const std::pair<std::vector<std::string>, const char *> wrong[] = {
        {{}, "A command is required"},
        {{"--wat"}, "--wat"},
        {{"down"}, "down"},
        {{"up"}, "FILE is required"},
        {{"up", "a.toml", "b.toml"}, "b.toml"},
        {{"up", "a.toml", "--wat"}, "--wat"},
        {{"exit"}, "kelctl: \"exit\" cannot be used here\n"},
        {{"ebcom", "pth"}, "kelctl: unknown command \"ebcom pth\"; did you mean \"ebcom path\"?\n"},
        {{"group", "add", "512"}, "kelctl: GROUP: 512 is not in the range 1 to 511\n"},
        {{"ebcom", "port", "channel", "RUL1P"}, "kelctl: PORT: unknown port \"RUL1P\"; did you mean \"RLU1P\"?\n"},
    };
    for (const auto &[arguments, message] : wrong) {
        const auto outcome = kelctl(arguments);
        EXPECT_EQ(outcome.status, 2) << message;
        EXPECT_EQ(outcome.out, "");
        EXPECT_THAT(outcome.err, HasSubstr(message));
        EXPECT_THAT(outcome.err, HasSubstr("--help"));
    }
}

TEST(Main, WrongOneIsADocumentWhereJsonIsAskedFor)
{
    const auto outcome = kelctl({"group", "add", "512", "--json"});
    EXPECT_EQ(outcome.status, 2);
    EXPECT_EQ(outcome.err, "");
    EXPECT_THAT(outcome.out, HasSubstr(R"("ok":false,)"));
    EXPECT_THAT(outcome.out, HasSubstr(R"("error":{"message":"GROUP: 512 is not in the range 1 to 511","file":null,)"));
}

TEST(Main, JsonAsAValueIsNotAskedFor)
{
    EXPECT_EQ(kelctl({"trace", "message", "a", "--prefix", "--json", "--wat"}).out, "");
    EXPECT_THAT(kelctl({"nothing", "--json"}).out, HasSubstr("\"ok\":false"));
}

TEST(Main, ErrorsEndWithTheHelpOfTheirCommand)
{
    EXPECT_THAT(kelctl({"group", "add", "512"}).err, testing::EndsWith("\nSee \"kelctl group add --help\".\n"));
    EXPECT_THAT(kelctl({"group", "ad"}).err, testing::EndsWith("\nSee \"kelctl group --help\".\n"));
    EXPECT_THAT(kelctl({}).err, testing::EndsWith("\nSee \"kelctl --help\".\n"));
    EXPECT_EQ(kelctl({"ebcom start"}).err,
              "kelctl: \"ebcom start\" is one word; write the words of a command without quotation marks: kelctl ebcom "
              "start\nSee \"kelctl --help\".\n");
}

TEST(Main, FailureForWantOfAServiceNamesRunAndShell)
{
    EXPECT_THAT(
        kelctl({"ebcom", "path", "add", "02:00:00:02:00:01", "--port", "RLU1P"}).err,
        testing::EndsWith("\n  the EBCOM service is not started in this process: \"ebcom start\" starts it; run "
                          "such commands in one process, with \"kelctl run\" or \"kelctl shell\"\n"));
}

TEST(Main, EveryFileMayHaveAByteOrderMarkAndCarriageReturns)
{
    const std::string mark = "\xEF\xBB\xBF";
    const std::pair<std::vector<std::string>, std::string> files[] = {
        {{"check", "f"}, mark + "[ebcom]\r\nic_port_mtu = 1500\r\nether_type = 0x88B5\r\nsettings = [1, 2]\r\n"},
        {{"run", "f"}, mark + "trace message 'a' --prefix \\b\r\n"},
        {{"fault", "add", "--file", "f"}, mark + "ork_bind=-4\r\n# one\r\n"},
    };
    for (const auto &[arguments, text] : files) {
        const file_in_folder file("f", text);
        EXPECT_EQ(run_kelctl({.arguments = arguments, .folder = file.folder()}).status, 0) << arguments[0];
    }
    EXPECT_EQ(run_kelctl({.arguments = {"shell"}, .in = mark + "ebcom start\r\nebcom stop\r\n"}).status, 0);
}

TEST(Main, SingleOperationIsRunInAProcessOfItsOwn)
{
    const auto located = kelctl({"pcep", "locate", "02:00:00:03:00:01"});
    EXPECT_EQ(located.status, 0);
    EXPECT_THAT(located.out, testing::StartsWith("location       HSFP\n"));
    const auto refused = kelctl({"pcep", "remove", "7"});
    EXPECT_EQ(refused.status, 1);
    EXPECT_THAT(refused.err, testing::HasSubstr("failed: kel_core_ic_pcep_rem(pcep_id=7)\n  code 4: "));
}

TEST(Main, ValueOfAnOptionIsNoOption)
{
    const auto outcome = kelctl({"trace", "message", "hello", "--prefix", "--help"});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.out, "--help(): hello\n");
}

TEST(Main, CompletionScriptsAreToldWordsOrThatFilesAreMeant)
{
    EXPECT_EQ(kelctl({"--complete", "ebcom", "path", ""}).out,
              "add\tAdd a path from an IC port to a destination\nremove\tRemove one path to a destination\n"
              "list\tList the paths that exist\n");
    EXPECT_EQ(kelctl({"--complete", "check", "no"}).out, "@files\n");
    EXPECT_THAT(kelctl({"--complete"}).out, testing::StartsWith("up\tBring a node up"));
    EXPECT_EQ(kelctl({"--complete", "nothing", ""}).out, "");
    EXPECT_EQ(kelctl({"--complete", "nothing", ""}).status, 0);
}

TEST(Main, ClosedOutputIsAnErrorAndNothingElseBecomesIt)
{
    const file_in_folder file("picture", "before");
    const auto outcome = run_kelctl({.arguments = {"run", "-"},
                                     .folder = file.folder(),
                                     .in = "graph --output picture\npcep locate 02:00:00:02:00:01\n",
                                     .through = {"sh", "-c", "exec \"$@\" >&-", "sh"}});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.err, HasSubstr("standard output cannot be written"));
}

TEST(Main, VersionIsOneLine)
{
    const auto outcome = kelctl({"--version"});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_THAT(outcome.out, testing::MatchesRegex("kelctl [0-9]+\\.[0-9]+\\.[0-9]+\n"));
    EXPECT_EQ(outcome.err, "");
}

TEST(Main, VersionIsADocumentWhereJsonIsAskedFor)
{
    for (const auto &arguments : {std::vector<std::string>{"--version", "--json"}, {"--json", "--version"}}) {
        const auto outcome = kelctl(arguments);
        EXPECT_EQ(outcome.status, 0);
        EXPECT_EQ(outcome.err, "");
        EXPECT_THAT(outcome.out,
                    testing::MatchesRegex(R"(\{"command":"version","arguments":\{\},"ok":true,"code":null,"text":null,)"
                                          R"("result":\{"version":"[0-9]+\.[0-9]+\.[0-9]+"\}\})"
                                          "\n"));
    }
}

const std::map<std::string, std::string> wrong_environment = {{"KEL_SOFTNODE_FAULTS", "ork_bind=bogus"}};
const std::string what_is_wrong = "KEL_SOFTNODE_FAULTS: \"ork_bind=bogus\": the effect is not a result";

TEST(WrongEnvironment, IsAnErrorOfTheCommand)
{
    const auto outcome = run_kelctl({.arguments = {"ebcom", "start"}, .environment = wrong_environment});
    EXPECT_EQ(outcome.status, 2);
    EXPECT_EQ(outcome.out, "");
    EXPECT_THAT(outcome.err, testing::StartsWith("kelctl: " + what_is_wrong));
}

TEST(WrongEnvironment, IsADocumentWhereJsonIsAskedFor)
{
    for (const auto &arguments : {std::vector<std::string>{"ebcom", "start"},
                                  {"up", "examples/node.toml"},
                                  {"run", "examples/node.kel"},
                                  {"shell"},
                                  {"snapshot"},
                                  {"codes"}}) {
        std::vector<std::string> with_json = arguments;
        with_json.emplace_back("--json");
        const auto outcome =
            run_kelctl({.arguments = with_json, .environment = wrong_environment, .folder = KELCTL_SOURCE_DIR});
        EXPECT_EQ(outcome.status, 2) << arguments[0];
        EXPECT_EQ(outcome.err, "") << arguments[0];
        EXPECT_EQ(std::count(outcome.out.begin(), outcome.out.end(), '\n'), 1) << arguments[0];
        const auto printed = notation::read_json(outcome.out);
        EXPECT_EQ(printed.at("ok"), false) << arguments[0];
        EXPECT_THAT(printed.at("error").at("message").text(), testing::StartsWith(what_is_wrong)) << arguments[0];
    }
}

TEST(WrongEnvironment, DoesNotMatterToWhatUsesNoNode)
{
    for (const auto &arguments : {std::vector<std::string>{"--help"},
                                  {"--version"},
                                  {"ports"},
                                  {"limits"},
                                  {"check", "examples/node.toml"},
                                  {"plan", "examples/node.toml"},
                                  {"fault", "functions"}}) {
        const auto outcome =
            run_kelctl({.arguments = arguments, .environment = wrong_environment, .folder = KELCTL_SOURCE_DIR});
        EXPECT_EQ(outcome.status, 0) << arguments[0];
        EXPECT_EQ(outcome.err, "") << arguments[0];
    }
}

TEST(Main, HelpNamesCommandsStatusesAndEnvironment)
{
    const auto outcome = kelctl({"--help"});
    EXPECT_EQ(outcome.status, 0);
    for (const char *word : {"  up ", "--version", "Exit status:", "MPID", "NO_COLOR", "KEL_SOFTNODE_FAULTS"})
        EXPECT_THAT(outcome.out, HasSubstr(word));
}

TEST(Main, HelpOfUpNamesItsArguments)
{
    const auto outcome = kelctl({"up", "--help"});
    EXPECT_EQ(outcome.status, 0);
    for (const char *word : {"FILE", "--trace", "file:line:column:", "Example:"})
        EXPECT_THAT(outcome.out, HasSubstr(word));
}

TEST(Main, HelpFillsEightyColumns)
{
    for (const auto &arguments : {std::vector<std::string>{"--help"}, std::vector<std::string>{"up", "--help"}})
        EXPECT_THAT(widest_line(kelctl(arguments).out), testing::AllOf(testing::Gt(70u), testing::Le(80u)));
}

} // namespace

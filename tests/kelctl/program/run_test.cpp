// `kelctl run`: scripts from files and from standard input.
#include "program.h"
#include "temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace
{

using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

program_outcome run_file(const std::string &script)
{
    const file_in_folder file("setup.kel", script);
    return run_kelctl({.arguments = {"run", "setup.kel"}, .environment = {}, .folder = file.folder()});
}

const std::string started = "ebcom params set --mtu 1500 --ether-type 0x88b5 --settings 1,2\n"
                            "ebcom interface create\n"
                            "ebcom start\n";

TEST(Run, CommandsOfAScriptShareOneNode)
{
    const auto outcome = run_text(started + "\n  # two paths on one port\n"
                                            "ebcom path add 02:00:00:02:00:01 --port RLU1P\n"
                                            "ebcom path add '02-00-00-02-00-02' --port 6   # the same port\n"
                                            "ebcom path remove 02:00:00:02:00:01 --port rlu1p\n"
                                            "ebcom queue handle 02:00:00:02:00:02\n");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.err, "");
    EXPECT_THAT(outcome.out, testing::MatchesRegex("vsi  258\nhandle  0x[0-9a-f]+\n"));
}

TEST(Run, StopsAtTheFirstLineThatFails)
{
    const auto outcome = run_file("pcep start\npcep remove 7\ntrace message never\n");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.out, "");
    EXPECT_THAT(outcome.err, testing::HasSubstr("setup.kel:2: failed: kel_core_ic_pcep_rem(pcep_id=7)\n  code 4: "));
    EXPECT_THAT(outcome.err, testing::EndsWith("\nsetup.kel: stopped, 2 of 3 commands were run\n"));
}

TEST(Run, ErrorsOfAnotherFileHaveItsPlaceAndTheirSumThatOfTheScript)
{
    const temporary_folder folder;
    const std::string node = folder.file_with("[ebcom]\nmtu = \n");
    EXPECT_THAT(run_file("\ncheck " + node + "\n").err,
                testing::MatchesRegex(node + ":2:[0-9]+: .*\nsetup.kel:2: " + node + ": 1 problem, nothing was .*\n"));
}

TEST(Run, LastLineThatFailsStopsNothing)
{
    EXPECT_THAT(run_file("pcep start\npcep remove 7\n").err, Not(HasSubstr("stopped")));
}

TEST(Run, KeepGoingRunsTheRestAndStillTells)
{
    const auto outcome = run_text("pcep start\npcep remove 7\ntrace message still\n", {"--keep-going"});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.out, "still\n");
    EXPECT_THAT(outcome.err, testing::HasSubstr("-:2: failed: "));
    EXPECT_THAT(outcome.err, Not(HasSubstr("stopped")));
}

TEST(Run, LineThatExpectsAFailureIsDoneWhenItComes)
{
    const auto outcome = run_file("expect 0 pcep start\nexpect 4 pcep remove 7\ntrace message still\n");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.out, "still\n");
    EXPECT_EQ(outcome.err, "");
}

TEST(Run, StopsAtTheFirstLineWithAnotherCodeThanExpected)
{
    const auto outcome = run_file("pcep start\nexpect 13 pcep remove 7\ntrace message never\n");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.out, "");
    EXPECT_THAT(outcome.err, HasSubstr("setup.kel:2: expected code 13 (operation failed), got 4 (not found)\n"));
    EXPECT_THAT(outcome.err, HasSubstr("setup.kel:2: failed: kel_core_ic_pcep_rem(pcep_id=7)\n  code 4: "));
    EXPECT_THAT(outcome.err, testing::EndsWith("\nsetup.kel: stopped, 2 of 3 commands were run\n"));
}

TEST(Run, SuccessIsWrongWhereAFailureIsExpected)
{
    EXPECT_EQ(run_file("expect 13 pcep start\n").err,
              "setup.kel:1: expected code 13 (operation failed), got 0 (success)\n");
}

TEST(Run, CodesToExpectAreCheckedBeforeAnythingIsRun)
{
    const auto outcome = run_file("trace message first\n"
                                  "expect pcep start\n"
                                  "expect 0\n"
                                  "expect 0 snapshot\n"
                                  "expect 4294967296 pcep start\n"
                                  "expect 0 pcep remve 7\n");
    EXPECT_EQ(outcome.status, 2);
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(outcome.err, "setup.kel:2:8: CODE: \"pcep\" is not a whole number\n"
                           "setup.kel:3:9: A command is required\n"
                           "setup.kel:4:8: \"snapshot\" calls no function of the library, and has no code to expect\n"
                           "setup.kel:5:8: CODE: 4294967296 is not in the range 0 to 4294967295\n"
                           "setup.kel:6:15: unknown command \"pcep remve\"; did you mean \"pcep remove\"?\n"
                           "setup.kel: 5 problems, nothing was run\n");
}

TEST(Run, NothingIsRunWhenAnyLineIsWrong)
{
    const auto outcome = run_file("trace message first\n"
                                  "ebcom pth add\n"
                                  "group add 512\n"
                                  "trace message 'open\n"
                                  "pcep add 7\n");
    EXPECT_EQ(outcome.status, 2);
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(outcome.err, "setup.kel:2:7: unknown command \"ebcom pth\"; did you mean \"ebcom path\"?\n"
                           "setup.kel:3:11: GROUP: 512 is not in the range 1 to 511\n"
                           "setup.kel:4:15: the closing quotation mark is missing\n"
                           "setup.kel:5:11: --remote-id is required\n"
                           "setup.kel: 4 problems, nothing was run\n");
}

TEST(Run, CommandThatFindsItsFileWrongStopsWithStatus2)
{
    const auto outcome = run_file("check /nowhere/node.toml\ntrace message never\n");
    EXPECT_EQ(outcome.status, 2);
    EXPECT_EQ(outcome.out, "");
    EXPECT_THAT(outcome.err,
                StartsWith("setup.kel:1: /nowhere/node.toml: cannot be read: No such file or directory\n"));
}

TEST(Run, ExitLeavesTheRest)
{
    const auto outcome = run_text("trace message first\nexit\ntrace message never\n");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.out, "first\n");
    EXPECT_EQ(outcome.err, "");
}

TEST(Run, EmptyScriptDoesNothing)
{
    for (const char *script : {"", "\n\n", "# nothing"}) {
        const auto outcome = run_text(script);
        EXPECT_EQ(outcome.status, 0);
        EXPECT_EQ(outcome.out + outcome.err, "");
    }
}

TEST(Run, UnreadableScriptIsToldWithoutAPlace)
{
    const auto outcome = run_kelctl({.arguments = {"run", "/nowhere/a\nb.kel"}});
    EXPECT_EQ(outcome.status, 2);
    EXPECT_EQ(outcome.err, "/nowhere/a?b.kel: cannot be read: No such file or directory\n"
                           "/nowhere/a?b.kel: 1 problem, nothing was run\n");
}

TEST(Run, JsonIsALineForEachCommandAndOneForTheScript)
{
    const auto outcome = run_text("pcep locate 02:00:00:02:00:01\npcep start\npcep remove 7\n", {"--json"});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.err, "");
    EXPECT_THAT(outcome.out,
                StartsWith(R"({"command":"pcep locate","arguments":{"mac":"02:00:00:02:00:01"},"file":"-","line":1,)"
                           R"("ok":true,"code":0,"text":"success",)"
                           R"("result":{"location":"OB","location_code":2,"type":2}})"
                           "\n"
                           R"({"command":"pcep start",)"));
    EXPECT_THAT(outcome.out, HasSubstr(R"(,"line":3,"ok":false,"code":4,)"));
    EXPECT_THAT(outcome.out, testing::EndsWith(R"({"command":"run","arguments":{"script":"-"},"ok":false,)"
                                               R"("code":null,"text":null,)"
                                               R"("result":{"commands":3,"run":3,"failed":1}})"
                                               "\n"));
}

TEST(Run, JsonHasTheErrorsInsideTheDocument)
{
    const auto outcome = run_text("pcep start\ngroup add 512\nebcom\n", {"--json"});
    EXPECT_EQ(outcome.status, 2);
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(outcome.out,
              R"({"command":"run","arguments":{"script":"-"},"ok":false,"code":null,"text":null,"result":{},)"
              R"("error":{"message":"GROUP: 512 is not in the range 1 to 511","file":"-","line":2,"column":11},)"
              R"("further_errors":[{"message":"\"ebcom\" requires one of these words: params, capabilities, )"
              R"(interface, start, stop, timestamp, qos, path, shaper, queue, scheduler, port, stats, burst",)"
              R"("file":"-","line":3,"column":6}]})"
              "\n");
}

TEST(Run, SingleLineMayAskForJson)
{
    const auto outcome = run_text("trace message a\ntrace message b --json\ntrace message c\n");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_THAT(outcome.out, StartsWith("a\n{\"command\":\"trace message\","));
    EXPECT_THAT(outcome.out, testing::EndsWith("}\nc\n"));
}

TEST(Count, PathsToCountedAddressesAreAddedAndRemoved)
{
    const std::string paths = " 02:00:00:03:00:ff --port 42 --count 3\n";
    const std::string last = "ebcom queue handle 02:00:00:03:01:01\n";
    const auto outcome = run_text(started + "ebcom path add" + paths + last + "ebcom path remove" + paths + last);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.out, "vsi  258\nhandle  0x5d00000001\n");
    EXPECT_THAT(outcome.err, testing::HasSubstr("-:7: failed: kel_ic_ebcom_queue_handle_get("));
}

TEST(Count, StopsAtThePathThatFails)
{
    const auto outcome = run_kelctl({.arguments = {"run", "-"},
                                     .environment = {{"KEL_SOFTNODE_FAULTS", "ork_ebcom_pcep_path_create:3=-4"}},
                                     .in = started + "ebcom path add 02:00:00:03:00:01 --port 42 --count 9\n"});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.err, testing::HasSubstr("-:4: failed: kel_core_ic_ebcom_path_add(dst_mac=02:00:00:03:00:03, "));
}

TEST(Count, HasToFitTheLastThreeOctets)
{
    const auto outcome = run_text(started + "ebcom path add 02:00:00:ff:ff:fe --port 42 --count 3\n");
    EXPECT_EQ(outcome.status, 2);
    EXPECT_THAT(outcome.err, StartsWith("-:4:52: --count: at most 2 paths from 02:00:00:ff:ff:fe on: only the "
                                        "last three octets count up\n"));
}

// What the language refuses reaches the library with --raw, which has the last word.
TEST(Raw, ValuesOutsideTheLimitsReachTheLibrary)
{
    const std::string pcep = " --remote-id 9 --local 02:00:00:03:00:01 --remote 02:00:00:02:00:01 --vlan 1";
    const std::string path = "ebcom path add 02:00:00:02:00:01 --port -1";
    const std::string mtu = "ebcom params set --mtu 70000 --ether-type 0x88b5 --settings 1,2";
    for (const std::string &line : {path, "pcep add 0" + pcep, "pcep add 512" + pcep, mtu})
        EXPECT_EQ(run_text(line + "\n").status, 2) << line;

    EXPECT_EQ(run_text(mtu + " --raw\n").status, 0);
    EXPECT_THAT(
        run_text(started + path + " --raw\n").err,
        testing::HasSubstr("-:4: failed: kel_core_ic_ebcom_path_add(dst_mac=02:00:00:02:00:01, port=UNKNOWN (-1), "
                           "unshaped)\n  code 3: value out of range\n"));
    for (const std::string id : {"0", "512"})
        EXPECT_THAT(run_text("pcep start\npcep add " + id + pcep + " --raw\n").err,
                    testing::HasSubstr("-:2: failed: kel_core_ic_pcep_add(pcep_id=" + id + ", "));
}

TEST(Raw, ShapingWordsWithoutShapingReachTheLibrary)
{
    const std::string words =
        "ebcom path add 02:00:00:02:00:01 --port 6 --rate 5 --burst 7 --threshold 256 --shaping 0";
    EXPECT_EQ(run_text(words + "\n").status, 2);
    const auto outcome = run_text(started + words + " --raw\n", {"--trace"});
    EXPECT_EQ(outcome.status, 0);
    if (outcome.err.find("not installed") != std::string::npos)
        GTEST_SKIP() << "there is no tracer on this machine";
    EXPECT_THAT(outcome.err, HasSubstr("shaping_enabled = 0, iell_port = 6 (RLU1P), shaping_rate = 5, "
                                       "buffer_threshold = 1, burst_size = 7"));
}

} // namespace

// `kelctl check`, `plan`, `up --json`, and the tables of ports, codes and limits.
#include "kelctl/commands/commands.h"
#include "kelctl/jobs/script.h"
#include "program.h"
#include "tests/notation/print.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

namespace
{

using json = notation::document;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

program_outcome kelctl_with(const std::vector<std::string> &arguments,
                            const std::map<std::string, std::string> &environment = {})
{
    return run_kelctl({.arguments = arguments, .environment = environment, .folder = KELCTL_SOURCE_DIR});
}

json document(const program_outcome &outcome)
{
    return notation::read_json(outcome.out);
}

TEST(Check, SoundFileIsCountedAndNothingIsStarted)
{
    const auto outcome = kelctl_with({"check", "examples/node.toml"}, {{"KEL_SOFTNODE_FAULTS", "kel_init_attach=3"}});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.out, "paths             17\npceps             4\nmulticast groups  2\ntraffic           7\n");
    EXPECT_EQ(outcome.err, "");
}

TEST(Check, WrongFileIsToldAsUpTellsIt)
{
    const file_in_folder file("node.toml", "[ebcom]\ncolour = 1\n");
    const auto checked = run_kelctl({.arguments = {"check", "node.toml"}, .environment = {}, .folder = file.folder()});
    const auto upped = run_kelctl({.arguments = {"up", "node.toml"}, .environment = {}, .folder = file.folder()});
    EXPECT_EQ(checked.status, 2);
    EXPECT_EQ(checked.err, upped.err);
    const auto planned = run_kelctl({.arguments = {"plan", "node.toml"}, .folder = file.folder()});
    EXPECT_EQ(planned.status, 2);
    EXPECT_EQ(planned.out, "");
    EXPECT_THAT(planned.err, testing::EndsWith("no plan was printed\n"));
    EXPECT_THAT(checked.err, HasSubstr("node.toml:2:1: unknown key \"colour\" in [ebcom]\n"));
}

TEST(Check, JsonHasEveryProblem)
{
    const file_in_folder file("node.toml", "[ebcom]\ncolour = 1\n");
    const auto outcome =
        run_kelctl({.arguments = {"check", "node.toml", "--json"}, .environment = {}, .folder = file.folder()});
    EXPECT_EQ(outcome.status, 2);
    EXPECT_EQ(outcome.err, "");
    const auto printed = document(outcome);
    EXPECT_EQ(printed.at("ok"), false);
    EXPECT_EQ(printed.at("error").at("file"), "node.toml");
    EXPECT_EQ(printed.at("error").at("line"), 1);
    EXPECT_EQ(printed.at("further_errors").size(), 3u);
}

TEST(Check, NodeFileMayComeThroughStandardInput)
{
    const auto outcome = run_kelctl({.arguments = {"check", "-"}, .in = ebcom_table});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_THAT(outcome.out, StartsWith("paths             0\n"));
}

// Port 0 leads to processors, and not behind the EIOA: the MP id decides which address is which.
TEST(Check, FilesWithDifferentMpIdsAreSoundInOneProcess)
{
    const auto node = [](const std::string &mp_id) {
        return "[node]\nmpid = " + mp_id + "\n" + ebcom_table + "[[path]]\ndst_mac = \"02:00:0" + mp_id +
               ":00:00:01\"\nport = 0\n";
    };
    const file_in_folder a("a.toml", node("5"));
    const file_in_folder b("b.toml", node("6"));
    const auto outcome = run_kelctl({.arguments = {"run", "-"},
                                     .in = "check " + a.folder() + "/a.toml\ncheck " + b.folder() +
                                           "/b.toml\npcep locate 02:00:05:00:00:01\npcep locate 02:00:06:00:00:01\n"});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_THAT(outcome.out, Not(HasSubstr("CPU"))); // neither has become the process's
}

TEST(MpIdOfAProcess, SecondOneIsRefusedByItsName)
{
    const auto outcome =
        run_kelctl({.arguments = {"run", "-"}, .in = "mpid 5\npcep locate 02:00:05:00:00:01\nmpid 5\nmpid 6\n"});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.out, HasSubstr("CPU"));
    EXPECT_THAT(outcome.err, StartsWith("-:4: the MP id cannot change to 6: the library already uses 5 in this "
                                        "process\n"));
}

TEST(MpIdOfAProcess, OneOfTheEnvironmentCountsFromTheFirstCall)
{
    const auto outcome = run_kelctl(
        {.arguments = {"run", "-"}, .environment = {{"MPID", "4"}}, .in = "pcep locate 02:00:04:00:00:01\nmpid 5\n"});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.err,
                StartsWith("-:2: the MP id cannot change to 5: the library already uses 4 in this process"));

    const auto before = run_kelctl(
        {.arguments = {"run", "-"}, .environment = {{"MPID", "4"}}, .in = "mpid 5\npcep locate 02:00:05:00:00:01\n"});
    EXPECT_EQ(before.status, 0);
    EXPECT_THAT(before.out, HasSubstr("CPU"));
}

std::string paths(const std::string &first, const std::string &port, size_t count)
{
    return "[[path]]\ndst_mac = \"" + first + "\"\nport = \"" + port + "\"\ncount = " + std::to_string(count) + "\n";
}

TEST(Check, WhatThePlatformHasNoRoomForIsAProblem)
{
    const size_t room =
        document(kelctl_with({"limits", "--json"})).at("result").at("platform").at("paths").number<size_t>();
    const auto check_paths = [](size_t on_one_port, size_t on_another) {
        return run_kelctl({.arguments = {"check", "-"},
                           .in = ebcom_table + paths("02:00:00:02:00:00", "RLU1P", on_one_port) +
                                 paths("02:00:00:04:00:00", "RLU2P", on_another)});
    };
    EXPECT_EQ(check_paths(60'000, room - 60'000).status, 0);
    const auto one_more = check_paths(60'000, room - 60'000 + 1);
    EXPECT_EQ(one_more.status, 2);
    EXPECT_EQ(one_more.err, "-:12:9: count: more than " + std::to_string(room) +
                                " destinations in all, the limit of this platform\n"
                                "-: 1 problem, nothing was started\n");
    EXPECT_EQ(check_paths(65'000, 35'000).status, 2);
}

TEST(Plan, ListsTheCallsUpAndDownAndMakesNone)
{
    const file_in_folder file("node.toml", ebcom_table + "[[path]]\ndst_mac = \"02:00:00:02:00:01\"\nport = 6\n"
                                                         "shaping = { rate = 5, burst = 6, threshold = 256 }\n");
    const auto outcome = run_kelctl({.arguments = {"plan", "node.toml"},
                                     .environment = {{"KEL_SOFTNODE_FAULTS", "kel_init_attach=3"}},
                                     .folder = file.folder()});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(outcome.out, "# Up\n"
                           "ebcom params set --mtu 1500 --ether-type 0x88b5 --settings 1,2\n"
                           "ebcom interface create\n"
                           "ebcom start\n"
                           "ebcom path add 02:00:00:02:00:01 --port RLU1P --rate \"5 kbit/s\" --burst \"6 octets\" "
                           "--threshold \"256 octets\"\n"
                           "\n"
                           "# Down\n"
                           "ebcom path remove 02:00:00:02:00:01 --port RLU1P\n"
                           "ebcom stop\n"
                           "ebcom interface delete\n");
}

std::string script_of(const json &lines)
{
    std::string script;
    for (const json &line : lines)
        script += line.text() + "\n";
    return script;
}

// What a script's last line shows, but for when and how it was asked.
json snapshot_after(const std::string &script)
{
    const auto run = run_kelctl({.arguments = {"run", "-", "--json"}, .in = script + "snapshot\n"});
    EXPECT_EQ(run.status, 0);
    std::istringstream documents(run.out);
    json shown;
    for (std::string line; std::getline(documents, line);)
        if (const auto one = notation::read_json(line); one.at("command") == "snapshot")
            shown = one.at("result");
    return shown;
}

TEST(Plan, RunAsAScriptMakesTheNodeThatUpShows)
{
    const auto planned = document(kelctl_with({"plan", "examples/node.toml", "--json"})).at("result");
    auto made = snapshot_after(script_of(planned.at("up")) + "time advance 0s\n");
    auto up = document(kelctl_with({"up", "examples/node.toml", "--json"})).at("result").at("node");
    EXPECT_FALSE(up.at("paths").empty());
    for (json *node : {&made, &up})
        std::erase_if(node->members(), [](const auto &one) { return one.name == "time" || one.name == "calls"; });
    EXPECT_EQ(made, up);
}

TEST(Plan, RunAsAWholeLeavesTheNodeEmpty)
{
    const auto left = snapshot_after(kelctl_with({"plan", "examples/node.toml"}).out);
    for (const char *kind : {"schedulers", "queues", "paths", "pceps", "groups"})
        EXPECT_EQ(left.at(kind).size(), 0u) << kind;
}

TEST(Plan, IsWhatUpDoes)
{
    const auto planned = document(kelctl_with({"plan", "examples/node.toml", "--json"})).at("result");
    EXPECT_EQ(planned.at("up").size(), 1u + 3 + 14 + 1 + 4 + 2 + 5 + 7);
    // Neither the MP id nor parameters can be taken back, and nothing needs to be of traffic.
    EXPECT_EQ(planned.at("down").size(), planned.at("up").size() - 1 - 1 - 7);
    const auto trace = kelctl_with({"up", "examples/node.toml", "--trace"}).err;
    if (trace.find("the tracer is not installed") != std::string::npos)
        GTEST_SKIP() << "there is no tracer on this machine";
    size_t from = 0;
    for (const char *list : {"up", "down"})
        for (const kelctl::invocation &line :
             kelctl::parse_script(kelctl::commands(), script_of(planned.at(list))).lines) {
            if (line.chosen->function.empty())
                continue;
            from = trace.find(std::string(line.chosen->function) + "()  (", from);
            ASSERT_NE(from, std::string::npos) << line.row->name;
            ++from;
        }
}

TEST(UpJson, TellsWhatStoodAndThatNothingIsLeft)
{
    const auto outcome = kelctl_with({"up", "examples/node.toml", "--json"});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.err, "");
    const auto printed = document(outcome);
    EXPECT_EQ(printed.at("command"), "up");
    EXPECT_EQ(printed.at("ok"), true);
    const auto &result = printed.at("result");
    EXPECT_EQ(result.at("stood"), true);
    EXPECT_EQ(result.at("paths_added"), 17);
    EXPECT_EQ(result.at("node").at("paths").size(), 16u);
    EXPECT_EQ(result.at("statistics").at("queues").size(), 10u);
    EXPECT_EQ(result.at("statistics").at("pceps").size(), 4u);
    EXPECT_EQ(result.at("timestamp_thread").size(), 0u);
    EXPECT_EQ(result.at("left_behind"), "");
}

TEST(UpJson, ExplainsTheFailureAndTellsWhatIsLeft)
{
    const auto outcome = kelctl_with({"up", "examples/node.toml", "--json"},
                                     {{"KEL_SOFTNODE_FAULTS", "ork_bind=-8;ork_ebcom_pcep_path_delete:1=-4"}});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.err, "");
    const auto printed = document(outcome);
    EXPECT_EQ(printed.at("ok"), false);
    EXPECT_EQ(printed.at("result").at("stood"), false);
    EXPECT_EQ(printed.at("result").at("left_behind"), "1 path, 1 PCEP");
    EXPECT_EQ(printed.at("failure").at("function"), "kel_core_ic_pcep_add");
    EXPECT_EQ(printed.at("failure").at("code"), 13);
    EXPECT_EQ(printed.at("further_failures")[0].at("function"), "kel_core_ic_ebcom_path_rem");
    if (printed.at("failure").at("records").is_null())
        GTEST_SKIP() << "there is no tracer on this machine";
    EXPECT_EQ(printed.at("failure").at("refusal").at("by"), "driver kit");
    EXPECT_EQ(printed.at("failure").at("refusal").at("what"), "ork_bind");
    EXPECT_EQ(printed.at("failure").at("refusal").at("code"), -8);
    EXPECT_EQ(printed.at("failure").at("records")[0].at("event"), "FN_ENTER");
}

TEST(Tables, PortsHaveNamesAndQosRows)
{
    const auto printed = document(kelctl_with({"ports", "--json"})).at("result");
    EXPECT_EQ(printed.at("ports").size(), 51u);
    EXPECT_EQ(to_json(printed.at("ports")[19]), R"({"port":19,"name":"RLU1R","ebcom":true,"scheduler":0,"queue":2})");
    EXPECT_EQ(to_json(printed.at("ports")[14]),
              R"({"port":14,"name":"DEBUG","ebcom":false,"scheduler":null,"queue":null})");
    EXPECT_EQ(to_json(printed.at("locations")[1]),
              R"({"location":"HSFP","code":3,"mac_byte_3":"3","mac_byte_2":"any"})");
    const auto text = kelctl_with({"ports"}).out;
    EXPECT_THAT(text,
                HasSubstr("port  name       ebcom  scheduler  queue\n   0  NONE       yes            4      0\n"));
    EXPECT_THAT(text, HasSubstr("\nlocation  code  mac byte 3  mac byte 2\n"));
}

TEST(Tables, CodesHaveTheTextsOfThePlatform)
{
    const auto text = kelctl_with({"codes"}).out;
    EXPECT_THAT(text, HasSubstr("\n   4  not found "));
    EXPECT_THAT(text, HasSubstr("\n             -4  0xfffffffc  AGAIN       still in use, try again\n"));
}

TEST(Tables, LimitsAreThoseOfTheServiceAndOfValues)
{
    const auto text = kelctl_with({"limits"}).out;
    EXPECT_THAT(text, StartsWith("max burst size         1048575\nmax pcep id            511\n"));
    EXPECT_THAT(text, HasSubstr("\nplatform\nschedulers  64\nqueues      64\npaths       65536\n"));
    EXPECT_THAT(text, HasSubstr("\nEtherType                1536       65535  0x0600 to 0xFFFF\n"));
}

TEST(Warnings, TellPcepsAndTrafficThatReachNobody)
{
    const file_in_folder file("node.toml", ebcom_table + R"(
[[path]]
dst_mac = "02:00:00:02:00:01"
port = "RLU1P"
[[pcep]]
id = 7
remote_id = 9
local_mac = "02:00:00:03:00:01"
remote_mac = "02:00:00:02:00:01"
vlan = 100
[[pcep]]
id = 8
remote_id = 9
local_mac = "02:00:00:03:00:02"
remote_mac = "02:00:00:02:00:02"
vlan = 100
[[multicast]]
id = 300
members = [7, 8]
[[multicast]]
id = 301
members = []
[[traffic]]
from = 300
octets = 64
rate = 1
[[traffic]]
from = 301
octets = 64
rate = 1
)");
    const std::string warnings =
        "node.toml:19:14: warning: remote_mac: no path of this file leads to 02:00:00:02:00:02, "
        "and no PCEP has it as its local address\n"
        "node.toml:32:8: warning: from: frames from 301 reach no destination\n";
    const auto check = run_kelctl({.arguments = {"check", "node.toml"}, .folder = file.folder()});
    EXPECT_EQ(check.status, 0);
    EXPECT_EQ(check.err, warnings);
    EXPECT_EQ(run_kelctl({.arguments = {"up", "node.toml"}, .folder = file.folder()}).err, warnings);
    EXPECT_EQ(run_kelctl({.arguments = {"up", "node.toml", "--quiet"}, .folder = file.folder()}).err, "");
    EXPECT_THAT(run_kelctl({.arguments = {"check", "node.toml", "--json"}, .folder = file.folder()}).out,
                testing::HasSubstr(R"("warnings":[{"message":"remote_mac: no path)"));
}

TEST(Warnings, TellFaultRulesThatNoCallMet)
{
    const auto up = run_kelctl({.arguments = {"up", "examples/node.toml"},
                                .environment = {{"KEL_SOFTNODE_FAULTS", "ork_bind:33=-4;ork_unbind=latency:1us"}},
                                .folder = KELCTL_SOURCE_DIR});
    EXPECT_EQ(up.status, 0);
    EXPECT_EQ(up.err, "kelctl: warning: no call matched the fault rule ork_bind:33=-4\n");
    const auto run = run_kelctl({.arguments = {"run", "-", "--json"}, .in = "fault add ork_bind:33=-4\n"});
    EXPECT_THAT(run.out,
                testing::HasSubstr(R"("warnings":[{"message":"no call matched the fault rule ork_bind:33=-4")"));
}

TEST(Warnings, TellAnMpIdThatIsNone)
{
    for (const auto &[id, read_as] : {std::pair("abc", "0"), std::pair("300", "44"), std::pair("5x", "5")})
        EXPECT_EQ(run_kelctl({.arguments = {"check", "examples/node.toml"},
                              .environment = {{"MPID", id}},
                              .folder = KELCTL_SOURCE_DIR})
                      .err,
                  std::string("kelctl: warning: MPID=") + id + " is not an MP id, 1 to 255; the library reads it as " +
                      read_as + "\n");
    EXPECT_EQ(run_kelctl({.arguments = {"ports"}, .environment = {{"MPID", "5"}}}).err, "");
}

} // namespace

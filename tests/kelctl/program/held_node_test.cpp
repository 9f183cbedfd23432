// One process holds a node, others ask it.
#include "dump_file.h"
#include "held_node.h"
#include "notation/json.h"
#include "socket/client.h"
#include "socket/listening_socket.h"
#include "terminal_session.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <grp.h>
#include <iterator>
#include <memory>
#include <regex>
#include <sstream>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <thread>

namespace
{

using notation::document;
using testing::AnyOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

const std::string small_node = ebcom_table + R"(
[[path]]
dst_mac = "02:00:00:02:00:01"
port = "RLU1P"

[[pcep]]
id = 7
remote_id = 9
local_mac = "02:00:00:03:00:01"
remote_mac = "02:00:00:02:00:01"
vlan = 100

[[multicast]]
id = 300
members = [7]
)";

// The lines of every_command.kel that a node of another process carries out.
std::string lines_for_a_node()
{
    std::istringstream script(text_of(KELCTL_SOURCE_DIR "/tests/kelctl/program/every_command.kel"));
    std::string lines;
    for (std::string line; std::getline(script, line);)
        if (!line.starts_with("mpid") && !line.starts_with("abort") && line.find("examples/") == line.npos &&
            line.find("small_node") == line.npos)
            lines += line + "\n";
    return lines;
}

std::string between(const std::string &text, const std::string &begin, const std::string &end)
{
    const size_t from = text.find(begin) + begin.size();
    return text.substr(from, text.find(end, from) - from);
}

document json_of(const program_outcome &outcome)
{
    return notation::read_json(outcome.out);
}

// ---- The same as in the process itself ----

// In the process itself, lines of a shell are carried out on a node that its file brought up.
TEST(HeldNode, ShowsTextAsTheProcessItselfDoes)
{
    const dump_file_removed afterwards;
    const held_node node(small_node);
    const auto own =
        run_kelctl({.arguments = {"shell", "node.toml"}, .folder = node.folder(), .in = lines_for_a_node()});
    const auto other = node.ask({"shell"}, lines_for_a_node());
    EXPECT_EQ(other.out, between(own.out, "1 PCEP, 1 multicast group\n", "Taken down."));
    EXPECT_THAT(other.out, HasSubstr("schedulers and queues\n"));
    EXPECT_EQ(other.err, own.err.substr(0, own.err.find("the timestamp thread reported:"))); // in its take-down
    EXPECT_THAT(other.err, HasSubstr("trace records of"));
    EXPECT_EQ(other.status, own.status);
}

TEST(HeldNode, ShowsJsonAndTraceAsTheProcessItselfDoes)
{
    const dump_file_removed afterwards;
    const held_node node(small_node);
    const auto own =
        run_kelctl({.arguments = {"shell", "node.toml", "--json"}, .folder = node.folder(), .in = lines_for_a_node()});
    const auto other = node.ask({"shell", "--json"}, lines_for_a_node());
    // `up` has read counters, which the accelerator's snapshot counts as calls; its own document is another one.
    const auto without_calls = [](const std::string &out) {
        return std::regex_replace(out.substr(0, out.rfind("{\"command\":\"shell\"")),
                                  std::regex(R"("calls":\{[^}]*\})"), "");
    };
    EXPECT_EQ(without_calls(other.out), without_calls(own.out));
    EXPECT_GT(without_calls(own.out).size(), 10'000u);
    EXPECT_EQ(other.status, own.status);
}

TEST(HeldNode, TraceRecordsOfACommandComeWithIt)
{
    const held_node node(small_node);
    const auto own = run_text("ebcom port channel 0\n", {"--trace"});
    if (own.err.find("no trace") != std::string::npos)
        GTEST_SKIP() << "there is no tracer on this machine";
    const auto other = node.ask({"run", "-", "--trace"}, "ebcom port channel 0\n");
    EXPECT_EQ(other.err, own.err);
    EXPECT_THAT(other.err, StartsWith("FN_ENTER"));
    EXPECT_THAT(node.ask({"ebcom", "port", "channel", "0", "--trace", "--json"}).err,
                StartsWith("{\"trace\":{\"event\":\"FN_ENTER\""));
    EXPECT_EQ(node.ask({"pcep", "stats", "7"}).err, "");
}

TEST(HeldNode, ExitStatusIsTheCommands)
{
    const held_node node(small_node);
    EXPECT_EQ(node.ask({"pcep", "stats", "7"}).status, 0);
    EXPECT_EQ(node.ask({"pcep", "stats", "8"}).status, 1);
    EXPECT_EQ(node.ask({"fault", "add"}).status, 2);
    EXPECT_EQ(node.ask({"fault", "add"}).err,
              "kelctl: a RULE or --file is required\nSee \"kelctl fault add --help\".\n");
    EXPECT_EQ(node.ask({"pcep", "stats", "many"}).status, 2);
}

TEST(HeldNode, ScriptStopsAtTheLineThatFails)
{
    const held_node node(small_node);
    const std::string script = "group add 301\npcep stats 8\ngroup add 302\n";
    const auto outcome = node.ask({"run", "-", "--brief"}, script);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.err, HasSubstr("-:2: failed: kel_core_ic_pcep_fmt_stats_get(pcep_id=8"));
    EXPECT_THAT(outcome.err, EndsWith("-: stopped, 2 of 3 commands were run\n"));
    const std::string groups = notation::to_json(json_of(node.ask({"snapshot", "--json"})).at("result").at("groups"));
    EXPECT_THAT(groups, HasSubstr("301"));
    EXPECT_THAT(groups, Not(HasSubstr("302")));
}

// The page is that of the process that asks.
TEST(HeldNode, TextIsLaidOutForTheTerminalThatShowsIt)
{
    const held_node node(small_node);
    terminal_session narrow(
        {.arguments = {"--node", node.name(), "snapshot"}, .environment = {{"TERM", "dumb"}, {"COLUMNS", "40"}}});
    EXPECT_EQ(narrow.wait_for_end(), 0);
    EXPECT_THAT(narrow.screen(), HasSubstr("\x1b[1m"));
    EXPECT_THAT(node.ask({"snapshot"}).out, Not(HasSubstr("\x1b[1m")));
}

TEST(HeldNode, IsWatchedFromElsewhere)
{
    const held_node node(small_node);
    EXPECT_EQ(
        node.ask({"traffic", "stream", "add", "--to", "02:00:00:02:00:01", "--octets", "1000", "--rate", "8Mbit/s"})
            .status,
        0);
    const auto watched = node.ask({"watch", "--interval", "1ms", "--step", "10ms", "--for", "30ms", "--json"});
    EXPECT_EQ(watched.status, 0);
    std::istringstream lines(watched.out);
    std::vector<document> seen;
    for (std::string line; std::getline(lines, line);)
        seen.push_back(notation::read_json(line));
    ASSERT_EQ(seen.size(), 4u); // three steps, and the document
    const document &queue = seen[2].at("watch").at("queues")[0];
    EXPECT_EQ(queue.at("name"), "RLU1P");
    EXPECT_EQ(queue.at("sent").at("kbit_per_second"), 8000);
    EXPECT_EQ(seen[3].at("result").at("watched").at("nanoseconds"), 30'000'000);
    EXPECT_THAT(node.ask({"time", "show"}).out, HasSubstr("30 ms"));
    EXPECT_THAT(node.ask({"watch", "--queue", "RLU1P", "--for", "10ms", "--interval", "1ms"}).out,
                Not(HasSubstr("PCEP")));
    EXPECT_EQ(node.ask({"watch", "--queue", "RLU3P", "--for", "10ms"}).err,
              "kelctl: nothing to watch: no such queue or PCEP\n");
}

TEST(HeldNode, WatchSaysThatTheNodeIsGone)
{
    held_node node(small_node);
    running_kelctl watch(node.asking({"watch", "--interval", "100ms", "--json"}));
    EXPECT_TRUE(watch.shows("{\"watch\":"));
    EXPECT_EQ(node.ask({"down"}).status, 0);
    const auto outcome = watch.finish();
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.out, AnyOf(HasSubstr("disconnected"), HasSubstr("is being taken down"))); // whichever it meets
}

// ---- What a client adds, and the end ----

TEST(HeldNode, TakesDownWhatOthersAdded)
{
    held_node node(small_node);
    EXPECT_EQ(node.ask({"ebcom", "path", "add", "02:00:00:02:00:09", "--port", "RLU2P"}).status, 0);
    EXPECT_EQ(node.ask({"group", "add", "301"}).status, 0);
    const auto outcome = node.end(SIGINT);
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.err, "");
    EXPECT_THAT(outcome.out, EndsWith("The node is up until Ctrl-C.\n" + empty_again));
}

TEST(HeldNode, DownEndsItAndBothShowTheReport)
{
    held_node node(small_node);
    const auto down = node.ask({"down"});
    EXPECT_EQ(down.status, 0);
    EXPECT_EQ(down.out, empty_again);
    EXPECT_EQ(down.err, "");
    const auto outcome = node.program().finish();
    EXPECT_EQ(outcome.status, 0);
    EXPECT_THAT(outcome.out, EndsWith("The node is up until Ctrl-C.\n" + empty_again));
    EXPECT_NE(access(node.socket().c_str(), F_OK), 0);
    const auto again = node.ask({"down"});
    EXPECT_EQ(again.status, 1);
    EXPECT_THAT(again.err, HasSubstr("there is no node \"" + node.name() + "\""));
}

TEST(HeldNode, DownInJsonHasWhatWasUndone)
{
    const held_node node(small_node);
    const document down = json_of(node.ask({"down", "--json"}));
    EXPECT_EQ(down.at("command"), "down");
    EXPECT_EQ(down.at("ok"), true);
    const document &undone = down.at("result").at("undone");
    ASSERT_GT(undone.size(), 3u);
    EXPECT_EQ(undone[0], "group member remove 300 7");
    EXPECT_EQ(down.at("result").at("left_objects"), document::array());
}

TEST(HeldNode, FailedTakeDownIsTheResultOfDown)
{
    held_node node(small_node);
    node.ask({"fault", "add", "ork_ebcom_interface_delete=-4"});
    const auto down = node.ask({"down"});
    EXPECT_EQ(down.status, 1);
    EXPECT_THAT(down.err, HasSubstr("failed: kel_core_ic_ebcom_interface_delete()"));
    EXPECT_THAT(down.err, HasSubstr("not undone: interface"));
    const auto outcome = node.program().finish();
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.err, down.err);
}

TEST(HeldNode, WhatAFailureLeftIsKeptByDownAsWell)
{
    const file_in_folder file("node.toml", small_node);
    const std::string name = file.node_name();
    running_kelctl kelctl({.arguments = {"up", "node.toml", "--hold", "--keep", "--name", name},
                           .environment = {{"KEL_SOFTNODE_FAULTS", "ork_ebcom_pcep_path_create:1=-4"},
                                           {"XDG_RUNTIME_DIR", file.folder()}},
                           .folder = file.folder()});
    ASSERT_TRUE(kelctl.shows("The node is up until Ctrl-C.\n"));
    const auto down =
        run_kelctl({.arguments = {"--node", name, "down"}, .environment = {{"XDG_RUNTIME_DIR", file.folder()}}});
    EXPECT_EQ(down.status, 1);
    EXPECT_THAT(down.err, HasSubstr("the node is kept as it is"));
    EXPECT_EQ(kelctl.finish().status, 1);
}

// ---- The file again ----

// Without a terminal, as a service.
class Reload : public testing::Test
{
protected:
    std::string paths()
    {
        return node.ask({"ebcom", "path", "list"}).out;
    }

    void change_file(const std::string &text)
    {
        std::ofstream(node.folder() + "/node.toml") << text;
        node.program().signal(SIGHUP);
    }

    held_node node{small_node, {}, {"setsid"}};
};

TEST_F(Reload, HangupWithoutATerminalAppliesTheFile)
{
    EXPECT_EQ(node.ask({"group", "add", "301"}).status, 0);
    change_file(small_node + "[[path]]\ndst_mac = \"02:00:00:02:00:42\"\nport = \"RLU2P\"\n");
    ASSERT_TRUE(node.program().shows("02:00:00:02:00:42"));
    EXPECT_THAT(paths(), HasSubstr("02:00:00:02:00:42"));
    EXPECT_EQ(node.ask({"diff", "node.toml"}).status, 0);
    const auto outcome = node.end(SIGTERM);
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.err, "");
    EXPECT_THAT(outcome.out, EndsWith(empty_again));
}

TEST_F(Reload, WrongFileChangesNothingAndSaysWhy)
{
    const std::string before = paths();
    change_file(small_node + "[[path]]\ndst_mac = \"02:00:00:02:00:42\"\nport = \"nowhere\"\n");
    ASSERT_TRUE(node.program().shows("nothing was changed"));
    EXPECT_EQ(paths(), before);
    const auto outcome = node.end(SIGTERM);
    EXPECT_EQ(outcome.status, 0);
    EXPECT_THAT(outcome.err, HasSubstr("node.toml:22:8: port: unknown port"));
    EXPECT_THAT(outcome.out, EndsWith(empty_again));
}

TEST_F(Reload, StepThatFailsLeavesTheOldNode)
{
    const std::string before = paths();
    EXPECT_EQ(node.ask({"fault", "add", "ork_ebcom_pcep_path_create=-4"}).status, 0);
    change_file(small_node + "[[path]]\ndst_mac = \"02:00:00:02:00:42\"\nport = \"RLU2P\"\n");
    ASSERT_TRUE(node.program().shows("failed:"));
    EXPECT_EQ(paths(), before);
    EXPECT_EQ(node.end(SIGTERM).status, 0);
}

TEST(HeldNode, HangupOfItsTerminalTakesItDown)
{
    const file_in_folder file("node.toml", small_node);
    terminal_session up(
        {.arguments = {"up", "node.toml", "--hold", "--name", file.node_name()}, .folder = file.folder()});
    up.wait_for("until Ctrl-C.");
    up.send(SIGHUP);
    up.wait_for("Taken down.");
    EXPECT_EQ(up.wait_for_end(), 0);
}

// ---- Files ----

// The file of the same name beside the node is another one.
TEST(HeldNode, FilesAreThoseOfTheProcessThatAsks)
{
    const held_node node(small_node);
    std::ofstream(node.folder() + "/rules") << "ork_qos_queue_create:1=-5\n";
    std::ofstream(node.folder() + "/node.gv") << "the node's";
    const file_in_folder here("rules", "\xEF\xBB\xBFork_ebcom_pcep_path_create:3=-4\r\n");
    program_run run = node.asking({"fault", "add", "--file", "rules"});
    run.folder = here.folder();
    EXPECT_EQ(run_kelctl(run).status, 0);
    EXPECT_THAT(node.ask({"fault", "list"}).out, HasSubstr("ork_ebcom_pcep_path_create:3=-4"));
    EXPECT_THAT(node.ask({"fault", "list"}).out, Not(HasSubstr("ork_qos_queue_create")));

    run.arguments = {"--node", node.name(), "graph", "--output", "node.gv"};
    EXPECT_EQ(run_kelctl(run).out, "format  dot\nfile    node.gv\n");
    EXPECT_THAT(text_of(here.folder() + "/node.gv"), StartsWith("digraph"));
    EXPECT_EQ(text_of(node.folder() + "/node.gv"), "the node's");
}

TEST(HeldNode, FilesThatCannotBeOpenedAreReportedAsInTheProcessItself)
{
    const held_node node(small_node);
    for (const std::vector<std::string> &words : {std::vector<std::string>{"fault", "add", "--file", "nowhere"},
                                                  {"fault", "add", "--file", "node.toml"},
                                                  {"graph", "--output", "/nowhere/node.gv"}}) {
        const auto own = run_kelctl({.arguments = words, .folder = node.folder()});
        const auto other = node.ask(words);
        EXPECT_EQ(other.err, own.err);
        EXPECT_EQ(other.out, own.out);
        EXPECT_EQ(other.status, own.status);
        EXPECT_NE(other.status, 0);
    }
}

TEST(HeldNode, OpensNoFileThatARequestNames)
{
    const held_node node(small_node);
    std::ofstream(node.folder() + "/rules") << "ork_qos_queue_create:1=-5\n";
    sockets::client client(node.socket(), {"kelctl", 1});
    EXPECT_THAT(client.ask(R"({"command":["fault","add","--file","rules"]})"),
                HasSubstr("cannot be read: it was not sent along"));
    EXPECT_THAT(client.ask(R"({"command":["graph","--output","written"]})"),
                HasSubstr(R"("files":[{"name":"written")"));
    EXPECT_NE(access((node.folder() + "/written").c_str(), F_OK), 0);
}

// ---- What is refused ----

TEST(HeldNode, RefusesWhatChangesTheProcessItself)
{
    const held_node node(small_node);
    for (const std::vector<std::string> &words : {std::vector<std::string>{"up", "node.toml"},
                                                  {"sweep", "-"},
                                                  {"abort", "now"},
                                                  {"mpid", "5"},
                                                  {"traffic", "replay", "node.toml", "in.pcap", "--out", "out.pcap"}}) {
        const auto outcome = node.ask(words);
        EXPECT_EQ(outcome.status, 1) << words[0];
        EXPECT_THAT(outcome.err, EndsWith("\" cannot be asked of the node of another process\n")) << words[0];
    }
    sockets::client client(node.socket(), {"kelctl", 1});
    for (const char *request :
         {R"({"command":["up","node.toml"]})", R"({"command":["abort","now"]})", R"({"command":["run","node.kel"]})",
          R"({"command":["shell"]})", R"({"command":["sweep","s"]})", R"({"command":["check","node.toml"]})"})
        EXPECT_THAT(client.ask(request), HasSubstr("cannot be asked of the node of another process")) << request;
    EXPECT_THAT(node.ask({"shell", "node.toml"}).err, HasSubstr("the shell brings up no other one"));
}

TEST(HeldNode, ReadsTheWordsItself)
{
    const held_node node(small_node);
    sockets::client client(node.socket(), {"kelctl", 1});
    EXPECT_EQ(client.ask(R"({"command":["pcep","stats","900"]})"),
              R"({"error":"ID: 900 is not in the range 1 to 511"})");
    EXPECT_THAT(client.ask(R"({"command":["nothing"]})"), HasSubstr(R"({"error":"unknown command)"));
    EXPECT_THAT(client.ask(R"({"command":[]})"), HasSubstr(R"({"error":)"));
    EXPECT_THAT(client.ask(R"({"ask":"more"})"), HasSubstr(R"({"error":"there is no question)"));
    EXPECT_THAT(client.ask(R"([])"), HasSubstr(R"({"error":)"));
    EXPECT_THAT(client.ask("null"), HasSubstr(R"({"error":)"));
    EXPECT_THAT(client.ask("not JSON"), HasSubstr(R"({"error":)"));
    EXPECT_THAT(client.ask(R"({"command":["time","show"]})"), HasSubstr(R"("shown":{"nanoseconds":)"));
}

TEST(Node, MistakesAreFoundBeforeAnythingIsAsked)
{
    const auto outcome = run_kelctl({.arguments = {"--node", "nobody", "pcep", "stats", "many"}});
    EXPECT_EQ(outcome.status, 2);
    EXPECT_THAT(outcome.err, Not(HasSubstr("nobody")));
    const auto none = run_kelctl({.arguments = {"--node", "nobody", "time", "show"}});
    EXPECT_EQ(none.status, 1);
    EXPECT_EQ(none.err, "kelctl: there is no node \"nobody\"; \"kelctl nodes\" lists those that there are\n");
    EXPECT_EQ(json_of(run_kelctl({.arguments = {"--node=nobody", "time", "show", "--json"}})).at("error").at("message"),
              "there is no node \"nobody\"; \"kelctl nodes\" lists those that there are");
    EXPECT_EQ(run_kelctl({.arguments = {"--node"}}).err,
              "kelctl: --node: a value is missing\nSee \"kelctl --help\".\n");
    EXPECT_EQ(run_kelctl({.arguments = {"down"}}).status, 2);
}

// ---- Names and places ----

TEST(HeldNode, SecondOneOfItsNameIsRefusedBeforeItStarts)
{
    held_node node(small_node);
    const auto second =
        run_kelctl({.arguments = {"up", "node.toml", "--hold", "--name", node.name()}, .folder = node.folder()});
    EXPECT_EQ(second.status, 1);
    EXPECT_EQ(second.out, "");
    EXPECT_EQ(second.err, "kelctl: " + node.socket() + ": another process serves it\n");
    EXPECT_EQ(node.ask({"time", "show"}).status, 0);
    EXPECT_EQ(node.end(SIGTERM).status, 0);
}

TEST(HeldNode, SocketOfADeadProcessIsListedAndReplaced)
{
    held_node node(small_node);
    node.end(SIGKILL);
    const auto listed = [&node] {
        const document all = json_of(run_kelctl({.arguments = {"nodes", "--json"}}));
        for (const document &one : all.at("result").at("nodes"))
            if (one.at("name") == node.name())
                return one;
        return document();
    };
    const document dead = listed();
    EXPECT_EQ(dead.at("answers"), false);
    EXPECT_EQ(dead.at("process"), nullptr);
    EXPECT_EQ(dead.at("socket"), node.socket());
    EXPECT_THAT(node.ask({"time", "show"}).err, HasSubstr("no process serves this socket any more"));

    node.start();
    const document alive = listed();
    EXPECT_EQ(alive.at("answers"), true);
    EXPECT_EQ(alive.at("process"), node.program().process());
    EXPECT_EQ(alive.at("file"), node.folder() + "/node.toml");
    EXPECT_THAT(run_kelctl({.arguments = {"nodes"}}).out, HasSubstr(node.name() + "  yes"));
}

TEST(HeldNode, NameIsTheFilesUnlessGiven)
{
    const file_in_folder file("edge-test.toml", small_node);
    const std::string own = file.folder() + "/" + std::filesystem::path(file.folder()).filename().string() + ".toml";
    std::filesystem::rename(file.folder() + "/edge-test.toml", own);
    running_kelctl kelctl({.arguments = {"up", own, "--hold"}, .environment = {{"XDG_RUNTIME_DIR", file.folder()}}});
    const std::string name = std::filesystem::path(own).stem();
    EXPECT_TRUE(kelctl.shows("Others reach the node with kelctl --node " + name + "\n"));
    kelctl.signal(SIGTERM);
    EXPECT_EQ(kelctl.finish().status, 0);
}

TEST(HeldNode, NameThatIsNoneIsRefused)
{
    const file_in_folder file(".toml", small_node);
    const auto refused = [&](const std::vector<std::string> &words) {
        const auto outcome = run_kelctl({.arguments = words, .folder = file.folder()});
        EXPECT_EQ(outcome.status, 2);
        EXPECT_EQ(outcome.out, "");
        return outcome.err;
    };
    EXPECT_THAT(refused({"up", ".toml", "--hold", "--name", "a/b"}), StartsWith("kelctl: --name: \"a/b\" cannot be"));
    EXPECT_THAT(refused({"up", ".toml", "--hold"}), HasSubstr("; --name gives another"));
    EXPECT_THAT(refused({"up", ".toml", "--name", "a"}), HasSubstr("--name requires --hold"));
    const auto group = run_kelctl(
        {.arguments = {"up", ".toml", "--hold", "--name", "a", "--group", "no-such-group"}, .folder = file.folder()});
    EXPECT_EQ(group.err, "kelctl: there is no group \"no-such-group\"\n");
    EXPECT_EQ(group.status, 1);
}

// ---- Who may ----

// As another user, with no group but the given one.
std::vector<std::string> as_user(unsigned user, unsigned group)
{
    return {"setpriv", "--reuid=" + std::to_string(user), "--regid=" + std::to_string(group), "--clear-groups"};
}

constexpr unsigned owner = 65'001;
constexpr unsigned stranger = 65'002;
constexpr unsigned nobodys_group = 65'003;

class NodeOfAUser : public testing::Test
{
protected:
    void SetUp() override
    {
        if (geteuid() != 0)
            GTEST_SKIP() << "only root starts programs as other users";
        ASSERT_EQ(chown(file.folder().c_str(), owner, static_cast<gid_t>(-1)), 0);
        ASSERT_EQ(chmod(file.folder().c_str(), 0711), 0);
        ASSERT_EQ(chmod((file.folder() + "/node.toml").c_str(), 0644), 0);
    }

    program_run run(const std::vector<std::string> &words, unsigned user, unsigned group) const
    {
        return {.arguments = words,
                .environment = {{"XDG_RUNTIME_DIR", file.folder()}},
                .folder = file.folder(),
                .through = as_user(user, group)};
    }

    program_outcome ask_as(unsigned user, unsigned group) const
    {
        return run_kelctl(run({"--node", "node", "time", "show"}, user, group));
    }

    unsigned mode_of(const std::string &name) const
    {
        struct stat found = {};
        EXPECT_EQ(stat((file.folder() + name).c_str(), &found), 0) << name;
        return found.st_mode & 07777;
    }

    const file_in_folder file{"node.toml", small_node};
};

TEST_F(NodeOfAUser, IsForItsOwnerAndRoot)
{
    running_kelctl node(run({"up", "node.toml", "--hold"}, owner, nobodys_group));
    ASSERT_TRUE(node.shows("The node is up until"));
    EXPECT_EQ(mode_of("/kelctl"), 0700u);
    EXPECT_EQ(mode_of("/kelctl/node.sock"), 0600u);
    EXPECT_EQ(ask_as(owner, nobodys_group).status, 0);
    EXPECT_EQ(ask_as(stranger, nobodys_group).status, 1);
    EXPECT_EQ(ask_as(0, 0).status, 0);

    // Not only because of the modes.
    ASSERT_EQ(chmod((file.folder() + "/kelctl").c_str(), 0777), 0);
    ASSERT_EQ(chmod((file.folder() + "/kelctl/node.sock").c_str(), 0777), 0);
    const auto refused = ask_as(stranger, nobodys_group);
    EXPECT_EQ(refused.status, 1);
    EXPECT_THAT(refused.err, HasSubstr("this socket is for its owner only"));
}

// Those of root are not shown to others.
TEST_F(NodeOfAUser, IsNoneBeforeItIsHeld)
{
    EXPECT_EQ(run_kelctl(run({"nodes"}, stranger, nobodys_group)).out, "no nodes\n");
}

TEST_F(NodeOfAUser, IsForAGroupAsWellWhenThatIsGiven)
{
    const auto *group = getgrgid(1); // every system has it
    if (!group)
        GTEST_SKIP() << "there is no group 1";
    running_kelctl node(run({"up", "node.toml", "--hold", "--group", group->gr_name}, owner, 1));
    ASSERT_TRUE(node.shows("The node is up until"));
    EXPECT_EQ(mode_of("/kelctl"), 0750u);
    EXPECT_EQ(mode_of("/kelctl/node.sock"), 0660u);
    EXPECT_EQ(ask_as(stranger, 1).status, 0);
    EXPECT_EQ(ask_as(stranger, nobodys_group).status, 1);
}

// ---- Clients that do not behave ----

// A connection that says what it wants to.
class raw_client
{
public:
    explicit raw_client(const std::string &path) : socket_(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0))
    {
        const sockaddr_un address = sockets::address_of(path);
        EXPECT_EQ(connect(socket_.number(), reinterpret_cast<const sockaddr *>(&address), sizeof address), 0);
    }

    void say(const std::string &text) const
    {
        for (size_t sent = 0; sent < text.size();) {
            const ssize_t octets = send(socket_.number(), text.data() + sent, text.size() - sent, MSG_NOSIGNAL);
            if (octets < 0)
                return;
            sent += static_cast<size_t>(octets);
        }
    }

    // Returns when so many octets wait to be read.
    void wait_for(int octets) const
    {
        for (int waiting = 0; waiting < octets; std::this_thread::yield()) {
            char first;
            ASSERT_NE(recv(socket_.number(), &first, 1, MSG_PEEK | MSG_DONTWAIT), 0) << "the node is gone";
            ASSERT_EQ(ioctl(socket_.number(), FIONREAD, &waiting), 0);
        }
    }

    // All that it hears until the node disconnects it.
    std::string hear() const
    {
        std::string heard;
        std::array<char, 4096> piece;
        for (ssize_t octets; (octets = recv(socket_.number(), piece.data(), piece.size(), 0)) > 0;)
            heard.append(piece.data(), static_cast<size_t>(octets));
        return heard;
    }

private:
    sockets::descriptor socket_;
};

// The answer does not fit into the socket at once.
TEST(HeldNode, DownOfALargeNodeIsReportedToTheEnd)
{
    held_node node(ebcom_table + "[[path]]\ndst_mac = \"02:00:00:02:00:00\"\nport = 6\ncount = 6000\n");
    const raw_client slow(node.socket());
    slow.say("{\"command\":[\"down\"]}\n");
    EXPECT_TRUE(node.program().shows("Taken down."));
    slow.wait_for(64 << 10); // the rest, several times as much, has to wait for the reader
    const std::string heard = slow.hear();
    const document answer = notation::read_json(heard.substr(heard.find('\n') + 1));
    EXPECT_EQ(answer.at("result").at("shown").at("undone").size(), 6'002u);
    EXPECT_EQ(node.program().finish().status, 0);
}

TEST(HeldNode, ServesOthersWhileOneIsSlowGreedyOrTalksNonsense)
{
    held_node node(small_node);
    const raw_client slow(node.socket());
    slow.say(R"({"command":["time",)");
    const raw_client deaf(node.socket()); // asks again and again, and reads nothing
    for (int i = 0; i < 200; ++i)
        deaf.say("{\"command\":[\"snapshot\"]}\n");
    raw_client(node.socket()).say("{\"command\":[\"snapshot\"]}\n"); // gone before the answer
    const raw_client greedy(node.socket());
    std::thread talk([&greedy] { greedy.say(std::string(size_t{25} << 20, '[')); });

    EXPECT_EQ(node.ask({"time", "show"}).status, 0);
    sockets::client nonsense(node.socket(), {"kelctl", 1});
    for (const std::string &line :
         {std::string(1000, '['), std::string("\xff\xfe\0", 3), std::string("{}"), std::string()})
        EXPECT_THAT(nonsense.ask(line), StartsWith("{\"error\":"));
    EXPECT_EQ(node.ask({"time", "show"}).status, 0);
    talk.join();
    EXPECT_THAT(greedy.hear(), HasSubstr("the request is longer than"));
    EXPECT_EQ(node.ask({"time", "show"}).status, 0);
    const auto outcome = node.end(SIGTERM);
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.err, "");
}

TEST(HeldNode, MoreClientsThanItTakesAreTurnedAway)
{
    const held_node node(small_node);
    std::vector<std::unique_ptr<raw_client>> many;
    for (int i = 0; i < 16; ++i)
        many.push_back(std::make_unique<raw_client>(node.socket()));
    EXPECT_THAT(node.ask({"time", "show"}).err, HasSubstr("the limit is 16"));
    many.pop_back();
    EXPECT_EQ(node.ask({"time", "show"}).status, 0);
}

// ---- Nothing to do ----

std::string line_of_status(pid_t thread, const std::string &key)
{
    const std::string task = "/proc/" + std::to_string(thread) + "/task/" + std::to_string(thread) + "/status";
    return between(text_of(task), "\n" + key + ":", "\n");
}

// Fields 14 and 15 are the ticks of processor time.
std::string ticks_of(pid_t process)
{
    std::istringstream fields(text_of("/proc/" + std::to_string(process) + "/stat"));
    std::vector<std::string> all{std::istream_iterator<std::string>(fields), {}};
    return all.at(13) + " " + all.at(14);
}

TEST(HeldNode, UsesNoProcessorTimeWhileNobodyAsks)
{
    held_node node(small_node);
    const raw_client idle(node.socket());
    EXPECT_EQ(node.ask({"time", "show"}).status, 0);
    const pid_t process = node.program().process();
    const auto used = [process] {
        return line_of_status(process, "voluntary_ctxt_switches") + " " + ticks_of(process);
    };
    // A busy machine may wake it, to bring a page back or to notice late that the one that asked is gone; a node that looks
    // about by itself would be awake in every second.
    std::string before;
    std::string after = used();
    for (int seconds = 0; seconds < 10 && after != before; ++seconds) {
        before = after;
        std::this_thread::sleep_for(std::chrono::seconds(1));
        after = used();
    }
    EXPECT_EQ(after, before);
}

// ---- Completion ----

TEST(HeldNode, CompletionOffersWhatItHas)
{
    const held_node node(small_node);
    const auto offered = [](const std::vector<std::string> &words) {
        return run_kelctl({.arguments = with({"--complete"}, words)}).out;
    };
    EXPECT_EQ(offered({"--node", node.name(), "pcep", "remove", ""}), "7\n");
    EXPECT_EQ(offered({"--node", node.name().substr(0, node.name().size() - 1)}), node.name() + "\n");
    EXPECT_THAT(offered({"pcep", "remove", ""}), StartsWith("--json\t"));
    EXPECT_THAT(offered({"--node", node.name(), "pc"}), StartsWith("pcep\t"));
    EXPECT_THAT(offered({"--node", "nobody", "pc"}), StartsWith("pcep\t"));
    EXPECT_THAT(offered({"--no"}), HasSubstr("--node"));
}

TEST(HeldNode, ShellCompletesWhatItHasNow)
{
    const held_node node(small_node);
    terminal_session shell(
        {.arguments = {"--node", node.name(), "shell"},
         .environment = {
             {"TERM", "dumb"}, {"EDITRC", "/dev/null"}, {"NO_COLOR", "1"}, {"XDG_STATE_HOME", node.folder()}}});
    shell.wait_for("kelctl> ");
    shell.type("pcep remove \t");
    shell.wait_for("7 ");
    shell.type("\x15group add 301" + enter);
    shell.wait_for("kelctl> ");
    shell.type("group remove 301\t");
    shell.wait_for("301 ");
    EXPECT_EQ(node.ask({"down"}).status, 0);
    shell.type("\x15pcep remove \t"); // no id is offered any more
    shell.wait_for("pcep remove --");
    shell.type("\x15"
               "exit" +
               enter);
    EXPECT_EQ(shell.wait_for_end(), 0);
}

} // namespace

// `kelctl --softnode`: rows of the software accelerator on the node of another process, which is kelctl here.
#include "held_node.h"
#include "notation/json.h"
#include "program.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <fstream>
#include <sstream>

namespace
{

using json = notation::document;
using testing::HasSubstr;
using testing::StartsWith;

const std::string node_text = ebcom_table + "[[path]]\ndst_mac = \"02:00:00:02:00:01\"\nport = \"RLU1P\"\n"
                                            "[path.shaping]\nrate = \"8 Mbit/s\"\nburst = 2000\nthreshold = 8192\n";

class SoftnodeOption : public testing::Test
{
protected:
    std::string path() const
    {
        return node_.folder() + "/softnode.sock";
    }

    program_outcome there(const std::vector<std::string> &command, const std::string &in = "") const
    {
        return run_kelctl({.arguments = with({"--softnode", path()}, command), .folder = node_.folder(), .in = in});
    }

    void end_process()
    {
        EXPECT_EQ(node_.end(SIGTERM).status, 0);
    }

    held_node node_{node_text, {}, {}, {{"KEL_SOFTNODE_SOCKET", "softnode.sock"}}};
};

// The result of a snapshot, among the documents of other commands.
json snapshot_in(const std::string &output)
{
    std::istringstream lines(output);
    for (std::string line; std::getline(lines, line);)
        if (auto document = notation::try_read_json(line); document && (*document)["command"] == "snapshot")
            return (*document)["result"];
    return nullptr;
}

// Everything that uses the software accelerator only, from a node that is switched on just now.
const std::string every_row = "node reset\n"
                              "fault add ork_bind=-4 kel_init_attach:2*3=10\nfault add bogus\nfault list\n"
                              "fault release\nfault functions\nfault add --file bad.txt\nfault clear\nfault list\n"
                              "time show\ntime advance 250us\ntime show\n"
                              "traffic offer 02:00:00:02:00:01 --frames 1 --octets 100\n"
                              "traffic send 7 --frames 1 --octets 100\n"
                              "traffic stream add --to 02:00:00:02:00:01 --octets 100 --rate 1Mbit/s\n"
                              "time advance 10ms\ntime show\n"
                              "snapshot\ngraph\ngraph --format svg --output node.svg\n";

TEST_F(SoftnodeOption, RowsShowWhatTheyShowInTheProcessItself)
{
    std::ofstream(node_.folder() + "/bad.txt") << "ork_bind=-4\n  ork_bind:0=-1\n";
    for (const std::vector<std::string> &run :
         {std::vector<std::string>{"run", "-", "--keep-going"}, {"run", "-", "--keep-going", "--json"}}) {
        const auto here = run_kelctl({.arguments = run, .folder = node_.folder(), .in = every_row});
        const auto elsewhere = there(run, every_row);
        EXPECT_EQ(elsewhere.out, here.out);
        EXPECT_EQ(elsewhere.err, here.err);
        EXPECT_EQ(elsewhere.status, here.status);
        EXPECT_THAT(here.out, HasSubstr("10250")); // up to the end
    }
}

TEST_F(SoftnodeOption, SnapshotIsTheProcesss)
{
    const auto text = there({"snapshot"});
    EXPECT_EQ(text.status, 0);
    EXPECT_EQ(text.err, "");
    EXPECT_THAT(text.out, HasSubstr("paths         to 1 destination through 1 queue\n"));
    const auto shell =
        run_kelctl({.arguments = {"shell", "node.toml", "--json"}, .folder = node_.folder(), .in = "snapshot\n"});
    json here = snapshot_in(shell.out);
    json elsewhere = snapshot_in(there({"snapshot", "--json"}).out);
    here["calls"] = elsewhere["calls"] = nullptr; // a shell shows no statistics of the node
    EXPECT_EQ(elsewhere, here);
    EXPECT_EQ(elsewhere["paths"][0]["mac"], "02:00:00:02:00:01");
}

TEST_F(SoftnodeOption, TrafficPassesThroughTheProcesssNode)
{
    EXPECT_EQ(there({"traffic", "offer", "02:00:00:02:00:01", "--frames", "3", "--octets", "1000"}).status, 0);
    EXPECT_EQ(there({"time", "advance", "1s"}).status, 0);
    EXPECT_EQ(there({"time", "show"}).out, "1 s\n");
    EXPECT_EQ(
        notation::read_json(there({"snapshot", "--json"}).out)["result"]["queues"][0]["counters"]["sent"]["frames"], 3);
}

TEST_F(SoftnodeOption, FaultsHitTheProcesssCalls)
{
    const file_in_folder rules("rules", "ork_ebcom_pcep_path_delete=-4\n");
    EXPECT_EQ(there({"fault", "add", "--file", rules.folder() + "/rules"}).err, "");
    const auto outcome = node_.end(SIGTERM);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.err, HasSubstr("refused by the driver kit: ork_ebcom_pcep_path_delete, code -4"));
}

TEST_F(SoftnodeOption, ShellAsksWhatIsTyped)
{
    const auto outcome = there({"shell"}, "time advance 2ms\ntime show\nebcom stop\n");
    EXPECT_THAT(outcome.out, HasSubstr("2 ms\n"));
    EXPECT_THAT(outcome.err,
                HasSubstr("\"ebcom stop\" requires more than the software accelerator of another process\n"));
}

TEST_F(SoftnodeOption, RowsThatNeedMoreAreRefused)
{
    for (const std::vector<std::string> &row : {std::vector<std::string>{"ebcom", "start"},
                                                {"pcep", "locate", "02:00:00:02:00:01"},
                                                {"up", "node.toml"},
                                                {"sweep", "a.kel"},
                                                {"watch"},
                                                {"traffic", "replay", "node.toml", "in.pcap", "--out", "out.pcap"}}) {
        const auto outcome = there(row);
        EXPECT_EQ(outcome.status, 1);
        EXPECT_EQ(outcome.out, "");
        EXPECT_THAT(outcome.err, StartsWith("kelctl: \"" + row[0]));
        EXPECT_THAT(outcome.err, HasSubstr("\" requires more than the software accelerator of another process\n"));
    }
}

TEST_F(SoftnodeOption, RowsThatNeedNoNodeAreCarriedOutHere)
{
    EXPECT_EQ(there({"check", "node.toml"}).status, 0);
    EXPECT_EQ(there({"--version"}).out, run_kelctl({.arguments = {"--version"}}).out);
}

TEST_F(SoftnodeOption, SaysThatTheProcessIsGone)
{
    end_process();
    const auto text = there({"time", "show"});
    EXPECT_EQ(text.status, 1);
    EXPECT_EQ(text.err, "kelctl: " + path() + ": no connection: No such file or directory\n");
    const auto document = there({"time", "show", "--json"});
    EXPECT_EQ(document.status, 1);
    EXPECT_EQ(notation::read_json(document.out)["error"]["message"],
              path() + ": no connection: No such file or directory");
}

TEST(SoftnodeOptionAlone, NeedsAValue)
{
    const auto outcome = run_kelctl({.arguments = {"--softnode"}});
    EXPECT_EQ(outcome.status, 2);
    EXPECT_THAT(outcome.err, StartsWith("kelctl: --softnode: a value is missing\n"));
}

TEST(SoftnodeOptionAlone, IsNotForAHeldNode)
{
    const auto outcome = run_kelctl({.arguments = {"--node", "edge", "--softnode", "a.sock", "time", "show"}});
    EXPECT_EQ(outcome.status, 2);
    EXPECT_THAT(outcome.err, HasSubstr("--node and --softnode name different processes; one of them is enough\n"));
}

TEST(SoftnodeOptionAlone, IsCompleted)
{
    EXPECT_THAT(run_kelctl({.arguments = {"--complete", "--s"}}).out, StartsWith("--softnode\task the process"));
    EXPECT_EQ(run_kelctl({.arguments = {"--complete", "--softnode", ""}}).out, "@files\n");
    EXPECT_EQ(run_kelctl({.arguments = {"--complete", "--softnode", "a.sock", "sna"}}).out,
              run_kelctl({.arguments = {"--complete", "sna"}}).out);
}

} // namespace

// `kelctl up --watch` and `kelctl watch`: virtual traffic, step by step.
#include "program.h"
#include "temporary_folder.h"
#include "terminal_session.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <fstream>

namespace
{

using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

// 12 Mbit/s into 10: after the bucket and the threshold are used up, a sixth is dropped.
const std::string crowded = ebcom_table +
                            "[[path]]\ndst_mac = \"02:00:00:02:00:01\"\nport = \"RLU1P\"\n"
                            "shaping = { rate = \"10 Mbit/s\", burst = \"4 KiB\", threshold = \"64 KiB\" }\n"
                            "[[traffic]]\nto = \"02:00:00:02:00:01\"\noctets = 1500\nrate = \"12 Mbit/s\"\n";

TEST(Watch, ExampleFileShowsShapingAtWork)
{
    const auto outcome = run_kelctl(
        {.arguments = {"up", "examples/node.toml", "--watch", "--interval", "0s", "--step", "500ms", "--for", "1s"},
         .environment = {},
         .folder = KELCTL_SOURCE_DIR});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(outcome.out, text_of(KELCTL_EXPECTED_DIR "/up_watch_example.expected"));
    EXPECT_LE(widest_line(outcome.out), 80u);
}

TEST(Watch, LastStepIsAsLongAsWhatIsLeft)
{
    const auto outcome = kelctl_up(crowded, {}, {"--watch", "--interval", "0s", "--step", "400ms", "--for", "1s"});
    EXPECT_EQ(outcome.status, 0);
    for (const char *time : {"virtual time  400 ms\n", "virtual time  800 ms\n", "virtual time  1 s\n"})
        EXPECT_THAT(outcome.out, HasSubstr(time));
    EXPECT_THAT(outcome.out, EndsWith("\n" + empty_again));
}

TEST(Watch, StepsChangeNothingInTheEnd)
{
    const auto counters = [](const char *step) {
        const std::string out =
            kelctl_up(crowded, {}, {"--watch", "--interval", "0s", "--step", step, "--for", "1s"}).out;
        return out.substr(std::min(out.find("EBCOM global statistics"), out.size()));
    };
    const std::string whole = counters("1s");
    EXPECT_THAT(whole, HasSubstr("\nRLU1P     1000      837      122       41 "));
    EXPECT_EQ(counters("7ms"), whole);
}

TEST(Watch, JsonIsALineForEachStep)
{
    const auto outcome =
        kelctl_up(crowded, {}, {"--watch", "--interval", "0s", "--step", "250ms", "--for", "500ms", "--json"});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.err, "");
    EXPECT_THAT(
        outcome.out,
        StartsWith(
            R"({"watch":{"nanoseconds":250000000,"time":"virtual","queues":[{"port":6,"name":"RLU1P",)"
            R"("sent":{"frames":212,"frames_per_second":848,"kbit_per_second":10176},)"
            R"("frames_dropped":0,"frames_waiting":38}],"pceps":[],)"
            R"("delays":[{"port":6,"name":"RLU1P","frames":212,"sum":3807024000,"median":17694720,)"
            R"("p99":38535168,"largest":38923200,"deepest_frames":39,"deepest_octets":58500,"waiting_octets":57000}]}})"
            "\n"
            R"({"watch":{"nanoseconds":500000000,"time":"virtual","queues":[{"port":6,"name":"RLU1P",)"
            R"("sent":{"frames":420,"frames_per_second":832,"kbit_per_second":9984},)"
            R"("frames_dropped":39,"frames_waiting":41}],"pceps":[],)"
            R"("delays":[{"port":6,"name":"RLU1P","frames":420,"sum":13894249600,"median":38535168,)"
            R"("p99":50069504,"largest":50323200,"deepest_frames":42,"deepest_octets":63000,"waiting_octets":61500}]}})"
            "\n"
            R"({"command":"up","arguments":{"file":"node.toml","watch":true,"interval":0,"step":250000000,)"
            R"("for":500000000},"ok":true,)"));
    EXPECT_THAT(outcome.out, HasSubstr(R"("watched":{"nanoseconds":500000000})"));
    EXPECT_EQ(std::count(outcome.out.begin(), outcome.out.end(), '\n'), 3);
}

TEST(Watch, CtrlCEndsItAndTakesTheNodeDown)
{
    const file_in_folder file("node.toml", crowded);
    running_kelctl kelctl({.arguments = {"up", "node.toml", "--watch"}, .environment = {}, .folder = file.folder()});
    ASSERT_TRUE(kelctl.shows("virtual time  200 ms\n"));
    kelctl.signal(SIGINT);
    const auto outcome = kelctl.finish();
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.err, "");
    EXPECT_THAT(outcome.out, EndsWith("\n" + empty_again));
}

// The other watch, begun later, shows that there was time enough for steps.
TEST(Watch, WaitsAsLongAsItsInterval)
{
    const file_in_folder file("node.toml", crowded);
    running_kelctl slow({.arguments = {"up", "node.toml", "--watch", "--interval", "3600s"},
                         .environment = {},
                         .folder = file.folder()});
    ASSERT_TRUE(slow.shows("RLU1P"));
    running_kelctl usual({.arguments = {"up", "node.toml", "--watch"}, .environment = {}, .folder = file.folder()});
    ASSERT_TRUE(usual.shows("virtual time  600 ms\n"));
    slow.signal(SIGINT);
    const auto outcome = slow.finish();
    EXPECT_EQ(outcome.status, 0);
    EXPECT_THAT(outcome.out, Not(HasSubstr("virtual time")));
}

TEST(Watch, WithHoldTheNodeStandsOnAfterItsTime)
{
    const file_in_folder file("node.toml", crowded);
    running_kelctl kelctl(
        {.arguments = {"up", "node.toml", "--watch", "--for", "1ms", "--hold", "--name", file.node_name()},
         .environment = {},
         .folder = file.folder()});
    ASSERT_TRUE(kelctl.shows("The node is up until Ctrl-C.\n"));
    kelctl.signal(SIGTERM);
    const auto outcome = kelctl.finish();
    EXPECT_EQ(outcome.status, 0);
    EXPECT_THAT(outcome.out, EndsWith("Ctrl-C.\n" + empty_again));
}

TEST(Watch, TerminalIsDrawnOver)
{
    const file_in_folder file("node.toml", crowded);
    terminal_session up(
        {.arguments = {"up", "node.toml", "--watch", "--interval", "1ms"}, .environment = {}, .folder = file.folder()});
    up.wait_for("\x1b[9A");
    up.wait_for("400 ms");
    up.type("\x03");
    up.wait_for("Taken down. The node is empty again.");
    EXPECT_EQ(up.wait_for_end(), 0);
}

TEST(Watch, CountersThatCannotBeReadEndIt)
{
    const auto outcome = kelctl_up(crowded, {{"KEL_SOFTNODE_FAULTS", "kel_init_qos_queue_stats_get:2=9"}},
                                   {"--watch", "--interval", "0s", "--for", "1s"});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.err,
                testing::HasSubstr("failed: kel_core_ic_ebcom_queue_stats_get(dst_mac=02:00:00:02:00:01)\n"));
    EXPECT_THAT(outcome.out, Not(HasSubstr("virtual time  400 ms")));
    EXPECT_THAT(outcome.out + outcome.err, HasSubstr("\n" + empty_again));
}

TEST(Watch, ItsOptionsMeanNothingWithoutIt)
{
    const std::vector<std::vector<std::string>> options = {{"--interval", "1s"}, {"--step", "1s"}, {"--for", "1s"},
                                                           {"--queue", "6"},     {"--pcep", "7"},  {"--sort", "rate"},
                                                           {"--plot", "x.svg"}};
    for (const auto &option : options) {
        const auto outcome = kelctl_up(crowded, {}, option);
        EXPECT_EQ(outcome.status, 2);
        EXPECT_THAT(outcome.err, HasSubstr(option.front() + " requires --watch"));
    }
}

// ---- Pictures ----

class WatchPlot : public testing::Test
{
protected:
    WatchPlot()
    {
        std::ofstream(folder.path() + "/node.toml") << crowded;
        std::ofstream(folder.path() + "/plot.svg") << "as it was";
    }

    program_outcome up(const std::vector<std::string> &options, const std::map<std::string, std::string> &environment)
    {
        const std::vector<std::string> words = {"up",     "node.toml", "--watch", "--interval", "0s",
                                                "--step", "10ms",      "--for",   "500ms"};
        return run_kelctl({.arguments = with(words, options), .environment = environment, .folder = folder.path()});
    }

    std::string plot() const
    {
        return text_of(folder.path() + "/plot.svg");
    }

    temporary_folder folder;
};

TEST_F(WatchPlot, ShowsTheQueueAndItsDrops)
{
    const auto outcome = up({"--plot", "plot.svg"}, {});
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_EQ(outcome.err, "");
    for (const char *shown : {"<svg", ">rate, Mbit/s<", ">backlog, KiB<", ">mean delay, ms<", ">virtual time, ms<",
                              ">RLU1P<", ">RLU1P drops<", "</svg>"})
        EXPECT_THAT(plot(), HasSubstr(shown));
    EXPECT_THAT(outcome.out, HasSubstr("EBCOM global statistics"));
}

TEST_F(WatchPlot, IsTheSameEveryTime)
{
    EXPECT_EQ(up({"--plot", "plot.svg"}, {}).status, 0);
    const std::string first = plot();
    EXPECT_EQ(up({"--plot", "plot.svg"}, {}).status, 0);
    EXPECT_EQ(plot(), first);
}

TEST_F(WatchPlot, WithoutGnuplotNothingIsStarted)
{
    const auto outcome = up({"--plot", "plot.svg"}, {{"PATH", folder.path()}});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(outcome.err, "kelctl: gnuplot is not installed\n");
    EXPECT_EQ(plot(), "as it was");
}

TEST_F(WatchPlot, AWatchThatFailsLeavesTheFile)
{
    const auto outcome = up({"--plot", "plot.svg"}, {{"KEL_SOFTNODE_FAULTS", "kel_init_qos_queue_stats_get:5=9"}});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(plot(), "as it was");
}

TEST_F(WatchPlot, AFileThatCannotBeWrittenIsAnErrorAndTheNodeIsTakenDown)
{
    const auto outcome = up({"--plot", "nowhere/plot.svg"}, {});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.err, "nowhere/plot.svg: cannot be written: No such file or directory\n");
    EXPECT_THAT(outcome.out, EndsWith("\n" + empty_again));
}

// ---- The command ----

const std::string two_queues = R"(ebcom start
ebcom path add 02:00:00:02:00:01 --port RLU1P --rate "8 Mbit/s" --burst "4 KiB" --threshold "64 KiB"
ebcom path add 02:00:00:02:00:02 --port RLU1Q
pcep start
pcep add 7 --remote-id 9 --local 02:00:00:03:00:01 --remote 02:00:00:02:00:01 --vlan 1
traffic stream add --to 02:00:00:02:00:01 --octets 1000 --rate "4 Mbit/s"
traffic stream add --to 02:00:00:02:00:02 --octets 1000 --rate "16 Mbit/s"
)";

TEST(Watch, ScriptSeesWhatItMade)
{
    const auto outcome = run_text(two_queues + "watch --interval 0s --step 100ms --for 200ms\ntime show\n");
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_THAT(outcome.out, StartsWith("virtual time  100 ms\n"
                                        "\n"
                                        "queue  frames/s  kbit/s  frames sent  frames dropped  frames waiting\n"
                                        "RLU1P       500    4000           50               0               0\n"
                                        "RLU1Q      2000   16000          200               0               0\n"));
    EXPECT_THAT(outcome.out, HasSubstr("virtual time  200 ms\n"));
    EXPECT_THAT(outcome.out, EndsWith("\n200 ms\n"));
}

TEST(Watch, RowsAreSortedAndFiltered)
{
    const auto sorted = run_text(two_queues + "watch --interval 0s --step 100ms --for 100ms --sort rate\n");
    EXPECT_THAT(sorted.out, HasSubstr("\nRLU1Q      2000   16000          200               0               0\n"
                                      "RLU1P       500    4000           50               0               0\n"));
    const auto queue = run_text(two_queues + "watch --interval 0s --step 100ms --for 100ms --queue RLU1Q\n");
    EXPECT_THAT(queue.out, HasSubstr("\nRLU1Q      2000 "));
    EXPECT_THAT(queue.out, Not(HasSubstr("RLU1P")));
    EXPECT_THAT(queue.out, Not(HasSubstr("PCEP")));
    const auto pcep = run_text(two_queues + "watch --interval 0s --step 100ms --for 100ms --pcep 7\n");
    EXPECT_THAT(pcep.out, HasSubstr("PCEP"));
    EXPECT_THAT(pcep.out, Not(HasSubstr("RLU1")));
}

TEST(Watch, NothingToWatchIsAnError)
{
    EXPECT_EQ(run_kelctl({.arguments = {"watch"}}).err, "kelctl: nothing to watch: no such queue or PCEP\n");
    const auto outcome = run_text(two_queues + "watch --queue RLU2P\n");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.err, HasSubstr(":8: nothing to watch: no such queue or PCEP\n"));
}

TEST(Watch, CtrlCEndsItAndTheShellGoesOn)
{
    terminal_session shell({.arguments = {"shell"}});
    shell.type("ebcom start" + enter + "ebcom path add 02:00:00:02:00:01 --port RLU1P" + enter +
               "watch --interval 1ms" + enter);
    shell.wait_for("  400 ms");
    shell.type("\x03");
    shell.type("time show" + enter);
    shell.wait_for(" ms" + line_end);
    shell.type("exit" + enter);
    EXPECT_EQ(shell.wait_for_end(), 0);
}

} // namespace

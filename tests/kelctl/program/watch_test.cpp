// `kelctl up --watch`: virtual traffic, step by step.
#include "program.h"
#include "terminal_session.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <sstream>

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
}

TEST(Watch, FitsEightyColumns)
{
    std::istringstream lines(text_of(KELCTL_EXPECTED_DIR "/up_watch_example.expected"));
    size_t count = 0;
    for (std::string line; std::getline(lines, line); ++count)
        EXPECT_LE(line.size(), 80u) << line;
    EXPECT_GT(count, 80u);
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
        StartsWith(R"({"watch":{"nanoseconds":250000000,"queues":[{"port":6,"name":"RLU1P",)"
                   R"("sent":{"frames":212,"frames_per_second":848,"kbit_per_second":10176},)"
                   R"("frames_dropped":0,"frames_waiting":38}],"pceps":[],)"
                   R"("delays":[{"port":6,"name":"RLU1P","frames":212,"sum":3807024000,"median":17694720,)"
                   R"("p99":38535168,"largest":38923200,"deepest_frames":39,"deepest_octets":58500}]}})"
                   "\n"
                   R"({"watch":{"nanoseconds":500000000,"queues":[{"port":6,"name":"RLU1P",)"
                   R"("sent":{"frames":420,"frames_per_second":832,"kbit_per_second":9984},)"
                   R"("frames_dropped":39,"frames_waiting":41}],"pceps":[],)"
                   R"("delays":[{"port":6,"name":"RLU1P","frames":420,"sum":13894249600,"median":38535168,)"
                   R"("p99":50069504,"largest":50323200,"deepest_frames":42,"deepest_octets":63000}]}})"
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

TEST(Watch, WithHoldTheNodeStandsOnAfterItsTime)
{
    const file_in_folder file("node.toml", crowded);
    running_kelctl kelctl({.arguments = {"up", "node.toml", "--watch", "--for", "1ms", "--hold"},
                           .environment = {},
                           .folder = file.folder()});
    ASSERT_TRUE(kelctl.shows("Holding the node until Ctrl-C.\n"));
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
    for (const char *option : {"--interval", "--step", "--for"}) {
        const auto outcome = kelctl_up(crowded, {}, {option, "1s"});
        EXPECT_EQ(outcome.status, 2);
        EXPECT_THAT(outcome.err, HasSubstr(std::string(option) + " needs --watch as well"));
    }
}

} // namespace

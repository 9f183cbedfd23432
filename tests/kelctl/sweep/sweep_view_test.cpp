// The layout of a sweep's report.
#include "kelctl/sweep/sweep_view.h"

#include "notation/json.h"
#include "terminal/terminal.h"

#include <gtest/gtest.h>

namespace kelctl
{
namespace
{

const page plain{.paint = terminal::painter(false)};

sweep_run run_of(uint64_t call, uint32_t line, std::optional<uint32_t> code)
{
    sweep_run run;
    run.function = "ork_bind";
    run.call = call;
    run.line = line;
    run.code = code;
    return run;
}

sweep_run leaving(sweep_run run, verdict came_out, const char *kind, const char *why)
{
    run.came_out = came_out;
    run.left = fields::array({{{"kind", kind}, {"name", "1"}}, {{"kind", kind}, {"name", "2"}}});
    if (why)
        run.whys = {why};
    return run;
}

TEST(SweepView, RunsOfACallThatCameOutAlikeTakeOneRow)
{
    const sweep_report report = {{},
                                 {run_of(1, 3, 13), run_of(1, 3, 10), run_of(1, 3, 13), run_of(2, 0, std::nullopt)}};
    EXPECT_EQ(sweep_view(report, plain), "call        line  code     outcome\n"
                                         "ork_bind:1     3  10,13    clean\n"
                                         "ork_bind:2     -  -        clean\n"
                                         "\n4 runs: 4 clean\n");
}

TEST(SweepView, ReasonsAreListedOnceAndMarked)
{
    const auto documented = [](uint64_t call, const char *why) {
        return leaving(run_of(call, 3, 13), verdict::left_as_documented, "path", why);
    };
    const sweep_report report = {{},
                                 {documented(1, "one reason"), documented(2, "another"), documented(3, "one reason")}};
    EXPECT_EQ(sweep_view(report, plain), "call        line  code     outcome\n"
                                         "ork_bind:1     3  13       left, as documented [1]: 2 paths\n"
                                         "ork_bind:2     3  13       left, as documented [2]: 2 paths\n"
                                         "ork_bind:3     3  13       left, as documented [1]: 2 paths\n"
                                         "\n [1] one reason\n [2] another\n"
                                         "\n3 runs: 0 clean; 3 left, as documented\n");
}

TEST(SweepView, RowsOfANarrowPageAreFolded)
{
    const sweep_report report = {{}, {leaving(run_of(1, 3, 13), verdict::left_as_documented, "path", "a long reason")}};
    EXPECT_EQ(sweep_view(report, {.paint = terminal::painter(false), .width = 40}),
              "call  line  code  outcome\n"
              "ork_bind:1  3  13  left, as documented\n"
              "    [1]: 2 paths\n"
              "\n [1] a long reason\n"
              "\n1 runs: 0 clean; 1 left, as documented\n");
}

TEST(SweepView, OtherThreadsAndBadEndsAreNamed)
{
    sweep_run crashed = run_of(1, 0, std::nullopt);
    crashed.thread = 1;
    crashed.came_out = verdict::crashed;
    sweep_run hung = run_of(2, 0, std::nullopt);
    hung.came_out = verdict::hung;
    const sweep_report report = {{}, {crashed, hung, leaving(run_of(3, 1, 13), verdict::left, "pcep", nullptr)}};
    EXPECT_EQ(sweep_view(report, plain), "call                 line  code     outcome\n"
                                         "thread 1 ork_bind:1     -  -        crashed\n"
                                         "ork_bind:2              -  -        hung\n"
                                         "ork_bind:3              1  13       left: 2 pceps\n"
                                         "\n3 runs: 0 clean; 1 left; 1 crashed; 1 hung\n");
}

TEST(SweepFields, TellEveryRun)
{
    const sweep_report report = {{}, {run_of(1, 3, 13)}, 7};
    fields document = sweep_fields(report);
    EXPECT_EQ(document["planned"], 7);
    EXPECT_EQ(notation::to_json(document["tally"]), R"({"clean":1,"documented":0,"left":0,"crashed":0,"hung":0})");
    EXPECT_EQ(notation::to_json(document["runs"]),
              R"([{"function":"ork_bind","call":1,"thread":0,"fault_code":0,"persistent":false,"outcome":"clean",)"
              R"("line":3,"operation":null,"code":13,"left":[],"documented":[],"take_down":[]}])");
}

} // namespace
} // namespace kelctl

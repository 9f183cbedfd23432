// `kelctl sweep`: the real sweep over real scripts.
#include "terminal_session.h"
#include "tests/notation/print.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace
{

using json = notation::document;
using testing::HasSubstr;
using testing::StartsWith;

program_outcome sweep_text(const std::string &script, const std::vector<std::string> &options = {})
{
    return run_kelctl({.arguments = with({"sweep", "-"}, options), .in = script});
}

json sweep_json(const std::string &script)
{
    return notation::read_json(sweep_text(script, {"--json"}).out);
}

TEST(Sweep, WholeNodeIsCleanButForWhatIsDocumented)
{
    const auto outcome =
        run_kelctl({.arguments = {"sweep", "examples/whole-node.kel", "--json"}, .folder = KELCTL_SOURCE_DIR});
    EXPECT_EQ(outcome.status, 0) << outcome.out.substr(0, 4000);
    const json printed = notation::read_json(outcome.out).at("result");
    EXPECT_EQ(printed.at("tally").at("crashed"), 0);
    EXPECT_EQ(printed.at("tally").at("hung"), 0);
    EXPECT_EQ(printed.at("tally").at("left"), 0);
    EXPECT_GT(printed.at("tally").at("clean").number<int>(), 200);
    EXPECT_GT(printed.at("tally").at("documented").number<int>(), 10);
}

TEST(Sweep, ShowsARowForEachCallAndWhyThingsAreLeft)
{
    const auto outcome = sweep_text("# one bound PCEP\n"
                                    "pcep start\n"
                                    "pcep add 8 --remote-id 10 --local 02:00:00:03:00:01 --remote 02:00:00:02:00:01 "
                                    "--vlan 100\n");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(outcome.out, R"(call                     line  code     outcome
kel_init_attach:1           2  3,10,13  clean
ork_ebcom_pcep_create:1     3  13       clean
ork_bind:1                  3  13       left, as documented [1]: 1 pcep

 [1] kel_core_ic_pcep_add(): when only the binding fails, the PCEP stays in the
     driver kit and the id stays free.

18 runs: 12 clean; 6 left, as documented
)");
}

TEST(Sweep, ScriptThatFailsByItselfIsNotSwept)
{
    const auto outcome = sweep_text("pcep start\npcep remove 7\n");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(outcome.err, "-: line 2 fails without any fault, code 4\n");
}

TEST(Sweep, WrongScriptIsToldLikeThatOfRun)
{
    const auto outcome = sweep_text("ebcom strat\n");
    EXPECT_EQ(outcome.status, 2);
    EXPECT_THAT(outcome.err, StartsWith("-:1:7: unknown command \"ebcom strat\""));
}

TEST(Sweep, CtrlCShowsWhatWasFoundUntilThen)
{
    terminal_session sweep({.arguments = {"sweep", "examples/whole-node.kel"}, .folder = KELCTL_SOURCE_DIR});
    sweep.wait_for("sweeping ");
    sweep.type("\x03");
    sweep.wait_for("kel_init_attach:1");
    sweep.wait_for(" runs: ");
    sweep.wait_for("examples/whole-node.kel: interrupted after ");
    EXPECT_THAT(sweep.wait_for(" runs"), testing::MatchesRegex("[0-9]+ of [0-9]+"));
    EXPECT_EQ(sweep.wait_for_end(), 1);
}

TEST(Sweep, ScriptEndsAtItsExit)
{
    EXPECT_EQ(sweep_json("exit\nebcom start\n").at("result").at("planned"), 0);
}

TEST(Sweep, TakesDownWhatTheScriptLeaves)
{
    const json printed = sweep_json("ebcom interface create\n").at("result");
    EXPECT_EQ(printed.at("left_undisturbed"), json::array());
}

} // namespace

/*
 * fault_rule_test.cpp - how a fault rule is written, and what is said about one that is not.
 */
#include "softnode/faults/fault_rule.h"

#include "softnode/faults/closed_functions.h"

#include <gtest/gtest.h>

using namespace softnode;

namespace
{

FaultRule good(std::string_view text)
{
    FaultRule rule;
    const auto problem = read_fault_rule(text, rule);
    EXPECT_FALSE(problem) << problem->what;
    return rule;
}

/* What is wrong with a rule. */
FaultProblem problem(std::string_view text)
{
    FaultRule rule;
    return read_fault_rule(text, rule).value_or(FaultProblem{});
}

void expect_problem(std::string_view text, std::size_t at, std::string_view what)
{
    EXPECT_EQ(problem(text).what, what) << text;
    EXPECT_EQ(problem(text).at, at) << text;
}

} // namespace

TEST(FaultRule, WithoutCallHitsEveryCall)
{
    const FaultRule rule = good("vorn_tu_wait_event=-5");
    EXPECT_EQ(rule.function, closed_function("vorn_tu_wait_event"));
    EXPECT_EQ(rule.effects.result, -5);
    EXPECT_TRUE(rule.hits(1));
    EXPECT_TRUE(rule.hits(1'000'000'000'000));
}

TEST(FaultRule, WithCallHitsThatOneOnly)
{
    const FaultRule rule = good("ork_qos_scheduler_create:3=-4");
    EXPECT_FALSE(rule.hits(2));
    EXPECT_TRUE(rule.hits(3));
    EXPECT_FALSE(rule.hits(4));
}

TEST(FaultRule, WithTimesHitsThatManyFromTheCallOn)
{
    const FaultRule rule = good("kel_init_attach:2*3=10");
    EXPECT_FALSE(rule.hits(1));
    EXPECT_TRUE(rule.hits(2));
    EXPECT_TRUE(rule.hits(4));
    EXPECT_FALSE(rule.hits(5));
}

TEST(FaultRule, KeepsItsText)
{
    EXPECT_EQ(good("kel_init_attach:2*3=10").text, "kel_init_attach:2*3=10");
}

TEST(FaultRule, TakesAnyResultOf32Bits)
{
    EXPECT_EQ(good("kel_init_attach=4294967295").effects.result, 4'294'967'295);
    EXPECT_EQ(good("kel_init_attach=-2147483648").effects.result, -2'147'483'648);
    EXPECT_EQ(good("kel_init_attach=0").effects.result, 0);
}

TEST(FaultRule, TakesTheHighestCallAndTimes)
{
    const FaultRule rule = good("kel_init_attach:4294967295*4294967295=1");
    EXPECT_TRUE(rule.hits(4'294'967'295));
    EXPECT_TRUE(rule.hits(8'589'934'589));
    EXPECT_FALSE(rule.hits(8'589'934'590));
}

TEST(FaultRule, WithAResultOnlyNeitherTakesTimeNorBlocks)
{
    const FaultEffects effects = good("vorn_tu_wait_event=-5").effects;
    EXPECT_EQ(effects.latency, 0U);
    EXPECT_FALSE(effects.block);
}

TEST(FaultRule, TakesALatencyInEachUnit)
{
    EXPECT_EQ(good("ork_bind=latency:7ns").effects.latency, 7U);
    EXPECT_EQ(good("ork_bind=latency:7us").effects.latency, 7'000U);
    EXPECT_EQ(good("ork_bind=latency:7ms").effects.latency, 7'000'000U);
    EXPECT_EQ(good("ork_bind=latency:4294967295s").effects.latency, 4'294'967'295'000'000'000U);
}

TEST(FaultRule, WithoutAResultLetsTheCallDoItsWork)
{
    EXPECT_FALSE(good("ork_bind=latency:7ns").effects.result);
    EXPECT_FALSE(good("vorn_tu_init=block").effects.result);
}

TEST(FaultRule, TakesEffectsInAnyOrder)
{
    for (const char *text : {"vorn_tu_init:2=latency:2ms,block,-4", "vorn_tu_init:2=-4,block,latency:2ms"}) {
        const FaultEffects effects = good(text).effects;
        EXPECT_EQ(effects.latency, 2'000'000U);
        EXPECT_TRUE(effects.block);
        EXPECT_EQ(effects.result, -4);
    }
}

TEST(FaultRule, WithoutEffectIsRefused)
{
    expect_problem("kel_init_attach:2", 0, "no effect; a rule is function[:call[*times]]=effect[,effect]");
}

TEST(FaultRule, OfAnUnknownFunctionIsRefusedWithAGuessAndAllNames)
{
    const FaultProblem found = problem("kel_init_atach=3");
    EXPECT_EQ(found.at, 0U);
    EXPECT_EQ(found.what.find("no closed function \"kel_init_atach\" returns a code; did you mean kel_init_attach?\n"
                              "Those that do:\n  kel_fmt_ebcom_global_stats, "),
              0U);
    for (const std::string_view name : closed_functions)
        EXPECT_NE(found.what.find(name), std::string::npos) << name;
}

TEST(FaultRule, OfNothingLikeAFunctionIsRefusedWithoutAGuess)
{
    EXPECT_EQ(problem("=1").what.find("no closed function \"\" returns a code\nThose that do:\n"), 0U);
}

TEST(FaultRule, OfAFunctionWithoutCodeIsRefused)
{
    for (const char *rule : {"macAddr2str=1", "ork_sys_status_get=1", "kei_util_init_rc_str_get=1"})
        EXPECT_EQ(problem(rule).what.find("no closed function \""), 0U) << rule;
}

TEST(FaultRule, WithACallThatIsNoNumberFromOneIsRefused)
{
    for (const char *call : {"", "0", "-1", "x", "3x", " 3", "4294967296", "*2"})
        expect_problem(std::string("kel_init_attach:") + call + "=1", 16,
                       "the call is not a number from 1 to 4294967295");
}

TEST(FaultRule, WithTimesThatAreNoNumberFromOneAreRefused)
{
    for (const char *times : {"", "0", "-1", "x", "3x", "4294967296"})
        expect_problem(std::string("kel_init_attach:1*") + times + "=1", 18,
                       "the number of times is not a number from 1 to 4294967295");
}

TEST(FaultRule, WithAnEffectThatIsNoneIsRefused)
{
    for (const char *effect :
         {"", "x", "+1", "0x10", "1=2", "4294967296", "-2147483649", "99999999999999999999", "Block", "latency"})
        expect_problem(std::string("kel_init_attach=") + effect, 16,
                       "the effect is not a result (-2147483648 to 4294967295), latency:NUMBER with a unit, or "
                       "block");
}

TEST(FaultRule, PointsAtTheSecondEffectWhenThatOneIsWrong)
{
    EXPECT_EQ(problem("kel_init_attach=-1,").at, 19U);
    EXPECT_EQ(problem("kel_init_attach=latency:5us,x").at, 28U);
}

TEST(FaultRule, WithALatencyThatIsNoneIsRefused)
{
    for (const char *latency : {"", "5", "us", "0us", "-1us", "5 us", "5us ", "5m", "4294967296ns", "1.5ms"})
        expect_problem(std::string("kel_init_attach=latency:") + latency, 16,
                       "the latency is not a number from 1 to 4294967295 with a unit: ns, us, ms or s");
}

TEST(FaultRule, MayBlockFunctionsOfTheTimingUnitOnly)
{
    for (const std::string_view name : closed_functions) {
        const std::string rule = std::string(name) + "=block";
        if (name.starts_with("vorn_tu_"))
            EXPECT_TRUE(good(rule).effects.block);
        else
            expect_problem(rule, name.size() + 1,
                           "only functions of the timing unit, vorn_tu_..., can block: the other libraries return at "
                           "once");
    }
}

TEST(FaultRule, HasEveryEffectOnceAtMost)
{
    expect_problem("vorn_tu_init=1,2", 15, "the result is given twice");
    expect_problem("vorn_tu_init=block,block", 19, "block is given twice");
    expect_problem("vorn_tu_init=own-thread,-1,own-thread", 27, "own-thread is given twice");
    expect_problem("vorn_tu_init=own-thread", 13, "own-thread needs an effect beside it");
    expect_problem("vorn_tu_init=latency:1s,latency:1s", 24, "the latency is given twice");
}

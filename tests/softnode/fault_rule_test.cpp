/*
 * fault_rule_test.cpp - how a fault rule is written, and what is said about one that is not.
 */
#include "softnode/fault_rule.h"

#include "softnode/closed_functions.h"

#include <gtest/gtest.h>

using namespace softnode;

namespace
{

FaultRule good(std::string_view text)
{
    FaultRule rule;
    EXPECT_EQ(read_fault_rule(text, rule), "");
    return rule;
}

std::string problem(std::string_view text)
{
    FaultRule rule;
    return read_fault_rule(text, rule);
}

} // namespace

TEST(FaultRule, WithoutCallHitsEveryCall)
{
    const FaultRule rule = good("vorn_tu_wait_event=-5");
    EXPECT_EQ(rule.function, closed_function("vorn_tu_wait_event"));
    EXPECT_EQ(rule.result, -5);
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
    EXPECT_EQ(good("kel_init_attach=4294967295").result, 4'294'967'295);
    EXPECT_EQ(good("kel_init_attach=-2147483648").result, -2'147'483'648);
    EXPECT_EQ(good("kel_init_attach=0").result, 0);
}

TEST(FaultRule, TakesTheHighestCallAndTimes)
{
    const FaultRule rule = good("kel_init_attach:4294967295*4294967295=1");
    EXPECT_TRUE(rule.hits(4'294'967'295));
    EXPECT_TRUE(rule.hits(8'589'934'589));
    EXPECT_FALSE(rule.hits(8'589'934'590));
}

TEST(FaultRule, WithoutResultIsRefused)
{
    EXPECT_EQ(problem("kel_init_attach:2"),
              "\"kel_init_attach:2\": no result; a rule is function[:call[*times]]=result");
}

TEST(FaultRule, OfAnUnknownFunctionIsRefusedWithTheListOfNames)
{
    const std::string text = problem("kel_init_atach=3");
    EXPECT_EQ(text.find("\"kel_init_atach=3\": no closed function of this name returns a code; these do: "), 0U);
    for (const std::string_view name : closed_functions)
        EXPECT_NE(text.find(name), std::string::npos) << name;
}

TEST(FaultRule, OfAFunctionWithoutCodeIsRefused)
{
    for (const char *rule : {"macAddr2str=1", "ork_sys_status_get=1", "kei_util_init_rc_str_get=1", "=1"})
        EXPECT_NE(problem(rule).find("no closed function of this name returns a code"), std::string::npos) << rule;
}

TEST(FaultRule, WithACallThatIsNoNumberFromOneIsRefused)
{
    for (const char *call : {"", "0", "-1", "x", "3x", " 3", "4294967296", "*2"}) {
        const std::string rule = std::string("kel_init_attach:") + call + "=1";
        EXPECT_EQ(problem(rule), '"' + rule + "\": the call is not a number from 1 to 4294967295");
    }
}

TEST(FaultRule, WithTimesThatAreNoNumberFromOneAreRefused)
{
    for (const char *times : {"", "0", "-1", "x", "3x", "4294967296"}) {
        const std::string rule = std::string("kel_init_attach:1*") + times + "=1";
        EXPECT_EQ(problem(rule), '"' + rule + "\": the number of times is not a number from 1 to 4294967295");
    }
}

TEST(FaultRule, WithAResultThatDoesNotFit32BitsIsRefused)
{
    for (const char *result : {"", "x", "+1", "0x10", "1=2", "4294967296", "-2147483649", "99999999999999999999"}) {
        const std::string rule = std::string("kel_init_attach=") + result;
        EXPECT_EQ(problem(rule), '"' + rule + "\": the result is not a number from -2147483648 to 4294967295");
    }
}

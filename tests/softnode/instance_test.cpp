/*
 * instance_test.cpp - fault rules from the environment, in processes of their own.
 */
#include "command.h"

#include "softnode/closed_functions.h"

#include <gtest/gtest.h>

namespace
{

Outcome run_with_faults(const std::string &rules)
{
    return run("KEL_SOFTNODE_FAULTS='" + rules + "' '" FAULT_VICTIM "' 2>&1");
}

} // namespace

TEST(FaultsFromTheEnvironment, AreNoneWithoutTheVariable)
{
    const Outcome outcome = run("env -u KEL_SOFTNODE_FAULTS '" FAULT_VICTIM "' 2>&1");
    EXPECT_EQ(outcome.output, "0\n0\n0\n");
    EXPECT_EQ(outcome.status, 0);
}

TEST(FaultsFromTheEnvironment, MakeAnUnmodifiedProcessesCallsFail)
{
    const Outcome outcome = run_with_faults("kel_init_attach:2=10;kel_init_attach:3=4");
    EXPECT_EQ(outcome.output, "0\n10\n4\n");
    EXPECT_EQ(outcome.status, 0);
}

TEST(FaultsFromTheEnvironment, MayBeEmpty)
{
    const Outcome outcome = run_with_faults("");
    EXPECT_EQ(outcome.output, "0\n0\n0\n");
    EXPECT_EQ(outcome.status, 0);
}

TEST(FaultsFromTheEnvironment, EndTheProcessWhenTheyCannotBeRead)
{
    const Outcome outcome = run_with_faults("kel_init_attach:2=10;kel_init_attach=ten");
    EXPECT_EQ(outcome.output, "libkel-softnode: KEL_SOFTNODE_FAULTS: \"kel_init_attach=ten\": the result is not a "
                              "number from -2147483648 to 4294967295\n");
    EXPECT_EQ(outcome.status, 2);
}

TEST(FaultsFromTheEnvironment, NameTheFunctionsWhenOneIsUnknown)
{
    const Outcome outcome = run_with_faults("kel_init_atach=3");
    EXPECT_EQ(outcome.status, 2);
    EXPECT_NE(outcome.output.find("\"kel_init_atach=3\""), std::string::npos);
    for (const std::string_view name : softnode::closed_functions)
        EXPECT_NE(outcome.output.find(name), std::string::npos) << name;
}

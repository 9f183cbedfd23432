/*
 * instance_test.cpp - fault rules from the environment, in processes of their own.
 */
#include "command.h"
#include "temporary_file.h"

#include "softnode/faults/closed_functions.h"

#include <gtest/gtest.h>
#include <string>

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

TEST(FaultsFromTheEnvironment, AreNoneInAProcessWithRaisedRights)
{
    const Outcome outcome = run("KEL_SOFTNODE_FAULTS=kel_init_attach=10 '" RAISED_VICTIM "' 2>&1");
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
    EXPECT_EQ(outcome.output, "libkel-softnode: KEL_SOFTNODE_FAULTS: \"kel_init_attach=ten\": the effect is not a "
                              "result (-2147483648 to 4294967295), latency:NUMBER with a unit, or block\n");
    EXPECT_EQ(outcome.status, 2);
}

TEST(FaultsFromTheEnvironment, MayStandInAFile)
{
    const TemporaryFile file("kel_init_attach:1=10 # once\nkel_init_attach:2=4\n");
    const Outcome outcome = run_with_faults("@" + file.name());
    EXPECT_EQ(outcome.output, "10\n4\n0\n");
    EXPECT_EQ(outcome.status, 0);
}

TEST(FaultsFromTheEnvironment, MayStandInAFileWithAByteOrderMarkAndCarriageReturns)
{
    const TemporaryFile file("\xEF\xBB\xBFkel_init_attach:1=10\r\nkel_init_attach:2=4\r\n");
    const Outcome outcome = run_with_faults("@" + file.name());
    EXPECT_EQ(outcome.output, "10\n4\n0\n");
    EXPECT_EQ(outcome.status, 0);
}

TEST(FaultsFromTheEnvironment, EndTheProcessWhenTheirFileCannotBeRead)
{
    const TemporaryFile file("kel_init_attach:0=10\n");
    const Outcome bad = run_with_faults("@" + file.name());
    EXPECT_EQ(bad.output, "libkel-softnode: KEL_SOFTNODE_FAULTS: " + file.name() +
                              ":1:17: the call is not a number from 1 to 4294967295\n");
    EXPECT_EQ(bad.status, 2);
    const Outcome missing = run_with_faults("@/nowhere/rules");
    EXPECT_EQ(missing.output, "libkel-softnode: KEL_SOFTNODE_FAULTS: /nowhere/rules: No such file or directory\n");
    EXPECT_EQ(missing.status, 2);
    const Outcome unnamed = run_with_faults("@");
    EXPECT_EQ(unnamed.output, "libkel-softnode: KEL_SOFTNODE_FAULTS: the file name after the @ is missing\n");
    EXPECT_EQ(unnamed.status, 2);
}

TEST(FaultsFromTheEnvironment, NameTheFunctionsWhenOneIsUnknown)
{
    const Outcome outcome = run_with_faults("kel_init_atach=3");
    EXPECT_EQ(outcome.status, 2);
    EXPECT_NE(outcome.output.find("\"kel_init_atach=3\""), std::string::npos);
    for (const std::string_view name : softnode::closed_functions)
        EXPECT_NE(outcome.output.find(name), std::string::npos) << name;
}

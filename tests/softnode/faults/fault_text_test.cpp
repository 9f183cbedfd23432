/*
 * fault_text_test.cpp - texts and files of fault rules, and where in them something is wrong.
 */
#include "softnode/faults/fault_text.h"

#include "temporary_file.h"

#include <gtest/gtest.h>

using namespace softnode;

namespace
{

constexpr const char *call_problem = "the call is not a number from 1 to 4294967295";

using Texts = std::vector<std::string>;

/* The rules of a text, as written. */
Texts rules_of(std::string_view text)
{
    std::vector<FaultRule> rules;
    EXPECT_FALSE(read_fault_text(text, rules));
    Texts texts;
    for (const FaultRule &rule : rules)
        texts.push_back(rule.text);
    return texts;
}

std::string problem_of(std::string_view text)
{
    std::vector<FaultRule> rules;
    return read_given_faults(text, rules);
}

/* What is wrong with a file of this text, without the file's name. */
std::string problem_of_file(std::string_view text)
{
    const TemporaryFile file(text);
    std::vector<FaultRule> rules;
    const std::string problem = read_fault_file(file.name(), rules);
    EXPECT_EQ(problem.find(file.name()), 0U);
    return problem.substr(file.name().size());
}

} // namespace

TEST(FaultText, RulesAreSeparatedBySemicolonsAndLineEnds)
{
    EXPECT_EQ(rules_of(" kel_init_attach:1=10 ;\n\tvorn_tu_wait_event=-5; ;\r\n\r\nork_bind=-1"),
              (Texts{"kel_init_attach:1=10", "vorn_tu_wait_event=-5", "ork_bind=-1"}));
}

TEST(FaultText, CommentsReachToTheEndOfTheirLine)
{
    EXPECT_EQ(rules_of("# all of it; ork_bind=-1\nkel_init_attach=10 # why; not\nork_unbind=-4#\n#"),
              (Texts{"kel_init_attach=10", "ork_unbind=-4"}));
}

TEST(FaultText, MayBeginWithAByteOrderMark)
{
    EXPECT_EQ(rules_of("\xEF\xBB\xBFork_bind=-4\r\n"), Texts{"ork_bind=-4"});
    EXPECT_EQ(rules_of("\xEF\xBB\xBF"), Texts{});
    std::vector<FaultRule> rules;
    EXPECT_EQ(read_fault_text("\xEF\xBB\xBFork_bind:0=1", rules)->column, 10U);
}

TEST(FaultText, MayHoldNoRules)
{
    for (const char *text : {"", " ; ", "\n\n", "# nothing"})
        EXPECT_EQ(rules_of(text), Texts{});
}

TEST(FaultText, NamesTheFirstBadRule)
{
    EXPECT_EQ(problem_of("kel_init_attach=10;kel_init_attach:0=10;kel_init_attach"),
              std::string("\"kel_init_attach:0=10\": ") + call_problem);
}

TEST(FaultText, TellsWhereTheFirstBadRuleIsWrong)
{
    std::vector<FaultRule> rules;
    const auto problem = read_fault_text("ork_bind=-4\n  ork_bind:0=1 # and\nork_bind", rules);
    ASSERT_TRUE(problem);
    EXPECT_EQ(problem->rule, "ork_bind:0=1");
    EXPECT_EQ(problem->line, 2U);
    EXPECT_EQ(problem->column, 12U);
    EXPECT_EQ(problem->what, call_problem);
}

TEST(FaultFile, RulesAreReadAsFromAText)
{
    const TemporaryFile file("# two\nkel_init_attach:2=10\nvorn_tu_init=block\n");
    std::vector<FaultRule> rules;
    ASSERT_EQ(read_fault_file(file.name(), rules), "");
    ASSERT_EQ(rules.size(), 2U);
    EXPECT_EQ(rules[1].text, "vorn_tu_init=block");
}

TEST(FaultFile, IsReadToItsEnd)
{
    std::string text;
    for (int count = 0; count < 10'000; ++count)
        text += "kel_init_attach=10\n";
    const TemporaryFile file(text);
    std::vector<FaultRule> rules;
    ASSERT_EQ(read_fault_file(file.name(), rules), "");
    EXPECT_EQ(rules.size(), 10'000U);
}

TEST(FaultFile, ProblemsComeWithLineAndColumn)
{
    EXPECT_EQ(problem_of_file("kel_init_attach:0=10"), std::string(":1:17: ") + call_problem);
    EXPECT_EQ(problem_of_file("# a\n\n  ork_bind=-1; kel_init_attach:0=10\n"), std::string(":3:32: ") + call_problem);
    EXPECT_EQ(problem_of_file("\nork_bind=latency:1us,\n").find(":2:22: the effect is not "), 0U);
}

TEST(FaultFile, ThatCannotBeReadIsToldWithTheReason)
{
    std::vector<FaultRule> rules;
    EXPECT_EQ(read_fault_file("/nowhere/rules", rules), "/nowhere/rules: No such file or directory");
    EXPECT_EQ(read_fault_file("/", rules), "/: Is a directory");
}

TEST(FaultFile, HasALimit)
{
    std::vector<FaultRule> rules;
    std::string text(std::size_t{16} * 1024 * 1024, '#');
    EXPECT_EQ(read_fault_file(TemporaryFile(text).name(), rules), "");
    text += '#';
    const TemporaryFile too_large(text);
    EXPECT_EQ(read_fault_file(too_large.name(), rules), too_large.name() + ": File too large");
    EXPECT_EQ(read_fault_file("/dev/zero", rules), "/dev/zero: File too large");
}

// Results as people are shown them.
#include "kelctl/results/result_view.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

namespace kelctl
{
namespace
{

using testing::internal::CaptureStderr;
using testing::internal::CaptureStdout;
using testing::internal::GetCapturedStderr;
using testing::internal::GetCapturedStdout;

struct shown_text {
    std::string out;
    std::string err;
};

shown_text shown(const result &done, const origin &from = {}, const manner &how = {})
{
    CaptureStdout();
    CaptureStderr();
    show(done, from, how, true);
    return {GetCapturedStdout(), GetCapturedStderr()};
}

TEST(ResultView, TextTakesThePlaceOfTheFieldsAndEndsItsLine)
{
    EXPECT_EQ(shown({.shown = {{"a", 1}}}).out, "a  1\n");
    EXPECT_EQ(shown({.shown = {{"a", 1}}, .text = "b"}).out, "b\n");
    EXPECT_EQ(shown({.shown = {{"a", 1}}, .text = "b\n"}).out, "b\n");
    EXPECT_EQ(shown({.shown = {{"a", 1}}, .text = ""}).out, "");
}

TEST(ResultView, WhatWasToldIsNotToldAgain)
{
    const auto [out, err] = shown({.shown = {{"a", 1}}, .failures = {{"f()", 3, {}}}, .shown_already = true});
    EXPECT_EQ(out + err, "");
}

TEST(ResultView, FailuresHaveThePlaceInTheScript)
{
    EXPECT_THAT(shown({.failures = {{"f()", 3, {}}}}, {"a\n.kel", 7}).err,
                testing::HasSubstr("a?.kel:7: failed: f()\n"));
}

TEST(ResultView, OnlyTheFirstOfManyFailuresAreToldInFull)
{
    const result done = {.failures = std::vector<failure>(12, {"f()", 3, {}})};
    EXPECT_THAT(shown(done).err, testing::EndsWith("\n2 more operations failed; --all shows them\n"));
    EXPECT_THAT(shown(done, {}, {.all = true}).err, testing::Not(testing::HasSubstr("more")));
}

TEST(ResultView, BriefLeavesTheRecordsOut)
{
    const result done = {.failures = {{"f()", 3, {{"EXCEPTION", "GENERAL", "f(): no, g", "f.cpp:1"}}}}};
    EXPECT_THAT(shown(done).err, testing::HasSubstr("f.cpp:1"));
    EXPECT_THAT(shown(done, {}, {.brief = true}).err, testing::StartsWith("failed: f()\n"));
    EXPECT_THAT(shown(done, {}, {.brief = true}).err, testing::EndsWith("  refused by the library itself: g: no\n"));
}

TEST(ResultView, QuietShowsFailuresOnly)
{
    const result done = {.shown = {{"a", 1}}, .failures = {{"f()", 3, {}}}, .warnings = {{"odd"}}};
    const auto [out, err] = shown(done, {}, {.quiet = true});
    EXPECT_EQ(out, "");
    EXPECT_THAT(err, testing::HasSubstr("failed: f()\n"));
    EXPECT_THAT(err, testing::Not(testing::HasSubstr("odd")));
}

TEST(ResultView, WarningsSayThatTheyAre)
{
    EXPECT_EQ(shown({.warnings = {{"odd", "a.toml", {1, 2}}}}).err, "a.toml:1:2: warning: odd\n");
}

TEST(ResultView, OnlyTheFirstOfManyProblemsAreToldUnlessAskedFor)
{
    const result done = wrong_input("f", std::vector<input_error>(15'000, {"x", "f", {1, 1}}), "nothing was started");
    EXPECT_THAT(shown(done).err, testing::EndsWith("f:1:1: x\n14,980 more problems; --all shows them\n"
                                                   "f: 15,000 problems, nothing was started\n"));
    const std::string all = shown(done, {}, {.all = true}).err;
    EXPECT_EQ(std::count(all.begin(), all.end(), '\n'), 15'001);
}

TEST(ResultView, ErrorsHaveTheirPlacesAndARemarkFollows)
{
    EXPECT_EQ(shown({.errors = {{"x", "a.toml", {1, 2}}, {"y", "a.toml", {3, 0}}, {"z"}}, .remark = "3 in all"}).err,
              "a.toml:1:2: x\na.toml:3: y\nkelctl: z\n3 in all\n");
}

TEST(ResultView, WrongInputCountsItsProblems)
{
    const result one = wrong_input("a\x1b.toml", {{"x", "a\x1b.toml", whole_file}}, "nothing was run");
    EXPECT_EQ(one.status, exit_wrong_input);
    EXPECT_EQ(shown(one).err, "a?.toml: x\na?.toml: 1 problem, nothing was run\n");
    EXPECT_EQ(wrong_input("f", {{"x"}, {"y"}}, "stop").remark, "f: 2 problems, stop");
}

TEST(ResultView, WrongLineIsTextOrADocument)
{
    CaptureStdout();
    CaptureStderr();
    show_wrong_line({"what?"}, "See.\n", false);
    show_wrong_line({"what?"}, "See.\n", true);
    EXPECT_EQ(GetCapturedStderr(), "kelctl: what?\nSee.\n");
    EXPECT_THAT(GetCapturedStdout(), testing::MatchesRegex("\\{\"command\":null,.*\"message\":\"what\\?\".*\\}\n"));
}

} // namespace
} // namespace kelctl

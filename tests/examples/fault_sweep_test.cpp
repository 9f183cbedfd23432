// examples/fault_sweep.c finds what it is there to find.
#include "tests/notation/print.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <set>
#include <string>

namespace
{

std::string output_of(const char *program)
{
    std::string output;
    FILE *const pipe = popen(program, "r");
    char piece[4096];
    while (const size_t octets = fread(piece, 1, sizeof piece, pipe))
        output.append(piece, octets);
    EXPECT_EQ(pclose(pipe), 0);
    return output;
}

} // namespace

TEST(FaultSweepExample, OnlyAFailedBindingLeavesSomething)
{
    const auto report = notation::read_json(output_of(FAULT_SWEEP_EXAMPLE));
    ASSERT_EQ(report.at("runs").size(), 18U);
    std::set<std::string> leaving;
    for (const auto &run : report.at("runs")) {
        EXPECT_EQ(run.at("outcome"), "returned");
        EXPECT_NE(run.at("result"), 0);
        EXPECT_TRUE(run.at("missing").empty());
        if (!run.at("left").empty())
            leaving.insert(run.at("function").text());
    }
    EXPECT_EQ(leaving, std::set<std::string>{"ork_bind"});
}

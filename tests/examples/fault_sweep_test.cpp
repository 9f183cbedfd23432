// examples/fault_sweep.c finds what it is there to find.
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

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
    const auto report = nlohmann::json::parse(output_of(FAULT_SWEEP_EXAMPLE));
    ASSERT_EQ(report["runs"].size(), 18U);
    std::set<std::string> leaving;
    for (const auto &run : report["runs"]) {
        EXPECT_EQ(run["outcome"], "returned");
        EXPECT_NE(run["result"], 0);
        EXPECT_TRUE(run["missing"].empty());
        if (!run["left"].empty())
            leaving.insert(run["function"]);
    }
    EXPECT_EQ(leaving, std::set<std::string>{"ork_bind"});
}

// examples/fault_sweep.c finds what its document says it finds.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <set>
#include <sstream>
#include <string>
#include <vector>

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

std::string without_indentation(const std::string &text)
{
    std::istringstream lines(text);
    std::string bare;
    for (std::string line; std::getline(lines, line);)
        bare += line.substr(std::min(line.find_first_not_of(' '), line.size())) + "\n";
    return bare;
}

// The blocks of the document that show JSON.
std::vector<std::string> excerpts()
{
    std::ifstream file(SOFTWARE_ACCELERATOR_DOCUMENT);
    const std::string text{std::istreambuf_iterator<char>(file), {}};
    const std::string mark = "```json\n";
    std::vector<std::string> found;
    for (size_t at = text.find(mark); at != std::string::npos; at = text.find(mark, at)) {
        at += mark.size();
        found.push_back(text.substr(at, text.find("```", at) - at));
    }
    return found;
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

TEST(FaultSweepExample, DocumentShowsWhatItPrints)
{
    const std::string output = without_indentation(output_of(FAULT_SWEEP_EXAMPLE));
    ASSERT_EQ(excerpts().size(), 2U);
    for (const std::string &excerpt : excerpts())
        EXPECT_THAT(output, testing::HasSubstr(without_indentation(excerpt)));
}

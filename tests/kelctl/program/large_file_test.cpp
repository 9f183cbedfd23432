// Node files with thousands of rows: a summary is shown, everything with --all, and nothing but failures with --quiet.
#include "program.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fmt/core.h>

#include <algorithm>

namespace
{

using testing::HasSubstr;

constexpr uint32_t many = 2'000;
constexpr const char *ports[] = {"RLU1P", "RLU1Q", "RLU2P", "RLU3R"};

// Addresses of which no two are consecutive, so that each is a row of its own.
std::string scattered(uint32_t count = many)
{
    std::string text = ebcom_table;
    for (uint32_t i = 0; i < count; ++i)
        text += fmt::format("[[path]]\ndst_mac = \"02:00:00:02:{:02x}:{:02x}\"\nport = \"{}\"\n", 2 * i / 256,
                            2 * i % 256, ports[i % std::size(ports)]);
    return text;
}

std::string wrong(uint32_t problems)
{
    std::string text = ebcom_table;
    for (uint32_t i = 0; i < problems; ++i)
        text += "[[path]]\ndst_mac = \"none\"\nport = \"RLU1P\"\n";
    return text;
}

std::ptrdiff_t lines_in(const std::string &text)
{
    return std::ranges::count(text, '\n');
}

TEST(LargeFile, UpShowsASummary)
{
    const auto outcome = kelctl_up(scattered(10'000));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.err, "");
    EXPECT_LT(lines_in(outcome.out), 150);
    EXPECT_THAT(outcome.out, HasSubstr("10,000 added, to 10,000 destinations through 4 queues\n"));
    EXPECT_THAT(outcome.out, HasSubstr("      2,480 more rows; --all shows them\n"));
}

TEST(LargeFile, UpShowsAllOfItWhenAsked)
{
    const auto outcome = kelctl_up(scattered(), {}, {"--all"});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_GT(lines_in(outcome.out), many);
    EXPECT_LT(lines_in(outcome.out), many + 100);
    for (const char *mac : {"02:00:00:02:00:00", "02:00:00:02:07:ce", "02:00:00:02:0f:9e"})
        EXPECT_THAT(outcome.out, HasSubstr(mac));
}

TEST(LargeFile, QuietlyNothingIsShownOfWhatSucceeds)
{
    const auto outcome = kelctl_up(scattered(), {}, {"--quiet"});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(outcome.err, "");
}

TEST(LargeFile, QuietlyAFailureIsShownAllTheSame)
{
    const auto outcome =
        kelctl_up(scattered(), {{"KEL_SOFTNODE_FAULTS", "ork_ebcom_pcep_path_create:1900=-4"}}, {"--quiet", "--brief"});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.out, "");
    EXPECT_THAT(outcome.err, HasSubstr("failed: kel_core_ic_ebcom_path_add(dst_mac=02:00:00:02:0e:d6, "));
    EXPECT_THAT(outcome.err, HasSubstr("undone: 1,899 paths removed, "));
    EXPECT_LT(lines_in(outcome.err), 10);
}

TEST(LargeFile, FailuresOfATakeDownAreSummarised)
{
    const std::map<std::string, std::string> faults = {{"KEL_SOFTNODE_FAULTS", "ork_ebcom_pcep_path_delete=-4"}};
    const auto outcome = kelctl_up(scattered(), faults, {"--brief"});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.err, HasSubstr("1,990 more operations of the take-down failed; --all shows them\n"));
    EXPECT_LT(lines_in(outcome.err), 50);
}

TEST(LargeFile, ProblemsAreSummarised)
{
    const auto outcome = kelctl_up(wrong(15'000));
    EXPECT_EQ(outcome.status, 2);
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(lines_in(outcome.err), 22);
    EXPECT_THAT(outcome.err, HasSubstr("\n14,980 more problems; --all shows them\n"
                                       "node.toml: 15,000 problems, nothing was started\n"));
}

TEST(LargeFile, EveryProblemIsShownWhenAsked)
{
    EXPECT_EQ(lines_in(kelctl_up(wrong(15'000), {}, {"--all"}).err), 15'001);
}

} // namespace

// Rules over given entries.
#include "kelctl/node_rules.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>

namespace kelctl
{
namespace
{

using testing::IsEmpty;
using testing::SizeIs;

constexpr shaping slow = {.rate = 1000, .burst = 2000, .threshold = 512};

path_entry entry(const char *mac, int32_t port, uint32_t line)
{
    path_entry made;
    made.dst_mac = parse_mac_address(mac).value();
    made.port = port;
    made.at = made.port_at = made.shaping_at = made.count_at = {line, 1};
    return made;
}

problem_list problems_of(std::vector<path_entry> paths)
{
    setenv("MPID", "5", 1);
    node_file node;
    node.paths = std::move(paths);
    problem_list problems;
    check_rules(node, problems);
    return problems;
}

TEST(NodeRules, PathsOfOnePortMayShareShapingOrBothHaveNone)
{
    auto a = entry("02:00:00:02:00:01", 6, 1);
    auto b = entry("02:00:00:02:00:02", 6, 2);
    EXPECT_THAT(problems_of({a, b}), IsEmpty());
    a.shaping = b.shaping = slow;
    EXPECT_THAT(problems_of({a, b}), IsEmpty());
}

TEST(NodeRules, EveryPartOfTheShapingHasToBeTheFirstPathsOne)
{
    auto first = entry("02:00:00:02:00:01", 6, 10);
    first.shaping = slow;
    for (const std::optional<shaping> other :
         {std::optional<shaping>(), std::optional(shaping{1001, 2000, 512}), std::optional(shaping{1000, 2001, 512}),
          std::optional(shaping{1000, 2000, 768})}) {
        auto second = entry("02:00:00:02:00:02", 6, 20);
        second.shaping = other;
        const auto problems = problems_of({first, second});
        ASSERT_THAT(problems, SizeIs(1));
        EXPECT_EQ(problems[0].at.line, 20u);
        EXPECT_EQ(problems[0].message, "shaping: differs from that of the path in line 10 on the same port, RLU1P (6)");
    }
}

TEST(NodeRules, OtherPortsHaveQueuesOfTheirOwn)
{
    auto shaped = entry("02:00:00:02:00:01", 6, 1);
    shaped.shaping = slow;
    EXPECT_THAT(problems_of({shaped, entry("02:00:00:02:00:01", 7, 2)}), IsEmpty());
}

TEST(NodeRules, PortZeroReachesEverythingButTheEioa)
{
    EXPECT_THAT(problems_of({entry("02:00:00:02:00:01", 0, 1), entry("02:00:00:03:00:01", 0, 2),
                             entry("02:00:05:00:00:01", 0, 3), entry("02:00:80:00:00:01", 0, 4)}),
                IsEmpty());
    const auto problems = problems_of({entry("02:00:00:01:00:01", 0, 7), entry("02:00:06:00:00:01", 0, 8)});
    ASSERT_THAT(problems, SizeIs(2));
    EXPECT_EQ(problems[0].message,
              "port: 02:00:00:01:00:01 is an EIOA destination, and port NONE (0) has no way there");
    EXPECT_EQ(problems[1].at.line, 8u);
}

TEST(NodeRules, CountThatWalksIntoTheEioaIsToldByItsFirstAddressThere)
{
    auto boards = entry("02:00:00:03:ff:fe", 0, 3);
    boards.count = 2;
    EXPECT_THAT(problems_of({boards}), IsEmpty());
    boards.count = 4;
    const auto problems = problems_of({boards});
    ASSERT_THAT(problems, SizeIs(1));
    EXPECT_EQ(problems[0].message,
              "port: 02:00:00:04:00:00 is an EIOA destination, and port NONE (0) has no way there");
}

TEST(NodeRules, QueueCountsAtMost65535Paths)
{
    auto most = entry("02:00:00:02:00:00", 6, 1);
    most.count = 65'535;
    EXPECT_THAT(problems_of({most}), IsEmpty());
    const auto problems = problems_of({most, entry("02:00:00:04:00:00", 6, 2), entry("02:00:00:04:00:01", 6, 3)});
    ASSERT_THAT(problems, SizeIs(1));
    EXPECT_EQ(problems[0].at.line, 2u);
    EXPECT_EQ(problems[0].message, "count: more than 65535 paths on port RLU1P (6)");
}

TEST(NodeRules, FileAddsAtMost100000Paths)
{
    auto half = entry("02:00:00:02:00:00", 6, 1);
    auto other_half = entry("02:00:00:04:00:00", 7, 2);
    half.count = other_half.count = 50'000;
    EXPECT_THAT(problems_of({half, other_half}), IsEmpty());
    const auto problems = problems_of({half, other_half, entry("02:00:00:08:00:00", 8, 3)});
    ASSERT_THAT(problems, SizeIs(1));
    EXPECT_EQ(problems[0].message, "count: more than 100000 paths in all");
}

} // namespace
} // namespace kelctl

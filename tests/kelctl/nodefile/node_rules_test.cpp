// Rules over given entries.
#include "kelctl/nodefile/node_rules.h"

#include "kel/kel_core_ic_ebcom.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kelctl
{
namespace
{

using testing::ElementsAre;
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
    node_file node;
    node.paths = std::move(paths);
    problem_list problems;
    check_rules(node, {.mp_id = 5}, problems);
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

TEST(NodeRules, MpIdOfTheFileGoesBeforeThatOfTheProcess)
{
    node_file node;
    node.mpid = 6;
    node.paths = {entry("02:00:05:00:00:01", 0, 3), entry("02:00:06:00:00:01", 0, 4)};
    problem_list problems;
    check_rules(node, {.mp_id = 5}, problems);
    ASSERT_THAT(problems, SizeIs(1));
    EXPECT_EQ(problems[0].at.line, 3u);
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

TEST(NodeRules, PlatformHasRoomForSoManyDestinations)
{
    node_file node;
    node.paths = {entry("02:00:00:02:00:00", 6, 1), entry("02:00:00:02:00:00", 7, 2), entry("02:00:00:04:00:00", 8, 3)};
    node.paths[0].count = node.paths[1].count = 8; // the same ones
    node.paths[2].count = 2;
    const auto problems_with = [&node](std::optional<size_t> most) {
        problem_list problems;
        check_rules(node, {.most_destinations = most}, problems);
        return problems;
    };
    EXPECT_THAT(problems_with(std::nullopt), IsEmpty());
    EXPECT_THAT(problems_with(10), IsEmpty());
    const auto problems = problems_with(9);
    ASSERT_THAT(problems, SizeIs(1));
    EXPECT_EQ(problems[0].at.line, 3u);
    EXPECT_EQ(problems[0].message, "count: more than 9 destinations in all, which is what this platform has room for");
    EXPECT_THAT(problems_with(1), SizeIs(1)); // told once
}

pcep_entry pcep(uint32_t id, uint32_t line)
{
    pcep_entry made;
    made.id = id;
    made.at = {line, 1};
    made.id_at = {line + 1, 6};
    return made;
}

// Its members stand in the third line, in the columns 11, 12, 13 ...
multicast_entry group(uint32_t id, uint32_t line, std::vector<uint32_t> members = {})
{
    multicast_entry made;
    made.id = id;
    made.at = {line, 1};
    made.id_at = {line + 1, 6};
    for (const uint32_t member : members)
        made.members.push_back({member, {line + 2, 11 + static_cast<uint32_t>(made.members.size())}});
    return made;
}

problem_list problems_of(std::vector<pcep_entry> pceps, std::vector<multicast_entry> groups)
{
    node_file node;
    node.pceps = std::move(pceps);
    node.groups = std::move(groups);
    problem_list problems;
    check_rules(node, {}, problems);
    return problems;
}

std::vector<std::string> messages_of(const problem_list &problems)
{
    std::vector<std::string> messages;
    for (const problem &problem : problems)
        messages.push_back(problem.message);
    return messages;
}

TEST(NodeRules, GroupsMayShareMembersAndHaveNone)
{
    EXPECT_THAT(problems_of({pcep(1, 10), pcep(2, 20)}, {group(3, 1, {1, 2}), group(4, 30, {2}), group(5, 40)}),
                IsEmpty());
}

TEST(NodeRules, IdBelongsToTheFirstEntryOfTheFileWhateverItsKind)
{
    const auto problems = problems_of({pcep(7, 20), pcep(7, 30), pcep(8, 50)}, {group(7, 10), group(8, 60)});
    EXPECT_THAT(messages_of(problems),
                ElementsAre("id: 7 is that of the multicast group in line 10",
                            "id: 7 is that of the multicast group in line 10", "id: 8 is that of the PCEP in line 50"));
    EXPECT_EQ(problems[0].at, (position{21, 6}));
    EXPECT_EQ(problems[1].at, (position{31, 6}));
    EXPECT_EQ(problems[2].at, (position{61, 6}));
}

TEST(NodeRules, EntriesWithoutAnIdAreNotTakenForOneAnother)
{
    EXPECT_THAT(problems_of({pcep(no_id, 1), pcep(no_id, 2)}, {group(no_id, 3)}), IsEmpty());
}

TEST(NodeRules, MemberHasToBeAPcepOfTheFileAndStandOnce)
{
    const auto problems = problems_of({pcep(1, 10)}, {group(5, 20, {1, 9, 1, 6, 5}), group(6, 30)});
    EXPECT_THAT(messages_of(problems),
                ElementsAre("members: no PCEP of this file has the id 9", "members: 1 is named twice",
                            "members: 6 is the multicast group in line 30, not a PCEP",
                            "members: 5 is the multicast group in line 20, not a PCEP"));
    EXPECT_EQ(problems[0].at, (position{22, 12}));
    EXPECT_EQ(problems[1].at, (position{22, 13}));
    EXPECT_EQ(problems[3].at, (position{22, 15}));
}

TEST(NodeRules, GroupHasAsManyMembersAsTheLibraryTakes)
{
    kel_ebcom_capabilities limits{};
    kel_core_ic_ebcom_capabilities_get(&limits);
    std::vector<pcep_entry> pceps;
    std::vector<uint32_t> members;
    for (uint32_t id = 1; id <= limits.max_multicast_members + 2; ++id)
        pceps.push_back(pcep(id, 10 * id));
    for (uint32_t id = 1; id <= limits.max_multicast_members; ++id)
        members.push_back(id);
    EXPECT_THAT(problems_of(pceps, {group(500, 1, members)}), IsEmpty());
    members.push_back(limits.max_multicast_members + 1);
    members.push_back(limits.max_multicast_members + 2);
    const auto problems = problems_of(pceps, {group(500, 1, members)});
    EXPECT_THAT(messages_of(problems), ElementsAre("members: more than 16 in one group"));
    EXPECT_EQ(problems[0].at, (position{3, 27}));
}

TEST(NodeRules, FileHasAsManyGroupsAsTheLibraryTakes)
{
    kel_ebcom_capabilities limits{};
    kel_core_ic_ebcom_capabilities_get(&limits);
    std::vector<multicast_entry> groups;
    for (uint32_t id = 1; id <= limits.max_multicast_groups; ++id)
        groups.push_back(group(id, 10 * id));
    EXPECT_THAT(problems_of({}, groups), IsEmpty());
    groups.push_back(group(400, 4000));
    groups.push_back(group(401, 4010));
    const auto problems = problems_of({}, groups);
    EXPECT_THAT(messages_of(problems), ElementsAre("[[multicast]]: more than 30 groups"));
    EXPECT_EQ(problems[0].at, (position{4000, 1}));
}

} // namespace
} // namespace kelctl

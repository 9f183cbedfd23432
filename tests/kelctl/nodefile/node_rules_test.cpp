// Rules over the lines of files without a problem of their own. More of them are tested on the program, in
// bad_file_test.cpp.
#include "kelctl/nodefile/node_rules.h"

#include "kel/kel_core_ic_ebcom.h"
#include "kelctl/commands/commands.h"

#include <fmt/core.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kelctl
{
namespace
{

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr const char *ebcom = "[ebcom]\nic_port_mtu = 1500\nether_type = 0x88B5\nsettings = [1, 2]\n";

// The first table begins in line 5.
problem_list problems_of(const std::string &tables, const surroundings &around = {.mp_id = 5})
{
    node_file_read read = parse_node_file(ebcom + tables, commands());
    EXPECT_THAT(read.problems, IsEmpty());
    check_rules(read, around);
    return read.problems;
}

std::vector<std::string> messages_of(const problem_list &problems)
{
    std::vector<std::string> messages;
    for (const problem &problem : problems)
        messages.push_back(problem.message);
    return messages;
}

// Four lines.
std::string path(const char *mac, int port, const std::string &more = "")
{
    return fmt::format("[[path]]\ndst_mac = \"{}\"\nport = {}\n{}\n", mac, port, more);
}

// Six lines.
std::string pcep(uint32_t id)
{
    return fmt::format("[[pcep]]\nid = {}\nremote_id = 1\nlocal_mac = \"02:00:00:02:00:01\"\n"
                       "remote_mac = \"02:00:00:02:00:02\"\nvlan = 1\n",
                       id);
}

// Three lines.
std::string group(uint32_t id, const std::string &members = "")
{
    return fmt::format("[[multicast]]\nid = {}\nmembers = [{}]\n", id, members);
}

constexpr const char *slow = "shaping = { rate = 1000, burst = 2000, threshold = 512 }";

TEST(NodeRules, PathsOfOnePortMayShareShapingOrBothHaveNone)
{
    EXPECT_THAT(problems_of(path("02:00:00:02:00:01", 6) + path("02:00:00:02:00:02", 6)), IsEmpty());
    EXPECT_THAT(problems_of(path("02:00:00:02:00:01", 6, slow) + path("02:00:00:02:00:02", 6, slow)), IsEmpty());
}

TEST(NodeRules, EveryPartOfTheShapingHasToBeTheFirstPathsOne)
{
    const std::string first = path("02:00:00:02:00:01", 6, slow);
    const std::string end = ": differs from that of the path in line 5 on the same port, RLU1P (6)";
    const std::pair<std::string, std::string> others[] = {
        {"", "shaping.rate"},
        {"shaping = { rate = 1001, burst = 2000, threshold = 512 }", "shaping.rate"},
        {"shaping = { rate = 1000, burst = 2001, threshold = 512 }", "shaping.burst"},
        {"shaping = { rate = 1000, burst = 2000, threshold = 768 }", "shaping.threshold"},
        {"shaping = { rate = 1000, burst = 2000 }", "shaping.threshold"}};
    for (const auto &[shaping, key] : others) {
        const auto problems = problems_of(first + path("02:00:00:02:00:02", 6, shaping));
        EXPECT_THAT(messages_of(problems), ElementsAre(key + end));
        EXPECT_EQ(problems.at(0).at.line, shaping.find(key.substr(8)) == shaping.npos ? 9u : 12u);
    }
    EXPECT_THAT(messages_of(problems_of(path("02:00:00:02:00:01", 6) + path("02:00:00:02:00:02", 6, slow))),
                ElementsAre("shaping.rate" + end));
}

TEST(NodeRules, OtherPortsHaveQueuesOfTheirOwn)
{
    EXPECT_THAT(problems_of(path("02:00:00:02:00:01", 6, slow) + path("02:00:00:02:00:01", 7)), IsEmpty());
}

TEST(NodeRules, PortZeroReachesEverythingButTheEioa)
{
    EXPECT_THAT(problems_of(path("02:00:00:02:00:01", 0) + path("02:00:00:03:00:01", 0) + path("02:00:05:00:00:01", 0) +
                            path("02:00:80:00:00:01", 0)),
                IsEmpty());
    const auto problems = problems_of(path("02:00:00:01:00:01", 0) + path("02:00:06:00:00:01", 0));
    ASSERT_THAT(problems, SizeIs(2));
    EXPECT_EQ(problems[0].message,
              "port: 02:00:00:01:00:01 is an EIOA destination, and port NONE (0) has no way there");
    EXPECT_EQ(problems[1].at, (position{11, 8}));
}

TEST(NodeRules, MpIdOfTheFileGoesBeforeThatOfTheProcess)
{
    const auto problems =
        problems_of("[node]\nmpid = 6\n" + path("02:00:05:00:00:01", 0) + path("02:00:06:00:00:01", 0));
    ASSERT_THAT(problems, SizeIs(1));
    EXPECT_EQ(problems[0].at.line, 9u);
}

TEST(NodeRules, CountThatWalksIntoTheEioaIsToldByItsFirstAddressThere)
{
    EXPECT_THAT(problems_of(path("02:00:00:03:ff:fe", 0, "count = 2")), IsEmpty());
    EXPECT_THAT(messages_of(problems_of(path("02:00:00:03:ff:fe", 0, "count = 4"))),
                ElementsAre("port: 02:00:00:04:00:00 is an EIOA destination, and port NONE (0) has no way there"));
}

TEST(NodeRules, QueueCountsAtMost65535Paths)
{
    const std::string most = path("02:00:00:02:00:00", 6, "count = 65535");
    EXPECT_THAT(problems_of(most), IsEmpty());
    const auto problems = problems_of(most + path("02:00:00:04:00:00", 6) + path("02:00:00:04:00:01", 6));
    EXPECT_THAT(messages_of(problems), ElementsAre("count: more than 65535 paths on port RLU1P (6)"));
    EXPECT_EQ(problems[0].at, (position{9, 1}));
}

TEST(NodeRules, FileAddsAtMost100000Paths)
{
    const std::string halves =
        path("02:00:00:02:00:00", 6, "count = 50000") + path("02:00:00:04:00:00", 7, "count = 50000");
    EXPECT_THAT(problems_of(halves), IsEmpty());
    const std::string more = path("02:00:00:08:00:00", 8) + path("02:00:00:08:00:01", 8);
    for (const auto &most_destinations : {std::optional<size_t>(), std::optional<size_t>(100'000)})
        EXPECT_THAT(messages_of(problems_of(halves + more, {.mp_id = 5, .most_destinations = most_destinations})),
                    ElementsAre("count: more than 100000 paths in all"));
}

TEST(NodeRules, PlatformHasRoomForSoManyDestinations)
{
    const std::string same = path("02:00:00:02:00:00", 6, "count = 8") + path("02:00:00:02:00:00", 7, "count = 8");
    const std::string paths = same + path("02:00:00:04:00:00", 8, "count = 2");
    EXPECT_THAT(problems_of(paths), IsEmpty());
    EXPECT_THAT(problems_of(paths, {.most_destinations = 10}), IsEmpty());
    const auto problems = problems_of(paths, {.most_destinations = 9});
    EXPECT_THAT(messages_of(problems),
                ElementsAre("count: more than 9 destinations in all, the limit of this platform"));
    EXPECT_EQ(problems[0].at, (position{16, 9}));
    EXPECT_THAT(problems_of(paths, {.most_destinations = 1}), SizeIs(1)); // reported once
}

TEST(NodeRules, GroupsMayShareMembersAndHaveNone)
{
    EXPECT_THAT(problems_of(pcep(1) + pcep(2) + group(3, "1, 2") + group(4, "2") + group(5)), IsEmpty());
}

TEST(NodeRules, IdBelongsToTheFirstTableOfTheFileWhateverItsKind)
{
    const auto problems = problems_of(group(7) + pcep(7) + pcep(7) + pcep(8) + group(8));
    EXPECT_THAT(messages_of(problems), ElementsAre("id: 7 is already the id of the multicast group in line 5",
                                                   "id: 7 is already the id of the multicast group in line 5",
                                                   "id: 8 is already the id of the PCEP in line 20"));
    EXPECT_EQ(problems[0].at, (position{9, 6}));
    EXPECT_EQ(problems[1].at, (position{15, 6}));
    EXPECT_EQ(problems[2].at, (position{27, 6}));
}

TEST(NodeRules, MemberHasToBeAPcepOfTheFileAndStandOnce)
{
    const auto problems = problems_of(pcep(1) + group(5, "1, 9, 1, 6, 5") + group(6));
    EXPECT_THAT(messages_of(problems),
                ElementsAre("members: no PCEP of this file has the id 9", "members: 1 is named twice",
                            "members: 6 is the multicast group in line 14, not a PCEP",
                            "members: 5 is the multicast group in line 11, not a PCEP"));
    EXPECT_EQ(problems[0].at, (position{13, 15}));
    EXPECT_EQ(problems[1].at, (position{13, 18}));
    EXPECT_EQ(problems[3].at, (position{13, 24}));
}

TEST(NodeRules, GroupHasAsManyMembersAsTheLibraryTakes)
{
    kel_ebcom_capabilities limits{};
    kel_core_ic_ebcom_capabilities_get(&limits);
    std::string pceps = pcep(1);
    std::string members = "1";
    for (uint32_t id = 2; id <= limits.max_multicast_members; ++id) {
        pceps += pcep(id);
        members += fmt::format(",{}", id);
    }
    EXPECT_THAT(problems_of(group(500, members) + pceps), IsEmpty());
    const auto problems = problems_of(group(500, members + ",\n400,401") + pcep(400) + pcep(401) + pceps);
    EXPECT_THAT(messages_of(problems), ElementsAre("members: more than 16 in one group"));
    EXPECT_EQ(problems[0].at, (position{8, 1}));
}

TEST(NodeRules, FileHasAsManyGroupsAsTheLibraryTakes)
{
    kel_ebcom_capabilities limits{};
    kel_core_ic_ebcom_capabilities_get(&limits);
    std::string groups;
    for (uint32_t id = 1; id <= limits.max_multicast_groups; ++id)
        groups += group(id);
    EXPECT_THAT(problems_of(groups), IsEmpty());
    const auto problems = problems_of(groups + group(400) + group(401));
    EXPECT_THAT(messages_of(problems), ElementsAre("[[multicast]]: more than 30 groups"));
    EXPECT_EQ(problems[0].at, (position{5 + 3 * limits.max_multicast_groups, 1}));
}

} // namespace
} // namespace kelctl

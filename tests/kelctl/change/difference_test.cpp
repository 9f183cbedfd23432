// Two nodes compared, each written as commands.
#include "kelctl/change/difference.h"

#include "random_node.h"
#include "script_session.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kelctl
{
namespace
{

using testing::ElementsAre;
using testing::IsEmpty;

node_model model_with(const std::vector<std::string> &lines)
{
    return model_of(all_asked(lines));
}

std::vector<std::string> rows(const std::vector<std::string> &now, const std::vector<std::string> &wanted)
{
    std::vector<std::string> rows;
    for (const node_change &one : differences(model_with(now), model_with(wanted)))
        rows.push_back(fmt::format("{}: {} [{}] [{}]", name_of(one.object), one.change, one.was, one.becomes));
    return rows;
}

TEST(Difference, IsNoneBetweenEqualNodes)
{
    for (uint32_t seed = 0; seed < 20; ++seed)
        EXPECT_THAT(rows(random_node(seed).lines(), random_node(seed).lines()), IsEmpty());
}

TEST(Difference, NamesObjectsInTheOrderOfTheirKindsPortsAndIds)
{
    EXPECT_THAT(rows({"pcep start", "group add 2", "ebcom path add 02:00:00:02:00:01 --port 42",
                      "ebcom shaper add 02:00:00:02:00:01 --port 6"},
                     {"mpid 5", "ebcom start", "ebcom path add 02:00:00:02:00:09 --port 6 --count 2"}),
                ElementsAre("MP id: added [] []", "EBCOM service: added [] []",
                            "path to 02:00:00:02:00:09 on RLU1P (6): added [] []",
                            "path to 02:00:00:02:00:0a on RLU1P (6): added [] []",
                            "path to 02:00:00:02:00:01 on RLU4W (42): removed [] []",
                            "shaper for 02:00:00:02:00:01 on RLU1P (6): removed [] []", "PCEP service: removed [] []",
                            "group 2: removed [] []"));
}

TEST(Difference, ShowsWhatOfAnObjectDiffers)
{
    const std::string pcep = "pcep add 7 --remote-id 9 --local 02:00:00:03:00:01 --remote 02:00:00:02:00:01 ";
    EXPECT_THAT(
        rows({"ebcom params set --mtu 1500 --ether-type 0x88b5 --settings 1,2", pcep + "--vlan 1"},
             {"ebcom params set --mtu 1500 --ether-type 0x88b6 --settings 1,3", pcep + "--vlan 2 --priority 3"}),
        ElementsAre("parameters: changed [ether-type 0x88b5, settings 1,2] [ether-type 0x88b6, settings 1,3]",
                    "PCEP 7: changed [vlan 1, priority 0] [vlan 2, priority 3]"));
}

TEST(Difference, ShapingIsThatOfTheQueue)
{
    EXPECT_THAT(rows({"ebcom path add 02:00:00:02:00:01 --port 6 --count 100"},
                     {"ebcom path add 02:00:00:02:00:01 --port 6 --count 100 --rate 1000 --burst 2000"}),
                ElementsAre("queue of RLU1P (6): changed [unshaped] [rate 1 Mbit/s, burst 2000 octets]"));
}

TEST(Difference, TextHasALineForEachObjectAsFarAsThePageGoes)
{
    const auto changes =
        differences(model_with({"ebcom path add 02:00:00:02:00:01 --port 6 --count 3"}),
                    model_with({"ebcom path add 02:00:00:02:00:01 --port 6 --rate 1000 --burst 2000", "pcep start"}));
    page narrow = page_for(stdout);
    narrow.most_rows = 2;
    EXPECT_EQ(text_of(changes, narrow), "changed  queue of RLU1P (6)\n"
                                        "         from unshaped\n"
                                        "         to   rate 1 Mbit/s, burst 2000 octets\n"
                                        "removed  path to 02:00:00:02:00:02 on RLU1P (6)\n"
                                        "2 more objects; --all shows them\n");
}

TEST(Difference, PathAddedTwiceIsTwoPaths)
{
    const std::string path = "ebcom path add 02:00:00:02:00:01 --port 6";
    EXPECT_THAT(rows({path}, {path, path}), ElementsAre("path to 02:00:00:02:00:01 on RLU1P (6): added [] []"));
}

TEST(Difference, TheLastPathOfADestinationIsTheUsedOne)
{
    const std::string one = "ebcom path add 02:00:00:02:00:01 --port 6";
    const std::string other = "ebcom path add 02:00:00:02:00:01 --port 7";
    const std::string elsewhere = "ebcom path add 02:00:00:02:00:02 --port 7";
    EXPECT_THAT(rows({one, other}, {other, one}),
                ElementsAre("path to 02:00:00:02:00:01 on RLU1P (6): changed [used: RLU1Q (7)] [used: RLU1P (6)]"));
    EXPECT_THAT(rows({one, elsewhere}, {elsewhere, one}), IsEmpty());
    EXPECT_THAT(rows({one, other}, {one}), ElementsAre("path to 02:00:00:02:00:01 on RLU1Q (7): removed [] []"));
}

} // namespace
} // namespace kelctl

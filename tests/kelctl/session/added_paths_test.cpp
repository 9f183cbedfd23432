// What is known of paths that come and go.
#include "kelctl/session/added_paths.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <utility>

namespace kelctl
{
namespace
{

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

mac_address numbered(uint32_t number)
{
    return counted_up(parse_mac_address("02:00:00:02:00:00").value(), number);
}

kel_ebcom_path_config path(uint32_t number, int32_t port, uint32_t rate = 0)
{
    kel_ebcom_path_config made = {.shaping_enabled = rate != 0, .iell_port = port, .shaping_rate = rate};
    std::ranges::copy(numbered(number).octets, made.dst_mac);
    return made;
}

TEST(AddedPaths, PortHasTheShapingOfItsFirstPathAsLongAsItHasPaths)
{
    added_paths paths;
    paths.add(path(1, 6, 1000));
    paths.add(path(2, 6, 1000));
    paths.add(path(1, 7));
    paths.remove(path(1, 6));
    EXPECT_EQ(paths.first_on(6).shaping_rate, 1000u);
    EXPECT_EQ(paths.first_on(7).shaping_enabled, 0);
    paths.remove(path(2, 6));
    paths.add(path(2, 6, 500));
    EXPECT_EQ(paths.first_on(6).shaping_rate, 500u);
}

TEST(AddedPaths, PortKeepsItsPlaceAsLongAsItHasPaths)
{
    added_paths paths;
    for (const auto &[mac, port] : {std::pair(1U, 6), {1U, 7}, {2U, 7}, {1U, 6}})
        paths.add(path(mac, port));
    EXPECT_THAT(paths.ports(), ElementsAre(6, 7));
    paths.remove(path(1, 6));
    EXPECT_THAT(paths.ports(), ElementsAre(6, 7));
    paths.remove(path(1, 6));
    EXPECT_THAT(paths.ports(), ElementsAre(7));
    paths.add(path(1, 6));
    EXPECT_THAT(paths.ports(), ElementsAre(7, 6));
    EXPECT_EQ(paths.size(), 3u);
}

TEST(AddedPaths, DestinationsLieTogetherThatHaveTheSamePorts)
{
    added_paths paths;
    for (const auto &[mac, port] : {std::pair(1U, 6), {2U, 6}, {1U, 7}, {3U, 7}, {3U, 6}, {3U, 7}})
        paths.add(path(mac, port));
    EXPECT_THAT(paths.destinations(), ElementsAre(Pair(ElementsAre(6), ElementsAre(numbered(2))),
                                                  Pair(ElementsAre(6, 7), ElementsAre(numbered(1), numbered(3)))));
    paths.remove(path(3, 7));
    paths.remove(path(1, 7));
    EXPECT_THAT(paths.destinations(), ElementsAre(Pair(ElementsAre(6), ElementsAre(numbered(1), numbered(2))),
                                                  Pair(ElementsAre(6, 7), ElementsAre(numbered(3)))));
}

TEST(AddedPaths, RemovingWhatWasNotAddedChangesNothing)
{
    added_paths paths;
    paths.add(path(1, 6));
    paths.remove(path(1, 7));
    paths.remove(path(2, 6));
    EXPECT_EQ(paths.size(), 1u);
    EXPECT_THAT(paths.ports(), ElementsAre(6));
}

TEST(AddedPaths, NothingIsLeftWhenAllAreRemoved)
{
    std::vector<std::pair<uint32_t, int32_t>> all;
    std::mt19937 random(1);
    for (uint32_t i = 0; i < 1000; ++i)
        all.emplace_back(random() % 20, static_cast<int32_t>(random() % 5));
    added_paths paths;
    for (const auto &[mac, port] : all)
        paths.add(path(mac, port));
    EXPECT_EQ(paths.size(), all.size());
    std::ranges::shuffle(all, random);
    for (const auto &[mac, port] : all)
        paths.remove(path(mac, port));
    EXPECT_EQ(paths.size(), 0u);
    EXPECT_THAT(paths.ports(), IsEmpty());
    EXPECT_THAT(paths.destinations(), IsEmpty());
}

} // namespace
} // namespace kelctl

// Paths as they come and go.
#include "kelctl/session/asked_paths.h"

#include <gtest/gtest.h>

namespace kelctl
{
namespace
{

kel_ebcom_path_config path(uint8_t last_octet, int32_t port, uint32_t rate = 0)
{
    kel_ebcom_path_config made{};
    made.dst_mac[5] = last_octet;
    made.iell_port = port;
    made.shaping_rate = rate;
    return made;
}

TEST(AskedPaths, AreInTheOrderOfTheirAdding)
{
    asked_paths paths;
    for (const auto &added : {path(1, 6), path(3, 7), path(2, 7)})
        paths.add(added);
    ASSERT_EQ(paths.all().size(), 3u);
    EXPECT_EQ(paths.all()[1].dst_mac[5], 3);
}

TEST(AskedPaths, RemovingTakesTheLastOfTheSameDestinationAndPort)
{
    asked_paths paths;
    for (const auto &added : {path(1, 6, 100), path(1, 7), path(1, 6, 200), path(2, 6)})
        paths.add(added);
    paths.remove(path(1, 6));
    ASSERT_EQ(paths.all().size(), 3u);
    EXPECT_EQ(paths.all()[0].shaping_rate, 100u);
    EXPECT_EQ(paths.all()[1].iell_port, 7);
    EXPECT_EQ(paths.all()[2].dst_mac[5], 2);
}

TEST(AskedPaths, WhatWasNeverAskedForChangesNothing)
{
    asked_paths paths;
    paths.add(path(1, 6));
    paths.remove(path(1, 7));
    paths.remove(path(2, 6));
    EXPECT_EQ(paths.all().size(), 1u);
    paths.clear();
    EXPECT_TRUE(paths.all().empty());
}

} // namespace
} // namespace kelctl

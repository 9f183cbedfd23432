// Names and numbers of ports.
#include "kelctl/ic_port.h"

#include <gtest/gtest.h>

namespace kelctl
{
namespace
{

TEST(IcPort, IsFoundByItsNameInEitherCase)
{
    EXPECT_EQ(port_by_name("RLU1P"), 6);
    EXPECT_EQ(port_by_name("rlu4w"), 42);
    EXPECT_EQ(port_by_name("mz-kes_q"), 47);
    EXPECT_EQ(port_by_name("NONE"), 0);
    EXPECT_EQ(port_by_name("RLU5P"), std::nullopt);
    EXPECT_EQ(port_by_name("UNKNOWN"), std::nullopt);
    EXPECT_EQ(port_by_name(""), std::nullopt);
}

TEST(IcPort, NumbersGoFrom0To50)
{
    EXPECT_TRUE(is_port(0));
    EXPECT_TRUE(is_port(50));
    EXPECT_FALSE(is_port(51));
    EXPECT_FALSE(is_port(-1));
    EXPECT_FALSE(is_port(0x1'0000'0006));
}

TEST(IcPort, ThirtyThreeCarryEbcom)
{
    int carrying = 0;
    for (int32_t port = -1; port <= 51; ++port)
        carrying += carries_ebcom(port) ? 1 : 0;
    EXPECT_EQ(carrying, 33);
    for (const int32_t port : {0, 6, 13, 19, 42})
        EXPECT_TRUE(carries_ebcom(port)) << port;
    for (const int32_t port : {-1, 1, 5, 14, 18, 43, 50})
        EXPECT_FALSE(carries_ebcom(port)) << port;
}

TEST(IcPort, TextHasNameAndNumber)
{
    EXPECT_EQ(port_text(19), "RLU1R (19)");
    EXPECT_EQ(port_group(19), "RLU1");
    EXPECT_EQ(port_group(0), "NONE");
}

} // namespace
} // namespace kelctl

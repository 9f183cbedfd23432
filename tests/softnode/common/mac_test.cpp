/*
 * mac_test.cpp - MAC addresses and their text.
 */
#include "softnode/common/mac.h"

#include <gtest/gtest.h>

using namespace softnode;

TEST(Mac, TextIsLowerCaseWithColons)
{
    EXPECT_STREQ(text_of(Mac{0x02, 0x00, 0xab, 0xcd, 0x10, 0xff}).data(), "02:00:ab:cd:10:ff");
}

TEST(Mac, CopiesSixOctetsInWireOrder)
{
    const std::uint8_t octets[] = {1, 2, 3, 4, 5, 6, 7};
    EXPECT_EQ(mac_at(octets), (Mac{1, 2, 3, 4, 5, 6}));
}

// Numbers as people write them.
#include "kelctl/values/whole_number.h"

#include <gtest/gtest.h>

#include <limits>

namespace kelctl
{
namespace
{

TEST(WholeNumber, DecimalAndHexadecimalAreRead)
{
    EXPECT_EQ(parse_whole_number("0"), 0);
    EXPECT_EQ(parse_whole_number("511"), 511);
    EXPECT_EQ(parse_whole_number("-42"), -42);
    EXPECT_EQ(parse_whole_number("0x88b5"), 0x88B5);
    EXPECT_EQ(parse_whole_number("0XFF"), 255);
    EXPECT_EQ(parse_whole_number("-0x10"), -16);
}

TEST(WholeNumber, AnythingElseIsNone)
{
    for (const char *text : {"", "-", "0x", "+1", "1.5", "1e3", " 1", "1 ", "--1", "12a", "0x1g", "one"})
        EXPECT_FALSE(parse_whole_number(text)) << text;
}

TEST(WholeNumber, TooLargeOnesBecomeTheNearest)
{
    constexpr int64_t largest = std::numeric_limits<int64_t>::max();
    constexpr int64_t least = std::numeric_limits<int64_t>::min();
    EXPECT_EQ(parse_whole_number("9223372036854775807"), largest);
    EXPECT_EQ(parse_whole_number("9223372036854775808"), largest);
    EXPECT_EQ(parse_whole_number("99999999999999999999999"), largest);
    EXPECT_EQ(parse_whole_number("-9223372036854775808"), least);
    EXPECT_EQ(parse_whole_number("-99999999999999999999999"), least);
}

TEST(WholeNumber, BothEndsBelongToARange)
{
    constexpr range allowed = {1, 511, "1 to 511"};
    EXPECT_FALSE(allowed.holds(0));
    EXPECT_TRUE(allowed.holds(1));
    EXPECT_TRUE(allowed.holds(511));
    EXPECT_FALSE(allowed.holds(512));
}

TEST(WholeNumber, RangeIsToldInTheBaseOfTheValue)
{
    EXPECT_EQ(outside("512", {1, 511, "1 to 511"}), "512 is not in the range 1 to 511");
    EXPECT_EQ(outside("0x200", {1, 511, "1 to 511"}), "0x200 is not in the range 0x1 to 0x1FF");
    EXPECT_EQ(outside("0X5", {68, 65535, "68 to 65535 octets"}), "0X5 is not in the range 0x44 to 0xFFFF octets");
    EXPECT_EQ(outside("5", {0x600, 0xFFFF, "0x0600 to 0xFFFF"}), "5 is not in the range 1536 to 65535");
    EXPECT_EQ(outside("0x5", {0x600, 0xFFFF, "0x0600 to 0xFFFF"}), "0x5 is not in the range 0x0600 to 0xFFFF");
    EXPECT_EQ(outside("0x200", {7, 7, "7"}), "0x200 is not in the range 7");
    EXPECT_EQ(outside("0x80", {-16, 15, "-16 to 15"}), "0x80 is not in the range -0x10 to 0xF");
}

} // namespace
} // namespace kelctl

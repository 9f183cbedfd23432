// Numbers with units.
#include "text/quantity.h"

#include <gtest/gtest.h>

#include <limits>

namespace text
{
namespace
{

constexpr uint64_t largest = std::numeric_limits<uint64_t>::max();

TEST(Quantity, RatesCountInKbit)
{
    EXPECT_EQ(parse_quantity("64 kbit/s", rate_units), 64);
    EXPECT_EQ(parse_quantity("100 Mbit/s", rate_units), 100'000);
    EXPECT_EQ(parse_quantity("2Gbit/s", rate_units), 2'000'000);
}

TEST(Quantity, SizesCountInOctets)
{
    EXPECT_EQ(parse_quantity("10 octets", size_units), 10);
    EXPECT_EQ(parse_quantity("64   KiB", size_units), 65'536);
    EXPECT_EQ(parse_quantity("3 MiB", size_units), 3'145'728);
}

TEST(Quantity, AnythingButAWholeNumberWithAUnitIsRefused)
{
    for (const char *text : {"", "100", "Mbit/s", "1.5 Mbit/s", "-1 Mbit/s", "+1 Mbit/s", "1 mbit/s", "1 Mbit/s ",
                             " 1 Mbit/s", "1 KiB", "1 Mbit"})
        EXPECT_EQ(parse_quantity(text, rate_units), std::nullopt) << text;
}

TEST(Quantity, WhatSixtyFourBitsCannotHoldIsTheLargestValue)
{
    EXPECT_EQ(parse_quantity("99999999999999999999999 kbit/s", rate_units), largest);
    EXPECT_EQ(parse_quantity("18446744073709551615 MiB", size_units), largest);
}

TEST(Quantity, TextHasTheLargestUnitThatLeavesAWholeNumber)
{
    EXPECT_EQ(quantity_text(100'000, rate_units), "100 Mbit/s");
    EXPECT_EQ(quantity_text(2'500, rate_units), "2500 kbit/s");
    EXPECT_EQ(quantity_text(5'120'000, size_units), "5000 KiB");
    EXPECT_EQ(quantity_text(1'048'575, size_units), "1048575 octets");
    EXPECT_EQ(quantity_text(0, size_units), "0 octets");
    EXPECT_EQ(quantity_text(1'200'000'000, duration_units), "1200 ms");
    EXPECT_EQ(quantity_text(2'000'000'000, duration_units), "2 s");
}

TEST(Quantity, TextOfAValueIsReadBackAsTheValue)
{
    for (const uint64_t value : {1u, 999u, 1'000u, 1'024u, 123'456u, 1'048'576u, 4'294'967'295u}) {
        EXPECT_EQ(parse_quantity(quantity_text(value, rate_units), rate_units), value);
        EXPECT_EQ(parse_quantity(quantity_text(value, size_units), size_units), value);
    }
}

TEST(Quantity, SeparatorsStandBetweenGroupsOfThreeDigits)
{
    EXPECT_EQ(with_separators(0), "0");
    EXPECT_EQ(with_separators(999), "999");
    EXPECT_EQ(with_separators(1'000), "1,000");
    EXPECT_EQ(with_separators(1'048'575), "1,048,575");
    EXPECT_EQ(with_separators(largest), "18,446,744,073,709,551,615");
}

TEST(Quantity, SeparatedTextHasTheSameUnits)
{
    EXPECT_EQ(separated_quantity_text(0, rate_units), "0 kbit/s");
    EXPECT_EQ(separated_quantity_text(2'500, rate_units), "2,500 kbit/s");
    EXPECT_EQ(separated_quantity_text(1'500'000, rate_units), "1,500 Mbit/s");
    EXPECT_EQ(separated_quantity_text(65'536, size_units), "64 KiB");
    EXPECT_EQ(separated_quantity_text(1'048'577, size_units), "1,048,577 octets");
}

} // namespace
} // namespace text

// Numbers with units.
#include "kelctl/quantity.h"

#include <gtest/gtest.h>

#include <limits>

namespace kelctl
{
namespace
{

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
    constexpr uint64_t largest = std::numeric_limits<uint64_t>::max();
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
}

TEST(Quantity, TextOfAValueIsReadBackAsTheValue)
{
    for (const uint64_t value : {1u, 999u, 1'000u, 1'024u, 123'456u, 1'048'576u, 4'294'967'295u}) {
        EXPECT_EQ(parse_quantity(quantity_text(value, rate_units), rate_units), value);
        EXPECT_EQ(parse_quantity(quantity_text(value, size_units), size_units), value);
    }
}

TEST(Quantity, DurationsAreShownInTheLargestWholeUnit)
{
    EXPECT_EQ(quantity_text(2'000'000'000, duration_units), "2 s");
    EXPECT_EQ(quantity_text(1'200'000'000, duration_units), "1200 ms");
    EXPECT_EQ(quantity_text(1, duration_units), "1 ns");
}

TEST(Quantity, UnitNamesAreListedForPeople)
{
    EXPECT_EQ(names_of(rate_units), "kbit/s, Mbit/s or Gbit/s");
}

TEST(Quantity, WrongOnesAreToldWithTheUnits)
{
    EXPECT_EQ(no_quantity("1 MB", size_units),
              "\"1 MB\" is not a whole number with one of the units octets, KiB or MiB");
    EXPECT_EQ(no_multiple(1000, 256), "1000 octets are not a multiple of 256 octets");
}

} // namespace
} // namespace kelctl

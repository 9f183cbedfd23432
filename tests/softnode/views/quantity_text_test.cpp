/*
 * quantity_text_test.cpp - numbers as people write them.
 */
#include "softnode/views/quantity_text.h"

#include <gtest/gtest.h>

#include <cstdint>

using namespace softnode;

TEST(QuantityText, SeparatesThousands)
{
    EXPECT_EQ(grouped(0), "0");
    EXPECT_EQ(grouped(999), "999");
    EXPECT_EQ(grouped(1'000), "1,000");
    EXPECT_EQ(grouped(1'048'575), "1,048,575");
    EXPECT_EQ(grouped(UINT64_MAX), "18,446,744,073,709,551,615");
}

TEST(QuantityText, WritesRatesInTheLargestUnitThatLosesNothing)
{
    EXPECT_EQ(rate_text(0), "0 kbit/s");
    EXPECT_EQ(rate_text(2'500), "2,500 kbit/s");
    EXPECT_EQ(rate_text(100'000), "100 Mbit/s");
    EXPECT_EQ(rate_text(1'000'000), "1 Gbit/s");
    EXPECT_EQ(rate_text(1'500'000), "1,500 Mbit/s");
    EXPECT_EQ(rate_text(4'294'967'295), "4,294,967,295 kbit/s");
}

TEST(QuantityText, WritesSizesInTheLargestUnitThatLosesNothing)
{
    EXPECT_EQ(size_text(0), "0 octets");
    EXPECT_EQ(size_text(1'023), "1,023 octets");
    EXPECT_EQ(size_text(65'536), "64 KiB");
    EXPECT_EQ(size_text(1'048'576), "1 MiB");
    EXPECT_EQ(size_text(5'120'000), "5,000 KiB");
    EXPECT_EQ(size_text(1'048'577), "1,048,577 octets");
}

// Times as text, in the zone of the machine.
#include "kel-trace/reading/instant.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>

namespace kel_trace
{
namespace
{

constexpr int64_t start = 1'700'000'000'000'000'000; // 2023-11-14 22:13:20 UTC

class Instant : public testing::Test
{
protected:
    void SetUp() override
    {
        setenv("TZ", "UTC", 1);
        tzset();
    }
};

TEST_F(Instant, IsWrittenToTheNanosecond)
{
    EXPECT_EQ(instant_text(start + 42), "2023-11-14 22:13:20.000000042");
    EXPECT_EQ(instant_text(-1), "1969-12-31 23:59:59.999999999");
}

TEST_F(Instant, IsReadAsItIsWritten)
{
    EXPECT_EQ(parse_instant("2023-11-14 22:13:20.000000042", 0), start + 42);
    EXPECT_EQ(parse_instant("2023-11-14T22:13:20", 0), start);
}

TEST_F(Instant, WithoutADateIsOfTheGivenDay)
{
    EXPECT_EQ(parse_instant("22:13:20.5", start), start + 500'000'000);
    EXPECT_EQ(parse_instant("22:14", start), start + 40'000'000'000);
}

TEST_F(Instant, AnythingElseIsNone)
{
    for (const char *text :
         {"", "noon", "22", "22:13:20.", "22:13:20.x", "22:13:20.-1", "22:13:20.0000000001", "2023-11-14"})
        EXPECT_FALSE(parse_instant(text, start)) << text;
}

TEST(Duration, IsWrittenExactly)
{
    EXPECT_EQ(duration_text(0), "0 ns");
    EXPECT_EQ(duration_text(999), "999 ns");
    EXPECT_EQ(duration_text(5'000'000), "5 ms");
    EXPECT_EQ(duration_text(12'345), "12.345 us");
    EXPECT_EQ(duration_text(1'000'000'001), "1.000000001 s");
}

} // namespace
} // namespace kel_trace

// Where a MAC address sits in the node, and the own MP id that this depends on.
#include "expected.h"
#include "kel/kel_core_ic_pcep.h"
#include "transcript.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <ostream>
#include <string>

namespace
{

struct place {
    uint32_t location;
    uint32_t type;

    bool operator==(const place &) const = default;
};

std::ostream &operator<<(std::ostream &out, const place &shown)
{
    return out << "location " << shown.location << ", type " << shown.type;
}

constexpr place cpu = {1, 1};
constexpr place ob = {2, 2};
constexpr place hsfp = {3, 2};
constexpr place eioa = {4, 0};

place classify(const uint8_t (&mac)[6])
{
    place found = {0xDEAD, 0xBEEF};
    EXPECT_EQ(kel_ic_pcep_get_location_and_type_from_branch(mac, &found.location, &found.type), 0U);
    return found;
}

place classify(uint32_t byte2, uint32_t byte3)
{
    return classify({0x02, 0x00, static_cast<uint8_t>(byte2), static_cast<uint8_t>(byte3), 0x00, 0x01});
}

// The transcript when the environment was read once.
std::string mpid_read(const std::string &text, const std::string &id)
{
    return expected::with({text, id}, R"(
        own_mp_id_get:
          INFO PCEP MPID = $1 ($2)
    )");
}

constexpr const char *mpid_missing = R"(
        own_mp_id_get:
          ERROR PCEP Failed to get environment variable MPID
)";

struct mpid_case {
    const char *name;
    const char *text;
    const char *id;
};

// How ctest names the test.
void PrintTo(const mpid_case &shown, std::ostream *out)
{
    *out << shown.name;
}

} // namespace

TEST(Branch, Byte3Of2IsObWhateverByte2)
{
    for (uint32_t byte2 = 0; byte2 <= 255; ++byte2)
        EXPECT_EQ(classify(byte2, 2), ob) << byte2;
    transcript::expect("");
}

TEST(Branch, Byte3Of3IsHsfpWhateverByte2)
{
    for (uint32_t byte2 = 0; byte2 <= 255; ++byte2)
        EXPECT_EQ(classify(byte2, 3), hsfp) << byte2;
    transcript::expect("");
}

TEST(Branch, Byte3Of1OrAbove3IsEioaWhateverByte2)
{
    setenv("MPID", "7", 1);
    for (uint32_t byte3 = 1; byte3 <= 255; byte3 = byte3 == 1 ? 4 : byte3 + 1)
        for (uint32_t byte2 = 0; byte2 <= 255; ++byte2)
            EXPECT_EQ(classify(byte2, byte3), eioa) << byte2 << " " << byte3;
    transcript::expect("");
}

TEST(Branch, TopBitOfByte2IsCpuWithoutReadingTheEnvironment)
{
    setenv("MPID", "7", 1);
    for (uint32_t byte2 = 0x80; byte2 <= 255; ++byte2)
        EXPECT_EQ(classify(byte2, 0), cpu) << byte2;
    transcript::expect("");
}

TEST(Branch, OwnMpIdIsCpuAndEveryOtherEioa)
{
    setenv("MPID", "7", 1);
    for (uint32_t byte2 = 0; byte2 < 0x80; ++byte2)
        EXPECT_EQ(classify(byte2, 0), byte2 == 7 ? cpu : eioa) << byte2;
    transcript::expect(mpid_read("7", "7"));
}

TEST(Branch, OnlyBytes2And3AreLookedAt)
{
    EXPECT_EQ(classify({0x00, 0x00, 0xFF, 0x02, 0x00, 0x00}), ob);
    EXPECT_EQ(classify({0xFF, 0xFF, 0xFF, 0x02, 0xFF, 0xFF}), ob);
    EXPECT_EQ(classify({0x03, 0x03, 0x03, 0x04, 0x03, 0x03}), eioa);
    EXPECT_EQ(classify({0x02, 0x02, 0x80, 0x00, 0x02, 0x02}), cpu);
}

TEST(OwnMpId, OfSevenMakes7CpuAnd8EioaAnd0x87CpuAnyway)
{
    setenv("MPID", "7", 1);
    EXPECT_EQ(classify(0x87, 0x00), cpu);
    transcript::expect("");
    EXPECT_EQ(classify(0x07, 0x00), cpu);
    transcript::expect(mpid_read("7", "7"));
    EXPECT_EQ(classify(0x08, 0x00), eioa);
    transcript::expect("");
}

TEST(OwnMpId, IsKeptOnceItIsKnown)
{
    setenv("MPID", "7", 1);
    EXPECT_EQ(classify(7, 0), cpu);
    setenv("MPID", "8", 1);
    EXPECT_EQ(classify(8, 0), eioa);
    unsetenv("MPID");
    EXPECT_EQ(classify(7, 0), cpu);
    transcript::expect(mpid_read("7", "7"));
}

TEST(OwnMpId, IsReadOnFirstNeedAndNotBefore)
{
    setenv("MPID", "9", 1);
    EXPECT_EQ(classify(9, 2), ob);
    EXPECT_EQ(classify(9, 5), eioa);
    EXPECT_EQ(classify(0x89, 0), cpu);
    setenv("MPID", "10", 1);
    EXPECT_EQ(classify(9, 0), eioa);
    EXPECT_EQ(classify(10, 0), cpu);
    transcript::expect(mpid_read("10", "10"));
}

TEST(OwnMpId, MissingIsTracedEachTimeAndMakes0Cpu)
{
    unsetenv("MPID");
    EXPECT_EQ(classify(0, 0), cpu);
    transcript::expect(mpid_missing);
    EXPECT_EQ(classify(1, 0), eioa);
    transcript::expect(mpid_missing);
    EXPECT_EQ(classify(0x7F, 0), eioa);
    transcript::expect(mpid_missing);
    EXPECT_EQ(classify(0x80, 0), cpu);
    transcript::expect("");
}

TEST(OwnMpId, MissingAtFirstIsReadOnceItIsThere)
{
    unsetenv("MPID");
    EXPECT_EQ(classify(9, 0), eioa);
    transcript::expect(mpid_missing);
    setenv("MPID", "9", 1);
    EXPECT_EQ(classify(9, 0), cpu);
    transcript::expect(mpid_read("9", "9"));
    EXPECT_EQ(classify(9, 0), cpu);
    transcript::expect("");
}

// Texts whose low 8 bits are 0: such an id counts as unknown.
class ZeroMpId : public testing::TestWithParam<mpid_case>
{
};

INSTANTIATE_TEST_SUITE_P(Texts, ZeroMpId,
                         testing::Values(mpid_case{"Zero", "0", "0"}, mpid_case{"Multiple", "256", "0"},
                                         mpid_case{"NoNumber", "seven", "0"}, mpid_case{"Nothing", "", "0"},
                                         mpid_case{"Hexadecimal", "0x10", "0"},
                                         mpid_case{"BelowRange", "-9223372036854775809", "0"}));

TEST_P(ZeroMpId, IsReadAndTracedEachTimeAndMakes0Cpu)
{
    setenv("MPID", GetParam().text, 1);
    EXPECT_EQ(classify(0, 0), cpu);
    transcript::expect(mpid_read(GetParam().text, "0"));
    EXPECT_EQ(classify(16, 0), eioa);
    transcript::expect(mpid_read(GetParam().text, "0"));
}

TEST_P(ZeroMpId, GivesWayToARealOne)
{
    setenv("MPID", GetParam().text, 1);
    EXPECT_EQ(classify(5, 0), eioa);
    transcript::forget();
    setenv("MPID", "5", 1);
    EXPECT_EQ(classify(5, 0), cpu);
    transcript::expect(mpid_read("5", "5"));
}

// Texts and the 8 bits that are kept of them.
class MpIdText : public testing::TestWithParam<mpid_case>
{
};

INSTANTIATE_TEST_SUITE_P(Texts, MpIdText,
                         testing::Values(mpid_case{"Highest", "127", "127"}, mpid_case{"CutTo8Bits", "263", "7"},
                                         mpid_case{"NumberThenText", "12abc", "12"}, mpid_case{"Spaces", "  7 ", "7"},
                                         mpid_case{"Sign", "+7", "7"}, mpid_case{"Negative", "-249", "7"},
                                         mpid_case{"LeadingZeroIsNoOctal", "010", "10"}));

TEST_P(MpIdText, IsReadInDecimalAndCutTo8Bits)
{
    const auto id = static_cast<uint32_t>(atoi(GetParam().id));
    setenv("MPID", GetParam().text, 1);
    EXPECT_EQ(classify(id, 0), cpu);
    EXPECT_EQ(classify(id - 1, 0), eioa);
    transcript::expect(mpid_read(GetParam().text, GetParam().id));
}

// Ids with the top bit set: no other byte 2 is compared with them.
class HighMpId : public testing::TestWithParam<mpid_case>
{
};

INSTANTIATE_TEST_SUITE_P(Texts, HighMpId,
                         testing::Values(mpid_case{"Lowest", "128", "128"}, mpid_case{"Highest", "255", "255"},
                                         mpid_case{"MinusOne", "-1", "255"},
                                         mpid_case{"AboveRange", "9223372036854775808", "255"}));

TEST_P(HighMpId, IsTracedUnsignedAndKept)
{
    setenv("MPID", GetParam().text, 1);
    for (uint32_t byte2 = 0; byte2 < 0x80; ++byte2)
        EXPECT_EQ(classify(byte2, 0), eioa) << byte2;
    transcript::expect(mpid_read(GetParam().text, GetParam().id));
}

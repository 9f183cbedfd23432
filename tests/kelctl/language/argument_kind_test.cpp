// Every kind of argument: what it reads, what it says of wrong words, what it offers.
#include "kelctl/language/argument_kind.h"

#include "kelctl/values/limits.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ostream>

namespace kelctl
{
namespace
{

using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

constexpr range percent = {0, 100, "0 to 100"};

struct wrong_word {
    const char *name;
    argument_kind kind;
    std::string word;
    std::string message;
};

void PrintTo(const wrong_word &wrong, std::ostream *out)
{
    *out << wrong.name;
}

const wrong_word wrong_words[] = {
    {"Mac", kind::mac(), "02:00:00:02:00", "\"02:00:00:02:00\" is not a MAC address such as 02:00:00:02:00:01"},
    {"PortName", kind::port(), "RUL1P", "unknown port \"RUL1P\"; did you mean \"RLU1P\"?"},
    {"PortNameNearToSeveral", kind::port(), "RLU9P", "unknown port \"RLU9P\""},
    {"PortNumber", kind::port(), "51", "unknown port 51"},
    {"NegativePortNumber", kind::port(), "-1", "unknown port -1"},
    {"IdBelow", kind::pcep_id(), "0", "0 is not in the range 1 to 511"},
    {"IdAbove", kind::pcep_id(), "512", "512 is not in the range 1 to 511"},
    {"IdWord", kind::pcep_id(), "seven", "\"seven\" is not a whole number"},
    {"RateUnit", kind::rate(), "1 Mbit",
     "\"1 Mbit\" is not a whole number with one of the units kbit/s, Mbit/s or Gbit/s"},
    {"RateZero", kind::rate(), "0", "0 is not in the range 1 to 4294967295 kbit/s"},
    {"RateOfNoUnits", kind::rate(), "0 Gbit/s", "\"0 Gbit/s\" is not in the range 1 to 4294967295 kbit/s"},
    {"RateTooLarge", kind::rate(), "5000 Gbit/s", "\"5000 Gbit/s\" is not in the range 1 to 4294967295 kbit/s"},
    {"RateFarTooLarge", kind::rate(), "99999999999999999999 Gbit/s",
     "\"99999999999999999999 Gbit/s\" is not in the range 1 to 4294967295 kbit/s"},
    {"Burst", kind::burst(), "1 MiB", "\"1 MiB\" is not in the range 1 to 1048575 octets"},
    {"ThresholdInPartsOfABlock", kind::threshold(), "1000", "1000 octets are not a multiple of 256 octets"},
    {"ThresholdZero", kind::threshold(), "0", "0 is not in the range 256 to 4294967040 octets"},
    {"Number", kind::number(percent), "101", "101 is not in the range 0 to 100"},
    {"NumberWithBlank", kind::number(percent), "1 ", "\"1 \" is not a whole number"},
    {"TooFewNumbers", kind::octets(2, percent), "1", "\"1\" is not 2 comma-separated numbers"},
    {"TooManyNumbers", kind::octets(2, percent), "1,2,3", "\"1,2,3\" is not 2 comma-separated numbers"},
    {"EmptyNumber", kind::octets(2, percent), "1,", "\"\" is not a whole number"},
    {"Handle", kind::queue_handle(), "0x5c0g", "\"0x5c0g\" is not a handle such as 0x5c00000001"},
    {"HandleTooLong", kind::queue_handle(), "0x10000000000000000",
     "\"0x10000000000000000\" is not a handle such as 0x5c00000001"},
    {"Format", kind::format(), "xml", "\"xml\" is not text, csv, json or a number"},
    {"FormatNumber", kind::format(), "256", "256 is not in the range 0 to 255"},
    {"Choice", kind::choice({"one", "two"}), "twos", "\"twos\" is not one of one, two; did you mean \"two\"?"},
    {"File", kind::file(), "", "\"\" is not the name of a file"},
    {"FileWithANullCharacter", kind::file(), std::string("a\0b", 3), "\"a?b\" is not the name of a file"},
    {"ControlCharacters", kind::pcep_id(), "7\x1b[31m", "\"7?[31m\" is not a whole number"},
};

class WrongWord : public testing::TestWithParam<wrong_word>
{
};

TEST_P(WrongWord, IsToldWithWhatIsAllowed)
{
    try {
        GetParam().kind.read(GetParam().word);
        FAIL() << "nothing is wrong with " << GetParam().word;
    } catch (const wrong_value &wrong) {
        EXPECT_EQ(wrong.what(), GetParam().message);
    }
}

INSTANTIATE_TEST_SUITE_P(Kinds, WrongWord, testing::ValuesIn(wrong_words),
                         [](const auto &tested) { return std::string(tested.param.name); });

template <typename Value> Value read(const argument_kind &kind, std::string_view text)
{
    return std::get<Value>(kind.read(text));
}

TEST(ArgumentKind, MacTakesTheUsualNotations)
{
    for (const char *text : {"02:00:00:02:00:0a", "02-00-00-02-00-0A", "0200.0002.000a"})
        EXPECT_EQ(to_text(read<mac_address>(kind::mac(), text)), "02:00:00:02:00:0a");
}

TEST(ArgumentKind, PortTakesNumbersAndNamesInEitherCase)
{
    EXPECT_EQ(read<int64_t>(kind::port(), "6"), 6);
    EXPECT_EQ(read<int64_t>(kind::port(), "rlu1P"), 6);
    EXPECT_EQ(read<int64_t>(kind::port(), "0"), 0);
    EXPECT_EQ(read<int64_t>(kind::port(), "MZ_T"), 50);
}

TEST(ArgumentKind, QuantitiesTakeUnitsAndPlainNumbersOfTheFirst)
{
    EXPECT_EQ(read<int64_t>(kind::rate(), "100"), 100);
    EXPECT_EQ(read<int64_t>(kind::rate(), "2Gbit/s"), 2'000'000);
    EXPECT_EQ(read<int64_t>(kind::burst(), "64 KiB"), 65536);
    EXPECT_EQ(read<int64_t>(kind::threshold(), "1 MiB"), 1'048'576);
}

TEST(ArgumentKind, DurationTakesUnitsOnly)
{
    const argument_kind kind = kind::duration({0, 2'000'000'000, "0 s to 2 s"});
    EXPECT_EQ(read<int64_t>(kind, "250ms"), 250'000'000);
    EXPECT_EQ(read<int64_t>(kind, "2 s"), 2'000'000'000);
    EXPECT_EQ(read<int64_t>(kind, "7us"), 7'000);
    EXPECT_EQ(read<int64_t>(kind, "0ns"), 0);
    for (const char *wrong : {"5", "2.5s", "-1s", "2001ms", "1 h", "", "99999999999999999999 s"})
        EXPECT_THROW(kind.read(wrong), wrong_value) << wrong;
}

TEST(ArgumentKind, OthersReadWhatTheyAreNamedFor)
{
    EXPECT_EQ(read<int64_t>(kind::pcep_id(), "511"), 511);
    EXPECT_EQ(read<int64_t>(kind::number(percent), "0x64"), 100);
    EXPECT_THAT(read<std::vector<uint32_t>>(kind::octets(3, percent), "1,2,0x3"), ElementsAre(1, 2, 3));
    EXPECT_EQ(read<uint64_t>(kind::queue_handle(), "0xffffffffffffffff"), 0xFFFF'FFFF'FFFF'FFFFu);
    for (const char *text : {"5c00000001", "0x5c00000001", "0X5C00000001"})
        EXPECT_EQ(read<uint64_t>(kind::queue_handle(), text), 0x5C'0000'0001u) << text;
    EXPECT_EQ(read<int64_t>(kind::format(), "text"), 0);
    EXPECT_EQ(read<int64_t>(kind::format(), "csv"), 1);
    EXPECT_EQ(read<int64_t>(kind::format(), "json"), 2);
    EXPECT_EQ(read<int64_t>(kind::format(), "200"), 200);
    EXPECT_EQ(read<std::string>(kind::choice({"one", "two"}), "two"), "two");
    EXPECT_EQ(read<std::string>(kind::file(), "-"), "-");
    EXPECT_EQ(read<std::string>(kind::text(), ""), "");
}

TEST(ArgumentKind, RawTextsHaveOctetsInHexadecimal)
{
    const auto raw = [](std::string_view text) { return std::get<std::string>(kind::text().read_raw(text)); };
    EXPECT_EQ(raw("a\\x0ab\\x5C"), "a\nb\\");
    EXPECT_EQ(raw("plain"), "plain");
    for (const char *wrong : {"\\", "\\n", "\\x0", "a\\x0g", "\\y41"})
        EXPECT_THROW(raw(wrong), wrong_value) << wrong;
    try {
        raw("up\\now there");
        FAIL();
    } catch (const wrong_value &wrong) {
        EXPECT_STREQ(wrong.what(), "\"\\now\": a backslash is followed by x and two hexadecimal digits");
    }
    EXPECT_EQ(read<std::string>(kind::text(), "\\x41"), "\\x41");
}

TEST(ArgumentKind, SomeNumbersAreReadRawOnly)
{
    const argument_kind kind = kind::only_raw(percent);
    EXPECT_EQ(std::get<int64_t>(kind.read_raw("7")), 7);
    try {
        kind.read("7");
        FAIL();
    } catch (const wrong_value &wrong) {
        EXPECT_STREQ(wrong.what(), "requires --raw");
    }
}

TEST(ArgumentKind, RawPortsHaveNamesToo)
{
    EXPECT_EQ(std::get<int64_t>(kind::port().read_raw("RLU1P")), 6);
    EXPECT_EQ(std::get<int64_t>(kind::port().read_raw("-1")), -1);
}

TEST(ArgumentKind, HelpShowsWhatIsWrittenAndWhatIsAllowed)
{
    const auto shown = [](const argument_kind &kind) { return kind.placeholder + ": " + kind.allowed; };
    EXPECT_EQ(shown(kind::flag()), ": ");
    EXPECT_EQ(shown(kind::mac()), "MAC: ");
    EXPECT_EQ(shown(kind::port()), "PORT: name or 0 to 50");
    EXPECT_EQ(shown(kind::pcep_id()), "ID: 1 to 511");
    EXPECT_EQ(shown(kind::rate()), "RATE: 1 to 4294967295 kbit/s");
    EXPECT_EQ(shown(kind::burst()), "SIZE: 1 to 1048575 octets");
    EXPECT_EQ(shown(kind::threshold()), "SIZE: 256 to 4294967040 octets, a multiple of 256");
    EXPECT_EQ(shown(kind::duration(percent)), "TIME: 0 to 100");
    EXPECT_EQ(shown(kind::number(percent)), "N: 0 to 100");
    EXPECT_EQ(shown(kind::octets(2, percent)), "N,N: 2 numbers, 0 to 100");
    EXPECT_EQ(shown(kind::numbers(3, percent)), "N,N,...: 3 numbers, 0 to 100");
    EXPECT_EQ(shown(kind::queue_handle()), "HANDLE: ");
    EXPECT_EQ(shown(kind::handle_name()), "HANDLE: ");
    EXPECT_EQ(shown(kind::format()), "FORMAT: text, csv, json or 0 to 255");
    EXPECT_EQ(shown(kind::choice({"one", "two"})), "WORD: one, two");
    EXPECT_EQ(shown(kind::file()), "FILE: ");
    EXPECT_EQ(shown(kind::text()), "TEXT: ");
    EXPECT_EQ(shown(kind::command_words()), "COMMAND: ");
}

TEST(ArgumentKind, OffersWhatFits)
{
    const known_words known = {.macs = {*parse_mac_address("02:00:00:02:00:01")},
                               .pceps = {7, 300, 80},
                               .groups = {90, 7},
                               .queues = {0x5D},
                               .schedulers = {0x5C}};
    EXPECT_THAT(kind::mac().complete(known).words, ElementsAre("02:00:00:02:00:01"));
    EXPECT_THAT(kind::pcep_id().complete(known).words, ElementsAre("7", "80", "300"));
    EXPECT_THAT(kind::group_id().complete(known).words, ElementsAre("7", "90"));
    EXPECT_THAT(kind::pcep_or_group_id().complete(known).words, ElementsAre("7", "80", "90", "300"));
    EXPECT_FALSE(kind::new_pcep_id().complete);
    EXPECT_FALSE(kind::new_group_id().complete);
    EXPECT_THAT(kind::queue_handle().complete(known).words, ElementsAre("0x5d"));
    EXPECT_THAT(kind::scheduler_handle().complete(known).words, ElementsAre("0x5c"));
    EXPECT_THAT(kind::port().complete(known).words, AllOf(SizeIs(51), Contains("RLU1P"), Contains("HERON")));
    EXPECT_THAT(kind::ebcom_port().complete(known).words, AllOf(SizeIs(33), Contains("RLU1P"), Not(Contains("HERON"))));
    EXPECT_THAT(kind::format().complete(known).words, ElementsAre("text", "csv", "json"));
    EXPECT_THAT(kind::choice({"one", "two"}).complete(known).words, ElementsAre("one", "two"));
    EXPECT_THAT(kind::file().complete(known).words, IsEmpty());
    EXPECT_TRUE(kind::file().complete(known).files);
}

TEST(ArgumentKind, RemembersWhatWasNamed)
{
    known_words known;
    kind::pcep_id().remember(int64_t{7}, known);
    kind::new_pcep_id().remember(int64_t{8}, known);
    kind::group_id().remember(int64_t{9}, known);
    kind::new_group_id().remember(int64_t{10}, known);
    kind::mac().remember(*parse_mac_address("02:00:00:02:00:01"), known);
    EXPECT_THAT(known.pceps, ElementsAre(7, 8));
    EXPECT_THAT(known.groups, ElementsAre(9, 10));
    EXPECT_THAT(known.macs, ElementsAre(*parse_mac_address("02:00:00:02:00:01")));
    EXPECT_FALSE(kind::pcep_or_group_id().remember); // the id does not tell which of them it is
}

} // namespace
} // namespace kelctl

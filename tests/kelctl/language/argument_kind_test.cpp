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
    {"Mac", mac(), "02:00:00:02:00", "\"02:00:00:02:00\" is not a MAC address such as 02:00:00:02:00:01"},
    {"PortName", port(), "RUL1P", "there is no port \"RUL1P\"; did you mean \"RLU1P\"?"},
    {"PortNameNearToSeveral", port(), "RLU9P", "there is no port \"RLU9P\""},
    {"PortNumber", port(), "51", "there is no port 51"},
    {"NegativePortNumber", port(), "-1", "there is no port -1"},
    {"IdBelow", pcep_id(), "0", "0 is not in 1 to 511"},
    {"IdAbove", pcep_id(), "512", "512 is not in 1 to 511"},
    {"IdWord", pcep_id(), "seven", "\"seven\" is not a whole number"},
    {"RateUnit", rate(), "1 Mbit", "\"1 Mbit\" is not a whole number with one of the units kbit/s, Mbit/s or Gbit/s"},
    {"RateZero", rate(), "0", "0 is not in 1 to 4294967295 kbit/s"},
    {"RateTooLarge", rate(), "5000 Gbit/s", "\"5000 Gbit/s\" is not in 1 to 4294967295 kbit/s"},
    {"RateFarTooLarge", rate(), "99999999999999999999 Gbit/s",
     "\"99999999999999999999 Gbit/s\" is not in 1 to 4294967295 kbit/s"},
    {"Burst", burst(), "1 MiB", "\"1 MiB\" is not in 1 to 1048575 octets"},
    {"ThresholdInPartsOfABlock", threshold(), "1000", "1000 octets are not a multiple of 256 octets"},
    {"ThresholdZero", threshold(), "0", "0 is not in 256 to 4294967040 octets"},
    {"Number", number(percent), "101", "101 is not in 0 to 100"},
    {"NumberWithBlank", number(percent), "1 ", "\"1 \" is not a whole number"},
    {"TooFewNumbers", octets(2, percent), "1", "\"1\" is not 2 numbers with commas between"},
    {"TooManyNumbers", octets(2, percent), "1,2,3", "\"1,2,3\" is not 2 numbers with commas between"},
    {"EmptyNumber", octets(2, percent), "1,", "\"\" is not a whole number"},
    {"Handle", queue_handle(), "0x5c0g", "\"0x5c0g\" is not a handle such as 0x5c00000001"},
    {"HandleTooLong", queue_handle(), "0x10000000000000000",
     "\"0x10000000000000000\" is not a handle such as 0x5c00000001"},
    {"Format", format(), "xml", "\"xml\" is neither text, csv, json nor a number"},
    {"FormatNumber", format(), "256", "256 is not in 0 to 255"},
    {"Choice", choice({"one", "two"}), "twos", "\"twos\" is none of one, two; did you mean \"two\"?"},
    {"File", file(), "", "\"\" is not the name of a file"},
    {"ControlCharacters", pcep_id(), "7\x1b[31m", "\"7?[31m\" is not a whole number"},
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
        EXPECT_EQ(to_text(read<mac_address>(mac(), text)), "02:00:00:02:00:0a");
}

TEST(ArgumentKind, PortTakesNumbersAndNamesInEitherCase)
{
    EXPECT_EQ(read<int64_t>(port(), "6"), 6);
    EXPECT_EQ(read<int64_t>(port(), "rlu1P"), 6);
    EXPECT_EQ(read<int64_t>(port(), "0"), 0);
    EXPECT_EQ(read<int64_t>(port(), "MZ_T"), 50);
}

TEST(ArgumentKind, QuantitiesTakeUnitsAndPlainNumbersOfTheFirst)
{
    EXPECT_EQ(read<int64_t>(rate(), "100"), 100);
    EXPECT_EQ(read<int64_t>(rate(), "2Gbit/s"), 2'000'000);
    EXPECT_EQ(read<int64_t>(burst(), "64 KiB"), 65536);
    EXPECT_EQ(read<int64_t>(threshold(), "1 MiB"), 1'048'576);
}

TEST(ArgumentKind, DurationTakesUnitsOnly)
{
    const argument_kind kind = duration({0, 2'000'000'000, "0 s to 2 s"});
    EXPECT_EQ(read<int64_t>(kind, "250ms"), 250'000'000);
    EXPECT_EQ(read<int64_t>(kind, "2 s"), 2'000'000'000);
    EXPECT_EQ(read<int64_t>(kind, "7us"), 7'000);
    EXPECT_EQ(read<int64_t>(kind, "0ns"), 0);
    for (const char *wrong : {"5", "2.5s", "-1s", "2001ms", "1 h", "", "99999999999999999999 s"})
        EXPECT_THROW(kind.read(wrong), wrong_value) << wrong;
}

TEST(ArgumentKind, OthersReadWhatTheyAreNamedFor)
{
    EXPECT_EQ(read<int64_t>(pcep_id(), "511"), 511);
    EXPECT_EQ(read<int64_t>(number(percent), "0x64"), 100);
    EXPECT_THAT(read<std::vector<uint32_t>>(octets(3, percent), "1,2,0x3"), ElementsAre(1, 2, 3));
    EXPECT_EQ(read<uint64_t>(queue_handle(), "0xffffffffffffffff"), 0xFFFF'FFFF'FFFF'FFFFu);
    EXPECT_EQ(read<uint64_t>(queue_handle(), "5c00000001"), 0x5C'0000'0001u);
    EXPECT_EQ(read<int64_t>(format(), "text"), 0);
    EXPECT_EQ(read<int64_t>(format(), "csv"), 1);
    EXPECT_EQ(read<int64_t>(format(), "json"), 2);
    EXPECT_EQ(read<int64_t>(format(), "200"), 200);
    EXPECT_EQ(read<std::string>(choice({"one", "two"}), "two"), "two");
    EXPECT_EQ(read<std::string>(file(), "-"), "-");
    EXPECT_EQ(read<std::string>(text(), ""), "");
}

TEST(ArgumentKind, OffersWhatFits)
{
    const known_words known = {.macs = {*parse_mac_address("02:00:00:02:00:01")},
                               .pceps = {7, 300, 80},
                               .groups = {90, 7},
                               .queues = {0x5D},
                               .schedulers = {0x5C}};
    EXPECT_THAT(mac().complete(known).words, ElementsAre("02:00:00:02:00:01"));
    EXPECT_THAT(pcep_id().complete(known).words, ElementsAre("7", "80", "300"));
    EXPECT_THAT(group_id().complete(known).words, ElementsAre("7", "90"));
    EXPECT_THAT(pcep_or_group_id().complete(known).words, ElementsAre("7", "80", "90", "300"));
    EXPECT_FALSE(new_pcep_id().complete);
    EXPECT_FALSE(new_group_id().complete);
    EXPECT_THAT(queue_handle().complete(known).words, ElementsAre("0x5d"));
    EXPECT_THAT(scheduler_handle().complete(known).words, ElementsAre("0x5c"));
    EXPECT_THAT(port().complete(known).words, AllOf(SizeIs(51), Contains("RLU1P"), Contains("HERON")));
    EXPECT_THAT(ebcom_port().complete(known).words, AllOf(SizeIs(33), Contains("RLU1P"), Not(Contains("HERON"))));
    EXPECT_THAT(format().complete(known).words, ElementsAre("text", "csv", "json"));
    EXPECT_THAT(choice({"one", "two"}).complete(known).words, ElementsAre("one", "two"));
    EXPECT_THAT(file().complete(known).words, IsEmpty());
    EXPECT_TRUE(file().complete(known).files);
}

TEST(ArgumentKind, RemembersWhatWasNamed)
{
    known_words known;
    pcep_id().remember(int64_t{7}, known);
    new_pcep_id().remember(int64_t{8}, known);
    group_id().remember(int64_t{9}, known);
    new_group_id().remember(int64_t{10}, known);
    mac().remember(*parse_mac_address("02:00:00:02:00:01"), known);
    EXPECT_THAT(known.pceps, ElementsAre(7, 8));
    EXPECT_THAT(known.groups, ElementsAre(9, 10));
    EXPECT_THAT(known.macs, ElementsAre(*parse_mac_address("02:00:00:02:00:01")));
    EXPECT_FALSE(pcep_or_group_id().remember); // the id does not tell which of them it is
}

} // namespace
} // namespace kelctl

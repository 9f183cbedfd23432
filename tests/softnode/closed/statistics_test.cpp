/*
 * statistics_test.cpp - which counter is where in the three records, octet by octet.
 */
#include "softnode/closed/statistics.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>
#include <map>
#include <string>
#include <vector>

using namespace softnode;

namespace
{

/* Six different numbers, each with something in every octet. */
Counters counted()
{
    Counters counters;
    counters.account(Fate::received, {0x1112131415161718, 1});
    counters.account(Fate::sent, {0x2122232425262728, 1});
    counters.account(Fate::dropped, {0x3132333435363738, 1});
    counters.account(Fate::received, {1, 0x41000000});
    counters.account(Fate::sent, {2, 0x42000000});
    counters.account(Fate::dropped, {3, 0x43000000});
    return counters;
}

constexpr std::uint64_t frames_received = 0x1112131415161719;
constexpr std::uint64_t octets_received = 0x1112131415161718 + 0x41000000;
constexpr std::uint64_t frames_sent = 0x212223242526272a;
constexpr std::uint64_t octets_sent = 0x2122232425262728 + 2ULL * 0x42000000;
constexpr std::uint64_t frames_dropped = 0x313233343536373b;
constexpr std::uint64_t octets_dropped = 0x3132333435363738 + 3ULL * 0x43000000;

/* A number in a record: little-endian, in the place of its first octet. */
struct Placed {
    std::size_t octets;
    std::uint64_t value;
};

/* The record has these numbers at these places and zero everywhere else. */
template <class Record> void expect_octets(const Record &record, const std::map<std::size_t, Placed> &places)
{
    std::vector<std::uint8_t> expected(sizeof record);
    for (const auto &[place, number] : places)
        for (std::size_t octet = 0; octet < number.octets; ++octet)
            expected[place + octet] = static_cast<std::uint8_t>(number.value >> (8 * octet));
    std::vector<std::uint8_t> found(sizeof record);
    std::memcpy(found.data(), &record, sizeof record);
    EXPECT_EQ(found, expected);
}

std::vector<std::string> lines_of(const Block &block, const void *record)
{
    std::vector<std::string> lines;
    for (const Field &field : block.fields)
        lines.push_back(std::string(field.name) + "=" + std::to_string(field.in(record)));
    return lines;
}

} // namespace

TEST(Statistics, OfAQueueStandWhereTheCompanionLibraryHasThem)
{
    expect_octets(queue_statistics(counted(), {0x5152535455565758, 0x99, 0x6162636465666768}),
                  {{0, {8, octets_sent}},
                   {8, {8, octets_received}},
                   {16, {8, octets_dropped}},
                   {24, {4, frames_dropped}},
                   {28, {4, 0x65666768}},
                   {32, {4, 0x55565758}},
                   {36, {4, frames_sent}},
                   {40, {4, frames_received}}});
}

TEST(Statistics, OfAQueueWrapInThirtyTwoBitWords)
{
    Counters counters;
    counters.account(Fate::received, {0x1'0000'0005, 2});
    counters.account(Fate::sent, {0xffff'ffff, 1});
    const qos_queue_stats record = queue_statistics(counters, {});
    EXPECT_EQ(record.pkts_rx, 5U);
    EXPECT_EQ(record.octets_rx, 0x2'0000'000aU);
    EXPECT_EQ(record.pkts_tx, 0xffff'ffffU);
}

TEST(Statistics, OfAPcepStandWhereTheTableHasThem)
{
    expect_octets(pcep_statistics(counted()), {{0, {8, frames_sent}},
                                               {8, {8, octets_sent}},
                                               {64, {8, frames_received}},
                                               {72, {4, frames_dropped}},
                                               {80, {8, octets_received}},
                                               {96, {8, octets_dropped}}});
}

TEST(Statistics, OfTheServiceStandAsNamed)
{
    expect_octets(global_statistics(counted(), {0x7172737475767778, 511, 30}), {{0, {8, frames_received}},
                                                                                {8, {8, octets_received}},
                                                                                {16, {8, frames_sent}},
                                                                                {24, {8, octets_sent}},
                                                                                {32, {8, frames_dropped}},
                                                                                {40, {8, octets_dropped}},
                                                                                {48, {8, 0x7172737475767778}},
                                                                                {56, {8, 511}},
                                                                                {64, {8, 30}}});
}

TEST(Statistics, OfTheServiceAreNamedForReaders)
{
    Counters counters;
    counters.account(Fate::received, {1, 10});
    counters.account(Fate::sent, {2, 10});
    counters.account(Fate::dropped, {3, 10});
    const ebcom_global_stats record = global_statistics(counters, {4, 5, 6});
    EXPECT_STREQ(global_block.title, "EBCOM global statistics");
    EXPECT_EQ(lines_of(global_block, &record),
              (std::vector<std::string>{"frames_received=1", "octets_received=10", "frames_sent=2", "octets_sent=20",
                                        "frames_dropped=3", "octets_dropped=30", "paths=4", "pceps=5", "groups=6"}));
}

TEST(Statistics, OfAPcepAreNamedForReaders)
{
    Counters counters;
    counters.account(Fate::received, {1, 10});
    counters.account(Fate::sent, {2, 10});
    counters.account(Fate::dropped, {3, 10});
    const ebcom_pcep_stats record = pcep_statistics(counters);
    EXPECT_STREQ(inbound_block.title, "PCEP inbound statistics");
    EXPECT_EQ(
        lines_of(inbound_block, &record.inbound),
        (std::vector<std::string>{"frames_received=1", "octets_received=10", "frames_dropped=3", "octets_dropped=30"}));
    EXPECT_STREQ(outbound_block.title, "PCEP outbound statistics");
    EXPECT_EQ(lines_of(outbound_block, &record.outbound),
              (std::vector<std::string>{"frames_sent=2", "octets_sent=20"}));
}

TEST(Statistics, AreReadFromARecordAtAnyAddress)
{
    const ebcom_global_stats record = global_statistics(counted(), {});
    std::vector<std::uint8_t> octets(sizeof record + 1);
    std::memcpy(octets.data() + 1, &record, sizeof record);
    EXPECT_EQ(global_block.fields[0].in(octets.data() + 1), frames_received);
}

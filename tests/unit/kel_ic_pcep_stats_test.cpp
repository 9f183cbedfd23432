// The counters of a unicast PCEP: as the driver kit has them, as the compact record, and as text.
#include "expected.h"
#include "kel/kel_core_ic_pcep.h"
#include "outputs.h"
#include "pcep_requests.h"
#include "script.h"
#include "scripted_platform.h"
#include "scripted_statistics.h"
#include "transcript.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <ostream>
#include <string>
#include <utility>

namespace
{

constexpr uint32_t invalid_ids[] = {0, 512, 513, 1024, 0x1'0007, 0x8000'0007, UINT32_MAX};

const std::string read_with_success = R"(
          > ork_ebcom_pcep_statistics_get(ork, pcep 1)
)";

// A refusal of the reader's own.
std::string refused(uint32_t rc, const std::string &reason)
{
    return expected::with({std::to_string(rc), reason}, R"(
          ~ kei_util_init_rc_str_get($1)
        kel_ic_pcep_get_stats:
          init:EXCEPTION GENERAL code $1, $2
    )");
}

// A refusal of the driver kit's.
std::string read_refused(int32_t rc)
{
    return expected::with({std::to_string(rc), scripted::text("%x", static_cast<uint32_t>(rc))}, R"(
          > ork_ebcom_pcep_statistics_get(ork, pcep 1) = $1
          > ork_syshandle_get(0, 1)
          ~ ork_sys_status_get($1)
        kel_ic_pcep_get_stats:
          init:EXCEPTION GENERAL 0x$2 - status $1, ork_ebcom_pcep_statistics_get
    )");
}

// What the operation above the reader adds to a failure.
std::string passed_on_by(const std::string &operation, uint32_t rc)
{
    return expected::with({operation, std::to_string(rc)}, R"(
          ~ kei_util_init_rc_str_get($2)
        $1:
          init:EXCEPTION GENERAL code $2, kel_ic_pcep_get_stats
    )");
}

// A free id, an id out of range and a multicast group, each with the refusal it gets. PCEP 7 is there besides.
struct refusal {
    uint32_t pcep_id;
    uint32_t rc;
    const char *reason;
};
constexpr refusal refusals[] = {{0, 3, "(pcep_id)"},
                                {512, 3, "(pcep_id)"},
                                {8, 4, "(pcep_id)"},
                                {300, 11, "Statistics not supported for Multicast PCEPs"}};

void pcep_and_group_up()
{
    pcep_service_up();
    make_pcep(7);
    make_group(300);
}

void expect_refusal(uint32_t pcep_id, uint32_t rc, const std::string &reason)
{
    SCOPED_TRACE(pcep_id);
    auto stats = soiled<ebcom_pcep_stats>();
    EXPECT_EQ(kel_ic_pcep_get_stats(pcep_id, &stats), rc);
    EXPECT_EQ(octets_of(stats), zeros<ebcom_pcep_stats>());
    transcript::expect(refused(rc, reason));
}

// Octets 16 to 63 are none of the caller's.
octets as_the_caller_sees_it(octets driver_kits_record)
{
    std::fill_n(driver_kits_record.begin() + 16, 48, uint8_t{0});
    return driver_kits_record;
}

// Where the compact record's words are in the driver kit's record, in order.
struct word {
    size_t offset;
    size_t width;
};
constexpr word compact_words[] = {{64, 8}, {112, 4}, {72, 4}, {116, 4}, {76, 4}, {88, 4}, {80, 8},
                                  {92, 4}, {120, 4}, {96, 8}, {104, 8}, {0, 8},  {8, 8}};

octets compact(const octets &driver_kits_record)
{
    octets result;
    for (const auto &[offset, width] : compact_words) {
        const auto first = driver_kits_record.begin() + static_cast<ptrdiff_t>(offset);
        result.insert(result.end(), first, first + static_cast<ptrdiff_t>(width));
    }
    return result;
}

// One operation under its two names.
struct compact_reader {
    const char *name;
    decltype(&kel_core_ic_pcep_stats_get) stats_get;
};

std::ostream &operator<<(std::ostream &out, const compact_reader &shown)
{
    return out << shown.name;
}

class CompactPcepStats : public testing::TestWithParam<compact_reader>
{
};

INSTANTIATE_TEST_SUITE_P(UnderBothNames, CompactPcepStats,
                         testing::Values(compact_reader{"kel_core_ic_pcep_stats_get", kel_core_ic_pcep_stats_get},
                                         compact_reader{"kel_core_ic_pcep_get_stats", kel_core_ic_pcep_get_stats}));

} // namespace

TEST(PcepStats, AreTheDriverKitsButForTheOutboundRest)
{
    pcep_service_up();
    make_pcep(7);
    auto stats = soiled<ebcom_pcep_stats>();
    EXPECT_EQ(kel_ic_pcep_get_stats(7, &stats), 0U);
    EXPECT_EQ(octets_of(stats), as_the_caller_sees_it(scripted::counted_octets(128)));
    transcript::expect(read_with_success);
}

TEST(PcepStats, FirstAndLastIdAreAccepted)
{
    pcep_service_up();
    make_pcep(1);
    make_pcep(511);
    ebcom_pcep_stats stats;
    EXPECT_EQ(kel_ic_pcep_get_stats(511, &stats), 0U);
    EXPECT_EQ(kel_ic_pcep_get_stats(1, &stats), 0U);
    transcript::expect(R"(
          > ork_ebcom_pcep_statistics_get(ork, pcep 2)
          > ork_ebcom_pcep_statistics_get(ork, pcep 1)
    )");
}

TEST(PcepStats, AreOfferedForEveryUnicastLocation)
{
    pcep_service_up();
    for (uint32_t id = 1; const pcep_side &local : sides) {
        SCOPED_TRACE(local.location);
        make_pcep(id, local);
        ebcom_pcep_stats stats;
        EXPECT_EQ(kel_ic_pcep_get_stats(id, &stats), 0U);
        ++id;
    }
}

TEST(PcepStats, OfAnInvalidIdAre3)
{
    pcep_and_group_up();
    for (const uint32_t id : invalid_ids)
        expect_refusal(id, 3, "(pcep_id)");
}

TEST(PcepStats, OfAFreeIdAre4)
{
    pcep_and_group_up();
    for (const uint32_t id : {1U, 6U, 8U, 299U, 511U})
        expect_refusal(id, 4, "(pcep_id)");
}

TEST(PcepStats, OfAMulticastGroupAre11)
{
    pcep_and_group_up();
    make_members(300, 7, 1);
    expect_refusal(300, 11, "Statistics not supported for Multicast PCEPs");
}

TEST(PcepStats, OfARemovedPcepAre4)
{
    pcep_and_group_up();
    ASSERT_EQ(kel_core_ic_pcep_rem(7), 0U);
    transcript::forget();
    expect_refusal(7, 4, "(pcep_id)");
}

TEST(PcepStats, AfterAStopAre4)
{
    pcep_and_group_up();
    ASSERT_EQ(kel_core_ic_pcep_stop(), 0U);
    transcript::forget();
    expect_refusal(7, 4, "(pcep_id)");
    expect_refusal(300, 4, "(pcep_id)");
}

TEST(PcepStats, BeforeAnyStartAreReadWithANullHandle)
{
    make_pcep(7);
    ebcom_pcep_stats stats;
    EXPECT_EQ(kel_ic_pcep_get_stats(7, &stats), 0U);
    transcript::expect(R"(
          > ork_ebcom_pcep_statistics_get((nil), pcep 1)
    )");
}

TEST(PcepStats, DriverKitRefusalIs13WhateverItsCode)
{
    pcep_and_group_up();
    for (const int32_t rc : {-1, -4, -9, -12, 3, INT32_MIN}) {
        SCOPED_TRACE(rc);
        scripted::fail("ork_ebcom_pcep_statistics_get", rc);
        auto stats = soiled<ebcom_pcep_stats>();
        EXPECT_EQ(kel_ic_pcep_get_stats(7, &stats), 13U);
        EXPECT_EQ(octets_of(stats), zeros<ebcom_pcep_stats>());
        transcript::expect(read_refused(rc));
    }
}

TEST(PcepStats, FailuresLeaveTheTableAsItIs)
{
    pcep_and_group_up();
    scripted::fail("ork_ebcom_pcep_statistics_get", -1);
    ebcom_pcep_stats stats;
    for (const uint32_t id : {7U, 300U, 8U, 512U})
        EXPECT_NE(kel_ic_pcep_get_stats(id, &stats), 0U);
    expect_entries({"7: id 7, pcep 1", "300: id 300, group 1"});
    EXPECT_EQ(kel_ic_pcep_get_stats(7, &stats), 0U);
}

TEST_P(CompactPcepStats, HaveTheirWordsInTheirOwnOrderWithoutGaps)
{
    pcep_and_group_up();
    auto stats = soiled<pcep_stats>();
    EXPECT_EQ(GetParam().stats_get(7, &stats), 0U);
    EXPECT_EQ(octets_of(stats), compact(scripted::counted_octets(128)));
    transcript::expect(read_with_success);
}

TEST_P(CompactPcepStats, Are76OctetsAndNoMore)
{
    pcep_and_group_up();
    uint8_t storage[80];
    std::ranges::fill(storage, uint8_t{0xFF});
    EXPECT_EQ(GetParam().stats_get(7, reinterpret_cast<pcep_stats *>(storage)), 0U);
    EXPECT_EQ(octets(storage + 68, storage + 80), (octets{9, 10, 11, 12, 13, 14, 15, 16, 0xFF, 0xFF, 0xFF, 0xFF}));
}

TEST_P(CompactPcepStats, OfARefusedIdAreAllZero)
{
    pcep_and_group_up();
    for (const auto &[pcep_id, rc, reason] : refusals) {
        SCOPED_TRACE(pcep_id);
        auto stats = soiled<pcep_stats>();
        EXPECT_EQ(GetParam().stats_get(pcep_id, &stats), rc);
        EXPECT_EQ(octets_of(stats), zeros<pcep_stats>());
        transcript::expect(refused(rc, reason) + passed_on_by("kel_core_ic_pcep_stats_get", rc));
    }
}

TEST_P(CompactPcepStats, AreAllZeroWhenTheDriverKitRefuses)
{
    pcep_and_group_up();
    for (const int32_t rc : {-1, -8, 3}) {
        SCOPED_TRACE(rc);
        scripted::fail("ork_ebcom_pcep_statistics_get", rc);
        auto stats = soiled<pcep_stats>();
        EXPECT_EQ(GetParam().stats_get(7, &stats), 13U);
        EXPECT_EQ(octets_of(stats), zeros<pcep_stats>());
        transcript::expect(read_refused(rc) + passed_on_by("kel_core_ic_pcep_stats_get", 13));
    }
}

TEST(PcepStatsText, HasTheInboundCountersFirst)
{
    pcep_and_group_up();
    text_buffer buffer;
    EXPECT_EQ(kel_core_ic_pcep_fmt_stats_get(7, buffer.text, text_buffer::size, 5), 0U);
    EXPECT_STREQ(buffer.text, "inbound outbound end");
    transcript::expect(read_with_success + R"(
          > kel_fmt_ebcom_pcep_inbound_stats(512, format 5)
          > kel_fmt_ebcom_pcep_outbound_stats(512, format 5)
          > kel_fmt_end(512)
    )");
}

TEST(PcepStatsText, IsMadeFromTheTwoBlocksAsTheCallerSeesThem)
{
    pcep_and_group_up();
    text_buffer buffer;
    scripted::soil_stack();
    EXPECT_EQ(kel_core_ic_pcep_fmt_stats_get(7, buffer.text, text_buffer::size, 5), 0U);
    const octets seen = as_the_caller_sees_it(scripted::counted_octets(128));
    EXPECT_EQ(scripted::record_of("kel_fmt_ebcom_pcep_outbound_stats"), octets(seen.begin(), seen.begin() + 64));
    EXPECT_EQ(scripted::record_of("kel_fmt_ebcom_pcep_inbound_stats"), octets(seen.begin() + 64, seen.end()));
}

TEST(PcepStatsText, OfARefusedIdIsEmpty)
{
    pcep_and_group_up();
    for (const auto &[pcep_id, rc, reason] : refusals) {
        SCOPED_TRACE(pcep_id);
        text_buffer buffer;
        EXPECT_EQ(kel_core_ic_pcep_fmt_stats_get(pcep_id, buffer.text, text_buffer::size, 5), rc);
        EXPECT_TRUE(buffer.was_only_emptied());
        transcript::expect(refused(rc, reason) + passed_on_by("kel_core_ic_pcep_fmt_stats_get", rc));
    }
}

TEST(PcepStatsText, IsEmptyWhenTheDriverKitRefuses)
{
    pcep_and_group_up();
    scripted::fail("ork_ebcom_pcep_statistics_get", -4);
    text_buffer buffer;
    EXPECT_EQ(kel_core_ic_pcep_fmt_stats_get(7, buffer.text, text_buffer::size, 5), 13U);
    EXPECT_TRUE(buffer.was_only_emptied());
    transcript::expect(read_refused(-4) + passed_on_by("kel_core_ic_pcep_fmt_stats_get", 13));
}

TEST(PcepStatsText, ResultsOfTheFormattingAreIgnored)
{
    pcep_and_group_up();
    scripted::fail("kel_fmt_ebcom_pcep_inbound_stats", 10);
    scripted::fail("kel_fmt_ebcom_pcep_outbound_stats", 11);
    text_buffer buffer;
    EXPECT_EQ(kel_core_ic_pcep_fmt_stats_get(7, buffer.text, text_buffer::size, 5), 0U);
    EXPECT_STREQ(buffer.text, "end");
    transcript::expect(read_with_success + R"(
          > kel_fmt_ebcom_pcep_inbound_stats(512, format 5) = 10
          > kel_fmt_ebcom_pcep_outbound_stats(512, format 5) = 11
          > kel_fmt_end(512)
    )");
}

TEST(PcepStatsText, FailedEndPassesItsCodeAndKeepsTheText)
{
    pcep_and_group_up();
    for (const uint32_t rc : {1U, 10U, 255U, UINT32_MAX}) {
        SCOPED_TRACE(rc);
        scripted::fail("kel_fmt_end", rc);
        text_buffer buffer;
        EXPECT_EQ(kel_core_ic_pcep_fmt_stats_get(7, buffer.text, text_buffer::size, 0), rc);
        EXPECT_STREQ(buffer.text, "inbound outbound ");
        transcript::expect(read_with_success + expected::with({std::to_string(rc)}, R"(
          > kel_fmt_ebcom_pcep_inbound_stats(512, format 0)
          > kel_fmt_ebcom_pcep_outbound_stats(512, format 0)
          > kel_fmt_end(512) = $1
          ~ kei_util_init_rc_str_get($1)
        kel_core_ic_pcep_fmt_stats_get:
          init:EXCEPTION GENERAL code $1, kel_fmt_end
        )"));
    }
}

TEST(PcepStatsText, StaysWithinTheCallersLength)
{
    pcep_and_group_up();
    text_buffer buffer;
    EXPECT_EQ(kel_core_ic_pcep_fmt_stats_get(7, buffer.text, 11, 0), 0U);
    EXPECT_STREQ(buffer.text, "inbound ou");
    EXPECT_TRUE(buffer.untouched_from(11));
}

TEST(PcepStatsText, UnderItsSecondNameIsCutToTheLowOctetOfTheFormat)
{
    pcep_and_group_up();
    for (const auto &[format, low_octet] : {std::pair{5U, "5"}, {0x1FFU, "255"}, {0x100U, "0"}, {0xFFFF'FF07U, "7"}}) {
        SCOPED_TRACE(format);
        text_buffer buffer;
        EXPECT_EQ(kel_core_ic_pcep_fmt_stats(7, buffer.text, text_buffer::size, format), 0U);
        EXPECT_STREQ(buffer.text, "inbound outbound end");
        transcript::expect(read_with_success + expected::with({low_octet}, R"(
          > kel_fmt_ebcom_pcep_inbound_stats(512, format $1)
          > kel_fmt_ebcom_pcep_outbound_stats(512, format $1)
          > kel_fmt_end(512)
        )"));
    }
}

TEST(PcepStatsText, UnderItsSecondNameFailsWithoutARecordOfItsOwn)
{
    pcep_and_group_up();
    text_buffer buffer;
    EXPECT_EQ(kel_core_ic_pcep_fmt_stats(8, buffer.text, text_buffer::size, 5), 4U);
    EXPECT_TRUE(buffer.was_only_emptied());
    transcript::expect(refused(4, "(pcep_id)") + passed_on_by("kel_core_ic_pcep_fmt_stats_get", 4));
}

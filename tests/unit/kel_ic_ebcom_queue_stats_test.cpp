// The counters of the queue that carries a destination, as a record and as text in two layouts.
#include "expected.h"
#include "kel/kel_core_ic_ebcom.h"
#include "outputs.h"
#include "script.h"
#include "scripted_platform.h"
#include "scripted_statistics.h"
#include "shaper_requests.h"
#include "transcript.h"

#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <utility>

namespace
{

// No two counters are equal, not even in their low 32 bits; each is wider or has a higher bit than a signed number of
// half its width.
constexpr qos_queue_stats counters = {.octets_tx = 0x1'0000'0005,
                                      .octets_rx = 0xF000'0002'0000'0006,
                                      .octets_dropped = 0x3'8000'0007,
                                      .pkts_dropped = 0x8000'0008,
                                      .mem_blks_in_use = 0x8000'0009,
                                      .pkts_out_standing = 0x8000'000A,
                                      .pkts_tx = 0x8000'000B,
                                      .pkts_rx = 0xFFFF'FFFC,
                                      .word9 = 0x8000'000D};

const std::string entered = R"(
        kel_core_ic_ebcom_queue_stats_get:
          FN_ENTER EBCOM
          ~ macAddr2str(02:00:00:02:00:01)
          FN_PARAM EBCOM dst_mac = 02:00:00:02:00:01
)";

const std::string queue_found = R"(
        kel_ic_ebcom_queue_handle_get:
          FN_ENTER EBCOM
          FN_EXIT EBCOM
        kel_core_ic_ebcom_queue_stats_get:
          API_CALL EBCOM kel_init_qos_queue_stats_get()
)";

const std::string scheduler_found = R"(
        kel_ic_ebcom_scheduler_handle_get:
          FN_ENTER EBCOM
          FN_EXIT EBCOM
)";

const std::string counters_read = entered + queue_found + R"(
          > kel_init_qos_queue_stats_get(0x9001)
)";

const std::string read_with_success = counters_read + scheduler_found + R"(
        kel_ic_ebcom_set_burst_stats:
          FN_ENTER EBCOM
          FN_EXIT EBCOM
        kel_core_ic_ebcom_queue_stats_get:
          FN_EXIT EBCOM
)";

// Of a destination that no queue carries.
const std::string not_found = entered + R"(
        kel_ic_ebcom_queue_handle_get:
          FN_ENTER EBCOM
          ~ kei_util_init_rc_str_get(4)
        find_handles_by_dst_mac:
          init:EXCEPTION GENERAL code 4, dst_mac
          ~ kei_util_init_rc_str_get(4)
        kel_ic_ebcom_queue_handle_get:
          init:EXCEPTION GENERAL code 4, find_handles_by_dst_mac
          FN_EXIT EBCOM
          ~ kei_util_init_rc_str_get(4)
        kel_core_ic_ebcom_queue_stats_get:
          init:EXCEPTION GENERAL code 4, kel_ic_ebcom_queue_handle_get
          FN_EXIT EBCOM
)";

// The end of a reading that failed at a step that has no record of its own.
std::string read_failed(uint32_t rc, const std::string &step)
{
    return expected::with({std::to_string(rc), step}, R"(
          ~ kei_util_init_rc_str_get($1)
          init:EXCEPTION GENERAL code $1, $2
          FN_EXIT EBCOM
    )");
}

// What a text operation adds to a failure.
std::string text_failed(const std::string &operation, uint32_t rc, const std::string &step)
{
    return expected::with({operation, std::to_string(rc), step}, R"(
          ~ kei_util_init_rc_str_get($2)
        $1:
          init:EXCEPTION GENERAL code $2, $3
    )");
}

std::string first_layout(uint32_t format = 7)
{
    return expected::with({std::to_string(format)}, R"(
          > kel_fmt_header(512, format $1, EBCOM Queue statistics)
          > kel_fmt_uint32(512, format $1, mem_blks_in_use, 2147483657)
          > kel_fmt_uint32(512, format $1, pkts_out_standing, 2147483658)
          > kel_fmt_uint32(512, format $1, pkts_dropped, 2147483656)
          > kel_fmt_uint32(512, format $1, pkts_tx, 2147483659)
          > kel_fmt_uint32(512, format $1, pkts_rq, 4294967292)
    )");
}

// Of the octet counters, the low 32 bits.
std::string second_layout(uint32_t format = 7)
{
    return expected::with({std::to_string(format)}, R"(
          > kel_fmt_header(512, format $1, EBCOM Queue statistics version 2)
          > kel_fmt_uint32(512, format $1, mem_blks_in_use, 2147483657)
          > kel_fmt_uint32(512, format $1, pkts_out_standing, 2147483658)
          > kel_fmt_uint32(512, format $1, pkts_dropped, 2147483656)
          > kel_fmt_uint32(512, format $1, pkts_tx, 2147483659)
          > kel_fmt_uint32(512, format $1, pkts_rx, 4294967292)
          > kel_fmt_uint32(512, format $1, octets_dropped, 2147483655)
          > kel_fmt_uint32(512, format $1, octets_tx, 5)
          > kel_fmt_uint32(512, format $1, octets_rx, 6)
          > kel_fmt_uint32(512, format $1, max_burst_size, 0)
          > kel_fmt_uint32(512, format $1, current_burst_size, 0)
    )");
}

// A queue that carries `peer`, with the counters above.
void peer_has_a_queue()
{
    scheduler_tree_up();
    ASSERT_EQ(add(unshaped(6)), 0U);
    scripted::set_queue_stats(counters);
    transcript::forget();
}

void expect_counters_in(const ebcom_queue_stats &stats)
{
    EXPECT_EQ(stats.mem_blks_in_use, 0x8000'0009);
    EXPECT_EQ(stats.pkts_out_standing, 0x8000'000A);
    EXPECT_EQ(stats.pkts_dropped, 0x8000'0008);
    EXPECT_EQ(stats.pkts_tx, 0x8000'000B);
    EXPECT_EQ(stats.pkts_rx, 0xFFFF'FFFC);
    EXPECT_EQ(stats.octets_dropped, 0x3'8000'0007);
    EXPECT_EQ(stats.octets_tx, 0x1'0000'0005);
    EXPECT_EQ(stats.octets_rx, 0xF000'0002'0000'0006);
    EXPECT_EQ(stats.max_burst_size, 0U);
    EXPECT_EQ(stats.current_burst_size, 0U);
}

// The two layouts differ in what they print, and in nothing else.
struct layout {
    const char *operation;
    decltype(&kel_core_ic_ebcom_queue_fmt_stats_get) text_get;
    const char *title;
    uint32_t lines;
};
constexpr layout layouts[] = {
    {"kel_core_ic_ebcom_queue_fmt_stats_get", kel_core_ic_ebcom_queue_fmt_stats_get, "EBCOM Queue statistics", 5},
    {"kel_core_ic_ebcom_queue_fmt_stats_get_2", kel_core_ic_ebcom_queue_fmt_stats_get_2,
     "EBCOM Queue statistics version 2", 10},
};

std::ostream &operator<<(std::ostream &out, const layout &shown)
{
    return out << shown.operation;
}

class QueueStatsText : public testing::TestWithParam<layout>
{
};

INSTANTIATE_TEST_SUITE_P(BothLayouts, QueueStatsText, testing::ValuesIn(layouts));

} // namespace

TEST(QueueStats, EachCounterGoesToItsOwnPlace)
{
    peer_has_a_queue();
    auto stats = soiled<ebcom_queue_stats>();
    EXPECT_EQ(kel_core_ic_ebcom_queue_stats_get(peer.data(), &stats), 0U);
    expect_counters_in(stats);
    transcript::expect(read_with_success);
}

TEST(QueueStats, BothRecordsAreClearedBeforeTheyAreFilled)
{
    peer_has_a_queue();
    auto stats = soiled<ebcom_queue_stats>();
    scripted::soil_stack();
    EXPECT_EQ(kel_core_ic_ebcom_queue_stats_get(peer.data(), &stats), 0U);
    EXPECT_EQ(scripted::record_of("kel_init_qos_queue_stats_get"), zeros<qos_queue_stats>());
    const octets all = octets_of(stats);
    EXPECT_EQ(octets(all.begin() + 20, all.begin() + 24), octets(4)) << "gap after pkts_rx";
    EXPECT_EQ(octets(all.begin() + 48, all.end()), octets(8)) << "burst sizes";
}

TEST(QueueStats, AreThoseOfTheQueueThatCarriesTheDestination)
{
    scheduler_tree_up();
    add(unshaped(6, second_peer));
    add(unshaped(0, peer));
    transcript::forget();
    auto stats = soiled<ebcom_queue_stats>();
    EXPECT_EQ(kel_core_ic_ebcom_queue_stats_get(peer.data(), &stats), 0U);
    transcript::expect(entered + queue_found + R"(
          > kel_init_qos_queue_stats_get(0x9002)
    )" + scheduler_found +
                       R"(
        kel_ic_ebcom_set_burst_stats:
          FN_ENTER EBCOM
          FN_EXIT EBCOM
        kel_core_ic_ebcom_queue_stats_get:
          FN_EXIT EBCOM
    )");
    EXPECT_EQ(scripted::last_burst_request().queue_handle, scripted::queue(2));
    EXPECT_EQ(scripted::last_burst_request().scheduler_handle, group_scheduler(4));
}

TEST(QueueStats, OfAnUnknownDestinationAre4AndAllZero)
{
    scheduler_tree_up();
    add(unshaped(6, second_peer));
    transcript::forget();
    auto stats = soiled<ebcom_queue_stats>();
    EXPECT_EQ(kel_core_ic_ebcom_queue_stats_get(peer.data(), &stats), 4U);
    EXPECT_EQ(octets_of(stats), zeros<ebcom_queue_stats>());
    transcript::expect(not_found);
}

TEST(QueueStats, FailedQueueLookUpPassesItsCodeAndReadsNothing)
{
    peer_has_a_queue();
    for (const uint32_t rc : {1U, 4U, 255U, UINT32_MAX}) {
        SCOPED_TRACE(rc);
        scripted::fail("kel_ic_ebcom_queue_handle_get", rc);
        auto stats = soiled<ebcom_queue_stats>();
        EXPECT_EQ(kel_core_ic_ebcom_queue_stats_get(peer.data(), &stats), rc);
        EXPECT_EQ(octets_of(stats), zeros<ebcom_queue_stats>());
        transcript::expect(entered + read_failed(rc, "kel_ic_ebcom_queue_handle_get"));
    }
}

TEST(QueueStats, FailedReadingPassesItsCodeAndNoCounter)
{
    peer_has_a_queue();
    for (const uint32_t rc : {1U, 3U, 13U, 255U, UINT32_MAX}) {
        SCOPED_TRACE(rc);
        scripted::fail("kel_init_qos_queue_stats_get", rc);
        auto stats = soiled<ebcom_queue_stats>();
        EXPECT_EQ(kel_core_ic_ebcom_queue_stats_get(peer.data(), &stats), rc);
        EXPECT_EQ(octets_of(stats), zeros<ebcom_queue_stats>());
        transcript::expect(entered + queue_found + expected::with({std::to_string(rc)}, R"(
          > kel_init_qos_queue_stats_get(0x9001) = $1
        )") + read_failed(rc, "kel_init_qos_queue_stats_get"));
    }
    EXPECT_EQ(scripted::calls_of("kel_ic_ebcom_scheduler_handle_get"), 0U);
}

TEST(QueueStats, FailedSchedulerLookUpPassesItsCodeAndLeavesTheCounters)
{
    peer_has_a_queue();
    for (const uint32_t rc : {1U, 4U, 255U, UINT32_MAX}) {
        SCOPED_TRACE(rc);
        scripted::fail("kel_ic_ebcom_scheduler_handle_get", rc);
        auto stats = soiled<ebcom_queue_stats>();
        EXPECT_EQ(kel_core_ic_ebcom_queue_stats_get(peer.data(), &stats), rc);
        expect_counters_in(stats);
        transcript::expect(counters_read + read_failed(rc, "kel_ic_ebcom_scheduler_handle_get"));
    }
    EXPECT_EQ(scripted::calls_of("kel_ic_ebcom_set_burst_stats"), 0U);
}

// The record names the step by another name than its own.
TEST(QueueStats, FailedBurstStepPassesItsCodeAndLeavesTheCounters)
{
    peer_has_a_queue();
    for (const uint32_t rc : {1U, 11U, 255U, UINT32_MAX}) {
        SCOPED_TRACE(rc);
        scripted::fail("kel_ic_ebcom_set_burst_stats", rc);
        auto stats = soiled<ebcom_queue_stats>();
        EXPECT_EQ(kel_core_ic_ebcom_queue_stats_get(peer.data(), &stats), rc);
        expect_counters_in(stats);
        transcript::expect(counters_read + scheduler_found + expected::with({std::to_string(rc)}, R"(
          ~ kei_util_init_rc_str_get($1)
        kel_core_ic_ebcom_queue_stats_get:
          init:EXCEPTION GENERAL code $1, kel_core_ic_set_burst_stats
          FN_EXIT EBCOM
        )"));
    }
}

TEST(QueueStats, AreReadAgainAfterAFailure)
{
    peer_has_a_queue();
    scripted::fail("kel_init_qos_queue_stats_get", 3);
    auto stats = soiled<ebcom_queue_stats>();
    EXPECT_EQ(kel_core_ic_ebcom_queue_stats_get(peer.data(), &stats), 3U);
    EXPECT_EQ(kel_core_ic_ebcom_queue_stats_get(peer.data(), &stats), 0U);
    expect_counters_in(stats);
}

TEST(QueueStats, AreGoneWithTheLastPathOfThePort)
{
    peer_has_a_queue();
    ASSERT_EQ(remove(unshaped(6)), 0U);
    transcript::forget();
    auto stats = soiled<ebcom_queue_stats>();
    EXPECT_EQ(kel_core_ic_ebcom_queue_stats_get(peer.data(), &stats), 4U);
    EXPECT_EQ(octets_of(stats), zeros<ebcom_queue_stats>());
    transcript::expect(not_found);
}

TEST(BurstStep, GetsBothHandlesAndTheCallersRecord)
{
    peer_has_a_queue();
    ebcom_queue_stats stats;
    EXPECT_EQ(kel_core_ic_ebcom_queue_stats_get(peer.data(), &stats), 0U);
    EXPECT_EQ(scripted::last_burst_request().queue_handle, scripted::queue(1));
    EXPECT_EQ(scripted::last_burst_request().scheduler_handle, group_scheduler(0));
    EXPECT_EQ(scripted::last_burst_request().stats, &stats);
}

TEST(BurstStep, WritesNothing)
{
    auto stats = soiled<ebcom_queue_stats>();
    EXPECT_EQ(kel_ic_ebcom_set_burst_stats(scripted::queue(1), scripted::scheduler(8), &stats), 0U);
    EXPECT_EQ(octets_of(stats), octets(sizeof stats, 0xFF));
    transcript::expect(R"(
        kel_ic_ebcom_set_burst_stats:
          FN_ENTER EBCOM
          FN_EXIT EBCOM
    )");
}

TEST(BurstStep, LooksAtNoneOfItsArguments)
{
    EXPECT_EQ(kel_ic_ebcom_set_burst_stats(nullptr, nullptr, nullptr), 0U);
}

TEST(QueueStatsFirstLayout, HasFivePacketLinesTheLastOneLabelledRq)
{
    peer_has_a_queue();
    text_buffer buffer;
    EXPECT_EQ(kel_core_ic_ebcom_queue_fmt_stats_get(peer.data(), buffer.text, text_buffer::size, 7), 0U);
    EXPECT_STREQ(buffer.text, "EBCOM Queue statistics: mem_blks_in_use=2147483657 pkts_out_standing=2147483658 "
                              "pkts_dropped=2147483656 pkts_tx=2147483659 pkts_rq=4294967292 end");
    transcript::expect(read_with_success + first_layout() + R"(
          > kel_fmt_end(512)
    )");
}

TEST(QueueStatsSecondLayout, HasAllCountersOfWhichOctetsAreCutTo32Bits)
{
    peer_has_a_queue();
    text_buffer buffer;
    EXPECT_EQ(kel_core_ic_ebcom_queue_fmt_stats_get_2(peer.data(), buffer.text, text_buffer::size, 7), 0U);
    EXPECT_STREQ(buffer.text, "EBCOM Queue statistics version 2: mem_blks_in_use=2147483657 "
                              "pkts_out_standing=2147483658 pkts_dropped=2147483656 pkts_tx=2147483659 "
                              "pkts_rx=4294967292 octets_dropped=2147483655 octets_tx=5 octets_rx=6 "
                              "max_burst_size=0 current_burst_size=0 end");
    transcript::expect(read_with_success + second_layout() + R"(
          > kel_fmt_end(512)
    )");
}

TEST(QueueStatsSecondName, GivesTheFirstLayoutAndCutsTheFormatToItsLowOctet)
{
    peer_has_a_queue();
    for (const auto &[format, low_octet] : {std::pair{5U, 5U}, {0x1FFU, 0xFFU}, {0x100U, 0U}, {0xFFFF'FF07U, 7U}}) {
        SCOPED_TRACE(format);
        text_buffer buffer;
        EXPECT_EQ(kel_core_ic_ebcom_fmt_queue_stats(peer.data(), buffer.text, text_buffer::size, format), 0U);
        transcript::expect(read_with_success + first_layout(low_octet) + R"(
          > kel_fmt_end(512)
        )");
    }
}

TEST(QueueStatsSecondName, FailsWithoutARecordOfItsOwn)
{
    text_buffer buffer;
    EXPECT_EQ(kel_core_ic_ebcom_fmt_queue_stats(peer.data(), buffer.text, text_buffer::size, 7), 4U);
    EXPECT_TRUE(buffer.was_only_emptied());
    transcript::expect(not_found +
                       text_failed("kel_core_ic_ebcom_queue_fmt_stats_get", 4, "kel_core_ic_ebcom_queue_stats_get"));
}

TEST_P(QueueStatsText, OfAnUnknownDestinationIs4AndEmpty)
{
    scheduler_tree_up();
    text_buffer buffer;
    EXPECT_EQ(GetParam().text_get(peer.data(), buffer.text, text_buffer::size, 7), 4U);
    EXPECT_TRUE(buffer.was_only_emptied());
    transcript::expect(not_found + text_failed(GetParam().operation, 4, "kel_core_ic_ebcom_queue_stats_get"));
}

TEST_P(QueueStatsText, OfAFailedReadingIsEmpty)
{
    peer_has_a_queue();
    scripted::fail("kel_init_qos_queue_stats_get", 255);
    text_buffer buffer;
    EXPECT_EQ(GetParam().text_get(peer.data(), buffer.text, text_buffer::size, 7), 255U);
    EXPECT_TRUE(buffer.was_only_emptied());
    transcript::expect(entered + queue_found + R"(
          > kel_init_qos_queue_stats_get(0x9001) = 255
    )" + read_failed(255, "kel_init_qos_queue_stats_get") +
                       text_failed(GetParam().operation, 255, "kel_core_ic_ebcom_queue_stats_get"));
}

TEST_P(QueueStatsText, IsEmptyEvenWhereCountersWereRead)
{
    peer_has_a_queue();
    scripted::fail("kel_ic_ebcom_scheduler_handle_get", 4);
    text_buffer buffer;
    EXPECT_EQ(GetParam().text_get(peer.data(), buffer.text, text_buffer::size, 7), 4U);
    EXPECT_TRUE(buffer.was_only_emptied());
    transcript::expect(counters_read + read_failed(4, "kel_ic_ebcom_scheduler_handle_get") +
                       text_failed(GetParam().operation, 4, "kel_core_ic_ebcom_queue_stats_get"));
}

TEST_P(QueueStatsText, ResultsOfTheFormattingAreIgnored)
{
    peer_has_a_queue();
    scripted::fail("kel_fmt_header", 10);
    scripted::fail("kel_fmt_uint32", 11, 1, scripted::every);
    text_buffer buffer;
    EXPECT_EQ(GetParam().text_get(peer.data(), buffer.text, text_buffer::size, 7), 0U);
    EXPECT_STREQ(buffer.text, "end");
    EXPECT_EQ(scripted::calls_of("kel_fmt_uint32"), GetParam().lines);
    EXPECT_EQ(scripted::calls_of("kei_util_init_rc_str_get"), 0U);
}

TEST_P(QueueStatsText, FailedEndPassesItsCodeAndKeepsTheText)
{
    peer_has_a_queue();
    const std::string layout = GetParam().lines == 5 ? first_layout() : second_layout();
    for (const uint32_t rc : {1U, 10U, 255U, UINT32_MAX}) {
        SCOPED_TRACE(rc);
        scripted::fail("kel_fmt_end", rc);
        text_buffer buffer;
        EXPECT_EQ(GetParam().text_get(peer.data(), buffer.text, text_buffer::size, 7), rc);
        EXPECT_TRUE(std::string(buffer.text).starts_with(GetParam().title));
        transcript::expect(read_with_success + layout + expected::with({std::to_string(rc)}, R"(
          > kel_fmt_end(512) = $1
        )") + text_failed(GetParam().operation, rc, "kel_fmt_end"));
    }
}

TEST_P(QueueStatsText, StaysWithinTheCallersLength)
{
    peer_has_a_queue();
    text_buffer buffer;
    EXPECT_EQ(GetParam().text_get(peer.data(), buffer.text, 12, 7), 0U);
    EXPECT_STREQ(buffer.text, "EBCOM Queue");
    EXPECT_TRUE(buffer.untouched_from(12));
}

TEST_P(QueueStatsText, OneOctetOfBufferIsEnoughForTheEmptyText)
{
    peer_has_a_queue();
    text_buffer buffer;
    EXPECT_EQ(GetParam().text_get(peer.data(), buffer.text, 1, 7), 0U);
    EXPECT_TRUE(buffer.was_only_emptied());
}

// The service's global counters, as a record and as text.
#include "expected.h"
#include "kel/kel_core_ic_ebcom.h"
#include "outputs.h"
#include "script.h"
#include "scripted_platform.h"
#include "scripted_statistics.h"
#include "transcript.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

namespace
{

const std::string read_with_success = R"(
          > kel_init_attach()
          > ork_ebcom_global_statistics_get(ork)
)";

// The whole of a text operation without an attachment.
const std::string attachment_failed = R"(
          > kel_init_attach() = 9
          ~ kei_util_init_rc_str_get(9)
        kel_ic_ebcom_get_global_stats:
          init:EXCEPTION GENERAL code 9, kel_init_attach
          ~ kei_util_init_rc_str_get(9)
        kel_core_ic_ebcom_global_fmt_stats_get:
          init:EXCEPTION GENERAL code 9, kel_ic_ebcom_get_global_stats
)";

} // namespace

TEST(GlobalStats, AreTheDriverKitsRecordUnchanged)
{
    auto stats = soiled<ebcom_global_stats>();
    EXPECT_EQ(kel_ic_ebcom_get_global_stats(&stats), 0U);
    EXPECT_EQ(octets_of(stats), scripted::counted_octets(256));
    transcript::expect(read_with_success);
}

TEST(GlobalStats, BothRecordsAreClearedBeforeTheyAreFilled)
{
    auto stats = soiled<ebcom_global_stats>();
    scripted::soil_stack();
    EXPECT_EQ(kel_ic_ebcom_get_global_stats(&stats), 0U);
    EXPECT_EQ(scripted::record_of("kel_init_attach"), zeros<kel_attach_info>());
    EXPECT_EQ(scripted::record_of("ork_ebcom_global_statistics_get"), zeros<ebcom_global_stats>());
}

TEST(GlobalStats, FailedAttachmentPassesItsCodeAndMakesNoDriverKitCall)
{
    for (const uint32_t rc : {1U, 3U, 13U, 255U, UINT32_MAX}) {
        SCOPED_TRACE(rc);
        scripted::fail("kel_init_attach", rc);
        auto stats = soiled<ebcom_global_stats>();
        EXPECT_EQ(kel_ic_ebcom_get_global_stats(&stats), rc);
        EXPECT_EQ(octets_of(stats), zeros<ebcom_global_stats>());
        transcript::expect(expected::with({std::to_string(rc)}, R"(
          > kel_init_attach() = $1
          ~ kei_util_init_rc_str_get($1)
        kel_ic_ebcom_get_global_stats:
          init:EXCEPTION GENERAL code $1, kel_init_attach
        )"));
    }
}

TEST(GlobalStats, DriverKitRefusalIs13WhateverItsCode)
{
    for (const int32_t rc : {-1, -4, -9, -12, 3, INT32_MIN}) {
        SCOPED_TRACE(rc);
        scripted::fail("ork_ebcom_global_statistics_get", rc);
        auto stats = soiled<ebcom_global_stats>();
        EXPECT_EQ(kel_ic_ebcom_get_global_stats(&stats), 13U);
        EXPECT_EQ(octets_of(stats), zeros<ebcom_global_stats>());
        transcript::expect(expected::with({std::to_string(rc), scripted::text("%x", static_cast<uint32_t>(rc))}, R"(
          > kel_init_attach()
          > ork_ebcom_global_statistics_get(ork) = $1
          > ork_syshandle_get(0, 1)
          ~ ork_sys_status_get($1)
        kel_ic_ebcom_get_global_stats:
          init:EXCEPTION GENERAL 0x$2 - status $1, ork_ebcom_global_statistics_get
        )"));
    }
}

TEST(GlobalStats, NothingIsKeptOfAFailure)
{
    scripted::fail("kel_init_attach", 3);
    scripted::fail("ork_ebcom_global_statistics_get", -1);
    auto stats = soiled<ebcom_global_stats>();
    EXPECT_EQ(kel_ic_ebcom_get_global_stats(&stats), 3U);
    EXPECT_EQ(kel_ic_ebcom_get_global_stats(&stats), 13U);
    EXPECT_EQ(kel_ic_ebcom_get_global_stats(&stats), 0U);
    EXPECT_EQ(octets_of(stats), scripted::counted_octets(256));
}

TEST(GlobalStatsText, IsTheDriverKitsRecordFormatted)
{
    text_buffer buffer;
    EXPECT_EQ(kel_core_ic_ebcom_global_fmt_stats_get(buffer.text, text_buffer::size, 5), 0U);
    EXPECT_STREQ(buffer.text, "global end");
    EXPECT_EQ(scripted::record_of("kel_fmt_ebcom_global_stats"), scripted::counted_octets(256));
    transcript::expect(read_with_success + R"(
          > kel_fmt_ebcom_global_stats(512, format 5)
          > kel_fmt_end(512)
    )");
}

TEST(GlobalStatsText, StaysWithinTheCallersLength)
{
    text_buffer buffer;
    EXPECT_EQ(kel_core_ic_ebcom_global_fmt_stats_get(buffer.text, 9, 0), 0U);
    EXPECT_STREQ(buffer.text, "global e");
    EXPECT_TRUE(buffer.untouched_from(9));
}

TEST(GlobalStatsText, OneOctetOfBufferIsEnoughForTheEmptyText)
{
    text_buffer buffer;
    EXPECT_EQ(kel_core_ic_ebcom_global_fmt_stats_get(buffer.text, 1, 0), 0U);
    EXPECT_TRUE(buffer.was_only_emptied());
}

TEST(GlobalStatsText, IsEmptyWithoutAnAttachment)
{
    scripted::fail("kel_init_attach", 9);
    text_buffer buffer;
    EXPECT_EQ(kel_core_ic_ebcom_global_fmt_stats_get(buffer.text, text_buffer::size, 5), 9U);
    EXPECT_TRUE(buffer.was_only_emptied());
    transcript::expect(attachment_failed);
}

TEST(GlobalStatsText, IsEmptyWhenTheDriverKitRefuses)
{
    scripted::fail("ork_ebcom_global_statistics_get", -4);
    text_buffer buffer;
    EXPECT_EQ(kel_core_ic_ebcom_global_fmt_stats_get(buffer.text, text_buffer::size, 5), 13U);
    EXPECT_TRUE(buffer.was_only_emptied());
    transcript::expect(R"(
          > kel_init_attach()
          > ork_ebcom_global_statistics_get(ork) = -4
          > ork_syshandle_get(0, 1)
          ~ ork_sys_status_get(-4)
        kel_ic_ebcom_get_global_stats:
          init:EXCEPTION GENERAL 0xfffffffc - status -4, ork_ebcom_global_statistics_get
          ~ kei_util_init_rc_str_get(13)
        kel_core_ic_ebcom_global_fmt_stats_get:
          init:EXCEPTION GENERAL code 13, kel_ic_ebcom_get_global_stats
    )");
}

TEST(GlobalStatsText, ResultOfTheFormattingIsIgnored)
{
    scripted::fail("kel_fmt_ebcom_global_stats", 10);
    text_buffer buffer;
    EXPECT_EQ(kel_core_ic_ebcom_global_fmt_stats_get(buffer.text, text_buffer::size, 5), 0U);
    EXPECT_STREQ(buffer.text, "end");
    transcript::expect(read_with_success + R"(
          > kel_fmt_ebcom_global_stats(512, format 5) = 10
          > kel_fmt_end(512)
    )");
}

TEST(GlobalStatsText, FailedEndOfTheTextPassesItsCodeAndKeepsTheText)
{
    for (const uint32_t rc : {1U, 10U, 255U, UINT32_MAX}) {
        SCOPED_TRACE(rc);
        scripted::fail("kel_fmt_end", rc);
        text_buffer buffer;
        EXPECT_EQ(kel_core_ic_ebcom_global_fmt_stats_get(buffer.text, text_buffer::size, 0), rc);
        EXPECT_STREQ(buffer.text, "global ");
        transcript::expect(read_with_success + expected::with({std::to_string(rc)}, R"(
          > kel_fmt_ebcom_global_stats(512, format 0)
          > kel_fmt_end(512) = $1
          ~ kei_util_init_rc_str_get($1)
        kel_core_ic_ebcom_global_fmt_stats_get:
          init:EXCEPTION GENERAL code $1, kel_fmt_end
        )"));
    }
}

TEST(GlobalStatsText, UnderItsSecondNameIsCutToTheLowOctetOfTheFormat)
{
    for (const auto &[format, low_octet] : {std::pair{5U, "5"}, {0x1FFU, "255"}, {0x100U, "0"}, {0xFFFF'FF07U, "7"}}) {
        SCOPED_TRACE(format);
        text_buffer buffer;
        EXPECT_EQ(kel_core_ic_ebcom_fmt_global_stats(buffer.text, text_buffer::size, format), 0U);
        EXPECT_STREQ(buffer.text, "global end");
        transcript::expect(read_with_success + expected::with({low_octet}, R"(
          > kel_fmt_ebcom_global_stats(512, format $1)
          > kel_fmt_end(512)
        )"));
    }
}

TEST(GlobalStatsText, UnderItsSecondNameFailsWithoutARecordOfItsOwn)
{
    scripted::fail("kel_init_attach", 9);
    text_buffer buffer;
    EXPECT_EQ(kel_core_ic_ebcom_fmt_global_stats(buffer.text, text_buffer::size, 5), 9U);
    EXPECT_TRUE(buffer.was_only_emptied());
    transcript::expect(attachment_failed);
}

/*
 * kel_fmt_test.cpp - the formatting library through its C functions: its texts, and what it refuses. How a table is cut
 * is text_table_test.cpp's.
 */
#include "control.h"

#include "platform/kel_fmt.h"

#include <cstdint>
#include <cstring>
#include <functional>
#include <initializer_list>
#include <string>
#include <vector>

namespace
{

using notation::read_json;

/* A caller's buffer, empty, and a document written into it. */
class KelFmt : public ControlledNode
{
protected:
    std::string queue_text(uint8_t format)
    {
        buffer[0] = '\0';
        EXPECT_EQ(kel_fmt_header(buffer, sizeof buffer, format, "EBCOM Queue statistics"), 0U);
        EXPECT_EQ(kel_fmt_uint32(buffer, sizeof buffer, format, "mem_blks_in_use", 0), 0U);
        EXPECT_EQ(kel_fmt_uint32(buffer, sizeof buffer, format, "pkts_rq", UINT32_MAX), 0U);
        EXPECT_EQ(kel_fmt_end(buffer, sizeof buffer), 0U);
        return buffer;
    }

    std::string pcep_text(uint8_t format)
    {
        ebcom_pcep_stats stats{};
        stats.inbound.in_cnt0 = 1;
        stats.inbound.in_cnt1 = UINT64_MAX;
        stats.inbound.in_word0 = 3;
        stats.inbound.in_cnt2 = 4;
        stats.outbound.out_cnt0 = 5;
        stats.outbound.out_cnt1 = 6;
        buffer[0] = '\0';
        EXPECT_EQ(kel_fmt_ebcom_pcep_inbound_stats(buffer, sizeof buffer, format, &stats.inbound), 0U);
        EXPECT_EQ(kel_fmt_ebcom_pcep_outbound_stats(buffer, sizeof buffer, format, &stats.outbound), 0U);
        EXPECT_EQ(kel_fmt_end(buffer, sizeof buffer), 0U);
        return buffer;
    }

    std::string global_text(uint8_t format)
    {
        ebcom_global_stats stats{};
        for (std::size_t counter = 0; counter < 9; ++counter)
            stats.octets[8 * counter] = static_cast<uint8_t>(counter + 1);
        buffer[0] = '\0';
        EXPECT_EQ(kel_fmt_ebcom_global_stats(buffer, sizeof buffer, format, &stats), 0U);
        EXPECT_EQ(kel_fmt_end(buffer, sizeof buffer), 0U);
        return buffer;
    }

    /* Every function, good but for its buffer. */
    static std::vector<std::function<uint32_t(char *, uint32_t)>> good_calls()
    {
        static const ebcom_global_stats global{};
        static const ebcom_pcep_stats pcep{};
        return {
            [](char *buf, uint32_t len) { return kel_fmt_header(buf, len, 0, "title"); },
            [](char *buf, uint32_t len) { return kel_fmt_uint32(buf, len, 0, "label", 1); },
            [](char *buf, uint32_t len) { return kel_fmt_ebcom_global_stats(buf, len, 0, &global); },
            [](char *buf, uint32_t len) { return kel_fmt_ebcom_pcep_inbound_stats(buf, len, 0, &pcep.inbound); },
            [](char *buf, uint32_t len) { return kel_fmt_ebcom_pcep_outbound_stats(buf, len, 0, &pcep.outbound); },
            [](char *buf, uint32_t len) { return kel_fmt_end(buf, len); },
        };
    }

    char buffer[1000] = "";
};

} // namespace

TEST_F(KelFmt, QueueCountersAsText)
{
    EXPECT_EQ(queue_text(0), "EBCOM Queue statistics:\n"
                             "  mem_blks_in_use                             0\n"
                             "  pkts_rq                            4294967295\n");
}

TEST_F(KelFmt, QueueCountersAsCsv)
{
    EXPECT_EQ(queue_text(1), "title,EBCOM Queue statistics\n"
                             "mem_blks_in_use,0\n"
                             "pkts_rq,4294967295\n");
}

TEST_F(KelFmt, QueueCountersAsJson)
{
    EXPECT_EQ(queue_text(2), R"({
  "EBCOM Queue statistics": {
    "mem_blks_in_use": 0,
    "pkts_rq": 4294967295
  }
})");
}

TEST_F(KelFmt, EveryOtherFormatIsText)
{
    const std::string text = queue_text(0);
    for (const auto format : std::initializer_list<uint8_t>{3, 128, 255})
        EXPECT_EQ(queue_text(format), text);
}

TEST_F(KelFmt, PcepCountersAsText)
{
    EXPECT_EQ(pcep_text(0), "PCEP inbound statistics:\n"
                            "  frames_received                             1\n"
                            "  octets_received          18446744073709551615\n"
                            "  frames_dropped                              3\n"
                            "  octets_dropped                              4\n"
                            "PCEP outbound statistics:\n"
                            "  frames_sent                                 5\n"
                            "  octets_sent                                 6\n");
}

TEST_F(KelFmt, PcepCountersAsCsv)
{
    EXPECT_EQ(pcep_text(1), "title,PCEP inbound statistics\n"
                            "frames_received,1\n"
                            "octets_received,18446744073709551615\n"
                            "frames_dropped,3\n"
                            "octets_dropped,4\n"
                            "title,PCEP outbound statistics\n"
                            "frames_sent,5\n"
                            "octets_sent,6\n");
}

TEST_F(KelFmt, PcepCountersAsJson)
{
    EXPECT_EQ(read_json(pcep_text(2)), read_json(R"({
        "PCEP inbound statistics": {"frames_received": 1, "octets_received": 18446744073709551615,
                                    "frames_dropped": 3, "octets_dropped": 4},
        "PCEP outbound statistics": {"frames_sent": 5, "octets_sent": 6}
    })"));
}

TEST_F(KelFmt, GlobalCountersAsText)
{
    EXPECT_EQ(global_text(0), "EBCOM global statistics:\n"
                              "  frames_received                             1\n"
                              "  octets_received                             2\n"
                              "  frames_sent                                 3\n"
                              "  octets_sent                                 4\n"
                              "  frames_dropped                              5\n"
                              "  octets_dropped                              6\n"
                              "  paths                                       7\n"
                              "  pceps                                       8\n"
                              "  groups                                      9\n");
}

TEST_F(KelFmt, GlobalCountersAsCsv)
{
    EXPECT_EQ(global_text(1), "title,EBCOM global statistics\n"
                              "frames_received,1\noctets_received,2\nframes_sent,3\noctets_sent,4\n"
                              "frames_dropped,5\noctets_dropped,6\npaths,7\npceps,8\ngroups,9\n");
}

TEST_F(KelFmt, GlobalCountersAsJson)
{
    EXPECT_EQ(read_json(global_text(2)), read_json(R"({
        "EBCOM global statistics": {"frames_received": 1, "octets_received": 2, "frames_sent": 3, "octets_sent": 4,
                                    "frames_dropped": 5, "octets_dropped": 6, "paths": 7, "pceps": 8, "groups": 9}
    })"));
}

TEST_F(KelFmt, WhatDoesNotFitIsALimit)
{
    EXPECT_EQ(kel_fmt_header(buffer, 40, 0, "EBCOM Queue statistics"), 0U);
    EXPECT_EQ(kel_fmt_uint32(buffer, 40, 0, "mem_blks_in_use", 0), static_cast<uint32_t>(KEL_RC_LIMIT));
    EXPECT_EQ(kel_fmt_end(buffer, 40), static_cast<uint32_t>(KEL_RC_LIMIT));
    EXPECT_STREQ(buffer, "EBCOM Queue statistics:\n(truncated)\n");
}

TEST_F(KelFmt, ABufferWithoutLengthIsLeftAlone)
{
    std::memset(buffer, 0x5a, sizeof buffer);
    const std::string before(buffer, sizeof buffer);
    for (const auto &call : good_calls())
        EXPECT_EQ(call(buffer, 0), static_cast<uint32_t>(KEL_RC_LIMIT));
    EXPECT_EQ(std::string(buffer, sizeof buffer), before);
}

TEST_F(KelFmt, ANullBufferAndOneWithoutTerminatorAreRefused)
{
    std::memset(buffer, 0x5a, sizeof buffer);
    const std::string before(buffer, sizeof buffer);
    for (const auto &call : good_calls()) {
        EXPECT_EQ(call(nullptr, 100), 3U);
        EXPECT_EQ(call(nullptr, 0), 3U);
        EXPECT_EQ(call(buffer, sizeof buffer), 3U);
    }
    EXPECT_EQ(std::string(buffer, sizeof buffer), before);
}

TEST_F(KelFmt, NullTextsAndRecordsAreRefused)
{
    EXPECT_EQ(kel_fmt_header(buffer, sizeof buffer, 0, nullptr), 3U);
    EXPECT_EQ(kel_fmt_uint32(buffer, sizeof buffer, 0, nullptr, 1), 3U);
    EXPECT_EQ(kel_fmt_ebcom_global_stats(buffer, sizeof buffer, 0, nullptr), 3U);
    EXPECT_EQ(kel_fmt_ebcom_pcep_inbound_stats(buffer, sizeof buffer, 0, nullptr), 3U);
    EXPECT_EQ(kel_fmt_ebcom_pcep_outbound_stats(buffer, sizeof buffer, 0, nullptr), 3U);
    EXPECT_STREQ(buffer, "");
}

TEST_F(KelFmt, AFunctionMadeToFailWritesNothing)
{
    ASSERT_EQ(add_faults("kel_fmt_header=10;kel_fmt_end=7"), "");
    EXPECT_EQ(kel_fmt_header(buffer, sizeof buffer, 0, "title"), 10U);
    EXPECT_STREQ(buffer, "");
    EXPECT_EQ(kel_fmt_end(buffer, sizeof buffer), 7U);
}

TEST_F(KelFmt, AServicesRecordIsPrintedAsRead)
{
    create_pcep(1);
    create_group(100);
    ebcom_global_stats stats{};
    ASSERT_EQ(ork_ebcom_global_statistics_get(ork, &stats), ORK_OK);
    ASSERT_EQ(kel_fmt_ebcom_global_stats(buffer, sizeof buffer, 2, &stats), 0U);
    const auto counters = read_json(buffer).at("EBCOM global statistics");
    EXPECT_EQ(counters.at("pceps"), 1);
    EXPECT_EQ(counters.at("groups"), 1);
    EXPECT_EQ(counters.at("paths"), 0);
}

/*
 * control_traffic_test.cpp - traffic and time through the control interface, as a control process's counters show it.
 */
#include "control.h"

#include <cstdint>
#include <cstring>
#include <limits>
#include <vector>

namespace
{

constexpr std::uint8_t there[6] = {2, 0, 2, 2, 0, 1};
constexpr std::uint8_t nowhere[6] = {2, 0, 2, 2, 0, 9};
constexpr std::uint64_t countless = std::numeric_limits<std::uint64_t>::max();

class ControlTraffic : public ControlledNode
{
protected:
    ControlTraffic()
    {
        ork_ebcom_pcep_path path{};
        std::memcpy(path.macAddr, there, sizeof there);
        path.queue_hdl = queue;
        EXPECT_EQ(ork_ebcom_pcep_path_create(ork, &path), ORK_OK);

        ork_ebcom_pcep_params params = pcep_params(17);
        std::memcpy(params.dMac, there, sizeof there);
        EXPECT_EQ(ork_ebcom_pcep_create(ork, &params, &pcep), ORK_OK);
    }

    qos_queue_stats queue_statistics() const
    {
        qos_queue_stats statistics{};
        EXPECT_EQ(kel_init_qos_queue_stats_get(queue, &statistics), 0U);
        return statistics;
    }

    void *queue = add_queue(create_scheduler(), 8000, 1500);
    std::uint64_t pcep = 0;
};

class WatchedTraffic : public ControlTraffic
{
protected:
    WatchedTraffic()
    {
        softnode_traffic_watch(note, &seen);
    }

    ~WatchedTraffic() override
    {
        softnode_traffic_watch(nullptr, nullptr);
    }

    /* Frames for `nowhere` arrive from then on, without a path. */
    void create_receiver()
    {
        ork_ebcom_pcep_params params = pcep_params(18);
        std::memcpy(params.sMac, nowhere, sizeof nowhere);
        std::uint64_t receiver = 0;
        EXPECT_EQ(ork_ebcom_pcep_create(ork, &params, &receiver), ORK_OK);
    }

    static void note(void *context, const softnode_frame *frame)
    {
        static_cast<std::vector<softnode_frame> *>(context)->push_back(*frame);
    }

    void expect_sent(const softnode_frame &frame, std::uint64_t identity, std::uint64_t entered, std::uint64_t left)
    {
        EXPECT_EQ(frame.identity, identity);
        EXPECT_EQ(frame.fate, SOFTNODE_FRAME_SENT);
        EXPECT_EQ(frame.queue, reinterpret_cast<std::uint64_t>(queue));
        EXPECT_EQ(frame.entered, entered);
        EXPECT_EQ(frame.left, left);
    }

    void expect_dropped(const softnode_frame &frame, std::uint64_t identity, softnode_drop_reason reason)
    {
        EXPECT_EQ(frame.identity, identity);
        EXPECT_EQ(frame.fate, SOFTNODE_FRAME_DROPPED);
        EXPECT_EQ(frame.reason, reason);
        EXPECT_EQ(frame.queue, reinterpret_cast<std::uint64_t>(queue));
        EXPECT_EQ(frame.left, softnode_time());
    }

    std::vector<softnode_frame> seen;
};

} // namespace

TEST_F(ControlTraffic, TimePassesWhenItIsTold)
{
    EXPECT_EQ(softnode_time(), 0U);
    softnode_time_advance(5);
    softnode_time_advance(1'000'000'000);
    EXPECT_EQ(softnode_time(), 1'000'000'005U);
    EXPECT_EQ(look_into_node().at("time"), 1'000'000'005U);
    softnode_time_advance(countless);
    EXPECT_EQ(softnode_time(), countless);
    softnode_reset();
    EXPECT_EQ(softnode_time(), 0U);
}

TEST_F(ControlTraffic, OfferedFramesMoveTheCountersThatAControlProcessReads)
{
    ASSERT_EQ(softnode_traffic_offer(there, 3, 1000), 0);
    EXPECT_EQ(queue_statistics().pkts_tx, 1U);
    EXPECT_EQ(queue_statistics().pkts_out_standing, 2U);
    EXPECT_EQ(queue_statistics().mem_blks_in_use, 8U);
    softnode_time_advance(499'999);
    EXPECT_EQ(queue_statistics().pkts_tx, 2U);
    softnode_time_advance(1);
    EXPECT_EQ(queue_statistics().pkts_tx, 3U) << "500 octets were owed, at 8,000 kbit/s";
    EXPECT_EQ(queue_statistics().octets_tx, 3000U);
    EXPECT_EQ(queue_statistics().pkts_out_standing, 0U);
}

TEST_F(ControlTraffic, APcepSendsById)
{
    ASSERT_EQ(softnode_traffic_send(17, 1, 1000), 0);
    ebcom_pcep_stats statistics{};
    ASSERT_EQ(ork_ebcom_pcep_statistics_get(ork, pcep, &statistics), ORK_OK);
    EXPECT_EQ(statistics.outbound.out_cnt0, 1U);
    EXPECT_EQ(statistics.outbound.out_cnt1, 1000U);
    EXPECT_EQ(queue_statistics().pkts_rx, 1U);
}

TEST_F(ControlTraffic, RefusalsAreTheDriverKitsCodesAndChangeNothing)
{
    const auto before = held();
    EXPECT_EQ(softnode_traffic_offer(nullptr, 1, 64), ORK_INVAL);
    EXPECT_EQ(softnode_traffic_offer(there, 1, 0), ORK_INVAL);
    EXPECT_EQ(softnode_traffic_offer(there, 1, 65'536), ORK_INVAL);
    EXPECT_EQ(softnode_traffic_offer(nowhere, 1, 64), ORK_NOTAVAIL);
    EXPECT_EQ(softnode_traffic_offer_one(nullptr, 64, 1), ORK_INVAL);
    EXPECT_EQ(softnode_traffic_offer_one(there, 64, 0), ORK_INVAL);
    EXPECT_EQ(softnode_traffic_offer_one(there, 0, 1), ORK_INVAL);
    EXPECT_EQ(softnode_traffic_offer_one(there, 65'536, 1), ORK_INVAL);
    EXPECT_EQ(softnode_traffic_offer_one(nowhere, 64, 1), ORK_NOTAVAIL);
    EXPECT_EQ(softnode_traffic_send(0, 1, 64), ORK_INVAL);
    EXPECT_EQ(softnode_traffic_send(512, 1, 64), ORK_INVAL);
    EXPECT_EQ(softnode_traffic_send(17, 1, 0), ORK_INVAL);
    EXPECT_EQ(softnode_traffic_send(18, 1, 64), ORK_NOTAVAIL);
    EXPECT_EQ(held(), before);
}

TEST_F(ControlTraffic, WhatIsDroppedIsCountedByItsReason)
{
    const ork_ebcom_global_config parameters{1500, 0x88b5, 0, 0};
    ASSERT_EQ(ork_ebcom_global_config_set(ork, &parameters), ORK_OK);
    ASSERT_EQ(softnode_traffic_offer(there, 2, 1523), 0);
    ASSERT_EQ(softnode_traffic_offer(there, 100'000, 1500), 0);
    EXPECT_EQ(softnode_traffic_dropped(SOFTNODE_DROP_TOO_LONG), 2U);
    EXPECT_EQ(softnode_traffic_dropped(SOFTNODE_DROP_NO_ROOM), queue_statistics().pkts_dropped);
    EXPECT_EQ(softnode_traffic_dropped(SOFTNODE_DROP_NO_WAY), 0U);
    EXPECT_EQ(softnode_traffic_dropped(SOFTNODE_DROP_NO_QUEUE), 0U);
    int undefined = SOFTNODE_DROP_NO_QUEUE + 1;
    EXPECT_EQ(softnode_traffic_dropped(static_cast<softnode_drop_reason>(undefined)), 0U);
}

TEST_F(WatchedTraffic, FramesThatLeaveAreReportedByIdentityWithTheirInstants)
{
    softnode_time_advance(7);
    for (const std::uint64_t identity : {5U, 3U, 9U})
        ASSERT_EQ(softnode_traffic_offer_one(there, 1000, identity), 0);
    ASSERT_EQ(seen.size(), 1U);
    expect_sent(seen[0], 5, 7, 7);
    softnode_time_advance(10'000'000);
    ASSERT_EQ(seen.size(), 3U);
    expect_sent(seen[1], 3, 7, 7 + 816);
    expect_sent(seen[2], 9, 7, 500'007);
}

TEST_F(WatchedTraffic, FramesThatAreDroppedAreReportedWithTheReason)
{
    const ork_ebcom_global_config parameters{1500, 0x88b5, 0, 0};
    ASSERT_EQ(ork_ebcom_global_config_set(ork, &parameters), ORK_OK);
    ASSERT_EQ(softnode_traffic_offer_one(there, 1523, 1), 0);
    ASSERT_EQ(softnode_traffic_offer(there, 100'000, 1500), 0);
    ASSERT_EQ(softnode_traffic_offer_one(there, 1500, 2), 0);
    ASSERT_EQ(seen.size(), 2U) << "those without an identity are not reported";
    expect_dropped(seen[0], 1, SOFTNODE_DROP_TOO_LONG);
    expect_dropped(seen[1], 2, SOFTNODE_DROP_NO_ROOM);
}

TEST_F(WatchedTraffic, FramesOfARemovedQueueAreReportedInTheirOrder)
{
    for (const std::uint64_t identity : {1U, 2U, 3U, 4U})
        ASSERT_EQ(softnode_traffic_offer_one(there, 1000, identity), 0);
    softnode_time_advance(1000);
    ASSERT_EQ(kel_init_qos_queue_rem(queue), 0U);
    ASSERT_EQ(softnode_traffic_offer_one(there, 1000, 5), 0);
    ASSERT_EQ(seen.size(), 5U);
    for (std::size_t number : {2U, 3U, 4U}) {
        expect_dropped(seen[number], number + 1, SOFTNODE_DROP_NO_QUEUE);
        EXPECT_EQ(seen[number].entered, number == 4 ? 1000U : 0U);
    }
}

TEST_F(WatchedTraffic, AFrameWithoutAPathArrivesAtOnceAndHasNoQueue)
{
    create_receiver();
    softnode_time_advance(3);
    ASSERT_EQ(softnode_traffic_offer_one(nowhere, 100, 8), 0);
    ASSERT_EQ(seen.size(), 1U);
    EXPECT_EQ(seen[0].identity, 8U);
    EXPECT_EQ(seen[0].fate, SOFTNODE_FRAME_SENT);
    EXPECT_EQ(seen[0].queue, 0U);
    EXPECT_EQ(seen[0].left, 3U);
}

TEST_F(WatchedTraffic, AResetAndANullWatcherEndTheReports)
{
    softnode_traffic_watch(nullptr, nullptr);
    ASSERT_EQ(softnode_traffic_offer_one(there, 1000, 1), 0);
    EXPECT_TRUE(seen.empty());
    softnode_traffic_watch(note, &seen);
    softnode_reset();
    switch_on_afresh();
    create_receiver();
    ASSERT_EQ(softnode_traffic_offer_one(nowhere, 1000, 1), 0);
    EXPECT_TRUE(seen.empty());
}

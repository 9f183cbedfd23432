// Shapers: which further paths of a port may share its queue, and every way that asking the driver kit can fail.
#include "expected.h"
#include "script.h"
#include "scripted_platform.h"
#include "shaper_requests.h"
#include "transcript.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

using scripted::octets;

namespace
{

constexpr ork_qos_queue shaped_queue = {1000, 64, ORK_QOS_QUEUE_SHAPED};

// Asks for a second path on a port whose queue the driver kit describes like this; it must be granted.
void expect_match(const ork_qos_queue &queue, kel_ebcom_path_config config)
{
    config.iell_port = 6;
    std::ranges::copy(second_peer, config.dst_mac);
    port_in_use(6, queue);
    EXPECT_EQ(add(config), 0U);
    transcript::expect(queue_compared(queue, config) + R"(
        kel_ic_ebcom_add_shaper:
          FN_EXIT EBCOM
    )");
    EXPECT_EQ(queue_of(second_peer), scripted::queue(1));
}

// The same, to be refused without a change.
void expect_mismatch(const ork_qos_queue &queue, kel_ebcom_path_config config)
{
    config.iell_port = 6;
    std::ranges::copy(second_peer, config.dst_mac);
    port_in_use(6, queue);
    EXPECT_EQ(add(config), 7U);
    transcript::expect(queue_compared(queue, config) + R"(
          ~ kei_util_init_rc_str_get(7)
          init:EXCEPTION GENERAL code 7, Requested config is different than applied on already created queue
          ~ kei_util_init_rc_str_get(7)
        kel_ic_ebcom_add_shaper:
          init:EXCEPTION GENERAL code 7, check_if_queue_params_has_changed
          FN_EXIT EBCOM
    )");
    EXPECT_EQ(queue_of(second_peer), untouched);
    EXPECT_EQ(queue_of(peer), scripted::queue(1));
}

kel_ebcom_path_config unshaped_with(uint32_t rate, uint32_t burst)
{
    kel_ebcom_path_config config = unshaped(6);
    config.shaping_rate = rate;
    config.burst_size = burst;
    return config;
}

} // namespace

TEST(ShaperAdd, SecondPathSharesTheQueue)
{
    port_in_use(6, unshaped_queue);
    const kel_ebcom_path_config config = unshaped(6, second_peer);
    ork_ebcom_pcep_path path = rubbish_path();
    EXPECT_EQ(kel_ic_ebcom_add_shaper(&config, &path), 0U);
    transcript::expect(R"(
        kel_ic_ebcom_add_shaper:
          FN_ENTER EBCOM
        check_if_queue_params_has_changed:
          API_CALL EBCOM kel_init_attach()
          > kel_init_attach()
          API_CALL EBCOM ork_qos_queue_get(0x9001)
          > ork_qos_queue_get(ork, 0x9001)
          LAB EBCOM Queue params: rate = 0, bucketSize = 0, shapingMode = 3
          LAB EBCOM Config params: shaping_rate = 0, burst_size = 0, shaping_enabled = 0
        kel_ic_ebcom_add_shaper:
          FN_EXIT EBCOM
    )");
    ork_ebcom_pcep_path expected_path = rubbish_path();
    expected_path.queue_hdl = scripted::queue(1);
    EXPECT_TRUE(same(path, expected_path));
    EXPECT_EQ(queue_of(second_peer), scripted::queue(1));
}

TEST(ShaperAdd, ReadBackRecordIsZeroedBeforeTheCall)
{
    port_in_use(6, {0x1111111111111111, 0x22222222, ORK_QOS_QUEUE_SHAPED});
    EXPECT_EQ(add(unshaped(6)), 7U);
    EXPECT_EQ(add(unshaped(6)), 7U);
    EXPECT_EQ(scripted::records_of("ork_qos_queue_get"), std::vector<octets>(2, octets(16)));
}

TEST(ShaperAdd, SecondPathWithTheSameShapingSharesTheQueue)
{
    expect_match(shaped_queue, shaped(6, 1000, 64));
}

TEST(ShaperAdd, SecondPathWithOtherRateIsRefusedWith7)
{
    expect_mismatch(shaped_queue, shaped(6, 1001, 64));
}

TEST(ShaperAdd, SecondPathWithOtherBurstIsRefusedWith7)
{
    expect_mismatch(shaped_queue, shaped(6, 1000, 63));
}

TEST(ShaperAdd, SecondPathWithoutShapingIsRefusedOnAShapedQueue)
{
    expect_mismatch(shaped_queue, unshaped_with(1000, 64));
}

TEST(ShaperAdd, SecondPathWithShapingIsRefusedOnAnUnshapedQueue)
{
    expect_mismatch(unshaped_queue, shaped(6, 0, 0));
}

TEST(ShaperAdd, OtherThresholdAloneSharesTheQueue)
{
    scheduler_tree_up();
    scripted::set_queue_record(shaped_queue);
    EXPECT_EQ(add(shaped(6, 1000, 64, 20)), 0U);
    EXPECT_EQ(add(shaped(6, 1000, 64, 21)), 0U);
    EXPECT_EQ(scripted::calls_of("kel_init_qos_queue_add"), 1U);
}

TEST(ShaperAdd, UnshapedPathWithARateIsRefusedOnAnUnshapedQueue)
{
    expect_mismatch(unshaped_queue, unshaped_with(1, 0));
}

TEST(ShaperAdd, UnshapedPathWithABurstIsRefusedOnAnUnshapedQueue)
{
    expect_mismatch(unshaped_queue, unshaped_with(0, 1));
}

TEST(ShaperAdd, UnshapedPathWithARateCreatesAQueueThatItDoesNotMatch)
{
    scheduler_tree_up();
    EXPECT_EQ(add(unshaped_with(1000, 64)), 0U);
    EXPECT_EQ(add(unshaped_with(1000, 64)), 7U);
    EXPECT_EQ(add(unshaped_with(0, 0)), 0U);
}

TEST(ShaperAdd, FlagOf2IsAsShapedAsOneOf1)
{
    kel_ebcom_path_config config = shaped(6, 1000, 64);
    config.shaping_enabled = 2;
    expect_match(shaped_queue, config);
}

TEST(ShaperAdd, FlagOf255IsAsShapedAsOneOf1)
{
    kel_ebcom_path_config config = shaped(6, 1000, 64);
    config.shaping_enabled = 255;
    expect_match(shaped_queue, config);
}

TEST(ShaperAdd, FlagOf255IsRefusedOnAnUnshapedQueue)
{
    kel_ebcom_path_config config = shaped(6, 0, 0);
    config.shaping_enabled = 255;
    expect_mismatch(unshaped_queue, config);
}

TEST(ShaperAdd, RatesAreComparedIn64Bits)
{
    expect_mismatch({0x1'0000'03E8, 64, ORK_QOS_QUEUE_SHAPED}, shaped(6, 1000, 64));
}

TEST(ShaperAdd, HighestRateAndBurstMatchThemselves)
{
    expect_match({UINT32_MAX, UINT32_MAX, ORK_QOS_QUEUE_SHAPED}, shaped(6, UINT32_MAX, UINT32_MAX));
}

TEST(ShaperAdd, UnknownShapingModeMatchesNeitherKindOfPath)
{
    port_in_use(6, {0, 0, 5});
    EXPECT_EQ(add(unshaped(6)), 7U);
    EXPECT_EQ(add(shaped(6, 0, 0)), 7U);
}

TEST(ShaperAdd, FailedAttachmentOfTheCheckIsPassedOn)
{
    port_in_use(6, unshaped_queue);
    for (const uint32_t rc : {1U, 3U, 13U, 255U}) {
        scripted::fail("kel_init_attach", rc);
        EXPECT_EQ(add(unshaped(6, second_peer)), rc);
        transcript::expect(expected::with({std::to_string(rc)}, R"(
        kel_ic_ebcom_add_shaper:
          FN_ENTER EBCOM
        check_if_queue_params_has_changed:
          API_CALL EBCOM kel_init_attach()
          > kel_init_attach() = $1
          ~ kei_util_init_rc_str_get($1)
          init:EXCEPTION GENERAL code $1, kel_init_attach
          ~ kei_util_init_rc_str_get($1)
        kel_ic_ebcom_add_shaper:
          init:EXCEPTION GENERAL code $1, check_if_queue_params_has_changed
          FN_EXIT EBCOM
        )"));
    }
    EXPECT_EQ(queue_of(second_peer), untouched);
}

TEST(ShaperAdd, RefusedReadBackIs13WhateverItsCode)
{
    port_in_use(6, unshaped_queue);
    for (const int32_t rc : {-1, -9, -12, 3}) {
        scripted::fail("ork_qos_queue_get", rc);
        EXPECT_EQ(add(unshaped(6, second_peer)), 13U);
        const std::string hexadecimal = scripted::text("0x%x", static_cast<uint32_t>(rc));
        transcript::expect(expected::with({std::to_string(rc), hexadecimal}, R"(
        kel_ic_ebcom_add_shaper:
          FN_ENTER EBCOM
        check_if_queue_params_has_changed:
          API_CALL EBCOM kel_init_attach()
          > kel_init_attach()
          API_CALL EBCOM ork_qos_queue_get(0x9001)
          > ork_qos_queue_get(ork, 0x9001) = $1
          > ork_syshandle_get(0, 1)
          ~ ork_sys_status_get($1)
          init:EXCEPTION GENERAL $2 - status $1, ork_qos_queue_get
          ~ kei_util_init_rc_str_get(13)
        kel_ic_ebcom_add_shaper:
          init:EXCEPTION GENERAL code 13, check_if_queue_params_has_changed
          FN_EXIT EBCOM
        )"));
    }
    EXPECT_EQ(queue_of(second_peer), untouched);
}

TEST(ShaperAdd, NoMemoryOnASharedQueueIs10AndTheQueueStays)
{
    port_in_use(6, unshaped_queue);
    const kel_ebcom_path_config config = unshaped(6, second_peer);
    ork_ebcom_pcep_path path = rubbish_path();
    scripted::fail("malloc", 0);
    EXPECT_EQ(kel_ic_ebcom_add_shaper(&config, &path), 10U);
    transcript::expect(queue_compared(unshaped_queue, config) + R"(
          ~ kei_util_init_rc_str_get(10)
        store_dst_mac:
          init:EXCEPTION GENERAL code 10, malloc
          ~ kei_util_init_rc_str_get(10)
        kel_ic_ebcom_add_shaper:
          init:EXCEPTION GENERAL code 10, store_dst_mac
          FN_EXIT EBCOM
    )");
    EXPECT_TRUE(same(path, rubbish_path()));
    EXPECT_EQ(queue_of(second_peer), untouched);
    EXPECT_EQ(queue_of(peer), scripted::queue(1));
}

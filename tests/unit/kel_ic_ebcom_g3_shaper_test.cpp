// Shapers: how a port's queue comes with its first path and goes with its last, and every way that this can fail. Which
// paths may share a queue is in kel_ic_ebcom_g3_shaper_sharing_test.cpp.
#include "expected.h"
#include "script.h"
#include "scripted_platform.h"
#include "shaper_requests.h"
#include "transcript.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using scripted::octets;

namespace
{

constexpr uint32_t companion_codes[] = {1, 3, 13, 255};

} // namespace

TEST(ShaperAdd, FirstPathCreatesAnUnshapedQueue)
{
    scheduler_tree_up();
    EXPECT_EQ(add(unshaped(6)), 0U);
    transcript::expect(R"(
        kel_ic_ebcom_add_shaper:
          FN_ENTER EBCOM
          API_CALL EBCOM kel_init_eventdev_dev_id_ebcom_get()
          > kel_init_eventdev_dev_id_ebcom_get(0)
          API_CALL EBCOM kel_init_qos_queue_add()
          > kel_init_qos_queue_add({1, 0, 5120000, 0}, 5, 0x5008, 7)
          FN_EXIT EBCOM
    )");
    EXPECT_EQ(queue_of(peer), scripted::queue(1));
}

TEST(ShaperAdd, FirstShapedPathPassesItsRateThresholdAndBurst)
{
    scheduler_tree_up();
    EXPECT_EQ(add(shaped(13, 1000, 64, 20)), 0U);
    transcript::expect(R"(
        kel_ic_ebcom_add_shaper:
          FN_ENTER EBCOM
          API_CALL EBCOM kel_init_eventdev_dev_id_ebcom_get()
          > kel_init_eventdev_dev_id_ebcom_get(0)
          API_CALL EBCOM kel_init_qos_queue_add()
          > kel_init_qos_queue_add({1, 1000, 5120, 64}, 5, 0x500b, 7)
          FN_EXIT EBCOM
    )");
}

TEST(ShaperAdd, UnshapedQueueHasAFixedThresholdWhateverIsAskedFor)
{
    scheduler_tree_up();
    kel_ebcom_path_config config = shaped(6, 1000, 64, 20);
    config.shaping_enabled = 0;
    EXPECT_EQ(add(config), 0U);
    const octets record = scripted::record_of("kel_init_qos_queue_add");
    EXPECT_EQ(record, (octets{1, 0, 0, 0, 0, 0, 0, 0, 0x00, 0x20, 0x4E, 0, 0, 0, 0, 0}));
}

TEST(ShaperAdd, RateAndBurstReachTheQueueUnchanged)
{
    scheduler_tree_up();
    EXPECT_EQ(add(shaped(6, 0x89ABCDEF, 0xFEDCBA98, 0)), 0U);
    const octets record = scripted::record_of("kel_init_qos_queue_add");
    EXPECT_EQ(record, (octets{1, 0, 0, 0, 0xEF, 0xCD, 0xAB, 0x89, 0, 0, 0, 0, 0x98, 0xBA, 0xDC, 0xFE}));
}

TEST(ShaperAdd, ThresholdIsMultipliedBy256AndCutTo32Bits)
{
    scheduler_tree_up();
    EXPECT_EQ(add(shaped(6, 0, 0, 0x01000001)), 0U);
    EXPECT_EQ(add(shaped(7, 0, 0, 0x00FFFFFF)), 0U);
    transcript::expect(R"(
        kel_ic_ebcom_add_shaper:
          FN_ENTER EBCOM
          API_CALL EBCOM kel_init_eventdev_dev_id_ebcom_get()
          > kel_init_eventdev_dev_id_ebcom_get(0)
          API_CALL EBCOM kel_init_qos_queue_add()
          > kel_init_qos_queue_add({1, 0, 256, 0}, 5, 0x5008, 7)
          FN_EXIT EBCOM
          FN_ENTER EBCOM
          API_CALL EBCOM kel_init_eventdev_dev_id_ebcom_get()
          > kel_init_eventdev_dev_id_ebcom_get(0)
          API_CALL EBCOM kel_init_qos_queue_add()
          > kel_init_qos_queue_add({1, 0, 4294967040, 0}, 5, 0x5008, 7)
          FN_EXIT EBCOM
    )");
}

TEST(ShaperAdd, EveryNonZeroFlagAsksForAShapedQueue)
{
    scheduler_tree_up();
    int32_t port = 6;
    constexpr uint8_t flags[] = {1, 2, 128, 255};
    for (const uint8_t flag : flags) {
        kel_ebcom_path_config config = shaped(port, 1000, 64, 20);
        config.shaping_enabled = flag;
        EXPECT_EQ(add(config), 0U);
        const octets record = scripted::record_of("kel_init_qos_queue_add");
        EXPECT_EQ(record, (octets{1, 0, 0, 0, 0xE8, 3, 0, 0, 0, 20, 0, 0, 64, 0, 0, 0})) << int(flag);
        ++port;
    }
}

TEST(ShaperAdd, WritesTheQueueIntoThePathAndNothingElse)
{
    scheduler_tree_up();
    const kel_ebcom_path_config config = unshaped(6);
    ork_ebcom_pcep_path path = rubbish_path();
    EXPECT_EQ(kel_ic_ebcom_add_shaper(&config, &path), 0U);
    ork_ebcom_pcep_path expected_path = rubbish_path();
    expected_path.queue_hdl = scripted::queue(1);
    EXPECT_TRUE(same(path, expected_path));
}

TEST(ShaperAdd, PortWithoutQosIsRefusedWith3)
{
    scheduler_tree_up();
    const kel_ebcom_path_config config = unshaped(14);
    ork_ebcom_pcep_path path = rubbish_path();
    EXPECT_EQ(kel_ic_ebcom_add_shaper(&config, &path), 3U);
    EXPECT_TRUE(same(path, rubbish_path()));
    transcript::expect(R"(
        kel_ic_ebcom_add_shaper:
          FN_ENTER EBCOM
          ~ kei_util_init_rc_str_get(3)
        get_scheduler_idx:
          init:EXCEPTION GENERAL code 3, iell_port
          ~ kei_util_init_rc_str_get(3)
        ebcom_qos_handles_get:
          init:EXCEPTION GENERAL code 3, get_scheduler_idx
          ~ kei_util_init_rc_str_get(3)
        kel_ic_ebcom_add_shaper:
          init:EXCEPTION GENERAL code 3, ebcom_qos_handles_get
          FN_EXIT EBCOM
    )");
}

TEST(ShaperAdd, WithoutADeviceIdentifierNoQueueIsCreated)
{
    scheduler_tree_up();
    for (const uint32_t rc : companion_codes) {
        scripted::fail("kel_init_eventdev_dev_id_ebcom_get", rc);
        EXPECT_EQ(add(unshaped(6)), rc);
        transcript::expect(expected::with({std::to_string(rc)}, R"(
        kel_ic_ebcom_add_shaper:
          FN_ENTER EBCOM
          API_CALL EBCOM kel_init_eventdev_dev_id_ebcom_get()
          > kel_init_eventdev_dev_id_ebcom_get(0) = $1
          ~ kei_util_init_rc_str_get($1)
          init:EXCEPTION GENERAL code $1, kel_init_eventdev_dev_id_ebcom_get
          FN_EXIT EBCOM
        )"));
    }
    EXPECT_EQ(queue_of(peer), untouched);
}

TEST(ShaperAdd, RefusedQueueLeavesThePortWithoutOne)
{
    scheduler_tree_up();
    const kel_ebcom_path_config config = unshaped(6);
    for (const uint32_t rc : companion_codes) {
        ork_ebcom_pcep_path path = rubbish_path();
        scripted::fail("kel_init_qos_queue_add", rc);
        EXPECT_EQ(kel_ic_ebcom_add_shaper(&config, &path), rc);
        EXPECT_TRUE(same(path, rubbish_path()));
        transcript::expect(expected::with({std::to_string(rc)}, R"(
        kel_ic_ebcom_add_shaper:
          FN_ENTER EBCOM
          API_CALL EBCOM kel_init_eventdev_dev_id_ebcom_get()
          > kel_init_eventdev_dev_id_ebcom_get(0)
          API_CALL EBCOM kel_init_qos_queue_add()
          > kel_init_qos_queue_add({1, 0, 5120000, 0}, 5, 0x5008, 7) = $1
          ~ kei_util_init_rc_str_get($1)
          init:EXCEPTION GENERAL code $1, kel_init_qos_queue_add
          FN_EXIT EBCOM
        )"));
    }
    EXPECT_EQ(queue_of(peer), untouched);
}

TEST(ShaperAdd, NoMemoryOnANewQueueRemovesItAgainAndReportsSuccess)
{
    scheduler_tree_up();
    const kel_ebcom_path_config config = unshaped(6);
    ork_ebcom_pcep_path path = rubbish_path();
    scripted::fail("malloc", 0);
    EXPECT_EQ(kel_ic_ebcom_add_shaper(&config, &path), 0U);
    transcript::expect(R"(
        kel_ic_ebcom_add_shaper:
          FN_ENTER EBCOM
          API_CALL EBCOM kel_init_eventdev_dev_id_ebcom_get()
          > kel_init_eventdev_dev_id_ebcom_get(0)
          API_CALL EBCOM kel_init_qos_queue_add()
          > kel_init_qos_queue_add({1, 0, 5120000, 0}, 5, 0x5008, 7)
          ~ kei_util_init_rc_str_get(10)
        store_dst_mac:
          init:EXCEPTION GENERAL code 10, malloc
          ~ kei_util_init_rc_str_get(10)
        kel_ic_ebcom_add_shaper:
          init:EXCEPTION GENERAL code 10, store_dst_mac
          API_CALL EBCOM kel_init_qos_queue_rem()
          > kel_init_qos_queue_rem(0x9001)
          FN_EXIT EBCOM
    )");
    EXPECT_TRUE(same(path, rubbish_path()));
    EXPECT_EQ(queue_of(peer), untouched);
}

TEST(ShaperAdd, RollBackIsRetriedUntilTheQueueIsGone)
{
    scheduler_tree_up();
    scripted::fail("malloc", 0);
    scripted::fail("kel_init_qos_queue_rem", 3, 1);
    scripted::fail("kel_init_qos_queue_rem", 255, 2, 2);
    EXPECT_EQ(add(unshaped(6)), 0U);
    transcript::expect(R"(
        kel_ic_ebcom_add_shaper:
          FN_ENTER EBCOM
          API_CALL EBCOM kel_init_eventdev_dev_id_ebcom_get()
          > kel_init_eventdev_dev_id_ebcom_get(0)
          API_CALL EBCOM kel_init_qos_queue_add()
          > kel_init_qos_queue_add({1, 0, 5120000, 0}, 5, 0x5008, 7)
          ~ kei_util_init_rc_str_get(10)
        store_dst_mac:
          init:EXCEPTION GENERAL code 10, malloc
          ~ kei_util_init_rc_str_get(10)
        kel_ic_ebcom_add_shaper:
          init:EXCEPTION GENERAL code 10, store_dst_mac
          API_CALL EBCOM kel_init_qos_queue_rem()
          > kel_init_qos_queue_rem(0x9001) = 3
          ~ kei_util_init_rc_str_get(3)
          init:EXCEPTION GENERAL code 3, kel_init_qos_queue_rem
          API_CALL EBCOM kel_init_qos_queue_rem()
          > kel_init_qos_queue_rem(0x9001) = 255
          ~ kei_util_init_rc_str_get(255)
          init:EXCEPTION GENERAL code 255, kel_init_qos_queue_rem
          API_CALL EBCOM kel_init_qos_queue_rem()
          > kel_init_qos_queue_rem(0x9001) = 255
          ~ kei_util_init_rc_str_get(255)
          init:EXCEPTION GENERAL code 255, kel_init_qos_queue_rem
          API_CALL EBCOM kel_init_qos_queue_rem()
          > kel_init_qos_queue_rem(0x9001)
          FN_EXIT EBCOM
    )");
}

TEST(ShaperAdd, AfterARollBackTheNextPathIsComparedWithTheRemovedQueue)
{
    scheduler_tree_up();
    scripted::fail("malloc", 0);
    EXPECT_EQ(add(unshaped(6)), 0U);
    transcript::forget();
    scripted::fail("ork_qos_queue_get", -1);
    EXPECT_EQ(add(unshaped(6)), 13U);
    transcript::expect(R"(
        kel_ic_ebcom_add_shaper:
          FN_ENTER EBCOM
        check_if_queue_params_has_changed:
          API_CALL EBCOM kel_init_attach()
          > kel_init_attach()
          API_CALL EBCOM ork_qos_queue_get(0x9001)
          > ork_qos_queue_get(ork, 0x9001) = -1
          > ork_syshandle_get(0, 1)
          ~ ork_sys_status_get(-1)
          init:EXCEPTION GENERAL 0xffffffff - status -1, ork_qos_queue_get
          ~ kei_util_init_rc_str_get(13)
        kel_ic_ebcom_add_shaper:
          init:EXCEPTION GENERAL code 13, check_if_queue_params_has_changed
          FN_EXIT EBCOM
    )");
}

TEST(ShaperRemove, LastPathTakesTheQueueWithIt)
{
    port_in_use(6, unshaped_queue);
    EXPECT_EQ(remove(unshaped(6)), 0U);
    transcript::expect(R"(
        kel_ic_ebcom_remove_shaper:
          FN_ENTER EBCOM
          API_CALL EBCOM kel_init_qos_queue_rem()
          > kel_init_qos_queue_rem(0x9001)
          FN_EXIT EBCOM
    )");
}

TEST(ShaperRemove, NextPathAfterTheLastCreatesANewQueue)
{
    port_in_use(6, unshaped_queue);
    EXPECT_EQ(remove(unshaped(6)), 0U);
    EXPECT_EQ(add(shaped(6, 1000, 64)), 0U);
    EXPECT_EQ(queue_of(peer), scripted::queue(2));
}

TEST(ShaperRemove, QueueStaysWhileAnotherPathUsesIt)
{
    port_in_use(6, unshaped_queue);
    EXPECT_EQ(add(unshaped(6, second_peer)), 0U);
    transcript::forget();
    EXPECT_EQ(remove(unshaped(6)), 0U);
    transcript::expect(R"(
        kel_ic_ebcom_remove_shaper:
          FN_ENTER EBCOM
          FN_EXIT EBCOM
    )");
    EXPECT_EQ(queue_of(second_peer), scripted::queue(1));
}

TEST(ShaperRemove, EachAddOfTheSameDestinationIsAReferenceOfItsOwn)
{
    port_in_use(6, unshaped_queue);
    EXPECT_EQ(add(unshaped(6)), 0U);
    EXPECT_EQ(remove(unshaped(6)), 0U);
    EXPECT_EQ(scripted::calls_of("kel_init_qos_queue_rem"), 0U);
    EXPECT_EQ(remove(unshaped(6)), 0U);
    EXPECT_EQ(scripted::calls_of("kel_init_qos_queue_rem"), 1U);
}

TEST(ShaperRemove, QueuesOfOtherPortsStay)
{
    port_in_use(6, unshaped_queue);
    EXPECT_EQ(add(unshaped(7, second_peer)), 0U);
    EXPECT_EQ(remove(unshaped(6)), 0U);
    EXPECT_EQ(queue_of(second_peer), scripted::queue(2));
}

TEST(ShaperRemove, LooksAtTheDestinationAndThePortOnly)
{
    port_in_use(6, unshaped_queue);
    EXPECT_EQ(remove(shaped(6, 1, 2, 3)), 0U);
}

TEST(ShaperRemove, LeavesThePathAlone)
{
    port_in_use(6, unshaped_queue);
    const kel_ebcom_path_config config = unshaped(6);
    ork_ebcom_pcep_path path = rubbish_path();
    EXPECT_EQ(kel_ic_ebcom_remove_shaper(&config, &path), 0U);
    EXPECT_TRUE(same(path, rubbish_path()));
}

TEST(ShaperRemove, DestinationThatIsNotOnThePortIs4)
{
    port_in_use(6, unshaped_queue);
    EXPECT_EQ(remove(unshaped(6, second_peer)), 4U);
    transcript::expect(R"(
        kel_ic_ebcom_remove_shaper:
          FN_ENTER EBCOM
          ~ kei_util_init_rc_str_get(4)
        remove_dst_mac:
          init:EXCEPTION GENERAL code 4, dst_mac
          ~ kei_util_init_rc_str_get(4)
        kel_ic_ebcom_remove_shaper:
          init:EXCEPTION GENERAL code 4, remove_dst_mac
          FN_EXIT EBCOM
    )");
    EXPECT_EQ(queue_of(peer), scripted::queue(1));
}

TEST(ShaperRemove, PortThatNeverHadAPathIs4)
{
    EXPECT_EQ(remove(unshaped(6)), 4U);
    EXPECT_EQ(scripted::calls_of("kel_init_qos_queue_rem"), 0U);
}

TEST(ShaperRemove, PortWithoutQosIsRefusedWith3)
{
    EXPECT_EQ(remove(unshaped(14)), 3U);
    transcript::expect(R"(
        kel_ic_ebcom_remove_shaper:
          FN_ENTER EBCOM
          ~ kei_util_init_rc_str_get(3)
        get_scheduler_idx:
          init:EXCEPTION GENERAL code 3, iell_port
          ~ kei_util_init_rc_str_get(3)
        remove_dst_mac:
          init:EXCEPTION GENERAL code 3, get_scheduler_idx
          ~ kei_util_init_rc_str_get(3)
        kel_ic_ebcom_remove_shaper:
          init:EXCEPTION GENERAL code 3, remove_dst_mac
          FN_EXIT EBCOM
    )");
}

TEST(ShaperRemove, RefusedQueueRemovalIsPassedOn)
{
    port_in_use(6, unshaped_queue);
    for (const uint32_t rc : companion_codes) {
        scripted::fail("kel_init_qos_queue_rem", rc);
        EXPECT_EQ(remove(unshaped(6)), rc);
        transcript::expect(expected::with({std::to_string(rc)}, R"(
        kel_ic_ebcom_remove_shaper:
          FN_ENTER EBCOM
          API_CALL EBCOM kel_init_qos_queue_rem()
          > kel_init_qos_queue_rem(0x9001) = $1
          ~ kei_util_init_rc_str_get($1)
          init:EXCEPTION GENERAL code $1, kel_init_qos_queue_rem
          FN_EXIT EBCOM
        )"));
        EXPECT_EQ(add(unshaped(6)), 0U);
        transcript::forget();
    }
}

TEST(ShaperRemove, RefusedQueueRemovalKeepsTheQueueWithoutDestination)
{
    port_in_use(6, unshaped_queue);
    scripted::fail("kel_init_qos_queue_rem", 3);
    EXPECT_EQ(remove(unshaped(6)), 3U);
    EXPECT_EQ(queue_of(peer), untouched);
    EXPECT_EQ(remove(unshaped(6)), 4U);
    transcript::forget();
    const kel_ebcom_path_config config = unshaped(6);
    EXPECT_EQ(add(config), 0U);
    transcript::expect(queue_compared(unshaped_queue, config) + R"(
        kel_ic_ebcom_add_shaper:
          FN_EXIT EBCOM
    )");
    EXPECT_EQ(queue_of(peer), scripted::queue(1));
}

// The references are counted in 16 bits.
TEST(ShaperRemove, LeavingExactly65536DestinationsCountsAsNone)
{
    scheduler_tree_up();
    for (uint32_t n = 0; n < 65537; ++n) {
        ASSERT_EQ(add(unshaped(6)), 0U);
        transcript::forget();
    }
    EXPECT_EQ(remove(unshaped(6)), 0U);
    transcript::expect(R"(
        kel_ic_ebcom_remove_shaper:
          FN_ENTER EBCOM
          API_CALL EBCOM kel_init_qos_queue_rem()
          > kel_init_qos_queue_rem(0x9001)
          FN_EXIT EBCOM
    )");
    EXPECT_EQ(queue_of(peer), nullptr); // still there, without a queue
    transcript::forget();
    EXPECT_EQ(remove(unshaped(6)), 0U); // 65,535 left count
    transcript::expect(R"(
        kel_ic_ebcom_remove_shaper:
          FN_ENTER EBCOM
          FN_EXIT EBCOM
    )");
}

// Adding EBCOM paths: what reaches the driver kit and every way to fail. What depends on the destination's location is
// in kel_ic_ebcom_path_destination_test.cpp.
#include "expected.h"
#include "kel/kel_core_ic_ebcom.h"
#include "path_requests.h"
#include "scripted_platform.h"
#include "transcript.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace
{

using expected::attached;
using scripted::octets;

const std::string add_entered = R"(
        kel_core_ic_ebcom_path_add:
          FN_ENTER EBCOM
          > macAddr2str(02:00:00:02:00:01)
          FN_PARAM EBCOM dst_mac = 02:00:00:02:00:01, shaping_enabled = 0, iell_port = 6 (RLU1P), shaping_rate = 0, buffer_threshold = 0, burst_size = 0
)";

const std::string queue_created = R"(
        kel_ic_ebcom_add_shaper:
          FN_ENTER EBCOM
          API_CALL EBCOM kel_init_eventdev_dev_id_ebcom_get()
          > kel_init_eventdev_dev_id_ebcom_get(0)
          API_CALL EBCOM kel_init_qos_queue_add()
          > kel_init_qos_queue_add({1, 0, 5120000, 0}, 5, 0x5008, 7)
          FN_EXIT EBCOM
)";

const std::string queue_shared = R"(
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
)";

const std::string queue_check_entered = R"(
        kel_ic_ebcom_add_shaper:
          FN_ENTER EBCOM
        check_if_queue_params_has_changed:
)";

// How an add ends when the queue cannot be checked. $1: code.
const std::string left_after_queue_check = R"(
          ~ kei_util_init_rc_str_get($1)
        kel_ic_ebcom_add_shaper:
          init:EXCEPTION GENERAL code $1, check_if_queue_params_has_changed
          FN_EXIT EBCOM
          ~ kei_util_init_rc_str_get($1)
        kel_core_ic_ebcom_path_add:
          init:EXCEPTION GENERAL code $1, kel_ic_ebcom_add_shaper
          FN_EXIT EBCOM
)";

const std::string path_created = R"(
        kel_core_ic_ebcom_path_add:
          API_CALL EBCOM ork_ebcom_pcep_path_create(pcepType=2, macAddr=02:00:00:02:00:01(OB), eioaPort=0 - NOT USED, shaping_enabled=0, queue_hdl=0x9001)
          > ork_ebcom_pcep_path_create(ork, 02:00:00:02:00:01, type 2, eioa 0, queue 0x9001)
          FN_EXIT EBCOM
)";

} // namespace

TEST(PathAdd, FirstPathCreatesTheQueueThenThePath)
{
    service_up();
    EXPECT_EQ(kel_core_ic_ebcom_path_add(&to_ob), 0U);
    transcript::expect(add_entered + attached + queue_created + path_created);
}

TEST(PathAdd, PathRecordIsZeroWhereNothingIsSet)
{
    service_up();
    scripted::soil_stack();
    EXPECT_EQ(kel_core_ic_ebcom_path_add(&to_ob), 0U);
    EXPECT_EQ(scripted::record_of("ork_ebcom_pcep_path_create"),
              (octets{2, 0, 0, 2, 0, 1, 0, 0, 2, 0, 0, 0, 0, 0, 0, 0, 0x01, 0x90, 0, 0, 0, 0, 0, 0}));
}

TEST(PathAdd, ShapingIsPassedToTheQueue)
{
    service_up();
    const kel_ebcom_path_config config = {{0xA2, 0xFF, 0, 2, 0, 1}, 1, 42, 1000, 3, 64};
    EXPECT_EQ(kel_core_ic_ebcom_path_add(&config), 0U);
    transcript::expect(R"(
        kel_core_ic_ebcom_path_add:
          FN_ENTER EBCOM
          > macAddr2str(a2:ff:00:02:00:01)
          FN_PARAM EBCOM dst_mac = a2:ff:00:02:00:01, shaping_enabled = 1, iell_port = 42 (RLU4W), shaping_rate = 1000, buffer_threshold = 3, burst_size = 64
          API_CALL EBCOM kel_init_attach()
          > kel_init_attach()
        kel_ic_ebcom_add_shaper:
          FN_ENTER EBCOM
          API_CALL EBCOM kel_init_eventdev_dev_id_ebcom_get()
          > kel_init_eventdev_dev_id_ebcom_get(0)
          API_CALL EBCOM kel_init_qos_queue_add()
          > kel_init_qos_queue_add({1, 1000, 768, 64}, 5, 0x500b, 7)
          FN_EXIT EBCOM
        kel_core_ic_ebcom_path_add:
          API_CALL EBCOM ork_ebcom_pcep_path_create(pcepType=2, macAddr=a2:ff:00:02:00:01(OB), eioaPort=0 - NOT USED, shaping_enabled=1, queue_hdl=0x9001)
          > ork_ebcom_pcep_path_create(ork, a2:ff:00:02:00:01, type 2, eioa 0, queue 0x9001)
          FN_EXIT EBCOM
    )");
}

TEST(PathAdd, LargestValuesAreTracedUnsigned)
{
    service_up();
    const kel_ebcom_path_config config = {{2, 0, 0, 2, 0, 1}, 255, 6, UINT32_MAX, UINT32_MAX, UINT32_MAX};
    EXPECT_EQ(kel_core_ic_ebcom_path_add(&config), 0U);
    transcript::expect(R"(
        kel_core_ic_ebcom_path_add:
          FN_ENTER EBCOM
          > macAddr2str(02:00:00:02:00:01)
          FN_PARAM EBCOM dst_mac = 02:00:00:02:00:01, shaping_enabled = 255, iell_port = 6 (RLU1P), shaping_rate = 4294967295, buffer_threshold = 4294967295, burst_size = 4294967295
          API_CALL EBCOM kel_init_attach()
          > kel_init_attach()
        kel_ic_ebcom_add_shaper:
          FN_ENTER EBCOM
          API_CALL EBCOM kel_init_eventdev_dev_id_ebcom_get()
          > kel_init_eventdev_dev_id_ebcom_get(0)
          API_CALL EBCOM kel_init_qos_queue_add()
          > kel_init_qos_queue_add({1, 4294967295, 4294967040, 4294967295}, 5, 0x5008, 7)
          FN_EXIT EBCOM
        kel_core_ic_ebcom_path_add:
          API_CALL EBCOM ork_ebcom_pcep_path_create(pcepType=2, macAddr=02:00:00:02:00:01(OB), eioaPort=0 - NOT USED, shaping_enabled=255, queue_hdl=0x9001)
          > ork_ebcom_pcep_path_create(ork, 02:00:00:02:00:01, type 2, eioa 0, queue 0x9001)
          FN_EXIT EBCOM
    )");
}

TEST(PathAdd, SecondPathSharesTheQueueAndCreatesThePathAgain)
{
    service_up();
    path_up(to_ob);
    EXPECT_EQ(kel_core_ic_ebcom_path_add(&to_ob), 0U);
    transcript::expect(add_entered + attached + queue_shared + path_created);
}

TEST(PathAdd, FailedAttachmentTakesNoReference)
{
    service_up();
    scripted::fail("kel_init_attach", 3);
    EXPECT_EQ(kel_core_ic_ebcom_path_add(&to_ob), 3U);
    transcript::expect(add_entered + R"(
          API_CALL EBCOM kel_init_attach()
          > kel_init_attach() = 3
          ~ kei_util_init_rc_str_get(3)
          init:EXCEPTION GENERAL code 3, kel_init_attach
          FN_EXIT EBCOM
    )");
}

TEST(PathAdd, WithoutADeviceIdentifierNoQueueIsCreated)
{
    service_up();
    scripted::fail("kel_init_eventdev_dev_id_ebcom_get", 13);
    EXPECT_EQ(kel_core_ic_ebcom_path_add(&to_ob), 13U);
    transcript::expect(add_entered + attached + R"(
        kel_ic_ebcom_add_shaper:
          FN_ENTER EBCOM
          API_CALL EBCOM kel_init_eventdev_dev_id_ebcom_get()
          > kel_init_eventdev_dev_id_ebcom_get(0) = 13
          ~ kei_util_init_rc_str_get(13)
          init:EXCEPTION GENERAL code 13, kel_init_eventdev_dev_id_ebcom_get
          FN_EXIT EBCOM
          ~ kei_util_init_rc_str_get(13)
        kel_core_ic_ebcom_path_add:
          init:EXCEPTION GENERAL code 13, kel_ic_ebcom_add_shaper
          FN_EXIT EBCOM
    )");
}

TEST(PathAdd, FailedQueueCreatesNoPath)
{
    service_up();
    scripted::fail("kel_init_qos_queue_add", 1);
    EXPECT_EQ(kel_core_ic_ebcom_path_add(&to_ob), 1U);
    transcript::expect(add_entered + attached + R"(
        kel_ic_ebcom_add_shaper:
          FN_ENTER EBCOM
          API_CALL EBCOM kel_init_eventdev_dev_id_ebcom_get()
          > kel_init_eventdev_dev_id_ebcom_get(0)
          API_CALL EBCOM kel_init_qos_queue_add()
          > kel_init_qos_queue_add({1, 0, 5120000, 0}, 5, 0x5008, 7) = 1
          ~ kei_util_init_rc_str_get(1)
          init:EXCEPTION GENERAL code 1, kel_init_qos_queue_add
          FN_EXIT EBCOM
          ~ kei_util_init_rc_str_get(1)
        kel_core_ic_ebcom_path_add:
          init:EXCEPTION GENERAL code 1, kel_ic_ebcom_add_shaper
          FN_EXIT EBCOM
    )");
}

// The queue is given back, and the path is created without one.
TEST(PathAdd, WithoutMemoryForTheReferenceThePathHasNoQueue)
{
    service_up();
    scripted::fail("malloc", 0);
    EXPECT_EQ(kel_core_ic_ebcom_path_add(&to_ob), 0U);
    transcript::expect(add_entered + attached + R"(
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
        kel_core_ic_ebcom_path_add:
          API_CALL EBCOM ork_ebcom_pcep_path_create(pcepType=2, macAddr=02:00:00:02:00:01(OB), eioaPort=0 - NOT USED, shaping_enabled=0, queue_hdl=(nil))
          > ork_ebcom_pcep_path_create(ork, 02:00:00:02:00:01, type 2, eioa 0, queue (nil))
          FN_EXIT EBCOM
    )");
}

TEST(PathAdd, WithoutMemoryForAFurtherReferenceIs10)
{
    service_up();
    path_up(to_ob);
    scripted::fail("malloc", 0);
    EXPECT_EQ(kel_core_ic_ebcom_path_add(&to_ob), 10U);
    transcript::expect(add_entered + attached + queue_check_entered + R"(
          API_CALL EBCOM kel_init_attach()
          > kel_init_attach()
          API_CALL EBCOM ork_qos_queue_get(0x9001)
          > ork_qos_queue_get(ork, 0x9001)
          LAB EBCOM Queue params: rate = 0, bucketSize = 0, shapingMode = 3
          LAB EBCOM Config params: shaping_rate = 0, burst_size = 0, shaping_enabled = 0
          ~ kei_util_init_rc_str_get(10)
        store_dst_mac:
          init:EXCEPTION GENERAL code 10, malloc
          ~ kei_util_init_rc_str_get(10)
        kel_ic_ebcom_add_shaper:
          init:EXCEPTION GENERAL code 10, store_dst_mac
          FN_EXIT EBCOM
          ~ kei_util_init_rc_str_get(10)
        kel_core_ic_ebcom_path_add:
          init:EXCEPTION GENERAL code 10, kel_ic_ebcom_add_shaper
          FN_EXIT EBCOM
    )");
}

TEST(PathAdd, OtherShapingThanTheQueueHasIs7)
{
    service_up();
    path_up(to_ob);
    kel_ebcom_path_config faster = to_ob;
    faster.shaping_rate = 1;
    EXPECT_EQ(kel_core_ic_ebcom_path_add(&faster), 7U);
    transcript::expect(R"(
        kel_core_ic_ebcom_path_add:
          FN_ENTER EBCOM
          > macAddr2str(02:00:00:02:00:01)
          FN_PARAM EBCOM dst_mac = 02:00:00:02:00:01, shaping_enabled = 0, iell_port = 6 (RLU1P), shaping_rate = 1, buffer_threshold = 0, burst_size = 0
          API_CALL EBCOM kel_init_attach()
          > kel_init_attach()
        kel_ic_ebcom_add_shaper:
          FN_ENTER EBCOM
        check_if_queue_params_has_changed:
          API_CALL EBCOM kel_init_attach()
          > kel_init_attach()
          API_CALL EBCOM ork_qos_queue_get(0x9001)
          > ork_qos_queue_get(ork, 0x9001)
          LAB EBCOM Queue params: rate = 0, bucketSize = 0, shapingMode = 3
          LAB EBCOM Config params: shaping_rate = 1, burst_size = 0, shaping_enabled = 0
          ~ kei_util_init_rc_str_get(7)
          init:EXCEPTION GENERAL code 7, Requested config is different than applied on already created queue
          ~ kei_util_init_rc_str_get(7)
        kel_ic_ebcom_add_shaper:
          init:EXCEPTION GENERAL code 7, check_if_queue_params_has_changed
          FN_EXIT EBCOM
          ~ kei_util_init_rc_str_get(7)
        kel_core_ic_ebcom_path_add:
          init:EXCEPTION GENERAL code 7, kel_ic_ebcom_add_shaper
          FN_EXIT EBCOM
    )");
}

TEST(PathAdd, UnreadableQueueIs13)
{
    service_up();
    path_up(to_ob);
    scripted::fail("ork_qos_queue_get", 3);
    EXPECT_EQ(kel_core_ic_ebcom_path_add(&to_ob), 13U);
    transcript::expect(add_entered + attached + queue_check_entered + R"(
          API_CALL EBCOM kel_init_attach()
          > kel_init_attach()
          API_CALL EBCOM ork_qos_queue_get(0x9001)
          > ork_qos_queue_get(ork, 0x9001) = 3
          > ork_syshandle_get(0, 1)
          ~ ork_sys_status_get(3)
          init:EXCEPTION GENERAL 0x3 - status 3, ork_qos_queue_get
    )" + expected::with({"13"}, left_after_queue_check));
}

TEST(PathAdd, FailedAttachmentOfTheQueueCheckPassesItsCode)
{
    service_up();
    path_up(to_ob);
    scripted::fail("kel_init_attach", 255, 2);
    EXPECT_EQ(kel_core_ic_ebcom_path_add(&to_ob), 255U);
    transcript::expect(add_entered + attached + queue_check_entered + R"(
          API_CALL EBCOM kel_init_attach()
          > kel_init_attach() = 255
          ~ kei_util_init_rc_str_get(255)
          init:EXCEPTION GENERAL code 255, kel_init_attach
    )" + expected::with({"255"}, left_after_queue_check));
}

TEST(PathAdd, RefusedPathIs13)
{
    service_up();
    scripted::fail("ork_ebcom_pcep_path_create", -12);
    EXPECT_EQ(kel_core_ic_ebcom_path_add(&to_ob), 13U);
    transcript::expect(add_entered + attached + queue_created + R"(
        kel_core_ic_ebcom_path_add:
          API_CALL EBCOM ork_ebcom_pcep_path_create(pcepType=2, macAddr=02:00:00:02:00:01(OB), eioaPort=0 - NOT USED, shaping_enabled=0, queue_hdl=0x9001)
          > ork_ebcom_pcep_path_create(ork, 02:00:00:02:00:01, type 2, eioa 0, queue 0x9001) = -12
          > ork_syshandle_get(0, 1)
          ~ ork_sys_status_get(-12)
          init:EXCEPTION GENERAL 0xfffffff4 - status -12, ork_ebcom_pcep_path_create
          FN_EXIT EBCOM
    )");
}

TEST(PathAdd, PortWithoutQosIsToldByAllThreeWhoAsk)
{
    service_up();
    kel_ebcom_path_config debug = to_ob;
    debug.iell_port = 14;
    EXPECT_EQ(kel_core_ic_ebcom_path_add(&debug), 3U);
    transcript::expect(R"(
        kel_core_ic_ebcom_path_add:
          FN_ENTER EBCOM
          > macAddr2str(02:00:00:02:00:01)
          FN_PARAM EBCOM dst_mac = 02:00:00:02:00:01, shaping_enabled = 0, iell_port = 14 (DEBUG), shaping_rate = 0, buffer_threshold = 0, burst_size = 0
          API_CALL EBCOM kel_init_attach()
          > kel_init_attach()
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
          ~ kei_util_init_rc_str_get(3)
        kel_core_ic_ebcom_path_add:
          init:EXCEPTION GENERAL code 3, kel_ic_ebcom_add_shaper
          FN_EXIT EBCOM
    )");
}

TEST(PathAdd, BeforeAnyStartThePathIsCreatedButNotCounted)
{
    EXPECT_EQ(kel_core_ic_ebcom_path_add(&to_ob), 0U);
    transcript::expect(add_entered + attached + R"(
        kel_ic_ebcom_add_shaper:
          FN_ENTER EBCOM
          API_CALL EBCOM kel_init_eventdev_dev_id_ebcom_get()
          > kel_init_eventdev_dev_id_ebcom_get(0)
          API_CALL EBCOM kel_init_qos_queue_add()
          > kel_init_qos_queue_add({1, 0, 5120000, 0}, 5, (nil), 7)
          FN_EXIT EBCOM
    )" + path_created);
    EXPECT_EQ(kel_core_ic_ebcom_path_rem(&to_ob), 4U);
}

// Removing EBCOM paths: how destinations are counted, what reaches the driver kit and every way to fail. What depends
// on the destination's location is in kel_ic_ebcom_path_destination_test.cpp.
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

kel_ebcom_path_config to_ob_from(int32_t iell_port)
{
    kel_ebcom_path_config config = to_ob;
    config.iell_port = iell_port;
    return config;
}

const std::string remove_entered = R"(
        kel_core_ic_ebcom_path_rem:
          FN_ENTER EBCOM
          > macAddr2str(02:00:00:02:00:01)
          FN_PARAM EBCOM dst_mac = 02:00:00:02:00:01, shaping_enabled = 0, iell_port = 6 (RLU1P), shaping_rate = 0, buffer_threshold = 0, burst_size = 0
)";

const std::string queue_removed = R"(
        kel_ic_ebcom_remove_shaper:
          FN_ENTER EBCOM
          API_CALL EBCOM kel_init_qos_queue_rem()
          > kel_init_qos_queue_rem(0x9001)
          FN_EXIT EBCOM
)";

const std::string queue_kept = R"(
        kel_ic_ebcom_remove_shaper:
          FN_ENTER EBCOM
          FN_EXIT EBCOM
)";

const std::string path_deleted = R"(
        kel_core_ic_ebcom_path_rem:
          API_CALL EBCOM ork_ebcom_pcep_path_delete(pcepType=2, macAddr=02:00:00:02:00:01(OB), eioaPort=0 - NOT USED, shaping_enabled=0, queue_hdl=(nil))
          > ork_ebcom_pcep_path_delete(ork, 02:00:00:02:00:01, type 2, eioa 0, queue (nil))
          FN_EXIT EBCOM
)";

const std::string remove_left = R"(
        kel_core_ic_ebcom_path_rem:
          FN_EXIT EBCOM
)";

// A destination that is in no count.
const std::string not_configured = remove_entered + R"(
          ~ kei_util_init_rc_str_get(4)
          init:EXCEPTION GENERAL code 4, mac address of port not found to be configured
          FN_EXIT EBCOM
)";

} // namespace

TEST(PathRemove, OnlyReferenceReleasesTheQueueAndDeletesThePath)
{
    service_up();
    path_up(to_ob);
    EXPECT_EQ(kel_core_ic_ebcom_path_rem(&to_ob), 0U);
    transcript::expect(remove_entered + attached + queue_removed + path_deleted);
}

TEST(PathRemove, PathRecordIsZeroWhereNothingIsSet)
{
    service_up();
    path_up(to_ob);
    scripted::soil_stack();
    EXPECT_EQ(kel_core_ic_ebcom_path_rem(&to_ob), 0U);
    EXPECT_EQ(scripted::record_of("ork_ebcom_pcep_path_delete"),
              (octets{2, 0, 0, 2, 0, 1, 0, 0, 2, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}));
}

TEST(PathRemove, LastOfSeveralReferencesDeletesTheDriverKitPath)
{
    service_up();
    path_up(to_ob);
    path_up(to_ob);
    path_up(to_ob);
    EXPECT_EQ(kel_core_ic_ebcom_path_rem(&to_ob), 0U);
    transcript::expect(remove_entered + attached + queue_kept + remove_left);
    EXPECT_EQ(kel_core_ic_ebcom_path_rem(&to_ob), 0U);
    transcript::expect(remove_entered + attached + queue_kept + remove_left);
    EXPECT_EQ(kel_core_ic_ebcom_path_rem(&to_ob), 0U);
    transcript::expect(remove_entered + attached + queue_removed + path_deleted);
    EXPECT_EQ(kel_core_ic_ebcom_path_rem(&to_ob), 4U);
    transcript::expect(not_configured);
}

TEST(PathRemove, DestinationCanBeAddedAnew)
{
    service_up();
    path_up(to_ob);
    EXPECT_EQ(kel_core_ic_ebcom_path_rem(&to_ob), 0U);
    path_up(to_ob);
    EXPECT_EQ(kel_core_ic_ebcom_path_rem(&to_ob), 0U);
    EXPECT_EQ(scripted::calls_of("ork_ebcom_pcep_path_delete"), 2U);
}

TEST(PathRemove, DestinationIsCountedOverAllPorts)
{
    service_up();
    path_up(to_ob);
    const kel_ebcom_path_config from_other_port = to_ob_from(8);
    path_up(from_other_port);
    EXPECT_EQ(kel_core_ic_ebcom_path_rem(&to_ob), 0U);
    transcript::expect(remove_entered + attached + queue_removed + remove_left);
    EXPECT_EQ(kel_core_ic_ebcom_path_rem(&from_other_port), 0U);
    EXPECT_EQ(scripted::calls_of("ork_ebcom_pcep_path_delete"), 1U);
}

TEST(PathRemove, UnknownDestinationIs4BeforeAnyAttachment)
{
    service_up();
    EXPECT_EQ(kel_core_ic_ebcom_path_rem(&to_ob), 4U);
    transcript::expect(not_configured);
}

TEST(PathRemove, BeforeAnyStartEveryDestinationIsUnknown)
{
    EXPECT_EQ(kel_core_ic_ebcom_path_rem(&to_ob), 4U);
    transcript::expect(not_configured);
}

TEST(PathRemove, FailedAttachmentKeepsCountAndReference)
{
    service_up();
    path_up(to_ob);
    scripted::fail("kel_init_attach", 255);
    EXPECT_EQ(kel_core_ic_ebcom_path_rem(&to_ob), 255U);
    transcript::expect(remove_entered + R"(
          API_CALL EBCOM kel_init_attach()
          > kel_init_attach() = 255
          ~ kei_util_init_rc_str_get(255)
          init:EXCEPTION GENERAL code 255, kel_init_attach
          FN_EXIT EBCOM
    )");
    EXPECT_EQ(kel_core_ic_ebcom_path_rem(&to_ob), 0U);
    transcript::expect(remove_entered + attached + queue_removed + path_deleted);
}

TEST(PathRemove, DestinationOfAnotherPortIs4)
{
    service_up();
    const kel_ebcom_path_config from_other_port = to_ob_from(8);
    path_up(from_other_port);
    EXPECT_EQ(kel_core_ic_ebcom_path_rem(&to_ob), 4U);
    transcript::expect(remove_entered + attached + R"(
        kel_ic_ebcom_remove_shaper:
          FN_ENTER EBCOM
          ~ kei_util_init_rc_str_get(4)
        remove_dst_mac:
          init:EXCEPTION GENERAL code 4, dst_mac
          ~ kei_util_init_rc_str_get(4)
        kel_ic_ebcom_remove_shaper:
          init:EXCEPTION GENERAL code 4, remove_dst_mac
          FN_EXIT EBCOM
          ~ kei_util_init_rc_str_get(4)
        kel_core_ic_ebcom_path_rem:
          init:EXCEPTION GENERAL code 4, kel_ic_ebcom_remove_shaper
          FN_EXIT EBCOM
    )");
}

TEST(PathRemove, PortWithoutQosIs3)
{
    service_up();
    path_up(to_ob);
    const kel_ebcom_path_config from_nowhere = to_ob_from(51);
    EXPECT_EQ(kel_core_ic_ebcom_path_rem(&from_nowhere), 3U);
    transcript::expect(R"(
        kel_core_ic_ebcom_path_rem:
          FN_ENTER EBCOM
          > macAddr2str(02:00:00:02:00:01)
          FN_PARAM EBCOM dst_mac = 02:00:00:02:00:01, shaping_enabled = 0, iell_port = 51 (UNKNOWN), shaping_rate = 0, buffer_threshold = 0, burst_size = 0
          API_CALL EBCOM kel_init_attach()
          > kel_init_attach()
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
          ~ kei_util_init_rc_str_get(3)
        kel_core_ic_ebcom_path_rem:
          init:EXCEPTION GENERAL code 3, kel_ic_ebcom_remove_shaper
          FN_EXIT EBCOM
    )");
}

TEST(PathRemove, FailedQueueRemovalKeepsTheDriverKitPath)
{
    service_up();
    path_up(to_ob);
    scripted::fail("kel_init_qos_queue_rem", 1);
    EXPECT_EQ(kel_core_ic_ebcom_path_rem(&to_ob), 1U);
    transcript::expect(remove_entered + attached + R"(
        kel_ic_ebcom_remove_shaper:
          FN_ENTER EBCOM
          API_CALL EBCOM kel_init_qos_queue_rem()
          > kel_init_qos_queue_rem(0x9001) = 1
          ~ kei_util_init_rc_str_get(1)
          init:EXCEPTION GENERAL code 1, kel_init_qos_queue_rem
          FN_EXIT EBCOM
          ~ kei_util_init_rc_str_get(1)
        kel_core_ic_ebcom_path_rem:
          init:EXCEPTION GENERAL code 1, kel_ic_ebcom_remove_shaper
          FN_EXIT EBCOM
    )");
}

TEST(PathRemove, RefusedDeletionIs13)
{
    service_up();
    path_up(to_ob);
    scripted::fail("ork_ebcom_pcep_path_delete", -4);
    EXPECT_EQ(kel_core_ic_ebcom_path_rem(&to_ob), 13U);
    transcript::expect(remove_entered + attached + queue_removed + R"(
        kel_core_ic_ebcom_path_rem:
          API_CALL EBCOM ork_ebcom_pcep_path_delete(pcepType=2, macAddr=02:00:00:02:00:01(OB), eioaPort=0 - NOT USED, shaping_enabled=0, queue_hdl=(nil))
          > ork_ebcom_pcep_path_delete(ork, 02:00:00:02:00:01, type 2, eioa 0, queue (nil)) = -4
          > ork_syshandle_get(0, 1)
          ~ ork_sys_status_get(-4)
          init:EXCEPTION GENERAL 0xfffffffc - status -4, ork_ebcom_pcep_path_delete
          FN_EXIT EBCOM
    )");
}

// The reference on the queue is gone, so a second try gets no further than to the queue.
TEST(PathRemove, RefusedDeletionKeepsTheCountButNotTheReference)
{
    service_up();
    path_up(to_ob);
    scripted::fail("ork_ebcom_pcep_path_delete", 3);
    EXPECT_EQ(kel_core_ic_ebcom_path_rem(&to_ob), 13U);
    EXPECT_EQ(kel_core_ic_ebcom_path_rem(&to_ob), 4U);
    path_up(to_ob);
    EXPECT_EQ(kel_core_ic_ebcom_path_rem(&to_ob), 0U);
    transcript::expect(remove_entered + attached + R"(
        kel_ic_ebcom_remove_shaper:
          FN_ENTER EBCOM
          API_CALL EBCOM kel_init_qos_queue_rem()
          > kel_init_qos_queue_rem(0x9002)
          FN_EXIT EBCOM
    )" + remove_left);
}

TEST(PathRemove, RefusedPathIsUnknownButKeptItsReference)
{
    service_up();
    scripted::fail("ork_ebcom_pcep_path_create", -4);
    EXPECT_EQ(kel_core_ic_ebcom_path_add(&to_ob), 13U);
    transcript::forget();
    EXPECT_EQ(kel_core_ic_ebcom_path_rem(&to_ob), 4U);
    transcript::expect(not_configured);
    path_up(to_ob);

    // Of the two references on the queue, the one removal takes one.
    EXPECT_EQ(kel_core_ic_ebcom_path_rem(&to_ob), 0U);
    transcript::expect(remove_entered + attached + queue_kept + path_deleted);
}

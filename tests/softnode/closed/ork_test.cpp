/*
 * ork_test.cpp - the driver kit through its C functions.
 */
#include "control.h"

#include <cstdint>
#include <cstring>
#include <functional>
#include <string>
#include <vector>

namespace
{

class Ork : public ControlledNode
{
protected:
    ork_ebcom_pcep_path path_through(void *queue) const
    {
        return {{2, 0, 2, 2, 0, 1}, 2, 0, queue};
    }

    /* Every driver-kit call, good but for its first argument. */
    std::vector<std::function<ork_rc(void *)>> good_calls()
    {
        void *scheduler = create_scheduler();
        void *queue = add_queue(create_scheduler());
        const std::uint64_t pcep = create_pcep(1);
        const std::uint64_t group = create_group(100);
        return {
            [](void *kit) {
                const ork_ebcom_global_config config{1500, 0x88b5, 0, 0};
                return ork_ebcom_global_config_set(kit, &config);
            },
            [this](void *kit) { return ork_ebcom_interface_create(kit, device); },
            [this](void *kit) { return ork_ebcom_interface_delete(kit, device); },
            [](void *kit) { return ork_ebcom_timestamp_offset_set(kit, 160); },
            [this, queue](void *kit) {
                const ork_ebcom_pcep_path path = path_through(queue);
                return ork_ebcom_pcep_path_create(kit, &path);
            },
            [this](void *kit) {
                const ork_ebcom_pcep_path path = path_through(nullptr);
                return ork_ebcom_pcep_path_delete(kit, &path);
            },
            [this](void *kit) {
                const ork_qos_scheduler_params params = scheduler_params();
                return ork_qos_scheduler_create(kit, &params, 0, &untouched);
            },
            [scheduler](void *kit) { return ork_qos_scheduler_delete(kit, scheduler); },
            [this, queue](void *kit) { return ork_qos_queue_get(kit, queue, &record); },
            [this](void *kit) { return ork_ebcom_global_statistics_get(kit, &global_record); },
            [this](void *kit) {
                const ork_ebcom_pcep_params params = pcep_params(2);
                return ork_ebcom_pcep_create(kit, &params, &untouched_number);
            },
            [pcep](void *kit) { return ork_ebcom_pcep_delete(kit, pcep); },
            [this, pcep](void *kit) { return ork_ebcom_pcep_statistics_get(kit, pcep, &pcep_record); },
            [this](void *kit) {
                const ork_ebcom_multicast_group params{101, {}};
                return ork_ebcom_multicast_group_create(kit, &params, &untouched_number, 0);
            },
            [group](void *kit) { return ork_ebcom_multicast_group_delete(kit, group); },
            [group](void *kit) { return ork_ebcom_multicast_member_add(kit, group, 1); },
            [group](void *kit) { return ork_ebcom_multicast_member_rem(kit, group, 1); },
        };
    }

    void *untouched = &on_the_stack;
    std::uint64_t untouched_number = 11;
    ork_qos_queue record{11, 22, 33};
    ebcom_global_stats global_record{{44}};
    ebcom_pcep_stats pcep_record{{55, 0, {}}, {}};
};

} // namespace

TEST_F(Ork, EveryCallRefusesAWrongDriverKitHandleAndChangesNothing)
{
    const auto calls = good_calls();
    void *scheduler = create_scheduler();
    const auto before = held();
    for (const auto &call : calls)
        for (void *wrong : {static_cast<void *>(nullptr), foreign, attach.sys_handle, scheduler})
            EXPECT_EQ(call(wrong), ORK_INVAL);
    EXPECT_EQ(held(), before);
    EXPECT_EQ(untouched, &on_the_stack);
    EXPECT_EQ(untouched_number, 11U);
    EXPECT_EQ(record.shapingMode, 33U);
    EXPECT_EQ(global_record.octets[0], 44);
    EXPECT_EQ(pcep_record.outbound.out_cnt0, 55U);
}

TEST_F(Ork, EveryCallRefusesADriverKitHandleOfBeforeAReset)
{
    void *stale = ork;
    switch_on_afresh();
    for (const auto &call : good_calls())
        EXPECT_EQ(call(stale), ORK_NOTAVAIL);
}

TEST_F(Ork, SystemHandleIsThatOfTheAttachment)
{
    void *system = nullptr;
    EXPECT_EQ(ork_syshandle_get(0, 1, &system), ORK_OK);
    EXPECT_EQ(system, attach.sys_handle);
}

TEST_F(Ork, SystemHandleComesForZeroAndOneOnly)
{
    void *system = foreign;
    EXPECT_EQ(ork_syshandle_get(1, 1, &system), ORK_INVAL);
    EXPECT_EQ(ork_syshandle_get(0, 0, &system), ORK_INVAL);
    EXPECT_EQ(ork_syshandle_get(0, 1, nullptr), ORK_INVAL);
    EXPECT_EQ(system, foreign);
}

TEST_F(Ork, EveryCodeHasAStatusTextOfItsOwn)
{
    std::vector<std::string> texts;
    for (ork_rc rc = ORK_OUTOFRANGE; rc <= ORK_OK; ++rc)
        texts.emplace_back(ork_sys_status_get(attach.sys_handle, rc));
    EXPECT_EQ(texts, (std::vector<std::string>{"out of range, table full", "object not available", "internal error",
                                               "no such domain", "shut down", "still in use, try again",
                                               "no such port or Ethernet device", "not supported",
                                               "invalid argument or handle", "success"}));
}

TEST_F(Ork, OtherCodesHaveAStatusTextToo)
{
    for (const ork_rc rc : {1, -10, INT32_MIN, INT32_MAX})
        EXPECT_STREQ(ork_sys_status_get(attach.sys_handle, rc), "unknown status");
}

TEST_F(Ork, WithoutTheSystemHandleThereIsStillAText)
{
    for (void *wrong : {static_cast<void *>(nullptr), foreign, ork})
        EXPECT_STREQ(ork_sys_status_get(wrong, ORK_INVAL), "no status without the system handle");
}

TEST_F(Ork, GlobalConfigReachesTheNode)
{
    const ork_ebcom_global_config config{1500, 0x88b5, 0x3a, 0};
    ASSERT_EQ(ork_ebcom_global_config_set(ork, &config), ORK_OK);
    const auto globals = look_into_node().at("globals");
    EXPECT_EQ(globals.at("mtu"), 1500);
    EXPECT_EQ(globals.at("ether_type"), 0x88b5);
    EXPECT_EQ(globals.at("settings"), notation::document::array({0xa, 0x3}));
}

TEST_F(Ork, GlobalConfigRefusesNullAndAReservedOctet)
{
    const ork_ebcom_global_config reserved{1500, 0x88b5, 0, 1};
    EXPECT_EQ(ork_ebcom_global_config_set(ork, nullptr), ORK_INVAL);
    EXPECT_EQ(ork_ebcom_global_config_set(ork, &reserved), ORK_INVAL);
    EXPECT_TRUE(look_into_node().at("globals").is_null());
}

TEST_F(Ork, ThereIsOneInterface)
{
    EXPECT_EQ(ork_ebcom_interface_delete(ork, device), ORK_NOTAVAIL);
    EXPECT_EQ(ork_ebcom_interface_create(ork, device), ORK_OK);
    EXPECT_EQ(look_into_node().at("interface").at("eth_dev_id"), device);
    EXPECT_EQ(ork_ebcom_interface_create(ork, device), ORK_AGAIN);
    EXPECT_EQ(ork_ebcom_interface_delete(ork, device), ORK_OK);
    EXPECT_TRUE(look_into_node().at("interface").is_null());
}

TEST_F(Ork, AnInterfaceNeedsTheEventDevice)
{
    EXPECT_EQ(ork_ebcom_interface_create(ork, static_cast<uint16_t>(device + 1)), ORK_NOPORT);
    EXPECT_EQ(ork_ebcom_interface_delete(ork, static_cast<uint16_t>(device + 1)), ORK_NOPORT);
}

TEST_F(Ork, GlobalStatisticsOverwriteTheWholeRecord)
{
    const ork_ebcom_pcep_path path = path_through(add_queue(create_scheduler()));
    ASSERT_EQ(ork_ebcom_pcep_path_create(ork, &path), ORK_OK);
    for (const std::uint32_t id : {1U, 2U, 3U})
        create_pcep(id);
    create_group(100);
    create_group(101);
    std::memset(&global_record, 0xa5, sizeof global_record);
    ASSERT_EQ(ork_ebcom_global_statistics_get(ork, &global_record), ORK_OK);
    ebcom_global_stats expected{};
    expected.octets[48] = 1; /* paths */
    expected.octets[56] = 3; /* PCEPs */
    expected.octets[64] = 2; /* groups */
    EXPECT_EQ(std::memcmp(&global_record, &expected, sizeof expected), 0);
    EXPECT_EQ(ork_ebcom_global_statistics_get(ork, nullptr), ORK_INVAL);
}

TEST_F(Ork, TimestampOffsetReachesTheNode)
{
    EXPECT_EQ(ork_ebcom_timestamp_offset_set(ork, INT64_MIN), ORK_OK);
    EXPECT_EQ(look_into_node().at("timestamp_offset"), INT64_MIN);
}

TEST_F(Ork, CreatingAPathAgainChangesIt)
{
    void *scheduler = create_scheduler();
    ork_ebcom_pcep_path path = path_through(add_queue(scheduler));
    ASSERT_EQ(ork_ebcom_pcep_path_create(ork, &path), ORK_OK);
    path.pcepType = 1;
    path.queue_hdl = add_queue(scheduler);
    ASSERT_EQ(ork_ebcom_pcep_path_create(ork, &path), ORK_OK);
    const auto document = look_into_node();
    ASSERT_EQ(document.at("paths").size(), 1U);
    EXPECT_EQ(document.at("paths")[0].at("type"), 1);
    EXPECT_EQ(document.at("paths")[0].at("queue"), document.at("queues")[1].at("handle"));
}

TEST_F(Ork, APathRefusesNullAndImpossibleTypes)
{
    ork_ebcom_pcep_path path = path_through(add_queue(create_scheduler()));
    EXPECT_EQ(ork_ebcom_pcep_path_create(ork, nullptr), ORK_INVAL);
    for (const int32_t type : {-1, 3, INT32_MAX}) {
        path.pcepType = type;
        EXPECT_EQ(ork_ebcom_pcep_path_create(ork, &path), ORK_INVAL);
    }
    EXPECT_TRUE(look_into_node().at("paths").empty());
}

TEST_F(Ork, APathRefusesAWrongQueue)
{
    void *scheduler = create_scheduler();
    for (void *wrong : {static_cast<void *>(nullptr), foreign, scheduler, ork}) {
        const ork_ebcom_pcep_path path = path_through(wrong);
        EXPECT_EQ(ork_ebcom_pcep_path_create(ork, &path), ORK_INVAL);
    }
    void *stale = add_queue(scheduler);
    ASSERT_EQ(kel_init_qos_queue_rem(stale), 0U);
    const ork_ebcom_pcep_path path = path_through(stale);
    EXPECT_EQ(ork_ebcom_pcep_path_create(ork, &path), ORK_NOTAVAIL);
}

TEST_F(Ork, APathIsDeletedByItsAddressWhateverElseTheRecordHolds)
{
    ork_ebcom_pcep_path path = path_through(add_queue(create_scheduler()));
    ASSERT_EQ(ork_ebcom_pcep_path_create(ork, &path), ORK_OK);
    path.pcepType = 99;
    path.queue_hdl = nullptr;
    EXPECT_EQ(ork_ebcom_pcep_path_delete(ork, &path), ORK_OK);
    EXPECT_TRUE(look_into_node().at("paths").empty());
}

TEST_F(Ork, DeletingAPathThatIsNotThereIsRefused)
{
    const ork_ebcom_pcep_path path = path_through(nullptr);
    EXPECT_EQ(ork_ebcom_pcep_path_delete(ork, &path), ORK_NOTAVAIL);
    EXPECT_EQ(ork_ebcom_pcep_path_delete(ork, nullptr), ORK_INVAL);
}

TEST_F(Ork, SchedulersFormATree)
{
    void *top = create_scheduler();
    create_scheduler(top);
    const auto schedulers = look_into_node().at("schedulers");
    EXPECT_TRUE(schedulers[0].at("parent").is_null());
    EXPECT_EQ(schedulers[1].at("parent"), schedulers[0].at("handle"));
    EXPECT_EQ(ork_qos_scheduler_delete(ork, top), ORK_AGAIN);
}

TEST_F(Ork, CreatingASchedulerRefusesNullAnotherDeviceAndOtherModes)
{
    ork_qos_scheduler_params params = scheduler_params();
    EXPECT_EQ(ork_qos_scheduler_create(ork, nullptr, 0, &untouched), ORK_INVAL);
    EXPECT_EQ(ork_qos_scheduler_create(ork, &params, 1, &untouched), ORK_INVAL);
    EXPECT_EQ(ork_qos_scheduler_create(ork, &params, 0, nullptr), ORK_INVAL);
    ++params.vsiEthDevId;
    EXPECT_EQ(ork_qos_scheduler_create(ork, &params, 0, &untouched), ORK_NOPORT);
    ++params.schedulingMode;
    EXPECT_EQ(ork_qos_scheduler_create(ork, &params, 0, &untouched), ORK_INVAL);
    EXPECT_EQ(untouched, &on_the_stack);
    EXPECT_TRUE(look_into_node().at("schedulers").empty());
}

TEST_F(Ork, CreatingASchedulerRefusesAWrongParent)
{
    void *stale = create_scheduler();
    ASSERT_EQ(ork_qos_scheduler_delete(ork, stale), ORK_OK);
    void *queue = add_queue(create_scheduler());
    const auto create_under = [this](void *parent) {
        const ork_qos_scheduler_params params = scheduler_params(parent);
        return ork_qos_scheduler_create(ork, &params, 0, &untouched);
    };
    EXPECT_EQ(create_under(foreign), ORK_INVAL);
    EXPECT_EQ(create_under(queue), ORK_INVAL);
    EXPECT_EQ(create_under(stale), ORK_NOTAVAIL);
    EXPECT_EQ(untouched, &on_the_stack);
}

TEST_F(Ork, TheSixtyFifthSchedulerIsRefused)
{
    for (int count = 0; count < 64; ++count)
        create_scheduler();
    const ork_qos_scheduler_params params = scheduler_params();
    EXPECT_EQ(ork_qos_scheduler_create(ork, &params, 0, &untouched), ORK_OUTOFRANGE);
}

TEST_F(Ork, DeletingASchedulerRefusesWrongHandles)
{
    void *scheduler = create_scheduler();
    void *queue = add_queue(create_scheduler());
    for (void *wrong : {static_cast<void *>(nullptr), foreign, queue, ork})
        EXPECT_EQ(ork_qos_scheduler_delete(ork, wrong), ORK_INVAL);
    ASSERT_EQ(ork_qos_scheduler_delete(ork, scheduler), ORK_OK);
    EXPECT_EQ(ork_qos_scheduler_delete(ork, scheduler), ORK_NOTAVAIL);
}

TEST_F(Ork, AQueueReadsBackWhatItWasMadeFrom)
{
    void *scheduler = create_scheduler();
    ASSERT_EQ(ork_qos_queue_get(ork, add_queue(scheduler, 1000, 64), &record), ORK_OK);
    EXPECT_EQ(record.rate, 1000U);
    EXPECT_EQ(record.bucketSize, 64U);
    EXPECT_EQ(record.shapingMode, static_cast<uint32_t>(ORK_QOS_QUEUE_SHAPED));
    ASSERT_EQ(ork_qos_queue_get(ork, add_queue(scheduler), &record), ORK_OK);
    EXPECT_EQ(record.rate, 0U);
    EXPECT_EQ(record.bucketSize, 0U);
    EXPECT_EQ(record.shapingMode, static_cast<uint32_t>(ORK_QOS_QUEUE_UNSHAPED));
}

TEST_F(Ork, ReadingAQueueRefusesWrongHandlesAndNull)
{
    void *scheduler = create_scheduler();
    void *queue = add_queue(scheduler);
    EXPECT_EQ(ork_qos_queue_get(ork, queue, nullptr), ORK_INVAL);
    for (void *wrong : {static_cast<void *>(nullptr), foreign, scheduler, ork})
        EXPECT_EQ(ork_qos_queue_get(ork, wrong, &record), ORK_INVAL);
    ASSERT_EQ(kel_init_qos_queue_rem(queue), 0U);
    EXPECT_EQ(ork_qos_queue_get(ork, queue, &record), ORK_NOTAVAIL);
    EXPECT_EQ(record.rate, 11U);
}

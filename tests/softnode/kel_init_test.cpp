/*
 * kel_init_test.cpp - the companion library through its C functions.
 */
#include "control.h"

#include <algorithm>
#include <cstring>

namespace
{

class KelInit : public ControlledNode
{
protected:
    uint32_t add(void *scheduler)
    {
        return kel_init_qos_queue_add(&params, 5, scheduler, device, &untouched);
    }

    kel_init_qos_queue_params params{1, 0, 5'120'000, 0};
    void *untouched = &on_the_stack;
};

} // namespace

TEST_F(KelInit, EveryAttachYieldsTheSameHandles)
{
    kel_attach_info again{};
    ASSERT_EQ(kel_init_attach(&again), 0U);
    EXPECT_EQ(again.sys_handle, attach.sys_handle);
    EXPECT_EQ(again.ork_handle, attach.ork_handle);
    EXPECT_EQ(again.ehsfp_target, attach.ehsfp_target);
    EXPECT_NE(again.ehsfp_target, 0U);
}

TEST_F(KelInit, AttachOverwritesTheWholeRecord)
{
    kel_attach_info dirty;
    std::memset(&dirty, 0xa5, sizeof dirty);
    ASSERT_EQ(kel_init_attach(&dirty), 0U);
    const auto is_zero = [](uint8_t octet) { return octet == 0; };
    EXPECT_TRUE(std::all_of(std::begin(dirty.opaque8), std::end(dirty.opaque8), is_zero));
    EXPECT_TRUE(std::all_of(std::begin(dirty.opaque144), std::end(dirty.opaque144), is_zero));
}

TEST_F(KelInit, NullOutputsAreRefused)
{
    EXPECT_EQ(kel_init_attach(nullptr), static_cast<uint32_t>(KEL_RC_OUT_OF_RANGE));
    EXPECT_EQ(kel_init_eventdev_dev_id_ebcom_get(nullptr), static_cast<uint32_t>(KEL_RC_OUT_OF_RANGE));
    EXPECT_EQ(kel_init_eventdev_vsi_ebcom_get(nullptr), static_cast<uint32_t>(KEL_RC_OUT_OF_RANGE));
}

TEST_F(KelInit, VsiIsThatOfTheEventDevice)
{
    kel_vsi_t vsi = 0;
    ASSERT_EQ(kel_init_eventdev_vsi_ebcom_get(&vsi), 0U);
    ASSERT_EQ(ork_ebcom_interface_create(ork, device), ORK_OK);
    EXPECT_EQ(look_into_node()["interface"]["vsi"], vsi);
    EXPECT_NE(vsi, 0);
}

TEST_F(KelInit, AQueueHangsUnderItsScheduler)
{
    params = {1, 1000, 25'600, 64};
    ASSERT_EQ(add(create_scheduler()), 0U);
    const auto document = look_into_node();
    const auto &queue = document["queues"][0];
    EXPECT_EQ(queue["scheduler"], document["schedulers"][0]["handle"]);
    EXPECT_EQ(queue["rate"], 1000);
    EXPECT_EQ(queue["threshold"], 25'600);
    EXPECT_EQ(queue["bucket_size"], 64);
    EXPECT_EQ(queue["shaped"], true);
}

TEST_F(KelInit, AddingAQueueRefusesNull)
{
    void *scheduler = create_scheduler();
    EXPECT_EQ(kel_init_qos_queue_add(nullptr, 5, scheduler, device, &untouched), 3U);
    EXPECT_EQ(kel_init_qos_queue_add(&params, 5, scheduler, device, nullptr), 3U);
    EXPECT_TRUE(look_into_node()["queues"].empty());
}

TEST_F(KelInit, AddingAQueueRefusesAnotherModeKindOrDevice)
{
    void *scheduler = create_scheduler();
    EXPECT_EQ(kel_init_qos_queue_add(&params, 4, scheduler, device, &untouched), 3U);
    EXPECT_EQ(kel_init_qos_queue_add(&params, 5, scheduler, static_cast<uint16_t>(device + 1), &untouched), 3U);
    params.mode = 0;
    EXPECT_EQ(add(scheduler), 3U);
    EXPECT_EQ(untouched, &on_the_stack);
    EXPECT_TRUE(look_into_node()["queues"].empty());
}

TEST_F(KelInit, AddingAQueueRefusesAWrongScheduler)
{
    void *scheduler = create_scheduler();
    void *queue = add_queue(scheduler);
    for (void *wrong : {static_cast<void *>(nullptr), foreign, queue, ork})
        EXPECT_EQ(add(wrong), 3U);
    void *stale = create_scheduler();
    ASSERT_EQ(ork_qos_scheduler_delete(ork, stale), ORK_OK);
    EXPECT_EQ(add(stale), 4U);
    EXPECT_EQ(untouched, &on_the_stack);
}

TEST_F(KelInit, TheSixtyFifthQueueIsRefused)
{
    void *scheduler = create_scheduler();
    for (int count = 0; count < 64; ++count)
        add_queue(scheduler);
    EXPECT_EQ(add(scheduler), static_cast<uint32_t>(KEL_RC_LIMIT));
    EXPECT_EQ(untouched, &on_the_stack);
}

TEST_F(KelInit, RemovingAQueueRefusesWrongHandles)
{
    void *scheduler = create_scheduler();
    void *queue = add_queue(scheduler);
    for (void *wrong : {static_cast<void *>(nullptr), foreign, scheduler, ork})
        EXPECT_EQ(kel_init_qos_queue_rem(wrong), 3U);
    ASSERT_EQ(kel_init_qos_queue_rem(queue), 0U);
    EXPECT_EQ(kel_init_qos_queue_rem(queue), 4U);
    EXPECT_TRUE(look_into_node()["queues"].empty());
}

TEST_F(KelInit, AQueueCanBeRemovedUnderItsPaths)
{
    void *queue = add_queue(create_scheduler());
    const ork_ebcom_pcep_path path{{2, 0, 2, 2, 0, 1}, 2, 0, queue};
    ASSERT_EQ(ork_ebcom_pcep_path_create(ork, &path), ORK_OK);
    ASSERT_EQ(kel_init_qos_queue_rem(queue), 0U);
    const auto paths = look_into_node()["paths"];
    ASSERT_EQ(paths.size(), 1U);
    EXPECT_TRUE(paths[0]["queue"].is_null());
}

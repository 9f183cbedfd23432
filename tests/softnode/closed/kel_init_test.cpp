/*
 * kel_init_test.cpp - the companion library through its C functions.
 */
#include "control.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

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

/* A stream into memory. */
class MemoryStream
{
public:
    MemoryStream() : stream_(open_memstream(&text_, &size_))
    {
    }

    MemoryStream(const MemoryStream &) = delete;
    MemoryStream &operator=(const MemoryStream &) = delete;

    ~MemoryStream()
    {
        std::fclose(stream_);
        std::free(text_);
    }

    operator void *()
    {
        return stream_;
    }

    std::string text()
    {
        std::fflush(stream_);
        return {text_, size_};
    }

private:
    char *text_ = nullptr;
    std::size_t size_ = 0;
    FILE *stream_;
};

/* The entries 1, 7 and 511 are used, and so is 512, past the end. */
uint32_t id_at(uint32_t index)
{
    return index == 1 || index == 7 || index >= 511 ? index : 0;
}

uint64_t handle_at(uint32_t index)
{
    return 0x5400000000 + index;
}

uint32_t no_id(uint32_t)
{
    return 0;
}

/* An accessor that calls into the companion library itself. */
uint32_t id_of_device(uint32_t index)
{
    uint16_t eth_dev_id = 0;
    EXPECT_EQ(kel_init_eventdev_dev_id_ebcom_get(&eth_dev_id), 0U);
    return index;
}

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
    EXPECT_EQ(look_into_node().at("interface").at("vsi"), vsi);
    EXPECT_NE(vsi, 0);
}

TEST_F(KelInit, AQueueHangsUnderItsScheduler)
{
    params = {1, 1000, 25'600, 64};
    ASSERT_EQ(add(create_scheduler()), 0U);
    const auto document = look_into_node();
    const auto &queue = document.at("queues")[0];
    EXPECT_EQ(queue.at("scheduler"), document.at("schedulers")[0].at("handle"));
    EXPECT_EQ(queue.at("rate"), 1000);
    EXPECT_EQ(queue.at("threshold"), 25'600);
    EXPECT_EQ(queue.at("bucket_size"), 64);
    EXPECT_EQ(queue.at("shaped"), true);
}

TEST_F(KelInit, AddingAQueueRefusesNull)
{
    void *scheduler = create_scheduler();
    EXPECT_EQ(kel_init_qos_queue_add(nullptr, 5, scheduler, device, &untouched), 3U);
    EXPECT_EQ(kel_init_qos_queue_add(&params, 5, scheduler, device, nullptr), 3U);
    EXPECT_TRUE(look_into_node().at("queues").empty());
}

TEST_F(KelInit, AddingAQueueRefusesAnotherModeKindOrDevice)
{
    void *scheduler = create_scheduler();
    EXPECT_EQ(kel_init_qos_queue_add(&params, 4, scheduler, device, &untouched), 3U);
    EXPECT_EQ(kel_init_qos_queue_add(&params, 5, scheduler, static_cast<uint16_t>(device + 1), &untouched), 3U);
    params.mode = 0;
    EXPECT_EQ(add(scheduler), 3U);
    EXPECT_EQ(untouched, &on_the_stack);
    EXPECT_TRUE(look_into_node().at("queues").empty());
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
    EXPECT_TRUE(look_into_node().at("queues").empty());
}

TEST_F(KelInit, AQueueCanBeRemovedUnderItsPaths)
{
    void *queue = add_queue(create_scheduler());
    const ork_ebcom_pcep_path path{{2, 0, 2, 2, 0, 1}, 2, 0, queue};
    ASSERT_EQ(ork_ebcom_pcep_path_create(ork, &path), ORK_OK);
    ASSERT_EQ(kel_init_qos_queue_rem(queue), 0U);
    const auto paths = look_into_node().at("paths");
    ASSERT_EQ(paths.size(), 1U);
    EXPECT_TRUE(paths[0].at("queue").is_null());
}

TEST_F(KelInit, StatisticsOfAnIdleQueueAreZero)
{
    qos_queue_stats record;
    std::memset(&record, 0xa5, sizeof record);
    ASSERT_EQ(kel_init_qos_queue_stats_get(add_queue(create_scheduler()), &record), 0U);
    const qos_queue_stats expected{};
    EXPECT_EQ(std::memcmp(&record, &expected, sizeof expected), 0);
}

TEST_F(KelInit, StatisticsRefuseWrongHandlesAndNull)
{
    void *scheduler = create_scheduler();
    void *queue = add_queue(scheduler);
    qos_queue_stats record{};
    record.pkts_tx = 11;
    EXPECT_EQ(kel_init_qos_queue_stats_get(queue, nullptr), 3U);
    for (void *wrong : {static_cast<void *>(nullptr), foreign, scheduler, ork})
        EXPECT_EQ(kel_init_qos_queue_stats_get(wrong, &record), 3U);
    ASSERT_EQ(kel_init_qos_queue_rem(queue), 0U);
    EXPECT_EQ(kel_init_qos_queue_stats_get(queue, &record), 4U);
    EXPECT_EQ(record.pkts_tx, 11U);
}

TEST_F(KelInit, AHandleDumpHasATitleAndALinePerUsedEntry)
{
    MemoryStream stream;
    EXPECT_EQ(kel_init_dump_ork_handles(stream, "PCEP Handles", 511, id_at, handle_at), 0U);
    EXPECT_EQ(stream.text(), "PCEP Handles\n"
                             "    1  0x5400000001\n"
                             "    7  0x5400000007\n"
                             "  511  0x54000001ff\n");
}

TEST_F(KelInit, AHandleDumpOfNothingIsItsTitle)
{
    MemoryStream stream;
    EXPECT_EQ(kel_init_dump_ork_handles(stream, "None used", 511, no_id, handle_at), 0U);
    EXPECT_EQ(kel_init_dump_ork_handles(stream, "None there", 0, id_at, handle_at), 0U);
    EXPECT_EQ(stream.text(), "None used\nNone there\n");
}

TEST_F(KelInit, AHandleDumpRefusesNull)
{
    MemoryStream stream;
    EXPECT_EQ(kel_init_dump_ork_handles(nullptr, "Handles", 1, id_at, handle_at), 3U);
    EXPECT_EQ(kel_init_dump_ork_handles(stream, nullptr, 1, id_at, handle_at), 3U);
    EXPECT_EQ(kel_init_dump_ork_handles(stream, "Handles", 1, nullptr, handle_at), 3U);
    EXPECT_EQ(kel_init_dump_ork_handles(stream, "Handles", 1, id_at, nullptr), 3U);
    EXPECT_EQ(stream.text(), "");
}

TEST_F(KelInit, AHandleDumpLetsItsAccessorsCallIn)
{
    MemoryStream stream;
    EXPECT_EQ(kel_init_dump_ork_handles(stream, "Handles", 2, id_of_device, handle_at), 0U);
    EXPECT_EQ(stream.text(), "Handles\n    1  0x5400000001\n    2  0x5400000002\n");
}

TEST_F(KelInit, AHandleDumpThatCannotBeWrittenFails)
{
    FILE *unwritable = std::fopen("/dev/null", "r");
    ASSERT_NE(unwritable, nullptr);
    EXPECT_EQ(kel_init_dump_ork_handles(unwritable, "Handles", 2, id_at, handle_at),
              static_cast<uint32_t>(KEL_RC_FAILED));
    std::fclose(unwritable);
}

TEST_F(KelInit, AHandleDumpThatIsMadeToFailWritesNothing)
{
    MemoryStream stream;
    ASSERT_EQ(add_faults("kel_init_dump_ork_handles=13"), "");
    EXPECT_EQ(kel_init_dump_ork_handles(stream, "Handles", 2, id_at, handle_at), 13U);
    EXPECT_EQ(stream.text(), "");
}

// The scheduler tree: how it is built and taken down, and every way that each step can fail.
#include "expected.h"
#include "script.h"
#include "scripted_platform.h"
#include "shaper_requests.h"
#include "transcript.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <ranges>
#include <sstream>
#include <string>
#include <vector>

namespace
{

constexpr uint32_t levels = 7;
constexpr uint32_t schedulers = 12; // the levels and the groups

// The calls of a closed function in the transcript so far, one to a line; begins a new transcript.
std::string calls_made(const std::string &function)
{
    std::istringstream lines(transcript::take());
    std::string calls;
    for (std::string line; std::getline(lines, line);)
        if (line.starts_with("  > " + function + "("))
            calls += line.substr(4) + "\n";
    return calls;
}

// A driver-kit code as the records show it.
std::string hexadecimal(int32_t rc)
{
    return scripted::text("0x%x", static_cast<uint32_t>(rc));
}

using scripted::octets;

void put(octets &record, size_t at, uint64_t value, size_t size)
{
    for (size_t i = 0; i < size; ++i)
        record[at + i] = static_cast<uint8_t>(value >> 8 * i);
}

// What the driver kit gets: fixed values, the parent and the device identifier, zero everywhere else.
octets scheduler_record(const void *parent)
{
    octets record(88);
    put(record, 0, reinterpret_cast<uintptr_t>(parent), 8);
    put(record, 12, 3, 4);    // shapingMode
    put(record, 16, 11, 4);   // schedulingMode
    put(record, 20, 7, 4);    // arbitrationMode
    put(record, 24, 3036, 4); // serviceQuantum
    put(record, 76, 20, 4);   // rootId
    put(record, 82, scripted::eth_dev_id, 2);
    return record;
}

// A take-down whose deletions the driver kit refuses, one and all.
std::string take_down_refused(const std::vector<void *> &handles, int32_t rc)
{
    std::string result = R"(
        kel_ic_ebcom_deinit_qos:
          FN_ENTER EBCOM
    )";
    for (const void *handle : handles)
        result += expected::with({scripted::text("%p", handle), std::to_string(rc), hexadecimal(rc)}, R"(
        remove_scheduler:
          API_CALL EBCOM kel_init_attach()
          > kel_init_attach()
          API_CALL EBCOM ork_qos_scheduler_delete(scheduler_hdl=$1)
          > ork_qos_scheduler_delete(ork, $1) = $2
          > ork_syshandle_get(0, 1)
          ~ ork_sys_status_get($2)
          init:EXCEPTION GENERAL $3 - status $2, ork_qos_scheduler_delete
          ~ kei_util_init_rc_str_get(13)
        kel_ic_ebcom_deinit_qos:
          init:EXCEPTION GENERAL code 13, remove_scheduler
    )");
    return result + R"(
          FN_EXIT EBCOM
    )";
}

// A take-down that can never attach.
std::string take_down_unattached(uint32_t rc)
{
    std::string result = R"(
        kel_ic_ebcom_deinit_qos:
          FN_ENTER EBCOM
    )";
    for (uint32_t n = 1; n <= schedulers; ++n)
        result += expected::with({std::to_string(rc)}, R"(
        remove_scheduler:
          API_CALL EBCOM kel_init_attach()
          > kel_init_attach() = $1
          ~ kei_util_init_rc_str_get($1)
          init:EXCEPTION GENERAL code $1, kel_init_attach
          ~ kei_util_init_rc_str_get($1)
        kel_ic_ebcom_deinit_qos:
          init:EXCEPTION GENERAL code $1, remove_scheduler
    )");
    return result + R"(
          FN_EXIT EBCOM
    )";
}

// The handles that a take-down deletes after the first `created` schedulers were made, in its order.
std::vector<void *> handles_taken_down(uint32_t created)
{
    std::vector<void *> handles;
    for (uint32_t n = levels + 1; n <= schedulers; ++n)
        handles.push_back(n <= created ? scripted::scheduler(n) : nullptr);
    for (uint32_t n = levels; n >= 1; --n)
        handles.push_back(n <= created ? scripted::scheduler(n) : nullptr);
    return handles;
}

// The calls that delete them.
std::string deletions_of(const std::vector<void *> &handles)
{
    std::string calls;
    for (const void *handle : handles)
        calls += scripted::text("ork_qos_scheduler_delete(ork, %p)\n", handle);
    return calls;
}

} // namespace

TEST(SchedulerSetUp, BuildsSevenLevelsAndFiveGroups)
{
    EXPECT_EQ(kel_ic_ebcom_init_qos(), 0U);
    transcript::expect(expected::scheduler_tree_built());
}

TEST(SchedulerSetUp, ChainsTheLevelsAndPutsAllGroupsUnderTheLast)
{
    EXPECT_EQ(kel_ic_ebcom_init_qos(), 0U);
    EXPECT_EQ(calls_made("ork_qos_scheduler_create"), "ork_qos_scheduler_create(ork, parent (nil), 0)\n"
                                                      "ork_qos_scheduler_create(ork, parent 0x5001, 0)\n"
                                                      "ork_qos_scheduler_create(ork, parent 0x5002, 0)\n"
                                                      "ork_qos_scheduler_create(ork, parent 0x5003, 0)\n"
                                                      "ork_qos_scheduler_create(ork, parent 0x5004, 0)\n"
                                                      "ork_qos_scheduler_create(ork, parent 0x5005, 0)\n"
                                                      "ork_qos_scheduler_create(ork, parent 0x5006, 0)\n"
                                                      "ork_qos_scheduler_create(ork, parent 0x5007, 0)\n"
                                                      "ork_qos_scheduler_create(ork, parent 0x5007, 0)\n"
                                                      "ork_qos_scheduler_create(ork, parent 0x5007, 0)\n"
                                                      "ork_qos_scheduler_create(ork, parent 0x5007, 0)\n"
                                                      "ork_qos_scheduler_create(ork, parent 0x5007, 0)\n");
}

TEST(SchedulerSetUp, EverySchedulerHasTheSameParametersButForItsParent)
{
    EXPECT_EQ(kel_ic_ebcom_init_qos(), 0U);
    const std::vector<octets> records = scripted::records_of("ork_qos_scheduler_create");
    ASSERT_EQ(records.size(), schedulers);
    for (uint32_t n = 1; n <= schedulers; ++n)
        EXPECT_EQ(records[n - 1], scheduler_record(expected::scheduler_parent(n))) << "scheduler " << n;
}

TEST(SchedulerSetUp, EveryAttachmentGetsAZeroedRecord)
{
    EXPECT_EQ(kel_ic_ebcom_init_qos(), 0U);
    EXPECT_EQ(scripted::records_of("kel_init_attach"), std::vector<octets>(schedulers, octets(176)));
}

TEST(SchedulerSetUp, WithoutADeviceIdentifierNothingIsCreated)
{
    for (const uint32_t rc : {1U, 3U, 13U, 255U}) {
        scripted::fail("kel_init_eventdev_dev_id_ebcom_get", rc);
        EXPECT_EQ(kel_ic_ebcom_init_qos(), rc);
        transcript::expect(expected::with({std::to_string(rc)}, R"(
        kel_ic_ebcom_init_qos:
          FN_ENTER EBCOM
          API_CALL EBCOM kel_init_eventdev_dev_id_ebcom_get()
          > kel_init_eventdev_dev_id_ebcom_get(0) = $1
          ~ kei_util_init_rc_str_get($1)
          init:EXCEPTION GENERAL code $1, kel_init_eventdev_dev_id_ebcom_get
          FN_EXIT EBCOM
        )"));
    }
}

TEST(SchedulerSetUp, FailedThirdLevelLeavesTheFirstTwoAndNoGroup)
{
    scripted::fail("kel_init_attach", 255, 3);
    EXPECT_EQ(kel_ic_ebcom_init_qos(), 255U);
    EXPECT_EQ(calls_made("ork_qos_scheduler_create"), "ork_qos_scheduler_create(ork, parent (nil), 0)\n"
                                                      "ork_qos_scheduler_create(ork, parent 0x5001, 0)\n");
    EXPECT_EQ(kel_ic_ebcom_deinit_qos(), 0U);
    EXPECT_EQ(calls_made("ork_qos_scheduler_delete"), "ork_qos_scheduler_delete(ork, (nil))\n"
                                                      "ork_qos_scheduler_delete(ork, (nil))\n"
                                                      "ork_qos_scheduler_delete(ork, (nil))\n"
                                                      "ork_qos_scheduler_delete(ork, (nil))\n"
                                                      "ork_qos_scheduler_delete(ork, (nil))\n"
                                                      "ork_qos_scheduler_delete(ork, (nil))\n"
                                                      "ork_qos_scheduler_delete(ork, (nil))\n"
                                                      "ork_qos_scheduler_delete(ork, (nil))\n"
                                                      "ork_qos_scheduler_delete(ork, (nil))\n"
                                                      "ork_qos_scheduler_delete(ork, (nil))\n"
                                                      "ork_qos_scheduler_delete(ork, 0x5002)\n"
                                                      "ork_qos_scheduler_delete(ork, 0x5001)\n");
}

TEST(SchedulerSetUp, IgnoresAFailedStatusHandle)
{
    scripted::fail("ork_qos_scheduler_create", -1);
    scripted::fail("ork_syshandle_get", -7);
    EXPECT_EQ(kel_ic_ebcom_init_qos(), 13U);
    EXPECT_EQ(calls_made("ork_syshandle_get"), "ork_syshandle_get(0, 1) = -7\n");
}

// One test for each of the twelve creations, counted from 1.
class SchedulerCreation : public testing::TestWithParam<uint32_t>
{
};

INSTANTIATE_TEST_SUITE_P(Each, SchedulerCreation, testing::Range(1U, schedulers + 1));

TEST_P(SchedulerCreation, RefusedByTheDriverKitEndsTheSetUpWith13)
{
    constexpr int32_t codes[] = {-1, -9, -12, 3};
    const int32_t rc = codes[GetParam() % std::size(codes)];
    scripted::fail("ork_qos_scheduler_create", rc, GetParam());
    EXPECT_EQ(kel_ic_ebcom_init_qos(), 13U);
    transcript::expect(R"(
        kel_ic_ebcom_init_qos:
          FN_ENTER EBCOM
          API_CALL EBCOM kel_init_eventdev_dev_id_ebcom_get()
          > kel_init_eventdev_dev_id_ebcom_get(0)
    )" + expected::schedulers_created(GetParam() - 1) +
                       expected::scheduler_creation_announced() +
                       expected::with({scripted::text("%p", expected::scheduler_parent(GetParam())), std::to_string(rc),
                                       hexadecimal(rc)},
                                      R"(
          > ork_qos_scheduler_create(ork, parent $1, 0) = $2
          > ork_syshandle_get(0, 1)
          ~ ork_sys_status_get($2)
          init:EXCEPTION GENERAL $3 - status $2, ork_qos_scheduler_create
          ~ kei_util_init_rc_str_get(13)
        kel_ic_ebcom_init_qos:
          init:EXCEPTION GENERAL code 13, create_scheduler
          FN_EXIT EBCOM
    )"));
}

TEST_P(SchedulerCreation, RefusedByTheDriverKitLeavesNoHandle)
{
    scripted::fail("ork_qos_scheduler_create", -1, GetParam());
    EXPECT_EQ(kel_ic_ebcom_init_qos(), 13U);
    transcript::forget();
    EXPECT_EQ(kel_ic_ebcom_deinit_qos(), 0U);
    EXPECT_EQ(calls_made("ork_qos_scheduler_delete"), deletions_of(handles_taken_down(GetParam() - 1)));
}

TEST_P(SchedulerCreation, WithoutAnAttachmentEndsTheSetUpWithItsCode)
{
    constexpr uint32_t codes[] = {1, 3, 13, 255};
    const uint32_t rc = codes[GetParam() % std::size(codes)];
    scripted::fail("kel_init_attach", rc, GetParam());
    EXPECT_EQ(kel_ic_ebcom_init_qos(), rc);
    transcript::expect(R"(
        kel_ic_ebcom_init_qos:
          FN_ENTER EBCOM
          API_CALL EBCOM kel_init_eventdev_dev_id_ebcom_get()
          > kel_init_eventdev_dev_id_ebcom_get(0)
    )" + expected::schedulers_created(GetParam() - 1) +
                       expected::with({std::to_string(rc)}, R"(
          API_CALL EBCOM kel_init_attach()
          > kel_init_attach() = $1
          ~ kei_util_init_rc_str_get($1)
          init:EXCEPTION GENERAL code $1, kel_init_attach
          ~ kei_util_init_rc_str_get($1)
        kel_ic_ebcom_init_qos:
          init:EXCEPTION GENERAL code $1, create_scheduler
          FN_EXIT EBCOM
    )"));
}

TEST_P(SchedulerCreation, WithoutAnAttachmentLeavesNoHandle)
{
    scripted::fail("kel_init_attach", 1, GetParam());
    EXPECT_EQ(kel_ic_ebcom_init_qos(), 1U);
    transcript::forget();
    EXPECT_EQ(kel_ic_ebcom_deinit_qos(), 0U);
    EXPECT_EQ(calls_made("ork_qos_scheduler_delete"), deletions_of(handles_taken_down(GetParam() - 1)));
}

TEST_P(SchedulerCreation, FailedInASecondSetUpKeepsTheHandleOfTheFirst)
{
    scheduler_tree_up();
    scripted::fail("ork_qos_scheduler_create", -1, GetParam());
    EXPECT_EQ(kel_ic_ebcom_init_qos(), 13U);
    transcript::forget();
    EXPECT_EQ(kel_ic_ebcom_deinit_qos(), 0U);

    std::vector<void *> handles = handles_taken_down(schedulers);
    for (uint32_t n = 1; n < GetParam(); ++n)
        std::ranges::replace(handles, scripted::scheduler(n), scripted::scheduler(schedulers + n));
    EXPECT_EQ(calls_made("ork_qos_scheduler_delete"), deletions_of(handles));
}

TEST(SchedulerSetUp, AfterAPartialOneBuildsANewTree)
{
    scripted::fail("ork_qos_scheduler_create", -1, 3);
    EXPECT_EQ(kel_ic_ebcom_init_qos(), 13U);
    transcript::forget();
    EXPECT_EQ(kel_ic_ebcom_init_qos(), 0U);
    transcript::expect(expected::scheduler_tree_built(3));
    EXPECT_EQ(kel_ic_ebcom_deinit_qos(), 0U);
    transcript::expect(expected::scheduler_tree_released(3));
}

TEST(SchedulerSetUp, AfterATakeDownBuildsANewTree)
{
    scheduler_tree_up();
    EXPECT_EQ(kel_ic_ebcom_deinit_qos(), 0U);
    transcript::forget();
    EXPECT_EQ(kel_ic_ebcom_init_qos(), 0U);
    transcript::expect(expected::scheduler_tree_built(13));
}

TEST(SchedulerTakeDown, ReleasesTheWholeTree)
{
    scheduler_tree_up();
    EXPECT_EQ(kel_ic_ebcom_deinit_qos(), 0U);
    transcript::expect(expected::scheduler_tree_released());
}

TEST(SchedulerTakeDown, DeletesTheGroupsAndThenTheLevelsFromTheLastToTheFirst)
{
    scheduler_tree_up();
    EXPECT_EQ(kel_ic_ebcom_deinit_qos(), 0U);
    EXPECT_EQ(calls_made("ork_qos_scheduler_delete"), "ork_qos_scheduler_delete(ork, 0x5008)\n"
                                                      "ork_qos_scheduler_delete(ork, 0x5009)\n"
                                                      "ork_qos_scheduler_delete(ork, 0x500a)\n"
                                                      "ork_qos_scheduler_delete(ork, 0x500b)\n"
                                                      "ork_qos_scheduler_delete(ork, 0x500c)\n"
                                                      "ork_qos_scheduler_delete(ork, 0x5007)\n"
                                                      "ork_qos_scheduler_delete(ork, 0x5006)\n"
                                                      "ork_qos_scheduler_delete(ork, 0x5005)\n"
                                                      "ork_qos_scheduler_delete(ork, 0x5004)\n"
                                                      "ork_qos_scheduler_delete(ork, 0x5003)\n"
                                                      "ork_qos_scheduler_delete(ork, 0x5002)\n"
                                                      "ork_qos_scheduler_delete(ork, 0x5001)\n");
}

TEST(SchedulerTakeDown, EveryAttachmentGetsAZeroedRecord)
{
    EXPECT_EQ(kel_ic_ebcom_deinit_qos(), 0U);
    EXPECT_EQ(scripted::records_of("kel_init_attach"), std::vector<octets>(schedulers, octets(176)));
}

TEST(SchedulerTakeDown, OfANeverStartedServiceAsksToDeleteNullHandles)
{
    EXPECT_EQ(kel_ic_ebcom_deinit_qos(), 0U);
    transcript::expect(expected::empty_scheduler_tree_released());
}

TEST(SchedulerTakeDown, DoneTwiceFindsNothingTheSecondTime)
{
    scheduler_tree_up();
    add(unshaped(6));
    EXPECT_EQ(kel_ic_ebcom_deinit_qos(), 0U);
    transcript::forget();
    EXPECT_EQ(kel_ic_ebcom_deinit_qos(), 0U);
    transcript::expect(expected::empty_scheduler_tree_released());
}

TEST(SchedulerTakeDown, RefusedDeletionsAreTracedAndIgnored)
{
    for (const int32_t rc : {-1, -9, -12, 3}) {
        scripted::fail("ork_qos_scheduler_delete", rc, 1, schedulers);
        EXPECT_EQ(kel_ic_ebcom_deinit_qos(), 0U);
        transcript::expect(take_down_refused(handles_taken_down(0), rc));
    }
}

TEST(SchedulerTakeDown, ForgetsSchedulersThatCannotBeDeleted)
{
    scheduler_tree_up();
    scripted::fail("ork_qos_scheduler_delete", -1, 1, schedulers);
    EXPECT_EQ(kel_ic_ebcom_deinit_qos(), 0U);
    transcript::expect(take_down_refused(handles_taken_down(schedulers), -1));
    EXPECT_EQ(kel_ic_ebcom_deinit_qos(), 0U);
    transcript::expect(expected::empty_scheduler_tree_released());
}

TEST(SchedulerTakeDown, FailedAttachmentsAreTracedAndIgnored)
{
    for (const uint32_t rc : {1U, 3U, 13U, 255U}) {
        scripted::fail("kel_init_attach", rc, 1, schedulers);
        EXPECT_EQ(kel_ic_ebcom_deinit_qos(), 0U);
        transcript::expect(take_down_unattached(rc));
    }
}

TEST(SchedulerTakeDown, GoesOnAfterAFailureAnywhere)
{
    for (uint32_t n = 1; n <= schedulers; ++n) {
        SCOPED_TRACE(n);
        scripted::fail("ork_qos_scheduler_delete", -1, n);
        EXPECT_EQ(kel_ic_ebcom_deinit_qos(), 0U);
        EXPECT_EQ(scripted::calls_of("ork_qos_scheduler_delete"), n * schedulers);
    }
}

TEST(SchedulerTakeDown, RemovesTheQueuesBeforeAnyScheduler)
{
    scheduler_tree_up();
    add(unshaped(6));
    add(unshaped(6, second_peer));
    add(unshaped(0));
    transcript::forget();
    EXPECT_EQ(kel_ic_ebcom_deinit_qos(), 0U);
    transcript::expect(R"(
        kel_ic_ebcom_deinit_qos:
          FN_ENTER EBCOM
          API_CALL EBCOM kel_init_qos_queue_rem()
          > kel_init_qos_queue_rem(0x9002)
          API_CALL EBCOM kel_init_qos_queue_rem()
          > kel_init_qos_queue_rem(0x9001)
    )" + expected::schedulers_deleted(handles_taken_down(schedulers)) +
                       R"(
        kel_ic_ebcom_deinit_qos:
          FN_EXIT EBCOM
    )");
}

TEST(SchedulerTakeDown, RemovesTheQueuesInTheOrderOfThePorts)
{
    constexpr int32_t order[] = {0,                              //
                                 12, 13, 37, 38, 39, 40, 41, 42, //
                                 10, 11, 31, 32, 33, 34, 35, 36, //
                                 8,  9,  25, 26, 27, 28, 29, 30, //
                                 6,  7,  19, 20, 21, 22, 23, 24};
    scheduler_tree_up();
    std::string removals;
    for (const int32_t port : order)
        EXPECT_EQ(add(unshaped(port)), 0U);
    for (uint32_t n = 1; n <= std::size(order); ++n)
        removals += scripted::text("kel_init_qos_queue_rem(%p)\n", scripted::queue(n));
    transcript::forget();
    EXPECT_EQ(kel_ic_ebcom_deinit_qos(), 0U);
    EXPECT_EQ(calls_made("kel_init_qos_queue_rem"), removals);
}

TEST(SchedulerTakeDown, ForgetsAQueueThatCannotBeRemoved)
{
    uint32_t queues = 0;
    for (const uint32_t rc : {1U, 3U, 13U, 255U}) {
        add(unshaped(6));
        transcript::forget();
        scripted::fail("kel_init_qos_queue_rem", rc);
        EXPECT_EQ(kel_ic_ebcom_deinit_qos(), 0U);
        transcript::expect(expected::with({scripted::text("%p", scripted::queue(++queues)), std::to_string(rc)}, R"(
        kel_ic_ebcom_deinit_qos:
          FN_ENTER EBCOM
          API_CALL EBCOM kel_init_qos_queue_rem()
          > kel_init_qos_queue_rem($1) = $2
          ~ kei_util_init_rc_str_get($2)
          init:EXCEPTION GENERAL code $2, kel_init_qos_queue_rem
        )") + expected::schedulers_deleted(handles_taken_down(0)) +
                           R"(
        kel_ic_ebcom_deinit_qos:
          FN_EXIT EBCOM
        )");
        EXPECT_EQ(kel_ic_ebcom_deinit_qos(), 0U);
        transcript::expect(expected::empty_scheduler_tree_released());
    }
}

TEST(SchedulerTakeDown, RemovesTheOtherQueuesAfterOneThatCannotBeRemoved)
{
    scheduler_tree_up();
    for (const int32_t port : {0, 10, 6})
        add(unshaped(port));
    transcript::forget();
    scripted::fail("kel_init_qos_queue_rem", 3, 2);
    EXPECT_EQ(kel_ic_ebcom_deinit_qos(), 0U);
    EXPECT_EQ(calls_made("kel_init_qos_queue_rem"), "kel_init_qos_queue_rem(0x9001)\n"
                                                    "kel_init_qos_queue_rem(0x9002) = 3\n"
                                                    "kel_init_qos_queue_rem(0x9003)\n");
}

TEST(SchedulerTakeDown, ForgetsTheDestinationsOfEveryPort)
{
    scheduler_tree_up();
    for (const qos_port &each : qos_ports) {
        add(unshaped(each.iell_port));
        add(unshaped(each.iell_port, second_peer));
    }
    EXPECT_EQ(kel_ic_ebcom_deinit_qos(), 0U);
    EXPECT_EQ(queue_of(peer), untouched);
    EXPECT_EQ(scheduler_of(second_peer), untouched);
    for (const qos_port &each : qos_ports)
        EXPECT_EQ(remove(unshaped(each.iell_port)), 4U);
}

// One destination on the first port of every group: how many of them are still found when each scheduler is deleted.
TEST(SchedulerTakeDown, ForgetsTheDestinationsOfAGroupBeforeItsSchedulerAndThoseOfTheNextAfterwards)
{
    ASSERT_EQ(kel_ic_ebcom_init_qos(), 0U);
    std::vector<kel_ebcom_path_config> paths;
    for (const int32_t port : {6, 8, 10, 12, 0})
        paths.push_back({{2, 0, 0, 2, 0, static_cast<uint8_t>(port)}, 0, port, 0, 0, 0});
    for (const kel_ebcom_path_config &path : paths)
        ASSERT_EQ(kel_core_ic_ebcom_path_add(&path), 0U);

    std::vector<ptrdiff_t> found;
    scripted::on_call("ork_qos_scheduler_delete", [&] {
        found.push_back(std::ranges::count_if(paths, [](const kel_ebcom_path_config &path) {
            void *queue = nullptr;
            return kel_ic_ebcom_queue_handle_get(path.dst_mac, &queue) == 0;
        }));
    });
    EXPECT_EQ(kel_ic_ebcom_deinit_qos(), 0U);
    EXPECT_EQ(found, (std::vector<ptrdiff_t>{4, 3, 2, 1, 0, 0, 0, 0, 0, 0, 0, 0}));
}

TEST(SchedulerTakeDown, ForgetsTheSchedulersOfEveryGroup)
{
    scheduler_tree_up();
    EXPECT_EQ(kel_ic_ebcom_deinit_qos(), 0U);
    for (const qos_port &each : qos_ports) {
        SCOPED_TRACE(each.iell_port);
        add(unshaped(each.iell_port));
        EXPECT_EQ(scheduler_of(peer), nullptr);
        remove(unshaped(each.iell_port));
    }
}

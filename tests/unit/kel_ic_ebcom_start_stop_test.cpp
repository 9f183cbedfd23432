// Start and stop of the EBCOM service: what each does, what a second one finds, and every way that each can fail.
#include "expected.h"
#include "kel/kel_core_ic_ebcom.h"
#include "path_requests.h"
#include "script.h"
#include "scripted_platform.h"
#include "transcript.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include <csignal>
#include <unistd.h>

namespace
{

const std::string attached = R"(
        kel_core_ic_ebcom_start:
          FN_ENTER EBCOM
          API_CALL EBCOM kel_init_attach()
          > kel_init_attach()
)";

const std::string thread_started = R"(
          API_CALL EBCOM pthread_create(kel-time-stamp)
          > pthread_create(default, 0)
          API_CALL EBCOM pthread_setname_np(kel-time-stamp)
          > pthread_setname_np(kel-time-stamp)
)";

const std::string qos_entered = R"(
        kel_ic_ebcom_init_qos:
          FN_ENTER EBCOM
          API_CALL EBCOM kel_init_eventdev_dev_id_ebcom_get()
          > kel_init_eventdev_dev_id_ebcom_get(0)
)";

const std::string start_left = R"(
        kel_core_ic_ebcom_start:
          FN_EXIT EBCOM
)";

const std::string stop_entered = R"(
        kel_core_ic_ebcom_stop:
          FN_ENTER EBCOM
)";

const std::string stop_left = R"(
        kel_core_ic_ebcom_stop:
          FN_EXIT EBCOM
)";

// The folders of all threads other than this one with the name, under /proc/self/task.
std::vector<std::filesystem::path> tasks_named(const std::string &name)
{
    std::vector<std::filesystem::path> tasks;
    for (const auto &task : std::filesystem::directory_iterator("/proc/self/task")) {
        std::string line;
        std::getline(std::ifstream(task.path() / "comm") >> std::ws, line);
        if (line == name && task.path().filename() != std::to_string(getpid()))
            tasks.push_back(task.path());
    }
    return tasks;
}

size_t threads_named(const std::string &name)
{
    return tasks_named(name).size();
}

// The signals that the thread blocks, signal n as bit n - 1.
uint64_t blocked_signals(const std::filesystem::path &task)
{
    std::ifstream status(task / "status");
    for (std::string line; std::getline(status, line);)
        if (line.starts_with("SigBlk:"))
            return std::stoull(line.substr(sizeof "SigBlk:"), nullptr, 16);
    return 0;
}

uint64_t own_blocked_signals()
{
    return blocked_signals("/proc/thread-self");
}

uint64_t bits_of(std::initializer_list<int> signals)
{
    uint64_t bits = 0;
    for (const int signal : signals)
        bits |= 1UL << (signal - 1);
    return bits;
}

// A set-up that fails at the n-th of the twelve schedulers.
class FailedScheduler : public testing::TestWithParam<uint32_t>
{
protected:
    const uint32_t n = GetParam();
};

INSTANTIATE_TEST_SUITE_P(EbcomStart, FailedScheduler, testing::Range(1U, 13U));

} // namespace

TEST(EbcomStart, AttachesThenStartsTheThreadThenBuildsTheSchedulers)
{
    EXPECT_EQ(kel_core_ic_ebcom_start(), 0U);
    transcript::expect(attached + thread_started + expected::scheduler_tree_built() + start_left);
    EXPECT_EQ(scripted::calls_of("g_hash_table_new_full"), 1U);
}

TEST(EbcomStart, ThreadBearsItsName)
{
    EXPECT_EQ(threads_named("kel-time-stamp"), 0U);
    service_up();
    EXPECT_EQ(threads_named("kel-time-stamp"), 1U);
}

TEST(EbcomStart, WithoutMemoryForTheTableARestartIsRequestedAndTheStartGoesOn)
{
    scripted::fail("g_hash_table_new_full", 1);
    EXPECT_EQ(kel_core_ic_ebcom_start(), 0U);
    transcript::expect(R"(
        kel_core_ic_ebcom_start:
          FN_ENTER EBCOM
          ERROR EBCOM Failed to allocate memory for dest_mac_addr_count
          > qol_ng_restart_request_line_and_file(Failed to allocate memory for dest_mac_addr_count)
          API_CALL EBCOM kel_init_attach()
          > kel_init_attach()
    )" + thread_started +
                       expected::scheduler_tree_built() + start_left);
}

TEST(EbcomStart, RestartRequestNamesTheSourceFileInFull)
{
    scripted::fail("g_hash_table_new_full", 1);
    EXPECT_EQ(kel_core_ic_ebcom_start(), 0U);
    const scripted::restart_request request = scripted::last_restart_request();
    EXPECT_GT(request.line, 0U);
    EXPECT_EQ(request.file[0], '/') << request.file;
    EXPECT_TRUE(request.file.ends_with("/src/kel_ic_ebcom.cpp")) << request.file;
    EXPECT_EQ(request.one, 1U);
    EXPECT_EQ(request.reason, "Failed to allocate memory for dest_mac_addr_count");
    EXPECT_EQ(request.zero, 0U);
    EXPECT_EQ(request.null, nullptr);
}

TEST(EbcomStart, TableIsTriedAgainByTheNextStart)
{
    scripted::fail("g_hash_table_new_full", 1);
    service_up();
    service_up();
    EXPECT_EQ(scripted::calls_of("g_hash_table_new_full"), 2U);
    EXPECT_EQ(scripted::calls_of("qol_ng_restart_request_line_and_file"), 1U);
}

TEST(EbcomStart, FailedAttachmentStartsNoThreadAndBuildsNothing)
{
    scripted::fail("kel_init_attach", 1);
    EXPECT_EQ(kel_core_ic_ebcom_start(), 1U);
    transcript::expect(R"(
        kel_core_ic_ebcom_start:
          FN_ENTER EBCOM
          API_CALL EBCOM kel_init_attach()
          > kel_init_attach() = 1
          ~ kei_util_init_rc_str_get(1)
          init:EXCEPTION GENERAL code 1, kel_init_attach
          FN_EXIT EBCOM
    )");
    EXPECT_EQ(threads_named("kel-time-stamp"), 0U);
    EXPECT_EQ(transcript::of_thread(0), "");
}

TEST(EbcomStart, FailedAttachmentLeavesTheTable)
{
    scripted::fail("kel_init_attach", 255);
    EXPECT_EQ(kel_core_ic_ebcom_start(), 255U);
    service_up();
    EXPECT_EQ(scripted::calls_of("g_hash_table_new_full"), 1U);
}

TEST(EbcomStart, NegativeAnswerOfThreadCreationIs13)
{
    scripted::fail("pthread_create", -1);
    EXPECT_EQ(kel_core_ic_ebcom_start(), 13U);
    transcript::expect(attached + R"(
          API_CALL EBCOM pthread_create(kel-time-stamp)
          > pthread_create(default, 0) = -1
          ~ strerror(11)
          init:EXCEPTION GENERAL pthread_create(kel-time-stamp) => rc=-1, errno=Resource temporarily unavailable(11)
          FN_EXIT EBCOM
    )");
    EXPECT_EQ(threads_named("kel-time-stamp"), 0U);
}

// There is no thread to name then, but the call is announced all the same.
TEST(EbcomStart, PositiveAnswerOfTheFirstThreadCreationIsSuccessWithoutNaming)
{
    scripted::fail("pthread_create", 11);
    EXPECT_EQ(kel_core_ic_ebcom_start(), 0U);
    transcript::expect(attached + R"(
          API_CALL EBCOM pthread_create(kel-time-stamp)
          > pthread_create(default, 0) = 11
          API_CALL EBCOM pthread_setname_np(kel-time-stamp)
    )" + expected::scheduler_tree_built() +
                       start_left);
    EXPECT_EQ(threads_named("kel-time-stamp"), 0U);
}

TEST(EbcomStart, PositiveAnswerOfALaterThreadCreationNamesTheEarlierThread)
{
    service_up();
    scripted::fail("pthread_create", 11);
    EXPECT_EQ(kel_core_ic_ebcom_start(), 0U);
    transcript::expect(attached + R"(
          API_CALL EBCOM pthread_create(kel-time-stamp)
          > pthread_create(default, 0) = 11
          API_CALL EBCOM pthread_setname_np(kel-time-stamp)
          > pthread_setname_np(kel-time-stamp)
    )" + expected::scheduler_tree_built(13) +
                       start_left);
    EXPECT_EQ(threads_named("kel-time-stamp"), 1U);
}

TEST(EbcomStart, FailedThreadCreationsLeaveTheEarlierThreadTheOneThatIsNamed)
{
    service_up();
    scripted::fail("pthread_create", -1);
    EXPECT_EQ(kel_core_ic_ebcom_start(), 13U);
    scripted::fail("pthread_create", 11);
    EXPECT_EQ(kel_core_ic_ebcom_start(), 0U);
    EXPECT_EQ(scripted::calls_of("pthread_setname_np"), 2U);
    EXPECT_EQ(threads_named("kel-time-stamp"), 1U);
}

TEST(EbcomStart, ThreadBlocksAllSignalsButItsOwnFaults)
{
    service_up();
    scripted::wait_for_waiting_threads(1);
    const auto tasks = tasks_named("kel-time-stamp");
    ASSERT_EQ(tasks.size(), 1U);
    const uint64_t never_blocked = bits_of({SIGKILL, SIGSTOP, 32, 33}); // 32 and 33 are the C library's own
    EXPECT_EQ(~blocked_signals(tasks[0]), bits_of({SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGTRAP}) | never_blocked);
}

TEST(EbcomStart, CallerKeepsItsSignalMask)
{
    sigset_t own;
    sigemptyset(&own);
    sigaddset(&own, SIGUSR2);
    sigaddset(&own, SIGSEGV);
    pthread_sigmask(SIG_BLOCK, &own, nullptr);
    const uint64_t before = own_blocked_signals();

    service_up();
    EXPECT_EQ(own_blocked_signals(), before);
    scripted::fail("pthread_create", -1);
    EXPECT_EQ(kel_core_ic_ebcom_start(), 13U);
    EXPECT_EQ(own_blocked_signals(), before);
}

TEST(EbcomStart, NegativeAnswerOfNamingIsReportedAndIgnored)
{
    scripted::fail("pthread_setname_np", -1);
    EXPECT_EQ(kel_core_ic_ebcom_start(), 0U);
    transcript::expect(attached + R"(
          API_CALL EBCOM pthread_create(kel-time-stamp)
          > pthread_create(default, 0)
          API_CALL EBCOM pthread_setname_np(kel-time-stamp)
          > pthread_setname_np(kel-time-stamp) = -1
          ~ strerror(34)
          init:EXCEPTION GENERAL pthread_setname_np(kel-time-stamp) => rc=-1, errno=Numerical result out of range(34)
    )" + expected::scheduler_tree_built() +
                       start_left);
}

TEST(EbcomStart, PositiveAnswerOfNamingIsSuccess)
{
    scripted::fail("pthread_setname_np", 34);
    EXPECT_EQ(kel_core_ic_ebcom_start(), 0U);
    transcript::expect(attached + R"(
          API_CALL EBCOM pthread_create(kel-time-stamp)
          > pthread_create(default, 0)
          API_CALL EBCOM pthread_setname_np(kel-time-stamp)
          > pthread_setname_np(kel-time-stamp) = 34
    )" + expected::scheduler_tree_built() +
                       start_left);
}

TEST(EbcomStart, WithoutADeviceIdentifierTheThreadRunsOn)
{
    scripted::fail("kel_init_eventdev_dev_id_ebcom_get", 4);
    EXPECT_EQ(kel_core_ic_ebcom_start(), 4U);
    transcript::expect(attached + thread_started + R"(
        kel_ic_ebcom_init_qos:
          FN_ENTER EBCOM
          API_CALL EBCOM kel_init_eventdev_dev_id_ebcom_get()
          > kel_init_eventdev_dev_id_ebcom_get(0) = 4
          ~ kei_util_init_rc_str_get(4)
          init:EXCEPTION GENERAL code 4, kel_init_eventdev_dev_id_ebcom_get
          FN_EXIT EBCOM
          ~ kei_util_init_rc_str_get(4)
        kel_core_ic_ebcom_start:
          init:EXCEPTION GENERAL code 4, kel_ic_ebcom_init_qos
          FN_EXIT EBCOM
    )");
    scripted::wait_for_waiting_threads(1);
}

TEST_P(FailedScheduler, RefusalIs13AndTheThreadRunsOn)
{
    scripted::fail("ork_qos_scheduler_create", -4, n);
    EXPECT_EQ(kel_core_ic_ebcom_start(), 13U);
    transcript::expect(attached + thread_started + qos_entered + expected::schedulers_created(n - 1) +
                       expected::scheduler_creation_announced() +
                       expected::with({scripted::text("%p", expected::scheduler_parent(n))}, R"(
          > ork_qos_scheduler_create(ork, parent $1, 0) = -4
          > ork_syshandle_get(0, 1)
          ~ ork_sys_status_get(-4)
          init:EXCEPTION GENERAL 0xfffffffc - status -4, ork_qos_scheduler_create
          ~ kei_util_init_rc_str_get(13)
        kel_ic_ebcom_init_qos:
          init:EXCEPTION GENERAL code 13, create_scheduler
          FN_EXIT EBCOM
          ~ kei_util_init_rc_str_get(13)
        kel_core_ic_ebcom_start:
          init:EXCEPTION GENERAL code 13, kel_ic_ebcom_init_qos
          FN_EXIT EBCOM
    )"));
    scripted::wait_for_waiting_threads(1);
}

TEST_P(FailedScheduler, FailedAttachmentPassesItsCodeAndTheThreadRunsOn)
{
    scripted::fail("kel_init_attach", 255, 1 + n);
    EXPECT_EQ(kel_core_ic_ebcom_start(), 255U);
    transcript::expect(attached + thread_started + qos_entered + expected::schedulers_created(n - 1) + R"(
          API_CALL EBCOM kel_init_attach()
          > kel_init_attach() = 255
          ~ kei_util_init_rc_str_get(255)
          init:EXCEPTION GENERAL code 255, kel_init_attach
          ~ kei_util_init_rc_str_get(255)
        kel_ic_ebcom_init_qos:
          init:EXCEPTION GENERAL code 255, create_scheduler
          FN_EXIT EBCOM
          ~ kei_util_init_rc_str_get(255)
        kel_core_ic_ebcom_start:
          init:EXCEPTION GENERAL code 255, kel_ic_ebcom_init_qos
          FN_EXIT EBCOM
    )");
    scripted::wait_for_waiting_threads(1);
}

TEST(EbcomStart, SecondStartAddsAThreadAndKeepsTheTable)
{
    service_up();
    EXPECT_EQ(kel_core_ic_ebcom_start(), 0U);
    transcript::expect(attached + thread_started + expected::scheduler_tree_built(13) + start_left);
    EXPECT_EQ(scripted::calls_of("g_hash_table_new_full"), 1U);
    EXPECT_EQ(threads_named("kel-time-stamp"), 2U);
    scripted::wait_for_waiting_threads(2);
}

TEST(EbcomStart, SecondStartKeepsTheCounts)
{
    service_up();
    EXPECT_EQ(kel_core_ic_ebcom_path_add(&to_ob), 0U);
    service_up();
    EXPECT_EQ(kel_core_ic_ebcom_path_rem(&to_ob), 0U);
    EXPECT_EQ(scripted::calls_of("ork_ebcom_pcep_path_delete"), 1U);
    EXPECT_EQ(kel_core_ic_ebcom_path_rem(&to_ob), 4U);
}

TEST(EbcomStop, ReleasesTheSchedulersWithoutAnAttachmentOfItsOwn)
{
    service_up();
    EXPECT_EQ(kel_core_ic_ebcom_stop(), 0U);
    transcript::expect(stop_entered + expected::scheduler_tree_released() + stop_left);
}

TEST(EbcomStop, LeavesTheThreadRunning)
{
    service_up();
    scripted::wait_for_waiting_threads(1);
    EXPECT_EQ(kel_core_ic_ebcom_stop(), 0U);
    scripted::wait_for_waiting_threads(1);
    EXPECT_EQ(threads_named("kel-time-stamp"), 1U);
}

TEST(EbcomStop, BeforeAnyStartDestroysANullTableAndReleasesNullSchedulers)
{
    EXPECT_EQ(kel_core_ic_ebcom_stop(), 0U);
    transcript::expect(stop_entered + R"(
          > g_hash_table_destroy(null)
    )" + expected::empty_scheduler_tree_released() +
                       stop_left);
}

TEST(EbcomStop, AfterAStartWithoutATableDestroysANullTable)
{
    scripted::fail("g_hash_table_new_full", 1);
    service_up();
    EXPECT_EQ(kel_core_ic_ebcom_stop(), 0U);
    transcript::expect(stop_entered + R"(
          > g_hash_table_destroy(null)
    )" + expected::scheduler_tree_released() +
                       stop_left);
}

TEST(EbcomStop, SecondStopReleasesNullSchedulers)
{
    service_up();
    EXPECT_EQ(kel_core_ic_ebcom_stop(), 0U);
    transcript::forget();
    EXPECT_EQ(kel_core_ic_ebcom_stop(), 0U);
    transcript::expect(stop_entered + expected::empty_scheduler_tree_released() + stop_left);
}

TEST(EbcomStop, FailedTakeDownPassesItsCode)
{
    service_up();
    scripted::fail("kel_ic_ebcom_deinit_qos", 3);
    EXPECT_EQ(kel_core_ic_ebcom_stop(), 3U);
    transcript::expect(R"(
        kel_core_ic_ebcom_stop:
          FN_ENTER EBCOM
          ~ kei_util_init_rc_str_get(3)
          init:EXCEPTION GENERAL code 3, kel_ic_ebcom_deinit_qos
          FN_EXIT EBCOM
    )");
}

TEST(EbcomStop, CountsAreThereAfterTheNextStart)
{
    service_up();
    EXPECT_EQ(kel_core_ic_ebcom_path_add(&to_ob), 0U);
    EXPECT_EQ(kel_core_ic_ebcom_stop(), 0U);
    service_up();
    EXPECT_EQ(kel_core_ic_ebcom_path_add(&to_ob), 0U);

    // Two paths are counted, so the driver kit keeps its path.
    EXPECT_EQ(kel_core_ic_ebcom_path_rem(&to_ob), 0U);
    EXPECT_EQ(scripted::calls_of("ork_ebcom_pcep_path_delete"), 0U);
}

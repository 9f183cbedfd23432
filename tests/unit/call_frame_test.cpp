// What the frames of all operations share: text that is made only for a record that somebody listens to, and the texts
// of return codes.
#include "expected.h"
#include "kel/kel_core_ic_ebcom.h"
#include "scripted_platform.h"
#include "trace/com_vantorix_ob_kel_ic.h"
#include "trace/com_vantorix_ob_kel_init.h"
#include "transcript.h"

#include <gtest/gtest.h>

#include <string>

namespace
{

constexpr auto &fn_enter = lttng_ust_tracepoint_com_vantorix_ob_kel_ic___FN_ENTER;
constexpr auto &fn_exit = lttng_ust_tracepoint_com_vantorix_ob_kel_ic___FN_EXIT;
constexpr auto &fn_param = lttng_ust_tracepoint_com_vantorix_ob_kel_ic___FN_PARAM;
constexpr auto &api_call = lttng_ust_tracepoint_com_vantorix_ob_kel_ic___API_CALL;
constexpr auto &own_error = lttng_ust_tracepoint_com_vantorix_ob_kel_ic___ERROR;
constexpr auto &timing_failure = lttng_ust_tracepoint_com_vantorix_ob_kel_ic___EXCEPTION;
constexpr auto &failure = lttng_ust_tracepoint_com_vantorix_ob_kel_init___EXCEPTION;

// As if nobody listened to the event. In an untraced run nobody listens to any.
void disable(lttng_ust_tracepoint &event)
{
    event.state = 0;
}

void enable_again(lttng_ust_tracepoint &event)
{
    event.state = transcript::traced();
}

uint32_t set_params()
{
    const kel_ebcom_global_params params = {1500, 0x88B5};
    const uint8_t settings[2] = {1, 2};
    return kel_core_ic_ebcom_global_param_set(&params, settings);
}

// Starts the service with a thread that ends at once, its n-th, counted from 0.
void start_with_failing_thread(size_t n, int32_t rc)
{
    scripted::fail_on_thread("vorn_tu_init", rc);
    kel_core_ic_ebcom_start();
    transcript::wait_for_end_of_thread(n);
}

} // namespace

TEST(FailureTexts, CompanionCodeHasNoneWithoutTheFailureEvent)
{
    disable(failure);
    scripted::fail("kel_init_attach", 3);
    EXPECT_EQ(set_params(), 3U);
    transcript::expect(R"(
        kel_core_ic_ebcom_global_param_set:
          FN_ENTER EBCOM
          API_CALL EBCOM kel_init_attach()
          > kel_init_attach() = 3
          FN_EXIT EBCOM
    )");
}

TEST(FailureTexts, DriverKitCodeHasNoneWithoutTheFailureEventButTheSystemHandleIsFetched)
{
    disable(failure);
    scripted::fail("ork_ebcom_global_config_set", -4);
    EXPECT_EQ(set_params(), 13U);
    transcript::expect(R"(
        kel_core_ic_ebcom_global_param_set:
          FN_ENTER EBCOM
          API_CALL EBCOM kel_init_attach()
          > kel_init_attach()
          API_CALL EBCOM ork_ebcom_global_config_set(icPortMTU=1500, etherType=0x88b5)
          > ork_ebcom_global_config_set(ork) = -4
          > ork_syshandle_get(0, 1)
          FN_EXIT EBCOM
    )");
}

TEST(FailureTexts, SystemErrorHasNoneWithoutTheFailureEvent)
{
    disable(failure);
    scripted::fail("pthread_create", -1);
    EXPECT_EQ(kel_core_ic_ebcom_start(), 13U);
    transcript::expect(R"(
        kel_core_ic_ebcom_start:
          FN_ENTER EBCOM
          API_CALL EBCOM kel_init_attach()
          > kel_init_attach()
          API_CALL EBCOM pthread_create(kel-time-stamp)
          > pthread_create(default, 0) = -1
          FN_EXIT EBCOM
    )");
}

TEST(FailureTexts, InternalStepHasNoneWithoutTheFailureEvent)
{
    disable(failure);
    scripted::fail("kel_ic_ebcom_deinit_qos", 255);
    EXPECT_EQ(kel_core_ic_ebcom_stop(), 255U);
    transcript::expect(R"(
        kel_core_ic_ebcom_stop:
          FN_ENTER EBCOM
          > g_hash_table_destroy(null)
          FN_EXIT EBCOM
    )");
}

TEST(FailureTexts, NoneIsMadeWithoutAnyListener)
{
    scripted::fail("kel_init_attach", 3);
    EXPECT_EQ(set_params(), 3U);
    scripted::fail("ork_ebcom_global_config_set", -4);
    EXPECT_EQ(set_params(), 13U);
    scripted::fail("pthread_setname_np", -1);
    start_with_failing_thread(0, -1);
    const uint32_t made = transcript::traced() ? 1 : 0;
    EXPECT_EQ(scripted::calls_of("kei_util_init_rc_str_get"), made);
    EXPECT_EQ(scripted::calls_of("ork_sys_status_get"), made);
    EXPECT_EQ(scripted::calls_of("strerror"), made);
    EXPECT_EQ(scripted::calls_of("syscall"), made);
}

TEST(FailureTexts, EveryCodeIsPassedToItsTextAndReturned)
{
    for (const uint32_t rc : {1U, 2U, 13U, 14U, 255U, 0x80000000U, UINT32_MAX}) {
        scripted::fail("kel_init_attach", rc);
        EXPECT_EQ(set_params(), rc);
        transcript::expect(expected::with({std::to_string(rc)}, R"(
            kel_core_ic_ebcom_global_param_set:
              FN_ENTER EBCOM
              API_CALL EBCOM kel_init_attach()
              > kel_init_attach() = $1
              ~ kei_util_init_rc_str_get($1)
              init:EXCEPTION GENERAL code $1, kel_init_attach
              FN_EXIT EBCOM
        )"));
    }
}

TEST(TimingUnitTexts, EveryCodeHasItsOwn)
{
    const struct {
        int32_t rc;
        const char *text;
    } rows[] = {
        {-1, "INVAL"},
        {-2, "UNSUPP"},
        {-3, "NOPORT"},
        {-4, "AGAIN(try again)"},
        {-5, "SHUTDOWN"},
        {-6, "NODOMAIN"},
        {-7, "INTERNAL"},
        {-8, "NOTAVAIL"},
        {-9, "OUTOFRANGE"},
        {-10, "UNK_RET_VAL(-10)"},
        {-12, "UNK_RET_VAL(-12)"},
        {1, "UNK_RET_VAL(1)"},
        {3, "UNK_RET_VAL(3)"},
        {9, "UNK_RET_VAL(9)"},
        // At most 19 characters.
        {-100000, "UNK_RET_VAL(-100000"},
        {999999, "UNK_RET_VAL(999999)"},
        {INT32_MAX, "UNK_RET_VAL(2147483"},
        {INT32_MIN, "UNK_RET_VAL(-214748"},
    };
    size_t n = 0;
    for (const auto &[rc, text] : rows) {
        start_with_failing_thread(n, rc);
        transcript::expect_equal(transcript::of_thread(n), expected::with({std::to_string(rc), text}, R"(
            timestamp_thread:
              API_CALL EBCOM kel_init_attach()
              > kel_init_attach()
              API_CALL EBCOM vorn_tu_init()
              > vorn_tu_init((nil)) = $1
              EXCEPTION GENERAL vorn_tu_init returned $2
              ~ syscall(gettid)
              ERROR EBCOM tid=own terminated (pthread_exit)
        )"));
        ++n;
    }
}

TEST(Listening, ThreadNumberIsAskedForOnlyWithTheErrorEvent)
{
    disable(own_error);
    start_with_failing_thread(0, -4);
    transcript::expect_equal(transcript::of_thread(0), R"(
        timestamp_thread:
          API_CALL EBCOM kel_init_attach()
          > kel_init_attach()
          API_CALL EBCOM vorn_tu_init()
          > vorn_tu_init((nil)) = -4
          EXCEPTION GENERAL vorn_tu_init returned AGAIN(try again)
    )");
}

TEST(Listening, TimingUnitFailuresHaveAnEventOfTheirOwn)
{
    disable(timing_failure);
    start_with_failing_thread(0, -4);
    transcript::expect_equal(transcript::of_thread(0), R"(
        timestamp_thread:
          API_CALL EBCOM kel_init_attach()
          > kel_init_attach()
          API_CALL EBCOM vorn_tu_init()
          > vorn_tu_init((nil)) = -4
          ~ syscall(gettid)
          ERROR EBCOM tid=own terminated (pthread_exit)
    )");
}

// The text is the key of the count, too.
TEST(Listening, MacTextOfAPathIsMadeWithoutTheParameterEvent)
{
    disable(fn_param);
    const kel_ebcom_path_config config = {{2, 0, 0, 2, 0, 1}, 0, 6, 0, 0, 0};
    EXPECT_EQ(kel_core_ic_ebcom_path_rem(&config), 4U);
    transcript::expect(R"(
        kel_core_ic_ebcom_path_rem:
          FN_ENTER EBCOM
          > macAddr2str(02:00:00:02:00:01)
          ~ kei_util_init_rc_str_get(4)
          init:EXCEPTION GENERAL code 4, mac address of port not found to be configured
          FN_EXIT EBCOM
    )");
}

TEST(Listening, EveryEventOfAFrameStandsAlone)
{
    scripted::fail("kel_init_attach", 13, 1, scripted::every);

    disable(fn_enter);
    EXPECT_EQ(set_params(), 13U);
    transcript::expect(R"(
        kel_core_ic_ebcom_global_param_set:
          API_CALL EBCOM kel_init_attach()
          > kel_init_attach() = 13
          ~ kei_util_init_rc_str_get(13)
          init:EXCEPTION GENERAL code 13, kel_init_attach
          FN_EXIT EBCOM
    )");
    enable_again(fn_enter);

    disable(api_call);
    EXPECT_EQ(set_params(), 13U);
    transcript::expect(R"(
        kel_core_ic_ebcom_global_param_set:
          FN_ENTER EBCOM
          > kel_init_attach() = 13
          ~ kei_util_init_rc_str_get(13)
          init:EXCEPTION GENERAL code 13, kel_init_attach
          FN_EXIT EBCOM
    )");
    enable_again(api_call);

    disable(fn_exit);
    EXPECT_EQ(set_params(), 13U);
    transcript::expect(R"(
        kel_core_ic_ebcom_global_param_set:
          FN_ENTER EBCOM
          API_CALL EBCOM kel_init_attach()
          > kel_init_attach() = 13
          ~ kei_util_init_rc_str_get(13)
          init:EXCEPTION GENERAL code 13, kel_init_attach
    )");
}

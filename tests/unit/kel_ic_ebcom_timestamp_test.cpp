// The timestamp offset: the conversion, one pass of the thread, the events it waits for, and every way it ends.
#include "kel/kel_core_ic_ebcom.h"
#include "scripted_platform.h"
#include "transcript.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

namespace
{

const std::string thread_attached = R"(
        timestamp_thread:
          API_CALL EBCOM kel_init_attach()
          > kel_init_attach()
)";

const std::string subscribed = thread_attached + R"(
          API_CALL EBCOM vorn_tu_init()
          > vorn_tu_init((nil))
          API_CALL EBCOM vorn_tu_subscribe_adjnpuoffs(doamin=0)
          > vorn_tu_subscribe_adjnpuoffs(unit, 0)
)";

const std::string reading_fetched = R"(
        update_timestamp_offset:
          API_CALL EBCOM vorn_tu_get_nputimeoffset()
          > vorn_tu_get_nputimeoffset(unit, 0)
)";

// Ten cycles at 250,000.
const std::string usual_reading_converted = reading_fetched + R"(
        kel_ic_ebcom_cycles_to_ork_timestamp_offset:
          FN_ENTER EBCOM
          LAB EBCOM cycles=10 frequency=250000 ork_timestamp_offset=40
          FN_EXIT EBCOM
        update_timestamp_offset:
          API_CALL EBCOM ork_ebcom_timestamp_offset_set(timestamp_offset=40)
)";

const std::string usual_pass = usual_reading_converted + R"(
          > ork_ebcom_timestamp_offset_set(ork, 40)
        timestamp_thread:
)";

const std::string waiting = R"(
          API_CALL EBCOM vorn_tu_wait_event()
)";

const std::string event_arrived = R"(
          > vorn_tu_wait_event(unit)
)";

const std::string event_handed_back = R"(
          API_CALL EBCOM vorn_tu_free_event
          > vorn_tu_free_event(unit, type 6, domain 0)
)";

const std::string ended = R"(
          ~ syscall(gettid)
          ERROR EBCOM tid=own terminated (pthread_exit)
)";

// What a pass that failed with 13 ends with.
const std::string ended_by_failed_pass = R"(
          ~ kei_util_init_rc_str_get(13)
        timestamp_thread:
          init:EXCEPTION GENERAL code 13, udpate_timestamp_offset
)" + ended;

void start_until_waiting()
{
    ASSERT_EQ(kel_core_ic_ebcom_start(), 0U);
    scripted::wait_for_waiting_threads(1);
}

void expect_of_thread(const std::string &expected)
{
    transcript::expect_equal(transcript::of_thread(0), expected);
}

void expect_end_after_start(const std::string &expected)
{
    EXPECT_EQ(kel_core_ic_ebcom_start(), 0U);
    transcript::wait_for_end_of_thread(0);
    expect_of_thread(expected);
}

void expect_end_after_event(const std::string &expected)
{
    scripted::post_event(6, 0);
    transcript::wait_for_end_of_thread(0);
    expect_of_thread(expected);
}

struct conversion {
    int64_t cycles;
    uint32_t frequency;
    int64_t offset;
};

void expect_conversion(const conversion &row)
{
    int64_t offset = 0x5555;
    EXPECT_EQ(kel_ic_ebcom_cycles_to_ork_timestamp_offset(row.cycles, row.frequency, &offset), 0U);
    EXPECT_EQ(offset, row.offset) << row.cycles << " at " << row.frequency;
}

} // namespace

TEST(Conversion, MultipliesTheCyclesByTheMicrosecondsPerCycle)
{
    int64_t offset = 0x5555;
    EXPECT_EQ(kel_ic_ebcom_cycles_to_ork_timestamp_offset(10, 250000, &offset), 0U);
    EXPECT_EQ(offset, 40);
    transcript::expect(R"(
        kel_ic_ebcom_cycles_to_ork_timestamp_offset:
          FN_ENTER EBCOM
          LAB EBCOM cycles=10 frequency=250000 ork_timestamp_offset=40
          FN_EXIT EBCOM
    )");
}

TEST(Conversion, FrequencyZeroGivesOffsetZeroAndCode2)
{
    int64_t offset = 0x5555;
    EXPECT_EQ(kel_ic_ebcom_cycles_to_ork_timestamp_offset(-10, 0, &offset), 2U);
    EXPECT_EQ(offset, 0);
    transcript::expect(R"(
        kel_ic_ebcom_cycles_to_ork_timestamp_offset:
          FN_ENTER EBCOM
          LAB EBCOM cycles=-10 frequency=0 ork_timestamp_offset=0
          FN_EXIT EBCOM
    )");
}

TEST(Conversion, TruncatesTheQuotientBeforeItMultiplies)
{
    expect_conversion({10, 300000, 30});
    expect_conversion({10, 800000, 10});
    expect_conversion({3, 333334, 6});
    expect_conversion({10, 1, 10000000});
}

TEST(Conversion, FactorIsOneUpToAMillionAndZeroAbove)
{
    expect_conversion({10, 500000, 20});
    expect_conversion({10, 500001, 10});
    expect_conversion({10, 999999, 10});
    expect_conversion({10, 1000000, 10});
    expect_conversion({10, 1000001, 0});
    expect_conversion({10, UINT32_MAX, 0});
}

TEST(Conversion, NegativeCyclesGiveANegativeOffset)
{
    expect_conversion({-10, 250000, -40});
    expect_conversion({INT64_MIN, 1000000, INT64_MIN});
    expect_conversion({INT64_MIN, UINT32_MAX, 0});
}

TEST(Conversion, ProductWrapsOnOverflow)
{
    expect_conversion({INT64_MAX, 500000, -2});
    expect_conversion({INT64_MAX, 1, -1000000});
    expect_conversion({INT64_MIN, 1, 0});
    expect_conversion({INT64_MIN, 333333, INT64_MIN});
}

TEST(TimestampThread, WritesTheOffsetAtOnceAndWaits)
{
    start_until_waiting();
    expect_of_thread(subscribed + usual_pass + waiting);
}

TEST(TimestampThread, AdjustmentEventLeadsToAPassAndIsHandedBack)
{
    start_until_waiting();
    scripted::set_reading({-7, 300000});
    scripted::post_event(6, 0);
    scripted::wait_for_waiting_threads(1);
    expect_of_thread(subscribed + usual_pass + waiting + event_arrived + reading_fetched + R"(
        kel_ic_ebcom_cycles_to_ork_timestamp_offset:
          FN_ENTER EBCOM
          LAB EBCOM cycles=-7 frequency=300000 ork_timestamp_offset=-21
          FN_EXIT EBCOM
        update_timestamp_offset:
          API_CALL EBCOM ork_ebcom_timestamp_offset_set(timestamp_offset=-21)
          > ork_ebcom_timestamp_offset_set(ork, -21)
        timestamp_thread:
    )" + event_handed_back +
                     waiting);
}

TEST(TimestampThread, OtherTypeOfEventIsIgnoredAndNotHandedBack)
{
    start_until_waiting();
    scripted::post_event(5, 0);
    scripted::wait_for_waiting_threads(1);
    expect_of_thread(subscribed + usual_pass + waiting + event_arrived + R"(
          INFO EBCOM Ignore unexpected event(5)
    )" + waiting);
}

TEST(TimestampThread, OtherDomainIsIgnoredAndNotHandedBack)
{
    start_until_waiting();
    scripted::post_event(6, 1);
    scripted::wait_for_waiting_threads(1);
    expect_of_thread(subscribed + usual_pass + waiting + event_arrived + R"(
          INFO EBCOM Ignore unexpected domain(1)
    )" + waiting);
}

TEST(TimestampThread, TypeIsLookedAtBeforeTheDomain)
{
    start_until_waiting();
    scripted::post_event(7, 1);
    scripted::post_event(6, -1);
    scripted::wait_for_waiting_threads(1);
    expect_of_thread(subscribed + usual_pass + waiting + event_arrived + R"(
          INFO EBCOM Ignore unexpected event(7)
    )" + waiting + event_arrived +
                     R"(
          INFO EBCOM Ignore unexpected domain(-1)
    )" + waiting);
}

TEST(TimestampThread, GoesOnWithAdjustmentsAfterIgnoredEvents)
{
    start_until_waiting();
    scripted::post_event(5, 0);
    scripted::post_event(6, 0);
    scripted::wait_for_waiting_threads(1);
    expect_of_thread(subscribed + usual_pass + waiting + event_arrived + R"(
          INFO EBCOM Ignore unexpected event(5)
    )" + waiting + event_arrived +
                     usual_pass + event_handed_back + waiting);
}

TEST(TimestampThread, FailureToHandAnEventBackIsIgnored)
{
    start_until_waiting();
    scripted::fail_on_thread("vorn_tu_free_event", -4);
    scripted::post_event(6, 0);
    scripted::post_event(6, 0);
    scripted::wait_for_waiting_threads(1);
    expect_of_thread(subscribed + usual_pass + waiting + event_arrived + usual_pass + R"(
          API_CALL EBCOM vorn_tu_free_event
          > vorn_tu_free_event(unit, type 6, domain 0) = -4
    )" + waiting + event_arrived +
                     usual_pass + event_handed_back + waiting);
}

TEST(TimestampThread, FailedAttachmentEndsIt)
{
    scripted::fail_on_thread("kel_init_attach", 3);
    expect_end_after_start(R"(
        timestamp_thread:
          API_CALL EBCOM kel_init_attach()
          > kel_init_attach() = 3
          ~ kei_util_init_rc_str_get(3)
          init:EXCEPTION GENERAL code 3, kel_init_attach
    )" + ended);
}

TEST(TimestampThread, FailedConnectionEndsIt)
{
    scripted::fail_on_thread("vorn_tu_init", -4);
    expect_end_after_start(thread_attached + R"(
          API_CALL EBCOM vorn_tu_init()
          > vorn_tu_init((nil)) = -4
          EXCEPTION GENERAL vorn_tu_init returned AGAIN(try again)
    )" + ended);
}

TEST(TimestampThread, FailedSubscriptionEndsIt)
{
    scripted::fail_on_thread("vorn_tu_subscribe_adjnpuoffs", -12);
    expect_end_after_start(thread_attached + R"(
          API_CALL EBCOM vorn_tu_init()
          > vorn_tu_init((nil))
          API_CALL EBCOM vorn_tu_subscribe_adjnpuoffs(doamin=0)
          > vorn_tu_subscribe_adjnpuoffs(unit, 0) = -12
          EXCEPTION GENERAL vorn_tu_subscribe_adjnpuoffs returned UNK_RET_VAL(-12)
    )" + ended);
}

TEST(TimestampThread, FailedReadingOfTheFirstPassEndsIt)
{
    scripted::fail_on_thread("vorn_tu_get_nputimeoffset", 3);
    expect_end_after_start(subscribed + R"(
        update_timestamp_offset:
          API_CALL EBCOM vorn_tu_get_nputimeoffset()
          > vorn_tu_get_nputimeoffset(unit, 0) = 3
          EXCEPTION GENERAL vorn_tu_get_nputimeoffset returned UNK_RET_VAL(3)
    )" + ended_by_failed_pass);
}

TEST(TimestampThread, FrequencyZeroEndsItWithCode2)
{
    scripted::set_reading({10, 0});
    expect_end_after_start(subscribed + reading_fetched + R"(
        kel_ic_ebcom_cycles_to_ork_timestamp_offset:
          FN_ENTER EBCOM
          LAB EBCOM cycles=10 frequency=0 ork_timestamp_offset=0
          FN_EXIT EBCOM
          ~ kei_util_init_rc_str_get(2)
        update_timestamp_offset:
          init:EXCEPTION GENERAL code 2, kel_ic_ebcom_cycles_to_ork_timestamp_offset
          ~ kei_util_init_rc_str_get(2)
        timestamp_thread:
          init:EXCEPTION GENERAL code 2, udpate_timestamp_offset
    )" + ended);
}

TEST(TimestampThread, RefusedOffsetOfTheFirstPassEndsIt)
{
    scripted::fail_on_thread("ork_ebcom_timestamp_offset_set", -4);
    expect_end_after_start(subscribed + usual_reading_converted + R"(
          > ork_ebcom_timestamp_offset_set(ork, 40) = -4
          > ork_syshandle_get(0, 1)
          ~ ork_sys_status_get(-4)
          init:EXCEPTION GENERAL 0xfffffffc - status -4, ork_ebcom_timestamp_offset_set
    )" + ended_by_failed_pass);
}

TEST(TimestampThread, FailedWaitEndsIt)
{
    start_until_waiting();
    scripted::fail_wait(-1);
    transcript::wait_for_end_of_thread(0);
    expect_of_thread(subscribed + usual_pass + waiting + R"(
          > vorn_tu_wait_event(unit) = -1
          EXCEPTION GENERAL vorn_tu_wait_event returned INVAL
    )" + ended);
}

TEST(TimestampThread, WaitWithoutAnEventEndsItWithItsLastRecordOnly)
{
    start_until_waiting();
    scripted::fail_wait(0);
    transcript::wait_for_end_of_thread(0);
    expect_of_thread(subscribed + usual_pass + waiting + R"(
          > vorn_tu_wait_event(unit) = 0
    )" + ended);
}

TEST(TimestampThread, WaitWithoutAnEventAfterAnIgnoredOneEndsIt)
{
    start_until_waiting();
    scripted::post_event(5, 0);
    scripted::fail_wait(0);
    transcript::wait_for_end_of_thread(0);
    expect_of_thread(subscribed + usual_pass + waiting + event_arrived + R"(
          INFO EBCOM Ignore unexpected event(5)
    )" + waiting + R"(
          > vorn_tu_wait_event(unit) = 0
    )" + ended);
}

TEST(TimestampThread, FailedReadingAfterAnEventEndsItWithTheEventKept)
{
    start_until_waiting();
    scripted::fail_on_thread("vorn_tu_get_nputimeoffset", -9);
    expect_end_after_event(subscribed + usual_pass + waiting + event_arrived + R"(
        update_timestamp_offset:
          API_CALL EBCOM vorn_tu_get_nputimeoffset()
          > vorn_tu_get_nputimeoffset(unit, 0) = -9
          EXCEPTION GENERAL vorn_tu_get_nputimeoffset returned OUTOFRANGE
    )" + ended_by_failed_pass);
}

TEST(TimestampThread, FrequencyZeroAfterAnEventEndsItWithTheEventKept)
{
    start_until_waiting();
    scripted::set_reading({INT64_MIN, 0});
    expect_end_after_event(subscribed + usual_pass + waiting + event_arrived + reading_fetched + R"(
        kel_ic_ebcom_cycles_to_ork_timestamp_offset:
          FN_ENTER EBCOM
          LAB EBCOM cycles=-9223372036854775808 frequency=0 ork_timestamp_offset=0
          FN_EXIT EBCOM
          ~ kei_util_init_rc_str_get(2)
        update_timestamp_offset:
          init:EXCEPTION GENERAL code 2, kel_ic_ebcom_cycles_to_ork_timestamp_offset
          ~ kei_util_init_rc_str_get(2)
        timestamp_thread:
          init:EXCEPTION GENERAL code 2, udpate_timestamp_offset
    )" + ended);
}

TEST(TimestampThread, RefusedOffsetAfterAnEventEndsItWithTheEventKept)
{
    start_until_waiting();
    scripted::fail_on_thread("ork_ebcom_timestamp_offset_set", 3);
    expect_end_after_event(subscribed + usual_pass + waiting + event_arrived + usual_reading_converted + R"(
          > ork_ebcom_timestamp_offset_set(ork, 40) = 3
          > ork_syshandle_get(0, 1)
          ~ ork_sys_status_get(3)
          init:EXCEPTION GENERAL 0x3 - status 3, ork_ebcom_timestamp_offset_set
    )" + ended_by_failed_pass);
}

TEST(TimestampThread, LivesOnThroughAStop)
{
    start_until_waiting();
    EXPECT_EQ(kel_core_ic_ebcom_stop(), 0U);
    scripted::post_event(6, 0);
    scripted::wait_for_waiting_threads(1);
    expect_of_thread(subscribed + usual_pass + waiting + event_arrived + usual_pass + event_handed_back + waiting);
}

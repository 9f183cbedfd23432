// Timings of records with chosen times.
#include "kel-trace/operations/statistics.h"

#include "made_up_record.h"

#include <gtest/gtest.h>

namespace kel_trace
{
namespace
{

constexpr int64_t second = 1'000'000'000;

TEST(Statistics, OwnTimeIsWithoutTheOperationsWithin)
{
    statistics all;
    all.take(made_up(event::fn_enter, "outer()", 1000));
    all.take(made_up(event::fn_enter, "inner()", 2000));
    all.take(made_up(event::init_exception, "inner(): busy, ork_bind", 2500));
    all.take(made_up(event::fn_exit, "inner()", 5'002'000));
    all.take(made_up(event::fn_exit, "outer()", 6'001'000));
    all.end();
    const host_statistics sum = all.sum();
    const timing &outer = sum.operations.at("outer");
    const timing &inner = sum.operations.at("inner");
    EXPECT_EQ(inner.lasted.spread.sum(), 5'000'000);
    EXPECT_EQ(inner.lasted.largest_at, 2000);
    EXPECT_EQ(inner.reported, 1U);
    EXPECT_EQ(outer.lasted.spread.sum(), 6'000'000);
    EXPECT_EQ(outer.own, 1'000'000);
    EXPECT_EQ(outer.reported, 0U);
}

TEST(Statistics, ClosedCallLastsUntilTheNextRecordOfItsThread)
{
    statistics all;
    all.take(made_up(event::api_call, "f(): ork_bind(ID2M): PCEP_ID=7 -> EHSFP", 100));
    all.take(made_up(event::fn_enter, "other()", 150, {0, 10, 12}));
    all.take(made_up(event::init_exception, "f(): 0xfffffffc - busy, ork_bind", 350));
    const host_statistics sum = all.sum();
    EXPECT_EQ(sum.calls.at("ork_bind").lasted.spread.sum(), 250);
    EXPECT_EQ(sum.calls.at("ork_bind").reported, 1U);
}

TEST(Statistics, RefusalOfAnotherCallIsNotThisOnes)
{
    statistics all;
    for (const char *next : {"f(): busy, ork_unbind", "f(): worded otherwise", "f(): busy, ork_bind"}) {
        all.take(made_up(event::api_call, "f(): ork_bind()"));
        all.take(made_up(event::init_exception, next));
    }
    EXPECT_EQ(all.sum().calls.at("ork_bind").lasted.spread.count(), 3U);
    EXPECT_EQ(all.sum().calls.at("ork_bind").reported, 1U);
}

TEST(Statistics, AnnouncementInTwoRecordsIsOneCall)
{
    statistics all;
    all.take(made_up(event::api_call, "f(): ork_qos_scheduler_create(tsScriptId=0)", 100));
    all.take(made_up(event::api_call, "f(): ork_qos_scheduler_create(rootId=20)", 110));
    all.take(made_up(event::info, "f(): ork_qos_scheduler_create handle: 0x1", 400));
    EXPECT_EQ(all.sum().calls.at("ork_qos_scheduler_create").lasted.spread.count(), 1U);
    EXPECT_EQ(all.sum().calls.at("ork_qos_scheduler_create").lasted.spread.sum(), 300);
}

TEST(Statistics, BusiestSecondIsThatWithMostRecords)
{
    statistics all;
    for (const int64_t time : {5 * second - 1, 7 * second, 7 * second + 1, 9 * second})
        all.take(made_up(event::info, "f(): note", time));
    EXPECT_EQ(all.sum().busiest_second, 7);
    EXPECT_EQ(all.sum().busiest_count, 2U);
    EXPECT_EQ(all.sum().events[static_cast<size_t>(event::info)], 4U);
}

TEST(Statistics, HostsAddUp)
{
    statistics all;
    for (const uint32_t host : {0U, 1U}) {
        all.take(made_up(event::fn_enter, "f()", 0, {host, 10, 11}));
        all.take(made_up(event::fn_exit, "f()", 1000 * (host + 1), {host, 10, 11}));
    }
    EXPECT_EQ(all.hosts().size(), 2U);
    EXPECT_EQ(all.sum().operations.at("f").lasted.spread.sum(), 3000);
    EXPECT_EQ(all.sum().operations.at("f").lasted.spread.largest(), 2000);
}

} // namespace
} // namespace kel_trace

// Operations made of records: what reached them, what was ignored, and how much of a long one is kept.
#include "kel-trace/operations/operation_builder.h"

#include "made_up_record.h"

#include <gmock/gmock.h>

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kel_trace
{
namespace
{

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class OperationBuilder : public testing::Test
{
protected:
    void tell(event event, std::string_view message, int64_t thread = 11)
    {
        builder.take(made_up(event, message, ++time, {0, 10, thread}));
    }

    int64_t time = 0;
    std::vector<operation> done;
    operation_builder builder{[this](const operation &one) { done.push_back(one); }};
};

TEST_F(OperationBuilder, FollowsReportsToTheOperation)
{
    tell(event::fn_enter, "outer()");
    tell(event::fn_enter, "inner()");
    tell(event::init_exception, "inner(): 0xfffffffc - busy, ork_bind");
    tell(event::fn_exit, "inner()");
    tell(event::init_exception, "outer(): operation failed, inner");
    tell(event::fn_exit, "outer()");
    builder.end();
    ASSERT_THAT(done, SizeIs(1));
    ASSERT_TRUE(done[0].failure());
    EXPECT_EQ(done[0].failure()->what, "ork_bind");
    EXPECT_EQ(done[0].failure()->code, -4);
    EXPECT_EQ(done[0].failure()->time, 3);
    EXPECT_THAT(done[0].failure()->reporters, ElementsAre("inner", "outer"));
    EXPECT_THAT(done[0].records(), SizeIs(6));
    EXPECT_TRUE(done[0].whole);
}

TEST_F(OperationBuilder, WhatAnOperationGoesOnAfterIsIgnored)
{
    tell(event::fn_enter, "outer()");
    tell(event::init_exception, "outer(): busy, kel_init_qos_queue_rem");
    tell(event::api_call, "outer(): kel_init_attach()");
    tell(event::fn_exit, "outer()");
    builder.end();
    ASSERT_THAT(done, SizeIs(1));
    EXPECT_FALSE(done[0].failure());
    ASSERT_THAT(done[0].complaints, SizeIs(1));
    EXPECT_TRUE(done[0].complaints[0].ignored);
}

TEST_F(OperationBuilder, WhatItsCallerDoesNotPassOnIsIgnored)
{
    tell(event::fn_enter, "outer()");
    tell(event::fn_enter, "inner()");
    tell(event::init_exception, "inner(): busy, kel_init_qos_queue_rem");
    tell(event::fn_exit, "inner()");
    tell(event::fn_exit, "outer()");
    builder.end();
    EXPECT_FALSE(done.at(0).failure());
}

TEST_F(OperationBuilder, ThreadsAreApart)
{
    tell(event::fn_enter, "one()", 1);
    tell(event::fn_enter, "two()", 2);
    tell(event::init_exception, "two(): busy, ork_bind", 2);
    tell(event::fn_exit, "one()", 1);
    tell(event::fn_exit, "two()", 2);
    builder.end();
    ASSERT_THAT(done, SizeIs(2));
    for (const operation &one : done)
        EXPECT_EQ(one.failure() != nullptr, one.name == "two");
}

TEST_F(OperationBuilder, LongOperationKeepsItsBeginningAndItsEnd)
{
    tell(event::fn_enter, "long()");
    for (int i = 0; i < 1000; ++i)
        tell(event::api_call, "long(): ork_bind()");
    tell(event::init_exception, "long(): busy, ork_bind");
    tell(event::fn_exit, "long()");
    builder.end();
    ASSERT_THAT(done, SizeIs(1));
    const auto records = done[0].records();
    EXPECT_LT(records.size(), 200U);
    EXPECT_EQ(records.size() + done[0].records_left_out, 1003U);
    EXPECT_EQ(records.front().message, "long()");
    EXPECT_EQ(records.back().time, 1003);
    EXPECT_EQ(records[records.size() - 2].message, "long(): busy, ork_bind");
}

TEST_F(OperationBuilder, CountsWhatIsCutOff)
{
    tell(event::fn_exit, "before()");
    tell(event::fn_enter, "after()");
    builder.end();
    EXPECT_EQ(builder.cut(), (cut_operations{.at_beginning = 1, .at_end = 1, .within = 0}));
    ASSERT_THAT(done, SizeIs(1));
    EXPECT_FALSE(done[0].whole);
}

TEST_F(OperationBuilder, OnlyEqualReportsAreFolded)
{
    const auto refuse = [this](std::string_view message) {
        tell(event::api_call, "outer(): kel_init_qos_queue_rem()");
        tell(event::init_exception, message);
    };
    tell(event::fn_enter, "outer()");
    refuse("outer(): 0xfffffffc - busy, ork_bind");
    refuse("outer(): 0xfffffffc - busy, ork_bind");
    refuse("outer(): 0xfffffffb - busy, ork_bind");
    refuse("outer(): 0xfffffffb - gone, ork_bind");
    refuse("inner(): 0xfffffffb - gone, ork_bind");
    refuse("inner(): 0xfffffffb - gone, ork_unbind");
    tell(event::fn_exit, "outer()");
    builder.end();
    std::vector<size_t> times;
    for (const complaint &one : done.at(0).complaints)
        times.push_back(one.times);
    EXPECT_THAT(times, ElementsAre(2, 1, 1, 1, 1));
}

TEST_F(OperationBuilder, FailureStaysApartFromAnEqualReportThatWasIgnored)
{
    tell(event::fn_enter, "outer()");
    tell(event::init_exception, "outer(): busy, ork_bind");
    tell(event::api_call, "outer(): ork_bind()");
    tell(event::init_exception, "outer(): busy, ork_bind");
    tell(event::fn_exit, "outer()");
    builder.end();
    ASSERT_TRUE(done.at(0).failure());
    EXPECT_EQ(done[0].failure()->time, 4);
}

TEST_F(OperationBuilder, LaterReportIsTheFailureOfTwoInARow)
{
    tell(event::fn_enter, "outer()");
    tell(event::init_exception, "outer(): busy, ork_bind");
    tell(event::init_exception, "outer(): gone, ork_unbind");
    tell(event::fn_exit, "outer()");
    builder.end();
    EXPECT_THAT(done.at(0).complaints, SizeIs(2));
    ASSERT_TRUE(done[0].failure());
    EXPECT_EQ(done[0].failure()->what, "ork_unbind");
}

TEST_F(OperationBuilder, KeepsAFewErrors)
{
    tell(event::fn_enter, "outer()");
    for (int i = 0; i < 10; ++i)
        tell(event::error, "outer(): dst_mac=1: Unsupported location=5");
    tell(event::fn_exit, "outer()");
    builder.end();
    EXPECT_THAT(done.at(0).errors, SizeIs(8));
}

// Behind an operation's end, or without its beginning.
TEST_F(OperationBuilder, LooseRecordsAreOfOneOperationWhenTheySaySo)
{
    const struct {
        std::vector<std::pair<event, std::string_view>> told;
        std::vector<std::string> operations;
    } rows[] = {
        {{{event::error, "f(): x"}, {event::init_exception, "f(): busy, ork_bind"}}, {"f"}},
        {{{event::error, "f(): x"}, {event::init_exception, "g(): busy, ork_bind"}}, {"f", "g"}},
        {{{event::error, "f(): x"}, {event::error, "f(): y"}}, {"f", "f"}},
        {{{event::init_exception, "f(): busy, ork_bind"}, {event::error, "f(): y"}}, {"f"}},
        {{{event::init_exception, "f(): busy, ork_bind"}, {event::error, "g(): y"}}, {"f", "g"}},
        {{{event::init_exception, "f(): busy, ork_bind"}, {event::init_exception, "f(): worded otherwise"}},
         {"f", "f"}},
    };
    for (const auto &[told, operations] : rows) {
        done.clear();
        for (const auto &[event, message] : told)
            tell(event, message);
        builder.end();
        std::vector<std::string> names;
        for (const operation &one : done)
            names.push_back(one.name);
        EXPECT_EQ(names, operations) << told[0].second << ", " << told[1].second;
    }
}

TEST_F(OperationBuilder, RecordWithoutAnOperationIsNone)
{
    tell(event::lab, "kel_core_ic_ebcom_qos_handle_dump(): scheduler_handle=(nil)");
    builder.end();
    EXPECT_THAT(done, IsEmpty());
}

} // namespace
} // namespace kel_trace

/*
 * handle_test.cpp - handles and the series that issue and judge them.
 */
#include "softnode/common/handle.h"

#include <gtest/gtest.h>

#include <cstdio>

using namespace softnode;

TEST(Handle, TextIsWhatPrintfMakesOfThePointer)
{
    HandleSeries series(Kind::queue);
    const Handle handle = series.next();
    char printed[32];
    std::snprintf(printed, sizeof printed, "%p", pointer_of(handle));
    EXPECT_EQ(text_of(handle), printed);
    EXPECT_EQ(text_of(handle), "0x5d00000001");
}

TEST(Handle, SurvivesTheWayThroughAPointer)
{
    HandleSeries series(Kind::scheduler);
    const Handle handle = series.next();
    EXPECT_EQ(handle_of(pointer_of(handle)), handle);
    EXPECT_EQ(handle_of(nullptr), Handle::null);
    EXPECT_EQ(pointer_of(Handle::null), nullptr);
}

TEST(HandleSeries, NumbersCountUpFromOneInEachSeries)
{
    HandleSeries schedulers(Kind::scheduler);
    HandleSeries queues(Kind::queue);
    EXPECT_EQ(text_of(schedulers.next()), "0x5c00000001");
    EXPECT_EQ(text_of(schedulers.next()), "0x5c00000002");
    EXPECT_EQ(text_of(queues.next()), "0x5d00000001");
}

TEST(HandleSeries, AnAliveObjectIsGranted)
{
    HandleSeries series(Kind::queue);
    EXPECT_EQ(series.judge(series.next(), true), Refusal::granted);
}

TEST(HandleSeries, AHandleOnceIssuedIsGone)
{
    HandleSeries series(Kind::queue);
    const Handle first = series.next();
    series.next();
    EXPECT_EQ(series.judge(first, false), Refusal::gone);
}

TEST(HandleSeries, AHandleNeverIssuedIsInvalid)
{
    HandleSeries series(Kind::queue);
    const Handle last = series.next();
    const auto number = static_cast<std::uint64_t>(last);
    EXPECT_EQ(series.judge(static_cast<Handle>(number + 1), false), Refusal::invalid);
    EXPECT_EQ(series.judge(static_cast<Handle>(number - 1), false), Refusal::invalid);
    EXPECT_EQ(series.judge(Handle::null, false), Refusal::invalid);
}

TEST(HandleSeries, AHandleOfAnotherKindIsInvalid)
{
    HandleSeries queues(Kind::queue);
    HandleSeries schedulers(Kind::scheduler);
    queues.next();
    EXPECT_EQ(queues.judge(schedulers.next(), false), Refusal::invalid);
}

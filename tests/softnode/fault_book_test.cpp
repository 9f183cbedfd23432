/*
 * fault_book_test.cpp - counting calls and applying fault rules.
 */
#include "softnode/fault_book.h"

#include <gtest/gtest.h>

using namespace softnode;

namespace
{

const std::size_t attach = *closed_function("kel_init_attach");
const std::size_t wait_event = *closed_function("vorn_tu_wait_event");

} // namespace

TEST(FaultBook, CountsCallsPerFunction)
{
    FaultBook book;
    EXPECT_FALSE(book.begin_call(attach).result);
    EXPECT_FALSE(book.begin_call(attach).result);
    EXPECT_FALSE(book.begin_call(wait_event).result);
    EXPECT_EQ(book.calls()[attach], 2U);
    EXPECT_EQ(book.calls()[wait_event], 1U);
}

TEST(FaultBook, ACallThatFailsIsCountedToo)
{
    FaultBook book;
    ASSERT_EQ(book.add("kel_init_attach=10"), "");
    EXPECT_EQ(book.begin_call(attach).result, 10);
    EXPECT_EQ(book.calls()[attach], 1U);
    EXPECT_EQ(book.entries().front().hits, 1U);
}

TEST(FaultBook, ARuleFailsItsFunctionOnly)
{
    FaultBook book;
    ASSERT_EQ(book.add("kel_init_attach=10"), "");
    EXPECT_FALSE(book.begin_call(wait_event).result);
}

TEST(FaultBook, ARuleCountsFromWhenItWasAdded)
{
    FaultBook book;
    book.begin_call(attach);
    book.begin_call(attach);
    ASSERT_EQ(book.add("kel_init_attach:2=10"), "");
    EXPECT_FALSE(book.begin_call(attach).result);
    EXPECT_EQ(book.begin_call(attach).result, 10);
    EXPECT_FALSE(book.begin_call(attach).result);
    EXPECT_EQ(book.entries().front().hits, 1U);
}

TEST(FaultBook, OfSeveralRulesTheOneAddedFirstDecides)
{
    FaultBook book;
    ASSERT_EQ(book.add("kel_init_attach:2=10;kel_init_attach=3"), "");
    EXPECT_EQ(book.begin_call(attach).result, 3);
    EXPECT_EQ(book.begin_call(attach).result, 10);
    EXPECT_EQ(book.begin_call(attach).result, 3);
    EXPECT_EQ(book.entries()[0].hits, 1U);
    EXPECT_EQ(book.entries()[1].hits, 2U);
}

TEST(FaultBook, ACallMeetsARuleWithAllItsEffects)
{
    FaultBook book;
    ASSERT_EQ(book.add("vorn_tu_wait_event:1=latency:3us,block,-5"), "");
    const FaultEffects effects = book.begin_call(wait_event);
    EXPECT_EQ(effects.latency, 3'000U);
    EXPECT_TRUE(effects.block);
    EXPECT_EQ(effects.result, -5);
}

TEST(FaultBook, ARuleWithoutResultHidesTheOnesAddedLater)
{
    FaultBook book;
    ASSERT_EQ(book.add("kel_init_attach=latency:3us"), "");
    ASSERT_EQ(book.add("kel_init_attach=10"), "");
    EXPECT_FALSE(book.begin_call(attach).result);
    EXPECT_EQ(book.entries()[1].hits, 0U);
}

TEST(FaultBook, OneBadRuleAmongGoodOnesAddsNone)
{
    FaultBook book;
    EXPECT_EQ(book.add("kel_init_attach=10;kel_init_attach;vorn_tu_wait_event=-5"),
              "\"kel_init_attach\": no effect; a rule is function[:call[*times]]=effect[,effect]");
    EXPECT_TRUE(book.entries().empty());
    EXPECT_FALSE(book.begin_call(attach).result);
}

TEST(FaultBook, ARuleAddedAfterAClearCounts)
{
    FaultBook book;
    ASSERT_EQ(book.add("vorn_tu_wait_event=-1;kel_init_attach=10"), "");
    book.clear();
    ASSERT_EQ(book.add("kel_init_attach=3"), "");
    EXPECT_EQ(book.begin_call(attach).result, 3);
    EXPECT_EQ(book.entries().front().hits, 1U);
}

TEST(FaultBook, ClearForgetsRulesAndKeepsCounts)
{
    FaultBook book;
    ASSERT_EQ(book.add("kel_init_attach=10"), "");
    book.begin_call(attach);
    book.clear();
    EXPECT_FALSE(book.begin_call(attach).result);
    EXPECT_EQ(book.calls()[attach], 2U);
    EXPECT_TRUE(book.entries().empty());
}

TEST(FaultBook, ResetForgetsBoth)
{
    FaultBook book;
    ASSERT_EQ(book.add("kel_init_attach=10"), "");
    book.begin_call(attach);
    book.reset();
    EXPECT_EQ(book.calls()[attach], 0U);
    EXPECT_TRUE(book.entries().empty());
}

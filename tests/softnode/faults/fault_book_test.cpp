/*
 * fault_book_test.cpp - counting calls and applying fault rules.
 */
#include "softnode/faults/fault_book.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string>
#include <thread>

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

TEST(FaultBook, ARuleOfItsOwnThreadCountsNoOtherCalls)
{
    FaultBook book;
    book.begin_call(attach);
    ASSERT_EQ(book.add("kel_init_attach:2=10,own-thread"), "");
    EXPECT_FALSE(book.begin_call(attach).result);
    std::thread([&book] { EXPECT_FALSE(book.begin_call(attach).result); }).join();
    EXPECT_EQ(book.begin_call(attach).result, 10);
    EXPECT_FALSE(book.begin_call(attach).result);
    EXPECT_EQ(book.calls()[attach], 5U);
}

TEST(FaultBook, OfARuleForAllThreadsAndOneOfItsOwnTheOneAddedFirstDecides)
{
    FaultBook book;
    ASSERT_EQ(book.add("kel_init_attach:1*2=10,own-thread;kel_init_attach:2*2=3;kel_init_attach:3=4,own-thread"), "");
    EXPECT_EQ(book.begin_call(attach).result, 10);
    EXPECT_EQ(book.begin_call(attach).result, 10);
    EXPECT_EQ(book.begin_call(attach).result, 3);
    EXPECT_EQ(book.entries()[1].hits, 1U);
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

TEST(FaultBook, HoweverRulesOverlapTheOneAddedFirstDecides)
{
    constexpr std::uint64_t rules = 300;
    FaultBook book;
    for (std::uint64_t number = 0; number < rules; ++number)
        ASSERT_EQ(book.add("kel_init_attach:" + std::to_string(1 + number * 7919 % rules) + "*" +
                           std::to_string(1 + number * 31 % 50) + "=" + std::to_string(number)),
                  "");
    for (std::uint64_t call = 1; call <= rules + 50; ++call) {
        const auto &entries = book.entries();
        const auto first = std::find_if(entries.begin(), entries.end(),
                                        [call](const FaultBook::Entry &entry) { return entry.rule.hits(call); });
        EXPECT_EQ(book.begin_call(attach).result, first == entries.end() ? std::nullopt : first->rule.effects.result);
    }
}

TEST(FaultBook, TakesTenThousandRules)
{
    constexpr std::uint64_t rules = 10'000;
    FaultBook book;
    for (std::uint64_t call = rules; call >= 1; --call)
        ASSERT_EQ(book.add("kel_init_attach:" + std::to_string(call) + "=" + std::to_string(call)), "");
    for (std::uint64_t call = 1; call <= rules; ++call)
        ASSERT_EQ(book.begin_call(attach).result, static_cast<std::int64_t>(call));
    EXPECT_FALSE(book.begin_call(attach).result);
}

TEST(FaultBook, ARuleThatWasClearedMeetsNoCallEvenWhenAnotherHasItsPlace)
{
    for (const char *rule : {"kel_init_attach=10", "kel_init_attach=10,own-thread"}) {
        FaultBook book;
        ASSERT_EQ(book.add(rule), "");
        book.clear();
        ASSERT_EQ(book.add("vorn_tu_wait_event=-5"), "");
        EXPECT_FALSE(book.begin_call(attach).result) << rule;
    }
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

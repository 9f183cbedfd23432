/*
 * counters_test.cpp - frames and octets by fate.
 */
#include "softnode/common/counters.h"

#include <gtest/gtest.h>

using namespace softnode;

TEST(Counters, AreZeroAtFirst)
{
    const Counters counters;
    for (const Fate fate : {Fate::received, Fate::sent, Fate::dropped}) {
        EXPECT_EQ(counters[fate].frames, 0U);
        EXPECT_EQ(counters[fate].octets, 0U);
    }
}

TEST(Counters, EachFateIsCountedByItself)
{
    Counters counters;
    counters.account(Fate::received, {3, 100});
    counters.account(Fate::sent, {2, 64});
    counters.account(Fate::dropped, {1, 1500});
    EXPECT_EQ(counters[Fate::received].frames, 3U);
    EXPECT_EQ(counters[Fate::received].octets, 300U);
    EXPECT_EQ(counters[Fate::sent].frames, 2U);
    EXPECT_EQ(counters[Fate::sent].octets, 128U);
    EXPECT_EQ(counters[Fate::dropped].frames, 1U);
    EXPECT_EQ(counters[Fate::dropped].octets, 1500U);
}

TEST(Counters, FramesOfSeveralLengthsAreAddedByTheirTally)
{
    Counters counters;
    counters.account(Fate::dropped, {1, 1500});
    counters.add(Fate::dropped, {3, 200});
    EXPECT_EQ(counters[Fate::dropped].frames, 4U);
    EXPECT_EQ(counters[Fate::dropped].octets, 1700U);
    EXPECT_EQ(counters[Fate::sent].frames, 0U);
}

TEST(Counters, WrapAroundSoThatSumsHold)
{
    Counters counters;
    counters.account(Fate::received, {0xffff'ffff'ffff'ffff, 3});
    counters.account(Fate::received, {2, 3});
    EXPECT_EQ(counters[Fate::received].frames, 1U);
    EXPECT_EQ(counters[Fate::received].octets, 3U);
}

TEST(Counters, AddUpOverMoreThanThirtyTwoBits)
{
    Counters counters;
    counters.account(Fate::sent, {0x1'0000'0000, 9000});
    counters.account(Fate::sent, {5, 1});
    EXPECT_EQ(counters[Fate::sent].frames, 0x1'0000'0005U);
    EXPECT_EQ(counters[Fate::sent].octets, 0x1'0000'0000U * 9000 + 5);
}

/*
 * serial_line_test.cpp - the line alone.
 */
#include "softnode/traffic/serial_line.h"

#include <gtest/gtest.h>

#include <vector>

using namespace softnode;

namespace
{

/* When frames of one length leave that waited from time 0 on. */
std::vector<Instant> departures(std::uint32_t frames, std::uint32_t octets)
{
    SerialLine line;
    std::vector<Instant> instants;
    for (std::uint32_t frame = 0; frame < frames; ++frame) {
        instants.push_back(static_cast<Instant>(line.free_at()));
        line.send(octets);
    }
    return instants;
}

} // namespace

TEST(SerialLine, IsFreeAtFirst)
{
    EXPECT_TRUE(SerialLine().free_at() == 0);
}

TEST(SerialLine, IsBusyForTheFrameItsPreambleAndItsGap)
{
    SerialLine line;
    line.settle(100);
    line.send(1230);
    EXPECT_TRUE(line.free_at() == 1100);
}

TEST(SerialLine, AFrameArrivesWithItsLastBit)
{
    SerialLine line;
    EXPECT_TRUE(line.send(1230) == 991) << "8 octets of preamble before it: 990.4";
    EXPECT_TRUE(line.send(1230) == 1991) << "1990.4";
}

TEST(SerialLine, LosesNoFractionOfANanosecond)
{
    EXPECT_EQ(departures(6, 44), (std::vector<Instant>{0, 52, 103, 154, 205, 256}));
    EXPECT_EQ(departures(1'000'001, 44).back(), 51'200'000U);
}

TEST(SerialLine, CarriesSoManyOfTheShortestFramesInASecond)
{
    const std::uint32_t frames = 14'880'952;
    SerialLine line;
    for (std::uint32_t frame = 0; frame < frames; ++frame)
        line.send(64);
    EXPECT_TRUE(line.free_at() <= 1'000'000'000);
    line.send(64);
    EXPECT_TRUE(line.free_at() > 1'000'000'000);
}

TEST(SerialLine, WhatItWasIdleForIsLost)
{
    SerialLine line;
    line.send(44);
    line.settle(1000);
    line.send(44);
    EXPECT_TRUE(line.free_at() == 1052) << "1051.2";
    line.send(44);
    EXPECT_TRUE(line.free_at() == 1103) << "1102.4";
    for (int frame = 0; frame < 3; ++frame)
        line.send(44);
    EXPECT_TRUE(line.free_at() == 1256) << "no part of a nanosecond from before is left";
}

TEST(SerialLine, SettlingABusyLineChangesNothing)
{
    SerialLine line;
    line.send(1230);
    line.settle(999);
    EXPECT_TRUE(line.free_at() == 1000);
}

TEST(SerialLine, SettlingInTheNanosecondThatItBecomesFreeKeepsThePart)
{
    SerialLine line;
    line.send(44);
    line.settle(51);
    EXPECT_TRUE(line.free_at() == 52) << "51.2";
}

TEST(SerialLine, IsFreeAfterTheEndOfTimeWhenItEndsBefore)
{
    SerialLine line;
    line.settle(end_of_time);
    EXPECT_TRUE(line.free_at() == end_of_time);
    line.send(64);
    EXPECT_TRUE(line.free_at() > end_of_time);
}

/*
 * serial_line_test.cpp - a line alone.
 */
#include "softnode/traffic/serial_line.h"

#include <gtest/gtest.h>

#include <limits>
#include <vector>

using namespace softnode;

namespace
{

constexpr Instant last = std::numeric_limits<Instant>::max();
constexpr Rate ten_gigabits = 10'000'000;

/* A frame leaves that waited for nothing but the line. */
void send(SerialLine &line, std::uint32_t octets, Instant now)
{
    line.send(octets, now, line.lead(now));
}

/* When frames of one length leave that waited from time 0 on. */
std::vector<Instant> departures(SerialLine line, std::uint32_t frames, std::uint32_t octets)
{
    std::vector<Instant> instants;
    for (std::uint32_t frame = 0; frame < frames; ++frame) {
        const std::optional<Instant> free = line.free_at();
        EXPECT_TRUE(free);
        instants.push_back(free.value_or(last));
        send(line, octets, instants.back());
    }
    return instants;
}

} // namespace

TEST(SerialLine, IsFreeAtFirst)
{
    EXPECT_EQ(SerialLine(1).free_at(), 0U);
}

TEST(SerialLine, IsBusyAsLongAsAFrameTakes)
{
    SerialLine line(ten_gigabits);
    line.settle(100);
    send(line, 1250, 100);
    EXPECT_EQ(line.free_at(), 1100U);
}

TEST(SerialLine, LosesNoFractionOfANanosecond)
{
    EXPECT_EQ(departures(SerialLine(ten_gigabits), 6, 64), (std::vector<Instant>{0, 52, 103, 154, 205, 256}));
    EXPECT_EQ(departures(SerialLine(ten_gigabits), 1'000'001, 64).back(), 51'200'000U);
}

TEST(SerialLine, SeveralFramesCanLeaveInANanosecond)
{
    EXPECT_EQ(departures(SerialLine(ten_gigabits), 6, 1), (std::vector<Instant>{0, 1, 2, 3, 4, 4}))
        << "0, 0.8, 1.6, 2.4, 3.2, 4";
}

TEST(SerialLine, WhatItWasIdleForIsLost)
{
    SerialLine line(ten_gigabits);
    send(line, 64, 0);
    line.settle(1000);
    send(line, 64, 1000);
    EXPECT_EQ(line.free_at(), 1052U) << "1051.2";
    send(line, 64, 1052);
    EXPECT_EQ(line.free_at(), 1103U) << "1102.4";
}

TEST(SerialLine, AFrameThatWaitedForSomethingElseCountsFromWhenItCouldLeave)
{
    SerialLine line(ten_gigabits);
    line.send(64, 1000, {1, 4});
    EXPECT_EQ(line.free_at(), 1051U) << "1050.95";
    line.send(64, 2000, {});
    EXPECT_EQ(line.free_at(), 2052U) << "2051.2";
}

TEST(SerialLine, SettlingABusyLineChangesNothing)
{
    SerialLine line(ten_gigabits);
    send(line, 1250, 0);
    line.settle(999);
    EXPECT_EQ(line.free_at(), 1000U);
}

TEST(SerialLine, NeverIsWhenTimeEndsBefore)
{
    SerialLine line(1);
    line.settle(last);
    EXPECT_EQ(line.free_at(), last);
    send(line, 65'535, last);
    EXPECT_FALSE(line.free_at());
}

// Offerings of given tables, to the nanosecond.
#include "kelctl/accelerator/traffic_schedule.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>

namespace kelctl
{
namespace
{

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr uint64_t second = 1'000'000'000;

traffic_entry frames(uint32_t per_second, uint32_t octets = 100)
{
    traffic_entry entry;
    entry.octets = octets;
    entry.frames_per_second = per_second;
    return entry;
}

traffic_schedule schedule_of(std::initializer_list<traffic_entry> streams)
{
    traffic_schedule schedule;
    for (const traffic_entry &stream : streams)
        schedule.add(stream, 0);
    return schedule;
}

std::vector<uint64_t> times_before(traffic_schedule &schedule, uint64_t end)
{
    std::vector<uint64_t> times;
    while (const auto due = schedule.next_before(end))
        times.push_back(due->at);
    return times;
}

TEST(TrafficSchedule, FirstFrameComesAtTheStartAndTheEndIsNotPartOfAStep)
{
    traffic_entry entry = frames(1000);
    entry.start = 500;
    traffic_schedule schedule = schedule_of({entry});
    EXPECT_THAT(times_before(schedule, 500), IsEmpty());
    EXPECT_THAT(times_before(schedule, 2'000'500), ElementsAre(500, 1'000'500));
    EXPECT_THAT(times_before(schedule, 2'000'501), ElementsAre(2'000'500));
}

TEST(TrafficSchedule, ThirdsOfANanosecondAddUp)
{
    traffic_schedule schedule = schedule_of({frames(3)});
    EXPECT_THAT(times_before(schedule, 2 * second),
                ElementsAre(0, 333'333'333, 666'666'666, second, 1'333'333'333, 1'666'666'666));
}

TEST(TrafficSchedule, RateCountsTheOctetsOfFrames)
{
    traffic_entry entry = frames(0, 1250);
    entry.rate = 10'000; // kbit/s, of 10 kbit each
    traffic_schedule schedule = schedule_of({entry});
    EXPECT_THAT(times_before(schedule, 3'000'000), ElementsAre(0, 1'000'000, 2'000'000));
    EXPECT_EQ(offerings_in_a_second(entry), 1000u);
}

TEST(TrafficSchedule, BurstsAreFewerAndAsMuch)
{
    traffic_entry entry = frames(1000);
    entry.burst = 4;
    traffic_schedule schedule = schedule_of({entry});
    EXPECT_THAT(times_before(schedule, 9'000'000), ElementsAre(0, 4'000'000, 8'000'000));
    EXPECT_EQ(offerings_in_a_second(entry), 250u);
}

TEST(TrafficSchedule, NothingComesAtTheStopOrAfterIt)
{
    traffic_entry entry = frames(1000);
    entry.stop = 2'000'000;
    traffic_schedule schedule = schedule_of({entry});
    EXPECT_THAT(times_before(schedule, second), ElementsAre(0, 1'000'000));
}

TEST(TrafficSchedule, TimesCountFromTheAdding)
{
    traffic_entry entry = frames(1000);
    entry.start = 500;
    entry.stop = 1'000'501;
    traffic_schedule schedule;
    schedule.add(entry, 7);
    EXPECT_THAT(times_before(schedule, second), ElementsAre(507, 1'000'507));
}

TEST(TrafficSchedule, StreamsAreMergedByTimeAndThenByTheirOrder)
{
    traffic_schedule schedule = schedule_of({frames(500, 1), frames(1000, 2)});
    std::vector<std::pair<uint64_t, uint32_t>> order;
    while (const auto due = schedule.next_before(2'000'001))
        order.emplace_back(due->at, due->stream->octets);
    EXPECT_THAT(order, ElementsAre(std::pair(0u, 1u), std::pair(0u, 2u), std::pair(1'000'000u, 2u),
                                   std::pair(2'000'000u, 1u), std::pair(2'000'000u, 2u)));
}

TEST(TrafficSchedule, StepsDoNotChangeTheTimes)
{
    traffic_schedule whole = schedule_of({frames(777), frames(1234)});
    traffic_schedule stepwise = schedule_of({frames(777), frames(1234)});
    std::vector<uint64_t> times;
    for (uint64_t end = 0; end <= second; end += 1'000'000)
        for (const uint64_t at : times_before(stepwise, end))
            times.push_back(at);
    EXPECT_EQ(times, times_before(whole, second));
    EXPECT_THAT(times, SizeIs(777 + 1234));
}

TEST(TrafficSchedule, LargestValuesDoNotOverflow)
{
    traffic_entry slow = frames(0, 65'535);
    slow.rate = 1;
    slow.burst = 1'000'000;
    traffic_schedule schedule = schedule_of({slow});
    EXPECT_THAT(times_before(schedule, 1'000'000'000 * second), ElementsAre(0, 524'280'000 * second));
    EXPECT_EQ(offerings_in_a_second(slow), 1u);
    traffic_entry fast = frames(0, 1);
    fast.rate = 4'294'967'295;
    EXPECT_EQ(offerings_in_a_second(fast), 536'870'911'875u);
}

traffic_entry at_random(arrivals spread, uint32_t seed)
{
    traffic_entry entry = frames(10'000);
    entry.spread = spread;
    entry.seed = seed;
    if (spread == arrivals::on_off) {
        entry.on = second / 100;
        entry.off = second / 25;
    }
    return entry;
}

std::vector<uint64_t> times_of(const traffic_entry &entry, uint64_t end)
{
    traffic_schedule schedule = schedule_of({entry});
    return times_before(schedule, end);
}

TEST(TrafficSchedule, TheSameSeedGivesTheSameMomentsAndAnotherOneOthers)
{
    for (const arrivals spread : {arrivals::poisson, arrivals::on_off}) {
        const auto once = times_of(at_random(spread, 7), second);
        EXPECT_EQ(times_of(at_random(spread, 7), second), once);
        EXPECT_NE(times_of(at_random(spread, 8), second), once);
        EXPECT_TRUE(std::ranges::is_sorted(once));
    }
}

// These numbers are the same on every machine.
TEST(TrafficSchedule, FirstMomentsOfASeedAreKnown)
{
    const auto poisson = times_of(at_random(arrivals::poisson, 1), second);
    EXPECT_THAT(std::vector(poisson.begin(), poisson.begin() + 3), ElementsAre(13'388, 238'366, 318'690));
}

// Gaps of a mean of 100 us: their spread is the mean, too, and a part of 1 / e is longer.
TEST(TrafficSchedule, PoissonArrivalsHaveExponentialGaps)
{
    const auto times = times_of(at_random(arrivals::poisson, 3), 100 * second);
    EXPECT_NEAR(static_cast<double>(times.size()), 1e6, 4e3) << "four standard deviations";
    double squares = 0;
    double longer = 0;
    for (size_t i = 1; i < times.size(); ++i) {
        const auto gap = static_cast<double>(times[i] - times[i - 1]);
        squares += gap * gap;
        longer += gap > 1e5 ? 1 : 0;
    }
    EXPECT_NEAR(squares / static_cast<double>(times.size()), 2e10, 2e8);
    EXPECT_NEAR(longer / static_cast<double>(times.size()), 0.36788, 2e-3);
}

// 10 ms of frames every 100 us, and 40 ms without: a fifth of the time.
TEST(TrafficSchedule, OnOffArrivalsComeInPeriods)
{
    const auto times = times_of(at_random(arrivals::on_off, 3), 1000 * second);
    EXPECT_NEAR(static_cast<double>(times.size()), 2e6, 8e4);
    size_t pauses = 0;
    for (size_t i = 1; i < times.size(); ++i) {
        const uint64_t gap = times[i] - times[i - 1];
        EXPECT_GE(gap, 100'000u);
        pauses += gap > 100'000 ? 1 : 0;
    }
    EXPECT_NEAR(static_cast<double>(pauses), 20'000, 600) << "one for each 50 ms";
}

TEST(TrafficSchedule, RandomMomentsAreTheSameHoweverTheTimeIsCut)
{
    const auto whole = times_of(at_random(arrivals::on_off, 5), second);
    traffic_schedule cut = schedule_of({at_random(arrivals::on_off, 5)});
    std::vector<uint64_t> pieces;
    for (uint64_t end = 7; end < second + 1'000'000; end += 1'000'000)
        std::ranges::copy(times_before(cut, std::min(end, second)), std::back_inserter(pieces));
    EXPECT_EQ(pieces, whole);
}

TEST(TrafficSchedule, PeriodsBelongToOnOffArrivals)
{
    traffic_entry entry = frames(10);
    EXPECT_TRUE(periods_fit(entry));
    entry.off = 5;
    EXPECT_FALSE(periods_fit(entry));
    entry.off = 0;
    entry.on = 5;
    EXPECT_FALSE(periods_fit(entry));
    entry.spread = arrivals::on_off;
    EXPECT_FALSE(periods_fit(entry));
    entry.off = 5;
    EXPECT_TRUE(periods_fit(entry));
    entry.spread = arrivals::poisson;
    EXPECT_FALSE(periods_fit(entry));
}

} // namespace
} // namespace kelctl

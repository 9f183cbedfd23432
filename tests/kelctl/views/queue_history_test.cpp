// Steps between given samples.
#include "kelctl/views/queue_history.h"

#include <gtest/gtest.h>

#include <numeric>

namespace kelctl
{
namespace
{

fields sample(uint64_t octets, uint64_t dropped, fields delays)
{
    return {{"queues",
             fields::array(
                 {{{"port", 6}, {"name", "RLU1P"}, {"counters", {{"octets_tx", octets}, {"pkts_dropped", dropped}}}},
                  {{"port", 7}, {"name", "RLU1Q"}, {"counters", nullptr}}})},
            {"delays", std::move(delays)}};
}

fields delays(uint64_t frames, uint64_t sum, uint64_t waiting)
{
    return fields::array({{{"port", 6}, {"frames", frames}, {"sum", sum}, {"waiting_octets", waiting}}});
}

TEST(QueueHistory, AStepHasWhatChangedAndTheBacklogAtItsEnd)
{
    queue_history history;
    history.add(0, sample(100, 1, delays(10, 1'000, 5)));
    history.add(50, sample(400, 3, delays(14, 1'200, 7)));
    history.add(90, sample(400, 3, delays(14, 1'200, 9)));
    const auto queues = history.steps();
    ASSERT_EQ(queues.size(), 1u) << "the library does not find the other one";
    EXPECT_EQ(queues[0].name, "RLU1P");
    ASSERT_EQ(queues[0].steps.size(), 2u);
    const plotted_step &first = queues[0].steps[0];
    EXPECT_EQ(first.begin, 0u);
    EXPECT_EQ(first.end, 50u);
    EXPECT_EQ(first.octets_sent, 300u);
    EXPECT_EQ(first.backlog, 7u);
    EXPECT_EQ(first.delay, 50u);
    EXPECT_EQ(first.dropped, 2u);
    const plotted_step &second = queues[0].steps[1];
    EXPECT_EQ(second.begin, 50u);
    EXPECT_EQ(second.backlog, 9u);
    EXPECT_EQ(second.delay, std::nullopt) << "no frame left";
}

TEST(QueueHistory, AQueueBeginsAtItsSecondSample)
{
    queue_history history;
    history.add(0, {{"queues", fields::array()}, {"delays", fields::array()}});
    history.add(50, sample(100, 1, fields::array()));
    history.add(90, sample(400, 1, fields::array()));
    const auto queues = history.steps();
    ASSERT_EQ(queues.size(), 1u);
    ASSERT_EQ(queues[0].steps.size(), 1u);
    EXPECT_EQ(queues[0].steps[0].begin, 50u);
    EXPECT_EQ(queues[0].steps[0].octets_sent, 300u);
}

TEST(QueueHistory, WhereNothingTellsOfDelaysTheyAreNotKnown)
{
    queue_history history;
    history.add(0, sample(0, 0, fields::array()));
    history.add(1, sample(8, 0, fields::array()));
    const auto queues = history.steps();
    ASSERT_EQ(queues.size(), 1u);
    EXPECT_EQ(queues[0].steps[0].octets_sent, 8u);
    EXPECT_EQ(queues[0].steps[0].backlog, std::nullopt);
    EXPECT_EQ(queues[0].steps[0].delay, std::nullopt);
}

TEST(QueueHistory, CountersThatWereResetCountFromZero)
{
    queue_history history;
    history.add(0, sample(1'000, 9, fields::array()));
    history.add(1, sample(30, 2, fields::array()));
    EXPECT_EQ(history.steps()[0].steps[0].octets_sent, 30u);
    EXPECT_EQ(history.steps()[0].steps[0].dropped, 2u);
}

TEST(QueueHistory, OfManySamplesAFewHundredStepsAreLeftAndNothingIsLost)
{
    queue_history history;
    for (uint64_t time = 0; time <= 10'000; ++time) {
        history.add(time, sample(3 * time, time / 10, fields::array()));
        const auto queues = history.steps();
        if (time == 0)
            continue;
        const std::vector<plotted_step> &steps = queues[0].steps;
        ASSERT_LE(steps.size(), 400u);
        ASSERT_EQ(steps.back().end, time);
        const auto octets = [](uint64_t sum, const plotted_step &step) { return sum + step.octets_sent; };
        ASSERT_EQ(std::accumulate(steps.begin(), steps.end(), uint64_t{0}, octets), 3 * time);
        for (size_t next = 1; next + 1 < steps.size(); ++next)
            ASSERT_EQ(steps[next].end - steps[next].begin, steps[0].end - steps[0].begin);
    }
    EXPECT_GE(history.steps()[0].steps.size(), 200u);
}

} // namespace
} // namespace kelctl

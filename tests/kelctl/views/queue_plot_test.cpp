// The gnuplot script for given queues.
#include "kelctl/views/queue_plot.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kelctl
{
namespace
{

using testing::HasSubstr;
using testing::Not;

constexpr plot_titles titles = {.time = "time", .delay = "mean delay"};
constexpr uint64_t ms = 1'000'000;

TEST(QueuePlot, AStepIsALineFromItsBeginningToItsEndAndItsDropsAMark)
{
    const std::string plot = queue_plot({{"RLU1P",
                                          {{0, 2 * ms, 1'000, 512, 3 * ms, 0}, //
                                           {2 * ms, 4 * ms, 0, 2'048, std::nullopt, 7}}}},
                                        titles);
    EXPECT_THAT(plot, HasSubstr("$queue0 << END\n"
                                "0 4 0.5 3 NaN\n"
                                "2 4 0.5 3 NaN\n"
                                "2 0 2 NaN 2\n"
                                "4 0 2 NaN NaN\n"
                                "END\n"));
    EXPECT_THAT(plot, HasSubstr("title \"RLU1P\""));
    EXPECT_THAT(plot, HasSubstr("title \"RLU1P drops\""));
    EXPECT_THAT(plot, HasSubstr("set xrange [0:4]\n"));
    EXPECT_THAT(plot, HasSubstr("set xlabel \"time, ms\"\nset ylabel \"mean delay, ms\""));
}

TEST(QueuePlot, QueuesWithoutFramesHaveNoLine)
{
    const plotted_queue idle = {"RLU1P", {{0, ms, 0, 0, std::nullopt, 0}}};
    const plotted_queue unknown = {"RLU1Q", {{0, ms, 0, std::nullopt, std::nullopt, 0}}};
    const plotted_queue dropping = {"RLU1R", {{0, ms, 0, std::nullopt, std::nullopt, 1}}};
    const plotted_queue stuck = {"RLU2P", {{0, ms, 0, 1'024, std::nullopt, 0}}};
    const std::string plot = queue_plot({idle, unknown, dropping, stuck}, titles);
    EXPECT_THAT(plot, HasSubstr("title \"RLU2P\""));
    EXPECT_THAT(plot, Not(HasSubstr("RLU1P")));
    EXPECT_THAT(plot, Not(HasSubstr("RLU1Q")));
    EXPECT_THAT(plot, HasSubstr("0 0 NaN NaN 0\n")) << "drops are marked although the backlog is not known";
    EXPECT_THAT(plot, HasSubstr("title \"RLU1R drops\""));
}

TEST(QueuePlot, ALongTimeIsInSeconds)
{
    const std::string plot = queue_plot({{"RLU1P", {{0, 60'000 * ms, 1, 0, 0, 0}}}}, titles);
    EXPECT_THAT(plot, HasSubstr("set xrange [0:60]\n"));
    EXPECT_THAT(plot, HasSubstr("set xlabel \"time, s\"\n"));
}

TEST(QueuePlot, NothingIsStillAPicture)
{
    EXPECT_THAT(queue_plot({}, titles), HasSubstr("plot NaN notitle\n"));
}

} // namespace
} // namespace kelctl

// Tables of given counters and rates, as a terminal without an end to its lines shows them.
#include "kelctl/views/counter_tables.h"

#include "kelctl/results/fields_view.h"
#include "terminal/terminal.h"

#include <gtest/gtest.h>

#include <sstream>

namespace kelctl
{
namespace
{

std::string plain(const fields &shown)
{
    return fields_text(shown, {terminal::painter(false)});
}

const fields nothing_read = {
    {"ebcom", nullptr}, {"queues", fields::array()}, {"pceps", fields::array()}, {"delays", fields::array()}};

TEST(StatisticsTables, NothingReadIsAnEmptyText)
{
    EXPECT_EQ(plain(statistics_tables(nothing_read)), "");
}

TEST(StatisticsTables, DelaysAreInMicrosecondsAndIdleQueuesHaveNoRow)
{
    const auto of = [](const char *name, uint64_t frames) -> fields {
        return {{"port", 6},
                {"name", name},
                {"frames", frames},
                {"sum", 2},
                {"median", 1'234 * frames},
                {"p99", 5'000'050 * frames},
                {"largest", 6'000'149 * frames},
                {"deepest_frames", 7 * frames},
                {"deepest_octets", 8 * frames}};
    };
    fields read = nothing_read;
    read["delays"] = fields::array({of("RLU1P", 1), of("RLU1Q", 0)});
    EXPECT_EQ(plain(statistics_tables(read)), "       median     99 %  largest     most     most\n"
                                              "       delay,  within,   delay,   frames   octets\n"
                                              "queue      us       us       us  waiting  waiting\n"
                                              "RLU1P     1.2   5000.0   6000.1        7        8\n");
}

TEST(StatisticsTables, EveryCounterOfAQueueHasItsColumn)
{
    fields read = nothing_read;
    read["queues"] = fields::array({{{"port", 19},
                                     {"name", "RLU1R"},
                                     {"counters",
                                      {{"mem_blks_in_use", 1},
                                       {"pkts_out_standing", 2},
                                       {"pkts_dropped", 3},
                                       {"pkts_tx", 4},
                                       {"pkts_rx", 5},
                                       {"octets_dropped", 6},
                                       {"octets_tx", 7},
                                       {"octets_rx", 0x1'0000'0005}}}},
                                    {{"port", 7}, {"name", "RLU1Q"}, {"counters", nullptr}}});
    EXPECT_EQ(plain(statistics_tables(read)),
              "       packets  packets  packets  packets              octets   octets  blocks\n"
              "queue       in      out  dropped  waiting   octets in     out  dropped  in use\n"
              "RLU1R        5        4        3        2  4294967301       7        6       1\n"
              "RLU1Q        -        -        -        -           -       -        -       -\n"
              "-  unknown: the library looks its destinations up on other queues\n");
}

TEST(StatisticsTables, BlocksOfTheServiceHaveTheFormattingLibrarysNames)
{
    fields read = nothing_read;
    read["ebcom"] = fields{{"Global", {{"frames_sent", 3}}}};
    EXPECT_EQ(plain(statistics_tables(read)), "Global\nframes sent  3\n");
}

TEST(StatisticsTables, EveryPcepHasARowOfAllItsBlocks)
{
    fields read = nothing_read;
    read["pceps"] = fields::array(
        {{{"id", 1}, {"counters", {{"In", {{"frames", 10}}}, {"Out", {{"frames", 3}, {"octets", 4}}}}}},
         {{"id", 300}, {"counters", {{"In", {{"frames", 20}}}, {"Out", {{"frames", 5}, {"octets", 6}}}}}}});
    EXPECT_EQ(plain(statistics_tables(read)), "PCEP  frames  Out frames  octets\n"
                                              "   1      10           3       4\n"
                                              " 300      20           5       6\n");
}

TEST(StatisticsTables, TextThatIsNoDocumentIsShown)
{
    fields read = nothing_read;
    read["ebcom"] = "one\ntwo\n";
    EXPECT_EQ(plain(statistics_tables(read)), "ebcom  one\ntwo\n\n");
}

TEST(RatesTables, EveryNumberHasItsColumn)
{
    const fields sent = {{"frames", 1}, {"frames_per_second", 2}, {"kbit_per_second", 3}};
    const fields received = {{"frames", 4}, {"frames_per_second", 5}, {"kbit_per_second", 6}};
    const fields rates = {
        {"nanoseconds", 1'200'345'678},
        {"time", "real"},
        {"queues",
         fields::array({{{"port", 6}, {"name", "RLU1P"}, {"sent", sent}, {"frames_dropped", 4}, {"frames_waiting", 5}},
                        {{"port", 10},
                         {"name", "RLU3P"},
                         {"sent", nullptr},
                         {"frames_dropped", nullptr},
                         {"frames_waiting", nullptr}}})},
        {"pceps", fields::array({{{"id", 511}, {"sent", sent}, {"received", received}, {"frames_dropped", 7}}})},
        {"delays", fields::array()}};
    EXPECT_EQ(plain(rates_tables(rates)), "time    1200 ms\n"
                                          "\n"
                                          "queue  frames/s  kbit/s  frames sent  frames dropped  frames waiting\n"
                                          "RLU1P         2       3            1               4               5\n"
                                          "RLU3P         -       -            -               -               -\n"
                                          "-       unknown: the library looks its destinations up on other queues\n"
                                          "delays  not known on this platform\n"
                                          "\n"
                                          "          sent    sent  frames  received  received    frames   frames\n"
                                          "PCEP  frames/s  kbit/s    sent  frames/s    kbit/s  received  dropped\n"
                                          " 511         2       3       1         5         6         4        7\n");
}

TEST(RatesTables, FitFortyColumns)
{
    const fields flow = {{"frames", 4'294'967'295}, {"frames_per_second", 14'880'952}, {"kbit_per_second", 10'000'000}};
    const fields rates = {
        {"nanoseconds", 123'456'789'000'000},
        {"time", "virtual"},
        {"queues", fields::array({{{"port", 6},
                                   {"name", "RLU1P"},
                                   {"sent", flow},
                                   {"frames_dropped", 4'294'967'295},
                                   {"frames_waiting", 4'294'967'295}}})},
        {"pceps",
         fields::array({{{"id", 511}, {"sent", flow}, {"received", flow}, {"frames_dropped", 4'294'967'295}}})},
        {"delays", fields::array({{{"name", "RLU1P"},
                                   {"frames", 1},
                                   {"median", 1'000'000'000'000},
                                   {"p99", 1'000'000'000'000},
                                   {"largest", 1'000'000'000'000},
                                   {"deepest_frames", 4'294'967'295},
                                   {"deepest_octets", 4'294'967'295}}})}};
    std::istringstream lines(fields_text(rates_tables(rates), {.paint = terminal::painter(false), .width = 40}));
    size_t count = 0;
    for (std::string line; std::getline(lines, line); ++count)
        EXPECT_LE(line.size(), 40u) << line;
    EXPECT_GT(count, 20u);
}

TEST(RatesTables, NodeWithoutQueuesAndPcepsHasItsTimeOnly)
{
    EXPECT_EQ(plain(rates_tables({{"nanoseconds", 0},
                                  {"time", "virtual"},
                                  {"queues", fields::array()},
                                  {"pceps", fields::array()},
                                  {"delays", fields::array()}})),
              "virtual time  0 ns\n");
}

} // namespace
} // namespace kelctl

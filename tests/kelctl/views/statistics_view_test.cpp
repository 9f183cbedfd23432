// Rendering of given counters.
#include "kelctl/views/statistics_view.h"

#include "notation/json.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kelctl
{
namespace
{

const painter plain(false);

TEST(StatisticsView, NothingReadIsAnEmptyText)
{
    EXPECT_EQ(statistics_view({}, plain), "");
}

TEST(StatisticsView, EveryCounterOfAQueueHasItsColumn)
{
    statistics read;
    read.queues = {{.port = 19,
                    .stats = ebcom_queue_stats{.mem_blks_in_use = 1,
                                               .pkts_out_standing = 2,
                                               .pkts_dropped = 3,
                                               .pkts_tx = 4,
                                               .pkts_rx = 5,
                                               .octets_dropped = 6,
                                               .octets_tx = 7,
                                               .octets_rx = 0x1'0000'0005,
                                               .max_burst_size = 0,
                                               .current_burst_size = 0}},
                   {.port = 7, .stats = std::nullopt}};
    EXPECT_EQ(statistics_view(read, plain),
              "Queues                 packets                          octets            blocks\n"
              "           received    sent dropped waiting  received      sent   dropped in use\n"
              "RLU1R (19)        5       4       3       2 4294967301         7         6      1\n"
              "RLU1Q (7)    not known: the library finds its destinations on other queues\n"
              "\n");
}

TEST(StatisticsView, TextOfTheServiceEndsWithAnEmptyLine)
{
    statistics read;
    read.ebcom = "counters\n";
    EXPECT_EQ(statistics_view(read, plain), "counters\n\n");
    read.ebcom = "counters";
    EXPECT_EQ(statistics_view(read, plain), "counters\n\n");
}

TEST(StatisticsView, PcepsStandSideBySide)
{
    statistics read;
    read.pceps = {{1, "in 10\n"}, {300, "in 20\n"}};
    EXPECT_EQ(statistics_view(read, plain), "PCEP         1       300\n"
                                            "in          10        20\n"
                                            "\n");
}

TEST(StatisticsView, HeadingsArePaintedLineByLine)
{
    statistics read;
    read.queues = {{.port = 7, .stats = std::nullopt}};
    const std::string view = statistics_view(read, painter(true));
    EXPECT_THAT(view, testing::StartsWith("\x1b[1mQueues "));
    EXPECT_THAT(view, testing::HasSubstr(" in use\x1b[0m\nRLU1Q"));
}

TEST(StatisticsView, FieldsHaveEveryQueueAndPcep)
{
    statistics read;
    read.ebcom = "text";
    read.queues = {{.port = 6, .stats = std::nullopt}, {.port = 7, .stats = ebcom_queue_stats{}}};
    read.queues[1].stats->octets_rx = 0x1'0000'0005;
    read.pceps = {{7, "lines"}};
    fields shown = statistics_fields(read);
    EXPECT_EQ(shown["ebcom"], "text");
    EXPECT_EQ(notation::to_json(shown["queues"][0]), R"({"port":6,"name":"RLU1P","counters":null})");
    EXPECT_EQ(shown["queues"][1]["counters"]["octets_rx"], 0x1'0000'0005);
    EXPECT_EQ(shown["queues"][1]["counters"].size(), 10u);
    EXPECT_EQ(notation::to_json(shown["pceps"]), R"([{"id":7,"text":"lines"}])");
}

} // namespace
} // namespace kelctl

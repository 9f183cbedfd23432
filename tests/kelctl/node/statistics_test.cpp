// Reading the counters of a node of the software accelerator.
#include "kelctl/node/statistics.h"

#include "kelctl/jobs/take_down.h"
#include "kelctl/node/read_back.h"
#include "notation/json.h"
#include "script_session.h"
#include "softnode/softnode.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kelctl
{
namespace
{

using testing::IsEmpty;
using testing::SizeIs;

// One value of each row, as JSON.
std::string each(const result &read, const char *rows, const char *name)
{
    fields values = fields::array();
    for (const fields &row : read.shown.at(rows))
        values.push_back(row.at(name));
    return notation::to_json(values);
}

class Statistics : public testing::Test
{
protected:
    Statistics()
    {
        softnode_reset();
        // Port 7 shares its only destination with port 6, where the library finds it.
        for (const char *line :
             {"ebcom start", "ebcom path add 02:00:00:02:00:01 --port 6", "ebcom path add 02:00:00:02:00:01 --port 7",
              "ebcom path add 02:00:00:02:00:02 --port 42", "pcep start",
              "pcep add 9 --remote-id 1 --local 02:00:00:02:00:01 --remote 02:00:00:02:00:02 --vlan 1",
              "pcep add 3 --remote-id 1 --local 02:00:00:02:00:01 --remote 02:00:00:02:00:02 --vlan 1"})
            EXPECT_EQ(here.run(line).status, exit_done) << line;
    }

    ~Statistics() override
    {
        take_down(here);
    }

    result read_with(const char *faults)
    {
        EXPECT_EQ(softnode_faults_add(faults), nullptr);
        settle();
        const fields held = queues_now();
        result read = read_statistics(held, ports_of(held, here.paths), here);
        softnode_faults_clear();
        return read;
    }

    script_session here;
};

TEST_F(Statistics, EveryQueueAndEveryPcepIsRead)
{
    const result read = read_with("");
    EXPECT_THAT(read.failures, IsEmpty());
    EXPECT_EQ(read.status, exit_done);
    EXPECT_EQ(read.shown.at("ebcom").at("EBCOM global statistics").at("pceps"), 2);
    EXPECT_EQ(each(read, "queues", "port"), "[6,7,42]");
    EXPECT_EQ(each(read, "queues", "name"), R"(["RLU1P","RLU1Q","RLU4W"])");
    EXPECT_EQ(each(read, "pceps", "id"), "[9,3]");
    EXPECT_EQ(read.shown.at("pceps")[0].at("counters").at("PCEP inbound statistics").at("frames_received"), 0);
}

TEST_F(Statistics, QueueThatNoDestinationLeadsToHasNoCounters)
{
    const result read = read_with("");
    const fields &queues = read.shown.at("queues");
    ASSERT_THAT(queues, SizeIs(3));
    EXPECT_EQ(queues[0].at("counters").size(), 10u);
    EXPECT_TRUE(queues[1].at("counters").is_null());
    EXPECT_EQ(queues[2].at("counters").size(), 10u);
}

TEST_F(Statistics, QueueOfNoKnownPortHasNoDelays)
{
    EXPECT_THAT(read_counters(queues_now(), {}, {}, here).shown.at("delays"), IsEmpty());
    const fields held = queues_now();
    EXPECT_THAT(read_counters(held, ports_of(held, here.paths), {}, here).shown.at("delays"), SizeIs(3));
}

TEST_F(Statistics, FailedReadingOfTheServiceIsToldAndTheRestIsRead)
{
    const result read = read_with("ork_ebcom_global_statistics_get=-1");
    ASSERT_THAT(read.failures, SizeIs(1));
    EXPECT_EQ(read.failures[0].operation, "kel_core_ic_ebcom_global_fmt_stats_get(format=2)");
    EXPECT_EQ(read.failures[0].code, 13u);
    EXPECT_TRUE(read.shown.at("ebcom").is_null());
    EXPECT_THAT(read.shown.at("queues"), SizeIs(3));
    EXPECT_THAT(read.shown.at("pceps"), SizeIs(2));
}

TEST_F(Statistics, FailedReadingOfAQueueNamesTheDestination)
{
    const result read = read_with("kel_init_qos_queue_stats_get:2=10");
    ASSERT_THAT(read.failures, SizeIs(1));
    EXPECT_EQ(read.failures[0].operation, "kel_core_ic_ebcom_queue_stats_get(dst_mac=02:00:00:02:00:02)");
    EXPECT_EQ(read.failures[0].code, 10u);
    EXPECT_EQ(each(read, "queues", "port"), "[6,7]");
}

TEST_F(Statistics, FailedReadingOfAPcepNamesItsId)
{
    const result read = read_with("ork_ebcom_pcep_statistics_get:1=-8");
    ASSERT_THAT(read.failures, SizeIs(1));
    EXPECT_EQ(read.failures[0].operation, "kel_core_ic_pcep_fmt_stats_get(pcep_id=9, format=2)");
    EXPECT_EQ(each(read, "pceps", "id"), "[3]");
}

TEST_F(Statistics, TextThatDoesNotEndWellIsAFailureToo)
{
    const result read = read_with("kel_fmt_end=10");
    EXPECT_THAT(read.failures, SizeIs(3));
    EXPECT_TRUE(read.shown.at("ebcom").is_null());
    EXPECT_THAT(read.shown.at("pceps"), IsEmpty());
}

} // namespace
} // namespace kelctl

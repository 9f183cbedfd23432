// Reading the counters of a node that stands on the software accelerator.
#include "kelctl/node/statistics.h"

#include "kelctl/jobs/take_down.h"
#include "kelctl/node/standing.h"
#include "script_session.h"
#include "softnode/softnode.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kelctl
{
namespace
{

using testing::ElementsAre;
using testing::Field;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

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

    statistics read_with(const char *faults)
    {
        EXPECT_EQ(softnode_faults_add(faults), nullptr);
        statistics read = read_statistics(ports_of(read_snapshot(settled_document().value()), here.paths.all()), here);
        softnode_faults_clear();
        return read;
    }

    script_session here;
};

TEST_F(Statistics, EveryQueueAndEveryPcepIsRead)
{
    const statistics read = read_with("");
    EXPECT_THAT(read.failures, IsEmpty());
    EXPECT_THAT(read.ebcom, HasSubstr("EBCOM"));
    EXPECT_THAT(read.queues, ElementsAre(Field(&queue_counters::port, 6), Field(&queue_counters::port, 7),
                                         Field(&queue_counters::port, 42)));
    ASSERT_THAT(read.pceps, ElementsAre(Field(&pcep_counters::id, 9), Field(&pcep_counters::id, 3)));
    EXPECT_THAT(read.pceps[0].text, HasSubstr("PCEP inbound"));
}

TEST_F(Statistics, QueueThatNoDestinationLeadsToHasNoCounters)
{
    const statistics read = read_with("");
    ASSERT_THAT(read.queues, SizeIs(3));
    EXPECT_TRUE(read.queues[0].stats);
    EXPECT_FALSE(read.queues[1].stats);
    EXPECT_TRUE(read.queues[2].stats);
}

TEST_F(Statistics, FailedReadingOfTheServiceIsToldAndTheRestIsRead)
{
    const statistics read = read_with("ork_ebcom_global_statistics_get=-1");
    ASSERT_THAT(read.failures, SizeIs(1));
    EXPECT_EQ(read.failures[0].operation, "kel_core_ic_ebcom_global_fmt_stats_get(format=0)");
    EXPECT_EQ(read.failures[0].code, 13u);
    EXPECT_EQ(read.ebcom, "");
    EXPECT_THAT(read.queues, SizeIs(3));
    EXPECT_THAT(read.pceps, SizeIs(2));
}

TEST_F(Statistics, FailedReadingOfAQueueNamesTheDestination)
{
    const statistics read = read_with("kel_init_qos_queue_stats_get:2=10");
    ASSERT_THAT(read.failures, SizeIs(1));
    EXPECT_EQ(read.failures[0].operation, "kel_core_ic_ebcom_queue_stats_get(dst_mac=02:00:00:02:00:02)");
    EXPECT_EQ(read.failures[0].code, 10u);
    EXPECT_THAT(read.queues, ElementsAre(Field(&queue_counters::port, 6), Field(&queue_counters::port, 7)));
}

TEST_F(Statistics, FailedReadingOfAPcepNamesItsId)
{
    const statistics read = read_with("ork_ebcom_pcep_statistics_get:1=-8");
    ASSERT_THAT(read.failures, SizeIs(1));
    EXPECT_EQ(read.failures[0].operation, "kel_core_ic_pcep_fmt_stats_get(pcep_id=9, format=0)");
    EXPECT_THAT(read.pceps, ElementsAre(Field(&pcep_counters::id, 3)));
}

TEST_F(Statistics, TextThatDoesNotEndWellIsAFailureToo)
{
    const statistics read = read_with("kel_fmt_end=10");
    EXPECT_THAT(read.failures, SizeIs(3));
    EXPECT_EQ(read.ebcom, "");
    EXPECT_THAT(read.pceps, IsEmpty());
}

} // namespace
} // namespace kelctl

// Reading the counters of a node that stands on the software accelerator.
#include "kelctl/statistics.h"

#include "kelctl/ebcom_steps.h"
#include "kelctl/pcep_steps.h"
#include "kelctl/standing.h"
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

path_entry path(const char *mac, int32_t port)
{
    path_entry made;
    made.dst_mac = parse_mac_address(mac).value();
    made.port = port;
    return made;
}

pcep_entry pcep(uint32_t id)
{
    pcep_entry made;
    made.id = id;
    made.local_mac = parse_mac_address("02:00:00:02:00:01").value();
    made.remote_mac = parse_mac_address("02:00:00:02:00:02").value();
    return made;
}

class Statistics : public testing::Test
{
protected:
    Statistics()
    {
        softnode_reset();
        node.ebcom = {1500, 0x88B5, {1, 2}};
        // Port 7 shares its only destination with port 6, where the library finds it.
        node.paths = {path("02:00:00:02:00:01", 6), path("02:00:00:02:00:01", 7), path("02:00:00:02:00:02", 42)};
        node.pceps = {pcep(9), pcep(3)};
    }

    statistics read_with(const char *faults)
    {
        const auto paths = path_configurations(node);
        bring_up ebcom(ebcom_steps(node.ebcom, paths), log);
        bring_up pceps(pcep_steps(node), log);
        EXPECT_FALSE(ebcom.up([](size_t) {}));
        EXPECT_FALSE(pceps.up([](size_t) {}));
        EXPECT_EQ(softnode_faults_add(faults), nullptr);
        statistics read = read_statistics(ports_of(settled_snapshot().value(), paths), node.pceps, log);
        softnode_faults_clear();
        return read;
    }

    node_file node;
    trace_log log{nullptr};
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

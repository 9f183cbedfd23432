// The EBCOM steps of a node file, made on the software accelerator.
#include "kelctl/ebcom_steps.h"

#include "kelctl/standing.h"
#include "softnode/softnode.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kelctl
{
namespace
{

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

node_file small_node()
{
    path_entry shaped;
    shaped.dst_mac = parse_mac_address("02:00:00:02:00:01").value();
    shaped.port = 6;
    shaped.shaping = {.rate = 100'000, .burst = 65'536, .threshold = 1024};
    path_entry counted;
    counted.dst_mac = parse_mac_address("02:00:00:03:00:fe").value();
    counted.port = 42;
    counted.count = 3;
    node_file node;
    node.ebcom = {1500, 0x88B5, {1, 2}};
    node.paths = {shaped, counted};
    return node;
}

TEST(EbcomSteps, CountBecomesSoManyPaths)
{
    const auto paths = path_configurations(small_node());
    ASSERT_THAT(paths, SizeIs(4));
    EXPECT_THAT(paths[1].dst_mac, ElementsAre(2, 0, 0, 3, 0, 0xFE));
    EXPECT_THAT(paths[3].dst_mac, ElementsAre(2, 0, 0, 3, 1, 0));
    EXPECT_EQ(paths[3].iell_port, 42);
}

TEST(EbcomSteps, ThresholdIsPassedInBlocksOf256Octets)
{
    const auto paths = path_configurations(small_node());
    EXPECT_EQ(paths[0].shaping_enabled, 1);
    EXPECT_EQ(paths[0].shaping_rate, 100'000u);
    EXPECT_EQ(paths[0].burst_size, 65'536u);
    EXPECT_EQ(paths[0].buffer_threshold, 4u);
}

TEST(EbcomSteps, UnshapedPathsCarryNoRateAndNoBurst)
{
    const auto paths = path_configurations(small_node());
    EXPECT_EQ(paths[1].shaping_enabled, 0);
    EXPECT_EQ(paths[1].shaping_rate, 0u);
    EXPECT_EQ(paths[1].burst_size, 0u);
}

TEST(EbcomSteps, EveryStepSaysItsOperationWithArguments)
{
    const node_file node = small_node();
    const auto paths = path_configurations(node);
    const auto steps = ebcom_steps(node.ebcom, paths);
    ASSERT_THAT(steps, SizeIs(7));
    EXPECT_EQ(steps[0].make.text(),
              "kel_core_ic_ebcom_global_param_set(icPortMTU=1500, etherType=0x88b5, settings=1, 2)");
    EXPECT_EQ(steps[1].make.text(), "kel_core_ic_ebcom_interface_create()");
    EXPECT_EQ(steps[1].undo.text(), "kel_core_ic_ebcom_interface_delete()");
    EXPECT_EQ(steps[2].make.text(), "kel_core_ic_ebcom_start()");
    EXPECT_EQ(steps[2].undo.text(), "kel_core_ic_ebcom_stop()");
    EXPECT_EQ(steps[3].make.text(), "kel_core_ic_ebcom_path_add(dst_mac=02:00:00:02:00:01, port=RLU1P (6), "
                                    "rate=100 Mbit/s, burst=64 KiB, threshold=1 KiB)");
    EXPECT_EQ(steps[6].undo.text(), "kel_core_ic_ebcom_path_rem(dst_mac=02:00:00:03:01:00, port=RLU4W (42), unshaped)");
}

TEST(EbcomSteps, BringTheNodeUpAndDown)
{
    softnode_reset();
    const node_file node = small_node();
    const auto paths = path_configurations(node);
    trace_log log(nullptr);
    bring_up standing(ebcom_steps(node.ebcom, paths), log);
    ASSERT_FALSE(standing.up([](size_t) {}));

    const auto up = settled_snapshot();
    ASSERT_TRUE(up);
    EXPECT_EQ(up->globals->mtu, 1500);
    EXPECT_TRUE(up->interface);
    EXPECT_THAT(up->schedulers, SizeIs(12));
    ASSERT_THAT(up->queues, SizeIs(2));
    EXPECT_EQ(up->queues[0].rate, 100'000u);
    EXPECT_EQ(up->queues[0].burst, 65'536u);
    EXPECT_EQ(up->queues[0].threshold, 1024u);
    EXPECT_FALSE(up->queues[1].shaped);
    EXPECT_THAT(up->paths, SizeIs(4));

    EXPECT_THAT(standing.down().refused, IsEmpty());
    EXPECT_TRUE(current_snapshot()->empty());
}

} // namespace
} // namespace kelctl

// Reading of given documents.
#include "kelctl/accelerator/snapshot.h"

#include "notation/json.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kelctl
{
namespace
{

using notation::document;
using testing::ElementsAre;
using testing::SizeIs;

document empty_document()
{
    return notation::read_json(R"({"schedulers": [], "queues": [], "paths": [], "pceps": [], "bindings": [],
                                   "groups": [], "interface": null, "globals": null, "timestamp_offset": null})");
}

TEST(Snapshot, NodeJustSwitchedOnIsEmpty)
{
    const snapshot node = read_snapshot(empty_document());
    EXPECT_TRUE(node.empty());
    EXPECT_FALSE(node.globals);
    EXPECT_FALSE(node.timestamp_offset);
}

TEST(Snapshot, EveryKindOfObjectIsRead)
{
    document shown = empty_document();
    shown["schedulers"] = document::array(
        {{{"handle", "0x5c00000001"}, {"parent", nullptr}}, {{"handle", "0x5c00000002"}, {"parent", "0x5c00000001"}}});
    shown["queues"] = document::array({{{"handle", "0x5d00000001"},
                                        {"scheduler", "0x5c00000002"},
                                        {"rate", 4'000'000'000u},
                                        {"threshold", 512},
                                        {"bucket_size", 9},
                                        {"shaped", true}}});
    shown["paths"] = document::array({{{"mac", "02:00:00:02:00:01"}, {"queue", "0x5d00000001"}},
                                      {{"mac", "02:00:00:02:00:02"}, {"queue", nullptr}}});
    shown["interface"] = {{"eth_dev_id", 7}, {"vsi", 258}};
    shown["globals"] = {{"mtu", 1500}, {"ether_type", 0x88B5}, {"settings", document::array({3, 4})}};
    shown["timestamp_offset"] = -160;

    const snapshot node = read_snapshot(shown);
    ASSERT_THAT(node.schedulers, SizeIs(2));
    EXPECT_EQ(node.schedulers[0].parent, 0u);
    EXPECT_EQ(node.schedulers[1].parent, 0x5c00000001u);
    ASSERT_THAT(node.queues, SizeIs(1));
    EXPECT_EQ(node.queues[0].self, 0x5d00000001u);
    EXPECT_EQ(node.queues[0].scheduler, 0x5c00000002u);
    EXPECT_EQ(node.queues[0].rate, 4'000'000'000u);
    EXPECT_EQ(node.queues[0].threshold, 512u);
    EXPECT_EQ(node.queues[0].burst, 9u);
    EXPECT_TRUE(node.queues[0].shaped);
    ASSERT_THAT(node.paths, SizeIs(2));
    EXPECT_EQ(to_text(node.paths[0].mac), "02:00:00:02:00:01");
    EXPECT_EQ(node.paths[0].queue, 0x5d00000001u);
    EXPECT_EQ(node.paths[1].queue, 0u);
    EXPECT_EQ(node.interface->eth_dev_id, 7);
    EXPECT_EQ(node.interface->vsi, 258);
    EXPECT_EQ(node.globals->mtu, 1500);
    EXPECT_EQ(node.globals->ether_type, 0x88B5);
    EXPECT_EQ(node.globals->settings, (std::array<uint8_t, 2>{3, 4}));
    EXPECT_EQ(node.timestamp_offset, -160);
}

TEST(Snapshot, PcepsBindingsAndGroupsAreRead)
{
    document shown = empty_document();
    shown["pceps"] = document::array({{{"id", 7},
                                       {"remote_id", 0xFFFFFF},
                                       {"local_mac", "02:00:00:03:00:01"},
                                       {"remote_mac", "02:00:00:02:00:01"},
                                       {"vlan", 4095},
                                       {"priority", 7}},
                                      {{"id", 511},
                                       {"remote_id", 0},
                                       {"local_mac", "02:00:00:03:00:02"},
                                       {"remote_mac", "02:00:00:02:00:02"},
                                       {"vlan", 0},
                                       {"priority", 0}}});
    shown["bindings"] = document::array({{{"pcep", 511}, {"target", "0x5e00000001"}}});
    shown["groups"] = document::array(
        {{{"id", 300}, {"members", document::array({511, 7})}}, {{"id", 1}, {"members", document::array()}}});

    const snapshot node = read_snapshot(shown);
    ASSERT_THAT(node.pceps, SizeIs(2));
    EXPECT_EQ(node.pceps[0].id, 7u);
    EXPECT_EQ(node.pceps[0].remote_id, 0xFFFFFFu);
    EXPECT_EQ(to_text(node.pceps[0].local_mac), "02:00:00:03:00:01");
    EXPECT_EQ(to_text(node.pceps[0].remote_mac), "02:00:00:02:00:01");
    EXPECT_EQ(node.pceps[0].vlan, 4095);
    EXPECT_EQ(node.pceps[0].priority, 7);
    EXPECT_FALSE(node.pceps[0].bound);
    EXPECT_TRUE(node.pceps[1].bound);
    ASSERT_THAT(node.groups, SizeIs(2));
    EXPECT_EQ(node.groups[0].id, 300u);
    EXPECT_THAT(node.groups[0].members, ElementsAre(511, 7));
    EXPECT_THAT(node.groups[1].members, SizeIs(0));
}

TEST(Snapshot, ParametersAndOffsetLeaveItEmpty)
{
    snapshot node;
    node.globals = snapshot::global_parameters{};
    node.timestamp_offset = 5;
    EXPECT_TRUE(node.empty());
}

TEST(Snapshot, AnyObjectMakesItNotEmpty)
{
    snapshot with_scheduler, with_queue, with_path, with_pcep, with_group, with_interface;
    with_scheduler.schedulers.resize(1);
    with_queue.queues.resize(1);
    with_path.paths.resize(1);
    with_pcep.pceps.resize(1);
    with_group.groups.resize(1);
    with_interface.interface = snapshot::interface_identity{7, 258};
    for (const snapshot &node : {with_scheduler, with_queue, with_path, with_pcep, with_group, with_interface})
        EXPECT_FALSE(node.empty());
}

TEST(Snapshot, OtherDocumentsAreRefused)
{
    EXPECT_THROW(read_snapshot(nullptr), notation::document_error);
    EXPECT_THROW(read_snapshot(document::object()), notation::document_error);
    EXPECT_THROW(read_snapshot(document::array()), notation::document_error);
}

} // namespace
} // namespace kelctl

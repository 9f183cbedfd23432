/*
 * inventory_test.cpp - the names of what a node holds, and what one holds beyond another.
 */
#include "softnode/views/inventory.h"

#include "node/traffic.h"

#include "softnode/common/facts.h"

#include <gtest/gtest.h>

#include <array>

using namespace softnode;

namespace
{

using Texts = std::vector<std::string>;

/* "kind name" of each item. */
Texts texts(const Inventory &items)
{
    Texts list;
    for (const Item &item : items)
        list.push_back(item.kind + " " + item.name);
    return list;
}

Texts held(const Node &node)
{
    return texts(inventory_of(node));
}

Handle add_scheduler(Node &node, Handle parent = Handle::null)
{
    const ork_qos_scheduler_params params = scheduler_params(parent);
    Handle scheduler = Handle::null;
    EXPECT_EQ(node.qos.create_scheduler(params, scheduler), Refusal::granted);
    return scheduler;
}

Handle add_queue(Node &node, Handle scheduler, const kel_init_qos_queue_params &params)
{
    Handle queue = Handle::null;
    EXPECT_EQ(node.qos.add_queue(params, facts::queue_kind, scheduler, facts::event_device, queue), Refusal::granted);
    return queue;
}

void add_pcep(Node &node, std::uint32_t id)
{
    ork_ebcom_pcep_params params{};
    params.localPcepId = id;
    params.byte28 = 1;
    Handle pcep = Handle::null;
    EXPECT_EQ(node.pceps.create_pcep(params, pcep), Refusal::granted);
}

Inventory items(const Texts &names)
{
    Inventory list;
    for (const std::string &name : names)
        list.push_back({"path", name});
    return list;
}

Texts beyond(const Texts &other, const Texts &names)
{
    Texts list;
    for (const Item &item : items_beyond(items(other), items(names)))
        list.push_back(item.name);
    return list;
}

} // namespace

TEST(Inventory, OfAFreshNodeIsEmpty)
{
    EXPECT_EQ(held(Node{}), Texts{});
}

TEST(Inventory, NamesSchedulersByTheirPlaces)
{
    Node node;
    const Handle first = add_scheduler(node);
    const Handle second = add_scheduler(node);
    add_scheduler(node, second);
    add_scheduler(node, add_scheduler(node, first));
    add_scheduler(node, second);
    EXPECT_EQ(held(node), (Texts{"scheduler 1", "scheduler 2", "scheduler 2.1", "scheduler 1.1", "scheduler 1.1.1",
                                 "scheduler 2.2"}));
}

TEST(Inventory, NamesSchedulersTheSameWhateverTheirHandles)
{
    Node node;
    const Handle deleted = add_scheduler(node);
    add_scheduler(node, add_scheduler(node));
    ASSERT_EQ(node.delete_scheduler(deleted), Refusal::granted);
    EXPECT_EQ(held(node), (Texts{"scheduler 1", "scheduler 1.1"}));
}

TEST(Inventory, NamesQueuesByWhatTheyAreMadeOf)
{
    Node node;
    const Handle scheduler = add_scheduler(node, add_scheduler(node));
    add_queue(node, scheduler, {1, 100'000, 1'048'576, 65'536});
    add_queue(node, scheduler, {1, 0, 5'120'000, 0});
    EXPECT_EQ(held(node), (Texts{"scheduler 1", "scheduler 1.1",
                                 "queue of scheduler 1.1: 100000 kbit/s, burst 65536, threshold 1048576",
                                 "queue of scheduler 1.1: unshaped, threshold 5120000"}));
}

TEST(Inventory, NamesPathsPcepsBindingsGroupsAndMembers)
{
    Node node;
    const Handle queue = add_queue(node, add_scheduler(node), {1, 0, 0, 0});
    ASSERT_EQ(node.create_path({{2, 0, 2, 2, 0, 1}, 2, 0, pointer_of(queue)}), Refusal::granted);
    add_pcep(node, 9);
    add_pcep(node, 7);
    ASSERT_EQ(node.pceps.bind(7, node.attachment.ehsfp_target()), Refusal::granted);
    Handle group = Handle::null;
    ASSERT_EQ(node.create_group({300, {}}, Handle::null, group), Refusal::granted);
    ASSERT_EQ(node.pceps.add_member(group, 9), Refusal::granted);
    EXPECT_EQ(held(node), (Texts{"scheduler 1", "queue of scheduler 1: unshaped, threshold 0", "path 02:00:02:02:00:01",
                                 "pcep 9", "pcep 7", "binding of pcep 7", "group 300", "member pcep 9 of group 300"}));
}

TEST(Inventory, NamesTheInterface)
{
    Node node;
    ASSERT_EQ(node.ebcom.create_interface(facts::event_device), Refusal::granted);
    EXPECT_EQ(held(node), (Texts{"interface on Ethernet device 7"}));
}

TEST(Inventory, NamesConnectionsByTheirStatesAndEventsByTheirTypes)
{
    Node node;
    node.timing.join(1);
    const Handle connection = node.timing.open(1);
    node.timing.open(2);
    ASSERT_EQ(node.timing.subscribe(connection, 0), Refusal::granted);
    std::array<vorn_tu_event *, 2> events{};
    for (const std::uint32_t type : {6U, 5U})
        node.timing.post({type, 0, 3});
    for (vorn_tu_event *&event : events)
        ASSERT_EQ(node.timing.take_event(connection, 1, event), Refusal::granted);
    EXPECT_EQ(held(node), (Texts{"timing connection working", "timing connection ended",
                                 "timing event type 5 of domain 3", "timing event type 6 of domain 3"}));
}

TEST(InventoryBeyond, IsNothingForTheSameItems)
{
    EXPECT_EQ(beyond({"a", "b"}, {"b", "a"}), Texts{});
    EXPECT_EQ(beyond({"a"}, {}), Texts{});
}

TEST(InventoryBeyond, KeepsItsOrder)
{
    EXPECT_EQ(beyond({"b"}, {"c", "b", "a"}), (Texts{"c", "a"}));
}

TEST(InventoryBeyond, CountsItemsOfOneName)
{
    EXPECT_EQ(beyond({"a"}, {"a", "a", "a"}), (Texts{"a", "a"}));
    EXPECT_EQ(beyond({"a", "a", "a"}, {"a"}), Texts{});
}

/*
 * inventory.cpp - naming everything a node holds, one function per kind.
 */
#include "softnode/views/inventory.h"

#include "softnode/common/mac.h"

#include <algorithm>
#include <cstddef>
#include <map>
#include <utility>

namespace softnode
{

namespace
{

using Numbers = std::map<Handle, std::string>;

/* A scheduler is created after its parent, so the parent's number is known by then. */
Numbers scheduler_numbers(const QosGraph &qos)
{
    Numbers numbers;
    std::map<Handle, std::size_t> children;
    for (const auto &[handle, scheduler] : qos.schedulers()) {
        const std::string number = std::to_string(++children[scheduler.parent]);
        numbers[handle] = scheduler.parent == Handle::null ? number : numbers[scheduler.parent] + "." + number;
    }
    return numbers;
}

std::string queue_name(const Queue &queue, const Numbers &numbers)
{
    const std::string rate = queue.shaped()
                                 ? std::to_string(queue.rate) + " kbit/s, burst " + std::to_string(queue.bucket_size)
                                 : std::string("unshaped");
    return "of scheduler " + numbers.at(queue.scheduler) + ": " + rate + ", threshold " +
           std::to_string(queue.threshold);
}

void add_qos(const QosGraph &qos, Inventory &items)
{
    const Numbers numbers = scheduler_numbers(qos);
    for (const auto &[handle, number] : numbers)
        items.push_back({"scheduler", number});
    for (const auto &[handle, queue] : qos.queues())
        items.push_back({"queue", queue_name(queue, numbers)});
}

void add_paths(const EbcomService &ebcom, Inventory &items)
{
    for (const auto &[mac, path] : ebcom.paths())
        items.push_back({"path", text_of(mac).data()});
}

void add_pceps(const PcepTable &table, Inventory &items)
{
    for (const auto &[handle, pcep] : table.pceps())
        items.push_back({"pcep", std::to_string(pcep.id())});
    for (const auto &[handle, pcep] : table.pceps())
        if (pcep.target != Handle::null)
            items.push_back({"binding", "of pcep " + std::to_string(pcep.id())});
}

void add_groups(const PcepTable &table, Inventory &items)
{
    for (const auto &[handle, group] : table.groups())
        items.push_back({"group", std::to_string(group.id)});
    for (const auto &[handle, group] : table.groups())
        for (const std::uint32_t member : group.members)
            items.push_back({"member", "pcep " + std::to_string(member) + " of group " + std::to_string(group.id)});
}

void add_interface(const EbcomService &ebcom, Inventory &items)
{
    if (ebcom.interface_device())
        items.push_back({"interface", "on Ethernet device " + std::to_string(*ebcom.interface_device())});
}

/* Events by name: their records lie in an order of their own. */
void add_events(const Connection &connection, Inventory &items)
{
    Inventory events;
    for (const vorn_tu_event *event : connection.outstanding)
        events.push_back(
            {"timing event", "type " + std::to_string(event->type) + " of domain " + std::to_string(event->domain)});
    std::sort(events.begin(), events.end());
    std::move(events.begin(), events.end(), std::back_inserter(items));
}

void add_timing_unit(const TimingUnit &timing, Inventory &items)
{
    for (const auto &[handle, connection] : timing.connections())
        items.push_back({"timing connection", name_of(timing.state(handle))});
    for (const auto &[handle, connection] : timing.connections())
        add_events(connection, items);
}

} // namespace

Inventory inventory_of(const Node &node)
{
    Inventory items;
    add_qos(node.qos, items);
    add_paths(node.ebcom, items);
    add_pceps(node.pceps, items);
    add_groups(node.pceps, items);
    add_interface(node.ebcom, items);
    add_timing_unit(node.timing, items);
    return items;
}

Inventory items_beyond(const Inventory &other, const Inventory &items)
{
    std::map<Item, std::size_t> held;
    for (const Item &item : other)
        ++held[item];

    Inventory beyond;
    for (const Item &item : items) {
        std::size_t &left = held[item];
        if (left == 0)
            beyond.push_back(item);
        else
            --left;
    }
    return beyond;
}

} // namespace softnode

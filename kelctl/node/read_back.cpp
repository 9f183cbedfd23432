// Matching queues with ports: first by the library's look-ups, then, for the rest, by the order of creation.
#include "kelctl/node/read_back.h"

#include "kel/kel_core_ic_ebcom.h"
#include "kel/kel_node_names.h"
#include "kelctl/accelerator/software_accelerator.h"
#include "kelctl/values/ic_port.h"

#include <algorithm>

namespace kelctl
{
namespace
{

constexpr uint32_t longest_wait = 2'000; // milliseconds

// The queue that the library finds for a destination; 0: none.
handle queue_of(const mac_address &destination)
{
    void *queue = nullptr;
    kel_ic_ebcom_queue_handle_get(destination.octets.data(), &queue);
    return reinterpret_cast<handle>(queue);
}

// Destinations on the same ports are all found on the same one: one look-up for each of these groups is enough.
void look_up(const added_paths &added, port_knowledge &ports)
{
    std::map<mac_address, const std::set<int32_t> *> firsts;
    for (const auto &[on, macs] : added.destinations())
        firsts.emplace(*macs.begin(), &on);
    for (const auto &[mac, on] : firsts) {
        const handle queue = queue_of(mac);
        if (queue == 0)
            continue;
        ports.found_by.try_emplace(queue, mac);
        if (on->size() == 1)
            ports.port_of_queue[queue] = *on->begin();
    }
}

// A port's queue is created with its first path, so the queues of the snapshot and the ports left have the same order.
// For queues that the look-ups do not tell apart.
void match_in_order(const std::vector<snapshot::queue> &queues, const std::vector<int32_t> &ports_left,
                    port_knowledge &ports)
{
    auto port = ports_left.begin();
    for (const snapshot::queue &queue : queues)
        if (port != ports_left.end() && ports.port_of_queue.try_emplace(queue.self, *port).second)
            ++port;
}

// The library makes the schedulers above the queues in the order of its table of ports. A tree that is not whole, as
// after a failed start, gets no names.
void name_units(const snapshot &node, port_knowledge &ports)
{
    std::vector<handle> above_queues;
    for (const snapshot::scheduler &one : node.schedulers)
        if (std::ranges::find(node.schedulers, one.self, &snapshot::scheduler::parent) == node.schedulers.end())
            above_queues.push_back(one.self);
    if (above_queues.size() != qos_schedulers)
        return;
    for (int32_t port = 0; port < KEL_IELL_PORT_COUNT; ++port)
        if (const auto row = qos_row(port))
            ports.unit_of_scheduler.try_emplace(above_queues[static_cast<size_t>(row->scheduler)], port_group(port));
}

port_knowledge match(const std::vector<snapshot::queue> &queues, const added_paths &added)
{
    port_knowledge ports;
    look_up(added, ports);
    std::vector<int32_t> left = added.ports();
    for (const auto &[queue, port] : ports.port_of_queue)
        std::erase(left, port);
    match_in_order(queues, left, ports);
    return ports;
}

} // namespace

std::optional<snapshot> current_snapshot()
{
    const auto document = accelerator_snapshot();
    return document ? std::optional(read_snapshot(*document)) : std::nullopt;
}

void settle()
{
    timing_settled(longest_wait);
}

std::optional<notation::document> settled_document()
{
    settle();
    return accelerator_snapshot();
}

notation::document queues_now()
{
    return accelerator_queues().value_or(notation::document::array());
}

port_knowledge ports_of(const snapshot &node, const added_paths &added)
{
    port_knowledge ports = match(node.queues, added);
    for (const auto &[on, macs] : added.destinations())
        for (const int32_t port : on)
            ports.destinations[port].insert(macs.begin(), macs.end());
    name_units(node, ports);
    return ports;
}

port_knowledge ports_of(const notation::document &queues, const added_paths &added)
{
    return match(read_queues(queues), added);
}

} // namespace kelctl

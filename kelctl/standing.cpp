// Asking the accelerator and the library what stands, and putting the answers together.
#include "kelctl/standing.h"

#include "kelctl/software_accelerator.h"

#include <algorithm>

namespace kelctl
{
namespace
{

constexpr uint32_t longest_wait = 2'000; // milliseconds

// The queue of a port that one of these destinations leads to and no other port shares; 0 when there is none such.
handle queue_of_own_destination(const std::set<mac_address> &destinations,
                                const std::map<mac_address, size_t> &ports_of_mac)
{
    const auto own = std::find_if(destinations.begin(), destinations.end(),
                                  [&](const mac_address &mac) { return ports_of_mac.at(mac) == 1; });
    void *queue = nullptr;
    if (own != destinations.end())
        kel_ic_ebcom_queue_handle_get(own->octets.data(), &queue);
    return reinterpret_cast<handle>(queue);
}

// Queues are listed in the order of their creation, that is of their ports' first paths. So are the ports left over.
void match_in_order(const snapshot &node, const std::vector<int32_t> &ports_left, port_knowledge &ports)
{
    auto port = ports_left.begin();
    for (const snapshot::queue &queue : node.queues)
        if (port != ports_left.end() && ports.port_of_queue.try_emplace(queue.self, *port).second)
            ++port;
}

} // namespace

std::optional<snapshot> current_snapshot()
{
    const auto json = accelerator_snapshot();
    return json ? std::optional(read_snapshot(*json)) : std::nullopt;
}

std::optional<snapshot> settled_snapshot()
{
    timing_settled(longest_wait);
    return current_snapshot();
}

port_knowledge ports_of(const snapshot &node, const std::vector<kel_ebcom_path_config> &added)
{
    port_knowledge ports;
    std::vector<int32_t> in_order;
    std::map<mac_address, size_t> ports_of_mac;
    for (const kel_ebcom_path_config &path : added) {
        auto &destinations = ports.destinations[path.iell_port];
        if (destinations.empty())
            in_order.push_back(path.iell_port);
        const mac_address mac = mac_address_at(path.dst_mac);
        if (destinations.insert(mac).second)
            ++ports_of_mac[mac];
    }

    std::vector<int32_t> left;
    for (const int32_t port : in_order) {
        const handle queue = queue_of_own_destination(ports.destinations[port], ports_of_mac);
        if (queue != 0)
            ports.port_of_queue[queue] = port;
        else
            left.push_back(port);
    }
    match_in_order(node, left, ports);
    return ports;
}

} // namespace kelctl

// The layout of what is shown: the service's lines, the tree. Destinations' rows are in destination_rows.
#include "kelctl/views/node_view.h"

#include "kel/kel_node_names.h"
#include "kelctl/terminal/text.h"
#include "kelctl/values/ic_port.h"
#include "kelctl/values/mp_id.h"
#include "kelctl/values/quantity.h"
#include "kelctl/views/destination_rows.h"

#include <fmt/core.h>

#include <algorithm>

namespace kelctl
{
namespace
{

constexpr std::string_view queue_row = "{:<26}{:>18}{:>17}{:>19}";

std::string handle_text(handle self)
{
    return fmt::format("0x{:x}", self);
}

// A port's name, or what there is of it: a queue of a port that nobody remembers still has to be told apart.
std::string queue_name(const port_knowledge &ports, handle queue)
{
    const auto port = ports.port_of_queue.find(queue);
    return port == ports.port_of_queue.end() ? "queue " + handle_text(queue) : port_text(port->second);
}

// The accelerator sends to an address through one queue only, the one that was asked for last.
std::string note_for(handle used, handle queue, const port_knowledge &ports)
{
    if (used == queue)
        return "";
    return used == 0 ? "without a queue" : "sent through " + queue_name(ports, used);
}

std::vector<destination> destinations_of(handle queue, const std::map<mac_address, handle> &queue_of,
                                         const port_knowledge &ports)
{
    std::set<mac_address> macs;
    for (const auto &[mac, used] : queue_of)
        if (used == queue)
            macs.insert(macs.end(), mac);
    if (const auto port = ports.port_of_queue.find(queue); port != ports.port_of_queue.end())
        if (const auto asked = ports.destinations.find(port->second); asked != ports.destinations.end())
            macs.insert(asked->second.begin(), asked->second.end());

    std::vector<destination> found;
    for (const mac_address &mac : macs) {
        const auto used = queue_of.find(mac);
        found.push_back({mac, kel_location_name(location_of(mac, own_mp_id())),
                         note_for(used == queue_of.end() ? 0 : used->second, queue, ports)});
    }
    return found;
}

class tree_renderer
{
public:
    tree_renderer(const snapshot &node, const port_knowledge &ports, const painter &paint)
        : ports_(ports), paint_(paint)
    {
        for (const snapshot::scheduler &scheduler : node.schedulers)
            children_[scheduler.parent].push_back(scheduler.self);
        for (const snapshot::queue &queue : node.queues)
            queues_[queue.scheduler].push_back(&queue);
        for (const snapshot::path &path : node.paths)
            queue_of_[path.mac] = path.queue;
    }

    std::string render()
    {
        const std::string heading = fmt::format(queue_row, "Schedulers and queues", "rate", "burst", "threshold");
        std::string view = paint_(colour::heading, heading) + "\n";
        for (const handle root : children_[0])
            view += subtree(root, 0);
        return view;
    }

private:
    std::string subtree(handle top, size_t depth)
    {
        handle last = top;
        size_t levels = 1;
        for (; children_[last].size() == 1 && queues_[last].empty(); ++levels)
            last = children_[last].front();

        std::string view = scheduler_row(top, last, levels, depth);
        for (const snapshot::queue *queue : queues_[last])
            view += queue_view(*queue);
        for (const handle child : children_[last])
            view += subtree(child, depth + 1);
        return view;
    }

    // A chain of schedulers with nothing beside takes one line.
    std::string scheduler_row(handle top, handle last, size_t levels, size_t depth)
    {
        const std::string handles =
            levels == 1 ? handle_text(top)
                        : fmt::format("{} - {}, a chain of {} levels", handle_text(top), handle_text(last), levels);
        return fmt::format("{:{}}{}{}\n", "", 2 * depth, paint_(colour::faint, handles), group_text(last));
    }

    std::string group_text(handle scheduler)
    {
        for (const snapshot::queue *queue : queues_[scheduler])
            if (const auto port = ports_.port_of_queue.find(queue->self); port != ports_.port_of_queue.end())
                return "  " + port_group(port->second);
        return children_[scheduler].empty() && queues_[scheduler].empty() ? "  no queues" : "";
    }

    std::string queue_view(const snapshot::queue &queue)
    {
        const std::string rate = queue.shaped ? quantity_text(queue.rate, rate_units) : "unshaped";
        const std::string burst = queue.shaped ? quantity_text(queue.burst, size_units) : "-";
        const std::string row = fmt::format(queue_row, "    " + queue_name(ports_, queue.self), rate, burst,
                                            quantity_text(queue.threshold, size_units));
        return row + "\n" + destination_rows(destinations_of(queue.self, queue_of_, ports_));
    }

    const port_knowledge &ports_;
    const painter &paint_;
    std::map<handle, std::vector<handle>> children_;
    std::map<handle, std::vector<const snapshot::queue *>> queues_;
    std::map<mac_address, handle> queue_of_;
};

std::string row(const painter &paint, std::string_view name, const std::string &value)
{
    return fmt::format("{} {}\n", paint(colour::heading, fmt::format("{:<13}", name)), value);
}

std::string interface_text(const snapshot &node)
{
    return node.interface ? fmt::format("Ethernet device {}, VSI {}", node.interface->eth_dev_id, node.interface->vsi)
                          : "none";
}

std::string parameters_text(const snapshot &node)
{
    if (!node.globals)
        return "not set";
    const auto &[mtu, ether_type, settings] = *node.globals;
    return fmt::format("MTU {} octets, EtherType 0x{:04x}, settings {} and {}", mtu, ether_type, settings[0],
                       settings[1]);
}

std::string counted(size_t count, std::string_view one)
{
    return fmt::format("{} {}{}", count, one, count == 1 ? "" : "s");
}

} // namespace

std::string service_view(const snapshot &node, const kel_ebcom_capabilities &capabilities,
                         std::optional<size_t> added_paths, const painter &paint)
{
    return row(paint, "Interface", interface_text(node)) + row(paint, "Parameters", parameters_text(node)) +
           row(paint, "Capabilities",
               fmt::format("burst up to {}, PCEP ids up to {}", quantity_text(capabilities.max_burst_size, size_units),
                           capabilities.max_pcep_id)) +
           row(paint, "",
               fmt::format("up to {} multicast groups of up to {} members", capabilities.max_multicast_groups,
                           capabilities.max_multicast_members)) +
           row(paint, "Timestamp",
               node.timestamp_offset ? fmt::format("offset {}", *node.timestamp_offset) : "no offset") +
           row(paint, "Paths",
               fmt::format("{}to {} through {}", added_paths ? fmt::format("{} added, ", *added_paths) : "",
                           counted(node.paths.size(), "destination"), counted(node.queues.size(), "queue")));
}

std::string tree_view(const snapshot &node, const port_knowledge &ports, const painter &paint)
{
    return tree_renderer(node, ports, paint).render();
}

std::string contents_text(const snapshot &node)
{
    std::vector<std::string> parts;
    if (!node.schedulers.empty())
        parts.push_back(counted(node.schedulers.size(), "scheduler"));
    if (!node.queues.empty())
        parts.push_back(counted(node.queues.size(), "queue"));
    if (!node.paths.empty())
        parts.push_back(counted(node.paths.size(), "path"));
    if (!node.pceps.empty())
        parts.push_back(counted(node.pceps.size(), "PCEP"));
    if (!node.groups.empty())
        parts.push_back(counted(node.groups.size(), "multicast group"));
    if (node.interface)
        parts.push_back("the interface");
    return joined(parts, ", ");
}

} // namespace kelctl

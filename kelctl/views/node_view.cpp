// The layout of what is shown: the service's lines, the tree, PCEPs and groups. Destinations' rows are in
// destination_rows.
#include "kelctl/views/node_view.h"

#include "kel/kel_core_ic_ebcom.h"
#include "kel/kel_node_names.h"
#include "kelctl/values/ic_port.h"
#include "kelctl/values/mp_id.h"
#include "kelctl/values/quantity_messages.h"
#include "kelctl/views/destination_rows.h"
#include "terminal/terminal.h"
#include "text/quantity.h"
#include "text/wording.h"

#include <fmt/core.h>

namespace kelctl
{
namespace
{

std::string handle_text(handle self)
{
    return fmt::format("0x{:x}", self);
}

// The port's name. A queue whose port is not known is shown by its handle, which still distinguishes it.
std::string queue_name(const port_knowledge &ports, handle queue)
{
    const auto port = ports.port_of_queue.find(queue);
    return port == ports.port_of_queue.end() ? "queue " + handle_text(queue) : port_text(port->second);
}

// The accelerator has one path for each address, the last one created: added on two ports, it uses the queue of one.
std::string note_for(handle used, handle queue, const port_knowledge &ports)
{
    if (used == queue)
        return "";
    return used == 0 ? "without a queue" : "sent through " + queue_name(ports, used);
}

// Those that the accelerator sends through this queue, and those that were added on its port but are sent through
// another: the latter get a note.
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

// Draws the tree from its roots. Look-ups by parent are made once, as a snapshot lists objects without their children.
class tree_renderer
{
public:
    tree_renderer(const snapshot &node, const port_knowledge &ports, const page &page) : ports_(ports), page_(page)
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
        std::string view = page_.paint(terminal::colour::heading, "schedulers and queues") + "\n";
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

    // A chain of schedulers without branches takes one line.
    std::string scheduler_row(handle top, handle last, size_t levels, size_t depth)
    {
        std::string handles = handle_text(top);
        if (levels > 1)
            handles += fmt::format(" - {}, a chain of {} levels", handle_text(last), levels);
        return line_on(page_, fmt::format("{:{}}{}{}", "", 2 * depth, page_.paint(terminal::colour::faint, handles),
                                          group_text(last)));
    }

    // The unit, where it is known. A unit without paths has a scheduler with nothing below.
    std::string group_text(handle scheduler)
    {
        const auto unit = ports_.unit_of_scheduler.find(scheduler);
        return (unit == ports_.unit_of_scheduler.end() ? "" : "  " + unit->second) +
               (children_[scheduler].empty() && queues_[scheduler].empty() ? "  no queues" : "");
    }

    std::string queue_view(const snapshot::queue &queue)
    {
        const std::string shaping = queue.shaped ? fmt::format("{}, burst {}", quantity_text(queue.rate, rate_units),
                                                               quantity_text(queue.burst, size_units))
                                                 : "unshaped";
        std::string view = line_on(page_, fmt::format("    {:<11} {}, threshold {}", queue_name(ports_, queue.self),
                                                      shaping, quantity_text(queue.threshold, size_units)));
        const auto rows = destination_rows(destinations_of(queue.self, queue_of_, ports_));
        return view + first_of(rows, "      {} more rows", page_,
                               [&](const std::string &row) { return line_on(page_, "      " + row); });
    }

    const port_knowledge &ports_;
    const page &page_;
    std::map<handle, std::vector<handle>> children_;
    std::map<handle, std::vector<const snapshot::queue *>> queues_;
    std::map<mac_address, handle> queue_of_;
};

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

fields service_fields(const snapshot &node, std::optional<size_t> added_paths)
{
    kel_ebcom_capabilities capabilities{};
    kel_core_ic_ebcom_capabilities_get(&capabilities);
    return {
        {"interface", interface_text(node)},
        {"parameters", parameters_text(node)},
        {"capabilities", fmt::format("burst up to {}, PCEP ids up to {}",
                                     quantity_text(capabilities.max_burst_size, size_units), capabilities.max_pcep_id)},
        {"multicast", fmt::format("up to {} groups of up to {} members", capabilities.max_multicast_groups,
                                  capabilities.max_multicast_members)},
        {"timestamp", node.timestamp_offset ? fmt::format("offset {}", *node.timestamp_offset) : "no offset"},
        {"paths",
         fmt::format("{}to {} through {}",
                     added_paths ? fmt::format("{} added, ", text::with_separators(*added_paths)) : "",
                     text::count_of(node.paths.size(), "destination"), text::count_of(node.queues.size(), "queue"))}};
}

std::string with_location(const mac_address &mac)
{
    return fmt::format("{} {}", to_text(mac), kel_location_name(location_of(mac, own_mp_id())));
}

fields end_points(const snapshot &node)
{
    fields shown = fields::object();
    for (const snapshot::pcep &pcep : node.pceps)
        shown["pceps"].push_back({{"PCEP", pcep.id},
                                  {"remote id", pcep.remote_id},
                                  {"VLAN", pcep.vlan},
                                  {"pri", pcep.priority},
                                  {"local", with_location(pcep.local_mac)},
                                  {"remote", with_location(pcep.remote_mac)},
                                  {"bound to", pcep.bound ? "EHSFP" : ""}});
    for (const snapshot::group &group : node.groups)
        shown["groups"].push_back(
            {{"group", group.id}, {"members", group.members.empty() ? "none" : text::joined(group.members, " ")}});
    return shown;
}

} // namespace

std::string node_view(const snapshot &node, const port_knowledge &ports, std::optional<size_t> added_paths,
                      const page &page)
{
    const std::string pceps_and_groups = fields_text(end_points(node), page);
    return fields_text(service_fields(node, added_paths), page) + "\n" + tree_renderer(node, ports, page).render() +
           "\n" + (pceps_and_groups.empty() ? "" : pceps_and_groups + "\n");
}

} // namespace kelctl

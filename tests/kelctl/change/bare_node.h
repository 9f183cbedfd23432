// What the accelerator holds, without what may differ between two nodes of one making: time, counters, handles.
#pragma once

#include "kelctl/accelerator/snapshot.h"
#include "kelctl/node/read_back.h"
#include "kelctl/values/mac_address.h"

#include <fmt/format.h>

#include <algorithm>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace kelctl
{

// A line for each object, sorted. A queue is named by its place in the tree, its shaping and, unless `short_names`, by what
// is sent through it.
inline std::multiset<std::string> bare(const snapshot &node, bool short_names = false)
{
    std::multiset<std::string> lines;
    std::map<handle, std::string> place = {{0, ""}};
    std::map<handle, size_t> children;
    for (const snapshot::scheduler &one : node.schedulers) {
        place[one.self] = fmt::format("{}.{}", place.at(one.parent), ++children[one.parent]);
        lines.insert("scheduler " + place.at(one.self));
    }
    std::map<handle, std::string> queues = {{0, "nowhere"}};
    for (const snapshot::queue &queue : node.queues) {
        std::string macs;
        for (const snapshot::path &path : node.paths)
            if (path.queue == queue.self && !short_names)
                macs += " " + to_text(path.mac);
        queues[queue.self] = fmt::format("queue of {}: {} {} {} {}{}", place.at(queue.scheduler), queue.shaped,
                                         queue.rate, queue.burst, queue.threshold, macs);
        lines.insert(queues.at(queue.self));
    }
    for (const snapshot::path &path : node.paths)
        lines.insert(fmt::format("path to {} through {}", to_text(path.mac), queues.at(path.queue)));
    for (const snapshot::pcep &one : node.pceps)
        lines.insert(fmt::format("PCEP {}: {} {} {} {} {} {}", one.id, one.remote_id, to_text(one.local_mac),
                                 to_text(one.remote_mac), one.vlan, one.priority, one.bound));
    for (const snapshot::group &one : node.groups) {
        lines.insert(fmt::format("group {}", one.id));
        for (const uint32_t member : one.members)
            lines.insert(fmt::format("member {} of group {}", member, one.id));
    }
    if (node.interface)
        lines.insert("interface");
    if (node.globals)
        lines.insert(fmt::format("parameters {} {} {} {}", node.globals->mtu, node.globals->ether_type,
                                 node.globals->settings[0], node.globals->settings[1]));
    return lines;
}

inline std::multiset<std::string> bare_now()
{
    return bare(current_snapshot().value());
}

} // namespace kelctl

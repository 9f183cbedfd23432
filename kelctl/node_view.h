// What stands on the node, as text of 80 columns. Renders what it is given; asks nobody.
#pragma once

#include "kel/kel_core_ic_ebcom.h"
#include "kelctl/snapshot.h"
#include "kelctl/terminal.h"

#include <map>
#include <optional>
#include <set>
#include <string>

namespace kelctl
{

// What the snapshot cannot tell: which port a queue serves, which destinations were asked for on which port, and how to
// ask the library for a queue.
struct port_knowledge {
    std::map<handle, int32_t> port_of_queue;
    std::map<int32_t, std::set<mac_address>> destinations;
    // A destination by which the library finds the queue. None when it finds all of the queue's on others.
    std::map<handle, mac_address> found_by;
};

// Interface, parameters, capabilities, timestamp offset and how much there is, one line each. Several of the paths
// that were added may lead to one destination; how many were is not told when nobody knows.
std::string service_view(const snapshot &node, const kel_ebcom_capabilities &capabilities,
                         std::optional<size_t> added_paths, const painter &paint);

// The scheduler tree with the queues and, under each queue, its destinations.
std::string tree_view(const snapshot &node, const port_knowledge &ports, const painter &paint);

// "12 schedulers, 1 path" of what is there; empty for an empty node.
std::string contents_text(const snapshot &node);

} // namespace kelctl

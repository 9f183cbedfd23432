// Which IC port each queue belongs to. The accelerator holds queues by handle; only the process that added the paths
// knows the ports. ports_of() (read_back.h) puts the two together. Where a port cannot be told, it is left out, and
// whoever shows the queue does without.
#pragma once

#include "kelctl/accelerator/snapshot.h"
#include "kelctl/values/mac_address.h"

#include <cstdint>
#include <map>
#include <set>
#include <string>

namespace kelctl
{

// What a snapshot does not contain.
struct port_knowledge {
    std::map<handle, int32_t> port_of_queue;
    std::map<handle, std::string> unit_of_scheduler;       // "RLU1"; of a whole tree only
    std::map<int32_t, std::set<mac_address>> destinations; // of the paths that were added, by port
    // A destination by which the library finds the queue, for reading its counters. Missing when the library finds each
    // of the queue's destinations on another queue.
    std::map<handle, mac_address> found_by;
};

} // namespace kelctl

// Which port a queue serves: what this process asked for, beside what the accelerator holds.
#pragma once

#include "kelctl/accelerator/snapshot.h"
#include "kelctl/values/mac_address.h"

#include <cstdint>
#include <map>
#include <set>

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

} // namespace kelctl

// What one stream of traffic is.
#pragma once

#include "kelctl/values/mac_address.h"

#include <cstdint>
#include <optional>

namespace kelctl
{

// A stream of frames, as many in a time as either of the rates says. Times count from when it is added.
struct traffic_entry {
    std::optional<mac_address> to; // a destination; none: what a PCEP or a group sends
    uint32_t from = 0;             // its id
    uint32_t octets = 1;           // of a frame
    uint32_t rate = 0;             // kbit/s; 0: counted in frames
    uint32_t frames_per_second = 0;
    uint32_t burst = 1; // frames that come at once
    uint64_t start = 0; // nanoseconds, as is the stop
    std::optional<uint64_t> stop;
};

} // namespace kelctl

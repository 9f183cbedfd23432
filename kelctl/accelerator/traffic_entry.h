// What one [[traffic]] of a node file says.
#pragma once

#include "kelctl/values/mac_address.h"
#include "kelctl/values/problem.h"

#include <cstdint>
#include <optional>

namespace kelctl
{

// The id of an entry whose own cannot be read, which is a problem. No entry has it otherwise.
inline constexpr uint32_t no_id = 0;

// A stream of frames, as many in a time as either of the rates says. Times count from when the node stands.
struct traffic_entry {
    std::optional<mac_address> to; // a destination; none: what a PCEP or a group sends
    uint32_t from = no_id;         // its id
    uint32_t octets = 1;           // of a frame
    uint32_t rate = 0;             // kbit/s; 0: counted in frames
    uint32_t frames_per_second = 0;
    uint32_t burst = 1; // frames that come at once
    uint64_t start = 0; // nanoseconds, as is the stop
    std::optional<uint64_t> stop;

    position at;
    position to_at;
    position from_at;
};

} // namespace kelctl

// How fast counters went between two readings of them.
#pragma once

#include "kelctl/node/statistics.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace kelctl
{

struct flow {
    uint64_t frames = 0; // in all
    uint64_t frames_per_second = 0;
    uint64_t kbit_per_second = 0;
};

struct queue_rates {
    int32_t port = 0;
    bool known = false; // by any destination of its own; without it the rest means nothing
    flow sent;
    uint64_t dropped = 0; // frames, in all
    uint64_t waiting = 0; // frames, now
};

struct pcep_rates {
    uint32_t id = 0;
    flow sent;
    flow received;
    uint64_t dropped = 0; // frames, in all
};

struct rates {
    std::vector<queue_rates> queues;
    std::vector<pcep_rates> pceps;
};

// Both readings are of the same queues and PCEPs, in JSON; `passed` is in nanoseconds, more than none.
rates rates_between(const statistics &before, const statistics &now, uint64_t passed);

} // namespace kelctl

// Rates of a node's queues and end points, step by step of virtual time.
#pragma once

#include "kelctl/node/port_knowledge.h"
#include "kelctl/session/result.h"
#include "kelctl/session/session.h"

#include <chrono>
#include <cstdint>
#include <limits>

namespace kelctl
{

// How fast a watch goes: real time from one step to the next, and virtual time that passes with each.
struct watch_pace {
    std::chrono::milliseconds interval{200};
    uint64_t step = 200'000'000;                         // nanoseconds, as is the end
    uint64_t end = std::numeric_limits<uint64_t>::max(); // without one: until Ctrl-C
};

// Lets the session's traffic pass and shows rates at every step, until the time is up, Ctrl-C, nobody reads on, or a
// counter cannot be read. Only where there is virtual traffic.
result watch(const watch_pace &pace, const port_knowledge &ports, session &session);

} // namespace kelctl

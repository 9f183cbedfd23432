// The live view (`up --watch`): lets virtual time pass step by step, and shows the rates of queues and PCEPs after
// each. What a rate is made from is node/rates.cpp, the columns are views/counter_tables.cpp.
#pragma once

#include "kelctl/node/port_knowledge.h"
#include "kelctl/session/result.h"
#include "kelctl/session/session.h"

#include <chrono>
#include <cstdint>
#include <limits>

namespace kelctl
{

// The pace of the live view. `interval` is real time between two steps; `step` and `end` are virtual time in
// nanoseconds.
struct watch_pace {
    std::chrono::milliseconds interval{200};
    uint64_t step = 200'000'000;
    uint64_t end = std::numeric_limits<uint64_t>::max(); // the default: until a signal
};

// Runs until `end`, a signal, the loss of standard output's reader, or a counter that cannot be read, which is a
// failure of the result. Needs the software accelerator. Shows each step as JSON or as a block that a terminal redraws.
result watch(const watch_pace &pace, const port_knowledge &ports, session &session);

} // namespace kelctl

// One look at the counters of queues and PCEPs, as a plain document: it can be taken in one process and shown in
// another. What is shown between two of them are rates (rates.h).
#pragma once

#include "kelctl/node/port_knowledge.h"
#include "kelctl/node/statistics.h"
#include "kelctl/results/result.h"
#include "kelctl/session/session.h"

#include <cstdint>

namespace kelctl
{

// What read_counters() shows, after the times at which it was read, in nanoseconds: `real`, of this machine's monotonic
// clock, and `virtual`, null on a vendor's platform. Lets no time pass.
result take_sample(const fields &held, const port_knowledge &ports, const counted &which, session &session);

enum class time_base : uint8_t { real_time, virtual_time };

// Nanoseconds between two samples; 0 after a clock that went back, as that of a node which was switched off and on.
// Samples without virtual time are never asked for it.
uint64_t time_between(const fields &before, const fields &now, time_base base);

} // namespace kelctl

// The commands that turn one node into another, in an order that the library allows, with as little interruption as can
// be:
//
// - A queue is made by the first path of its port, and cannot be changed: for another shaping all paths of the port are
//   removed first and added again. Any other path is added before others are removed, so that queues and their counters
//   stay, and a destination that moves to another port is always sent somewhere.
// - The accelerator sends through the path of a destination that was added last. Where that is to be one that exists,
//   it is removed and added again.
// - A PCEP that changes is removed and added again, with its memberships. Members come after their groups and PCEPs,
//   and go before them.
//
//     const change_plan plan = plan_between(now, wanted, session.table, room_for_destinations());
//     for (const invocation &step : plan.steps)
//         session.perform(step);
#pragma once

#include "kelctl/change/node_model.h"

#include <optional>
#include <string>
#include <vector>

namespace kelctl
{

// An object that stays, but is removed and made again.
struct interruption {
    object_key object;                          // a queue, a path or a PCEP
    std::vector<mac_address> destinations = {}; // of a queue: those that are sent through it
};

// The steps are for session::perform(), one after the other; with refusals they are for nobody.
struct change_plan {
    std::vector<invocation> steps;
    std::vector<interruption> interrupted;
    std::vector<std::string> refusals; // what cannot be changed in a process that runs: the steps leave it as it is
};

// `room`: how many destinations the platform takes; none: not known. Neither parameters nor an MP id can be taken back:
// where only `now` has them, there is no step.
change_plan plan_between(const node_model &now, const node_model &wanted, const command_table &table,
                         std::optional<size_t> room);

} // namespace kelctl

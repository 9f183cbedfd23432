/*
 * scheduler.h - a scheduler: children that take turns, and limits on what they send together.
 */
#ifndef SOFTNODE_SCHEDULER_H
#define SOFTNODE_SCHEDULER_H

#include "softnode/traffic/child.h"
#include "softnode/traffic/round_robin.h"

#include <cstdint>

namespace softnode
{

struct Scheduler : Child {
    RoundRobin turns;

    using Child::Child;

    bool backlogged() const final
    {
        return !turns.empty();
    }

    Queue &next_queue() final
    {
        return turns.turn().next_queue();
    }
};

} // namespace softnode

#endif

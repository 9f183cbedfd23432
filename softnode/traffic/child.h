/*
 * child.h - what hangs below a scheduler and takes turns there: a queue or another scheduler. Its address stays, as
 * others point to it.
 */
#ifndef SOFTNODE_CHILD_H
#define SOFTNODE_CHILD_H

#include "softnode/common/facts.h"
#include "softnode/traffic/shaper.h"

#include <algorithm>
#include <cstdint>
#include <utility>

namespace softnode
{

struct Queue;
struct Scheduler;

struct Child {
    Shaper shaper;
    std::uint32_t quantum; /* octets that a turn is worth */

    /* The port's. */
    Scheduler *above = nullptr; /* null: not attached, or the root */
    std::uint64_t serial = 0;   /* in the order of attaching */
    bool awaited = false;       /* it is in the agenda, for when its shaper opens */

    /* The round robin's. */
    std::int64_t credit = 0; /* octets left of its turn; less than none: sent ahead of the next one */
    Child *next = nullptr;   /* null: it takes no part */
    Child *previous = nullptr;

    Child(Shaper shaping, std::uint32_t service_quantum)
        : shaper(std::move(shaping)), quantum(std::max(service_quantum, facts::least_quantum))
    {
    }
    Child(const Child &) = delete;
    Child &operator=(const Child &) = delete;
    virtual ~Child() = default;

    /** Whether there are frames to send, its shaper and those above left aside. */
    virtual bool backlogged() const = 0;

    /** The queue whose turn it is; it is backlogged. */
    virtual Queue &next_queue() = 0;
};

} // namespace softnode

#endif

/*
 * round_robin.h - whose turn it is among the queues under one scheduler: those whose first frame may leave have a turn
 * each, in the order of their handles, and round again.
 */
#ifndef SOFTNODE_ROUND_ROBIN_H
#define SOFTNODE_ROUND_ROBIN_H

#include "softnode/common/handle.h"
#include "softnode/traffic/agenda.h"
#include "softnode/traffic/virtual_clock.h"

#include <optional>
#include <set>

namespace softnode
{

class RoundRobin
{
public:
    /** Has a queue take part that does not: its first frame may leave from an instant on. */
    void join(Handle queue, Instant from);

    /** Has a queue take part no more, if it did. */
    void leave(Handle queue);

    /** The first instant at which it can be somebody's turn, 0: it could have been before; null: nobody takes part. */
    std::optional<Instant> next() const;

    /** Whose turn it is at an instant, no earlier than next(); nor than the last one's. It takes part no more then. */
    Handle take_turn(Instant now);

private:
    Agenda joining_;         /* those whose instant had not come at the last turn */
    std::set<Handle> ready_; /* those whose instant had come */
    Handle last_ = Handle::null;
};

} // namespace softnode

#endif

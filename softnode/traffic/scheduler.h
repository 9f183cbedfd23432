/*
 * scheduler.h - queues that share a line: which frame leaves next, and when.
 *
 * The queues directly under a scheduler share its peak rate; when that is 0, or more than the port's line rate, they
 * share the line rate. One frame after the other leaves; each keeps the scheduler busy for the time that its octets
 * take. Of the queues whose first frame may leave, each in turn lets one go. No scheduler slows down the schedulers
 * below it.
 *
 * The queues are the caller's, who names them by their handles.
 */
#ifndef SOFTNODE_SCHEDULER_H
#define SOFTNODE_SCHEDULER_H

#include "softnode/common/registry.h"
#include "softnode/traffic/queue.h"
#include "softnode/traffic/round_robin.h"
#include "softnode/traffic/serial_line.h"

#include <cstdint>
#include <optional>

namespace softnode
{

class Scheduler
{
public:
    explicit Scheduler(Rate peak);

    /**
     * Frames enter one of its queues, at this instant: see Queue::enter. All that leave earlier have left.
     *
     * @return how many were dropped
     */
    std::uint64_t enter(Handle queue, Registry<Queue> &queues, const DestinationMacs &destinations,
                        const Frames &frames, Instant now);

    /** When the next frame leaves; null: none does, as things stand. */
    std::optional<Instant> next_departure() const;

    /** The next frame leaves, at the instant of next_departure(). */
    Frame depart(Instant now, Registry<Queue> &queues);

    /** A queue is removed, with all that waits in it. */
    void leave(Handle queue);

private:
    void await_turn(Handle name, const Queue &queue);

    /* The queues take turns on a line of their own. */
    SerialLine line_;
    RoundRobin turns_;
};

} // namespace softnode

#endif

/*
 * qos_graph.h - the QoS object graph: schedulers under schedulers, queues under schedulers; and the frames that go
 * through the queues.
 *
 * The queues directly under a scheduler share its peak rate; when that is 0, or more than the port's line rate, they
 * share the line rate. One frame after the other leaves; each keeps the scheduler busy for the time that its octets
 * take. Of the queues whose first frame may leave, each in turn lets one go. No scheduler slows down the schedulers
 * below it.
 *
 * Knows nothing of the paths that lead through the queues, nor of the groups that send through the schedulers.
 */
#ifndef SOFTNODE_QOS_GRAPH_H
#define SOFTNODE_QOS_GRAPH_H

#include "softnode/common/counters.h"
#include "softnode/common/registry.h"
#include "softnode/platform.h"
#include "softnode/traffic/agenda.h"
#include "softnode/traffic/frame_queue.h"
#include "softnode/traffic/queue.h"
#include "softnode/traffic/round_robin.h"
#include "softnode/traffic/serial_line.h"
#include "softnode/traffic/virtual_clock.h"

#include <cstddef>
#include <cstdint>
#include <optional>

namespace softnode
{

struct Scheduler {
    Handle parent; /* null: directly under the root */
    ork_qos_scheduler_params params;
    std::size_t below = 0; /* schedulers and queues directly under it */

    Scheduler(Handle above, const ork_qos_scheduler_params &given);

    /* The queues directly under it take turns on a line of their own. */
    SerialLine line;
    RoundRobin turns;

    /** When the next frame leaves; null: none does, as things stand. */
    std::optional<Instant> next_departure() const;
};

class QosGraph
{
public:
    /** Creates a scheduler under params.parent, or under the root when that is null. */
    Refusal create_scheduler(const ork_qos_scheduler_params &params, Handle &scheduler);
    Refusal delete_scheduler(Handle scheduler);
    Refusal check_scheduler(Handle scheduler) const;

    Refusal add_queue(const kel_init_qos_queue_params &params, std::uint32_t queue_kind, Handle scheduler,
                      std::uint16_t eth_dev_id, Handle &queue);
    Refusal remove_queue(Handle queue);
    Refusal check_queue(Handle queue) const;

    /** What the driver kit tells of a queue. */
    Refusal read_queue(Handle queue, ork_qos_queue &record) const;

    /**
     * Frames enter a queue that is there, at this instant: see Queue::enter. All that leave earlier have left.
     *
     * @return how many were dropped
     */
    std::uint64_t enter(Handle queue, const DestinationMacs &destinations, const Frames &frames, Instant now);

    /** The next frame leaves of all that leave up to this instant; null: none is left of these. */
    std::optional<Frame> depart(Instant now);

    const Registry<Scheduler> &schedulers() const;
    const Registry<Queue> &queues() const;

    void reset();

private:
    void await_turn(Handle queue);

    Registry<Scheduler> schedulers_{Kind::scheduler};
    Registry<Queue> queues_{Kind::queue};
    Agenda departures_; /* by scheduler: when its next frame leaves */
};

} // namespace softnode

#endif

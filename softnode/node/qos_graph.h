/*
 * qos_graph.h - the QoS object graph: schedulers under schedulers, queues under schedulers. What frames do there:
 * traffic/port.h.
 *
 * Knows nothing of the paths that lead through the queues, nor of the groups that send through the schedulers.
 */
#ifndef SOFTNODE_QOS_GRAPH_H
#define SOFTNODE_QOS_GRAPH_H

#include "softnode/common/registry.h"
#include "softnode/platform.h"
#include "softnode/traffic/port.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

namespace softnode
{

/* A scheduler in its place. */
struct TreeScheduler : Scheduler {
    Handle parent; /* null: directly under the root */
    ork_qos_scheduler_params params;
    std::size_t below = 0; /* schedulers and queues directly under it */

    TreeScheduler(Handle above_it, const ork_qos_scheduler_params &given);
};

class QosGraph
{
public:
    /** Creates a scheduler under params.parent, or under the root when that is null. Refused: modes that EBCOM does not
        use (invalid). */
    Refusal create_scheduler(const ork_qos_scheduler_params &params, Handle &scheduler);
    Refusal delete_scheduler(Handle scheduler);
    Refusal check_scheduler(Handle scheduler) const;

    Refusal add_queue(const kel_init_qos_queue_params &params, std::uint32_t queue_kind, Handle scheduler,
                      std::uint16_t eth_dev_id, Handle &queue);
    Refusal remove_queue(Handle queue);
    Refusal check_queue(Handle queue) const;

    /** What the driver kit returns about a queue. */
    Refusal read_queue(Handle queue, ork_qos_queue &record) const;

    /**
     * Frames enter a queue that is there, see Port::enter.
     *
     * @return how many were dropped
     */
    std::uint64_t enter(Handle queue, std::span<const Mac> destinations, const Frames &frames, Instant now);

    /** The next frame leaves of all that leave up to this instant; null: none is left of these. */
    std::optional<Departure> depart(Instant now);

    const Registry<TreeScheduler> &schedulers() const;
    const Registry<Queue> &queues() const;

    void reset();

private:
    Registry<TreeScheduler> schedulers_{Kind::scheduler};
    Registry<Queue> queues_{Kind::queue};
    Port port_;
};

} // namespace softnode

#endif

/*
 * qos_graph.h - the QoS object graph: schedulers under schedulers, queues under schedulers.
 *
 * Knows nothing of the paths that lead through the queues, nor of the groups that send through the schedulers.
 */
#ifndef SOFTNODE_QOS_GRAPH_H
#define SOFTNODE_QOS_GRAPH_H

#include "softnode/counters.h"
#include "softnode/platform.h"
#include "softnode/registry.h"

#include <cstddef>
#include <cstdint>

namespace softnode
{

struct Scheduler {
    Handle parent = Handle::null; /* null: directly under the root */
    ork_qos_scheduler_params params{};
    std::size_t below = 0; /* schedulers and queues directly under it */
};

struct Queue {
    Handle scheduler = Handle::null;
    std::uint32_t rate = 0;
    std::uint32_t threshold = 0;   /* octets */
    std::uint32_t bucket_size = 0; /* the largest burst */
    Counters counters{};
    std::uint64_t blocks = 0; /* memory in use, see Waiting */

    /** A queue is shaped as soon as it has a rate or a bucket. */
    bool shaped() const;

    /** Frames leave a queue, sent or dropped, after they came in: what came in and did not leave waits. */
    void account(Fate fate, const Frames &frames);
    Waiting waiting() const;
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

    Refusal account(Handle queue, Fate fate, const Frames &frames);
    Refusal read_statistics(Handle queue, qos_queue_stats &record) const;

    const Registry<Scheduler> &schedulers() const;
    const Registry<Queue> &queues() const;

    void reset();

private:
    Registry<Scheduler> schedulers_{Kind::scheduler};
    Registry<Queue> queues_{Kind::queue};
};

} // namespace softnode

#endif

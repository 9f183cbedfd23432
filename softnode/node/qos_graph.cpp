/*
 * qos_graph.cpp - creating and deleting schedulers and queues.
 */
#include "softnode/node/qos_graph.h"

#include "softnode/common/facts.h"

namespace softnode
{

namespace
{

Limit limit_of(const ork_qos_rate &given)
{
    return {given.rate, given.bucketSize};
}

} // namespace

TreeScheduler::TreeScheduler(Handle above_it, const ork_qos_scheduler_params &given)
    : Scheduler({{limit_of(given.qosRates.peak), limit_of(given.qosRates.sr_mr_u.sustain)}, given.lengthCorrection},
                given.serviceQuantum),
      parent(above_it), params(given)
{
}

Refusal QosGraph::create_scheduler(const ork_qos_scheduler_params &params, Handle &scheduler)
{
    if (params.schedulingMode != facts::scheduling_mode || params.arbitrationMode != facts::arbitration_mode)
        return Refusal::invalid;
    const Handle parent = handle_of(params.parent);
    if (parent != Handle::null)
        if (const Refusal refusal = schedulers_.check(parent))
            return refusal;
    if (params.vsiEthDevId != facts::event_device)
        return Refusal::no_device;
    if (schedulers_.size() >= facts::most_schedulers)
        return Refusal::full;

    scheduler = schedulers_.add(parent, params);
    TreeScheduler *const above = parent == Handle::null ? nullptr : &schedulers_.at(parent);
    if (above)
        ++above->below;
    port_.attach(schedulers_.at(scheduler), above);
    return Refusal::granted;
}

Refusal QosGraph::delete_scheduler(Handle scheduler)
{
    if (const Refusal refusal = schedulers_.check(scheduler))
        return refusal;
    const TreeScheduler &found = schedulers_.at(scheduler);
    if (found.below != 0)
        return Refusal::busy;

    if (found.parent != Handle::null)
        --schedulers_.at(found.parent).below;
    port_.detach(schedulers_.at(scheduler));
    schedulers_.remove(scheduler);
    return Refusal::granted;
}

Refusal QosGraph::check_scheduler(Handle scheduler) const
{
    return schedulers_.check(scheduler);
}

Refusal QosGraph::add_queue(const kel_init_qos_queue_params &params, std::uint32_t queue_kind, Handle scheduler,
                            std::uint16_t eth_dev_id, Handle &queue)
{
    if (params.mode != facts::queue_mode || queue_kind != facts::queue_kind)
        return Refusal::invalid;
    if (const Refusal refusal = schedulers_.check(scheduler))
        return refusal;
    if (eth_dev_id != facts::event_device)
        return Refusal::no_device;
    if (queues_.size() >= facts::most_queues)
        return Refusal::full;

    TreeScheduler &above = schedulers_.at(scheduler);
    queue = queues_.add(scheduler, QueueParams{params.rate, params.threshold, params.bucket_size},
                        above.params.serviceQuantum, above.params.lengthCorrection);
    queues_.at(queue).self = queue;
    ++above.below;
    port_.attach(queues_.at(queue), &above);
    return Refusal::granted;
}

Refusal QosGraph::remove_queue(Handle queue)
{
    if (const Refusal refusal = queues_.check(queue))
        return refusal;

    Queue &found = queues_.at(queue);
    port_.detach(found);
    --schedulers_.at(found.scheduler).below;
    queues_.remove(queue);
    return Refusal::granted;
}

Refusal QosGraph::check_queue(Handle queue) const
{
    return queues_.check(queue);
}

Refusal QosGraph::read_queue(Handle queue, ork_qos_queue &record) const
{
    if (const Refusal refusal = queues_.check(queue))
        return refusal;

    const Queue &found = queues_.at(queue);
    record.rate = found.rate;
    record.bucketSize = found.bucket_size;
    record.shapingMode = found.shaped() ? ORK_QOS_QUEUE_SHAPED : ORK_QOS_QUEUE_UNSHAPED;
    return Refusal::granted;
}

std::uint64_t QosGraph::enter(Handle queue, std::span<const Mac> destinations, const Frames &frames, Instant now)
{
    return port_.enter(queues_.at(queue), destinations, frames, now);
}

std::optional<Departure> QosGraph::depart(Instant now)
{
    return port_.depart(now);
}

const Registry<TreeScheduler> &QosGraph::schedulers() const
{
    return schedulers_;
}

const Registry<Queue> &QosGraph::queues() const
{
    return queues_;
}

void QosGraph::reset()
{
    queues_.clear();
    schedulers_.clear();
    port_.reset();
}

} // namespace softnode

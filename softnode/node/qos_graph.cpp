/*
 * qos_graph.cpp - creating and deleting schedulers and queues, and frames through them.
 */
#include "softnode/node/qos_graph.h"

#include "softnode/common/facts.h"

namespace softnode
{

TreeScheduler::TreeScheduler(Handle above, const ork_qos_scheduler_params &given)
    : Scheduler(given.qosRates.peak.rate), parent(above), params(given)
{
}

Refusal QosGraph::create_scheduler(const ork_qos_scheduler_params &params, Handle &scheduler)
{
    const Handle parent = handle_of(params.parent);
    if (parent != Handle::null)
        if (const Refusal refusal = schedulers_.check(parent))
            return refusal;
    if (params.vsiEthDevId != facts::event_device)
        return Refusal::no_device;
    if (schedulers_.size() >= facts::most_schedulers)
        return Refusal::full;

    scheduler = schedulers_.add({parent, params});
    if (parent != Handle::null)
        ++schedulers_.at(parent).below;
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

    queue = queues_.add({scheduler, {params.rate, params.threshold, params.bucket_size}});
    ++schedulers_.at(scheduler).below;
    return Refusal::granted;
}

Refusal QosGraph::remove_queue(Handle queue)
{
    if (const Refusal refusal = queues_.check(queue))
        return refusal;

    const Handle above = queues_.at(queue).scheduler;
    TreeScheduler &scheduler = schedulers_.at(above);
    --scheduler.below;
    scheduler.leave(queue);
    departures_.put(above, scheduler.next_departure());
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

std::uint64_t QosGraph::enter(Handle queue, const DestinationMacs &destinations, const Frames &frames, Instant now)
{
    const Handle above = queues_.at(queue).scheduler;
    Scheduler &scheduler = schedulers_.at(above);
    const std::uint64_t dropped = scheduler.enter(queue, queues_, destinations, frames, now);
    departures_.put(above, scheduler.next_departure());
    return dropped;
}

std::optional<Frame> QosGraph::depart(Instant now)
{
    const auto due = departures_.take_due(now);
    if (!due)
        return std::nullopt;

    Scheduler &scheduler = schedulers_.at(due->who);
    const Frame frame = scheduler.depart(due->when, queues_);
    departures_.put(due->who, scheduler.next_departure());
    return frame;
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
    departures_ = {};
}

} // namespace softnode

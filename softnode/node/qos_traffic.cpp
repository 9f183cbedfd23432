/*
 * qos_traffic.cpp - frames through the queues: which one leaves next, and when.
 */
#include "softnode/node/qos_graph.h"

#include "softnode/common/facts.h"

#include <algorithm>

namespace softnode
{

namespace
{

/* What the queues under a scheduler share. */
Rate shared_rate(const ork_qos_scheduler_params &params)
{
    const Rate peak = params.qosRates.peak.rate;
    return peak == 0 ? facts::line_rate : std::min(peak, facts::line_rate);
}

} // namespace

Scheduler::Scheduler(Handle above, const ork_qos_scheduler_params &given)
    : parent(above), params(given), line(shared_rate(given))
{
}

std::optional<Instant> Scheduler::next_departure() const
{
    const auto turn = turns.next();
    const auto free = line.free_at();
    if (!turn || !free)
        return std::nullopt;
    return std::max(*turn, *free);
}

std::uint64_t QosGraph::enter(Handle queue, const DestinationMacs &destinations, const Frames &frames, Instant now)
{
    Queue &entered = queues_.at(queue);
    SerialLine &line = schedulers_.at(entered.scheduler).line;
    line.settle(now);
    const bool was_empty = entered.waiting().frames == 0;
    const std::uint64_t dropped = entered.enter(destinations, frames, now, line.free_at() == now);
    if (was_empty)
        await_turn(queue);
    return dropped;
}

std::optional<Frame> QosGraph::depart(Instant now)
{
    const auto due = departures_.take_due(now);
    if (!due)
        return std::nullopt;

    Scheduler &scheduler = schedulers_.at(due->who);
    const Handle turn = scheduler.turns.take_turn(due->when);
    Queue &queue = queues_.at(turn);
    const Lead lead = std::min(queue.lead(due->when), scheduler.line.lead(due->when));
    const Frame frame = queue.send(due->when, lead);
    scheduler.line.send(frame.length, due->when, lead);
    await_turn(turn);
    return frame;
}

/* Has a queue take part in the turns that does not, if its first frame can ever leave. */
void QosGraph::await_turn(Handle queue)
{
    const Queue &waiting = queues_.at(queue);
    Scheduler &scheduler = schedulers_.at(waiting.scheduler);
    if (const auto ready = waiting.ready_at())
        scheduler.turns.join(queue, *ready);
    departures_.put(waiting.scheduler, scheduler.next_departure());
}

} // namespace softnode

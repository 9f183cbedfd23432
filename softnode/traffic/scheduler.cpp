/*
 * scheduler.cpp - frames through queues that take turns.
 */
#include "softnode/traffic/scheduler.h"

#include "softnode/common/facts.h"

#include <algorithm>

namespace softnode
{

Scheduler::Scheduler(Rate peak) : line_(peak == 0 ? facts::line_rate : std::min(peak, facts::line_rate))
{
}

std::uint64_t Scheduler::enter(Handle queue, Registry<Queue> &queues, const DestinationMacs &destinations,
                               const Frames &frames, Instant now)
{
    Queue &entered = queues.at(queue);
    line_.settle(now);
    const bool was_empty = entered.waiting().frames == 0;
    const std::uint64_t dropped = entered.enter(destinations, frames, now, line_.free_at() == now);
    if (was_empty)
        await_turn(queue, entered);
    return dropped;
}

std::optional<Instant> Scheduler::next_departure() const
{
    const auto turn = turns_.next();
    const auto free = line_.free_at();
    if (!turn || !free)
        return std::nullopt;
    return std::max(*turn, *free);
}

Frame Scheduler::depart(Instant now, Registry<Queue> &queues)
{
    const Handle turn = turns_.take_turn(now);
    Queue &queue = queues.at(turn);
    const Lead lead = std::min(queue.lead(now), line_.lead(now));
    const Frame frame = queue.send(now, lead);
    line_.send(frame.length, now, lead);
    await_turn(turn, queue);
    return frame;
}

void Scheduler::leave(Handle queue)
{
    turns_.leave(queue);
}

/* Has a queue take part in the turns that does not, if its first frame can ever leave. */
void Scheduler::await_turn(Handle name, const Queue &queue)
{
    if (const auto ready = queue.ready_at())
        turns_.join(name, *ready);
}

} // namespace softnode

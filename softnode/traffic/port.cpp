/*
 * port.cpp - up and down the tree. A child takes part in the turns above it while it is backlogged and its shaper open;
 * while it is backlogged and its shaper closed, it is in the agenda.
 */
#include "softnode/traffic/port.h"

#include <algorithm>

namespace softnode
{

void Port::attach(Child &child, Scheduler *above)
{
    child.above = above ? above : &root_;
    child.serial = attached_++;
}

void Port::detach(Child &child)
{
    openings_.remove(child);
    for (Child *each = &child; each->next; each = each->above) {
        each->above->turns.leave(*each);
        if (each->above->backlogged())
            return;
    }
}

std::uint64_t Port::enter(Queue &queue, std::span<const Mac> destinations, const Frames &frames, Instant now)
{
    const bool was_empty = !queue.backlogged();
    const std::uint64_t dropped = queue.enter(destinations, frames, now, was_empty && open(queue, now));
    if (was_empty && queue.backlogged())
        activate(queue, now);
    return dropped;
}

std::optional<Departure> Port::depart(Instant now)
{
    for (;;) {
        const Future departure = root_.backlogged() ? line_.free_at() : never;
        const Future opening = openings_.next();
        if (std::min(departure, opening) > now)
            return std::nullopt;
        if (departure < opening)
            return leave(static_cast<Instant>(departure));
        /* What waited for it may have been removed. */
        if (Child &child = openings_.take(); child.backlogged())
            activate(child, static_cast<Instant>(opening));
    }
}

void Port::reset()
{
    root_.turns = {};
    line_ = {};
    openings_.clear();
}

/* Whether a frame of an empty queue could leave at this instant: nobody else can, or would have. */
bool Port::open(const Child &child, Instant now) const
{
    for (const Child *each = &child; each->above; each = each->above)
        if (each->shaper.opens_at() > now)
            return false;
    return line_.free_at() <= now;
}

/* A child became backlogged, or its shaper opened. */
void Port::activate(Child &child, Instant now)
{
    for (Child *each = &child; each->above; each = each->above) {
        if (each->awaited)
            return;
        if (each->shaper.opens_at() > now) {
            openings_.put(*each);
            return;
        }
        const bool others = each->above->backlogged();
        each->above->turns.join(*each);
        if (others)
            return;
    }
    line_.settle(now);
}

Departure Port::leave(Instant now)
{
    Queue &queue = root_.next_queue();
    const Frame frame = queue.send(now);
    pass(queue, frame.length, now);
    for (Scheduler *each = queue.above; each->above; each = each->above)
        pass(*each, frame.length, now);
    return {frame, now, line_.send(frame.length), queue.self};
}

/* A frame passed a child. */
template <class Kind> void Port::pass(Kind &child, std::uint32_t octets, Instant now)
{
    RoundRobin &turns = child.above->turns;
    turns.spend(child, octets);
    child.shaper.charge(octets, now);
    const bool backlogged = child.backlogged();
    if (backlogged && child.shaper.opens_at() <= now)
        return;
    turns.leave(child);
    if (backlogged)
        openings_.put(child);
}

} // namespace softnode

/*
 * queue.cpp - what enters a queue, and what leaves it.
 */
#include "softnode/traffic/queue.h"

#include <algorithm>

namespace softnode
{

Queue::Queue(Handle under, const QueueParams &params, std::uint32_t service_quantum, std::int8_t correction)
    : Child({{{params.rate, params.bucket_size}}, correction}, service_quantum), QueueParams(params), scheduler(under),
      frames_(params.threshold)
{
}

bool Queue::shaped() const
{
    return rate != 0 || bucket_size != 0;
}

std::uint64_t Queue::enter(std::span<const Mac> destinations, const Frames &frames, Instant now, bool leaves_at_once)
{
    const std::uint64_t copies = destinations.size();
    const std::uint64_t room = std::max(frames_.room_for(frames.length), std::uint64_t{leaves_at_once});
    /* However many frames these are: the product is taken only where it is no more than the room. */
    const std::uint64_t admitted = frames.count > room / copies ? room : frames.count * copies;
    const std::uint64_t dropped = frames.count * copies - admitted;

    frames_.push(destinations, {admitted, frames.length, frames.identity}, now);
    counters.account(Fate::received, {admitted + dropped, frames.length});
    counters.account(Fate::dropped, {dropped, frames.length});
    if (!leaves_at_once)
        deepest = most_of(deepest, frames_.waiting());
    return dropped;
}

Frame Queue::send(Instant now)
{
    const Frame frame = frames_.pop();
    counters.account(Fate::sent, {1, frame.length});
    delays.add(now - frame.entered);
    return frame;
}

Waiting Queue::waiting() const
{
    return frames_.waiting();
}

const FrameQueue &Queue::frames() const
{
    return frames_;
}

bool Queue::backlogged() const
{
    return !frames_.empty();
}

Queue &Queue::next_queue()
{
    return *this;
}

} // namespace softnode

/*
 * queue.cpp - what enters a queue, and what leaves it.
 */
#include "softnode/traffic/queue.h"

#include <algorithm>

namespace softnode
{

Queue::Queue(Handle under, const QueueParams &params) : QueueParams(params), scheduler(under), frames_(threshold)
{
    if (shaped())
        bucket_.emplace(rate, bucket_size);
}

bool Queue::shaped() const
{
    return rate != 0 || bucket_size != 0;
}

std::uint64_t Queue::enter(const DestinationMacs &destinations, const Frames &frames, Instant now, bool scheduler_free)
{
    const std::uint64_t copies = destinations.size();
    const std::uint64_t room = room_for(frames.length, now, scheduler_free);
    /* However many frames these are: the product is taken only where it is no more than the room. */
    const std::uint64_t admitted = frames.count > room / copies ? room : frames.count * copies;
    const std::uint64_t dropped = frames.count * copies - admitted;

    frames_.push(destinations, {admitted, frames.length});
    counters.account(Fate::received, {admitted + dropped, frames.length});
    counters.account(Fate::dropped, {dropped, frames.length});
    return dropped;
}

std::optional<Instant> Queue::ready_at() const
{
    if (frames_.empty())
        return std::nullopt;
    return bucket_ ? bucket_->ready_at(frames_.front_length()) : Instant{0};
}

Lead Queue::lead(Instant now) const
{
    return bucket_ ? bucket_->lead(frames_.front_length(), now) : Lead{1, 1};
}

Frame Queue::send(Instant now, const Lead &lead)
{
    const Frame frame = frames_.pop();
    if (bucket_)
        bucket_->take(frame.length, now, lead);
    counters.account(Fate::sent, {1, frame.length});
    return frame;
}

Waiting Queue::waiting() const
{
    return frames_.waiting();
}

/* How many frames of a length may enter now. */
std::uint64_t Queue::room_for(std::uint32_t length, Instant now, bool scheduler_free) const
{
    if (bucket_ && !bucket_->deep_enough_for(length))
        return 0;
    const bool leaves_at_once = scheduler_free && frames_.empty() && ready(length, now);
    return std::max(frames_.room_for(length), std::uint64_t{leaves_at_once});
}

bool Queue::ready(std::uint32_t length, Instant now) const
{
    if (!bucket_)
        return true;
    const auto ready = bucket_->ready_at(length);
    return ready && *ready <= now;
}

} // namespace softnode

/*
 * queue.h - a queue: what it was made from, the frames that wait in it, what it let through and what it dropped.
 *
 * What happens to frames that enter:
 *     1. They count as received.
 *     2. A frame longer than the burst of a shaped queue is dropped: it could never leave.
 *     3. A frame that can leave at this instant needs no room: the queue is empty, its bucket holds the frame, and its
 *        scheduler is free.
 *     4. Any other frame waits if the memory that it takes is free below the threshold, and is dropped if not.
 */
#ifndef SOFTNODE_QUEUE_H
#define SOFTNODE_QUEUE_H

#include "softnode/common/counters.h"
#include "softnode/common/handle.h"
#include "softnode/traffic/frame_queue.h"
#include "softnode/traffic/token_bucket.h"
#include "softnode/traffic/virtual_clock.h"

#include <cstdint>
#include <optional>

namespace softnode
{

/* What a queue is made from. */
struct QueueParams {
    std::uint32_t rate = 0;        /* kbit/s */
    std::uint32_t threshold = 0;   /* octets */
    std::uint32_t bucket_size = 0; /* the largest burst, octets */
};

struct Queue : QueueParams {
    Handle scheduler;
    Counters counters{};

    Queue(Handle under, const QueueParams &params);

    /** A queue is shaped as soon as it has a rate or a bucket. */
    bool shaped() const;

    /**
     * Frames enter at this instant: frames.count to each of the destinations, in turn.
     *
     * A frame that can leave at once has to enter alone, and leave before the next one enters.
     *
     * @param scheduler_free  whether the scheduler could let a frame go at this instant
     * @return how many were dropped
     */
    std::uint64_t enter(const DestinationMacs &destinations, const Frames &frames, Instant now, bool scheduler_free);

    /** The first instant at which the first frame may leave; null: none waits, or it can never leave. */
    std::optional<Instant> ready_at() const;

    /** The lead of the first frame if it waited for its tokens alone, at an instant no earlier than ready_at(). */
    Lead lead(Instant now) const;

    /** The first frame leaves, at an instant no earlier than ready_at(), with a lead no longer than lead(). */
    Frame send(Instant now, const Lead &lead);

    Waiting waiting() const;

private:
    std::uint64_t room_for(std::uint32_t length, Instant now, bool scheduler_free) const;
    bool ready(std::uint32_t length, Instant now) const;

    std::optional<TokenBucket> bucket_; /* null: unshaped */
    FrameQueue frames_;
};

} // namespace softnode

#endif

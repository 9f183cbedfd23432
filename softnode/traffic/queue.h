/*
 * queue.h - a queue: what it was made from, the frames that wait in it, what it let through and what it dropped.
 *
 * What happens to frames that enter:
 *     1. They count as received.
 *     2. A frame that can leave at this instant needs no room.
 *     3. Any other frame waits if the memory that it takes is free below the threshold, and is dropped if not.
 */
#ifndef SOFTNODE_QUEUE_H
#define SOFTNODE_QUEUE_H

#include "counting/histogram.h"
#include "softnode/common/counters.h"
#include "softnode/common/handle.h"
#include "softnode/traffic/child.h"
#include "softnode/traffic/frame_queue.h"

#include <cstdint>
#include <span>

namespace softnode
{

/* What a queue is made from. */
struct QueueParams {
    std::uint32_t rate = 0;        /* kbit/s */
    std::uint32_t threshold = 0;   /* octets */
    std::uint32_t bucket_size = 0; /* burst, octets */
};

struct Queue : Child, QueueParams {
    Handle self = Handle::null; /* whose it is: set by who keeps it */
    Handle scheduler;
    Counters counters{};
    Waiting deepest{};          /* the most that ever waited, of each */
    counting::histogram delays; /* of the frames sent, in nanoseconds from entering to leaving */

    /** quantum and correction: its scheduler's */
    Queue(Handle under, const QueueParams &params, std::uint32_t service_quantum, std::int8_t correction);

    /** A queue is shaped as soon as it has a rate or a bucket. */
    bool shaped() const;

    /**
     * Frames enter at this instant: frames.count to each of the destinations, in turn.
     *
     * @param leaves_at_once  it is one frame, which can leave at this instant, and does before the next one enters
     * @return how many were dropped
     */
    std::uint64_t enter(std::span<const Mac> destinations, const Frames &frames, Instant now, bool leaves_at_once);

    /** The first frame leaves; there is one. */
    Frame send(Instant now);

    Waiting waiting() const;

    /** What waits in it. */
    const FrameQueue &frames() const;

    bool backlogged() const final;
    Queue &next_queue() final;

private:
    FrameQueue frames_;
};

} // namespace softnode

#endif

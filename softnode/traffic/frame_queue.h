/*
 * frame_queue.h - frames that wait, first in, first out, in memory that is counted in blocks.
 *
 * Frames that came together for one destination are kept together, as a run, however many they are. Runs are in a
 * ring that doubles when it is full.
 */
#ifndef SOFTNODE_FRAME_QUEUE_H
#define SOFTNODE_FRAME_QUEUE_H

#include "softnode/common/counters.h"
#include "softnode/common/mac.h"
#include "softnode/traffic/virtual_clock.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace softnode
{

struct Frame {
    Mac destination{};
    std::uint32_t length = 0;   /* octets */
    std::uint64_t identity = 0; /* as Frames::identity */
    Instant entered = 0;
};

class FrameQueue
{
public:
    /** threshold: octets of memory that may be in use */
    explicit FrameQueue(std::uint32_t threshold);

    bool empty() const;
    Waiting waiting() const;

    /** How many more frames of a length find room. */
    std::uint64_t room_for(std::uint32_t length) const;

    /** Appends frames.count frames, whether there is room or not; they go to the destinations in turn. */
    void push(std::span<const Mac> destinations, const Frames &frames, Instant now);

    /** Takes the first frame; the queue is not empty. */
    Frame pop();

private:
    struct Run {
        Frame frame;
        std::uint64_t count = 0; /* of those left */
    };

    Run &run(std::size_t number);
    void append(const Frame &frame, std::uint64_t count);

    std::uint64_t most_blocks_;
    Waiting waiting_{};
    std::vector<Run> ring_ = std::vector<Run>(1); /* a power of two */
    std::size_t first_ = 0;
    std::size_t runs_ = 0;
};

} // namespace softnode

#endif

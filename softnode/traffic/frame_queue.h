/*
 * frame_queue.h - frames that wait, first in, first out, in memory that is counted in blocks.
 *
 * Frames that came together are kept together, as a run, however many they are.
 */
#ifndef SOFTNODE_FRAME_QUEUE_H
#define SOFTNODE_FRAME_QUEUE_H

#include "softnode/common/counters.h"
#include "softnode/common/mac.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <vector>

namespace softnode
{

/* Where copies of a frame go, in their order. One address may stand there more than once. */
using DestinationMacs = std::vector<Mac>;

struct Frame {
    Mac destination{};
    std::uint32_t length = 0; /* octets */
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

    /** Appends frames; they go to the destinations in turn. */
    void push(const DestinationMacs &destinations, const Frames &frames);

    /** Octets of the first frame; the queue is not empty. */
    std::uint32_t front_length() const;

    /** Takes the first frame; the queue is not empty. */
    Frame pop();

private:
    struct Run {
        DestinationMacs destinations;
        Frames frames{};      /* those left */
        std::size_t turn = 0; /* index of the next one's destination */
    };

    bool continues_last_run(const DestinationMacs &destinations, std::uint32_t length) const;

    std::uint64_t most_blocks_;
    Waiting waiting_{};
    std::deque<Run> runs_;
};

} // namespace softnode

#endif

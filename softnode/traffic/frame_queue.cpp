/*
 * frame_queue.cpp - runs of frames in and single frames out.
 */
#include "softnode/traffic/frame_queue.h"

#include "softnode/common/facts.h"

#include <algorithm>

namespace softnode
{

namespace
{

std::uint64_t blocks_of(std::uint32_t length)
{
    return (std::uint64_t{length} + facts::block_octets - 1) / facts::block_octets;
}

bool alike(const Frame &left, const Frame &right)
{
    return left.destination == right.destination && left.length == right.length && left.identity == right.identity &&
           left.entered == right.entered;
}

} // namespace

FrameQueue::FrameQueue(std::uint32_t threshold) : most_blocks_(threshold / facts::block_octets)
{
}

bool FrameQueue::empty() const
{
    return runs_ == 0;
}

Waiting FrameQueue::waiting() const
{
    return waiting_;
}

std::uint64_t FrameQueue::room_for(std::uint32_t length) const
{
    /* A frame that enters only to leave at once may exceed the threshold until it does. */
    return waiting_.blocks < most_blocks_ ? (most_blocks_ - waiting_.blocks) / blocks_of(length) : 0;
}

void FrameQueue::push(std::span<const Mac> destinations, const Frames &frames, Instant now)
{
    waiting_.frames += frames.count;
    waiting_.octets += frames.count * frames.length;
    waiting_.blocks += frames.count * blocks_of(frames.length);
    const std::uint64_t together = destinations.size() == 1 ? frames.count : 1;
    for (std::uint64_t pushed = 0; pushed < frames.count; pushed += together)
        append({destinations[pushed % destinations.size()], frames.length, frames.identity, now}, together);
}

Frame FrameQueue::pop()
{
    Run &first = run(0);
    const Frame frame = first.frame;
    waiting_.frames -= 1;
    waiting_.octets -= frame.length;
    waiting_.blocks -= blocks_of(frame.length);
    if (--first.count == 0) {
        ++first_;
        --runs_;
    }
    return frame;
}

FrameQueue::Run &FrameQueue::run(std::size_t number)
{
    return ring_[(first_ + number) & (ring_.size() - 1)];
}

void FrameQueue::append(const Frame &frame, std::uint64_t count)
{
    if (runs_ != 0 && alike(run(runs_ - 1).frame, frame)) {
        run(runs_ - 1).count += count;
        return;
    }
    if (runs_ == ring_.size()) {
        std::rotate(ring_.begin(), ring_.begin() + static_cast<std::ptrdiff_t>(first_ & (runs_ - 1)), ring_.end());
        first_ = 0;
        ring_.resize(2 * runs_);
    }
    run(runs_++) = {frame, count};
}

} // namespace softnode

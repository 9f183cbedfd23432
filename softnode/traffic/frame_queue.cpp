/*
 * frame_queue.cpp - runs of frames in and single frames out.
 */
#include "softnode/traffic/frame_queue.h"

#include "softnode/common/facts.h"

namespace softnode
{

namespace
{

std::uint64_t blocks_of(std::uint32_t length)
{
    return (std::uint64_t{length} + facts::block_octets - 1) / facts::block_octets;
}

} // namespace

FrameQueue::FrameQueue(std::uint32_t threshold) : most_blocks_(threshold / facts::block_octets)
{
}

bool FrameQueue::empty() const
{
    return runs_.empty();
}

Waiting FrameQueue::waiting() const
{
    return waiting_;
}

std::uint64_t FrameQueue::room_for(std::uint32_t length) const
{
    /* A frame that enters only to leave at once may stand above the threshold until it does. */
    return waiting_.blocks < most_blocks_ ? (most_blocks_ - waiting_.blocks) / blocks_of(length) : 0;
}

void FrameQueue::push(const DestinationMacs &destinations, const Frames &frames)
{
    if (frames.count == 0)
        return;
    waiting_.frames += frames.count;
    waiting_.octets += frames.count * frames.length;
    waiting_.blocks += frames.count * blocks_of(frames.length);
    if (continues_last_run(destinations, frames.length))
        runs_.back().frames.count += frames.count;
    else
        runs_.push_back({destinations, frames});
}

std::uint32_t FrameQueue::front_length() const
{
    return runs_.front().frames.length;
}

Frame FrameQueue::pop()
{
    Run &run = runs_.front();
    const Frame frame{run.destinations[run.turn], run.frames.length};
    run.turn = (run.turn + 1) % run.destinations.size();
    waiting_.frames -= 1;
    waiting_.octets -= frame.length;
    waiting_.blocks -= blocks_of(frame.length);
    if (--run.frames.count == 0)
        runs_.pop_front();
    return frame;
}

/* Whether the last run is of the same kind and ends where its destinations begin again. */
bool FrameQueue::continues_last_run(const DestinationMacs &destinations, std::uint32_t length) const
{
    if (runs_.empty())
        return false;
    const Run &last = runs_.back();
    return last.frames.length == length && last.destinations == destinations &&
           (last.turn + last.frames.count) % destinations.size() == 0;
}

} // namespace softnode

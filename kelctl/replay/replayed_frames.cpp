// Offers the frames and advances the time between them. What is written about them is in replay.cpp.
#include "kelctl/replay/replayed_frames.h"

#include "kelctl/input/interruption.h"
#include "kelctl/values/limits.h"

#include <algorithm>
#include <limits>

namespace kelctl
{
namespace
{

constexpr uint64_t check_sequence = 4;     // octets
constexpr uint64_t first_step = 1'000'000; // nanoseconds
constexpr uint64_t end_of_time = std::numeric_limits<uint64_t>::max();

// 0: no path leads there.
handle queue_to(const mac_address &destination, const snapshot &node)
{
    const auto path = std::ranges::lower_bound(node.paths, destination, {}, &snapshot::path::mac);
    return path != node.paths.end() && path->mac == destination ? path->queue : 0;
}

// Reports of the frames go into `all`, counted in time since `start`.
class follower
{
public:
    follower(replayed &all, const snapshot &node) : all_(all), node_(node)
    {
    }

    // A frame longer than the accelerator's interface can say is not offered. One for an unknown destination gets no
    // report, so it is written here.
    void offer(const captured_frame &frame, uint64_t at)
    {
        const mac_address to = mac_address_at(frame.octets.data());
        const uint64_t octets = octets_of(frame);
        const uint64_t identity = all_.frames.size() + 1;
        all_.frames.push_back({identity, queue_to(to, node_), at, at, frame_fate::never_left});
        if (octets > static_cast<uint64_t>(frame_length_range.max))
            all_.frames.back().fate = frame_fate::too_long;
        else if (++waiting_; offer_frame(to, static_cast<uint32_t>(octets), identity) == offered::unknown)
            note({.identity = identity, .entered = start_ + at, .left = start_ + at, .fate = frame_fate::no_way});
    }

    bool waiting() const
    {
        return waiting_ != 0;
    }

    uint64_t start() const
    {
        return start_;
    }

private:
    void note(frame_report report)
    {
        --waiting_;
        report.entered -= start_;
        report.left -= start_;
        const size_t number = report.identity - 1;
        all_.frames[number] = report;
        if (report.fate == frame_fate::sent)
            all_.departures.push_back(number);
    }

    replayed &all_;
    const snapshot &node_;
    const uint64_t start_ = virtual_time();
    size_t waiting_ = 0; // offered, without a report yet
    const frame_watch watch_{[this](const frame_report &report) { note(report); }};
};

} // namespace

uint64_t octets_of(const captured_frame &frame)
{
    return frame.length + check_sequence;
}

// After the last frame time goes on in steps that double, to the end of time if need be: how long a queue drains at its
// rate is not known, and a frame may wait for ever.
replayed replay_frames(std::span<const captured_frame> frames, const snapshot &node)
{
    replayed all;
    all.frames.reserve(frames.size());
    follower followed(all, node);
    for (const captured_frame &frame : frames) {
        if (interrupted())
            return all;
        const uint64_t at = frame.time - frames.front().time;
        advance_virtual_time(followed.start() + at - virtual_time());
        followed.offer(frame, at);
    }
    for (uint64_t step = first_step; followed.waiting() && virtual_time() != end_of_time; step *= 2) {
        if (interrupted())
            return all;
        advance_virtual_time(step);
    }
    all.whole = true;
    return all;
}

} // namespace kelctl

// From one offering to the next. Between two offerings the accelerator's time is advanced in one step.
#include "kelctl/accelerator/traffic_player.h"

#include "kelctl/accelerator/software_accelerator.h"
#include "kelctl/input/interruption.h"

namespace kelctl
{
namespace
{

// What the accelerator answers is ignored: a stream may outlive the path or PCEP that it is for.
void offer(const traffic_entry &stream)
{
    if (stream.to)
        offer_frames(*stream.to, stream.burst, stream.octets);
    else
        send_frames(stream.from, stream.burst, stream.octets);
}

} // namespace

void traffic_player::add(const traffic_entry &stream)
{
    schedule_.add(stream, time_);
}

// An interruption is checked between offerings: a second of virtual time may have a million of them.
uint64_t traffic_player::pass(uint64_t nanoseconds)
{
    const uint64_t begin = time_;
    const uint64_t end = begin + nanoseconds;
    while (!interrupted()) {
        const auto due = schedule_.next_before(end);
        move_to(due ? due->at : end);
        if (!due)
            break;
        offer(*due->stream);
    }
    return time_ - begin;
}

void traffic_player::move_to(uint64_t time)
{
    if (time > time_)
        advance_virtual_time(time - time_);
    time_ = time;
}

} // namespace kelctl

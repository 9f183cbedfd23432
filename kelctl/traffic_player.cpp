// From one offering to the next.
#include "kelctl/traffic_player.h"

#include "kelctl/interruption.h"
#include "kelctl/software_accelerator.h"

#include <stdexcept>

namespace kelctl
{
namespace
{

// A sound file names only what stands on its node.
void offer(const traffic_entry &stream)
{
    const offered met = stream.to ? offer_frames(*stream.to, stream.burst, stream.octets)
                                  : send_frames(stream.from, stream.burst, stream.octets);
    if (met == offered::unknown)
        throw std::logic_error("the accelerator knows nothing of what the traffic is for");
}

} // namespace

traffic_player::traffic_player(const std::vector<traffic_entry> &traffic) : schedule_(traffic)
{
}

void traffic_player::pass(uint64_t nanoseconds)
{
    const uint64_t end = time_ + nanoseconds;
    while (!interrupted()) {
        const auto due = schedule_.next_before(end);
        if (!due) {
            move_to(end);
            return;
        }
        move_to(due->at);
        offer(*due->stream);
    }
}

void traffic_player::move_to(uint64_t time)
{
    if (time > time_)
        advance_virtual_time(time - time_);
    time_ = time;
}

} // namespace kelctl

// Streams of frames, offered to the software accelerator as its time passes.
//
//     player.add(stream);
//     const uint64_t passed = player.pass(250'000'000);    // less after Ctrl-C
#pragma once

#include "kelctl/accelerator/traffic_schedule.h"

#include <cstdint>

namespace kelctl
{

// Only where there is virtual traffic.
class traffic_player
{
public:
    // From now on.
    void add(const traffic_entry &stream);

    // Lets so many nanoseconds pass; Ctrl-C ends them early. Returns how many passed. Frames for what the accelerator
    // does not know are lost.
    uint64_t pass(uint64_t nanoseconds);

private:
    void move_to(uint64_t time);

    traffic_schedule schedule_;
    uint64_t time_ = 0; // nanoseconds since the beginning
};

} // namespace kelctl

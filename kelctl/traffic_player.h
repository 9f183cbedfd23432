// The traffic of a node file, offered to the software accelerator as its time passes.
#pragma once

#include "kelctl/traffic_schedule.h"

#include <cstdint>
#include <vector>

namespace kelctl
{

// Only where there is virtual traffic, and for a node that stands.
class traffic_player
{
public:
    explicit traffic_player(const std::vector<traffic_entry> &traffic);

    // Lets so many nanoseconds pass. Ctrl-C ends them early.
    void pass(uint64_t nanoseconds);

    // Nanoseconds that have passed since the beginning.
    uint64_t time() const
    {
        return time_;
    }

private:
    void move_to(uint64_t time);

    traffic_schedule schedule_;
    uint64_t time_ = 0;
};

} // namespace kelctl

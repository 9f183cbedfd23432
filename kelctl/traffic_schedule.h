// When the frames of [[traffic]] tables are offered. Whole numbers only: the same tables give the same offerings at the
// same nanoseconds, however the time is cut into steps.
#pragma once

#include "kelctl/traffic_entry.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace kelctl
{

// `entry.burst` frames at one moment. The entry is the schedule's.
struct offering {
    const traffic_entry *stream;
    uint64_t at; // nanoseconds, rounded down
};

class traffic_schedule
{
public:
    explicit traffic_schedule(const std::vector<traffic_entry> &traffic);

    // The next offering that is due before that time, in the order of times and, at one time, of the tables.
    std::optional<offering> next_before(uint64_t end);

private:
    struct stream {
        traffic_entry entry;
        uint64_t next;      // when the next frames are due
        uint64_t fraction;  // of a nanosecond behind that, in parts of `parts`
        uint64_t remainder; // in the same parts: what an interval has beside its whole nanoseconds
        uint64_t interval;
        uint64_t parts;
    };

    static stream stream_of(const traffic_entry &entry);
    static void move_on(stream &stream);

    std::vector<stream> streams_;
};

// Rounded up.
uint64_t offerings_in_a_second(const traffic_entry &entry);

} // namespace kelctl

// When the frames of streams are offered. Whole numbers only: the same streams give the same offerings at the same
// nanoseconds, however the time is cut into steps, and on every machine. Nothing here is offered: see traffic_player.h.
//
//     schedule.add(stream, now);
//     while (const auto due = schedule.next_before(end))
//         offer(*due->stream, due->at);
#pragma once

#include "kelctl/accelerator/traffic_entry.h"

#include <cstdint>
#include <optional>
#include <random>
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
    // Its times count from `now`, nanoseconds.
    void add(const traffic_entry &entry, uint64_t now);

    // The next offering that is due before that time, in the order of times and, at one time, of their adding.
    std::optional<offering> next_before(uint64_t end);

private:
    struct stream {
        traffic_entry entry;
        uint64_t next;      // when the next frames are due
        uint64_t fraction;  // of a nanosecond behind that, in parts of `parts`
        uint64_t remainder; // in the same parts: what an interval has beside its whole nanoseconds
        uint64_t interval;
        uint64_t parts;
        std::mt19937_64 chance;
        uint64_t on_until; // of on-off arrivals: when the period ends
    };

    static void move_on(stream &stream);

    std::vector<stream> streams_;
};

// More would let a second of virtual time take more than a second.
inline constexpr uint64_t most_offerings_a_second = 1'000'000;

// Whether there are periods where arrivals are on-off, and nowhere else.
bool periods_fit(const traffic_entry &entry);

// Rounded up.
uint64_t offerings_in_a_second(const traffic_entry &entry);

} // namespace kelctl

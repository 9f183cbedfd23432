// Durations in nanoseconds, and when the largest began.
#pragma once

#include "counting/histogram.h"

#include <cstdint>

namespace kel_trace
{

struct durations {
    counting::histogram spread;
    int64_t largest_at = 0; // begin of the largest, of the first one of several

    // Clocks of a recording may step back: a negative duration counts as 0.
    void add(int64_t nanoseconds, int64_t begin);
    // Those of another host: as if each had been added here.
    void add(const durations &other);
};

} // namespace kel_trace

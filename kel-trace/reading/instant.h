// Points in time as people write and read them: in the zone of this machine, as babeltrace2 prints them.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace kel_trace
{

// "2026-11-22 05:01:55.978190721" of nanoseconds since 1970.
std::string instant_text(int64_t time);

// "2026-11-22 05:01:55[.978190721]" or, on the day of `near`, "05:01[:55[.978190721]]". None for anything else.
std::optional<int64_t> parse_instant(std::string_view text, int64_t near);

// "5 ms", "12.345 us": exact.
std::string duration_text(int64_t nanoseconds);

} // namespace kel_trace

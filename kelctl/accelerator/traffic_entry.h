// What one stream of traffic is. When its frames come is decided in traffic_schedule.h.
#pragma once

#include "kelctl/values/mac_address.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

namespace kelctl
{

// How the moments at which frames come are spread: always equally far apart; independently of one another; or equally
// far apart in periods between which none come. Those that depend on chance are the same for the same seed.
enum class arrivals : uint8_t { constant, poisson, on_off };

// By arrivals, as they are written.
inline constexpr std::array<std::string_view, 3> arrival_words = {"constant", "poisson", "on-off"};

// A stream of frames, as many in a time as either of the rates says; with periods, while they last. Times count from
// when it is added.
struct traffic_entry {
    std::optional<mac_address> to; // a destination; none: what a PCEP or a group sends
    uint32_t from = 0;             // its id
    uint32_t octets = 1;           // of a frame
    uint32_t rate = 0;             // kbit/s; 0: counted in frames
    uint32_t frames_per_second = 0;
    uint32_t burst = 1; // frames that come at once
    arrivals spread = arrivals::constant;
    uint32_t seed = 1;
    uint64_t on = 0; // nanoseconds, as is off: the periods' means, which on-off arrivals have, and they alone
    uint64_t off = 0;
    uint64_t start = 0; // nanoseconds, as is the stop
    std::optional<uint64_t> stop;
};

} // namespace kelctl

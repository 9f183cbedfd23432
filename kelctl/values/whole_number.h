// Whole numbers as people write them, and the ranges they have to be in.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace kelctl
{

// Both ends belong to the range. `text` is how people are told of it.
struct range {
    int64_t min;
    int64_t max;
    std::string_view text;

    constexpr bool holds(int64_t value) const
    {
        return value >= min && value <= max;
    }
};

// Decimal, or hexadecimal after 0x, with or without a minus. One that 64 bits cannot hold becomes the nearest they can.
std::optional<int64_t> parse_whole_number(std::string_view text);

// "512 is not in 1 to 511", "0x200 is not in 0x1 to 0x1FF"; `shown` is the value as it was written.
std::string outside(std::string_view shown, const range &allowed);

} // namespace kelctl

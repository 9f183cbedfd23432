// Whole numbers as people write them, and ranges. Which value has which range is limits.h.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace kelctl
{

// Both ends belong to the range. `text` is its form in messages and help: "1 to 511".
struct range {
    int64_t min;
    int64_t max;
    std::string_view text;

    constexpr bool holds(int64_t value) const
    {
        return value >= min && value <= max;
    }
};

// Reads a decimal number, or a hexadecimal one after 0x, with or without a minus. None for any other text. A number
// beyond 64 bits becomes the nearest that they hold, so that it is reported as out of range and not as no number.
std::optional<int64_t> parse_whole_number(std::string_view text);

// "512 is not in the range 1 to 511", "0x200 is not in the range 0x1 to 0x1FF"; `shown` is the value as it was written.
std::string outside(std::string_view shown, const range &allowed);

} // namespace kelctl

// Rates, sizes and durations with units, as people write and read them.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace text
{

struct unit {
    std::string_view name;
    uint64_t factor; // of the first unit of its table
};

inline constexpr unit rate_units[] = {{"kbit/s", 1}, {"Mbit/s", 1'000}, {"Gbit/s", 1'000'000}};
inline constexpr unit duration_units[] = {{"ns", 1}, {"us", 1'000}, {"ms", 1'000'000}, {"s", 1'000'000'000}};
inline constexpr unit size_units[] = {{"octets", 1}, {"KiB", 1024}, {"MiB", uint64_t{1024} * 1024}};

// The unit of this name; null when the table has none.
const unit *find_unit(std::string_view name, std::span<const unit> units);

// A whole number and one of the units, with or without spaces between: "100 Mbit/s". The value is in the first unit
// of the table; one that 64 bits cannot hold becomes the largest that they can.
std::optional<uint64_t> parse_quantity(std::string_view text, std::span<const unit> units);

// The value with the largest unit that leaves a whole number: 100000 of rate_units is "100 Mbit/s".
std::string quantity_text(uint64_t value, std::span<const unit> units);

// The same with separators: "2,500 kbit/s".
std::string separated_quantity_text(uint64_t value, std::span<const unit> units);

// "10,000"
std::string with_separators(uint64_t number);

} // namespace text

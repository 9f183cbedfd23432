// Rates, sizes and durations with units, as node files write them and views show them.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace kelctl
{

struct unit {
    std::string_view name;
    uint64_t factor; // of the first unit of its table
};

inline constexpr unit rate_units[] = {{"kbit/s", 1}, {"Mbit/s", 1'000}, {"Gbit/s", 1'000'000}};
inline constexpr unit duration_units[] = {{"ns", 1}, {"us", 1'000}, {"ms", 1'000'000}, {"s", 1'000'000'000}};
inline constexpr unit size_units[] = {{"octets", 1}, {"KiB", 1024}, {"MiB", uint64_t{1024} * 1024}};

// A whole number and one of the units, with or without spaces between: "100 Mbit/s". The value is in the first unit
// of the table; one that 64 bits cannot hold becomes the largest that they can.
std::optional<uint64_t> parse_quantity(std::string_view text, std::span<const unit> units);

// The value with the largest unit that leaves a whole number: 100000 of rate_units is "100 Mbit/s".
std::string quantity_text(uint64_t value, std::span<const unit> units);

// "kbit/s, Mbit/s or Gbit/s"
std::string names_of(std::span<const unit> units);

// What to tell people who wrote something else.
std::string no_quantity(std::string_view written, std::span<const unit> units);

// What to tell people whose octets do not make up whole blocks.
std::string no_multiple(uint64_t octets, uint32_t block);

} // namespace kelctl

// Rates, sizes and durations with units, and what to tell people who wrote them wrong.
#pragma once

#include "text/quantity.h"

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace kelctl
{

using text::duration_units;
using text::parse_quantity;
using text::quantity_text;
using text::rate_units;
using text::size_units;
using text::unit;

// "kbit/s, Mbit/s or Gbit/s"
std::string names_of(std::span<const unit> units);

// What to tell people who wrote something else.
std::string no_quantity(std::string_view written, std::span<const unit> units);

// What to tell people whose octets do not make up whole blocks.
std::string no_multiple(uint64_t octets, uint32_t block);

} // namespace kelctl

// The messages for a rate, a size or a duration that is written wrong. The units themselves, and how a number with a
// unit is read and written, are in text/quantity.h.
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

// The message for a text that parse_quantity() does not take.
std::string no_quantity(std::string_view written, std::span<const unit> units);

// The message for a size that is not a number of whole blocks. Both in octets.
std::string no_multiple(uint64_t octets, uint32_t block);

} // namespace kelctl

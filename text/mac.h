// MAC addresses as text.
#pragma once

#include <array>
#include <cstdint>

namespace text
{

// "02:00:02:02:00:01" and its terminator, of six octets in wire order.
std::array<char, 18> mac_text(const std::array<uint8_t, 6> &octets);

} // namespace text

// The range of each value, for node files and commands alike. The unit is in its text. Rows of commands name a range in
// the kind of their argument: kind::number(vlan_range). A range here may be narrower than the library's: it accepts
// values that cannot work on a node.
#pragma once

#include "kelctl/values/whole_number.h"

#include <cstdint>

namespace kelctl
{

inline constexpr range mpid_range = {1, 255, "1 to 255"};
inline constexpr range mtu_range = {68, 65535, "68 to 65535 octets"};
inline constexpr range ether_type_range = {0x0600, 0xFFFF, "0x0600 to 0xFFFF"};
inline constexpr range setting_range = {0, 15, "0 to 15"};
inline constexpr range rate_range = {1, 4'294'967'295, "1 to 4294967295 kbit/s"};
inline constexpr range burst_range = {1, 1'048'575, "1 to 1048575 octets"};
inline constexpr range threshold_range = {256, 4'294'967'040, "256 to 4294967040 octets"};
inline constexpr range id_range = {1, 511, "1 to 511"};
inline constexpr range remote_id_range = {0, 0xFF'FFFF, "0 to 16777215"};
inline constexpr range vlan_range = {0, 4095, "0 to 4095"};
inline constexpr range priority_range = {0, 7, "0 to 7"};
inline constexpr range frame_length_range = {1, 65535, "1 to 65535 octets"};
inline constexpr range duration_range = {0, 1'000'000'000'000'000, "0 s to 1000000 s"};
inline constexpr range period_range = {1, 1'000'000'000'000'000, "1 ns to 1000000 s"};
inline constexpr range path_count_range = {1, 100'000, "1 to 100000"};
inline constexpr range frames_per_second_range = {1, 4'294'967'295, "1 to 4294967295"};
inline constexpr range burst_frames_range = {1, 1'000'000, "1 to 1000000 frames"};
inline constexpr range text_length_range = {1, 1'048'576, "1 to 1048576 octets"};
inline constexpr range octet_range = {0, 0xFF, "0 to 255"};
inline constexpr range word_range = {0, 0xFFFF, "0 to 65535"};

// For --raw: all that the types of the C interface can hold. The library decides then, and its refusal is reported.
inline constexpr range dword_range = {0, 0xFFFF'FFFF, "0 to 4294967295"};
inline constexpr range raw_port_range = {-0x8000'0000LL, 0x7FFF'FFFF, "-2147483648 to 2147483647"};
inline constexpr range raw_threshold_range = {0, 0xFFFF'FFFFLL * 256, "0 to 1099511627520 octets"};

// A queue's threshold is configured in blocks of so many octets.
inline constexpr uint32_t threshold_block = 256;

} // namespace kelctl

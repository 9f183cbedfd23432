// MAC addresses: their notations, ranges of consecutive ones, and their location in the node. Their text is text/mac.h.
//
//     const auto mac = parse_mac_address("0200.0002.0001");
//     to_text(counted_up(*mac, 2))    // 02:00:00:02:00:03
#pragma once

#include "kel/kel_node_names.h"

#include <array>
#include <compare>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace kelctl
{

// Ordered as numbers are: by the first octet, then the second.
struct mac_address {
    std::array<uint8_t, 6> octets{}; // wire order

    auto operator<=>(const mac_address &) const = default;
};

// Copies the six octets there.
mac_address mac_address_at(const uint8_t *octets);

// Reads aa:bb:cc:dd:ee:ff, aa-bb-cc-dd-ee-ff or aabb.ccdd.eeff, with digits in either case. None for any other text.
std::optional<mac_address> parse_mac_address(std::string_view text);

// The message for a text that parse_mac_address() does not take.
std::string no_mac_address(std::string_view written);

// aa:bb:cc:dd:ee:ff
std::string to_text(const mac_address &mac);

// True for the address of one station: neither multicast nor broadcast, and not all zeros.
bool is_station(const mac_address &mac);

// How many addresses follow this one before its last three octets overflow.
uint32_t addresses_after(const mac_address &mac);

// The address plus `by`, counted in its last three octets. `by` is at most addresses_after().
mac_address counted_up(const mac_address &mac, uint32_t by);

// The location that the library finds for the address on the processor with this MP id (mp_id.h); an id of 0 means
// none. The rule is repeated here because a call of the library would bind the process to an MP id.
kel_location location_of(const mac_address &mac, uint8_t mp_id);

} // namespace kelctl

// Ethernet addresses: notations, counting up, and where their owner sits.
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

struct mac_address {
    std::array<uint8_t, 6> octets{}; // wire order

    auto operator<=>(const mac_address &) const = default;
};

// Of the six octets there.
mac_address mac_address_at(const uint8_t *octets);

// aa:bb:cc:dd:ee:ff, aa-bb-cc-dd-ee-ff or aabb.ccdd.eeff, digits in either case.
std::optional<mac_address> parse_mac_address(std::string_view text);

// What to tell people who wrote something else.
std::string no_mac_address(std::string_view written);

// aa:bb:cc:dd:ee:ff
std::string to_text(const mac_address &mac);

// Whether the address stands for one station: neither a group's nor the broadcast address, nor no address at all.
bool is_station(const mac_address &mac);

// How many addresses with the same first three octets follow this one.
uint32_t addresses_after(const mac_address &mac);

// The address so many further, counted in the last three octets. At most addresses_after().
mac_address counted_up(const mac_address &mac, uint32_t by);

// The owner's location, as the library tells it on the processor with this MP id (mp_id.h); 0 where there is none. Asking
// the library itself would bind the process to an MP id.
kel_location location_of(const mac_address &mac, uint8_t mp_id);

} // namespace kelctl

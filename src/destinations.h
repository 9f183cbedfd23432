// The destinations of all paths: how many paths lead to a MAC address from each port. Every path keeps a heap copy of
// its MAC address; the caller keeps its own.
//
//     if (!add_destination(search_number(scheduler_idx, queue_idx), config->dst_mac))
//         return KEL_RC_FAILED;
//
// `mac` is 6 octets in wire order. `port` is the number of an IC port in the order of search, search_number() in
// qos_registry.h, and not its IELL number. Used by one thread at a time. Nothing here traces.
#pragma once

#include <cstddef>
#include <cstdint>

namespace kel
{

constexpr size_t port_count = 40; // numbers start at 0

// Counts one more path. Returns false when there is no memory for the copy; nothing has changed then.
bool add_destination(size_t port, const uint8_t *mac);

// Counts one path less, and frees its copy. Returns false when no path leads to the MAC address from the port.
bool remove_destination(size_t port, const uint8_t *mac);

// Finds the first port that has a path to the MAC address. The port is written on success only.
bool find_destination(const uint8_t *mac, size_t &port);

// Returns the number of paths from the port.
uint32_t destination_count(size_t port);

// Releases the destinations of all paths from the port.
void forget_destinations(size_t port);

} // namespace kel

// The destinations of all paths: which MAC address stands on which port, and how often. Every path keeps a heap copy
// of its MAC address. What adding, removing and looking up cost does not depend on how many there are, of one address
// either.
//
// A port is told by its number in the order in which ports are searched. Nothing here traces.
#pragma once

#include <cstddef>
#include <cstdint>

namespace kel
{

// False when there is no memory for the copy; nothing has changed then.
bool add_destination(size_t port, const uint8_t *mac);

// Takes the oldest of the equal ones off the port. False when there is none.
bool remove_destination(size_t port, const uint8_t *mac);

// The lowest port that the MAC address stands on, written on success only.
bool find_destination(const uint8_t *mac, size_t &port);

// Releases all copies on the port.
void forget_destinations(size_t port);

} // namespace kel

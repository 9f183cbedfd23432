/*
 * mac.h - a MAC address and its text.
 */
#ifndef SOFTNODE_MAC_H
#define SOFTNODE_MAC_H

#include <array>
#include <cstdint>

namespace softnode
{

/* Wire order. */
using Mac = std::array<std::uint8_t, 6>;

/* "02:00:02:02:00:01" and the terminator. */
using MacText = std::array<char, 18>;

Mac mac_at(const std::uint8_t *octets);
MacText text_of(const Mac &mac);

} // namespace softnode

#endif

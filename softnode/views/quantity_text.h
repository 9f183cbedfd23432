/*
 * quantity_text.h - numbers as people write them: 1,048,576 and 1 MiB.
 */
#ifndef SOFTNODE_QUANTITY_TEXT_H
#define SOFTNODE_QUANTITY_TEXT_H

#include <cstdint>
#include <string>

namespace softnode
{

/** "1,048,576" */
std::string grouped(std::uint64_t number);

/** kbit/s, in the largest unit that loses nothing: "100 Mbit/s", "2,500 kbit/s" */
std::string rate_text(std::uint64_t rate);

/** Octets, in the largest unit that loses nothing: "64 KiB", "3,000 octets" */
std::string size_text(std::uint64_t octets);

} // namespace softnode

#endif

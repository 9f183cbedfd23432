/*
 * mac.cpp - copying a MAC address and making its text.
 */
#include "softnode/common/mac.h"

#include <algorithm>
#include <cstddef>

namespace softnode
{

Mac mac_at(const std::uint8_t *octets)
{
    Mac mac{};
    std::copy_n(octets, mac.size(), mac.begin());
    return mac;
}

MacText text_of(const Mac &mac)
{
    constexpr char digits[] = "0123456789abcdef";
    MacText text{};
    for (std::size_t octet = 0; octet < mac.size(); ++octet) {
        text[3 * octet] = digits[mac[octet] >> 4];
        text[3 * octet + 1] = digits[mac[octet] & 0x0f];
        text[3 * octet + 2] = ':';
    }
    text.back() = '\0';
    return text;
}

} // namespace softnode

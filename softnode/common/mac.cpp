/*
 * mac.cpp - copying a MAC address; its text is text/mac.h's.
 */
#include "softnode/common/mac.h"

#include "text/mac.h"

#include <algorithm>

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
    return text::mac_text(mac);
}

} // namespace softnode

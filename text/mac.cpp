// Two digits for each octet.
#include "text/mac.h"

#include <cstddef>

namespace text
{

std::array<char, 18> mac_text(const std::array<uint8_t, 6> &octets)
{
    constexpr char digits[] = "0123456789abcdef";
    std::array<char, 18> text{};
    for (size_t i = 0; i < octets.size(); ++i) {
        text[3 * i] = digits[octets[i] >> 4];
        text[3 * i + 1] = digits[octets[i] & 0x0f];
        text[3 * i + 2] = ':';
    }
    text.back() = '\0';
    return text;
}

} // namespace text

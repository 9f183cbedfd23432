// Reading, writing, counting and locating addresses.
#include "kelctl/values/mac_address.h"

#include "text/mac.h"
#include "text/printable.h"

#include <fmt/core.h>

#include <algorithm>

namespace kelctl
{
namespace
{

struct notation {
    char separator;
    size_t digits; // of each group
};
constexpr notation notations[] = {{':', 2}, {'-', 2}, {'.', 4}};
constexpr size_t all_digits = 12;
constexpr uint32_t last_low_part = 0xFF'FFFF;

// Octet 3 of an address that is not behind the EIOA; octet 2 of a processor's, if it is not the own MP id.
constexpr uint8_t board_processor = 0;
constexpr uint8_t board_ob = 2;
constexpr uint8_t board_hsfp = 3;
constexpr uint8_t first_other_processor = 0x80;

// 0 to 15, or -1
int digit_value(char c)
{
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    return -1;
}

// The size is checked first, so every group has all of its digits.
std::optional<mac_address> parse_as(std::string_view text, notation form)
{
    if (text.size() != all_digits + all_digits / form.digits - 1)
        return std::nullopt;
    mac_address mac;
    size_t digits = 0;
    for (size_t i = 0; i < text.size(); ++i) {
        if (i % (form.digits + 1) == form.digits) {
            if (text[i] != form.separator)
                return std::nullopt;
            continue;
        }
        const int value = digit_value(text[i]);
        if (value < 0)
            return std::nullopt;
        uint8_t &octet = mac.octets[digits++ / 2];
        octet = static_cast<uint8_t>(octet << 4 | value);
    }
    return mac;
}

// The last three octets as a number: those in which addresses are counted up.
uint32_t low_part(const mac_address &mac)
{
    return static_cast<uint32_t>(mac.octets[3] << 16 | mac.octets[4] << 8 | mac.octets[5]);
}

} // namespace

mac_address mac_address_at(const uint8_t *octets)
{
    mac_address mac;
    std::copy_n(octets, mac.octets.size(), mac.octets.begin());
    return mac;
}

std::optional<mac_address> parse_mac_address(std::string_view text)
{
    for (const notation form : notations)
        if (const auto mac = parse_as(text, form))
            return mac;
    return std::nullopt;
}

std::string no_mac_address(std::string_view written)
{
    return fmt::format("{} is not a MAC address such as 02:00:00:02:00:01", text::in_quotes(written));
}

std::string to_text(const mac_address &mac)
{
    return text::mac_text(mac.octets).data();
}

bool is_station(const mac_address &mac)
{
    return (mac.octets[0] & 1) == 0 && mac != mac_address{};
}

uint32_t addresses_after(const mac_address &mac)
{
    return last_low_part - low_part(mac);
}

mac_address counted_up(const mac_address &mac, uint32_t by)
{
    const uint32_t low = low_part(mac) + by;
    mac_address result = mac;
    result.octets[3] = static_cast<uint8_t>(low >> 16);
    result.octets[4] = static_cast<uint8_t>(low >> 8);
    result.octets[5] = static_cast<uint8_t>(low);
    return result;
}

// Without an MP id, 0 in byte 2 is a processor's, as the library has it.
kel_location location_of(const mac_address &mac, uint8_t mp_id)
{
    const uint8_t processor = mac.octets[2];
    const uint8_t board = mac.octets[3];
    if (board == board_ob)
        return KEL_LOCATION_OB;
    if (board == board_hsfp)
        return KEL_LOCATION_HSFP;
    if (board == board_processor && (processor >= first_other_processor || processor == mp_id))
        return KEL_LOCATION_CPU;
    return KEL_LOCATION_EIOA;
}

} // namespace kelctl

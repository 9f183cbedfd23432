// Reading numbers, and the wording of those out of range.
#include "kelctl/values/whole_number.h"

#include <fmt/core.h>

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <limits>

namespace kelctl
{
namespace
{

constexpr int64_t least = std::numeric_limits<int64_t>::min();
constexpr int64_t largest = std::numeric_limits<int64_t>::max();

bool is_hexadecimal(std::string_view number)
{
    number.remove_prefix(number.starts_with('-') ? 1 : 0);
    return number.starts_with("0x") || number.starts_with("0X");
}

std::string number_text(int64_t value, bool hexadecimal)
{
    return hexadecimal ? fmt::format("{}0x{:X}", value < 0 ? "-" : "", std::abs(value)) : std::to_string(value);
}

// The number, or the nearest that 64 bits hold.
int64_t with_sign(uint64_t magnitude, bool negative)
{
    if (magnitude > static_cast<uint64_t>(largest))
        return negative ? least : largest;
    return negative ? -static_cast<int64_t>(magnitude) : static_cast<int64_t>(magnitude);
}

} // namespace

// from_chars() reads the magnitude: for a number that does not fit it still finds the end, so it is known to be a
// number.
std::optional<int64_t> parse_whole_number(std::string_view text)
{
    const bool negative = text.starts_with('-');
    text.remove_prefix(negative ? 1 : 0);
    const bool hexadecimal = is_hexadecimal(text);
    text.remove_prefix(hexadecimal ? 2 : 0);

    uint64_t magnitude = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), magnitude, hexadecimal ? 16 : 10);
    if (error == std::errc::invalid_argument || end != text.data() + text.size())
        return std::nullopt;
    if (error == std::errc::result_out_of_range)
        magnitude = std::numeric_limits<uint64_t>::max();
    return with_sign(magnitude, negative);
}

// The ends of the range are shown in the notation of the value, so that they can be compared by eye. What follows them
// in the range's text, its unit, is kept.
std::string outside(std::string_view shown, const range &allowed)
{
    const bool hexadecimal = is_hexadecimal(shown);
    const size_t second = allowed.text.find(" to ");
    if (hexadecimal == is_hexadecimal(allowed.text) || second == allowed.text.npos)
        return fmt::format("{} is not in the range {}", shown, allowed.text);
    const size_t unit = std::min(allowed.text.find(' ', second + 4), allowed.text.size());
    return fmt::format("{} is not in the range {} to {}{}", shown, number_text(allowed.min, hexadecimal),
                       number_text(allowed.max, hexadecimal), allowed.text.substr(unit));
}

} // namespace kelctl

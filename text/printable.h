// Text from outside (a file, a name, a typed word) made safe to show: no control character can move a terminal's cursor
// or change its colours.
#pragma once

#include <string>
#include <string_view>

namespace text
{

// Some editors put it in front of a file.
inline constexpr std::string_view byte_order_mark = "\xEF\xBB\xBF";

// One line of any length: each control character becomes "?".
std::string without_controls(std::string_view text);

// The same, cut after 160 octets, never within a UTF-8 sequence; "..." follows if it was.
std::string printable(std::string_view text);

// The same in double quotes.
std::string in_quotes(std::string_view text);

// Not the first octet of a UTF-8 sequence.
constexpr bool continues_character(char c)
{
    return (static_cast<unsigned char>(c) & 0xC0) == 0x80;
}

} // namespace text

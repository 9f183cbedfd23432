// Control characters, and where a long text may be cut.
#include "text/printable.h"

#include <algorithm>

namespace text
{
namespace
{

constexpr size_t longest_shown = 160;

bool is_control(char c)
{
    return static_cast<unsigned char>(c) < 0x20 || c == 0x7F;
}

// Where to cut so that no UTF-8 sequence is torn apart.
size_t cut_before(std::string_view text, size_t at)
{
    while (at > 0 && continues_character(text[at]))
        --at;
    return at;
}

} // namespace

std::string without_controls(std::string_view text)
{
    std::string shown(text);
    std::replace_if(shown.begin(), shown.end(), is_control, '?');
    return shown;
}

std::string printable(std::string_view text)
{
    if (text.size() <= longest_shown)
        return without_controls(text);
    return without_controls(text.substr(0, cut_before(text, longest_shown))) + "...";
}

std::string in_quotes(std::string_view text)
{
    return '"' + printable(text) + '"';
}

} // namespace text

// Appending words, as far as there is room. Which words a call has is exported_functions.cpp.
#include "kel-record/preload/line.h"

#include <cstdarg>
#include <cstdio>

namespace kel_record
{
namespace
{

constexpr char raw_option[] = " --raw";

// In quotes, and the same with --raw and without.
bool is_plain(char c)
{
    return c >= ' ' && c <= '~' && c != '\'' && c != '\\';
}

} // namespace

line::line(const char *command)
{
    add("%s", command);
}

// Room for --raw is kept free. What does not fit makes the line no command, instead of a shorter one that means
// something else.
void line::add(const char *format, ...)
{
    const size_t room = sizeof text_ - sizeof raw_option - size_;
    va_list values;
    va_start(values, format);
    const int length = vsnprintf(text_ + size_, room, format, values);
    va_end(values);
    if (length >= 0 && static_cast<size_t>(length) < room)
        size_ += static_cast<size_t>(length);
    else
        is_command_ = false;
}

void line::number(const char *option, int64_t value, const kelctl::range &allowed)
{
    add("%s %ld", option, value);
    raw_ = raw_ || !allowed.holds(value);
}

void line::mac(const char *option, const uint8_t *octets)
{
    if (reads(octets))
        add("%s %02x:%02x:%02x:%02x:%02x:%02x", option, octets[0], octets[1], octets[2], octets[3], octets[4],
            octets[5]);
}

// A text that begins with a dash would be read as an option; its first character is written as an octet.
void line::text(const char *option, const char *text)
{
    if (!reads(text))
        return;
    add("%s '", option);
    for (const char *at = text; *at && is_command_; ++at) {
        const bool looks_like_option = at == text && *at == '-';
        if (is_plain(*at) && !looks_like_option) {
            add("%c", *at);
            continue;
        }
        add("\\x%02x", static_cast<unsigned char>(*at));
        raw_ = true;
    }
    add("'");
}

bool line::reads(const void *pointer)
{
    if (pointer)
        return true;
    add(" (null)");
    is_command_ = false;
    return false;
}

const char *line::finished()
{
    snprintf(text_ + size_, sizeof text_ - size_, "%s", raw_ ? raw_option : "");
    return text_;
}

} // namespace kel_record

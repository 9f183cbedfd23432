// Messages of any prefix and any body, each compared with what its texts make by hand: the prefix ends after 255
// characters, the whole after 1023, and what has neither prefix nor body shows the message before.
#include "input.h"
#include "kel/kel_trace.h"

#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <optional>
#include <string>

namespace
{

constexpr std::size_t longest_prefix = 255;
constexpr std::size_t longest_message = 1023;
constexpr std::size_t longest_text = 1300; // well beyond both

const char *const prefix_formats[] = {"%s(): ", "%s()"};

// A few octets, again and again up to a length of their own: short inputs reach the cuts.
std::string long_text(Input &input)
{
    const std::size_t length = input.take<std::uint16_t>() % longest_text;
    const std::string pattern = input.text();
    std::string text;
    while (text.size() < length)
        text += pattern.empty() ? "x" : pattern;
    text.resize(length);
    return text.substr(0, text.find('\0'));
}

std::optional<std::string> text_or_none(Input &input)
{
    return input.below(4) == 0 ? std::nullopt : std::optional(long_text(input));
}

[[gnu::format(printf, 3, 4)]] char *by_list(const char *prefix_format, const char *prefix, const char *body, ...)
{
    std::va_list values;
    va_start(values, body);
    char *const made = kel_trace_internal_vformat_str(prefix_format, prefix, body, values);
    va_end(values);
    return made;
}

constexpr decltype(&by_list) formatters[] = {kel_trace_internal_format_str, by_list};

// Its body begins with a number, so that values are formatted and not only copied.
std::string body_of(unsigned number, const std::string &text)
{
    char begin[16];
    std::snprintf(begin, sizeof begin, "0x%x - ", number);
    return begin + text;
}

void check(const std::string &expected, const char *made)
{
    if (expected == made)
        return;
    std::fprintf(stderr, "expected: %s\nmade: %s\n", expected.c_str(), made);
    std::abort();
}

// Formats a message and checks it. `shown` is the one before, and then this one.
void format(Input &input, std::string &shown)
{
    const auto make = formatters[input.below(std::size(formatters))];
    const char *const prefix_format = prefix_formats[input.below(std::size(prefix_formats))];
    const auto prefix = text_or_none(input);
    const auto body = text_or_none(input);
    const char *const name = prefix ? prefix->c_str() : nullptr;
    const std::string begin = prefix ? (*prefix + (prefix_format + 2)).substr(0, longest_prefix) : "";

    if (body) {
        const auto number = input.take<unsigned>();
        shown = (begin + body_of(number, *body)).substr(0, longest_message);
        check(shown, make(prefix_format, name, "0x%x - %s", number, body->c_str()));
        return;
    }
    if (prefix)
        shown = begin;
    check(shown, make(prefix_format, name, nullptr));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *octets, std::size_t count)
{
    Input input(octets, count);
    std::string shown = kel_trace_internal_format_str("%s()", "first", nullptr);
    while (!input.ended())
        format(input, shown);
    return 0;
}

// Times and durations as text. The C library's calendar does the conversion, so TZ applies.
#include "kel-trace/reading/instant.h"

#include "text/quantity.h"

#include <fmt/core.h>

#include <ctime>

namespace kel_trace
{
namespace
{

constexpr int64_t second = 1'000'000'000;

// Whole seconds, rounded down, and what is left.
struct split {
    time_t seconds;
    int64_t nanoseconds;
};
split split_of(int64_t time)
{
    const int64_t nanoseconds = (time % second + second) % second;
    return {static_cast<time_t>((time - nanoseconds) / second), nanoseconds};
}

// The digits behind the point as nanoseconds.
std::optional<int64_t> fraction(std::string_view text)
{
    if (text.empty())
        return 0;
    if (text.front() != '.' || text.size() < 2 || text.size() > 10)
        return std::nullopt;
    int64_t value = 0;
    for (size_t i = 1; i <= 9; ++i) {
        const char digit = i < text.size() ? text[i] : '0';
        if (digit < '0' || digit > '9')
            return std::nullopt;
        value = value * 10 + (digit - '0');
    }
    return value;
}

} // namespace

std::string instant_text(int64_t time)
{
    const auto [seconds, nanoseconds] = split_of(time);
    tm parts{};
    localtime_r(&seconds, &parts);
    char text[32];
    const size_t length = std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", &parts);
    return fmt::format("{}.{:09}", std::string_view(text, length), nanoseconds);
}

// Forms without a date keep that of `near`. A form may fit the beginning of the text only: what is left has to be a
// fraction, or the next form is tried.
std::optional<int64_t> parse_instant(std::string_view text, int64_t near)
{
    const std::string whole(text);
    for (const char *form : {"%Y-%m-%d %H:%M:%S", "%Y-%m-%dT%H:%M:%S", "%H:%M:%S", "%Y-%m-%d %H:%M", "%H:%M"}) {
        const time_t day = split_of(near).seconds;
        tm parts{};
        localtime_r(&day, &parts);
        parts.tm_sec = 0;
        parts.tm_isdst = -1;
        const char *end = strptime(whole.c_str(), form, &parts);
        if (!end)
            continue;
        if (const auto nanoseconds = fraction(end))
            return static_cast<int64_t>(mktime(&parts)) * second + *nanoseconds;
    }
    return std::nullopt;
}

std::string duration_text(int64_t nanoseconds)
{
    const text::unit *fitting = text::duration_units;
    for (const text::unit &unit : text::duration_units)
        if (static_cast<uint64_t>(nanoseconds) >= unit.factor)
            fitting = &unit;
    const auto factor = static_cast<int64_t>(fitting->factor);
    std::string digits = fmt::format("{}", nanoseconds / factor);
    if (int64_t rest = nanoseconds % factor; rest != 0) {
        std::string behind = fmt::format("{}", factor + rest).substr(1);
        behind.erase(behind.find_last_not_of('0') + 1);
        digits += "." + behind;
    }
    return fmt::format("{} {}", digits, fitting->name);
}

} // namespace kel_trace

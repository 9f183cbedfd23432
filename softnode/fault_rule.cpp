/*
 * fault_rule.cpp - reading a fault rule.
 */
#include "softnode/fault_rule.h"

#include "softnode/closed_functions.h"

#include <charconv>
#include <limits>
#include <optional>

namespace softnode
{

namespace
{

constexpr std::int64_t most_calls = std::numeric_limits<std::uint32_t>::max();
constexpr std::int64_t lowest_result = std::numeric_limits<std::int32_t>::min();
constexpr std::int64_t highest_result = std::numeric_limits<std::uint32_t>::max();

std::string complaint(std::string_view text, std::string_view what)
{
    return '"' + std::string(text) + "\": " + std::string(what);
}

std::string function_names()
{
    std::string names;
    for (const std::string_view name : closed_functions)
        names.append(names.empty() ? "" : ", ").append(name);
    return names;
}

bool read_number(std::string_view digits, std::int64_t lowest, std::int64_t highest, std::int64_t &number)
{
    const char *end = digits.data() + digits.size();
    const auto [stop, error] = std::from_chars(digits.data(), end, number);
    return error == std::errc{} && stop == end && number >= lowest && number <= highest;
}

bool read_count(std::string_view digits, std::uint64_t &count)
{
    std::int64_t number = 0;
    if (!read_number(digits, 1, most_calls, number))
        return false;
    count = static_cast<std::uint64_t>(number);
    return true;
}

/* Cuts `text` behind the separator off and yields it; nothing to yield leaves `text` whole. */
std::optional<std::string_view> cut_off(std::string_view &text, char separator)
{
    const std::size_t place = text.find(separator);
    if (place == std::string_view::npos)
        return std::nullopt;
    const std::string_view rest = text.substr(place + 1);
    text = text.substr(0, place);
    return rest;
}

} // namespace

bool FaultRule::hits(std::uint64_t call) const
{
    return call >= first && call - first < times;
}

std::string read_fault_rule(std::string_view text, FaultRule &rule)
{
    std::string_view name = text;
    const auto result = cut_off(name, '=');
    if (!result)
        return complaint(text, "no result; a rule is function[:call[*times]]=result");
    auto call = cut_off(name, ':');
    const auto times = call ? cut_off(*call, '*') : std::nullopt;

    const auto function = closed_function(name);
    if (!function)
        return complaint(text, "no closed function of this name returns a code; these do: " + function_names());
    rule = {std::string(text), *function, 1, call ? 1U : std::numeric_limits<std::uint64_t>::max(), 0};
    if (call && !read_count(*call, rule.first))
        return complaint(text, "the call is not a number from 1 to 4294967295");
    if (times && !read_count(*times, rule.times))
        return complaint(text, "the number of times is not a number from 1 to 4294967295");
    if (!read_number(*result, lowest_result, highest_result, rule.result))
        return complaint(text, "the result is not a number from -2147483648 to 4294967295");
    return {};
}

} // namespace softnode

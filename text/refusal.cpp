// Taking messages apart.
#include "text/refusal.h"

#include <algorithm>
#include <charconv>
#include <iterator>

namespace text
{
namespace
{

// Libraries by the beginnings of their functions' names.
constexpr struct {
    std::string_view prefix;
    std::string_view library;
} libraries[] = {
    {"ork_", "driver kit"},      {"kel_init_", "companion library"}, {"kel_fmt_", "formatting library"},
    {"vorn_tu_", "timing unit"}, {"qol_ng_", "restart service"},     {"kei_util_", "utility library"},
};

// What the timing unit's codes are called, from 0 downwards; another one is written as a number.
constexpr std::string_view code_names[] = {"OK",       "INVAL",    "UNSUPP",   "NOPORT",   "AGAIN(try again)",
                                           "SHUTDOWN", "NODOMAIN", "INTERNAL", "NOTAVAIL", "OUTOFRANGE"};
constexpr std::string_view before_number = "UNK_RET_VAL(";

constexpr std::string_view after_function = "(): ";
constexpr std::string_view before_text = " - ";
constexpr std::string_view before_callee = ", ";
constexpr std::string_view before_result = " => rc=";
constexpr std::string_view before_errno = "errno=";
constexpr std::string_view before_name = " returned ";

std::string_view library_of(std::string_view function)
{
    for (const auto &[prefix, library] : libraries)
        if (function.starts_with(prefix))
            return library;
    return library_itself;
}

// The prefix of the driver kit's text; none in reports of others.
std::optional<int64_t> driver_kit_code(std::string_view detail)
{
    const size_t end = detail.find(before_text);
    if (!detail.starts_with("0x") || end == std::string_view::npos)
        return std::nullopt;
    uint32_t code = 0;
    const auto [stop, error] = std::from_chars(detail.data() + 2, detail.data() + end, code, 16);
    return error == std::errc{} && stop == detail.data() + end ? std::optional<int64_t>(static_cast<int32_t>(code))
                                                               : std::nullopt;
}

std::optional<int64_t> number_at(std::string_view digits)
{
    int64_t number = 0;
    const auto [stop, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    return error == std::errc{} ? std::optional(number) : std::nullopt;
}

std::optional<int64_t> timing_unit_code(std::string_view name)
{
    if (name.starts_with(before_number))
        return number_at(name.substr(before_number.size()));
    const auto found = std::ranges::find(code_names, name);
    return found == std::end(code_names) ? std::nullopt : std::optional<int64_t>(std::begin(code_names) - found);
}

refusal system_refusal(std::string_view detail, size_t result_at)
{
    const size_t text_at = detail.find(before_errno);
    const std::string_view text = text_at == std::string_view::npos ? "" : detail.substr(text_at + before_errno.size());
    const auto code = number_at(detail.substr(result_at + before_result.size()));
    return {"system", detail.substr(0, result_at), code.value_or(0), text};
}

} // namespace

message_parts parts_of(std::string_view message)
{
    const size_t end = message.find(after_function);
    if (end == std::string_view::npos)
        return {};
    return {message.substr(0, end), message.substr(end + after_function.size())};
}

std::optional<refusal> refusal_in(std::string_view detail)
{
    if (const size_t result_at = detail.find(before_result); result_at != std::string_view::npos)
        return system_refusal(detail, result_at);
    const size_t callee_at = detail.rfind(before_callee);
    if (callee_at == std::string_view::npos) {
        const size_t end = detail.find(before_name);
        if (end == std::string_view::npos)
            return std::nullopt;
        const std::string_view name = detail.substr(end + before_name.size());
        return refusal{library_of(detail), detail.substr(0, end), timing_unit_code(name), name};
    }
    std::string_view callee = detail.substr(callee_at + before_callee.size());
    callee.remove_prefix(std::min(callee.find_first_not_of(' '), callee.size())); // some name nothing
    const auto code = driver_kit_code(detail);
    const size_t text_at = code ? detail.find(before_text) + before_text.size() : 0;
    return refusal{library_of(callee), callee, code, detail.substr(text_at, callee_at - text_at)};
}

} // namespace text

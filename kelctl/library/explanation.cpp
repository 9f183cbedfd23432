// Following the EXCEPTION records of an operation to the first of the chain. Each names its function, and what failed
// underneath: a function of the library itself, whose own record came before, or a call to the outside.
//
//     kel_ic_ebcom_add_shaper(): limit reached, kel_init_qos_queue_add           the companion library and most others
//     kel_core_ic_ebcom_path_add(): limit reached, kel_ic_ebcom_add_shaper
//
//     create_scheduler(): 0xfffffff9 - internal error, ork_qos_scheduler_create   the driver kit: with its own code
//     dump_line(): fprintf => rc=-1, errno=No space left on device(28)            the system
#include "kelctl/library/explanation.h"

#include "platform/kei_util.h"

#include <algorithm>
#include <charconv>
#include <string_view>

namespace kelctl
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
constexpr std::string_view own = "library itself";

constexpr std::string_view after_function = "(): ";
constexpr std::string_view before_text = " - ";
constexpr std::string_view before_callee = ", ";
constexpr std::string_view before_result = " => rc=";
constexpr std::string_view before_errno = "errno=";

std::string_view library_of(std::string_view function)
{
    for (const auto &[prefix, library] : libraries)
        if (function.starts_with(prefix))
            return library;
    return own;
}

// The record's message in its two parts; empty ones when it has not this form.
struct report {
    std::string_view function;
    std::string_view told;
};

report report_in(std::string_view message)
{
    const size_t end = message.find(after_function);
    if (end == std::string_view::npos)
        return {};
    return {message.substr(0, end), message.substr(end + after_function.size())};
}

// What stands before the driver kit's text; none in reports of others.
std::optional<int64_t> driver_kit_code(std::string_view told)
{
    const size_t end = told.find(before_text);
    if (!told.starts_with("0x") || end == std::string_view::npos)
        return std::nullopt;
    uint32_t code = 0;
    const auto [stop, error] = std::from_chars(told.data() + 2, told.data() + end, code, 16);
    return error == std::errc{} && stop == told.data() + end ? std::optional<int64_t>(static_cast<int32_t>(code))
                                                             : std::nullopt;
}

explanation system_refusal(std::string_view told, size_t result_at)
{
    const size_t text_at = told.find(before_errno);
    const std::string_view text = text_at == std::string_view::npos ? "" : told.substr(text_at + before_errno.size());
    int64_t code = 0;
    const std::string_view number = told.substr(result_at + before_result.size());
    std::from_chars(number.data(), number.data() + number.size(), code);
    return {"system", std::string(told.substr(0, result_at)), code, std::string(text)};
}

std::optional<explanation> refusal_in(std::string_view told)
{
    if (const size_t result_at = told.find(before_result); result_at != std::string_view::npos)
        return system_refusal(told, result_at);
    const size_t callee_at = told.rfind(before_callee);
    if (callee_at == std::string_view::npos)
        return std::nullopt;
    std::string_view callee = told.substr(callee_at + before_callee.size());
    callee.remove_prefix(std::min(callee.find_first_not_of(' '), callee.size())); // some name nothing
    const auto code = driver_kit_code(told);
    const size_t text_at = code ? told.find(before_text) + before_text.size() : 0;
    return explanation{std::string(library_of(callee)), std::string(callee), code,
                       std::string(told.substr(text_at, callee_at - text_at))};
}

// Companion codes are passed on unchanged, so the operation's is the refusing call's where it has the same text.
void add_passed_on_code(explanation &why, uint32_t code)
{
    if (!why.code && why.text == kei_util_init_rc_str_get(code))
        why.code = code;
}

} // namespace

std::optional<explanation> explanation_of(const failure &failed)
{
    std::optional<explanation> why;
    for (auto entry = failed.records.rbegin(); entry != failed.records.rend(); ++entry) {
        const auto [function, told] = report_in(entry->message);
        if (entry->event != "EXCEPTION" || (why && why->what != function))
            continue;
        if (auto refusal = refusal_in(told))
            why = std::move(refusal);
    }
    if (why)
        add_passed_on_code(*why, failed.code);
    return why;
}

} // namespace kelctl

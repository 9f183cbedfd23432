// Results that several commands have in common.
#include "kelctl/results/result.h"

#include "text/printable.h"
#include "text/wording.h"

#include <fmt/core.h>

#include <algorithm>
#include <iterator>
#include <utility>

namespace kelctl
{

// The worst status of the parts is that of the whole. A part's text is dropped: it has been shown.
void add_part(result &whole, result part)
{
    whole.shown_already = true;
    whole.status = std::max(whole.status, part.status);
    for (auto &[name, value] : part.shown.members())
        whole.shown[name] = std::move(value);
    std::ranges::move(part.failures, std::back_inserter(whole.failures));
    std::ranges::move(part.errors, std::back_inserter(whole.errors));
    std::ranges::move(part.warnings, std::back_inserter(whole.warnings));
}

result refused(std::string reason, std::string file)
{
    return {.status = exit_operation_failed, .errors = {{std::move(reason), std::move(file)}}};
}

result wrong_use(std::string reason)
{
    return {.status = exit_wrong_input, .errors = {{std::move(reason)}}};
}

input_error without_position(std::string message)
{
    return {.message = std::move(message)};
}

result wrong_input(const std::string &file, std::vector<input_error> errors, std::string_view consequence)
{
    result wrong;
    wrong.status = exit_wrong_input;
    wrong.remark =
        fmt::format("{}: {}, {}", text::without_controls(file), text::count_of(errors.size(), "problem"), consequence);
    wrong.errors = std::move(errors);
    return wrong;
}

} // namespace kelctl

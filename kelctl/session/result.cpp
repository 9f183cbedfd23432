// Results that several commands have in common.
#include "kelctl/session/result.h"

#include "kelctl/terminal/text.h"

#include <fmt/core.h>

#include <utility>

namespace kelctl
{

result refused(std::string reason)
{
    result done;
    done.status = exit_operation_failed;
    done.errors.push_back({.message = std::move(reason)});
    return done;
}

result wrong_input(const std::string &file, std::vector<input_error> errors, std::string_view consequence)
{
    result wrong;
    wrong.status = exit_wrong_input;
    wrong.remark = fmt::format("{}: {} problem{}, {}", without_controls(file), errors.size(),
                               errors.size() == 1 ? "" : "s", consequence);
    wrong.errors = std::move(errors);
    return wrong;
}

} // namespace kelctl

// A command as a person would type it: what parse() reads, written again. Plans, scripts that are made, and reports of
// what was undone say commands in this form.
#pragma once

#include "kelctl/language/command.h"

#include <string>
#include <string_view>

namespace kelctl
{

// "ebcom path add 02:00:00:02:00:01 --port RLU1P --rate "100 Mbit/s" --burst "64 KiB"". What counts as the default
// is left out, and so is how results are shown.
std::string text_of(const invocation &asked);

// A command as it is typed there: the program's begins with "kelctl".
std::string typed(std::string_view command, source where);

} // namespace kelctl

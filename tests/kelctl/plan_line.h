// Lines of a plan among what is shown: a command takes one line, however long.
#pragma once

#include "kelctl/commands/commands.h"
#include "kelctl/jobs/script.h"

#include <string_view>

inline bool is_command(std::string_view line)
{
    const kelctl::script one = kelctl::parse_script(kelctl::commands(), line);
    return one.problems.empty() && one.lines.size() == 1;
}

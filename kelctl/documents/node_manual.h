// The manual page node.toml(5), made from the tables of keys.
#pragma once

#include "kelctl/language/command.h"

#include <string>
#include <string_view>

namespace kelctl
{

// The page as roff, complete. `rows` has the commands that tables and keys are equivalent to.
std::string node_file_manual(const command_table &rows, std::string_view version);

} // namespace kelctl

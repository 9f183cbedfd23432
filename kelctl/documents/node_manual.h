// The manual page node.toml(5), made from the tables of keys.
#pragma once

#include "kelctl/language/command.h"

#include <string>
#include <string_view>

namespace kelctl
{

std::string node_file_manual(const command_table &rows, std::string_view version);

} // namespace kelctl

// The manual page kelctl(1), made from the table of commands.
#pragma once

#include "kelctl/language/command.h"

#include <string>
#include <string_view>

namespace kelctl
{

// The page as roff, complete.
std::string program_manual(const command_table &table, std::string_view version);

} // namespace kelctl

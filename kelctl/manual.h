// The manual page kelctl(1), made from the table of commands.
#pragma once

#include <string>
#include <string_view>

namespace kelctl
{

std::string program_manual(std::string_view version);

} // namespace kelctl

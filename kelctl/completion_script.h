// Completion of kelctl's command line in other shells, made from the table of commands.
#pragma once

#include <string>

namespace kelctl
{

std::string bash_completion();
std::string zsh_completion();

} // namespace kelctl

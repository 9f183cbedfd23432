// Help, made from the table of commands. Every line has at most 80 columns.
#pragma once

#include "kelctl/command.h"

#include <string>
#include <string_view>

namespace kelctl
{

// Of one command: how it is asked for, its arguments, its details, an example.
std::string help_of(const command &row);

// The commands that begin with these words; of all when there are none, and then with how the program itself is used.
std::string help_of_words(std::string_view words, place where);

} // namespace kelctl

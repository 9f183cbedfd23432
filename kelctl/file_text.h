// The whole text of a file that anybody may have written.
#pragma once

#include "kelctl/problem.h"

#include <string>

namespace kelctl
{

// "-" is standard input. Why a file has none becomes a problem. Never reads more than 16 MiB, however long a device goes
// on.
std::string text_of_file(const std::string &file, problem_list &problems);

} // namespace kelctl

// The whole text of a file: read, whoever may have written it, and written.
#pragma once

#include "kelctl/problem.h"

#include <optional>
#include <string>
#include <string_view>

namespace kelctl
{

// "-" is standard input. Why a file has none becomes a problem. Never reads more than 16 MiB, however long a device goes
// on.
std::string text_of_file(const std::string &file, problem_list &problems);

// Writes a file anew. Why that cannot be done: "cannot be written: No such file or directory"; none when it was.
std::optional<std::string> write_file(const std::string &file, std::string_view text);

} // namespace kelctl

// The whole text of a file: read, whoever may have written it, and written.
#pragma once

#include "kelctl/values/problem.h"

#include <optional>
#include <string>
#include <string_view>

namespace kelctl
{

// "-" is standard input. Why a file has none becomes a problem. Never reads more than 16 MiB, however long a device goes
// on. What was read is an input of this run from then on.
std::string text_of_file(const std::string &file, problem_list &problems);

// Writes a file anew: beside it, to take its place when it is complete. Until then, and when it cannot be, the file stays
// as it was. A link is followed; a device or a pipe is written as it is. An input of this run, or its standard input, is
// refused. Why it cannot be done: "cannot be written: No such file or directory"; none when it was.
std::optional<std::string> write_file(const std::string &file, std::string_view text);

} // namespace kelctl

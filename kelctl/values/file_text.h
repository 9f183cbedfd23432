// Whole files: read with a limit of size, and written so that a failure leaves the old file unchanged.
#pragma once

#include "kelctl/values/problem.h"

#include <optional>
#include <string>
#include <string_view>

namespace kelctl
{

// Reads the file; "-" is standard input. A file that cannot be read, or has more than 16 MiB, adds one problem. From
// then on the file counts as an input of this run: write_file() does not overwrite it.
std::string text_of_file(const std::string &file, problem_list &problems);

// Notes that a file is an input of this run, which was read in another way.
void note_input(const std::string &file);

// Replaces the file as a whole: writes a new one beside it, with the permissions of the old one, and renames it. On
// failure the old file is unchanged. A symbolic link is followed; a device or a pipe is written directly. Refuses a
// file that this run has read, and its standard input. Returns the error, "cannot be written: No such file or
// directory"; none on success.
std::optional<std::string> write_file(const std::string &file, std::string_view text);

} // namespace kelctl

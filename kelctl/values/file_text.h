// Whole files: read with a limit of size, and written so that a failure leaves the old file unchanged. A process that
// carries out a command for another one opens none: see sent_files.
//
//     problem_list problems;
//     const std::string text = text_of_file("node.toml", problems);
//     if (const auto why = write_file("node.svg", picture))
//         report("node.svg", *why);
#pragma once

#include "kelctl/values/problem.h"

#include <map>
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

// A file of another process: its text as text_of_file() returns it there, or the problem that it adds.
struct sent_file {
    std::string text;
    std::string problem = {};
};

// While it exists, the functions above open no file: text_of_file() returns what was sent, and write_file() adds to
// what is sent back. One at a time.
class sent_files
{
public:
    // `read`: by the names in the words of the command.
    explicit sent_files(std::map<std::string, sent_file> read);
    ~sent_files();
    sent_files(const sent_files &) = delete;
    sent_files &operator=(const sent_files &) = delete;

    const std::map<std::string, sent_file> read;
    std::map<std::string, std::string> written = {};
};

} // namespace kelctl

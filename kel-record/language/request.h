// What is asked of the program: its options, one table for parsing, help, completion and the manual page; and the program
// to run, with its arguments.
#pragma once

#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace kel_record
{

struct request {
    std::vector<std::string> program; // and its arguments; empty: help or version
    std::string output;               // empty: NAME.kel in the current folder, for a program NAME
    bool help = false;
    bool version = false;
};

struct option_row {
    std::string_view name;  // "--output"
    std::string_view value; // "FILE"; empty for a flag
    std::string_view help;
    void (*set)(request &request, std::string_view value);
};
std::span<const option_row> option_rows();

struct meaning {
    std::string_view what;
    std::string_view means;
};
std::span<const meaning> exit_statuses();

// The command line asks for nothing that there is.
struct wrong_request : std::runtime_error {
    using std::runtime_error::runtime_error;
};

request parse_request(std::span<const std::string> words);

std::string help_text();

// What the last word may become, one in a line, for the completion scripts; "@files" for files.
std::string completion_text(std::span<const std::string> words);

} // namespace kel_record

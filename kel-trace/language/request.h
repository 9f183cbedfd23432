// What is asked of the program: its commands and options, one table for parsing, help, completion and the manual page.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace kel_trace
{

enum class view : uint8_t { explain, report, check };

struct command_row {
    std::string_view name;
    kel_trace::view view;
    std::string_view help;
};
std::span<const command_row> command_rows();

struct request {
    std::optional<kel_trace::view> view; // none: help or version
    std::vector<std::string> folders;
    bool help = false;
    bool version = false;
    bool json = false;
    bool single_thread = false;
    bool partial = false;
    std::optional<uint64_t> last;
    std::string since;
    std::string until;
    std::string process;
    std::string chrome;
};

struct option_row {
    std::string_view name;               // "--last"
    std::string_view value;              // "N"; empty for a flag
    std::optional<kel_trace::view> only; // the command that has it; none: every one
    std::string_view help;
    void (*set)(request &request, std::string_view value); // throws wrong_request
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

} // namespace kel_trace

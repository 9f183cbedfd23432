// What a small program takes: a table of options and commands, parsed, explained, completed.
//
//     struct request : options::request {
//         std::string output;
//     };
//     constexpr options::option rows[] = {
//         {"--output", "FILE", "where the calls are written to", options::into<&request::output>},
//         options::help_option,
//         options::version_option,
//     };
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

namespace options
{

// What is asked of any program; each adds its own.
struct request {
    std::optional<size_t> command; // its index in the table
    bool help = false;
    bool version = false;
    std::optional<std::string> answer; // printed instead of any work: help, the version, what a word may become
};

struct command {
    std::string_view name;
    std::string_view help;
};

struct option {
    std::string_view name;  // "--last"
    std::string_view value; // "N"; empty for a flag
    std::string_view help;
    void (*set)(request &asked, std::string_view value); // throws wrong_request
    std::string_view only = {};                          // the command that has it; empty: every one
};

struct meaning {
    std::string_view what;
    std::string_view means;
};

struct program {
    std::string_view name;
    std::string_view usage; // what follows the name
    std::string_view about;
    std::span<const command> commands = {};
    std::span<const option> options;
    std::span<const meaning> exit_statuses;
    bool runs_another = false; // the first word that is no option is a program: what follows it is its own
};

// The command line asks for nothing that there is.
struct wrong_request : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// Fills `asked`, which is the program's own request, and returns the words that are neither a command nor options; with an
// answer they may be too few. "--complete WORD..." asks what the last word may become.
std::vector<std::string> parse(const program &of, std::span<const std::string> words, request &asked);

std::string help_text(const program &of);

// Prints what was asked for, such as the help. False when it cannot be written, which standard error says.
bool print(std::string_view program, std::string_view answer);

// The same for what has been printed before.
bool is_printed(std::string_view program);

// What the last word may become, one in a line, for the completion scripts; "@files" for files.
std::string completion_text(const program &of, std::span<const std::string> words);

template <typename Request, typename Value> Request request_of(Value Request::*);

// Puts the value of an option into this member of the program's own request; a flag becomes true.
template <auto Member> void into(request &asked, std::string_view value)
{
    auto &member = static_cast<decltype(request_of(Member)) &>(asked).*Member;
    if constexpr (std::is_same_v<decltype(member), bool &>)
        member = true;
    else
        member = value;
}

inline constexpr option help_option = {"--help", "", "print this help", into<&request::help>};
inline constexpr option version_option = {"--version", "", "print the version", into<&request::version>};

} // namespace options

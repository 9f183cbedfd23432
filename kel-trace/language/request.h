// What is asked of the program: its table of commands and options, and the recordings.
#pragma once

#include "options/program.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace kel_trace
{

extern const options::program program;

enum class view : uint8_t { explain, report, check }; // as in the table of commands

// Options as they were written; texts are empty where an option was not given.
struct request : options::request {
    std::optional<kel_trace::view> view; // none with an answer
    std::vector<std::string> folders;
    bool json = false;
    bool single_thread = false;
    bool partial = false;
    std::optional<uint64_t> last;
    std::string since;
    std::string until;
    std::string process;
    std::string chrome;
};

// Throws options::wrong_request. With an answer (help, a version, completion) all else is empty.
request parse_request(std::span<const std::string> words);

} // namespace kel_trace

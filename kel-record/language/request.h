// What is asked of the program: its table of options; and the program to run, with its arguments.
#pragma once

#include "options/program.h"

#include <span>
#include <string>
#include <vector>

namespace kel_record
{

extern const options::program program;

struct request : options::request {
    std::vector<std::string> program; // and its arguments; empty with an answer
    std::string output;               // empty: NAME.kel in the current folder, for a program NAME
};

// Throws options::wrong_request.
request parse_request(std::span<const std::string> words);

} // namespace kel_record

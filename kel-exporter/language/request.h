// What is asked of the program: where it serves, and which nodes.
#pragma once

#include "options/program.h"

#include <span>
#include <string>
#include <vector>

namespace kel_exporter
{

extern const options::program program;

// With the defaults of what is not given.
struct request : options::request {
    std::string listen = "127.0.0.1:9477";
    std::vector<std::string> nodes; // none: all that there are
};

// Throws options::wrong_request.
request parse_request(std::span<const std::string> words);

} // namespace kel_exporter

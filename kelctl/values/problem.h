// What is wrong with a file, and at which line and column: "node.toml:3:8: port: unknown port 99". The file's name is
// added when problems become errors of a result (node/load_node_file.h). Problems are collected, not thrown: a file is
// checked to its end, and all that is wrong with it is shown at once.
#pragma once

#include <compare>
#include <cstdint>
#include <string>
#include <vector>

namespace kelctl
{

// Both count from 1; columns count characters, not octets. Column 0 means the whole line, line 0 the whole file.
struct position {
    uint32_t line = 1;
    uint32_t column = 1;

    auto operator<=>(const position &) const = default;
};

inline constexpr position whole_file = {0, 0};

struct problem {
    position at;
    std::string message;
};

using problem_list = std::vector<problem>;

} // namespace kelctl

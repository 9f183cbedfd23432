// What is wrong with a file, and where.
#pragma once

#include <compare>
#include <cstdint>
#include <string>
#include <vector>

namespace kelctl
{

// Both count from 1; columns count characters. A column of 0 stands for the line, a line of 0 for the whole file.
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

// What is wrong with a node file, and where.
#pragma once

#include <compare>
#include <cstdint>
#include <string>
#include <vector>

namespace kelctl
{

// Both count from 1; columns count characters.
struct position {
    uint32_t line = 1;
    uint32_t column = 1;

    auto operator<=>(const position &) const = default;
};

// A number of the file, and where it stands there.
struct placed_number {
    uint32_t value = 0;
    position at;
};

struct problem {
    position at;
    std::string message;
};

using problem_list = std::vector<problem>;

} // namespace kelctl

// What the lines of a node file must satisfy together, and with the node: the rules that no single line can break.
#pragma once

#include "kelctl/nodefile/node_file.h"

#include <cstddef>
#include <cstdint>
#include <optional>

namespace kelctl
{

// What the rules depend on beside the file.
struct surroundings {
    uint8_t mp_id = 0;                            // of a file without one; 0: none
    std::optional<size_t> most_destinations = {}; // that the platform has room for; none: that is not known
};

// Adds what is wrong to the file's problems.
void check_rules(node_file_read &file, const surroundings &around);

} // namespace kelctl

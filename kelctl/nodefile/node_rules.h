// Rules across several tables of a node file, and between the file and the node: two PCEPs with one id, a member that
// is no PCEP of the file, more paths than the library counts. Rules within one table are the `.check` of its command's
// row.
#pragma once

#include "kelctl/nodefile/node_file.h"

#include <cstddef>
#include <cstdint>
#include <optional>

namespace kelctl
{

// What the rules need to know besides the file.
struct surroundings {
    uint8_t mp_id = 0;                            // used when the file has none; 0: none
    std::optional<size_t> most_destinations = {}; // that the platform has room for; none: not known
};

// Adds a problem to the file for each rule that is broken, and a warning for each PCEP and stream that reaches no
// destination.
void check_rules(node_file_read &file, const surroundings &around);

} // namespace kelctl

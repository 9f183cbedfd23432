// What the tables of a node file must satisfy together, and with the node: the rules that no single value can break.
#pragma once

#include "kelctl/node_file.h"
#include "kelctl/problem.h"

#include <cstdint>

namespace kelctl
{

// What the rules depend on beside the file.
struct surroundings {
    uint8_t mp_id = 0; // of a file without one; 0: none
};

// Adds what is wrong.
void check_rules(const node_file &node, const surroundings &around, problem_list &problems);

} // namespace kelctl

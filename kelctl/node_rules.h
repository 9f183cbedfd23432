// What the tables of a node file must satisfy together, and with the node: the rules that no single value can break.
#pragma once

#include "kelctl/node_file.h"
#include "kelctl/problem.h"

namespace kelctl
{

// Adds what is wrong. Call it once the environment variable MPID is as it shall be: the library classifies addresses.
void check_rules(const node_file &node, problem_list &problems);

} // namespace kelctl

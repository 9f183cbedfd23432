// Writes commands as a node file: the inverse of node_file.h, over the same table of keys.
#pragma once

#include "kelctl/language/command.h"

#include <string>
#include <vector>

namespace kelctl
{

// A table for each line that a table stands for, with the keys that say more than the default. What no table or key
// stands for is not written: who needs to know reads the file back.
std::string node_file_of(const std::vector<invocation> &lines);

} // namespace kelctl

// Writes commands as a node file: the inverse of node_file.h, over the same table of keys.
#pragma once

#include "kelctl/language/command.h"

#include <string>
#include <vector>

namespace kelctl
{

// A table for each line that has an equivalent one, with the keys whose values are not the default. What no table and
// no key can say is not written: whoever needs to know reads the file back.
std::string node_file_of(const std::vector<invocation> &lines);

} // namespace kelctl

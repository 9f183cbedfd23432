// A node file as commands: the lines that a person would type to bring the same node up.
#pragma once

#include "kelctl/language/command.h"
#include "kelctl/nodefile/node_file.h"

#include <cstdint>
#include <vector>

namespace kelctl
{

// In the order of the bring-up: own MP id, EBCOM service, its paths, PCEP service, end points, groups, traffic. Each has
// the line of the file that it comes from. The PCEP service is started only for a PCEP or a group.
std::vector<invocation> lines_of(const node_file &node, const command_table &table);

// How many paths the entries of the file stand for.
uint64_t path_count(const node_file &node);

} // namespace kelctl

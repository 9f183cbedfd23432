// The steps of the PCEP service: its start, the PCEPs, the multicast groups, their members.
#pragma once

#include "kelctl/bring_up.h"
#include "kelctl/node_file.h"

#include <vector>

namespace kelctl
{

// None for a file with neither PCEPs nor groups. The node file must outlive the steps.
std::vector<step> pcep_steps(const node_file &node);

} // namespace kelctl

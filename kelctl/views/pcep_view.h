// The PCEPs and multicast groups that stand, as text of 80 columns.
#pragma once

#include "kelctl/accelerator/snapshot.h"
#include "kelctl/terminal/terminal.h"

#include <string>

namespace kelctl
{

// A row for each PCEP, then one for each group with its members. Empty for a node that has neither.
std::string pcep_view(const snapshot &node, const painter &paint);

} // namespace kelctl

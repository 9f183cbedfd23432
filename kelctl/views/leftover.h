// What the accelerator still holds, object by object: for a node that should be empty, or was left standing.
#pragma once

#include "kelctl/accelerator/snapshot.h"
#include "kelctl/session/result.h"

#include <string>

namespace kelctl
{

// A line for each kind: how many there are, and the names of the first of them. Empty for an empty node.
std::string leftover_view(const snapshot &node);

// "12 schedulers, 1 path"; empty for an empty node.
std::string contents_text(const snapshot &node);

// All of them: `kind` and `name` of each.
fields leftover_fields(const snapshot &node);

} // namespace kelctl

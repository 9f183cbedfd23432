// The objects that are left on the node, by kind: after a take-down, which should leave none, and after `up --keep`. A
// node that is as it should be is shown by node_view.h.
#pragma once

#include "kelctl/accelerator/snapshot.h"
#include "kelctl/results/result.h"

#include <string>

namespace kelctl
{

// A line for each kind: the number of objects, and the names of the first ones. Lines of at most `width` columns. Empty
// for an empty node.
std::string leftover_view(const snapshot &node, size_t width);

// "12 schedulers, 1 path"; empty for an empty node.
std::string contents_text(const snapshot &node);

// For JSON: `kind` and `name` of each object.
fields leftover_fields(const snapshot &node);

} // namespace kelctl

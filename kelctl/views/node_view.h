// What stands on the node, as text of 80 columns. Renders what it is given; asks nobody.
#pragma once

#include "kel/kel_core_ic_ebcom.h"
#include "kelctl/accelerator/snapshot.h"
#include "kelctl/node/port_knowledge.h"
#include "kelctl/terminal/terminal.h"

#include <optional>
#include <string>

namespace kelctl
{

// Interface, parameters, capabilities, timestamp offset and how much there is, one line each. Several of the paths
// that were added may lead to one destination; how many were is not told when nobody knows.
std::string service_view(const snapshot &node, const kel_ebcom_capabilities &capabilities,
                         std::optional<size_t> added_paths, const painter &paint);

// The scheduler tree with the queues and, under each queue, its destinations.
std::string tree_view(const snapshot &node, const port_knowledge &ports, const painter &paint);

// "12 schedulers, 1 path" of what is there; empty for an empty node.
std::string contents_text(const snapshot &node);

} // namespace kelctl

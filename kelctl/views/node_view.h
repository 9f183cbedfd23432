// What stands on the node, as text.
#pragma once

#include "kelctl/accelerator/snapshot.h"
#include "kelctl/node/port_knowledge.h"
#include "kelctl/session/fields_view.h"

#include <optional>
#include <string>

namespace kelctl
{

// The service; the scheduler tree with the queues and, under each queue, its destinations; PCEPs and groups. Several of
// the paths that were added may lead to one destination; how many were is not told when nobody knows. Ends with an empty
// line.
std::string node_view(const snapshot &node, const port_knowledge &ports, std::optional<size_t> added_paths,
                      const page &page);

} // namespace kelctl

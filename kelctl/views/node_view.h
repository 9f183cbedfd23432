// The objects of a node as text: what `up` shows. Counters are counter_tables.h.
#pragma once

#include "kelctl/accelerator/snapshot.h"
#include "kelctl/node/port_knowledge.h"
#include "kelctl/results/fields_view.h"

#include <optional>
#include <string>

namespace kelctl
{

// The service; the scheduler tree with the queues and, under each queue, its destinations; PCEPs and groups. Ends with
// an empty line. `added_paths` is more than the number of destinations when several paths lead to one; none: not known.
std::string node_view(const snapshot &node, const port_knowledge &ports, std::optional<size_t> added_paths,
                      const page &page);

} // namespace kelctl

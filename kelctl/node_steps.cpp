// Putting the services' steps together.
#include "kelctl/node_steps.h"

#include "kelctl/ebcom_steps.h"
#include "kelctl/pcep_steps.h"

#include <algorithm>
#include <iterator>

namespace kelctl
{

node_steps steps_of(const node_file &node)
{
    node_steps steps = {.paths = path_configurations(node), .before_paths = 0, .all = {}};
    steps.all = ebcom_steps(node.ebcom, steps.paths);
    steps.before_paths = steps.all.size() - steps.paths.size();
    std::ranges::move(pcep_steps(node), std::back_inserter(steps.all));
    return steps;
}

size_t path_count(const node_file &node)
{
    size_t count = 0;
    for (const path_entry &entry : node.paths)
        count += entry.count;
    return count;
}

} // namespace kelctl

// All steps of a node file: the EBCOM service, its paths, the PCEP service, in the order of the bring-up.
#pragma once

#include "kel/kel_core_ic_ebcom.h"
#include "kelctl/bring_up.h"
#include "kelctl/node_file.h"

#include <cstddef>
#include <vector>

namespace kelctl
{

// May be moved, not copied: the steps refer to the paths.
struct node_steps {
    std::vector<kel_ebcom_path_config> paths;
    size_t before_paths; // how many steps
    std::vector<step> all;
};

// The node file must outlive the steps.
node_steps steps_of(const node_file &node);

// How many paths the entries of the file stand for.
size_t path_count(const node_file &node);

} // namespace kelctl

// The steps of the EBCOM service: parameters, interface, start, paths. Which operations, with which arguments, undone
// by which.
#pragma once

#include "kel/kel_core_ic_ebcom.h"
#include "kelctl/bring_up.h"
#include "kelctl/node_file.h"

#include <vector>

namespace kelctl
{

// Every path of the file, in its order.
std::vector<kel_ebcom_path_config> path_configurations(const node_file &node);

// The paths' steps are the last ones. Both arguments must outlive the steps.
std::vector<step> ebcom_steps(const ebcom_parameters &parameters, const std::vector<kel_ebcom_path_config> &paths);

} // namespace kelctl

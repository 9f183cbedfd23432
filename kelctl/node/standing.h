// What stands on the node right now: asked of the software accelerator and of the library. Shows nothing itself.
#pragma once

#include "kel/kel_core_ic_ebcom.h"
#include "kelctl/accelerator/snapshot.h"
#include "kelctl/node/port_knowledge.h"

#include <optional>
#include <vector>

namespace kelctl
{

// What the accelerator holds; none on a vendor's platform.
std::optional<snapshot> current_snapshot();

// Waits until the timestamp thread, which works beside, wrote its first offset or gave up.
void settle();

// What the accelerator holds then, as its own document.
std::optional<notation::document> settled_document();

// What the added paths tell about the ports of a node on which all of them stand. `added` is in the order of adding.
port_knowledge ports_of(const snapshot &node, const std::vector<kel_ebcom_path_config> &added);

} // namespace kelctl

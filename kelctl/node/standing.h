// The objects that exist on the node now, read from the software accelerator and the library. How they are shown is
// views/.
#pragma once

#include "kel/kel_core_ic_ebcom.h"
#include "kelctl/accelerator/snapshot.h"
#include "kelctl/node/port_knowledge.h"

#include <optional>
#include <vector>

namespace kelctl
{

// The accelerator's objects; none on a vendor's platform.
std::optional<snapshot> current_snapshot();

// Waits until the library's timestamp thread has written its first offset or has failed, at most two seconds: before
// that, a snapshot would differ from run to run.
void settle();

// What the accelerator holds then, as its own document.
std::optional<notation::document> settled_document();

// The port of each queue, from the paths that were added. All of them must still exist on `node`; the oldest is first.
port_knowledge ports_of(const snapshot &node, const std::vector<kel_ebcom_path_config> &added);

// The same of the queues that exist now, without the schedulers, whose snapshot would be as large as the node.
port_knowledge ports_now(const std::vector<kel_ebcom_path_config> &added);

} // namespace kelctl

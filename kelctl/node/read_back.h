// The objects that exist on the node now, read from the software accelerator and the library. How they are shown is
// views/.
#pragma once

#include "kelctl/accelerator/snapshot.h"
#include "kelctl/node/port_knowledge.h"
#include "kelctl/session/added_paths.h"

#include <optional>

namespace kelctl
{

// The accelerator's objects; none on a vendor's platform.
std::optional<snapshot> current_snapshot();

// Waits until the library's timestamp thread has written its first offset or has failed, at most two seconds: before
// that, a snapshot would differ from run to run.
void settle();

// What the accelerator holds then, as its own document.
std::optional<notation::document> settled_document();

// The accelerator's document of its queues; an empty list on a vendor's platform.
notation::document queues_now();

// The port of each queue, from the paths that were added. All of them must still exist on `node`.
port_knowledge ports_of(const snapshot &node, const added_paths &added);

// The same of queues_now() alone, without schedulers and destinations, which are as many as the node is large.
port_knowledge ports_of(const notation::document &queues, const added_paths &added);

} // namespace kelctl

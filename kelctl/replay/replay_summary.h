// What happened to a capture's frames, queue by queue.
#pragma once

#include "kelctl/node/port_knowledge.h"
#include "kelctl/replay/replayed_frames.h"
#include "kelctl/results/result.h"

namespace kelctl
{

// As docs/kelctl-json.md has it: of the queues that frames were offered to, in the node's order; last, where there are
// any, of frames that no path leads for.
fields replay_summary(const replayed &all, std::span<const captured_frame> frames, const snapshot &node,
                      const port_knowledge &ports);

// The same as people read it.
fields replay_tables(const fields &summary);

} // namespace kelctl

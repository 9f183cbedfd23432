// A replay step by step of virtual time, to be drawn.
#pragma once

#include "kelctl/node/port_knowledge.h"
#include "kelctl/replay/replayed_frames.h"
#include "kelctl/views/queue_plot.h"

#include <span>
#include <vector>

namespace kelctl
{

// Of each queue. However many frames there are, a few hundred steps, each with its largest backlog and largest delay.
std::vector<plotted_queue> replay_steps(const replayed &all, std::span<const captured_frame> frames,
                                        const port_knowledge &ports);

} // namespace kelctl

// A replay as a picture: rate, backlog and delay of each queue over virtual time, and where frames were dropped.
#pragma once

#include "kelctl/node/port_knowledge.h"
#include "kelctl/replay/replayed_frames.h"

#include <string>

namespace kelctl
{

// A program for gnuplot, which draws an SVG picture on standard output. However many frames there are, it has a few
// hundred steps of time; of each it shows the rate, the largest backlog and the largest delay.
std::string replay_plot(const replayed &all, std::span<const captured_frame> frames, const port_knowledge &ports);

} // namespace kelctl

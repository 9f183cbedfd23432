// Queues over time as a picture: rate, backlog and delay of each, and where frames were dropped. Drawn by gnuplot.
#pragma once

#include "kelctl/results/result.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kelctl
{

// What happened to a queue in a stretch of time.
struct plotted_step {
    uint64_t begin = 0; // nanoseconds, as is the end behind it
    uint64_t end = 0;
    uint64_t octets_sent = 0;
    std::optional<uint64_t> backlog = {}; // octets; none: not known
    std::optional<uint64_t> delay = {};   // nanoseconds; none: not known, or no frame left
    uint64_t dropped = 0;                 // frames
};

struct plotted_queue {
    std::string name = {};
    std::vector<plotted_step> steps = {}; // at least one, in the order of their times
};

// What the axes are called.
struct plot_titles {
    std::string_view time;  // "virtual time"
    std::string_view delay; // "largest delay"
};

// A program for gnuplot, which draws an SVG picture on standard output. Queues without any frame have no line.
std::string queue_plot(const std::vector<plotted_queue> &queues, const plot_titles &titles);

// Why nothing can be drawn here; none: gnuplot is installed.
std::optional<std::string> no_plots();

// Draws it into the file, which is whole afterwards, or as it was.
result draw_plot(const std::string &file, const std::string &plot);

} // namespace kelctl

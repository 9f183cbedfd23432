// Frames into steps of time, steps into gnuplot's data.
#include "kelctl/replay/replay_plot.h"

#include "kel/kel_node_names.h"

#include <fmt/format.h>

#include <algorithm>
#include <map>
#include <string_view>
#include <utility>

namespace kelctl
{
namespace
{

constexpr uint64_t most_steps = 200;

// The margins are the same, so that the diagrams' times stand below one another.
constexpr std::string_view settings = R"(set terminal svg size 960,900 noenhanced background "white"
set multiplot layout 3,1
set grid
set key outside
set lmargin 10
set rmargin 24
set xlabel "virtual time, ms"
set yrange [0:*]
)";

struct step {
    uint64_t octets_sent = 0;
    uint64_t backlog = 0; // octets, the most
    uint64_t delay = 0;   // nanoseconds, the largest
    uint64_t dropped = 0; // frames
};

// What enters (more octets wait) and leaves a queue, by time: in one nanosecond, first what leaves.
using moves = std::vector<std::pair<uint64_t, int64_t>>;

struct queue_steps {
    std::vector<step> steps = std::vector<step>(most_steps + 1);
    moves backlog = {};
};

// The largest backlog of each step: what a step finds waiting counts there, too.
void fill_backlog(queue_steps &queue, uint64_t width)
{
    std::ranges::sort(queue.backlog);
    auto move = queue.backlog.begin();
    uint64_t waiting = 0;
    for (size_t number = 0; number < queue.steps.size(); ++number) {
        uint64_t &most = queue.steps[number].backlog;
        most = waiting;
        for (; move != queue.backlog.end() && move->first / width == number; ++move) {
            waiting += static_cast<uint64_t>(move->second);
            most = std::max(most, waiting);
        }
    }
}

std::map<handle, queue_steps> steps_of(const replayed &all, std::span<const captured_frame> frames, uint64_t width)
{
    std::map<handle, queue_steps> queues;
    for (size_t number = 0; number < frames.size(); ++number) {
        const frame_report &frame = all.frames[number];
        queue_steps &queue = queues[frame.queue];
        step &left = queue.steps[frame.left / width];
        const uint64_t octets = octets_of(frames[number]);
        const bool sent = frame.fate == frame_fate::sent;
        if (!sent && frame.fate != frame_fate::never_left) {
            ++left.dropped;
            continue;
        }
        if (!sent || frame.left != frame.entered)
            queue.backlog.emplace_back(frame.entered, static_cast<int64_t>(octets));
        if (!sent)
            continue;
        left.octets_sent += octets;
        left.delay = std::max(left.delay, frame.left - frame.entered);
        if (frame.left != frame.entered)
            queue.backlog.emplace_back(frame.left, -static_cast<int64_t>(octets));
    }
    for (auto &[self, queue] : queues)
        fill_backlog(queue, width);
    return queues;
}

std::string name_of(handle queue, const port_knowledge &ports)
{
    const auto port = ports.port_of_queue.find(queue);
    return port == ports.port_of_queue.end() ? "no path" : kel_branch_name(port->second);
}

// Milliseconds, Mbit/s, KiB, milliseconds, frames.
std::string line_of(const step &one, size_t number, uint64_t width)
{
    const double time = static_cast<double>(number) * static_cast<double>(width) / 1e6;
    const double rate = static_cast<double>(one.octets_sent) * 8e3 / static_cast<double>(width);
    return fmt::format("{} {} {} {} {}\n", time, rate, static_cast<double>(one.backlog) / 1024,
                       static_cast<double>(one.delay) / 1e6, one.dropped);
}

struct drawn_queue {
    std::string name;
    bool drops; // some of its frames
};

// One of the three diagrams, a line for each queue.
std::string diagram(std::string_view title, int column, const std::vector<drawn_queue> &queues, bool marks)
{
    std::vector<std::string> plots;
    for (size_t queue = 0; queue < queues.size(); ++queue) {
        const auto &[name, drops] = queues[queue];
        plots.push_back(fmt::format("$queue{} using 1:{} with steps linewidth 1.5 linecolor {} title \"{}\"", queue,
                                    column, queue + 1, name));
        if (marks && drops)
            plots.push_back(fmt::format("$queue{} using 1:($5 > 0 ? ${} : 1/0) with points pointtype 2 linecolor {} "
                                        "title \"{} drops\"",
                                        queue, column, queue + 1, name));
    }
    return plots.empty() ? "" : fmt::format("set ylabel \"{}\"\nplot {}\n", title, fmt::join(plots, ", "));
}

} // namespace

std::string replay_plot(const replayed &all, std::span<const captured_frame> frames, const port_knowledge &ports)
{
    uint64_t end = 0;
    for (const frame_report &frame : all.frames)
        end = std::max(end, frame.left);
    const uint64_t width = end / most_steps + 1;
    std::string script;
    std::vector<drawn_queue> queues;
    for (const auto &[self, queue] : steps_of(all, frames, width)) {
        script += fmt::format("$queue{} << END\n", queues.size());
        for (size_t number = 0; number <= end / width; ++number)
            script += line_of(queue.steps[number], number, width);
        script += "END\n";
        queues.push_back({name_of(self, ports), std::ranges::any_of(queue.steps, &step::dropped)});
    }
    script += settings;
    script +=
        fmt::format("set xrange [0:{}]\n", static_cast<double>(end / width + 1) * static_cast<double>(width) / 1e6);
    script += diagram("rate, Mbit/s", 2, queues, false) + diagram("backlog, KiB", 3, queues, true) +
              diagram("largest delay, ms", 4, queues, false);
    return script + "unset multiplot\n";
}

} // namespace kelctl

// Frames into steps of time. Each queue is summed up by itself, as it is drawn.
#include "kelctl/replay/replay_steps.h"

#include "kel/kel_node_names.h"

#include <algorithm>
#include <map>
#include <string>
#include <utility>

namespace kelctl
{
namespace
{

constexpr uint64_t most_steps = 200;

// What enters (more octets wait) and leaves a queue, by time: in one nanosecond, first what leaves.
using moves = std::vector<std::pair<uint64_t, int64_t>>;

struct queue_steps {
    std::vector<plotted_step> steps;
    moves backlog = {};
};

// As many as begin by the end of time.
std::vector<plotted_step> empty_steps(uint64_t end, uint64_t width)
{
    std::vector<plotted_step> steps;
    for (uint64_t begin = 0; begin <= end; begin += width)
        steps.push_back({.begin = begin, .end = begin + width});
    return steps;
}

// The largest backlog of each step: what a step finds waiting counts there, too.
void fill_backlog(queue_steps &queue)
{
    std::ranges::sort(queue.backlog);
    auto move = queue.backlog.begin();
    uint64_t waiting = 0;
    for (plotted_step &step : queue.steps) {
        uint64_t most = waiting;
        for (; move != queue.backlog.end() && move->first < step.end; ++move) {
            waiting += static_cast<uint64_t>(move->second);
            most = std::max(most, waiting);
        }
        step.backlog = most;
    }
}

// A dropped frame never waited; one that never left waits to the end. One that left in the nanosecond in which it came
// would count as backlog only because of the order of moves.
void add_frame(const frame_report &frame, uint64_t octets, plotted_step &left, queue_steps &queue)
{
    const bool sent = frame.fate == frame_fate::sent;
    if (!sent && frame.fate != frame_fate::never_left) {
        ++left.dropped;
        return;
    }
    if (!sent || frame.left != frame.entered)
        queue.backlog.emplace_back(frame.entered, static_cast<int64_t>(octets));
    if (!sent)
        return;
    left.octets_sent += octets;
    left.delay = std::max(left.delay.value_or(0), frame.left - frame.entered);
    if (frame.left != frame.entered)
        queue.backlog.emplace_back(frame.left, -static_cast<int64_t>(octets));
}

std::string name_of(handle queue, const port_knowledge &ports)
{
    const auto port = ports.port_of_queue.find(queue);
    return port == ports.port_of_queue.end() ? "no path" : kel_branch_name(port->second);
}

} // namespace

// A frame belongs to the step in which it left or was dropped; one that never left, to that in which it entered.
std::vector<plotted_queue> replay_steps(const replayed &all, std::span<const captured_frame> frames,
                                        const port_knowledge &ports)
{
    uint64_t end = 0;
    for (const frame_report &frame : all.frames)
        end = std::max(end, frame.left);
    const uint64_t width = end / most_steps + 1;
    std::map<handle, queue_steps> queues;
    for (size_t number = 0; number < frames.size(); ++number) {
        const frame_report &frame = all.frames[number];
        queue_steps &queue = queues.try_emplace(frame.queue, queue_steps{empty_steps(end, width)}).first->second;
        add_frame(frame, octets_of(frames[number]), queue.steps[frame.left / width], queue);
    }
    std::vector<plotted_queue> plotted;
    for (auto &[self, queue] : queues) {
        fill_backlog(queue);
        plotted.push_back({name_of(self, ports), std::move(queue.steps)});
    }
    return plotted;
}

} // namespace kelctl

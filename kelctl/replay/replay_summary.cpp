// Counts the frames of each queue and their delays, as a document and as tables. Delays are exact: unlike the counters
// of a live node, all frames are in memory.
#include "kelctl/replay/replay_summary.h"

#include "kel/kel_node_names.h"
#include "kelctl/values/quantity_messages.h"
#include "kelctl/views/counter_tables.h"

#include <algorithm>
#include <array>
#include <utility>

namespace kelctl
{
namespace
{

constexpr size_t fates = static_cast<size_t>(frame_fate::never_left) + 1;

struct tally {
    uint64_t frames = 0;
    uint64_t octets = 0;

    void add(uint64_t more)
    {
        ++frames;
        octets += more;
    }
};

struct queue_tally {
    tally offered;
    std::array<tally, fates> by_fate;
    std::vector<uint64_t> delays;
    uint64_t first_entered = 0;
    uint64_t last_left = 0;
    uint64_t last_octets = 0;

    const tally &of(frame_fate fate) const
    {
        return by_fate[static_cast<size_t>(fate)];
    }
};

// Delays by departure: the last one gives the end of the time that a rate is measured over.
std::map<handle, queue_tally> tallies(const replayed &all, std::span<const captured_frame> frames)
{
    std::map<handle, queue_tally> queues;
    for (size_t number = 0; number < frames.size(); ++number) {
        const frame_report &frame = all.frames[number];
        queue_tally &queue = queues[frame.queue];
        if (queue.offered.frames == 0)
            queue.first_entered = frame.entered;
        queue.offered.add(octets_of(frames[number]));
        queue.by_fate[static_cast<size_t>(frame.fate)].add(octets_of(frames[number]));
    }
    for (const size_t number : all.departures) {
        const frame_report &frame = all.frames[number];
        queue_tally &queue = queues[frame.queue];
        queue.delays.push_back(frame.left - frame.entered);
        queue.last_left = frame.left;
        queue.last_octets = octets_of(frames[number]);
    }
    return queues;
}

// From the first offer to the last departure, whose own octets do not count: they leave after it. Null if that is no
// time.
fields kbit_per_second(const queue_tally &queue)
{
    const uint64_t octets = queue.of(frame_fate::sent).octets - queue.last_octets;
    if (queue.last_left <= queue.first_entered)
        return nullptr;
    using wide = unsigned __int128;
    return static_cast<uint64_t>(wide{octets} * 8'000'000 / (queue.last_left - queue.first_entered));
}

// The delay that `of_hundred` percent of the frames do not exceed. `sorted` is not empty.
uint64_t percentile(const std::vector<uint64_t> &sorted, size_t of_hundred)
{
    return sorted[(sorted.size() * of_hundred + 99) / 100 - 1];
}

fields delay_fields(std::vector<uint64_t> delays)
{
    if (delays.empty())
        return nullptr;
    std::ranges::sort(delays);
    uint64_t sum = 0;
    for (const uint64_t delay : delays)
        sum += delay;
    return {
        {"sum", sum}, {"median", percentile(delays, 50)}, {"p99", percentile(delays, 99)}, {"largest", delays.back()}};
}

fields tally_fields(const tally &counted)
{
    return {{"frames", counted.frames}, {"octets", counted.octets}};
}

// Port and name are null for frames without a path, and for a queue whose port is not known.
fields queue_fields(handle queue, const queue_tally &counted, const port_knowledge &ports)
{
    const auto port = ports.port_of_queue.find(queue);
    const bool known = port != ports.port_of_queue.end();
    const auto frames = [&](frame_fate fate) { return counted.of(fate).frames; };
    return {{"port", known ? fields(port->second) : fields(nullptr)},
            {"name", known ? fields(kel_branch_name(port->second)) : fields(nullptr)},
            {"offered", tally_fields(counted.offered)},
            {"sent", tally_fields(counted.of(frame_fate::sent))},
            {"dropped",
             {{"too_long", frames(frame_fate::too_long)},
              {"no_room", frames(frame_fate::no_room)},
              {"no_way", frames(frame_fate::no_way)},
              {"no_queue", frames(frame_fate::no_queue)}}},
            {"never_left", frames(frame_fate::never_left)},
            {"kbit_per_second", kbit_per_second(counted)},
            {"delay", delay_fields(counted.delays)}};
}

fields queue_name(const fields &queue)
{
    const fields &name = queue.at("name");
    return name.is_null() ? fields("no path") : name;
}

fields counts_row(const fields &queue)
{
    const fields &dropped = queue.at("dropped");
    return {{"queue", queue_name(queue)},
            {"frames offered", queue.at("offered").at("frames")},
            {"frames sent", queue.at("sent").at("frames")},
            {"dropped: no room", dropped.at("no_room")},
            {"dropped: too long", dropped.at("too_long")},
            {"dropped: no way", dropped.at("no_way")},
            {"dropped: no queue", dropped.at("no_queue")},
            {"never left", queue.at("never_left")},
            {"kbit/s", queue.at("kbit_per_second")}};
}

fields delays_row(const fields &queue)
{
    fields row = {{"queue", queue_name(queue)}};
    add_delays(row, queue.at("delay"));
    return row;
}

} // namespace

// Ends with the last departure, or with the last offer where nothing left after it.
fields replay_summary(const replayed &all, std::span<const captured_frame> frames, const snapshot &node,
                      const port_knowledge &ports)
{
    const auto queues = tallies(all, frames);
    fields rows = fields::array();
    const auto add = [&](handle queue) {
        if (const auto found = queues.find(queue); found != queues.end())
            rows.push_back(queue_fields(queue, found->second, ports));
    };
    for (const snapshot::queue &queue : node.queues)
        add(queue.self);
    add(0);

    uint64_t octets = 0;
    for (const captured_frame &frame : frames)
        octets += octets_of(frame);
    const auto cut = std::ranges::count_if(frames, [](const auto &one) { return one.octets.size() < one.length; });
    uint64_t end = all.frames.empty() ? 0 : all.frames.back().entered;
    if (!all.departures.empty())
        end = std::max(end, all.frames[all.departures.back()].left);
    return {{"frames", frames.size()},
            {"octets", octets},
            {"cut", static_cast<uint64_t>(cut)},
            {"nanoseconds", end},
            {"queues", std::move(rows)}};
}

fields replay_tables(const fields &summary)
{
    fields shown = {{"frames", summary.at("frames")},
                    {"octets", summary.at("octets")},
                    {"frames cut", summary.at("cut")},
                    {"virtual time", quantity_text(summary.at("nanoseconds").number<uint64_t>(), duration_units)}};
    for (const fields &queue : summary.at("queues")) {
        shown["queues"].push_back(counts_row(queue));
        if (!queue.at("delay").is_null())
            shown["delays"].push_back(delays_row(queue));
    }
    return shown;
}

} // namespace kelctl

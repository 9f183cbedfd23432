// The order of a replay: check the capture, bring the node up, send, write the results, take the node down. Sending is
// in replayed_frames.cpp, the figures are in replay_summary.cpp.
#include "kelctl/replay/replay.h"

#include "kelctl/input/interruption.h"
#include "kelctl/jobs/bring_up.h"
#include "kelctl/node/load_node_file.h"
#include "kelctl/node/read_back.h"
#include "kelctl/replay/replay_steps.h"
#include "kelctl/replay/replay_summary.h"
#include "kelctl/results/fields_view.h"
#include "kelctl/values/file_text.h"
#include "kelctl/values/quantity_messages.h"
#include "kelctl/views/queue_plot.h"

#include <fmt/core.h>

#include <algorithm>
#include <utility>

namespace kelctl
{
namespace
{

constexpr std::string_view nothing_started = "nothing was started";

constexpr plot_titles titles = {.time = "virtual time", .delay = "largest delay"};

// Frames are numbered from 1, as programs that show captures do.
std::optional<std::string> wrong_frame(const std::vector<captured_frame> &frames, bool sorted)
{
    for (size_t index = 0; index < frames.size(); ++index) {
        if (frames[index].octets.size() < destination_octets)
            return fmt::format("frame {}: only {} octets were captured, without the whole destination address",
                               index + 1, frames[index].octets.size());
        if (index != 0 && !sorted && frames[index].time < frames[index - 1].time)
            return fmt::format("frame {}: is {} earlier than the frame before it; --sort sorts frames by time",
                               index + 1, quantity_text(frames[index - 1].time - frames[index].time, duration_units));
    }
    return std::nullopt;
}

// The frames sorted by time, or why the capture cannot be replayed.
capture loaded(const std::string &file, bool sorted)
{
    capture read = read_capture(file);
    if (!read.wrong)
        read.wrong = wrong_frame(read.frames, sorted);
    std::ranges::stable_sort(read.frames, {}, &captured_frame::time);
    return read;
}

// With the times of the capture's clock at which they left.
std::vector<timed_frame> frames_sent(const replayed &all, const std::vector<captured_frame> &frames)
{
    std::vector<timed_frame> sent;
    for (const size_t number : all.departures)
        sent.push_back({&frames[number], frames.front().time + all.frames[number].left});
    return sent;
}

// With their original times.
std::vector<timed_frame> frames_not_sent(const replayed &all, const std::vector<captured_frame> &frames)
{
    std::vector<timed_frame> others;
    for (size_t number = 0; number < frames.size(); ++number)
        if (all.frames[number].fate != frame_fate::sent)
            others.push_back({&frames[number], frames[number].time});
    return others;
}

result written(const std::string &file, const std::vector<timed_frame> &frames)
{
    if (auto why = write_capture(file, frames))
        return refused(std::move(*why), file);
    return {.text = fmt::format("{}: {} frames\n", file, frames.size())};
}

// True if every frame was sent and every output written. An interrupted replay writes nothing: half a capture would
// look like a complete one.
bool send(const std::vector<captured_frame> &frames, bring_up &node, const arguments &given, session &session)
{
    settle();
    const snapshot node_now = current_snapshot().value_or(snapshot{});
    const replayed all = replay_frames(frames, node_now);
    if (!all.whole)
        return node.show({.status = exit_operation_failed, .text = "", .remark = "interrupted: nothing was written"});

    const port_knowledge ports = ports_of(node_now, session.paths);
    const fields summary = replay_summary(all, frames, node_now, ports);
    node.show({.shown = {{"replay", summary}}, .text = fields_text(replay_tables(summary), page_for(stdout))});
    return node.show(written(given.text("--out"), frames_sent(all, frames))) &&
           (!given.has("--dropped") || node.show(written(given.text("--dropped"), frames_not_sent(all, frames)))) &&
           (!given.has("--plot") ||
            node.show(draw_plot(given.text("--plot"), queue_plot(replay_steps(all, frames, ports), titles))));
}

} // namespace

// The whole capture is checked before the node comes up: a wrong frame at its end is not found after minutes.
result replay(const invocation &asked, session &session)
{
    const std::string &name = asked.given.text("FILE");
    auto [lines, errors, warnings] = load_node_file(name, session.table);
    if (!errors.empty())
        return wrong_input(name, std::move(errors), nothing_started);
    const std::string &file = asked.given.text("CAPTURE");
    const capture read = loaded(file, asked.given.has("--sort"));
    if (read.wrong)
        return wrong_input(file, {{*read.wrong, file}}, nothing_started);

    const interruption_watch interruptions;
    bring_up node(std::move(lines), name, session);
    node.show({.text = "", .warnings = std::move(warnings)});
    const bool sent = node.up() && send(read.frames, node, asked.given, session);
    const bool clean = node.down();
    return node.take_result(sent && clean);
}

} // namespace kelctl

// Steps into gnuplot's data, and what it is to draw of them. Which samples the steps are made from is
// queue_history.cpp.
#include "kelctl/views/queue_plot.h"

#include "kelctl/accelerator/drawing_program.h"
#include "kelctl/values/file_text.h"

#include <fmt/format.h>

#include <algorithm>
#include <span>
#include <utility>

namespace kelctl
{
namespace
{

constexpr drawing_program gnuplot = {"gnuplot", "gnuplot"};

constexpr uint64_t shown_in_seconds = 10'000'000'000; // nanoseconds; times of a shorter plot are in milliseconds

// The diagrams are below one another, over one axis of time.
constexpr std::string_view settings =
    R"(set terminal svg size 900,760 noenhanced font "sans-serif,14" background "white"
set multiplot layout 3,1 margins 0.1,0.8,0.1,0.97 spacing 0.05
set border 3
set tics nomirror out
set format x ""
set format y "%6g"
set grid linecolor "#dddddd"
set key at graph 1.03, graph 1 left top Left reverse samplen 2
set yrange [0:*]
)";

// One of the diagrams: the column of gnuplot's data, whether its lines are explained, and whether it marks drops, which
// column 5 has.
struct diagram {
    std::string title;
    int column;
    bool explained = false;
    bool marks = false;
};

bool has_frames(const plotted_queue &queue)
{
    return std::ranges::any_of(queue.steps, [](const plotted_step &step) {
        return step.octets_sent != 0 || step.dropped != 0 || step.backlog.value_or(0) != 0;
    });
}

bool has_drops(const plotted_queue &queue)
{
    return std::ranges::any_of(queue.steps, &plotted_step::dropped);
}

// gnuplot interrupts a line where there is no number.
std::string number(std::optional<uint64_t> value, double unit)
{
    return value ? fmt::format("{}", static_cast<double>(*value) / unit) : "NaN";
}

// The level of a step, from its beginning to its end; drops are marked once, at its beginning.
std::string lines_of(const plotted_step &step, double unit_of_time)
{
    const double rate = static_cast<double>(step.octets_sent) * 8e3 / static_cast<double>(step.end - step.begin);
    const std::string backlog = number(step.backlog, 1024);
    const std::string levels = fmt::format("{} {} {}", rate, backlog, number(step.delay, 1e6));
    return fmt::format("{} {} {}\n{} {} NaN\n", number(step.begin, unit_of_time), levels,
                       step.dropped == 0 ? "NaN" : number(step.backlog.value_or(0), 1024),
                       number(step.end, unit_of_time), levels);
}

// The data is in the program itself, as a block for each queue: gnuplot reads one input.
std::string data_of(std::span<const plotted_queue *const> queues, double unit_of_time)
{
    std::string data;
    for (size_t queue = 0; queue < queues.size(); ++queue) {
        data += fmt::format("$queue{} << END\n", queue);
        for (const plotted_step &step : queues[queue]->steps)
            data += lines_of(step, unit_of_time);
        data += "END\n";
    }
    return data;
}

// A line for each queue.
std::string drawn(const diagram &shown, std::span<const plotted_queue *const> queues)
{
    std::vector<std::string> plots;
    for (size_t queue = 0; queue < queues.size(); ++queue) {
        plots.push_back(fmt::format("$queue{} using 1:{} with lines linewidth 2 linecolor {} title \"{}\"", queue,
                                    shown.column, queue + 1, shown.explained ? queues[queue]->name : ""));
        if (shown.marks && has_drops(*queues[queue]))
            plots.push_back(fmt::format("$queue{} using 1:5 with points pointtype 11 pointsize 0.7 linecolor {} "
                                        "title \"{} drops\"",
                                        queue, queue + 1, queues[queue]->name));
    }
    if (plots.empty())
        plots.emplace_back("NaN notitle");
    return fmt::format("set ylabel \"{}\" offset 2\nplot {}\n", shown.title, fmt::join(plots, ", "));
}

} // namespace

// Three diagrams below one another: only the first explains the lines, and only the last has the times.
std::string queue_plot(const std::vector<plotted_queue> &queues, const plot_titles &titles)
{
    uint64_t end = 1;
    std::vector<const plotted_queue *> shown;
    for (const plotted_queue &queue : queues) {
        end = std::max(end, queue.steps.back().end);
        if (has_frames(queue))
            shown.push_back(&queue);
    }
    const bool long_time = end > shown_in_seconds;
    const double unit_of_time = long_time ? 1e9 : 1e6;
    std::string plot = data_of(shown, unit_of_time);
    plot += settings;
    plot += fmt::format("set xrange [0:{}]\n", number(end, unit_of_time));
    plot += drawn({.title = "rate, Mbit/s", .column = 2, .explained = true}, shown);
    plot += drawn({.title = "backlog, KiB", .column = 3, .marks = true}, shown);
    plot += fmt::format("set format x \"%g\"\nset xlabel \"{}, {}\"\n", titles.time, long_time ? "s" : "ms");
    plot += drawn({.title = fmt::format("{}, ms", titles.delay), .column = 4}, shown);
    return plot + "unset multiplot\n";
}

std::optional<std::string> no_plots()
{
    return missing(gnuplot);
}

result draw_plot(const std::string &file, const std::string &plot)
{
    const drawing drawn = drawn_by(gnuplot, "-", plot);
    if (!drawn.refused.empty())
        return refused(drawn.refused);
    if (auto why = write_file(file, drawn.picture))
        return refused(std::move(*why), file);
    return {.text = ""};
}

} // namespace kelctl

// The order of `kelctl up`, and all that it prints.
#include "kelctl/up.h"

#include "kelctl/exit_status.h"
#include "kelctl/failure_report.h"
#include "kelctl/node_rules.h"
#include "kelctl/node_steps.h"
#include "kelctl/node_view.h"
#include "kelctl/progress.h"
#include "kelctl/standing.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <utility>

namespace kelctl
{
namespace
{

constexpr size_t most_full_reports = 10; // of a take-down; more of them would hide the rest

void print_problems(const std::string &file, problem_list problems)
{
    std::stable_sort(problems.begin(), problems.end(), [](const problem &a, const problem &b) {
        return std::pair(a.at.line, a.at.column) < std::pair(b.at.line, b.at.column);
    });
    std::string text;
    for (const problem &problem : problems)
        text += fmt::format("{}:{}:{}: {}\n", file, problem.at.line, problem.at.column, problem.message);
    text +=
        fmt::format("{}: {} problem{}, nothing was started\n", file, problems.size(), problems.size() == 1 ? "" : "s");
    write(stderr, text);
}

// The node file, whole and sound; null once its problems are printed.
std::unique_ptr<node_file> sound_node_file(const std::string &file)
{
    node_file_read read = read_node_file(file);
    if (read.node.mpid)
        setenv("MPID", std::to_string(*read.node.mpid).c_str(), 1);
    check_rules(read.node, read.problems);
    if (read.problems.empty())
        return std::make_unique<node_file>(std::move(read.node));
    print_problems(file, std::move(read.problems));
    return nullptr;
}

void show_what_stands(const std::vector<kel_ebcom_path_config> &paths)
{
    const painter paint = painter_for(stdout);
    const auto node = settled_snapshot();
    if (!node) {
        write(stdout, "What stands cannot be shown: not available on this platform\n");
        return;
    }
    kel_ebcom_capabilities capabilities{};
    kel_core_ic_ebcom_capabilities_get(&capabilities);
    write(stdout, service_view(*node, capabilities, paths.size(), paint) + "\n" +
                      tree_view(*node, ports_of(*node, paths), paint) + "\n");
}

void show_background_failures(trace_log &log)
{
    const auto failures = log.background_failures();
    if (failures.empty())
        return;
    write(stderr, "the timestamp thread reported:\n");
    for (const trace_entry &entry : failures)
        write(stderr, fmt::format("    {}\n", to_text(entry)));
}

// The steps of the paths are the last ones.
bool bring_up_reporting(bring_up &node, size_t paths, trace_log &log, bool trace)
{
    progress shown("adding paths", paths, stderr, is_terminal(stderr) && !trace);
    const auto failed = node.up([&](size_t left) {
        if (left < paths)
            shown.show(paths - left);
    });
    shown.leave_line();
    if (failed)
        write(stderr, report_of(*failed, log.installed(), painter_for(stderr)));
    return !failed;
}

void report_failures(const std::vector<failure> &failures, trace_log &log)
{
    for (size_t i = 0; i < std::min(failures.size(), most_full_reports); ++i)
        write(stderr, report_of(failures[i], log.installed(), painter_for(stderr)));
    if (failures.size() > most_full_reports)
        write(stderr, fmt::format("{} more operations of the take-down failed\n", failures.size() - most_full_reports));
}

std::string outcome_text(const std::optional<snapshot> &left)
{
    if (!left)
        return "Taken down. What is left cannot be shown: not available on this platform\n";
    if (!left->empty())
        return fmt::format("Taken down, but left behind: {}\n", contents_text(*left));
    return "Taken down. The node is empty again.\n";
}

// True when every operation succeeded and nothing is left.
bool take_down_reporting(bring_up &node, bool stood, trace_log &log)
{
    take_down done = node.down();
    const auto left = current_snapshot();
    if (done.refused_leftover && !(left && left->empty()))
        done.failures.insert(done.failures.begin(), std::move(*done.refused_leftover));
    report_failures(done.failures, log);

    const bool clean = done.failures.empty() && (!left || left->empty());
    write(stood && clean ? stdout : stderr, outcome_text(left));
    return clean;
}

} // namespace

int up(const up_options &options)
{
    trace_log log(options.trace ? stderr : nullptr);
    if (options.trace && !log.installed())
        write(stderr, "no trace: the tracer is not installed on this machine\n");

    const auto file = sound_node_file(options.file);
    if (!file)
        return exit_wrong_input;

    const std::vector<kel_ebcom_path_config> paths = path_configurations(*file);
    bring_up node(steps_for(file->ebcom, paths), log);
    const bool stood = bring_up_reporting(node, paths.size(), log, options.trace);
    if (stood)
        show_what_stands(paths);
    show_background_failures(log);
    const bool clean = take_down_reporting(node, stood, log);
    return stood && clean ? exit_done : exit_operation_failed;
}

} // namespace kelctl

// The order of `kelctl up`, and all that it prints.
#include "kelctl/up.h"

#include "kelctl/ebcom_steps.h"
#include "kelctl/exit_status.h"
#include "kelctl/failure_report.h"
#include "kelctl/node_rules.h"
#include "kelctl/node_view.h"
#include "kelctl/pcep_steps.h"
#include "kelctl/pcep_view.h"
#include "kelctl/progress.h"
#include "kelctl/standing.h"
#include "kelctl/statistics.h"
#include "kelctl/statistics_view.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <memory>
#include <utility>

namespace kelctl
{
namespace
{

constexpr size_t most_full_reports = 10; // of one stage; more of them would hide the rest

void print_problems(const std::string &file, problem_list problems)
{
    std::stable_sort(problems.begin(), problems.end(), [](const problem &a, const problem &b) { return a.at < b.at; });
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

// `what` names what more of them belong to.
void report_failures(const std::vector<failure> &failures, std::string_view what, trace_log &log)
{
    for (size_t i = 0; i < std::min(failures.size(), most_full_reports); ++i)
        write(stderr, report_of(failures[i], log.installed(), painter_for(stderr)));
    if (failures.size() > most_full_reports)
        write(stderr, fmt::format("{} more operations of the {} failed\n", failures.size() - most_full_reports, what));
}

std::string standing_text(const snapshot &node, const port_knowledge &ports, size_t added_paths, const painter &paint)
{
    kel_ebcom_capabilities capabilities{};
    kel_core_ic_ebcom_capabilities_get(&capabilities);
    return service_view(node, capabilities, added_paths, paint) + "\n" + tree_view(node, ports, paint) + "\n" +
           pcep_view(node, paint);
}

// True when all of it could be read.
bool show_what_stands(const node_file &file, const std::vector<kel_ebcom_path_config> &paths, trace_log &log)
{
    const painter paint = painter_for(stdout);
    const auto node = settled_snapshot();
    const port_knowledge ports = ports_of(node.value_or(snapshot{}), paths);
    const statistics counters = read_statistics(ports, file.pceps, log);
    write(stdout, node ? standing_text(*node, ports, paths.size(), paint)
                       : "What stands cannot be shown: not available on this platform\n");
    write(stdout, statistics_view(counters, paint));
    report_failures(counters.failures, "reading of counters", log);
    return counters.failures.empty();
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

// Where the steps of the paths stand among all.
struct path_steps {
    size_t before;
    size_t count;
};

bool bring_up_reporting(bring_up &node, path_steps paths, trace_log &log, bool trace)
{
    progress shown("adding paths", paths.count, stderr, is_terminal(stderr) && !trace);
    const auto failed = node.up([&](size_t made) {
        if (made > paths.before && made <= paths.before + paths.count)
            shown.show(made - paths.before);
    });
    shown.leave_line();
    if (failed)
        write(stderr, report_of(*failed, log.installed(), painter_for(stderr)));
    return !failed;
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
    report_failures(done.failures, "take-down", log);

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
    std::vector<step> steps = ebcom_steps(file->ebcom, paths);
    const path_steps among = {steps.size() - paths.size(), paths.size()};
    std::ranges::move(pcep_steps(*file), std::back_inserter(steps));

    bring_up node(std::move(steps), log);
    const bool stood = bring_up_reporting(node, among, log, options.trace);
    const bool shown = stood && show_what_stands(*file, paths, log);
    show_background_failures(log);
    const bool clean = take_down_reporting(node, stood, log);
    return shown && clean ? exit_done : exit_operation_failed;
}

} // namespace kelctl

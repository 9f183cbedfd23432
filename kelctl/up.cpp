// The order of a node's bring-up and take-down, and all that is told of it.
#include "kelctl/up.h"

#include "kelctl/failure_report.h"
#include "kelctl/interruption.h"
#include "kelctl/leftover.h"
#include "kelctl/load_node_file.h"
#include "kelctl/node_view.h"
#include "kelctl/pcep_view.h"
#include "kelctl/progress.h"
#include "kelctl/rates_view.h"
#include "kelctl/result_document.h"
#include "kelctl/software_accelerator.h"
#include "kelctl/standing.h"
#include "kelctl/statistics.h"
#include "kelctl/statistics_view.h"
#include "kelctl/take_down_report.h"
#include "kelctl/text.h"
#include "kelctl/traffic_player.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <iterator>
#include <limits>
#include <poll.h>
#include <unistd.h>
#include <utility>

namespace kelctl
{
namespace
{

constexpr size_t most_full_reports = 10; // of one stage; more of them would hide the rest
constexpr std::chrono::hours longest_wait(1);

std::string standing_text(const snapshot &node, const port_knowledge &ports, size_t added_paths, const painter &paint)
{
    kel_ebcom_capabilities capabilities{};
    kel_core_ic_ebcom_capabilities_get(&capabilities);
    return service_view(node, capabilities, added_paths, paint) + "\n" + tree_view(node, ports, paint) + "\n" +
           pcep_view(node, paint);
}

fields records_of(const std::vector<trace_entry> &entries)
{
    fields records = fields::array();
    for (const trace_entry &entry : entries)
        records.push_back(to_text(entry));
    return records;
}

std::string outcome_text(const std::optional<snapshot> &left)
{
    if (!left)
        return "Taken down. What is left cannot be shown: not available on this platform\n";
    if (!left->empty())
        return "Taken down, but left behind:\n" + leftover_view(*left);
    return "Taken down. The node is empty again.\n";
}

fields objects_in(const std::optional<snapshot> &node)
{
    return node ? leftover_fields(*node) : fields(nullptr);
}

// What refused and why. The records of each are with the result's failures.
fields refused_fields(const std::vector<refused_undo> &refused)
{
    fields all = fields::array();
    for (const refused_undo &one : refused) {
        fields failed = failure_fields(one.why, false);
        failed.erase("records");
        all.push_back(std::move(failed));
    }
    return all;
}

// Waits, at most so long, until the person wants no more of it: a signal, or nobody reads on. True when that is so.
bool over_within(std::chrono::milliseconds longest)
{
    std::array<pollfd, 2> ends = {{{interruption_descriptor(), POLLIN, 0}, {STDOUT_FILENO, 0, 0}}};
    if (!output_lost())
        poll(ends.data(), ends.size(), static_cast<int>(longest.count()));
    return interrupted() || output_lost();
}

} // namespace

node_from_file::node_from_file(std::unique_ptr<node_file> file, session &session)
    : file_(std::move(file)), session_(session), steps_(steps_of(*file_)), node_(std::move(steps_.all), session.log())
{
}

bool node_from_file::up()
{
    stood_ = make_steps();
    result_.shown["stood"] = stood_;
    return stood_;
}

bool node_from_file::make_steps()
{
    const bool redrawn = is_terminal(stderr) && !session_.tracing();
    progress shown("adding paths", session_.json() ? 0 : steps_.paths.size(), stderr, redrawn);
    const auto show_path = [&](size_t made) {
        if (made > steps_.before_paths && made <= steps_.before_paths + steps_.paths.size())
            shown.show(made - steps_.before_paths);
    };
    auto failed = node_.up(show_path, interrupted);
    shown.leave_line();
    step_failed_ = failed.has_value();
    if (node_.whole()) {
        session_.paths.add(steps_.paths);
        session_.timed = true;
    }
    if (failed)
        tell_failures({std::move(*failed)}, "bring-up");
    else if (!node_.whole())
        session_.tell(stderr, "interrupted before the whole node stood\n");
    return node_.whole();
}

bool node_from_file::show()
{
    show_objects();
    return show_counters();
}

void node_from_file::show_objects()
{
    const auto document = settled_document();
    const auto node = document ? std::optional(read_snapshot(*document)) : std::nullopt;
    ports_ = ports_of(node.value_or(snapshot{}), steps_.paths);
    session_.tell(stdout, node ? standing_text(*node, ports_, steps_.paths.size(), painter_for(stdout))
                               : "What stands cannot be shown: not available on this platform\n");
    result_.shown["paths_added"] = steps_.paths.size();
    if (session_.json()) // it is large
        result_.shown["node"] = document ? fields::parse(*document) : fields(nullptr);
}

bool node_from_file::show_counters()
{
    statistics counters = read_statistics(ports_, file_->pceps, session_.log());
    session_.tell(stdout, statistics_view(counters, painter_for(stdout)));
    result_.shown["statistics"] = statistics_fields(counters);
    const bool whole = counters.failures.empty();
    tell_failures(std::move(counters.failures), "reading of counters");
    return whole;
}

bool node_from_file::watch(const watch_pace &pace)
{
    traffic_player traffic(file_->traffic);
    redrawn_block block(stdout, is_terminal(stdout) && !session_.tracing());
    const uint64_t end = pace.end.value_or(std::numeric_limits<uint64_t>::max());
    statistics before = read_statistics(ports_, file_->pceps, session_.log(), counter_text::json);
    while (before.failures.empty()) {
        const uint64_t from = traffic.time();
        traffic.pass(std::min(pace.step, end - from));
        if (traffic.time() == from)
            break;
        statistics now = read_statistics(ports_, file_->pceps, session_.log(), counter_text::json);
        if (now.failures.empty())
            show_rates(rates_between(before, now, traffic.time() - from), traffic.time(), block);
        before = std::move(now);
        if (traffic.time() >= end || over_within(pace.interval))
            break;
    }
    block.leave();
    result_.shown["watched"] = {{"nanoseconds", traffic.time()}};
    const bool whole = before.failures.empty();
    tell_failures(std::move(before.failures), "watch");
    return whole;
}

void node_from_file::show_rates(const rates &shown, uint64_t time, redrawn_block &block)
{
    if (session_.json())
        session_.stream({{"watch", rates_fields(shown, time)}});
    else
        block.draw(rates_view(shown, time, painter_for(stdout)));
}

bool node_from_file::down()
{
    tell_background_failures();
    take_down done = node_.down();
    session_.paths.clear();
    const auto left = current_snapshot();
    if (done.refused_leftover && !(left && left->empty()))
        done.refused.insert(done.refused.begin(), std::move(*done.refused_leftover));
    result_.shown["undone"] = undone_fields(done.undone);
    result_.shown["not_undone"] = refused_fields(done.refused);
    result_.shown["complaints"] = complaints_fields(done.undone);
    result_.shown["left_behind"] = left ? fields(contents_text(*left)) : fields(nullptr);
    result_.shown["left_objects"] = objects_in(left);
    tell_take_down(done, left);
    return done.refused.empty() && (!left || left->empty());
}

void node_from_file::tell_take_down(const take_down &done, const std::optional<snapshot> &left)
{
    const bool empty = !left || left->empty();
    if (stood_ && empty && done.refused.empty()) {
        session_.tell(stdout, outcome_text(left));
        return;
    }
    std::vector<failure> failures;
    std::vector<product> stayed;
    for (const refused_undo &refused : done.refused) {
        failures.push_back(refused.why);
        stayed.push_back(refused.made);
    }
    tell_failures(std::move(failures), "take-down");
    session_.tell(stderr, undone_text(done.undone));
    if (!stayed.empty())
        session_.tell(stderr, products_text("not undone: ", stayed));
    if (!empty)
        session_.tell(stderr, complaints_text(done.undone));
    session_.tell(stderr, outcome_text(left));
}

bool node_from_file::keep()
{
    if (!step_failed_)
        return false;
    tell_background_failures();
    std::vector<product> kept;
    fields operations = fields::array();
    for (const step &made : node_.let_stand()) {
        kept.push_back(made.makes);
        operations.push_back(made.make.text());
    }
    const auto held = current_snapshot();
    session_.tell(stderr, products_text("kept standing: ", kept));
    if (held)
        session_.tell(stderr, "The node holds:\n" + leftover_view(*held));
    result_.shown["kept"] = std::move(operations);
    result_.shown["kept_objects"] = objects_in(held);
    return true;
}

void node_from_file::hold()
{
    session_.tell(stdout, "Holding the node until Ctrl-C.\n");
    session_.stream({{"holding", {{"paths_added", steps_.paths.size()}}}});
    while (!over_within(longest_wait))
        ;
}

result node_from_file::take_result(bool succeeded)
{
    result_.told = true;
    result_.status = succeeded ? exit_done : exit_operation_failed;
    return std::move(result_);
}

// `what` names what more of them belong to.
void node_from_file::tell_failures(std::vector<failure> failures, std::string_view what)
{
    for (size_t i = 0; i < std::min(failures.size(), most_full_reports); ++i)
        session_.tell(stderr, report_of(failures[i], session_.log().installed(), page_for(stderr)));
    if (failures.size() > most_full_reports)
        session_.tell(stderr,
                      fmt::format("{} more operations of the {} failed\n", failures.size() - most_full_reports, what));
    std::ranges::move(failures, std::back_inserter(result_.failures));
}

void node_from_file::tell_background_failures()
{
    const auto failures = session_.log().background_failures();
    result_.shown["timestamp_thread"] = records_of(failures);
    if (failures.empty())
        return;
    session_.tell(stderr, "the timestamp thread reported:\n");
    for (const trace_entry &entry : failures)
        session_.tell(stderr, fmt::format("    {}\n", to_text(entry)));
}

namespace
{

watch_pace pace_of(const arguments &given)
{
    using std::chrono::milliseconds;
    watch_pace pace;
    if (given.has("--interval"))
        pace.interval = std::chrono::ceil<milliseconds>(std::chrono::nanoseconds(given.number<int64_t>("--interval")));
    if (given.has("--step"))
        pace.step = given.number<uint64_t>("--step");
    if (given.has("--for"))
        pace.end = given.number<uint64_t>("--for");
    return pace;
}

bool show_in_motion(node_from_file &node, const watch_pace &pace)
{
    node.show_objects();
    const bool watched = node.watch(pace);
    return node.show_counters() && watched;
}

} // namespace

result up(const invocation &asked, session &session)
{
    const bool watched = asked.given.has("--watch");
    if (watched && !on_software_accelerator())
        return refused("--watch does not apply: this platform is not the software accelerator");
    const std::string &name = asked.given.text("FILE");
    auto [file, errors] = load_node_to_start(name);
    if (!file)
        return wrong_input(name, std::move(errors), "nothing was started");

    const interruption_watch watch;
    node_from_file node(std::move(file), session);
    const bool stands = node.up();
    const bool kept = !stands && asked.given.has("--keep") && node.keep();
    const bool shown = stands && (watched ? show_in_motion(node, pace_of(asked.given)) : node.show());
    if ((stands || kept) && asked.given.has("--hold"))
        node.hold();
    if (kept)
        return node.take_result(false);
    const bool clean = node.down();
    return node.take_result(shown && clean);
}

} // namespace kelctl

// What is shown of a bring-up and of a take-down, and when each ends. The order of the commands is
// nodefile/node_keys.cpp. Whether a node is also held or watched is up.cpp.
#include "kelctl/jobs/bring_up.h"

#include "kelctl/input/interruption.h"
#include "kelctl/jobs/take_down.h"
#include "kelctl/language/command_text.h"
#include "kelctl/library/trace_log.h"
#include "kelctl/node/load_node_file.h"
#include "kelctl/node/read_back.h"
#include "kelctl/results/failure_report.h"
#include "kelctl/results/result_document.h"
#include "kelctl/views/leftover.h"
#include "terminal/folding.h"
#include "terminal/progress.h"
#include "terminal/terminal.h"

#include <fmt/core.h>

#include <algorithm>
#include <iterator>
#include <optional>
#include <utility>

namespace kelctl
{
namespace
{

// Of what is shown on standard error.
size_t error_width()
{
    return terminal::line_width(stderr).value_or(terminal::usual_width);
}

std::string outcome_text(const std::optional<snapshot> &left)
{
    if (!left)
        return "Taken down. This platform cannot show what is left.";
    if (!left->empty())
        return "Taken down. Left behind:\n" + leftover_view(*left, error_width());
    return "Taken down. The node is empty again.";
}

// The reports of commands that succeeded although their trace records show failures.
std::string complaints_of(const std::vector<undone_command> &undone)
{
    std::string text;
    for (const undone_command &one : undone)
        if (!one.complaints.empty())
            text += complaints_text(one.command(), one.complaints, page_for(stderr));
    return text;
}

template <typename Wanted> std::vector<undone_command> those(const std::vector<undone_command> &commands, Wanted wanted)
{
    std::vector<undone_command> found;
    std::ranges::copy_if(commands, std::back_inserter(found), wanted);
    return found;
}

fields objects_in(const std::optional<snapshot> &node)
{
    return node ? leftover_fields(*node) : fields(nullptr);
}

fields command_of(const undone_command &one)
{
    return one.command();
}

fields complaint_of(const undone_command &one)
{
    return {{"operation", one.command()}, {"records", list_of(one.complaints, record_fields)}};
}

std::vector<failure> failures_of(const std::vector<undone_command> &commands)
{
    std::vector<failure> failures;
    for (const undone_command &one : commands)
        failures.insert(failures.end(), one.failures.begin(), one.failures.end());
    return failures;
}

std::vector<product> products_of(const std::vector<undone_command> &commands)
{
    std::vector<product> products;
    std::ranges::transform(commands, std::back_inserter(products), &undone_command::made);
    return products;
}

} // namespace

bring_up::bring_up(std::vector<invocation> lines, std::string file, session &session)
    : lines_(std::move(lines)), file_(std::move(file)), session_(session)
{
}

// For an exception on the way: a node must not stay half up because a report could not be made.
bring_up::~bring_up()
{
    session_.on_made = nullptr;
    take_down(session_);
}

// Progress counts paths only: of anything else a node has a few hundred at most.
bool bring_up::up()
{
    const bool redrawn = terminal::is_terminal(stderr) && !session_.tracing();
    terminal::progress shown("adding paths", session_.json() || session_.quiet() ? 0 : size_of(lines_).paths, stderr,
                             redrawn);
    session_.on_made = [&] { shown.show(session_.paths.size()); };
    result last;
    auto line = lines_.begin();
    for (; line != lines_.end() && !interrupted(); ++line)
        if (last = session_.perform(*line); last.status != exit_done)
            break;
    session_.on_made = nullptr;
    shown.leave_line();
    came_up_ = line == lines_.end();
    result_.shown["stood"] = came_up_;
    if (!came_up_)
        show_stop(line->line, std::move(last));
    return came_up_;
}

// After a line that failed, or a signal during a line or between two. What the line would have shown is left out: the
// report says what failed.
void bring_up::show_stop(uint32_t line, result last)
{
    line_failed_ = !last.failures.empty() || !last.errors.empty();
    last.text = "";
    last.shown = fields::object();
    last.remark = line_failed_ ? "" : "interrupted before the node was up";
    result_.remark = last.remark;
    const bool in_file = line_failed_ && line != 0;
    session_.show_part(result_, std::move(last), {in_file ? file_ : "", line});
}

bool bring_up::show(result part)
{
    const bool well = part.status == exit_done;
    session_.show_part(result_, std::move(part), {});
    return well;
}

// The second call returns what the first one found: `up` and the "down" of another process may both ask for it.
bool bring_up::down()
{
    if (!clean_)
        clean_ = !kept_ && take_all_down();
    return *clean_;
}

// What was undone is reported in full only if something went wrong, or if the node never was up.
bool bring_up::take_all_down()
{
    show_background_failures();
    const std::vector<undone_command> commands = take_down(session_);
    session_.paths.clear();
    const auto left = current_snapshot();
    const bool empty = !left || left->empty();
    // The undo of a line that failed may find nothing to undo, and be refused: that matters only if something is left.
    const auto matters = [&](const undone_command &one) { return !one.may_find_nothing || !(left && left->empty()); };
    const auto refused =
        those(commands, [&](const undone_command &one) { return !one.failures.empty() && matters(one); });

    result part;
    part.stage = "take-down";
    part.failures = failures_of(refused);
    const auto undone = those(commands, [](const undone_command &one) { return one.failures.empty(); });
    const auto complaining = those(commands, [](const undone_command &one) { return !one.complaints.empty(); });
    if (session_.json()) // it is large
        part.shown = {{"undone", list_of(undone, command_of)},
                      {"not_undone", list_of(part.failures, failure_fields)},
                      {"complaints", list_of(complaining, complaint_of)},
                      {"left_behind", left ? fields(contents_text(*left)) : fields(nullptr)},
                      {"left_objects", objects_in(left)}};
    const bool clean = refused.empty() && empty;
    part.text = "";
    if (clean && came_up_)
        part.text = outcome_text(left);
    else
        part.remark = undone_text(commands, error_width()) +
                      (refused.empty() ? "" : products_text("not undone: ", products_of(refused), error_width())) +
                      (empty ? "" : complaints_of(commands)) + outcome_text(left);
    show(std::move(part));
    return clean;
}

// Commands that failed are left out of what is kept: what they left shows among the objects.
bool bring_up::keep()
{
    if (!line_failed_)
        return false;
    show_background_failures();
    const auto held = current_snapshot();
    fields commands = fields::array();
    std::vector<product> kept;
    for (const made_command &made : session_.made.take_all())
        if (!made.failed) {
            kept.push_back(made.asked.row->makes);
            commands.push_back(text_of(made.asked));
        }
    result part;
    part.text = "";
    part.remark = products_text("kept: ", kept, error_width());
    if (held)
        part.remark += "The node contains:\n" + leftover_view(*held, error_width());
    part.shown = {{"kept", std::move(commands)}, {"kept_objects", objects_in(held)}};
    show(std::move(part));
    kept_ = true;
    return true;
}

// What other threads reported, which is in no operation's report.
void bring_up::show_background_failures()
{
    const auto failures = session_.log().background_failures();
    result part;
    part.text = "";
    part.shown = {{"timestamp_thread", list_of(failures, record_fields)}};
    if (!failures.empty())
        part.remark = "the timestamp thread reported:\n" + records_text(failures, page_for(stderr));
    show(std::move(part));
}

result bring_up::take_result(bool succeeded)
{
    result_.status = succeeded ? exit_done : exit_operation_failed;
    return std::move(result_);
}

} // namespace kelctl

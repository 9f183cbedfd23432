// The row of "sweep": which scripts it accepts, its progress and its exit status. The sweep itself is in kelctl/sweep.
#include "kelctl/commands/commands.h"
#include "kelctl/input/interruption.h"
#include "kelctl/jobs/script.h"
#include "kelctl/session/session.h"
#include "kelctl/sweep/sweep_view.h"
#include "terminal/progress.h"
#include "terminal/terminal.h"
#include "text/printable.h"

#include <fmt/core.h>

#include <algorithm>
#include <optional>

namespace kelctl
{
namespace
{

constexpr range time_limit_range = {1, 3'600'000, "1 to 3600000 milliseconds"};

constexpr std::string_view sweep_details =
    R"(Runs the script once without faults. Then, for each closed call that it makes and
for each code of that call's library, runs it twice: with that call failing, and
with that call and all later ones of its function failing. Every run is a process
with an empty node of its own. It ends at the first line that fails. Then the
sweep undoes, in reverse order, the lines before that line, such as "ebcom path
add" by "ebcom path remove", unless the script has undone them itself. Calls of
this take-down do not fail. The sweep reports the objects that are left.

Some leftovers are documented with the operation that failed. Any other one, a
crash or a hang makes the exit status 1.

Ctrl-C ends the sweep after the current run and shows the results so far. A
second one ends kelctl at once.)";

// Why this script cannot be swept; empty if it can. One that fails without a fault would hide every finding after it.
std::string unfit(const sweep_run &undisturbed)
{
    if (undisturbed.came_out == verdict::crashed || undisturbed.came_out == verdict::hung)
        return fmt::format("the script {} without any fault", name_of(undisturbed.came_out));
    if (undisturbed.line == 0)
        return "";
    const std::string code = undisturbed.code ? fmt::format(", code {}", *undisturbed.code) : "";
    return fmt::format("line {} fails without any fault{}", undisturbed.line, code);
}

// Runs the sweep; `seen`: with its progress on standard error. The line is left before anything else is printed.
std::optional<sweep_report> sweep_in_sight(const command_table &table, const std::vector<invocation> &lines,
                                           uint32_t time_limit, bool seen)
{
    const interruption_watch watch;
    std::optional<terminal::progress> shown;
    auto report = sweep(table, lines, time_limit, [&](size_t done, size_t planned) {
        if (!shown)
            shown.emplace("sweeping", planned, stderr, seen);
        else
            shown->show(done);
        return !interrupted();
    });
    if (shown)
        shown->leave_line();
    return report;
}

// An ended sweep fails: what it did not try may leave anything.
result swept(const sweep_report &report, const std::string &file)
{
    const bool ended = report.runs.size() < report.planned;
    const bool bad = std::any_of(report.runs.begin(), report.runs.end(),
                                 [](const sweep_run &run) { return run.came_out > verdict::left_as_documented; });
    result done;
    done.status = bad || ended ? exit_operation_failed : exit_done;
    done.text = sweep_view(report, page_for(stdout));
    done.shown = sweep_fields(report);
    if (ended)
        done.remark = fmt::format("{}: interrupted after {} of {} runs", text::without_controls(file),
                                  report.runs.size(), report.planned);
    return done;
}

// The script is read and parsed once; its children repeat the lines.
result sweep_script(const invocation &asked, session &session)
{
    const std::string &file = asked.given.text("SCRIPT");
    auto [lines, errors, warnings] = script_in(file, session.table);
    if (!errors.empty())
        return wrong_input(file, std::move(errors), "nothing was run");

    const bool seen = terminal::is_terminal(stderr) && !session.json() && !session.quiet();
    const auto report = sweep_in_sight(session.table, lines, asked.given.number<uint32_t>("--time-limit"), seen);
    if (!report)
        return refused("cannot create a child process", file);
    if (std::string why = unfit(report->undisturbed); !why.empty())
        return refused(std::move(why), file);
    return swept(*report, file);
}

} // namespace

std::vector<command> sweep_commands()
{
    return {
        {.name = "sweep",
         .variants = {{.run = sweep_script}},
         .help = "Make each call of a script fail in turn; report what is left",
         .details = sweep_details,
         .arguments = {{.name = "SCRIPT", .kind = kind::file(), .help = "script; - for standard input"},
                       {.name = "--time-limit",
                        .kind = kind::number(time_limit_range),
                        .help = "time limit of one run",
                        .otherwise = "10000"}},
         .example = "sweep examples/whole-node.kel",
         .sources = {source::program},
         .needs_accelerator = true,
         .carried_out = executor::nobody},
    };
}

} // namespace kelctl

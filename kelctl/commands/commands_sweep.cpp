// The fault sweep over a script.
#include "kelctl/commands/commands.h"
#include "kelctl/input/interruption.h"
#include "kelctl/jobs/script.h"
#include "kelctl/session/session.h"
#include "kelctl/sweep/sweep_view.h"
#include "kelctl/terminal/progress.h"
#include "kelctl/terminal/text.h"

#include <fmt/core.h>

#include <algorithm>
#include <optional>

namespace kelctl
{
namespace
{

constexpr range time_limit_range = {1, 3'600'000, "1 to 3600000 milliseconds"};

constexpr std::string_view sweep_details =
    R"(The script is run once undisturbed. Then, for each closed call that it makes and
for each code of that call's library, it is run with that one call failing, and
with that call and all later ones of its function failing; each time on a node
just switched on, in a process of its own. A run ends at the first line that
fails. Then what the lines before it made is taken down in reverse order: each
line that another command undoes, such as "ebcom path add" by "ebcom path
remove", and that the script has not undone itself. Calls of the take-down do
not fail. What is left after it belongs to nobody.

Some of it is documented with the operation that failed. Anything else, a crash
and a hang make the exit status 1.

Ctrl-C ends the sweep after the run that is under way; what the runs until then
found is shown. A second one ends kelctl at once.)";

// Why a sweep over this script says nothing; empty when it does.
std::string unfit(const sweep_run &undisturbed)
{
    if (undisturbed.came_out == verdict::crashed || undisturbed.came_out == verdict::hung)
        return fmt::format("the script {} without any fault", name_of(undisturbed.came_out));
    if (undisturbed.line == 0)
        return "";
    const std::string code = undisturbed.code ? fmt::format(", code {}", *undisturbed.code) : "";
    return fmt::format("line {} fails without any fault{}", undisturbed.line, code);
}

// On a terminal, how far it is.
std::optional<sweep_report> sweep_in_sight(const command_table &table, const std::vector<invocation> &lines,
                                           uint32_t time_limit, bool seen)
{
    const interruption_watch watch;
    std::optional<progress> shown;
    const auto report = sweep(table, lines, time_limit, [&](size_t done, size_t planned) {
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
        done.remark = fmt::format("{}: interrupted, {} of {} runs were made", without_controls(file),
                                  report.runs.size(), report.planned);
    return done;
}

result sweep_script(const invocation &asked, session &session)
{
    const std::string &file = asked.given.text("SCRIPT");
    auto [lines, errors, warnings] = script_in(file, session.table);
    if (!errors.empty())
        return wrong_input(file, std::move(errors), "nothing was run");

    const bool seen = is_terminal(stderr) && !session.json() && !session.quiet();
    const auto report = sweep_in_sight(session.table, lines, asked.given.number<uint32_t>("--time-limit"), seen);
    if (!report)
        return refused("no child process can be made", file);
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
         .help = "Run a script again and again, each of its calls failing",
         .details = sweep_details,
         .arguments = {{.name = "SCRIPT", .kind = kind::file(), .help = "script; - for standard input"},
                       {.name = "--time-limit",
                        .kind = kind::number(time_limit_range),
                        .help = "for one run",
                        .otherwise = "10000"}},
         .example = "sweep examples/whole-node.kel",
         .sources = {source::program},
         .needs_accelerator = true},
    };
}

} // namespace kelctl

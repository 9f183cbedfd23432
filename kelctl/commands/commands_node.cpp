// Whole nodes from their files.
#include "kelctl/commands/commands.h"
#include "kelctl/commands/watch_arguments.h"
#include "kelctl/jobs/up.h"
#include "kelctl/language/command_text.h"
#include "kelctl/node/load_node_file.h"
#include "kelctl/session/session.h"
#include "kelctl/session/undo.h"

#include <fmt/core.h>

#include <utility>

namespace kelctl
{
namespace
{

const argument node_file_argument = {.name = "FILE", .kind = kind::file(), .help = "node file (TOML)"};

constexpr std::string_view up_details = R"(The whole file is checked first. Every problem is printed as
file:line:column: message, and then nothing is started.

A failing operation is printed with its arguments, its code, who refused and its
trace records. Then what was made so far is taken down in reverse order, and the
report lists what was undone, what could not be, and what the accelerator still
holds. --keep leaves it in place instead; on the software accelerator, which
ends with kelctl, --hold gives time to look at it. --trace prints every record on
standard error: event, domain, message, location.

--watch is the command "watch" while the node is up: on the software accelerator
it plays the traffic of the file's [[traffic]] tables in virtual time.

Ctrl-C takes the node down. A second one ends kelctl at once. --hold and
--watch end as well when the reader of standard output goes away.)";

std::vector<argument> arguments_of_up()
{
    std::vector<argument> all = {
        node_file_argument,
        {.name = "--hold", .kind = kind::flag(), .help = "take it down on Ctrl-C or SIGTERM only"},
        {.name = "--watch", .kind = kind::flag(), .help = "play the file's traffic and show counters and rates"},
        {.name = "--keep", .kind = kind::flag(), .help = "keep what was made when a step fails"}};
    for (argument &option : watch_arguments()) {
        option.needs = "--watch";
        all.push_back(std::move(option));
    }
    return all;
}

result check(const invocation &asked, session &session)
{
    const std::string &name = asked.given.text("FILE");
    auto [lines, errors, warnings] = load_node_file(name, session.table);
    if (!errors.empty())
        return wrong_input(name, std::move(errors), "nothing was started");
    const node_size size = size_of(lines);
    return {.shown = {{"paths", size.paths},
                      {"pceps", size.pceps},
                      {"multicast_groups", size.groups},
                      {"traffic", size.streams}},
            .warnings = std::move(warnings)};
}

// What takes down what the lines make, from the last to the first.
std::vector<invocation> undo_of_all(const std::vector<invocation> &lines, const command_table &table)
{
    std::vector<invocation> undo;
    for (auto line = lines.rbegin(); line != lines.rend(); ++line)
        if (auto one = undo_of(*line, table))
            undo.push_back(std::move(*one));
    return undo;
}

std::string script_of(std::string_view comment, const fields &lines)
{
    std::string script = fmt::format("# {}\n", comment);
    for (const fields &line : lines)
        script += line.text() + "\n";
    return script;
}

result plan(const invocation &asked, session &session)
{
    const std::string &name = asked.given.text("FILE");
    auto [lines, errors, warnings] = load_node_file(name, session.table);
    if (!errors.empty())
        return wrong_input(name, std::move(errors), "nothing was planned");
    const fields up = list_of(lines, text_of);
    const fields down = list_of(undo_of_all(lines, session.table), text_of);
    return {.shown = {{"up", up}, {"down", down}}, .text = script_of("Up", up) + "\n" + script_of("Down", down)};
}

} // namespace

std::vector<command> node_commands()
{
    return {
        {.name = "up",
         .variants = {{.run = up}},
         .help = "Bring a node up, show it, take it down again",
         .details = up_details,
         .arguments = arguments_of_up(),
         .example = "up examples/node.toml --hold",
         .sources = {source::program}},
        {.name = "check",
         .variants = {{.run = check}},
         .help = "Check a node file and do nothing else",
         .arguments = {node_file_argument},
         .example = "check examples/node.toml",
         .offline = true},
        {.name = "plan",
         .variants = {{.run = plan}},
         .help = "Show what up does as a script, which run carries out",
         .arguments = {node_file_argument},
         .example = "plan examples/node.toml",
         .offline = true},
    };
}

} // namespace kelctl

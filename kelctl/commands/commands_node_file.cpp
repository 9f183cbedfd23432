// Rows that work on a whole node file: up, check, plan. Running up is in kelctl/jobs, reading the file in
// kelctl/nodefile.
#include "kelctl/commands/commands.h"
#include "kelctl/commands/watch_arguments.h"
#include "kelctl/jobs/hold.h"
#include "kelctl/jobs/up.h"
#include "kelctl/language/command_text.h"
#include "kelctl/node/load_node_file.h"
#include "kelctl/remote/node_names.h"
#include "kelctl/session/session.h"
#include "kelctl/session/undo.h"

#include <fmt/core.h>

#include <utility>

namespace kelctl
{
namespace
{

const argument node_file_argument = {.name = "FILE", .kind = kind::file(), .help = "node file (TOML)"};

constexpr std::string_view up_details = R"(Checks the whole file first. If the file has problems, prints each one as
file:line:column: message and starts nothing.

If an operation fails, prints its arguments, its code, the library that refused
it and its trace records. Then takes the node down in reverse order and reports
what was undone, what could not be undone, and what is left in the accelerator.
--keep skips the take-down. The software accelerator ends with kelctl: combine
--keep with --hold to inspect it. --trace prints every trace record on standard
error: event, domain, message, location.

--watch is the command "watch" while the node is up: on the software accelerator
it plays the traffic of the file's [[traffic]] tables in virtual time.

A node that is held carries out commands of other processes, one after the
other: "kelctl --node NAME COMMAND". Only its owner and root reach it, and the
group of --group.

Ctrl-C takes the node down; a second one ends kelctl at once. --hold and --watch
also end when the reader of standard output closes it. SIGHUP takes the node
down as well, except without a terminal: then a node that is held applies its
file again.

systemd holds the node of /etc/kelctl/NAME.toml as the service kelctl@NAME.)";

// The options of the live view are those of `watch`, each of which requires --watch here.
std::vector<argument> arguments_of_up()
{
    std::vector<argument> all = {
        node_file_argument,
        {.name = "--hold", .kind = kind::flag(), .help = "keep the node up until Ctrl-C or SIGTERM"},
        {.name = "--name",
         .kind = kind::text(),
         .help = "name of the node for other processes (default: the file name without its ending)",
         .needs = "--hold"},
        {.name = "--group", .kind = kind::text(), .help = "let this group of users reach it, too", .needs = "--hold"},
        {.name = "--watch", .kind = kind::flag(), .help = "play the file's traffic and show counters and rates"},
        {.name = "--keep", .kind = kind::flag(), .help = "skip the take-down when a step fails"}};
    for (argument &option : watch_arguments()) {
        option.needs = "--watch";
        all.push_back(std::move(option));
    }
    return all;
}

// A file may have a name that no node can have. It is refused before the node comes up, not when it is to be served.
std::optional<objection> check_name(const arguments &given)
{
    auto wrong = given.has("--hold") ? wrong_node_name(name_of_node(given)) : std::nullopt;
    if (!wrong)
        return std::nullopt;
    return given.has("--name") ? objection{"--name", *wrong} : objection{"FILE", *wrong + "; --name gives another"};
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
        return wrong_input(name, std::move(errors), "no plan was printed");
    const fields up = list_of(lines, text_of);
    const fields down = list_of(undo_of_all(lines, session.table), text_of);
    return {.shown = {{"up", up}, {"down", down}}, .text = script_of("Up", up) + "\n" + script_of("Down", down)};
}

} // namespace

std::vector<command> node_file_commands()
{
    return {
        {.name = "up",
         .variants = {{.run = up}},
         .help = "Bring a node up, show it, take it down again",
         .details = up_details,
         .arguments = arguments_of_up(),
         .check = check_name,
         .example = "up examples/node.toml --hold",
         .sources = {source::program},
         .carried_out = executor::nobody},
        {.name = "check",
         .variants = {{.run = check}},
         .help = "Check a node file and start nothing",
         .arguments = {node_file_argument},
         .example = "check examples/node.toml",
         .offline = true},
        {.name = "plan",
         .variants = {{.run = plan}},
         .help = "Print what up does, as a script for run",
         .arguments = {node_file_argument},
         .example = "plan examples/node.toml",
         .offline = true},
    };
}

} // namespace kelctl

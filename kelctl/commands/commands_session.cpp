// Commands about commands: scripts, the shell, help, the version.
#include "kelctl/commands/commands.h"
#include "kelctl/jobs/script.h"
#include "kelctl/jobs/shell.h"
#include "kelctl/language/help.h"
#include "kelctl/session/session.h"
#include "kelctl/terminal/terminal.h"
#include "kelctl/terminal/text.h"

#include <fmt/core.h>

namespace kelctl
{
namespace
{

constexpr std::string_view run_details = R"(A script has a command in each line, written as on the command line, without
"kelctl". # begins a comment; quotes keep blanks in a word. All lines are
checked before the first one is run: wrong ones are printed as
script:line:column: message. It stops at the first line that fails.

All commands run in one process and so on one node.)";

constexpr std::string_view shell_details =
    R"(On a terminal there is a prompt, with a history that lasts from one shell to the
next, and completion with TAB: commands, options, ports, and addresses, ids and
handles that were used or that the accelerator holds. Ctrl-C gives a line up,
Ctrl-D, "exit" or "quit" leaves.

With a node file the node is brought up first and taken down at the end.

Elsewhere commands are read line by line and run as they come; the exit status
is the worst of theirs.)";

const argument words_of_a_command = {.name = "COMMAND",
                                     .kind = kind::command_words(),
                                     .help = "words of a command or of a group",
                                     .required = false,
                                     .repeated = true};

result show_help(const invocation &asked, session &session)
{
    const std::string words = joined(asked.given.get<std::vector<std::string>>("COMMAND"), " ");
    const source where = session.where;
    const command *row = session.table.find(words);
    const bool whole = row && row->allowed_in(where);
    if (!whole && session.table.next_words(words, where).empty())
        return wrong_use(fmt::format("there is no command {}", in_quotes(words)));
    const size_t width = line_width(stdout).value_or(usual_width);
    const std::string help = whole ? help_of(*row, where, width) : help_of_words(session.table, words, where, width);
    return {.shown = {{"help", help}}, .text = help};
}

result show_version(const invocation &, session &)
{
    return {.shown = {{"version", KELCTL_VERSION}}, .text = "kelctl " KELCTL_VERSION};
}

result leave(const invocation &, session &session)
{
    session.finished = true;
    return {};
}

} // namespace

std::vector<command> session_commands()
{
    return {
        {.name = "run",
         .variants = {{.run = run_script}},
         .help = "Carry out a script of commands",
         .details = run_details,
         .arguments = {{.name = "SCRIPT", .kind = kind::file(), .help = "script; - for standard input"},
                       {.name = "--keep-going", .kind = kind::flag(), .help = "go on after lines that fail"}},
         .example = "run examples/node.kel",
         .sources = {source::program}},
        {.name = "shell",
         .variants = {{.run = shell}},
         .help = "Carry out commands as they are typed",
         .details = shell_details,
         .arguments = {{.name = "FILE",
                        .kind = kind::file(),
                        .help = "node file: the node is up while the shell runs",
                        .required = false}},
         .example = "shell examples/node.toml",
         .sources = {source::program}},
        {.name = "help",
         .variants = {{.run = show_help}},
         .help = "Show the commands, or one in full",
         .arguments = {words_of_a_command},
         .example = "help ebcom path add",
         .offline = true},
        {.name = "?",
         .variants = {{.run = show_help}},
         .help = "The same as help",
         .arguments = {words_of_a_command},
         .example = "? ebcom path add",
         .sources = {source::shell},
         .offline = true},
        {.name = "exit",
         .variants = {{.run = leave}},
         .help = "Leave the script or shell",
         .sources = {source::script, source::shell},
         .offline = true},
        {.name = "quit",
         .variants = {{.run = leave}},
         .help = "The same as exit",
         .sources = {source::shell},
         .offline = true},
        {.name = "version",
         .variants = {{.run = show_version}},
         .help = "Print the version",
         .sources = {source::program},
         .offline = true},
    };
}

} // namespace kelctl

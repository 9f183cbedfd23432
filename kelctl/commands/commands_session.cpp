// Rows about other commands: run, shell, help, exit, version. Running scripts and the shell is in kelctl/jobs.
#include "kelctl/commands/commands.h"
#include "kelctl/jobs/script.h"
#include "kelctl/jobs/shell.h"
#include "kelctl/language/help.h"
#include "kelctl/session/session.h"
#include "kelctl/values/limits.h"
#include "terminal/folding.h"
#include "terminal/terminal.h"
#include "text/printable.h"
#include "text/wording.h"

#include <fmt/core.h>

namespace kelctl
{
namespace
{

constexpr std::string_view run_details = R"(A script has one command per line, written as on the command line, without
"kelctl". # begins a comment; quotes keep blanks in a word. Checks all lines
before it runs the first one, and prints wrong ones as
script:line:column: message. Stops at the first line that fails.

All commands run in one process and so on one node.)";

constexpr std::string_view shell_details =
    R"(On a terminal, shows a prompt with a saved history. TAB completes commands,
options, ports, and the addresses, ids and handles that were used or exist in the
accelerator. Ctrl-C cancels the line; Ctrl-D, "exit" or "quit" leaves the shell.

With a node file, brings the node up first and takes it down at the end.

If standard input is not a terminal, runs each line as it is read; the exit
status is the worst of all commands.)";

constexpr std::string_view expect_details =
    R"(Succeeds if COMMAND returns this code, also that of a failure. Fails with both
codes if it returns another. So a script can show that something is refused.
COMMAND has to call a function of the library.

kel-record(1) writes the calls of a control process as such lines.)";

const argument words_of_a_command = {.name = "COMMAND",
                                     .kind = kind::command_words(),
                                     .help = "a command or a group of commands",
                                     .required = false,
                                     .repeated = true};

// Words may be those of a command, or the beginning of several.
result show_help(const invocation &asked, session &session)
{
    const std::string words = text::joined(asked.given.get<std::vector<std::string>>("COMMAND"), " ");
    const source where = session.where;
    const command *row = session.table.find(words);
    const bool whole = row && row->allowed_in(where);
    if (!whole && session.table.next_words(words, where).empty())
        return wrong_use(fmt::format("unknown command {}", text::in_quotes(words)));
    const size_t width = terminal::line_width(stdout).value_or(terminal::usual_width);
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

// It is never carried out: the grammar takes "expect CODE" off a line that goes on (language/line_parts.h).
const command expectation = {
    .name = expect_name,
    .variants = {{}},
    .help = "Run a command and compare the code that it returns",
    .details = expect_details,
    .arguments =
        {{.name = "CODE", .kind = kind::number(dword_range), .help = "of the library; 0 is success"},
         {.name = "COMMAND", .kind = kind::command_words(), .help = "a command with its arguments", .repeated = true}},
    .example = "expect 4 pcep remove 7",
    .sources = {source::script, source::shell},
    .offline = true};

} // namespace

std::vector<command> session_commands()
{
    return {
        {.name = "run",
         .variants = {{.run = run_script}},
         .help = "Run a script of commands",
         .details = run_details,
         .arguments = {{.name = "SCRIPT", .kind = kind::file(), .help = "script; - for standard input"},
                       {.name = "--keep-going", .kind = kind::flag(), .help = "continue after a line fails"}},
         .example = "run examples/node.kel",
         .sources = {source::program},
         .carried_out = executor::asker,
         .carries_out_others = true},
        {.name = "shell",
         .variants = {{.run = shell}},
         .help = "Run commands interactively",
         .details = shell_details,
         .arguments =
             {{.name = "FILE", .kind = kind::file(), .help = "node file to bring up first", .required = false}},
         .example = "shell examples/node.toml",
         .sources = {source::program},
         .carried_out = executor::asker,
         .carries_out_others = true},
        expectation,
        {.name = "help",
         .variants = {{.run = show_help}},
         .help = "List the commands, or describe one",
         .arguments = {words_of_a_command},
         .example = "help ebcom path add",
         .offline = true},
        {.name = "?",
         .variants = {{.run = show_help}},
         .help = "Same as help",
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
         .help = "Same as exit",
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

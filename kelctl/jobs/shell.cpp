// The loop over lines, and the node around it.
#include "kelctl/jobs/shell.h"

#include "kelctl/input/history_file.h"
#include "kelctl/input/interruption.h"
#include "kelctl/input/line_editor.h"
#include "kelctl/input/line_input.h"
#include "kelctl/jobs/bring_up.h"
#include "kelctl/language/command_line.h"
#include "kelctl/language/completion.h"
#include "kelctl/language/help.h"
#include "kelctl/node/known_on_node.h"
#include "kelctl/node/load_node_file.h"
#include "kelctl/remote/messages.h"
#include "kelctl/results/result_view.h"
#include "terminal/terminal.h"
#include "text/wording.h"

#include <fmt/core.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <unistd.h>
#include <utility>

namespace kelctl
{
namespace
{

// A wrong line ends neither the shell nor a pipe: what was made by earlier lines stays in use.
exit_status run_line(const std::string &line, const origin &at, session &session)
{
    std::vector<word> words;
    try {
        words = words_of(line);
        if (words.empty())
            return exit_done;
        invocation asked = parse(session.table, words, source::shell);
        asked.line = at.line;
        return session.carry_out(asked, at.file).status;
    } catch (const wrong_line &wrong) {
        const position where = at.file.empty() ? whole_file : position{at.line, wrong.column()};
        const std::string name = parts_of(session.table, words, source::shell).name;
        const std::string hint = at.file.empty() ? help_hint(name, source::shell) : "";
        show_wrong_line({wrong.what(), at.file, where}, hint, session.json());
    }
    return exit_wrong_input;
}

// A node elsewhere knows what was used of it. One that does not answer offers nothing: the next command says why.
known_words words_known_to(const session &session)
{
    if (!session.elsewhere)
        return known_on_node(session);
    try {
        return known_of(session.elsewhere->ask({{"ask", "words"}}));
    } catch (const std::runtime_error &) {
        return {};
    }
}

replacements words_for(std::string_view line, const session &session)
{
    const completion found = complete(session.table, line, words_known_to(session), source::shell);
    replacements offered = {.words = {}, .files = found.files};
    for (const candidate &one : found.candidates)
        offered.words.push_back(one.word);
    return offered;
}

// Failures of typed lines do not become the status of the shell: the person has seen them.
result run_typed_lines(session &session)
{
    result lines;
    history_file history;
    if (!history.refusal().empty())
        session.show_part(lines, {.text = "", .remark = fmt::format("kelctl: {}", history.refusal())}, {});
    line_editor editor(history, [&session](std::string_view line) { return words_for(line, session); });
    while (!session.finished && !terminated())
        if (const auto line = editor.next())
            run_line(*line, {}, session);
        else
            break;
    return lines;
}

// A file name of "-" and the line's number are put in front of each report: there is no prompt that would show the
// line.
result run_piped_lines(session &session)
{
    result lines = {.shown_already = true};
    line_input input(STDIN_FILENO);
    uint32_t number = 0;
    while (!session.finished && !terminal::output_lost())
        if (const auto line = input.next())
            lines.status = std::max(lines.status, run_line(*line, {"-", ++number}, session));
        else
            break;
    if (input.error() != 0)
        session.show_part(lines,
                          {.status = exit_operation_failed,
                           .text = "",
                           .errors = {{fmt::format("cannot be read: {}", std::strerror(input.error())), "-"}}},
                          {});
    if (interrupted())
        lines.status = std::max(lines.status, exit_operation_failed);
    return lines;
}

// Both ends must be a terminal: editing draws on standard output.
result run_lines(session &session)
{
    session.where = source::shell;
    const bool typed = terminal::is_terminal(stdin) && terminal::is_terminal(stdout);
    return typed ? run_typed_lines(session) : run_piped_lines(session);
}

// `shell FILE`: the node is up while lines are read, and is taken down after the last one.
result run_lines_on(loaded_lines loaded, const std::string &file, session &session)
{
    const node_size size = size_of(loaded.lines);
    bring_up node(std::move(loaded.lines), file, session);
    node.show({.text = "", .warnings = std::move(loaded.warnings)});
    const bool is_up = node.up();
    if (is_up)
        node.show({.text = line_on(session.output_page(),
                                   fmt::format("The node is up: {}, {}, {}", text::count_of(size.paths, "path"),
                                               text::count_of(size.pceps, "PCEP"),
                                               text::count_of(size.groups, "multicast group")))});
    result lines = is_up ? run_lines(session) : result{};
    const bool clean = node.down();
    result done = node.take_result(is_up && clean);
    done.status = std::max(done.status, lines.status);
    done.errors = std::move(lines.errors);
    return done;
}

} // namespace

// The watch begins after the file was read: Ctrl-C while a pipe is read as the file ends the program.
result shell(const invocation &asked, session &session)
{
    if (!asked.given.has("FILE")) {
        const interruption_watch watch;
        return run_lines(session);
    }
    if (session.elsewhere)
        return wrong_use("the node of --node is up: the shell brings up no other one");
    const std::string &file = asked.given.text("FILE");
    loaded_lines loaded = load_node_file(file, session.table);
    if (!loaded.errors.empty())
        return wrong_input(file, std::move(loaded.errors), "nothing was started");
    const interruption_watch watch;
    return run_lines_on(std::move(loaded), file, session);
}

} // namespace kelctl

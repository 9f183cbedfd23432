// Readline's callback interface, so that a signal is noticed while nothing is typed.
#include "kelctl/input/line_editor.h"

#include "kelctl/input/interruption.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <memory>
#include <poll.h>
#include <readline/history.h>
#include <readline/readline.h>
#include <unistd.h>
#include <utility>

namespace kelctl
{
namespace
{

char word_breaks[] = " \t";

// Readline calls back without a context.
completer complete_line;
replacements found;
std::optional<std::string> typed;
bool line_ended = false;

void take_line(char *line)
{
    const std::unique_ptr<char, void (*)(void *)> owned(line, std::free);
    line_ended = true;
    typed = line ? std::optional<std::string>(line) : std::nullopt;
    rl_callback_handler_remove();
}

// Readline asks for one word after the other, and frees them.
char *next_found(const char *, int state)
{
    static size_t next = 0;
    if (state == 0)
        next = 0;
    return next < found.words.size() ? strdup(found.words[next++].c_str()) : nullptr;
}

// Nothing may be thrown through Readline. Without an answer there is nothing to complete.
char **words_for(const char *begun, int, int end)
{
    try {
        found = complete_line(std::string_view(rl_line_buffer, static_cast<size_t>(end)));
    } catch (const std::exception &) {
        found = {};
    }
    rl_attempted_completion_over = found.files ? 0 : 1; // otherwise Readline would offer files by itself
    rl_sort_completion_matches = found.files ? 1 : 0;
    return rl_completion_matches(begun, next_found);
}

// What was typed is given up, as a shell does it.
void give_line_up()
{
    rl_callback_sigcleanup();
    rl_callback_handler_remove();
    std::fputs("^C\n", rl_outstream);
    std::fflush(rl_outstream);
    take_interruption();
    typed = "";
}

} // namespace

line_editor::line_editor(history_file &history, completer complete) : history_(history)
{
    complete_line = std::move(complete);
    rl_readline_name = "kelctl";
    rl_catch_signals = 0;
    rl_completer_word_break_characters = word_breaks;
    rl_attempted_completion_function = words_for;
    // Lines that are pasted are lines that are run.
    rl_variable_bind("enable-bracketed-paste", "off");
    using_history();
    stifle_history(longest_history);
    for (const std::string &line : history_.lines())
        add_history(line.c_str());
}

line_editor::~line_editor()
{
    clear_history();
    complete_line = nullptr;
}

std::optional<std::string> line_editor::next(const char *prompt)
{
    typed = std::nullopt;
    line_ended = false;
    if (interrupted() && !terminated())
        take_interruption(); // it was meant for the command before
    rl_callback_handler_install(prompt, take_line);
    std::array<pollfd, 2> sources = {{{STDIN_FILENO, POLLIN, 0}, {interruption_descriptor(), POLLIN, 0}}};
    while (!line_ended && !interrupted())
        if (poll(sources.data(), sources.size(), -1) > 0 && sources[0].revents != 0)
            rl_callback_read_char();

    if (!line_ended && terminated())
        rl_callback_handler_remove();
    else if (!line_ended)
        give_line_up();
    else if (!typed)
        std::fputs("\n", rl_outstream); // Ctrl-D leaves the cursor behind the prompt
    if (typed)
        remember(*typed);
    return typed;
}

// Neither empty lines nor the same again. Completion leaves a blank at the end.
void line_editor::remember(std::string line)
{
    line.erase(line.find_last_not_of(" \t") + 1);
    const HIST_ENTRY *last = history_length > 0 ? history_get(history_base + history_length - 1) : nullptr;
    if (line.empty() || (last && line == last->line))
        return;
    add_history(line.c_str());
    history_.add(line);
}

} // namespace kelctl

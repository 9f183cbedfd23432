// Keys, completion and history around libedit's lines.
#include "kelctl/input/line_editor.h"

#include "kelctl/input/interruption.h"
#include "terminal/terminal.h"

#include <fmt/core.h>

#include <algorithm>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <cwchar>
#include <exception>
#include <set>
#include <unistd.h>
#include <utility>

namespace kelctl
{
namespace
{

// What separates words, for completion.
constexpr const char *blanks = " \t";
constexpr size_t most_listed = 200; // words; more would scroll away what the person typed

// Beside the editor's own: what terminals send for keys that move, and what clears up to the cursor only.
constexpr struct {
    const char *key;
    const char *command;
} bindings[] = {
    {"^I", "complete"},           {"^U", "vi-kill-line-prev"},  {"\\e[1~", "ed-move-to-beg"},
    {"\\e[4~", "ed-move-to-end"}, {"\\e[1;5C", "em-next-word"}, {"\\e[1;5D", "ed-prev-word"},
};

// In columns, as many as a line has room for.
std::string listed(const std::vector<std::string> &words)
{
    const auto longest = std::ranges::max(words, {}, &std::string::size);
    const size_t room = terminal::line_width(stdout).value_or(80);
    const size_t width = std::min(longest.size() + 2, room);
    const size_t columns = room / width;
    const size_t most = std::min(words.size(), most_listed);
    std::string text;
    for (size_t i = 0; i < most; ++i)
        text += fmt::format("{:<{}}{}", words[i], width, (i + 1) % columns == 0 || i + 1 == most ? "\n" : "");
    return most == words.size() ? text : text + fmt::format("and {} more\n", words.size() - most);
}

// Reads one character. Returns -1, which ends the line, at the end of the input and for a signal. Octets that are no
// character of the locale are skipped.
int read_character(EditLine *editor, wchar_t *character)
{
    constexpr auto malformed = static_cast<size_t>(-1);
    constexpr auto incomplete = static_cast<size_t>(-2);
    std::mbstate_t state = {};
    size_t taken = incomplete;
    while (taken == incomplete || taken == malformed) {
        char octet = 0;
        if (!input_before_interruption(STDIN_FILENO) || read(STDIN_FILENO, &octet, 1) != 1)
            return -1;
        el_resize(editor); // the window may have changed its size while the program waited
        if (taken == malformed)
            state = {};
        taken = std::mbrtowc(character, &octet, 1, &state);
    }
    return 1;
}

// The beginning that all words share.
std::string_view common_beginning(const std::vector<std::string> &words)
{
    std::string_view common = words.front();
    for (const std::string &word : words)
        common = common.substr(0, static_cast<size_t>(std::ranges::mismatch(common, word).in1 - common.begin()));
    return common;
}

// Without a locale the terminal is assumed to use UTF-8: in the C locale, letters such as U+00E4 could not be typed.
EditLine *editor_of_terminal()
{
    if (!std::setlocale(LC_CTYPE, "") || MB_CUR_MAX == 1)
        std::setlocale(LC_CTYPE, "C.UTF-8");
    return el_init("kelctl", stdin, stdout, stderr);
}

// libedit takes a text that may be written to.
char *prompt_text(EditLine *)
{
    static char text[] = "kelctl> ";
    return text;
}

} // namespace

// The user's ~/.editrc is read last: it may change any key.
line_editor::line_editor(history_file &history, completer complete)
    : history_(history), complete_(std::move(complete)), lines_(history_init(), history_end),
      editor_(editor_of_terminal(), el_end)
{
    EditLine *editor = editor_.get();
    el_set(editor, EL_CLIENTDATA, this);
    el_set(editor, EL_PROMPT, prompt_text);
    el_set(editor, EL_GETCFN, read_character);
    el_set(editor, EL_EDITOR, "emacs");
    // The narrow el_set() would copy the two texts and never free them.
    el_wset(editor, EL_ADDFN, L"complete", L"complete the word before the cursor", complete_at_cursor);
    for (const auto &[key, command] : bindings)
        el_set(editor, EL_BIND, key, command, nullptr);

    HistEvent event;
    ::history(lines_.get(), &event, H_SETSIZE, longest_history);
    ::history(lines_.get(), &event, H_SETUNIQUE, 1);
    for (const std::string &line : history_.lines())
        ::history(lines_.get(), &event, H_ENTER, line.c_str());
    el_set(editor, EL_HIST, ::history, lines_.get());
    el_source(editor, nullptr);
}

std::optional<std::string> line_editor::next()
{
    if (interrupted() && !terminated())
        take_interruption();                // it was meant for the command before
    el_set(editor_.get(), EL_PREP_TERM, 1); // before the prompt shows, or a key right after it could get lost
    int length = 0;
    const char *typed = el_gets(editor_.get(), &length);
    if (terminated())
        return std::nullopt;
    if (interrupted()) { // what was typed is given up, as a shell does it
        terminal::write(stdout, "^C\n");
        take_interruption();
        return "";
    }
    if (!typed) {
        terminal::write(stdout, "\n"); // Ctrl-D leaves the cursor behind the prompt
        return std::nullopt;
    }
    std::string line(typed, static_cast<size_t>(length));
    line.erase(line.find_last_not_of(" \t\n") + 1); // completion leaves a blank at the end
    remember(line);
    return line;
}

// Skips empty lines, and a line equal to the one before.
void line_editor::remember(const std::string &line)
{
    HistEvent event;
    if (!line.empty() && ::history(lines_.get(), &event, H_ENTER, line.c_str()) == 1)
        history_.add(line);
}

// Called by libedit, which is C: no exception may pass through it.
unsigned char line_editor::complete_at_cursor(EditLine *editor, int key)
try {
    line_editor *self = nullptr;
    el_get(editor, EL_CLIENTDATA, &self);
    const LineInfo *line = el_line(editor);
    const std::string_view before(line->buffer, static_cast<size_t>(line->cursor - line->buffer));
    const replacements found = self->complete_(before);
    if (found.words.empty() && found.files)
        return _el_fn_complete(editor, key);
    return self->complete(found.words, before.substr(before.find_last_of(blanks) + 1));
} catch (const std::exception &) {
    return CC_ERROR;
}

// Inserts the beginning that all words share, with their case. Lists the words when that adds nothing.
unsigned char line_editor::complete(const std::vector<std::string> &words, std::string_view begun)
{
    if (words.empty())
        return CC_ERROR;
    std::string common(common_beginning(words));
    if (words.size() == 1)
        common += ' ';
    if (common.size() < begun.size() || common == begun) {
        terminal::write(stdout, "\n" + listed(words));
        return CC_REDISPLAY;
    }
    el_deletestr(editor_.get(), static_cast<int>(begun.size()));
    el_insertstr(editor_.get(), common.c_str());
    return CC_REFRESH;
}

} // namespace kelctl

// One walk over the words for parsing, and a lenient one for completion.
#include "options/program.h"

#include "terminal/folding.h"
#include "terminal/terminal.h"
#include "text/nearest.h"
#include "text/printable.h"

#include <fmt/core.h>

#include <algorithm>
#include <cstdio>

namespace options
{
namespace
{

template <typename Row> const Row *find(std::span<const Row> rows, std::string_view name)
{
    const auto found = std::ranges::find(rows, name, &Row::name);
    return found == rows.end() ? nullptr : &*found;
}

template <typename Row> const Row &known(std::string_view kind, std::span<const Row> rows, std::string_view name)
{
    if (const Row *row = find(rows, name))
        return *row;
    std::vector<std::string_view> names;
    std::ranges::transform(rows, std::back_inserter(names), &Row::name);
    throw wrong_request(fmt::format("unknown {} {}{}", kind, text::in_quotes(name), text::did_you_mean(name, names)));
}

// Takes an option and, from the words after it, its value.
const option &take_option(const program &of, std::span<const std::string> &words, request &asked)
{
    const std::string_view word = words.front();
    const std::string_view name = word.substr(0, word.find('='));
    const bool joined = name.size() != word.size();
    const option &row = known("option", of.options, name);
    words = words.subspan(1);
    if (row.value.empty()) {
        if (joined)
            throw wrong_request(fmt::format("{} takes no value", name));
        row.set(asked, "");
        return row;
    }
    std::string_view value = joined ? word.substr(name.size() + 1) : "";
    if (!joined && !words.empty()) {
        value = words.front();
        words = words.subspan(1);
    }
    if (value.empty())
        throw wrong_request(fmt::format("{} requires a value", name));
    row.set(asked, value);
    return row;
}

// What may follow some words, which may be wrong.
struct position {
    const command *chosen = nullptr;
    const option *waiting = nullptr; // for its value
    bool options_go_on = true;
};

position after(const program &of, std::span<const std::string> words)
{
    position at;
    for (const std::string_view word : words) {
        if (at.waiting) {
            at.waiting = nullptr;
        } else if (at.options_go_on && word.starts_with('-')) {
            at.options_go_on = word != "--";
            if (const option *row = find(of.options, word); row && !row->value.empty())
                at.waiting = row;
        } else {
            at.options_go_on = at.options_go_on && !of.runs_another;
            if (!at.chosen)
                at.chosen = find(of.commands, word);
        }
    }
    return at;
}

} // namespace

std::vector<std::string> parse(const program &of, std::span<const std::string> words, request &asked)
{
    if (!words.empty() && words.front() == "--complete") {
        asked.answer = completion_text(of, words.subspan(1));
        return {};
    }
    std::vector<std::string> others;
    std::vector<const option *> taken;
    bool options_go_on = true;
    while (!words.empty()) {
        const std::string &word = words.front();
        if (options_go_on && word.starts_with('-') && word != "--") {
            taken.push_back(&take_option(of, words, asked));
            continue;
        }
        words = words.subspan(1);
        if (options_go_on && word == "--") {
            options_go_on = false;
        } else if (!of.commands.empty() && !asked.command) {
            asked.command = &known("command", of.commands, word) - of.commands.data();
        } else {
            others.push_back(word);
            options_go_on = options_go_on && !of.runs_another;
        }
    }
    for (const option *one : taken)
        if (asked.command && !one->only.empty() && one->only != of.commands[*asked.command].name)
            throw wrong_request(fmt::format("{} is an option of \"{}\"", one->name, one->only));
    if (asked.help)
        asked.answer = help_text(of);
    else if (asked.version)
        asked.answer = fmt::format("{} {}\n", of.name, KEL_VERSION);
    return others;
}

bool is_printed(std::string_view program)
{
    const auto failure = terminal::output_failure();
    if (failure)
        terminal::write(stderr, fmt::format("{}: standard output cannot be written: {}\n", program, *failure));
    return !failure;
}

bool print(std::string_view program, std::string_view answer)
{
    terminal::write(stdout, answer);
    return is_printed(program);
}

std::string help_text(const program &of)
{
    std::string text = fmt::format("usage: {} {}\n\n{}\n", of.name, of.usage, of.about);
    const auto add = [&](std::string_view left, std::string_view right) {
        text += terminal::wrapped(fmt::format("  {:<20}", left), right);
    };
    if (!of.commands.empty())
        text += "\nCommands:\n";
    for (const command &row : of.commands)
        add(row.name, row.help);
    text += "\nOptions:\n";
    for (const option &row : of.options)
        add(fmt::format("{} {}", row.name, row.value),
            row.only.empty() ? std::string(row.help) : fmt::format("{} ({})", row.help, row.only));
    text += "\nExit status:\n";
    for (const auto &[status, means] : of.exit_statuses)
        add(status, means);
    return text;
}

std::string completion_text(const program &of, std::span<const std::string> words)
{
    const std::string begun = words.empty() ? "" : words.back();
    const position at = after(of, words.first(words.empty() ? 0 : words.size() - 1));
    std::string offered;
    const auto offer = [&](std::string_view name, std::string_view help) {
        if (name.starts_with(begun))
            offered += fmt::format("{}\t{}\n", name, help);
    };
    if (at.waiting)
        return at.waiting->value == "FILE" ? "@files\n" : "";
    if (at.options_go_on && begun.starts_with('-')) {
        for (const option &row : of.options)
            if (row.only.empty() || (at.chosen && row.only == at.chosen->name))
                offer(row.name, row.help);
        return offered;
    }
    if (of.commands.empty() || at.chosen)
        return "@files\n";
    for (const command &row : of.commands)
        offer(row.name, row.help);
    return offered;
}

} // namespace options

// The tables of commands and options, and the parser over them. Texts of help and of the manual page come from the same rows.
#include "kel-trace/language/request.h"

#include "kelctl/terminal/text.h"

#include <fmt/core.h>

#include <algorithm>
#include <charconv>

namespace kel_trace
{
namespace
{

constexpr command_row commands[] = {
    {"explain", view::explain, "show which operations reported failures and why, the newest last"},
    {"report", view::report, "show how often and how long operations and closed calls ran"},
    {"check", view::check, "check every record against what the library promises"},
};

constexpr meaning statuses[] = {
    {"0", "done; check found nothing"},
    {"1", "check found something; or what was asked for could not be written"},
    {"2", "the command line is wrong, or the recording cannot be read"},
};

void set_last(request &asked, std::string_view value)
{
    uint64_t number = 0;
    const auto [stop, error] = std::from_chars(value.data(), value.data() + value.size(), number);
    if (error != std::errc{} || stop != value.data() + value.size() || number == 0)
        throw wrong_request(fmt::format("--last: {} is not a number from 1", kelctl::in_quotes(value)));
    asked.last = number;
}

constexpr option_row options[] = {
    {"--last", "N", view::explain, "only the last N causes", set_last},
    {"--since", "TIME", view::explain,
     "only failures at or after TIME: \"2026-11-22 05:01:55.978190721\", or 05:01 on the recording's first day",
     [](request &asked, std::string_view value) { asked.since = value; }},
    {"--until", "TIME", view::explain, "only failures before TIME",
     [](request &asked, std::string_view value) { asked.until = value; }},
    {"--process", "ID", view::explain, "only failures of the process with this id or name",
     [](request &asked, std::string_view value) { asked.process = value; }},
    {"--chrome", "FILE", view::report, "also write a flame chart for Chromium's and Perfetto's viewers",
     [](request &asked, std::string_view value) { asked.chrome = value; }},
    {"--partial", "", view::check, "the recording may begin and end within operations",
     [](request &asked, std::string_view) { asked.partial = true; }},
    {"--single-thread",
     "",
     {},
     "read a recording without the context vtid as one thread",
     [](request &asked, std::string_view) { asked.single_thread = true; }},
    {"--json", "", {}, "print one JSON document", [](request &asked, std::string_view) { asked.json = true; }},
    {"--help", "", {}, "print this help", [](request &asked, std::string_view) { asked.help = true; }},
    {"--version", "", {}, "print the version", [](request &asked, std::string_view) { asked.version = true; }},
};

const command_row *find_command(std::string_view name)
{
    const auto found = std::ranges::find(commands, name, &command_row::name);
    return found == std::end(commands) ? nullptr : found;
}

const option_row *find_option(std::string_view name)
{
    const auto found = std::ranges::find(options, name, &option_row::name);
    return found == std::end(options) ? nullptr : found;
}

template <typename Rows> std::vector<std::string_view> names_of(const Rows &rows)
{
    std::vector<std::string_view> names;
    for (const auto &row : rows)
        names.push_back(row.name);
    return names;
}

std::string_view name_of(view view)
{
    return std::ranges::find(commands, view, &command_row::view)->name;
}

// Takes an option and, from the words after it, its value.
void take_option(request &asked, std::span<const std::string> &words)
{
    const std::string_view word = words.front();
    const std::string_view name = word.substr(0, word.find('='));
    const option_row *row = find_option(name);
    if (!row)
        throw wrong_request(
            fmt::format("unknown option {}{}", kelctl::in_quotes(name), kelctl::did_you_mean(name, names_of(options))));
    if (row->only && asked.view && row->only != asked.view)
        throw wrong_request(fmt::format("{} is an option of \"{}\"", name, name_of(*row->only)));
    words = words.subspan(1);
    if (row->value.empty()) {
        if (name.size() != word.size())
            throw wrong_request(fmt::format("{} takes no value", name));
        return row->set(asked, "");
    }
    if (name.size() != word.size())
        return row->set(asked, word.substr(name.size() + 1));
    if (words.empty())
        throw wrong_request(fmt::format("{} requires a value", name));
    row->set(asked, words.front());
    words = words.subspan(1);
}

} // namespace

std::span<const command_row> command_rows()
{
    return commands;
}

std::span<const meaning> exit_statuses()
{
    return statuses;
}

std::span<const option_row> option_rows()
{
    return options;
}

request parse_request(std::span<const std::string> words)
{
    request asked;
    bool options_end = false;
    while (!words.empty()) {
        const std::string &word = words.front();
        if (!options_end && word.starts_with("--") && word.size() > 2) {
            take_option(asked, words);
            continue;
        }
        words = words.subspan(1);
        if (!options_end && word == "--")
            options_end = true;
        else if (asked.view)
            asked.folders.push_back(word);
        else if (const command_row *row = find_command(word))
            asked.view = row->view;
        else
            throw wrong_request(fmt::format("unknown command {}{}", kelctl::in_quotes(word),
                                            kelctl::did_you_mean(word, names_of(commands))));
    }
    if (asked.help || asked.version)
        return asked;
    if (!asked.view)
        throw wrong_request("a command is required: explain, report or check");
    if (asked.folders.empty())
        throw wrong_request(fmt::format("{} requires the folder of a recording", name_of(*asked.view)));
    return asked;
}

std::string help_text()
{
    std::string text = "usage: kel-trace COMMAND [OPTION]... RECORDING...\n\nReads recordings of the library's events: "
                       "folders of \"lttng create --output\", of snapshots, or\nof a relay daemon.\n\nCommands:\n";
    for (const command_row &row : commands)
        text += kelctl::wrapped(fmt::format("  {:<20}", row.name), row.help);
    text += "\nOptions:\n";
    for (const option_row &row : options)
        text +=
            kelctl::wrapped(fmt::format("  {:<20}", fmt::format("{} {}", row.name, row.value)),
                            row.only ? fmt::format("{} ({})", row.help, name_of(*row.only)) : std::string(row.help));
    text += "\nExit status:\n";
    for (const auto &[status, means] : exit_statuses())
        text += kelctl::wrapped(fmt::format("  {:<20}", status), means);
    return text;
}

std::string completion_text(std::span<const std::string> words)
{
    const std::string begun = words.empty() ? "" : words.back();
    const auto before = words.first(words.empty() ? 0 : words.size() - 1);
    if (const option_row *row = before.empty() ? nullptr : find_option(before.back()); row && !row->value.empty())
        return row->value == "FILE" ? "@files\n" : "";

    const command_row *chosen = nullptr;
    for (const std::string &word : before)
        if (!chosen)
            chosen = find_command(word);
    std::string offered;
    const auto offer = [&](std::string_view name, std::string_view help) {
        if (name.starts_with(begun))
            offered += fmt::format("{}\t{}\n", name, help);
    };
    if (begun.starts_with('-')) {
        for (const option_row &row : options)
            if (!row.only || (chosen && row.only == chosen->view))
                offer(row.name, row.help);
        return offered;
    }
    if (chosen)
        return "@files\n";
    for (const command_row &row : commands)
        offer(row.name, row.help);
    return offered;
}

} // namespace kel_trace

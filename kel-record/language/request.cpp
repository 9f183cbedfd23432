// The table, and what is done by it.
#include "kel-record/language/request.h"

#include "kelctl/terminal/text.h"

#include <fmt/core.h>

#include <algorithm>

namespace kel_record
{
namespace
{

constexpr option_row options[] = {
    {"--output", "FILE", "where the calls are written to; PROGRAM.kel in the current folder unless given",
     [](request &asked, std::string_view value) { asked.output = value; }},
    {"--help", "", "print this help", [](request &asked, std::string_view) { asked.help = true; }},
    {"--version", "", "print the version", [](request &asked, std::string_view) { asked.version = true; }},
};

constexpr meaning statuses[] = {
    {"2", "the command line is wrong, or FILE cannot be written; nothing was run"},
    {"126", "the program cannot be run"},
    {"127", "there is no such program"},
    {"else", "that of the program"},
};

const option_row *find_option(std::string_view name)
{
    const auto found = std::ranges::find(options, name, &option_row::name);
    return found == std::end(options) ? nullptr : found;
}

// Takes an option and, from the words after it, its value.
void take_option(request &asked, std::span<const std::string> &words)
{
    const std::string_view word = words.front();
    const std::string_view name = word.substr(0, word.find('='));
    const bool joined = name.size() != word.size();
    const option_row *row = find_option(name);
    if (!row) {
        std::vector<std::string_view> names;
        std::ranges::transform(options, std::back_inserter(names), &option_row::name);
        throw wrong_request(
            fmt::format("there is no option {}{}", kelctl::in_quotes(name), kelctl::did_you_mean(name, names)));
    }
    if (row->value.empty() && joined)
        throw wrong_request(fmt::format("{} takes no value", name));
    words = words.subspan(1);
    if (row->value.empty())
        return row->set(asked, "");
    if (!joined && words.empty())
        throw wrong_request(fmt::format("{} needs a value", name));
    const std::string_view value = joined ? word.substr(name.size() + 1) : std::string_view(words.front());
    if (value.empty())
        throw wrong_request(fmt::format("{} needs a value", name));
    row->set(asked, value);
    if (!joined)
        words = words.subspan(1);
}

} // namespace

std::span<const option_row> option_rows()
{
    return options;
}

std::span<const meaning> exit_statuses()
{
    return statuses;
}

// The first word that is no option is the program: what follows is the program's.
request parse_request(std::span<const std::string> words)
{
    request asked;
    while (!words.empty() && words.front().starts_with('-') && words.front() != "--")
        take_option(asked, words);
    if (!words.empty() && words.front() == "--")
        words = words.subspan(1);
    asked.program = {words.begin(), words.end()};
    if (asked.program.empty() && !asked.help && !asked.version)
        throw wrong_request("a program to run is needed");
    return asked;
}

std::string help_text()
{
    const auto row = [](std::string_view left, std::string_view right) {
        return kelctl::wrapped(fmt::format("  {:<20}", left), right);
    };
    std::string text =
        "usage: kel-record [OPTION]... [--] PROGRAM [ARGUMENT]...\n\nRuns a control process, and writes its "
        "calls into libkel-core-ic as a script, which \"kelctl run\"\nrepeats.\n\nOptions:\n";
    for (const option_row &one : options)
        text += row(one.value.empty() ? std::string(one.name) : fmt::format("{} {}", one.name, one.value), one.help);
    text += "\nExit status:\n";
    for (const auto &[status, means] : statuses)
        text += row(status, means);
    return text;
}

std::string completion_text(std::span<const std::string> words)
{
    const std::string begun = words.empty() ? "" : words.back();
    const bool options_go_on = std::ranges::all_of(words.first(words.empty() ? 0 : words.size() - 1),
                                                   [](const std::string &word) { return word.starts_with("--"); });
    if (!begun.starts_with('-') || !options_go_on)
        return "@files\n";
    std::string offered;
    for (const option_row &one : options)
        if (one.name.starts_with(begun))
            offered += fmt::format("{}\t{}\n", one.name, one.help);
    return offered;
}

} // namespace kel_record

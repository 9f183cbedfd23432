// The layout of help. Its words are the rows' own: `.help`, `.details`, `.example`. The manual page lays the same ones
// out (documents/manual.cpp).
#include "kelctl/language/help.h"

#include "kelctl/language/command_line.h"
#include "kelctl/language/command_text.h"
#include "kelctl/values/quantity_messages.h"
#include "terminal/folding.h"

#include <fmt/core.h>

#include <algorithm>
#include <span>

namespace kelctl
{
namespace
{

constexpr size_t narrowest_left_column = 24;

constexpr std::string_view about = "Control process of a node: configures the IC side of its packet accelerator.";

constexpr meaning statuses[] = {
    {"0", "done"},
    {"1", "an operation failed, or was interrupted; standard error shows which and why"},
    {"2", "the command line, a script or the node file is wrong; nothing was started"},
};

constexpr meaning node_options[] = {
    {"--node NAME", "let the process that holds this node carry the command out; see \"nodes\""},
    {"--softnode PATH", "ask the process on the software accelerator that serves this socket"},
};

constexpr meaning program_options[] = {
    {"--version", "print the version"},
};

constexpr meaning variables[] = {
    {"MPID", "own MP id, unless the node file gives one"},
    {"NO_COLOR", "if not empty: no colours on a terminal"},
    {"XDG_RUNTIME_DIR", "where the sockets of nodes are, unless root holds them: those are in /run/kelctl"},
    {"XDG_STATE_HOME", "where the shell keeps its history"},
    {"KEL_SOFTNODE_FAULTS", "fault rules of the software accelerator, such as "
                            "\"ork_ebcom_pcep_path_create:3=-4\", or \"@FILE\" for a file of rules"},
    {"KEL_SOFTNODE_SOCKET", "socket at which a process on the software accelerator can be asked, with --softnode"},
};

std::string in_usage(const argument &argument)
{
    const bool needed = argument.required && !argument.is_flag();
    return needed ? with_value(argument) : fmt::format("[{}]", with_value(argument));
}

struct help_row {
    std::string left;
    std::string right;
};

// All with one left column, as wide as the widest of them; where that leaves too little room, in lines of their own.
std::string rows_text(const std::vector<help_row> &rows, size_t width)
{
    size_t left = narrowest_left_column;
    for (const help_row &row : rows)
        left = std::max(left, row.left.size() + 4);
    const bool apart = left > width / 2;
    std::string text;
    for (const help_row &row : rows)
        text += apart ? terminal::wrapped("  ", row.left, width) + terminal::wrapped("      ", row.right, width)
                      : terminal::wrapped(fmt::format("  {:<{}}", row.left, left - 2), row.right, width);
    return text;
}

std::string section(std::string_view heading, const std::vector<help_row> &rows, size_t width)
{
    return rows.empty() ? "" : fmt::format("\n{}:\n{}", heading, rows_text(rows, width));
}

void add_arguments(const std::vector<argument> &arguments, bool options, std::vector<help_row> &rows)
{
    for (const argument &one : arguments)
        if (one.is_option() == options)
            rows.push_back({with_value(one), argument_text(one)});
}

std::string argument_sections(const command &row, size_t width)
{
    std::vector<help_row> arguments;
    std::vector<help_row> options;
    add_arguments(row.arguments, false, arguments);
    add_arguments(row.arguments, true, options);
    add_arguments(shared_options(), true, options);
    return section("Arguments", arguments, width) + section("Options", options, width);
}

std::string function_section(const command &row, size_t width)
{
    std::vector<help_row> functions;
    for (const variant &one : row.variants)
        if (!one.function.empty())
            functions.push_back({std::string(one.word), fmt::format("{}()", one.function)});
    if (functions.size() > 1)
        return section("Functions of the library, by --variant", functions, width);
    return functions.empty() ? "" : fmt::format("\nFunction of the library:\n  {}\n", functions.front().right);
}

std::vector<help_row> rows_of(std::span<const meaning> meanings)
{
    std::vector<help_row> rows;
    for (const auto &[what, means] : meanings)
        rows.push_back({std::string(what), std::string(means)});
    return rows;
}

// Commands of which `wanted` is true.
template <typename Predicate>
std::vector<help_row> command_rows(const command_table &table, source where, Predicate wanted)
{
    std::vector<help_row> rows;
    for (const command &one : table.rows())
        if (one.allowed_in(where) && wanted(one))
            rows.push_back({std::string(one.name), std::string(one.help)});
    return rows;
}

std::vector<help_row> group_rows(const command_table &table, source where)
{
    std::vector<help_row> rows;
    for (const command_group &group : table.groups())
        if (!table.next_words(group.name, where).empty())
            rows.push_back({fmt::format("{} ...", group.name), std::string(group.help)});
    return rows;
}

// Broken between words only, and so that a system's shell takes the lines for one.
std::string example_text(const command &row, source where, size_t width)
{
    constexpr std::string_view continued = " \\";
    const std::string example = typed(row.example, where);
    std::vector<std::string> words;
    for (const word &one : words_of(example))
        words.push_back(example.substr(one.column - 1, one.end - one.column));
    std::string lines = terminal::wrapped("  ", words, width - continued.size());
    if (where == source::program)
        for (size_t end = 0; (end = lines.find('\n', end)) + 1 < lines.size(); end += continued.size() + 1)
            lines.insert(end, continued);
    return lines;
}

std::string overview(const command_table &table, source where, size_t width)
{
    const auto of_one_word = [](const command &row) { return row.name.find(' ') == std::string_view::npos; };
    std::vector<help_row> options;
    add_arguments(shared_options(), true, options);
    return section("Commands", command_rows(table, where, of_one_word), width) +
           section("Command groups", group_rows(table, where), width) + section("Common options", options, width);
}

} // namespace

std::span<const meaning> exit_statuses()
{
    return statuses;
}

std::span<const meaning> options_before_command()
{
    return node_options;
}

std::span<const meaning> options_without_command()
{
    return program_options;
}

std::span<const meaning> environment_variables()
{
    return variables;
}

std::string value_notations()
{
    return fmt::format(
        "Addresses are written 02:00:00:02:00:01, 02-00-00-02-00-01 or 0200.0002.0001, ports by name or number. "
        "Numbers may be hexadecimal after 0x. The units of rates are {}, those of sizes {}; a number without a unit is "
        "in {} or {}. Times require a unit: {}.",
        names_of(rate_units), names_of(size_units), rate_units[0].name, size_units[0].name, names_of(duration_units));
}

std::string with_value(const argument &argument)
{
    if (!argument.is_option())
        return argument.repeated ? argument.name + "..." : argument.name;
    return argument.is_flag() ? argument.name : fmt::format("{} {}", argument.name, argument.kind.placeholder);
}

std::string argument_text(const argument &argument)
{
    std::string text = argument.help;
    if (!argument.kind.allowed.empty())
        text += fmt::format("; {}", argument.kind.allowed);
    if (!argument.otherwise.empty())
        text += fmt::format(" (default {})", argument.otherwise);
    return text;
}

std::vector<std::string> usage_of(const command &row)
{
    std::vector<std::string> parts = {std::string(row.name)};
    for (const argument &one : row.arguments)
        parts.push_back(in_usage(one));
    return parts;
}

std::string help_hint(std::string_view words, source where)
{
    const std::string help = words.empty() && where != source::program ? "help" : "--help";
    return fmt::format("See \"{}\".\n", typed(words.empty() ? help : fmt::format("{} {}", words, help), where));
}

std::string help_of(const command &row, source where, size_t width)
{
    std::vector<std::string> usage = usage_of(row);
    usage.front() = typed(usage.front(), where);
    const std::string details = row.details.empty() ? "" : "\n" + terminal::filled(row.details, width);
    const std::string only = row.needs_accelerator ? "\nRequires the software accelerator.\n" : "";
    return terminal::wrapped("", row.help, width) + "\n" + terminal::wrapped("Usage: ", usage, width) +
           argument_sections(row, width) + details + only + function_section(row, width) + "\nExample:\n" +
           example_text(row, where, width);
}

// Of the program alone it is also how it is used before and beside commands; the shell has none of that.
std::string help_of_words(const command_table &table, std::string_view words, source where, size_t width)
{
    const auto listed = [width](std::string_view heading, std::span<const meaning> meanings) {
        return section(heading, rows_of(meanings), width);
    };
    if (words.empty() && where == source::program)
        return terminal::wrapped("", about, width) + "\n" +
               terminal::wrapped("Usage: ", "kelctl [--node NAME | --softnode PATH] COMMAND ...", width) +
               overview(table, where, width) + listed("Before a command", node_options) +
               listed("Instead of a command", program_options) + listed("Exit status", statuses) +
               listed("Environment", variables) + "\n" +
               terminal::wrapped("", "\"kelctl help COMMAND\" shows the arguments of a command.", width);
    if (words.empty())
        return overview(table, where, width).substr(1) + "\n" +
               terminal::wrapped("", "\"help COMMAND\" shows the arguments of a command, or the commands of a group.",
                                 width);
    const std::string beginning = fmt::format("{} ", words);
    const auto begins = [&](const command &row) { return row.name.starts_with(beginning); };
    return section("Commands", command_rows(table, where, begins), width).substr(1);
}

} // namespace kelctl

// Look-ups in a table of commands. The program's own rows are in commands/.
#include "kelctl/language/command.h"

#include <fmt/core.h>

#include <algorithm>
#include <utility>

namespace kelctl
{
namespace
{

// The first variant is the default.
argument variant_option(const std::vector<variant> &variants)
{
    std::vector<std::string> words;
    words.reserve(variants.size());
    for (const variant &one : variants)
        words.emplace_back(one.word);
    const std::string first = words.front();
    return {.name = "--variant",
            .kind = kind::choice(std::move(words)),
            .help = "library function to call",
            .required = false,
            .otherwise = first};
}

// What follows the words in a command's name; empty when it does not begin with them, or has no more. "ebcom pa" is no
// beginning of "ebcom path add": only whole words count.
std::string_view rest_after(std::string_view words, std::string_view name)
{
    if (words.empty())
        return name;
    const bool begins = name.size() > words.size() && name.starts_with(words) && name[words.size()] == ' ';
    return begins ? name.substr(words.size() + 1) : std::string_view{};
}

// Of two arguments that cannot be used together, what is wrong is said of the first. Arguments of a row are in one
// vector, so their addresses show which of two comes first; each pair is looked at once.
std::optional<mistake> mistake_with(const argument &one, const command &row,
                                    const std::function<bool(const argument &)> &written,
                                    const std::function<std::string_view(const argument &)> &name_of)
{
    const argument *instead = row.find_argument(one.instead);
    const argument *needed = row.find_argument(one.needs);
    const bool there = written(one);
    if (there && needed && !written(*needed))
        return mistake{&one, fmt::format("{} requires {}", name_of(one), name_of(*needed))};
    if (!instead) {
        const bool may_lack = !one.required || one.is_flag();
        return there || may_lack ? std::nullopt
                                 : std::optional(mistake{nullptr, fmt::format("{} is required", name_of(one))});
    }
    if (instead < &one || there != written(*instead))
        return std::nullopt;
    if (there)
        return mistake{instead, fmt::format("{} and {} cannot be used together", name_of(one), name_of(*instead))};
    return mistake{nullptr, fmt::format("{} or {} is required", name_of(one), name_of(*instead))};
}

} // namespace

bool command::allowed_in(source where) const
{
    return std::ranges::find(sources, where) != sources.end();
}

const argument *command::find_argument(std::string_view argument_name) const
{
    if (!argument_name.empty())
        for (const std::vector<argument> *list : {&arguments, &shared_options()})
            for (const argument &one : *list)
                if (one.name == argument_name)
                    return &one;
    return nullptr;
}

// A repeated argument is the last one, and takes every word from its own on.
const argument *command::argument_at(size_t index) const
{
    for (const argument &one : arguments)
        if (!one.is_option() && (one.repeated || index-- == 0))
            return &one;
    return nullptr;
}

const std::vector<argument> &shared_options()
{
    static const std::vector<argument> options = {
        {.name = "--json", .kind = kind::flag(), .help = "show results as JSON, one document per command"},
        {.name = "--trace", .kind = kind::flag(), .help = "print the library's trace records as they occur"},
        {.name = "--brief", .kind = kind::flag(), .help = "report failures without their trace records"},
        {.name = "--quiet", .kind = kind::flag(), .help = "print failures only"},
        {.name = "--all", .kind = kind::flag(), .help = "show all rows and problems, however many"},
        {.name = "--raw", .kind = kind::flag(), .help = "accept any value that the C interface accepts"},
        {.name = "--help", .kind = kind::flag(), .help = "print this help"},
    };
    return options;
}

// Rows say only what is special about them, so that they are short; whoever reads the table finds everything filled in.
command_table::command_table(std::vector<command> rows, std::vector<command_group> groups)
    : rows_(std::move(rows)), groups_(std::move(groups))
{
    for (command &row : rows_) {
        if (row.example.empty())
            row.example = row.name;
        if (row.offline)
            row.carried_out = executor::asker;
        for (argument &one : row.arguments)
            one.required = one.required && one.otherwise.empty() && one.needs.empty();
        if (row.variants.size() > 1)
            row.arguments.push_back(variant_option(row.variants));
    }
}

invocation invocation_of(const command &row)
{
    return {.row = &row, .chosen = &row.variants.front(), .given = {}};
}

void set_defaults(const command &row, arguments &given)
{
    for (const argument &one : row.arguments)
        if (!one.otherwise.empty() && !given.has(one.name))
            given.set(one.name, one.kind.read(one.otherwise));
}

void take_arguments(const command &row, const arguments &from, arguments &given)
{
    for (const argument &one : row.arguments)
        if (const argument_value *value = from.find(one.name))
            given.set(one.name, *value);
}

std::vector<mistake> mistakes_in(const command &row, const std::function<bool(const argument &)> &written,
                                 const std::function<std::string_view(const argument &)> &name_of)
{
    std::vector<mistake> mistakes;
    for (const argument &one : row.arguments)
        if (auto wrong = mistake_with(one, row, written, name_of))
            mistakes.push_back(std::move(*wrong));
    return mistakes;
}

const command *command_table::find(std::string_view name) const
{
    const auto found =
        std::find_if(rows_.begin(), rows_.end(), [name](const command &row) { return row.name == name; });
    return found == rows_.end() ? nullptr : &*found;
}

// A walk over the table for each question: it has fewer than a hundred rows, and a line has few words.
std::vector<std::string_view> command_table::next_words(std::string_view words, source where) const
{
    std::vector<std::string_view> found;
    for (const command &row : rows_) {
        const std::string_view rest = rest_after(words, row.name);
        const std::string_view next = rest.substr(0, rest.find(' '));
        if (!next.empty() && row.allowed_in(where) && std::find(found.begin(), found.end(), next) == found.end())
            found.push_back(next);
    }
    return found;
}

std::string_view command_table::help_on(std::string_view words) const
{
    if (const command *row = find(words))
        return row->help;
    for (const command_group &group : groups_)
        if (group.name == words)
            return group.help;
    return "";
}

} // namespace kelctl

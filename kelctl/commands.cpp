// The table as a whole: its families in order, what is added to every row, and look-ups.
#include "kelctl/commands.h"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>

namespace kelctl
{
namespace
{

constexpr command_group groups[] = {
    {"ebcom", "the EBCOM service: parameters, interface, paths, queues, counters"},
    {"pcep", "PCEPs, packet communication end points"},
    {"group", "multicast groups of PCEPs"},
    {"traffic", "virtual traffic of the software accelerator"},
    {"time", "virtual time of the software accelerator"},
    {"trace", "the library's trace messages"},
    {"node", "the software accelerator as a whole"},
    {"fault", "the software accelerator's faults"},
};

argument variant_option(const std::vector<variant> &variants)
{
    std::vector<std::string> words;
    words.reserve(variants.size());
    for (const variant &one : variants)
        words.emplace_back(one.word);
    const std::string first = words.front();
    return {.name = "--variant",
            .kind = choice(std::move(words)),
            .help = "which of the library's functions is called",
            .required = false,
            .otherwise = first};
}

std::vector<command> whole_table()
{
    std::vector<command> all;
    for (const auto &family :
         {node_commands, table_commands, session_commands, ebcom_commands, path_commands, pcep_commands,
          statistics_commands, traffic_commands, trace_commands, accelerator_commands, fault_commands, sweep_commands})
        std::ranges::move(family(), std::back_inserter(all));
    for (command &row : all)
        if (row.variants.size() > 1)
            row.arguments.push_back(variant_option(row.variants));
    return all;
}

// What follows the words in a command's name; empty when it does not begin with them, or has no more.
std::string_view rest_after(std::string_view words, std::string_view name)
{
    if (words.empty())
        return name;
    const bool begins = name.size() > words.size() && name.starts_with(words) && name[words.size()] == ' ';
    return begins ? name.substr(words.size() + 1) : std::string_view{};
}

} // namespace

bool command::allowed_in(place where) const
{
    return std::find(places.begin(), places.end(), where) != places.end();
}

const argument *command::find_argument(std::string_view argument_name) const
{
    for (const std::vector<argument> *list : {&arguments, &shared_options()})
        for (const argument &one : *list)
            if (one.name == argument_name)
                return &one;
    return nullptr;
}

const std::vector<command> &commands()
{
    static const std::vector<command> all = whole_table();
    return all;
}

std::span<const command_group> command_groups()
{
    return groups;
}

const std::vector<argument> &shared_options()
{
    static const std::vector<argument> options = {
        {.name = "--json", .kind = flag(), .help = "show results as JSON, one document for each command"},
        {.name = "--trace", .kind = flag(), .help = "print the library's trace records as they are fired"},
        {.name = "--help", .kind = flag(), .help = "print this help"},
    };
    return options;
}

const command *find_command(std::string_view name)
{
    for (const command &row : commands())
        if (row.name == name)
            return &row;
    return nullptr;
}

std::vector<std::string_view> next_words(std::string_view words, place where)
{
    std::vector<std::string_view> found;
    for (const command &row : commands()) {
        const std::string_view rest = rest_after(words, row.name);
        const std::string_view next = rest.substr(0, rest.find(' '));
        if (!next.empty() && row.allowed_in(where) && std::find(found.begin(), found.end(), next) == found.end())
            found.push_back(next);
    }
    return found;
}

} // namespace kelctl

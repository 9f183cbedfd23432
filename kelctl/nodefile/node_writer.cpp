// The words of values, as TOML. In the order of the tables, whatever the order of the lines.
#include "kelctl/nodefile/node_writer.h"

#include "kelctl/language/command_text.h"
#include "kelctl/nodefile/node_keys.h"
#include "kelctl/values/whole_number.h"
#include "text/wording.h"

#include <fmt/core.h>

#include <algorithm>

namespace kelctl
{
namespace
{

// As a person would write it: numbers without quotes.
std::string toml_of(const argument_kind &kind, const argument_value &value)
{
    if (const auto *numbers = std::get_if<std::vector<uint32_t>>(&value))
        return fmt::format("[{}]", text::joined(*numbers, ", "));
    const std::string word = word_of(kind, value);
    return parse_whole_number(word) ? word : fmt::format("\"{}\"", word); // addresses, ports, quantities
}

// The element has all arguments of the table's line: the group's id.
bool belongs_to(const invocation &element, const invocation &line)
{
    return std::ranges::all_of(line.row->arguments, [&](const argument &one) {
        return *element.given.find(one.name) == *line.given.find(one.name);
    });
}

std::string elements_of(const node_key &key, const invocation &line, const std::vector<invocation> &lines)
{
    std::vector<std::string> elements;
    for (const invocation &one : lines)
        if (one.row->name == key.each && belongs_to(one, line))
            elements.push_back(toml_of(one.row->find_argument(key.argument)->kind, *one.given.find(key.argument)));
    return fmt::format("[{}]", text::joined(elements, ", "));
}

// "vlan = 100" with its line end; empty for a default.
std::string line_of(const node_key &key, const invocation &line, const std::vector<invocation> &lines)
{
    if (!key.each.empty())
        return fmt::format("{} = {}\n", key.name, elements_of(key, line, lines));
    const argument &meant = *line.row->find_argument(key.argument);
    const argument_value *value = line.given.find(key.argument);
    if (!value || is_default(meant, *value))
        return "";
    return fmt::format("{} = {}\n", key.name, toml_of(meant.kind, *value));
}

} // namespace

std::string node_file_of(const std::vector<invocation> &lines)
{
    std::string text;
    for (const node_table &table : node_tables())
        for (const invocation &line : lines) {
            if (line.row->name != table.row)
                continue;
            text += fmt::format("{}{}\n", text.empty() ? "" : "\n", table.heading());
            for (const node_key &key : table.keys)
                text += line_of(key, line, lines);
        }
    return text;
}

} // namespace kelctl

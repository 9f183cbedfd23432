// Typed access to TOML tables, and the wording of what is wrong with a value.
#include "kelctl/nodefile/table_reader.h"

#include "kelctl/terminal/text.h"

#include <fmt/core.h>

#include <algorithm>

namespace kelctl
{
namespace
{

// Indexed by toml::node_type.
constexpr std::string_view type_names[] = {"nothing",    "a table",   "an array", "a text",        "a whole number",
                                           "a fraction", "a boolean", "a date",   "a time of day", "a date and time"};

std::string_view type_name(const toml::node &node)
{
    return type_names[static_cast<size_t>(node.type())];
}

uint32_t least(const range &allowed)
{
    return static_cast<uint32_t>(allowed.min);
}

} // namespace

position position_of(const toml::source_region &region)
{
    return {std::max<uint32_t>(region.begin.line, 1), std::max<uint32_t>(region.begin.column, 1)};
}

table_reader::table_reader(const toml::table &table, std::string_view name, problem_list &problems)
    : table_(&table), name_(name), problems_(&problems)
{
}

void table_reader::allow_only(std::span<const std::string_view> known)
{
    for (const auto &[key, value] : *table_) {
        if (std::find(known.begin(), known.end(), key.str()) != known.end())
            continue;
        misspelt_.push_back(nearest(key.str(), known));
        const std::string where = name_.empty() ? "" : fmt::format(" in {}", name_);
        note(position_of(key.source()), fmt::format("unknown {} {}{}{}", value.is_table() ? "table" : "key",
                                                    in_quotes(key.str()), where, did_you_mean(key.str(), known)));
    }
}

bool table_reader::has(std::string_view key) const
{
    return table_->contains(key);
}

position table_reader::at(std::string_view key) const
{
    const toml::node *node = table_->get(key);
    return position_of(node ? node->source() : table_->source());
}

position table_reader::at() const
{
    return position_of(table_->source());
}

const toml::node *table_reader::required(std::string_view key) const
{
    const toml::node *node = table_->get(key);
    if (!node && std::find(misspelt_.begin(), misspelt_.end(), key) == misspelt_.end())
        note(at(), name_.empty() ? fmt::format("[{}] is missing", key) : fmt::format("{}: {} is missing", name_, key));
    return node;
}

uint32_t table_reader::number(std::string_view key, const range &allowed) const
{
    return sound_number(key, allowed).value_or(least(allowed));
}

std::optional<uint32_t> table_reader::sound_number(std::string_view key, const range &allowed) const
{
    const toml::node *node = required(key);
    return node ? number_of(key, *node, allowed) : std::nullopt;
}

uint32_t table_reader::quantity(std::string_view key, std::span<const unit> units, const range &allowed) const
{
    const toml::node *node = required(key);
    if (!node)
        return least(allowed);
    if (!node->is_string())
        return number_of(key, *node, allowed).value_or(least(allowed));
    return static_cast<uint32_t>(parsed(key, *node, units, allowed).value_or(least(allowed)));
}

uint64_t table_reader::duration(std::string_view key, const range &allowed) const
{
    const toml::node *node = required(key);
    if (node && node->is_string())
        return parsed(key, *node, duration_units, allowed).value_or(least(allowed));
    if (node)
        note_type(key, *node, "a text such as \"250 ms\"");
    return least(allowed);
}

std::optional<std::string> table_reader::text(std::string_view key) const
{
    const toml::node *node = required(key);
    if (!node)
        return std::nullopt;
    if (const auto *text = node->as_string())
        return text->get();
    note_type(key, *node, "a text");
    return std::nullopt;
}

mac_address table_reader::station(std::string_view key) const
{
    const auto written = text(key);
    if (!written)
        return {};
    const auto mac = parse_mac_address(*written);
    if (!mac)
        note(at(key), fmt::format("{}: {}", key, no_mac_address(*written)));
    else if (!is_station(*mac))
        note(at(key), fmt::format("{}: {} is not the address of one station", key, to_text(*mac)));
    return mac.value_or(mac_address{});
}

std::vector<uint32_t> table_reader::numbers(std::string_view key, size_t count, const range &allowed) const
{
    std::vector<uint32_t> values(count, least(allowed));
    const toml::node *node = required(key);
    if (!node)
        return values;
    const toml::array *array = node->as_array();
    if (!array || array->size() != count) {
        note(position_of(node->source()), fmt::format("{}: expected an array of {} whole numbers", key, count));
        return values;
    }
    for (size_t i = 0; i < count; ++i)
        values[i] = number_of(key, *array->get(i), allowed).value_or(least(allowed));
    return values;
}

std::vector<placed_number> table_reader::list(std::string_view key, const range &allowed) const
{
    std::vector<placed_number> values;
    const toml::node *node = required(key);
    if (!node)
        return values;
    const toml::array *array = node->as_array();
    if (!array) {
        note_type(key, *node, "an array of whole numbers");
        return values;
    }
    for (const toml::node &element : *array)
        if (const auto value = number_of(key, element, allowed))
            values.push_back({*value, position_of(element.source())});
    return values;
}

std::optional<table_reader> table_reader::table(std::string_view key) const
{
    const toml::node *node = required(key);
    if (!node)
        return std::nullopt;
    if (const toml::table *found = node->as_table())
        return table_reader(*found, name_.empty() ? fmt::format("[{}]", key) : std::string(key), *problems_);
    note_type(key, *node, "a table");
    return std::nullopt;
}

std::vector<table_reader> table_reader::tables(std::string_view key) const
{
    std::vector<table_reader> found;
    const toml::node *node = table_->get(key);
    if (!node)
        return found;
    const toml::array *array = node->as_array();
    if (!array) {
        note(position_of(node->source()), fmt::format("{0}: write [[{0}]], once for each {0}", key));
        return found;
    }
    for (const toml::node &element : *array) {
        if (const toml::table *table = element.as_table())
            found.emplace_back(*table, fmt::format("[[{}]]", key), *problems_);
        else
            note_type(key, element, "a table");
    }
    return found;
}

void table_reader::note(position at, std::string message) const
{
    problems_->push_back({at, std::move(message)});
}

std::optional<uint32_t> table_reader::number_of(std::string_view key, const toml::node &node,
                                                const range &allowed) const
{
    const auto *number = node.as_integer();
    if (!number) {
        note_type(key, node, "a whole number");
        return std::nullopt;
    }
    // Negative numbers become larger than any range and are told by what stands in the file.
    if (number->get() >= 0) {
        const auto value = checked(key, node, static_cast<uint64_t>(number->get()), allowed);
        return value ? std::optional(static_cast<uint32_t>(*value)) : std::nullopt;
    }
    note(position_of(node.source()), fmt::format("{}: {}", key, outside(std::to_string(number->get()), allowed)));
    return std::nullopt;
}

std::optional<uint64_t> table_reader::parsed(std::string_view key, const toml::node &node, std::span<const unit> units,
                                             const range &allowed) const
{
    const std::string &text = node.as_string()->get();
    if (const auto value = parse_quantity(text, units))
        return checked(key, node, *value, allowed);
    note(position_of(node.source()), fmt::format("{}: {}", key, no_quantity(text, units)));
    return std::nullopt;
}

std::optional<uint64_t> table_reader::checked(std::string_view key, const toml::node &node, uint64_t value,
                                              const range &allowed) const
{
    if (value >= static_cast<uint64_t>(allowed.min) && value <= static_cast<uint64_t>(allowed.max))
        return value;
    const auto *text = node.as_string();
    note(position_of(node.source()),
         fmt::format("{}: {}", key, outside(text ? in_quotes(text->get()) : std::to_string(value), allowed)));
    return std::nullopt;
}

void table_reader::note_type(std::string_view key, const toml::node &node, std::string_view expected) const
{
    note(position_of(node.source()), fmt::format("{}: expected {}, not {}", key, expected, type_name(node)));
}

} // namespace kelctl

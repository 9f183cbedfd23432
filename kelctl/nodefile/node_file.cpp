// From TOML to lines. A value is turned into the word that a person would type, and read by the argument's kind, so
// that node files and the command line accept the same values with the same messages.
//
// Errors do not end the reading: a file's author sees all that is wrong with it at once. What is checked here concerns
// one table; rules across tables are node_rules.cpp.
#include "kelctl/nodefile/node_file.h"

#include "kelctl/nodefile/toml.h"
#include "kelctl/values/file_text.h"
#include "text/nearest.h"
#include "text/printable.h"
#include "text/wording.h"

#include <fmt/core.h>

#include <algorithm>
#include <iterator>
#include <optional>
#include <utility>

namespace kelctl
{
namespace
{

// The parser limits how deep values nest, but not how many dots a key has, and each dot is a level of recursion.
constexpr size_t most_dots_in_a_line = 128;

// Indexed by toml::node_type.
constexpr std::string_view type_names[] = {"nothing",    "a table",   "an array", "a string",      "a whole number",
                                           "a fraction", "a boolean", "a date",   "a time of day", "a date and time"};

position position_of(const toml::source_region &region)
{
    return {std::max<uint32_t>(region.begin.line, 1), std::max<uint32_t>(region.begin.column, 1)};
}

position position_of(const toml::node &value)
{
    return position_of(value.source());
}

// A number keeps its base, so that messages show what is in the file.
std::optional<std::string> word_of(const toml::node &value)
{
    if (const auto *text = value.as_string())
        return text->get();
    const auto *number = value.as_integer();
    if (!number)
        return std::nullopt;
    const bool hexadecimal = (number->flags() & toml::value_flags::format_as_hexadecimal) != toml::value_flags::none;
    return hexadecimal ? fmt::format("0x{:X}", number->get()) : std::to_string(number->get());
}

// The word that a person would type for the value; "1,2" for an array. None for a type that no argument has.
std::optional<std::string> typed(const toml::node &value)
{
    const toml::array *list = value.as_array();
    if (!list || list->size() < 2)
        return word_of(value);
    std::vector<std::string> words;
    for (const toml::node &element : *list)
        if (auto word = word_of(element))
            words.push_back(std::move(*word));
        else
            return std::nullopt;
    return text::joined(words, ",");
}

// One walk over the tables that there can be, not over those of the file: so the lines come in the order of a bring-up
// however the file is ordered.
class document_reader
{
public:
    document_reader(const command_table &rows, node_file_read &read) : rows_(rows), read_(read)
    {
    }

    void read(const toml::table &document)
    {
        check_tables(document);
        for (const node_table &table : node_tables())
            read_tables(table, written_tables(table, document));
    }

private:
    void check_tables(const toml::table &document)
    {
        std::vector<std::string_view> names;
        for (const node_table &table : node_tables())
            names.push_back(table.name);
        for (const auto &[key, value] : document)
            if (std::ranges::find(names, key.str()) == names.end())
                refuse(key, key.str(), value, "", names);
        for (const node_table &table : node_tables())
            if (table.times == occurrence::once && !document.contains(table.name) && !is_misspelt(table.name))
                report(document, fmt::format("{} is required", table.heading()));
    }

    void report(const toml::node &value, std::string message)
    {
        read_.problems.push_back({position_of(value), std::move(message)});
    }

    void report_type(const toml::node &value, std::string_view key, std::string_view expected)
    {
        report(value, fmt::format("{}: expected {}, not {}", key, expected, type_names[size_t(value.type())]));
    }

    // Remembers the name that was probably meant, so that it is not reported as missing, too.
    void refuse(const toml::key &key, std::string_view name, const toml::node &value, std::string_view where,
                std::span<const std::string_view> known)
    {
        misspelt_.push_back(text::nearest(name, known));
        read_.problems.push_back(
            {position_of(key.source()), fmt::format("unknown {} {}{}{}", value.is_table() ? "table" : "key",
                                                    text::in_quotes(name), where, text::did_you_mean(name, known))});
    }

    bool is_misspelt(std::string_view name) const
    {
        return std::ranges::find(misspelt_, name) != misspelt_.end();
    }

    // [path] instead of [[path]] is a mistake that TOML allows: it is reported with the notation that is meant.
    std::vector<const toml::table *> written_tables(const node_table &table, const toml::table &document)
    {
        std::vector<const toml::table *> written;
        const toml::node *value = document.get(table.name);
        if (!value)
            return written;
        const toml::array *array = value->as_array();
        if (table.times != occurrence::any)
            add_table(table, *value, written);
        else if (!array)
            report(*value, fmt::format("{0}: use [[{0}]], once for each {0}", table.name));
        else
            for (const toml::node &element : *array)
                add_table(table, element, written);
        return written;
    }

    // An optional table without keys is no command. A required one is, with its missing keys among the problems.
    void add_table(const node_table &table, const toml::node &value, std::vector<const toml::table *> &written)
    {
        const toml::table *one = value.as_table();
        if (!one)
            report_type(value, table.name, "a table");
        else if (!one->empty() || table.times != occurrence::at_most_once)
            written.push_back(one);
    }

    void read_tables(const node_table &table, const std::vector<const toml::table *> &written)
    {
        const command &row = *rows_.find(table.row);
        if (!written.empty() && !table.before.empty())
            add_once(table.before);
        for (const toml::table *one : written)
            read_table(table, row, *one);
        std::ranges::move(std::exchange(elements_, {}), std::back_inserter(read_.lines));
        for (const std::string_view name : table.after)
            add_once(name);
    }

    // Several tables may need the same service, as [[pcep]] and [[multicast]] do.
    void add_once(std::string_view name)
    {
        const auto is_it = [name](const positioned_line &line) { return line.asked.row->name == name; };
        if (std::ranges::none_of(read_.lines, is_it))
            read_.lines.push_back({invocation_of(*rows_.find(name)), nullptr, {}});
    }

    // Elements of arrays (a group's members) become lines of their own that also get the table's arguments (the group's
    // id). They wait in elements_, because a group can have a member only once all PCEPs exist.
    void read_table(const node_table &table, const command &row, const toml::table &written)
    {
        positioned_line line = {invocation_of(row), &table, position_of(written)};
        line.asked.line = line.at.line;
        const size_t problems_before = read_.problems.size();
        const size_t elements_before = elements_.size();
        misspelt_.clear();
        line.keys.reserve(table.keys.size());
        read_keys(written, "", line);
        for (size_t i = elements_before; i < elements_.size(); ++i)
            take_arguments(*elements_[i].asked.row, line.asked.given, elements_[i].asked.given);
        check_presence(line);
        line.sound = read_.problems.size() == problems_before;
        if (line.sound)
            check_together(line);
        read_.lines.push_back(std::move(line));
    }

    // The keys of a table, or of a table in it, whose names begin with `lead`: "shaping.".
    void read_keys(const toml::table &keys, const std::string &lead, positioned_line &line)
    {
        for (const auto &[key, value] : keys) {
            const std::string name = lead + std::string(key.str());
            if (const node_key *known = key.str().find('.') == key.str().npos ? line.table->find(name) : nullptr)
                known->each.empty() ? take(*known, value, line) : take_elements(*known, value, line);
            else if (std::ranges::none_of(line.table->keys,
                                          [&](const node_key &one) { return one.name.starts_with(name + "."); }))
                refuse_key(key, name, value, line);
            else if (const toml::table *inner = value.as_table())
                read_keys(*inner, name + ".", line);
            else
                report_type(value, name, "a table");
        }
    }

    void refuse_key(const toml::key &key, std::string_view name, const toml::node &value, const positioned_line &line)
    {
        std::vector<std::string_view> known;
        for (const node_key &one : line.table->keys)
            known.push_back(one.name);
        refuse(key, name, value, fmt::format(" in {}", line.table->heading()), known);
    }

    // The key is noted even when its value is wrong: it is then not reported as missing, too.
    void take(const node_key &key, const toml::node &value, positioned_line &line)
    {
        line.keys.push_back({&key, position_of(value)});
        const argument &meant = *line.asked.row->find_argument(key.argument);
        const auto text = typed(value);
        line.sound = text.has_value();
        if (!text)
            return report_type(value, key.name, "a number or a string");
        try {
            line.asked.given.set(meant.name, meant.kind.read(*text));
        } catch (const wrong_value &wrong) {
            line.sound = false;
            report(value, fmt::format("{}: {}", key.name, wrong.what()));
        }
    }

    void take_elements(const node_key &key, const toml::node &value, const positioned_line &line)
    {
        const toml::array *list = value.as_array();
        if (!list)
            return report_type(value, key.name, "an array");
        const command &row = *rows_.find(key.each);
        for (const toml::node &element : *list) {
            elements_.push_back({invocation_of(row), line.table, line.at});
            elements_.back().asked.line = position_of(element).line;
            take(key, element, elements_.back());
        }
    }

    // A key whose value is wrong, or whose name is misspelt, does not count as missing.
    void check_presence(const positioned_line &line)
    {
        const auto name_of = [&](const argument &one) { return line.table->key_of(one.name); };
        const auto is_written = [&](const argument &one) {
            const auto means_it = [&](const positioned_line::positioned_key &written) {
                return written.key->argument == one.name;
            };
            return std::ranges::any_of(line.keys, means_it) || is_misspelt(name_of(one));
        };
        for (const mistake &one : mistakes_in(*line.asked.row, is_written, name_of))
            read_.problems.push_back(one.at ? problem{line.at_of(one.at->name), one.message}
                                            : problem{line.at, line.table->heading() + ": " + one.message});
    }

    void check_together(positioned_line &line)
    {
        const command &row = *line.asked.row;
        set_defaults(row, line.asked.given);
        if (const auto wrong = row.check ? row.check(line.asked.given) : std::nullopt) {
            read_.problems.push_back(line.wrong(wrong->argument, wrong->what));
            line.sound = false;
        }
    }

    const command_table &rows_;
    node_file_read &read_;
    std::vector<std::string_view> misspelt_; // known names that unknown ones come close to
    std::vector<positioned_line> elements_;  // lines that come after those of all tables of a name: groups' members
};

// Without the name of the parser's setting that a document exceeds: it means nothing to the file's author.
std::string parser_message(std::string_view description)
{
    return text::printable(description.substr(0, description.find(" (TOML_")));
}

// The first line that must not reach the parser, if there is one.
std::optional<problem> hostile_line(std::string_view text)
{
    uint32_t line = 1;
    size_t dots = 0;
    for (const char c : text) {
        if (c == '.' && ++dots > most_dots_in_a_line)
            return problem{{line, 1}, fmt::format("the line has more than {} dots", most_dots_in_a_line)};
        if (c != '\n')
            continue;
        ++line;
        dots = 0;
    }
    return std::nullopt;
}

} // namespace

position positioned_line::at_of(std::string_view argument) const
{
    const auto found = std::ranges::find(keys, argument, [](const positioned_key &one) { return one.key->argument; });
    return found == keys.end() ? at : found->at;
}

problem positioned_line::wrong(std::string_view argument, std::string_view what) const
{
    return {at_of(argument), fmt::format("{}: {}", table->key_of(argument), what)};
}

node_file_read read_node_file(const std::string &file, const command_table &rows)
{
    problem_list problems;
    const std::string text = text_of_file(file, problems);
    return problems.empty() ? parse_node_file(text, rows)
                            : node_file_read{.lines = {}, .problems = std::move(problems)};
}

// The parser stops at its first error, so a text that is no TOML has one problem.
node_file_read parse_node_file(std::string_view text, const command_table &rows)
{
    node_file_read read;
    if (auto hostile = hostile_line(text)) {
        read.problems.push_back(std::move(*hostile));
        return read;
    }
    try {
        document_reader(rows, read).read(toml::parse(text));
    } catch (const toml::parse_error &error) {
        read.problems.push_back({position_of(error.source()), parser_message(error.description())});
    }
    return read;
}

} // namespace kelctl

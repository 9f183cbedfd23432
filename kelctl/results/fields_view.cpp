// Aligning names, values and columns. No command lays anything out by itself.
#include "kelctl/results/fields_view.h"

#include "notation/json.h"
#include "terminal/folding.h"
#include "terminal/terminal.h"
#include "text/quantity.h"
#include "text/wording.h"

#include <fmt/core.h>

#include <algorithm>
#include <iterator>
#include <sstream>
#include <utility>
#include <vector>

namespace kelctl
{
namespace
{

// Keys of documents have underscores; people read blanks.
std::string title(std::string name)
{
    std::replace(name.begin(), name.end(), '_', ' ');
    return name;
}

bool is_table(const fields &value)
{
    return value.is_array() && !value.empty() && value[0].is_object();
}

// A value in one line. Documents within values do not occur in tables: they are shown as JSON.
std::string cell(const fields &value)
{
    switch (value.holds()) {
    case notation::kind::null:
        return "-";
    case notation::kind::text:
        return value.text();
    case notation::kind::boolean:
        return value.boolean() ? "yes" : "no";
    case notation::kind::array:
        break;
    default:
        return notation::to_json(value);
    }
    std::vector<std::string> parts;
    for (const fields &part : value)
        parts.push_back(cell(part));
    return parts.empty() ? "none" : text::joined(parts, ", ");
}

// A column: the rows' values of one name. Numbers are aligned to the right.
struct column {
    std::string name;
    std::vector<std::string> title; // its lines
    bool numbers = true;
    size_t width = 0;
};

size_t longest(const std::vector<std::string> &texts)
{
    size_t length = 0;
    for (const std::string &text : texts)
        length = std::max(length, text.size());
    return length;
}

std::string value_in(const fields &row, const std::string &name)
{
    const fields *value = row.find(name);
    return value ? cell(*value) : "-";
}

bool is_number_or_none(const fields *value)
{
    return !value || value->is_number() || value->is_null();
}

column column_of(const std::string &name, std::vector<std::string> title, const fields &rows)
{
    column made = {.name = name, .title = std::move(title)};
    made.width = longest(made.title);
    for (const fields &row : rows) {
        made.numbers = made.numbers && is_number_or_none(row.find(name));
        made.width = std::max(made.width, value_in(row, name).size());
    }
    return made;
}

// The same with its title broken into lines, as narrow as the values and the title's longest word allow. Titles are
// mostly longer than the numbers below them, so this saves most of the width.
column narrowed(const column &wide, const fields &rows)
{
    std::istringstream title(wide.title.front());
    const std::vector<std::string> words{std::istream_iterator<std::string>(title), {}};
    const size_t width = column_of(wide.name, words, rows).width;
    std::vector<std::string> lines;
    for (const std::string &word : words)
        if (!lines.empty() && lines.back().size() + 1 + word.size() <= width)
            lines.back() += " " + word;
        else
            lines.push_back(word);
    return column_of(wide.name, std::move(lines), rows);
}

size_t width_of(const std::vector<column> &columns)
{
    size_t width = 0;
    for (const column &one : columns)
        width += (width == 0 ? 0 : 2) + one.width;
    return width;
}

// A line of the table: `text_of` returns the text of each column.
template <typename Text> std::string table_line(const std::vector<column> &columns, Text text_of)
{
    std::string line;
    for (const column &one : columns) {
        line += &one == columns.data() ? "" : "  ";
        line += fmt::format(fmt::runtime(one.numbers ? "{:>{}}" : "{:<{}}"), text_of(one), one.width);
    }
    return line.substr(0, line.find_last_not_of(' ') + 1);
}

// Titles are aligned at the bottom, next to the values.
std::string title_line(const column &one, size_t lines_below)
{
    return lines_below < one.title.size() ? one.title[one.title.size() - 1 - lines_below] : "";
}

std::string head_of(const std::vector<column> &columns, const page &page)
{
    size_t lines = 0;
    for (const column &one : columns)
        lines = std::max(lines, one.title.size());
    std::string head;
    for (size_t below = lines; below-- > 0;) {
        const std::string line = table_line(columns, [below](const column &one) { return title_line(one, below); });
        head += line_on(page, page.paint(terminal::colour::heading, line));
    }
    return head;
}

std::string part_of_table(const std::vector<column> &columns, const fields &rows, const page &page)
{
    std::string text = head_of(columns, page);
    for (const fields &row : rows)
        text += line_on(page, table_line(columns, [&row](const column &one) { return value_in(row, one.name); }));
    return text;
}

// The first row says which columns there are: rows of a list have the same names. A part has two columns at least, even
// if they are too wide: the first alone shows nothing new.
std::string table_text(const fields &rows, const page &page)
{
    std::vector<column> columns;
    for (const auto &[name, value] : rows[0].members())
        columns.push_back(column_of(name, {title(name)}, rows));
    if (width_of(columns) > page.width.value_or(terminal::usual_width))
        for (column &one : columns)
            one = narrowed(one, rows);

    std::string text;
    std::vector<column> part = {columns.front()};
    for (size_t next = 1; next < columns.size(); ++next) {
        part.push_back(columns[next]);
        if (part.size() == 2 || width_of(part) <= page.width.value_or(width_of(part)))
            continue;
        part.pop_back();
        text += part_of_table(part, rows, page) + "\n";
        part = {columns.front(), columns[next]};
    }
    return text + part_of_table(part, rows, page);
}

size_t widest_title(const fields &shown)
{
    size_t width = 0;
    for (const auto &[name, value] : shown.members())
        if (!is_table(value) && !value.is_object())
            width = std::max(width, title(name).size());
    return width;
}

} // namespace

page page_for(std::FILE *stream)
{
    return {.paint = terminal::painter_for(stream), .width = terminal::line_width(stream)};
}

std::string line_on(const page &page, std::string_view line)
{
    return page.width ? terminal::folded(line, *page.width) : fmt::format("{}\n", line);
}

std::string lines_on(const page &page, std::string_view text)
{
    std::string lines;
    for (; !text.empty(); text.remove_prefix(std::min(text.find('\n'), text.size() - 1) + 1))
        lines += line_on(page, text.substr(0, text.find('\n')));
    return lines;
}

// Tables and values that have members are set apart by an empty line, and do not count for the width of the names.
std::string fields_text(const fields &shown, const page &page)
{
    if (shown.holds() == notation::kind::text)
        return shown.text().empty() || shown.text().ends_with('\n') ? shown.text() : shown.text() + "\n";
    std::string text;
    const size_t width = widest_title(shown);
    for (const auto &[name, value] : shown.members()) {
        const bool apart = !text.empty() && (is_table(value) || value.is_object());
        text += apart ? "\n" : "";
        const std::string title_shown = page.paint(terminal::colour::heading, title(name));
        if (is_table(value))
            text += table_text(value, page);
        else if (value.is_object())
            text += fmt::format("{}\n{}", title_shown, fields_text(value, page));
        else
            text += line_on(page, fmt::format("{}{:{}}  {}", title_shown, "", width - title(name).size(), cell(value)));
    }
    return text;
}

std::string more_line(size_t count, std::string_view more, const page &page)
{
    if (count == 0)
        return "";
    return line_on(page, fmt::format(fmt::runtime(more), text::with_separators(count)) + "; --all shows them");
}

// Rows are counted, not lines: a table that is too wide continues further down with the same rows.
std::string list_text(std::string_view name, const fields &rows, const page &page)
{
    const size_t most = std::min(rows.size(), page.most_rows.value_or(rows.size()));
    fields shown = fields::object();
    shown[name] = fields::array();
    for (size_t i = 0; i < most; ++i)
        shown[name].push_back(rows[i]);
    return fields_text(shown, page) + more_line(rows.size() - most, "{} more rows", page);
}

} // namespace kelctl

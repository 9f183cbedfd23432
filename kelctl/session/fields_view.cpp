// Aligning names, values and columns.
#include "kelctl/session/fields_view.h"

#include "kelctl/terminal/text.h"
#include "notation/json.h"

#include <fmt/core.h>

#include <algorithm>
#include <vector>

namespace kelctl
{
namespace
{

std::string title(std::string name)
{
    std::replace(name.begin(), name.end(), '_', ' ');
    return name;
}

bool is_table(const fields &value)
{
    return value.is_array() && !value.empty() && value[0].is_object();
}

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
    return parts.empty() ? "none" : joined(parts, ", ");
}

// A column of the rows' values under a name; numbers stand at its right end.
struct column {
    std::string name;
    bool numbers;
    size_t width;
};

column column_of(const std::string &name, const fields &rows)
{
    column made = {name, true, title(name).size()};
    for (const fields &row : rows) {
        made.numbers = made.numbers && (row.at(name).is_number() || row.at(name).is_null());
        made.width = std::max(made.width, cell(row.at(name)).size());
    }
    return made;
}

std::string aligned(const std::string &text, const column &in)
{
    return in.numbers ? fmt::format("{:>{}}", text, in.width) : fmt::format("{:<{}}", text, in.width);
}

std::string without_trailing_blanks(const std::string &text)
{
    return text.substr(0, text.find_last_not_of(' ') + 1);
}

// A line of the table: what each column has to say in it.
template <typename Text> std::string table_line(const std::vector<column> &columns, Text text_of)
{
    std::string line;
    for (const column &one : columns)
        line += fmt::format("{}{}", line.empty() ? "" : "  ", aligned(text_of(one), one));
    return without_trailing_blanks(line);
}

std::string table_text(const fields &rows, const painter &paint)
{
    std::vector<column> columns;
    for (const auto &[name, value] : rows[0].members())
        columns.push_back(column_of(name, rows));

    const std::string head = table_line(columns, [](const column &one) { return title(one.name); });
    std::string text = paint(colour::heading, head) + "\n";
    for (const fields &row : rows)
        text += table_line(columns, [&row](const column &one) { return cell(row.at(one.name)); }) + "\n";
    return text;
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

std::string fields_text(const fields &shown, const painter &paint)
{
    std::string text;
    const size_t width = widest_title(shown);
    for (const auto &[name, value] : shown.members()) {
        const bool apart = !text.empty() && (is_table(value) || value.is_object());
        text += apart ? "\n" : "";
        if (is_table(value))
            text += table_text(value, paint);
        else if (value.is_object())
            text += fmt::format("{}\n{}", paint(colour::heading, title(name)), fields_text(value, paint));
        else
            text +=
                fmt::format("{}  {}\n", paint(colour::heading, fmt::format("{:<{}}", title(name), width)), cell(value));
    }
    return text;
}

} // namespace kelctl

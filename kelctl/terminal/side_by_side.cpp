// Taking lines apart and putting the numbers of several texts into one line.
#include "kelctl/terminal/side_by_side.h"

#include <fmt/core.h>

#include <algorithm>
#include <span>

namespace kelctl
{
namespace
{

constexpr size_t widest_line = 80;
constexpr size_t narrowest_column = 10;

struct line {
    std::string label;
    std::string number; // empty: a line of words
};

using lines = std::vector<line>;

line line_of(std::string_view text)
{
    const size_t number = text.find_last_not_of("0123456789") + 1;
    const size_t label_end = text.substr(0, number).find_last_not_of(' ') + 1;
    if (number == text.size() || label_end == 0 || label_end == number)
        return {std::string(text), ""};
    return {std::string(text.substr(0, label_end)), std::string(text.substr(number))};
}

lines lines_of(std::string_view text)
{
    lines all;
    while (!text.empty()) {
        const size_t end = std::min(text.find('\n'), text.size());
        if (end > 0)
            all.push_back(line_of(text.substr(0, end)));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return all;
}

bool same_layout(const lines &a, const lines &b)
{
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](const line &x, const line &y) {
        return x.label == y.label && x.number.empty() == y.number.empty();
    });
}

struct column {
    std::string title;
    lines all;
};

size_t label_width(std::string_view heading, const lines &all)
{
    size_t width = heading.size();
    for (const line &line : all)
        if (!line.number.empty())
            width = std::max(width, line.label.size());
    return width;
}

std::string table(std::string_view heading, size_t width, std::span<const column> columns, const painter &paint)
{
    std::string head = fmt::format("{:<{}}", heading, width);
    for (const column &column : columns)
        head += fmt::format("{:>{}}", column.title, narrowest_column);
    std::string rows = paint(colour::heading, head) + "\n";

    const lines &layout = columns.front().all;
    for (size_t i = 0; i < layout.size(); ++i) {
        if (layout[i].number.empty()) {
            rows += layout[i].label + "\n";
            continue;
        }
        rows += fmt::format("{:<{}}", layout[i].label, width);
        for (const column &column : columns)
            rows += fmt::format(" {:>{}}", column.all[i].number, narrowest_column - 1);
        rows += "\n";
    }
    return rows;
}

std::string one_by_one(std::string_view heading, const std::vector<titled_text> &texts, const painter &paint)
{
    std::string all;
    for (const titled_text &text : texts)
        all += paint(colour::heading, fmt::format("{} {}", heading, text.title)) + "\n" + text.text + "\n";
    return all;
}

} // namespace

std::string side_by_side(std::string_view heading, const std::vector<titled_text> &texts, const painter &paint)
{
    std::vector<column> columns;
    for (const titled_text &text : texts) {
        columns.push_back({text.title, lines_of(text.text)});
        if (!same_layout(columns.front().all, columns.back().all))
            return one_by_one(heading, texts, paint);
    }

    std::string tables;
    const size_t width = columns.empty() ? 0 : label_width(heading, columns.front().all);
    const size_t fit = std::max<size_t>(1, (widest_line - std::min(width, widest_line)) / narrowest_column);
    for (size_t i = 0; i < columns.size(); i += fit)
        tables += table(heading, width, std::span(columns).subspan(i, std::min(fit, columns.size() - i)), paint);
    return tables;
}

} // namespace kelctl

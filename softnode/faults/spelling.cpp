/*
 * spelling.cpp - distances between names, and breaking lines.
 */
#include "softnode/faults/spelling.h"

#include <algorithm>
#include <cstddef>
#include <numeric>
#include <vector>

namespace softnode
{

namespace
{

constexpr std::size_t line_width = 100;
constexpr std::string_view indent = "  ";

/* Letters to insert, take out or replace, to make one word the other. One row of the table of beginnings at a time. */
std::size_t distance(std::string_view left, std::string_view right)
{
    std::vector<std::size_t> row(right.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 1; i <= left.size(); ++i) {
        std::size_t diagonal = row[0];
        row[0] = i;
        for (std::size_t j = 1; j <= right.size(); ++j) {
            const std::size_t replaced = diagonal + (left[i - 1] == right[j - 1] ? 0 : 1);
            diagonal = row[j];
            row[j] = std::min({replaced, row[j] + 1, row[j - 1] + 1});
        }
    }
    return row.back();
}

/* A quarter of the letters wrong is a slip; more is another name. */
constexpr std::size_t letters_per_slip = 4;

} // namespace

std::string_view closest(std::string_view name, std::span<const std::string_view> known)
{
    std::string_view best;
    std::size_t least = name.size() / letters_per_slip + 1;
    for (const std::string_view candidate : known) {
        const bool comparable = candidate.size() < name.size() + least && name.size() < candidate.size() + least;
        if (!comparable)
            continue;
        if (const std::size_t away = distance(name, candidate); away < least) {
            least = away;
            best = candidate;
        }
    }
    return best;
}

std::string in_lines(std::span<const std::string_view> names)
{
    std::string text;
    std::size_t column = 0;
    for (const std::string_view name : names) {
        if (column != 0 && column + name.size() + sizeof ", ," - 1 > line_width) {
            text += ",\n";
            column = 0;
        }
        const std::string_view before = column == 0 ? indent : ", ";
        text.append(before).append(name);
        column += before.size() + name.size();
    }
    return text;
}

} // namespace softnode

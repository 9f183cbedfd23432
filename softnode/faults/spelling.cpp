/*
 * spelling.cpp - how many letters may be wrong, and breaking lines.
 */
#include "softnode/faults/spelling.h"

#include "text/nearest.h"

#include <cstddef>

namespace softnode
{

namespace
{

constexpr std::size_t line_width = 100;
constexpr std::string_view indent = "  ";

/* A quarter of the letters wrong is a slip; more is another name. */
constexpr std::size_t letters_per_slip = 4;

} // namespace

std::string_view closest(std::string_view name, std::span<const std::string_view> known)
{
    return text::nearest(name, known, name.size() / letters_per_slip);
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

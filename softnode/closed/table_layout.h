/*
 * table_layout.h - the three layouts of a table: titles, each followed by rows of a label and a number.
 *
 * A table is a complete text of its layout at all times: each function takes the text so far, empty at first, and yields
 * the text with something added or taken away. So a table can be left at any time, and all that is known of it is read
 * from the text itself.
 *
 *     format                  0, text                  1, CSV              2, JSON
 *     empty text              ""                       ""                  "" and "{}"
 *     title                   title:                   title,<title>       a member that is an object
 *     row                       label        value     label,value         a member of the last title's object
 *     mark of a cut table     (truncated)              truncated,true      a last member "truncated" that is true
 *
 * Any other format is text. The mark is nothing that titles and rows can make. Text and CSV are lines; a control
 * character in a title or label becomes a blank there. In JSON a title, or a label under its title, can be only
 * once: the last one replaces those before it.
 */
#ifndef SOFTNODE_TABLE_LAYOUT_H
#define SOFTNODE_TABLE_LAYOUT_H

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace softnode
{

/** A title, which has no value, or a row. */
struct TableLine {
    std::string_view words;
    std::optional<std::uint64_t> value = {};
};

struct TableLayout {
    /** None where the text is no table of this layout. */
    std::optional<std::string> (*with)(std::string_view text, std::span<const TableLine> lines);

    /** Takes away the last row, or a title that has none. */
    std::string (*without_last)(std::string_view text);

    std::string (*with_mark)(std::string_view text);
};

const TableLayout &table_layout(std::uint8_t format);

/** Whether a table of any layout carries the mark. */
bool is_marked(std::string_view text);

/* What a table that is nothing but its mark needs at most, the terminator included. */
constexpr std::size_t longest_mark = 24;

} // namespace softnode

#endif

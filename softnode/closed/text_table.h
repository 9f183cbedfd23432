/*
 * text_table.h - a table in a caller's buffer, bounded by its length.
 *
 * Every line that is added is in the text whole or not at all. What no longer fits cuts the table: the mark of the layout
 * takes the place of it, and of as many last rows as it needs to fit itself; nothing is added any more after that. So
 * the text is always terminated, always complete in its layout, and shows whether it was cut. Nothing is kept
 * outside of it.
 *
 * A buffer shorter than the longest mark holds no table at all: it stays empty and counts as cut.
 */
#ifndef SOFTNODE_TEXT_TABLE_H
#define SOFTNODE_TEXT_TABLE_H

#include "softnode/closed/statistics.h"
#include "softnode/closed/table_layout.h"
#include "softnode/common/refusal.h"

#include <cstdint>
#include <span>
#include <string_view>

namespace softnode
{

/*
 * Continues the text in the buffer. Each operation is refused as invalid for a null buffer, for one with
 * no terminator, and for a text that is not of the layout; as full when the table is cut, now or before.
 */
class TextTable
{
public:
    TextTable(char *buffer, std::uint32_t length, std::uint8_t format);

    Refusal add_title(std::string_view title);
    Refusal add_row(std::string_view label, std::uint64_t value);

    /** The block's title and a row per counter of the record. */
    Refusal add_block(const Block &block, const void *record);

private:
    /* All of the lines, or those that fit together with the mark. */
    Refusal add(std::span<const TableLine> lines);
    std::string_view text() const;

    char *buffer_;
    std::uint32_t length_;
    const TableLayout &layout_;
};

/** Whether the table in a buffer is all that was added to it: full when it was cut. The layout need not be known. */
Refusal check_whole(const char *buffer, std::uint32_t length);

} // namespace softnode

#endif

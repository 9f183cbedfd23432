/*
 * text_table.cpp - growing a table within a buffer, and cutting it.
 */
#include "softnode/closed/text_table.h"

#include <cstring>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace softnode
{

namespace
{

/* Not for a buffer of length 0, of which no octet may be read. */
std::string_view text_in(const char *buffer, std::uint32_t length)
{
    return {buffer, strnlen(buffer, length)};
}

Refusal check_text(const char *buffer, std::uint32_t length)
{
    if (!buffer)
        return Refusal::invalid;
    if (length == 0)
        return Refusal::full;
    const std::string_view text = text_in(buffer, length);
    if (text.size() == length)
        return Refusal::invalid;
    return is_marked(text) ? Refusal::full : Refusal::granted;
}

/* As many first lines as fit together with the mark. */
std::string cut(std::string table, std::uint32_t length, const TableLayout &layout)
{
    while (layout.with_mark(table).size() >= length)
        table = layout.without_last(table);
    return layout.with_mark(table);
}

} // namespace

TextTable::TextTable(char *buffer, std::uint32_t length, std::uint8_t format)
    : buffer_(buffer), length_(length), layout_(table_layout(format))
{
}

Refusal TextTable::add_title(std::string_view title)
{
    const TableLine line{title};
    return add({&line, 1});
}

Refusal TextTable::add_row(std::string_view label, std::uint64_t value)
{
    const TableLine line{label, value};
    return add({&line, 1});
}

Refusal TextTable::add_block(const Block &block, const void *record)
{
    std::vector<TableLine> lines{{block.title}};
    for (const Field &field : block.fields)
        lines.push_back({field.name, field.in(record)});
    return add(lines);
}

Refusal TextTable::add(std::span<const TableLine> lines)
{
    if (const Refusal refusal = check_text(buffer_, length_))
        return refusal;
    if (length_ < longest_mark)
        return Refusal::full;
    std::optional<std::string> grown = layout_.with(text(), lines);
    if (!grown)
        return Refusal::invalid;
    const bool whole = grown->size() < length_;
    const std::string written = whole ? *std::move(grown) : cut(*std::move(grown), length_, layout_);
    std::memcpy(buffer_, written.c_str(), written.size() + 1);
    return whole ? Refusal::granted : Refusal::full;
}

std::string_view TextTable::text() const
{
    return text_in(buffer_, length_);
}

Refusal check_whole(const char *buffer, std::uint32_t length)
{
    if (const Refusal refusal = check_text(buffer, length))
        return refusal;
    const bool could_hold_nothing = length < longest_mark && *buffer == '\0';
    return could_hold_nothing ? Refusal::full : Refusal::granted;
}

} // namespace softnode

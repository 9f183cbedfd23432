/*
 * text_table.cpp - growing a table within a buffer, and cutting it.
 */
#include "softnode/closed/text_table.h"

#include <cstring>

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

} // namespace

TextTable::TextTable(char *buffer, std::uint32_t length, std::uint8_t format)
    : buffer_(buffer), length_(length), layout_(table_layout(format))
{
}

Refusal TextTable::add_title(std::string_view title)
{
    if (const Refusal refusal = check())
        return refusal;
    return take(layout_.with_title(text(), title));
}

Refusal TextTable::add_row(std::string_view label, std::uint64_t value)
{
    if (const Refusal refusal = check())
        return refusal;
    return take(layout_.with_row(text(), label, value));
}

Refusal TextTable::add_block(const Block &block, const void *record)
{
    if (const Refusal refusal = add_title(block.title))
        return refusal;
    for (const Field &field : block.fields)
        if (const Refusal refusal = add_row(field.name, field.in(record)))
            return refusal;
    return Refusal::granted;
}

Refusal TextTable::check() const
{
    if (const Refusal refusal = check_text(buffer_, length_))
        return refusal;
    if (length_ < longest_mark)
        return Refusal::full;
    return layout_.is_table(text()) ? Refusal::granted : Refusal::invalid;
}

std::string_view TextTable::text() const
{
    return text_in(buffer_, length_);
}

Refusal TextTable::take(const std::string &grown)
{
    if (grown.size() < length_) {
        put(grown);
        return Refusal::granted;
    }

    std::string kept(text());
    while (layout_.with_mark(kept).size() >= length_)
        kept = layout_.without_last(kept);
    put(layout_.with_mark(kept));
    return Refusal::full;
}

void TextTable::put(const std::string &text)
{
    std::memcpy(buffer_, text.c_str(), text.size() + 1);
}

Refusal check_whole(const char *buffer, std::uint32_t length)
{
    if (const Refusal refusal = check_text(buffer, length))
        return refusal;
    const bool could_hold_nothing = length < longest_mark && *buffer == '\0';
    return could_hold_nothing ? Refusal::full : Refusal::granted;
}

} // namespace softnode

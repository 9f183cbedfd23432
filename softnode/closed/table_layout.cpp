/*
 * table_layout.cpp - text and CSV, which are lines, and JSON, which is read and written anew for all lines that are added at once.
 */
#include "softnode/closed/table_layout.h"

#include "softnode/common/json_text.h"

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

namespace softnode
{

namespace
{

constexpr std::string_view text_mark = "(truncated)\n";
constexpr std::string_view csv_mark = "truncated,true\n";
constexpr std::string_view json_mark = "\n  \"truncated\": true\n}";
static_assert(longest_mark == json_mark.size() + sizeof "{");

/* ---- Lines ---- */

constexpr std::size_t label_width = 24;
constexpr std::size_t value_width = 20;

std::string on_one_line(std::string_view words)
{
    std::string line(words);
    std::replace_if(
        line.begin(), line.end(), [](char letter) { return static_cast<unsigned char>(letter) < ' '; }, ' ');
    return line;
}

/* Where the last line begins. */
std::size_t end_of_previous_line(std::string_view text)
{
    text.remove_suffix(text.empty() ? 0 : 1);
    return text.rfind('\n') + 1;
}

std::string without_last_line(std::string_view text)
{
    return std::string(text.substr(0, end_of_previous_line(text)));
}

using LineText = std::string (*)(const TableLine &line);

template <LineText text_of>
std::optional<std::string> with_lines(std::string_view text, std::span<const TableLine> lines)
{
    std::string grown(text);
    for (const TableLine &line : lines)
        grown += text_of(line);
    return grown;
}

std::string text_line(const TableLine &line)
{
    std::string words = on_one_line(line.words);
    if (!line.value)
        return words + ":\n";
    words.resize(std::max(words.size(), label_width), ' ');
    const std::string digits = std::to_string(*line.value);
    return "  " + words + " " + std::string(value_width - digits.size(), ' ') + digits + "\n";
}

std::string text_with_mark(std::string_view text)
{
    return std::string(text).append(text_mark);
}

/* Quoted where its letters ask for it. */
std::string csv_field(std::string_view words)
{
    std::string line = on_one_line(words);
    if (line.find_first_of(",\"") == std::string::npos)
        return line;
    std::string field = "\"";
    for (const char letter : line)
        field.append(letter == '"' ? 2 : 1, letter);
    return field + "\"";
}

std::string csv_line(const TableLine &line)
{
    const std::string field = csv_field(line.words);
    return (line.value ? field + "," + std::to_string(*line.value) : "title," + field) + "\n";
}

std::string csv_with_mark(std::string_view text)
{
    return std::string(text).append(csv_mark);
}

/* ---- JSON ---- */

/* What is no JSON object yields something else than an object. */
Json read_json(std::string_view text)
{
    return text.empty() ? Json::object() : notation::try_read_json(text).value_or(nullptr);
}

/* Puts a member last; there it stays open to rows when it is a title's. */
void put_last(Json &object, std::string_view key, Json value)
{
    std::erase_if(object.members(), [key](const Json::member &one) { return one.name == key; });
    object[key] = std::move(value);
}

/* Where rows go: under the last title, if there is one. */
Json &open_part(Json &document)
{
    return !document.empty() && document.members().back().value.is_object() ? document.members().back().value
                                                                            : document;
}

std::optional<std::string> json_with(std::string_view text, std::span<const TableLine> lines)
{
    Json document = read_json(text);
    if (!document.is_object())
        return std::nullopt;
    for (const TableLine &line : lines)
        if (line.value)
            put_last(open_part(document), line.words, *line.value);
        else
            put_last(document, line.words, Json::object());
    return written(document);
}

std::string json_without_last(std::string_view text)
{
    Json document = read_json(text);
    Json &part = open_part(document).empty() ? document : open_part(document);
    if (!part.empty())
        part.members().pop_back();
    return written(document);
}

std::string json_with_mark(std::string_view text)
{
    Json document = read_json(text);
    put_last(document, "truncated", true);
    return written(document);
}

/* Indexed by format. */
constexpr std::array<TableLayout, 3> layouts{{
    {with_lines<text_line>, without_last_line, text_with_mark},
    {with_lines<csv_line>, without_last_line, csv_with_mark},
    {json_with, json_without_last, json_with_mark},
}};

} // namespace

const TableLayout &table_layout(std::uint8_t format)
{
    return layouts[format < layouts.size() ? format : 0];
}

bool is_marked(std::string_view text)
{
    const std::string_view last_line = text.substr(end_of_previous_line(text));
    return last_line == text_mark || last_line == csv_mark || text.ends_with(json_mark);
}

} // namespace softnode

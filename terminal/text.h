// Text for a terminal: untrusted text made safe, misspelt words compared with known ones, lines wrapped and folded.
// Tables and named values are results/fields_view.h.
#pragma once

#include "text/quantity.h"

#include <concepts>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>

namespace kelctl
{

// Some editors put it in front of a file.
inline constexpr std::string_view byte_order_mark = "\xEF\xBB\xBF";

// Text from outside (a file, a name, a typed word) as one line: each control character becomes "?", so that it can
// neither move the cursor nor change colours.
std::string without_controls(std::string_view text);

// The same, cut after 160 octets, never within a UTF-8 sequence; "..." follows if it was.
std::string printable(std::string_view text);

// The same in double quotes.
std::string in_quotes(std::string_view text);

// Equal without regard to the case of ASCII letters.
bool same_word(std::string_view a, std::string_view b);

// The known word that at most two wrong, missing or extra letters turn `word` into; empty when there is none, or when
// several are equally near.
std::string_view nearest(std::string_view word, std::span<const std::string_view> known);

// "; did you mean "settings"?" of the nearest word, empty when there is none.
std::string did_you_mean(std::string_view word, std::span<const std::string_view> known);

using text::with_separators;

// "1 path", "3,500 paths". `several`: the plural; one with an s where it is empty.
std::string count_of(uint64_t count, std::string_view one, std::string_view several = "");

// Of what is no terminal's.
inline constexpr size_t usual_width = 80;

// Lines of at most `width` characters: the first begins with `lead`, the others with as many blanks. They are broken at
// blanks; a word that is longer stays whole.
std::string wrapped(std::string_view lead, std::string_view text, size_t width = usual_width);

// The same, broken between these parts only; one blank is put between two of a line.
std::string wrapped(std::string_view lead, std::span<const std::string> parts, size_t width = usual_width);

// Text whose lines are filled anew. Paragraphs are separated by an empty line.
std::string filled(std::string_view text, size_t width);

// A line folded into lines of at most `width` columns of a terminal, each with its line end. It breaks at blanks, and
// in front of the arguments of a call that is longer than a line; other words stay whole. Where fewer blanks between
// two columns, but two at least, save a break, they become fewer. Continued lines are indented by four more than the
// first, or by less where that makes a word fit.
std::string folded(std::string_view line, size_t width);

// "a, b, c". The parts are strings, string views or whole numbers.
template <typename Parts> std::string joined(const Parts &parts, std::string_view between)
{
    std::string text;
    bool first = true;
    for (const auto &part : parts) {
        text += first ? std::string_view() : between;
        if constexpr (std::integral<std::remove_cvref_t<decltype(part)>>)
            text += std::to_string(part);
        else
            text += part;
        first = false;
    }
    return text;
}

} // namespace kelctl

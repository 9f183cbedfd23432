// Lines as wide as a terminal: wrapped at their blanks, or folded with what goes on further in.
// Tables and named values are results/fields_view.h in kelctl.
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

namespace terminal
{

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

} // namespace terminal

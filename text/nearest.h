// Words compared without regard to case, and the known word that was probably meant by a misspelt one.
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

namespace text
{

// The word that at most `most_wrong` wrong, missing or extra letters turn `word` into, in whatever case; empty when there
// is none, or when several are equally near.
// A third wrong letter would make a guess of most short words.
std::string_view nearest(std::string_view word, std::span<const std::string_view> known, size_t most_wrong = 2);

// "; did you mean "settings"?" of the nearest word, empty when there is none.
std::string did_you_mean(std::string_view word, std::span<const std::string_view> known);

// Equal without regard to the case of ASCII letters.
bool same_word(std::string_view a, std::string_view b);

// An ASCII letter in lower case; anything else as it is.
constexpr char lower(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

} // namespace text

// The known word that was probably meant by a misspelt one.
#pragma once

#include <cstddef>
#include <span>
#include <string_view>

namespace text
{

// The word that at most `most_wrong` wrong, missing or extra letters turn `word` into, in whatever case; empty when there
// is none, or when several are equally near.
std::string_view nearest(std::string_view word, std::span<const std::string_view> known, size_t most_wrong);

// An ASCII letter in lower case; anything else as it is.
constexpr char lower(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

} // namespace text

// Small text helpers: foreign text made safe for a terminal, and the nearest known word for a misspelt one.
#pragma once

#include <span>
#include <string>
#include <string_view>

namespace kelctl
{

// Foreign text as one line without control characters, cut after 160 octets.
std::string printable(std::string_view text);

// The same in double quotes.
std::string quoted(std::string_view text);

// Whether two texts are equal but for the case of their ASCII letters.
bool same_word(std::string_view a, std::string_view b);

// The known word that at most two wrong, missing or extra letters turn `word` into; empty when there is none.
std::string_view nearest(std::string_view word, std::span<const std::string_view> known);

} // namespace kelctl

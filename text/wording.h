// Counts and lists as a sentence has them.
#pragma once

#include <concepts>
#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>

namespace text
{

// "1 path", "3,500 paths". `several`: the plural; one with an s where it is empty.
std::string count_of(uint64_t count, std::string_view one, std::string_view several = "");

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

} // namespace text

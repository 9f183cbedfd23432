/*
 * markup.h - taking texts out of their marks again.
 */
#ifndef TESTS_SOFTNODE_MARKUP_H
#define TESTS_SOFTNODE_MARKUP_H

#include <string>
#include <string_view>
#include <vector>

/* What is between every two such marks. */
inline std::vector<std::string> between(std::string_view text, std::string_view open, std::string_view close)
{
    std::vector<std::string> found;
    for (std::size_t begin = text.find(open); begin != std::string_view::npos; begin = text.find(open, begin)) {
        begin += open.size();
        const std::size_t end = text.find(close, begin);
        if (end == std::string_view::npos)
            break;
        found.emplace_back(text.substr(begin, end - begin));
    }
    return found;
}

inline std::string replaced(std::string text, std::string_view part, std::string_view by)
{
    for (std::size_t place = text.find(part); place != std::string::npos; place = text.find(part, place + by.size()))
        text.replace(place, part.size(), by);
    return text;
}

inline std::string without_tags(std::string_view text)
{
    std::string bare;
    bool inside = false;
    for (const char letter : text) {
        inside = inside || letter == '<';
        if (!inside)
            bare += letter;
        inside = inside && letter != '>';
    }
    return bare;
}

#endif

// Escaping, comparing and guessing words.
#include "kelctl/terminal/text.h"

#include "text/nearest.h"

#include <fmt/core.h>

#include <algorithm>
#include <vector>

namespace kelctl
{
namespace
{

constexpr size_t longest_shown = 160;
constexpr size_t most_wrong_letters = 2;

bool is_control(char c)
{
    return static_cast<unsigned char>(c) < 0x20 || c == 0x7F;
}

// Where to cut so that no UTF-8 sequence is torn apart.
size_t cut_before(std::string_view text, size_t at)
{
    while (at > 0 && (static_cast<unsigned char>(text[at]) & 0xC0) == 0x80)
        --at;
    return at;
}

} // namespace

std::string without_controls(std::string_view text)
{
    std::string shown(text);
    std::replace_if(shown.begin(), shown.end(), is_control, '?');
    return shown;
}

std::string printable(std::string_view text)
{
    if (text.size() <= longest_shown)
        return without_controls(text);
    return without_controls(text.substr(0, cut_before(text, longest_shown))) + "...";
}

std::string in_quotes(std::string_view text)
{
    return fmt::format("\"{}\"", printable(text));
}

bool same_word(std::string_view a, std::string_view b)
{
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](char x, char y) { return text::lower(x) == text::lower(y); });
}

std::string_view nearest(std::string_view word, std::span<const std::string_view> known)
{
    return text::nearest(word, known, most_wrong_letters);
}

std::string did_you_mean(std::string_view word, std::span<const std::string_view> known)
{
    const std::string_view meant = nearest(word, known);
    return meant.empty() ? "" : fmt::format("; did you mean \"{}\"?", meant);
}

std::string wrapped(std::string_view lead, std::string_view text, size_t width)
{
    std::vector<std::string> words;
    while (!text.empty()) {
        const size_t end = std::min(text.find(' '), text.size());
        words.emplace_back(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return wrapped(lead, words, width);
}

std::string wrapped(std::string_view lead, std::span<const std::string> parts, size_t width)
{
    std::string lines;
    std::string line(lead);
    bool line_begins = true;
    for (const std::string &part : parts) {
        if (!line_begins && line.size() + 1 + part.size() > width) {
            lines += line + "\n";
            line = std::string(lead.size(), ' ');
            line_begins = true;
        }
        line += fmt::format("{}{}", line_begins ? "" : " ", part);
        line_begins = false;
    }
    return lines + line + "\n";
}

std::string filled(std::string_view text, size_t width)
{
    constexpr std::string_view between = "\n\n";
    std::string lines;
    while (!text.empty()) {
        const size_t end = std::min(text.find(between), text.size());
        std::string paragraph(text.substr(0, end));
        std::ranges::replace(paragraph, '\n', ' ');
        lines += lines.empty() ? "" : "\n";
        lines += wrapped("", paragraph, width);
        text.remove_prefix(std::min(end + between.size(), text.size()));
    }
    return lines;
}

std::string folded(std::string_view line, size_t width, size_t unseen)
{
    size_t begin = std::min(line.find_first_not_of(' '), line.size()); // of what is not indentation
    const std::string indentation(begin + 4, ' ');
    std::string lines;
    std::string rest(line);
    for (size_t limit = width + unseen; rest.size() > limit; limit = width) {
        size_t blank = rest.rfind(' ', limit);
        if (blank == std::string::npos || blank < begin)
            blank = rest.find(' ', limit);
        const size_t next = rest.find_first_not_of(' ', blank);
        if (next == std::string::npos)
            break;
        lines += fmt::format("{}\n", rest.substr(0, rest.find_last_not_of(' ', blank) + 1));
        rest.replace(0, next, indentation);
        begin = indentation.size();
    }
    return lines + rest + "\n";
}

} // namespace kelctl

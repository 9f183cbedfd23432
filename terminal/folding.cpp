// Where lines are broken, and how far the next ones are indented.
#include "terminal/folding.h"

#include "text/nearest.h"
#include "text/printable.h"

#include <fmt/core.h>

#include <algorithm>
#include <vector>

namespace terminal
{
namespace
{

constexpr size_t narrowest_gap = 2; // blanks between columns

// How many columns a terminal needs: none for an escape sequence, one for a UTF-8 sequence, also for that of a wide
// character. The escape sequences are those of terminal.cpp, colours only: each ends with m.
size_t columns_of(std::string_view text)
{
    size_t columns = 0;
    bool escape = false;
    for (const char c : text) {
        escape = escape || c == '\x1b';
        columns += escape || text::continues_character(c) ? 0 : 1;
        escape = escape && c != 'm';
    }
    return columns;
}

// Of a name in C: what comes before the parenthesis of a call.
bool is_of_a_name(char c)
{
    return (text::lower(c) >= 'a' && text::lower(c) <= 'z') || (c >= '0' && c <= '9') || c == '_';
}

// Up to a blank; of a call with arguments that is wider, up to these.
std::string_view first_word(std::string_view text, size_t width)
{
    const std::string_view word = text.substr(0, text.find(' '));
    const auto after_name = std::ranges::find_if_not(word, is_of_a_name);
    const std::string_view rest(after_name, word.end());
    const bool is_call = after_name != word.begin() && rest.starts_with('(') && !rest.starts_with("()");
    return is_call && columns_of(word) > width ? word.substr(0, word.size() - rest.size() + 1) : word;
}

} // namespace

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

// Counts octets, not columns: what is wrapped are the program's own texts, in ASCII and without colours.
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

std::string folded(std::string_view line, size_t width)
{
    const size_t begin = std::min(line.find_first_not_of(' '), line.size()); // of what is not indentation
    std::string lines;
    std::string last(line.substr(0, begin));
    bool line_begins = true;
    std::string_view rest = line.substr(begin);
    for (size_t blanks = 0; blanks < rest.size(); blanks = rest.find_first_not_of(' ')) {
        const std::string_view word = first_word(rest.substr(blanks), width);
        const size_t alone = columns_of(word);
        const size_t together = columns_of(last) + alone;
        if (line_begins || together + std::min(blanks, narrowest_gap) <= width) {
            last.append(std::min(blanks, width - std::min(together, width)), ' ');
        } else {
            lines += last + "\n";
            last.assign(std::min(begin + 4, width - std::min(alone, width)), ' ');
        }
        last += word;
        line_begins = false;
        rest.remove_prefix(blanks + word.size());
    }
    return lines + last + "\n";
}

} // namespace terminal

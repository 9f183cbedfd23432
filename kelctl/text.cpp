// Escaping, comparing and guessing words.
#include "kelctl/text.h"

#include <fmt/format.h>

#include <algorithm>
#include <vector>

namespace kelctl
{
namespace
{

constexpr size_t longest_shown = 160;
constexpr size_t longest_word = 40; // no known word comes near it
constexpr size_t most_wrong_letters = 2;
constexpr size_t line_width = 80;

char lower(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

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

// How many letters must be replaced, added or left out to turn one word into the other.
size_t edit_distance(std::string_view from, std::string_view to)
{
    std::vector<size_t> row(to.size() + 1);
    for (size_t i = 0; i < row.size(); ++i)
        row[i] = i;
    for (size_t i = 0; i < from.size(); ++i) {
        size_t diagonal = row[0];
        row[0] = i + 1;
        for (size_t j = 0; j < to.size(); ++j) {
            const size_t replaced = diagonal + (lower(from[i]) == lower(to[j]) ? 0 : 1);
            diagonal = row[j + 1];
            row[j + 1] = std::min({replaced, row[j] + 1, diagonal + 1});
        }
    }
    return row.back();
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
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](char x, char y) { return lower(x) == lower(y); });
}

std::string_view nearest(std::string_view word, std::span<const std::string_view> known)
{
    if (word.size() > longest_word)
        return {};
    std::string_view best;
    size_t fewest = most_wrong_letters + 1;
    for (const std::string_view candidate : known) {
        const size_t wrong = edit_distance(word, candidate);
        if (wrong > fewest || wrong > most_wrong_letters || wrong >= candidate.size())
            continue;
        best = wrong < fewest ? candidate : std::string_view{};
        fewest = wrong;
    }
    return best;
}

std::string did_you_mean(std::string_view word, std::span<const std::string_view> known)
{
    const std::string_view meant = nearest(word, known);
    return meant.empty() ? "" : fmt::format("; did you mean \"{}\"?", meant);
}

std::string with_separators(uint64_t number)
{
    std::string digits = fmt::to_string(number);
    for (size_t at = digits.size(); at > 3;)
        digits.insert(at -= 3, 1, ',');
    return digits;
}

std::string wrapped(std::string_view lead, std::string_view text)
{
    std::vector<std::string> words;
    while (!text.empty()) {
        const size_t end = std::min(text.find(' '), text.size());
        words.emplace_back(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return wrapped(lead, words);
}

std::string wrapped(std::string_view lead, std::span<const std::string> parts)
{
    std::string lines;
    std::string line(lead);
    bool line_begins = true;
    for (const std::string &part : parts) {
        if (!line_begins && line.size() + 1 + part.size() > line_width) {
            lines += line + "\n";
            line = std::string(lead.size(), ' ');
            line_begins = true;
        }
        line += fmt::format("{}{}", line_begins ? "" : " ", part);
        line_begins = false;
    }
    return lines + line + "\n";
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

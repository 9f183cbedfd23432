// Distances between words.
#include "text/nearest.h"

#include <algorithm>
#include <numeric>
#include <vector>

namespace text
{
namespace
{

// How many letters must be replaced, added or left out to turn one word into the other. One row of the table of their
// beginnings at a time.
size_t edit_distance(std::string_view from, std::string_view to)
{
    std::vector<size_t> row(to.size() + 1);
    std::iota(row.begin(), row.end(), size_t{0});
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

std::string_view nearest(std::string_view word, std::span<const std::string_view> known, size_t most_wrong)
{
    std::string_view best;
    size_t fewest = most_wrong + 1;
    for (const std::string_view candidate : known) {
        // Words of very different lengths are not compared, however long what was written is.
        if (candidate.size() > word.size() + most_wrong || word.size() > candidate.size() + most_wrong)
            continue;
        const size_t wrong = edit_distance(word, candidate);
        if (wrong > fewest || wrong > most_wrong || wrong >= candidate.size())
            continue;
        best = wrong < fewest ? candidate : std::string_view{};
        fewest = wrong;
    }
    return best;
}

std::string did_you_mean(std::string_view word, std::span<const std::string_view> known)
{
    const std::string_view meant = nearest(word, known);
    return meant.empty() ? "" : "; did you mean \"" + std::string(meant) + "\"?";
}

bool same_word(std::string_view a, std::string_view b)
{
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](char x, char y) { return lower(x) == lower(y); });
}

} // namespace text

// The layout of results as text: a line for each named value, a table for a list of rows. Every command uses it.
//
//     fields{{"paths_added", 2}, {"queues", [{"port": 6, "name": "RLU1P"}]}}
//
//     paths added  2
//
//     port  name
//        6  RLU1P
//
// Which columns a table of counters has is views/counter_tables.cpp. The same fields as JSON are result_document.h.
#pragma once

#include "kelctl/results/result.h"
#include "terminal/terminal.h"

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace kelctl
{

// Where text is shown.
struct page {
    terminal::painter paint;
    std::optional<size_t> width = {};       // of its lines; none: as long as they are
    std::optional<size_t> most_rows = {20}; // of a list; none: all
};

// With the width and the colours of a terminal, where the stream is one; 20 rows of a list.
page page_for(std::FILE *stream);

// A line with its end, folded where the page has a width.
std::string line_on(const page &page, std::string_view line);

// The same of each line of a text.
std::string lines_on(const page &page, std::string_view text);

// That so many more than a page has rows are left out, as "{} more rows; --all shows them"; empty for none.
std::string more_line(size_t count, std::string_view more, const page &page);

// Underscores in names become blanks. A table wider than its page, or than 80 columns where there is no page, breaks
// its titles into several lines; one that is still wider than the page continues in further tables, which repeat the
// first column. Every line ends with a line end. Without fields the text is empty; a text alone is returned unchanged.
std::string fields_text(const fields &shown, const page &page);

// The texts of as many as the page has rows, and in a line below them how many `more` there are: "{} more objects".
template <typename Type, typename TextOf>
std::string first_of(const std::vector<Type> &all, std::string_view more, const page &page, const TextOf &text_of_one)
{
    const size_t most = std::min(all.size(), page.most_rows.value_or(all.size()));
    std::string text;
    for (const Type &one : std::span(all).first(most))
        text += text_of_one(one);
    return text + more_line(all.size() - most, more, page);
}

// A list of rows as a table of at most as many as the page has, and how many more there are.
std::string list_text(std::string_view name, const fields &rows, const page &page);

} // namespace kelctl

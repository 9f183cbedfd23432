// Named values laid out for people: a line for each, lists of rows as tables. All that kelctl shows passes through here.
#pragma once

#include "kelctl/session/result.h"
#include "kelctl/terminal/terminal.h"

#include <cstddef>
#include <cstdio>
#include <optional>
#include <string>
#include <string_view>

namespace kelctl
{

// Where text is shown.
struct page {
    painter paint;
    std::optional<size_t> width = {};       // of its lines; none: as long as they are
    std::optional<size_t> most_rows = {20}; // of a list; none: all
};

page page_for(std::FILE *stream);

// A line with its end, in as many as the page's width takes. `unseen` octets of its first part take no room.
std::string line_on(const page &page, std::string_view line, size_t unseen = 0);

// Names lose their underscores. A table that is wider than 80 columns has titles of several lines; one that is wider
// than its page goes on in further tables, which begin with the same column. Every line ends with a line end; no fields
// are no text, and a text alone is shown as it is.
std::string fields_text(const fields &shown, const page &page);

} // namespace kelctl

// Texts that have the same lines but for the numbers at their ends, laid out as one table: a column for each text.
#pragma once

#include "kelctl/terminal/terminal.h"

#include <string>
#include <string_view>
#include <vector>

namespace kelctl
{

struct titled_text {
    std::string title; // a short one
    std::string text;
};

// At most 80 columns wide: what does not fit goes into further tables. `heading` stands above the lines. Texts that are
// not of one layout follow each other instead.
std::string side_by_side(std::string_view heading, const std::vector<titled_text> &texts, const painter &paint);

} // namespace kelctl

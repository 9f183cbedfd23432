// What a take-down undid and what it could not, in words and as named values.
#pragma once

#include "kelctl/bring_up.h"
#include "kelctl/result.h"

#include <string>
#include <string_view>
#include <vector>

namespace kelctl
{

// "undone: 10,000 paths removed, EBCOM service stopped", in the order of the first of each; "nothing" of none. In lines
// of 80 columns, as is the next one.
std::string undone_text(const std::vector<undone_step> &undone);

// The lead and "10,000 paths, EBCOM service" of what stands or stayed.
std::string products_text(std::string_view lead, const std::vector<product> &products);

// One line for each operation that succeeded and yet told of failures, followed by these. Empty when none did.
std::string complaints_text(const std::vector<undone_step> &undone);

// The operations, and those that told of failures with their records.
fields undone_fields(const std::vector<undone_step> &undone);
fields complaints_fields(const std::vector<undone_step> &undone);

} // namespace kelctl

// Destinations as rows of text: one for each address, or one for a run of consecutive addresses with the same location
// and note, so that 10,000 paths do not fill the screen.
#pragma once

#include "kelctl/values/mac_address.h"

#include <string>
#include <vector>

namespace kelctl
{

struct destination {
    mac_address mac;
    std::string location;
    std::string note; // empty: nothing to say
};

// `all` must be sorted by address. Rows have no line ends.
std::vector<std::string> destination_rows(const std::vector<destination> &all);

} // namespace kelctl

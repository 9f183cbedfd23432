// The rows of destinations: one for each address, or for a run of consecutive ones that have the rest in common.
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

// In the order given, which has to be that of the addresses. Without line ends.
std::vector<std::string> destination_rows(const std::vector<destination> &all);

} // namespace kelctl

// Addresses, ids and handles that are known from before: what a person is likely to type next.
#pragma once

#include "kelctl/values/mac_address.h"

#include <cstdint>
#include <set>

namespace kelctl
{

struct known_words {
    std::set<mac_address> macs;
    std::set<uint32_t> pceps; // ids
    std::set<uint32_t> groups;
    std::set<uint64_t> queues; // handles
    std::set<uint64_t> schedulers;
};

} // namespace kelctl

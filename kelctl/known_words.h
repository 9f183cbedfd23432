// Addresses, ids and handles that were named before or stand in the accelerator: what a person is likely to type next.
#pragma once

#include "kelctl/mac_address.h"

#include <cstdint>
#include <set>

namespace kelctl
{

struct snapshot;

struct known_words {
    std::set<mac_address> macs;
    std::set<uint32_t> ids; // of PCEPs and groups
    std::set<uint64_t> handles;

    void add(const snapshot &node);
};

} // namespace kelctl

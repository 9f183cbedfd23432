// Addresses, ids and handles that completion offers, because a person is likely to type them next. The session adds
// what commands used (argument_kind::remember), the shell adds what exists on the node.
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

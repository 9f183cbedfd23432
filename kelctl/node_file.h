// The node file: what it says once read, and the reader. What its tables must satisfy together is node_rules.h.
#pragma once

#include "kelctl/mac_address.h"
#include "kelctl/problem.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kelctl
{

struct ebcom_parameters {
    uint16_t ic_port_mtu = 0; // octets
    uint16_t ether_type = 0;
    std::array<uint8_t, 2> settings{}; // 4 bits each
};

// A queue's threshold is configured in blocks of so many octets.
inline constexpr uint32_t threshold_block = 256;

struct shaping {
    uint32_t rate = 0;      // kbit/s
    uint32_t burst = 0;     // octets
    uint32_t threshold = 0; // octets, whole blocks

    bool operator==(const shaping &) const = default;
};

// One [[path]]: paths from a port to that many addresses, counted up from the first.
struct path_entry {
    mac_address dst_mac;
    int32_t port = 0;
    std::optional<kelctl::shaping> shaping; // none: unshaped
    uint32_t count = 1;

    position at;
    position port_at;
    position shaping_at;
    position count_at;
};

struct node_file {
    std::optional<uint8_t> mpid; // none: as the environment says
    ebcom_parameters ebcom;
    std::vector<path_entry> paths;
};

// Unusable when there are problems; then it holds the entries that have none themselves.
struct node_file_read {
    node_file node;
    problem_list problems;
};

node_file_read read_node_file(const std::string &file);
node_file_read parse_node_file(std::string_view text);

} // namespace kelctl

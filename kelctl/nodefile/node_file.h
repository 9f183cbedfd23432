// The node file: what it says once read, and the reader. What its tables must satisfy together is node_rules.h.
#pragma once

#include "kelctl/accelerator/traffic_entry.h"
#include "kelctl/values/mac_address.h"
#include "kelctl/values/problem.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kelctl
{

struct ebcom_parameters {
    position at;
    uint16_t ic_port_mtu = 0; // octets
    uint16_t ether_type = 0;
    std::array<uint8_t, 2> settings{}; // 4 bits each
};

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

// One [[pcep]].
struct pcep_entry {
    uint32_t id = no_id;
    uint32_t remote_id = 0;
    mac_address local_mac;
    mac_address remote_mac;
    uint16_t vlan = 0;
    uint8_t priority = 0;

    position at;
    position id_at;
};

// One [[multicast]]: a group of PCEPs.
struct multicast_entry {
    uint32_t id = no_id;
    std::vector<placed_number> members; // ids of PCEPs

    position at;
    position id_at;
};

struct node_file {
    std::optional<uint8_t> mpid; // none: as the environment says
    position mpid_at;
    ebcom_parameters ebcom;
    std::vector<path_entry> paths;
    std::vector<pcep_entry> pceps;
    std::vector<multicast_entry> groups;
    std::vector<traffic_entry> traffic;
};

// Unusable when there are problems; then it holds the paths and the traffic that have none themselves, and every PCEP
// and group, because others may rightly name the id of one that is wrong otherwise.
struct node_file_read {
    node_file node;
    problem_list problems;
};

node_file_read read_node_file(const std::string &file);
node_file_read parse_node_file(std::string_view text);

} // namespace kelctl

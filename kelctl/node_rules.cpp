// One function for each rule that several values of a node file have to satisfy.
#include "kelctl/node_rules.h"

#include "kel/kel_node_names.h"
#include "kelctl/ic_port.h"

#include <fmt/format.h>

#include <map>
#include <utility>

namespace kelctl
{
namespace
{

constexpr uint64_t most_paths = 100'000;
constexpr uint64_t most_paths_on_a_port = 65'535; // the library counts a queue's paths in 16 bits
constexpr int32_t port_without_mac_channel = 0;

// The first of the entry's addresses that lies behind the EIOA.
std::optional<mac_address> first_eioa_address(const path_entry &entry)
{
    for (uint32_t i = 0; i < entry.count; ++i) {
        const mac_address mac = counted_up(entry.dst_mac, i);
        if (location_of(mac) == KEL_LOCATION_EIOA)
            return mac;
    }
    return std::nullopt;
}

void check_mac_channels(const node_file &node, problem_list &problems)
{
    for (const path_entry &entry : node.paths) {
        if (entry.port != port_without_mac_channel)
            continue;
        if (const auto mac = first_eioa_address(entry))
            problems.push_back({entry.port_at, fmt::format("port: {} is an EIOA destination, and port {} has no way "
                                                           "there",
                                                           to_text(*mac), port_text(entry.port))});
    }
}

// One queue carries all paths of a port: the first entry decides how it is shaped.
void check_shaping(const node_file &node, problem_list &problems)
{
    std::map<int32_t, const path_entry *> first_of_port;
    for (const path_entry &entry : node.paths) {
        const path_entry &first = *first_of_port.try_emplace(entry.port, &entry).first->second;
        if (entry.shaping == first.shaping)
            continue;
        problems.push_back({entry.shaping_at, fmt::format("shaping: differs from that of the path in line {} on the "
                                                          "same port, {}",
                                                          first.at.line, port_text(entry.port))});
    }
}

void check_amounts(const node_file &node, problem_list &problems)
{
    uint64_t paths = 0;
    std::map<int32_t, uint64_t> paths_on_port;
    for (const path_entry &entry : node.paths) {
        const uint64_t before = std::exchange(paths, paths + entry.count);
        if (before <= most_paths && paths > most_paths)
            problems.push_back({entry.count_at, fmt::format("count: more than {} paths in all", most_paths)});

        uint64_t &on_port = paths_on_port[entry.port];
        const uint64_t before_on_port = std::exchange(on_port, on_port + entry.count);
        if (before_on_port <= most_paths_on_a_port && on_port > most_paths_on_a_port)
            problems.push_back({entry.count_at, fmt::format("count: more than {} paths on port {}",
                                                            most_paths_on_a_port, port_text(entry.port))});
    }
}

} // namespace

void check_rules(const node_file &node, problem_list &problems)
{
    check_mac_channels(node, problems);
    check_shaping(node, problems);
    check_amounts(node, problems);
}

} // namespace kelctl

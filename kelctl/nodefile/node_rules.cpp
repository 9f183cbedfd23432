// One function for each rule that several values of a node file have to satisfy.
#include "kelctl/nodefile/node_rules.h"

#include "kel/kel_node_names.h"
#include "kelctl/values/ic_port.h"

#include <fmt/core.h>

#include <algorithm>
#include <map>
#include <set>
#include <string_view>
#include <utility>

namespace kelctl
{
namespace
{

constexpr uint64_t most_paths = 100'000;
constexpr uint64_t most_paths_on_a_port = 65'535; // the library counts a queue's paths in 16 bits
constexpr int32_t port_without_mac_channel = 0;
constexpr size_t most_groups = 30;
constexpr size_t most_members = 16; // of a group

// The first of the entry's addresses that lies behind the EIOA.
std::optional<mac_address> first_eioa_address(const path_entry &entry, uint8_t mp_id)
{
    for (uint32_t i = 0; i < entry.count; ++i) {
        const mac_address mac = counted_up(entry.dst_mac, i);
        if (location_of(mac, mp_id) == KEL_LOCATION_EIOA)
            return mac;
    }
    return std::nullopt;
}

void check_mac_channels(const node_file &node, uint8_t mp_id, problem_list &problems)
{
    for (const path_entry &entry : node.paths) {
        if (entry.port != port_without_mac_channel)
            continue;
        if (const auto mac = first_eioa_address(entry, mp_id))
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

// Paths to one destination from several ports count once. Too many paths are reported already.
void check_destination_count(const node_file &node, size_t most, problem_list &problems)
{
    uint64_t paths = 0;
    std::set<mac_address> destinations;
    for (const path_entry &entry : node.paths) {
        paths += entry.count;
        if (paths > most_paths)
            return;
        for (uint32_t i = 0; i < entry.count; ++i)
            destinations.insert(counted_up(entry.dst_mac, i));
        if (destinations.size() <= most)
            continue;
        problems.push_back(
            {entry.count_at, fmt::format("count: more than {} destinations in all, which is what this platform has "
                                         "room for",
                                         most)});
        return;
    }
}

// What has an id: a PCEP or a group.
struct end_point {
    uint32_t id;
    position id_at;
    position at;
    std::string_view kind;
};

constexpr std::string_view pcep_kind = "PCEP";
constexpr std::string_view group_kind = "multicast group";

// In the order of the file, in which both kinds may be mixed.
std::vector<end_point> end_points_of(const node_file &node)
{
    std::vector<end_point> all;
    for (const pcep_entry &pcep : node.pceps)
        all.push_back({pcep.id, pcep.id_at, pcep.at, pcep_kind});
    for (const multicast_entry &group : node.groups)
        all.push_back({group.id, group.id_at, group.at, group_kind});
    std::erase_if(all, [](const end_point &one) { return one.id == no_id; });
    std::sort(all.begin(), all.end(), [](const end_point &a, const end_point &b) { return a.at < b.at; });
    return all;
}

// Of each id the first one, which is whom other entries mean by it.
using end_points = std::map<uint32_t, end_point>;

end_points check_ids(const node_file &node, problem_list &problems)
{
    end_points first_of_id;
    for (const end_point &one : end_points_of(node)) {
        const auto [first, is_new] = first_of_id.try_emplace(one.id, one);
        if (!is_new)
            problems.push_back({one.id_at, fmt::format("id: {} is that of the {} in line {}", one.id,
                                                       first->second.kind, first->second.at.line)});
    }
    return first_of_id;
}

void check_member(const placed_number &member, const end_points &all, problem_list &problems)
{
    const auto named = all.find(member.value);
    if (named == all.end())
        problems.push_back({member.at, fmt::format("members: no PCEP of this file has the id {}", member.value)});
    else if (named->second.kind != pcep_kind)
        problems.push_back({member.at, fmt::format("members: {} is the {} in line {}, not a PCEP", member.value,
                                                   named->second.kind, named->second.at.line)});
}

void check_members(const multicast_entry &group, const end_points &all, problem_list &problems)
{
    std::set<uint32_t> before;
    for (const placed_number &member : group.members) {
        if (before.insert(member.value).second)
            check_member(member, all, problems);
        else
            problems.push_back({member.at, fmt::format("members: {} is named twice", member.value)});
    }
    if (group.members.size() > most_members)
        problems.push_back(
            {group.members[most_members].at, fmt::format("members: more than {} in one group", most_members)});
}

void check_groups(const node_file &node, const end_points &all, problem_list &problems)
{
    for (const multicast_entry &group : node.groups)
        check_members(group, all, problems);
    if (node.groups.size() > most_groups)
        problems.push_back(
            {node.groups[most_groups].at, fmt::format("[[multicast]]: more than {} groups", most_groups)});
}

bool leads_to(const path_entry &path, const mac_address &mac)
{
    return path.dst_mac <= mac && mac <= counted_up(path.dst_mac, path.count - 1);
}

bool has_destination(const node_file &node, const mac_address &mac)
{
    return std::ranges::any_of(node.paths, [&](const path_entry &path) { return leads_to(path, mac); }) ||
           std::ranges::any_of(node.pceps, [&](const pcep_entry &pcep) { return pcep.local_mac == mac; });
}

// Tables with problems of their own may be the ones that lead there: then nothing can be said.
void check_destinations(const node_file &node, problem_list &problems)
{
    if (!problems.empty())
        return;
    for (const traffic_entry &traffic : node.traffic)
        if (traffic.to && !has_destination(node, *traffic.to))
            problems.push_back({traffic.to_at, fmt::format("to: no path of this file leads to {}, and no PCEP has it "
                                                           "as its local address",
                                                           to_text(*traffic.to))});
}

void check_senders(const node_file &node, const end_points &all, problem_list &problems)
{
    for (const traffic_entry &traffic : node.traffic)
        if (!traffic.to && !all.contains(traffic.from))
            problems.push_back({traffic.from_at, fmt::format("from: no PCEP and no multicast group of this file has "
                                                             "the id {}",
                                                             traffic.from)});
}

} // namespace

void check_rules(const node_file &node, const surroundings &around, problem_list &problems)
{
    check_destinations(node, problems);
    check_mac_channels(node, node.mpid.value_or(around.mp_id), problems);
    check_shaping(node, problems);
    check_amounts(node, problems);
    if (around.most_destinations)
        check_destination_count(node, *around.most_destinations, problems);
    const end_points all = check_ids(node, problems);
    check_groups(node, all, problems);
    check_senders(node, all, problems);
}

} // namespace kelctl

// One function for each rule. Rules look at sound lines only, where a wrong value would make their message misleading.
// A rule reports at the later one of two lines that do not go together, as a reader comes to it.
#include "kelctl/nodefile/node_rules.h"

#include "kel/kel_node_names.h"
#include "kelctl/values/ic_port.h"
#include "kelctl/values/mac_address.h"

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

// Limits that the library does not report before it is too late, or only in the midst of a bring-up.
constexpr uint64_t most_paths = 100'000;
constexpr uint64_t most_paths_on_a_port = 65'535; // the library counts a queue's paths in 16 bits
constexpr int32_t port_without_mac_channel = 0;   // and so without a way to what is behind the EIOA
constexpr size_t most_groups = 30;
constexpr size_t most_members = 16; // of a group

using lines = std::vector<const positioned_line *>;

lines lines_of(const node_file_read &file, std::string_view row)
{
    lines found;
    for (const positioned_line &line : file.lines)
        if (line.asked.row->name == row)
            found.push_back(&line);
    return found;
}

lines sound_lines_of(const node_file_read &file, std::string_view row)
{
    lines found = lines_of(file, row);
    std::erase_if(found, [](const positioned_line *line) { return !line->sound; });
    return found;
}

// A sound [[path]]: `count` consecutive addresses, the first of which is `first`.
struct path_entry {
    explicit path_entry(const positioned_line *written)
        : line(written), first(line->asked.given.mac("MAC")), port(line->asked.given.number<int32_t>("--port")),
          count(line->asked.given.has("--count") ? line->asked.given.number<uint32_t>("--count") : 1)
    {
    }

    const positioned_line *line;
    mac_address first;
    int32_t port;
    uint32_t count;
};

using path_list = std::vector<path_entry>;

// The library accepts any address, but a frame to a group or to all zeros reaches no destination.
void check_stations(const node_file_read &file, problem_list &problems)
{
    for (const positioned_line &line : file.lines)
        for (const auto &[key, at] : line.keys)
            if (const argument_value *value = line.asked.given.find(key->argument))
                if (const auto *mac = std::get_if<mac_address>(value); mac && !is_station(*mac))
                    problems.push_back(
                        line.wrong(key->argument, fmt::format("{} is not a unicast address", to_text(*mac))));
}

void check_ports(const path_list &paths, problem_list &problems)
{
    for (const path_entry &path : paths)
        if (!carries_ebcom(path.port))
            problems.push_back(path.line->wrong("--port", fmt::format("{} does not carry EBCOM; these do: {}",
                                                                      port_text(path.port), ports_with_ebcom)));
}

// The first of the path's addresses whose location is the EIOA.
std::optional<mac_address> first_eioa_address(const path_entry &path, uint8_t mp_id)
{
    for (uint32_t i = 0; i < path.count; ++i) {
        const mac_address mac = counted_up(path.first, i);
        if (location_of(mac, mp_id) == KEL_LOCATION_EIOA)
            return mac;
    }
    return std::nullopt;
}

void check_mac_channels(const path_list &paths, uint8_t mp_id, problem_list &problems)
{
    for (const path_entry &path : paths) {
        if (path.port != port_without_mac_channel)
            continue;
        if (const auto mac = first_eioa_address(path, mp_id))
            problems.push_back(
                path.line->wrong("--port", fmt::format("{} is an EIOA destination, and port {} has no way there",
                                                       to_text(*mac), port_text(path.port))));
    }
}

bool same_argument(const positioned_line &one, const positioned_line &other, std::string_view name)
{
    const argument_value *value = one.asked.given.find(name);
    const argument_value *other_value = other.asked.given.find(name);
    return value && other_value ? *value == *other_value : value == other_value;
}

// All paths of a port share its queue, and the first one shapes it: other values of later paths would be ignored.
void check_shaping(const path_list &paths, problem_list &problems)
{
    constexpr std::string_view shaping[] = {"--rate", "--burst", "--threshold"};
    std::map<int32_t, const positioned_line *> first_of_port;
    for (const path_entry &path : paths) {
        const positioned_line &first = *first_of_port.try_emplace(path.port, path.line).first->second;
        const auto *const other = std::ranges::find_if(
            shaping, [&](std::string_view name) { return !same_argument(*path.line, first, name); });
        if (other != std::end(shaping))
            problems.push_back(
                path.line->wrong(*other, fmt::format("differs from that of the path in line {} on the same port, {}",
                                                     first.at.line, port_text(path.port))));
    }
}

// Each limit is reported once, at the path that exceeds it.
void check_amounts(const path_list &paths, problem_list &problems)
{
    uint64_t all = 0;
    std::map<int32_t, uint64_t> paths_on_port;
    for (const path_entry &path : paths) {
        const uint64_t before = std::exchange(all, all + path.count);
        if (before <= most_paths && all > most_paths)
            problems.push_back(path.line->wrong("--count", fmt::format("more than {} paths in all", most_paths)));

        uint64_t &on_port = paths_on_port[path.port];
        const uint64_t before_on_port = std::exchange(on_port, on_port + path.count);
        if (before_on_port <= most_paths_on_a_port && on_port > most_paths_on_a_port)
            problems.push_back(path.line->wrong(
                "--count", fmt::format("more than {} paths on port {}", most_paths_on_a_port, port_text(path.port))));
    }
}

// Paths to one destination from several ports count once. Stops where there are too many paths: that is reported
// already, and the set would become large.
void check_destination_count(const path_list &paths, size_t most, problem_list &problems)
{
    uint64_t all = 0;
    std::set<mac_address> destinations;
    for (const path_entry &path : paths) {
        all += path.count;
        if (all > most_paths)
            return;
        for (uint32_t i = 0; i < path.count; ++i)
            destinations.insert(counted_up(path.first, i));
        if (destinations.size() <= most)
            continue;
        problems.push_back(path.line->wrong(
            "--count", fmt::format("more than {} destinations in all, the limit of this platform", most)));
        return;
    }
}

// A PCEP or a group.
struct end_point {
    const positioned_line *line;
    std::string_view argument; // the one that holds its id
    std::string_view kind;
};

constexpr std::string_view pcep_kind = "PCEP";
constexpr std::string_view group_kind = "multicast group";

// All whose id could be read, in the order of the file: PCEPs and groups may be mixed there.
std::vector<end_point> end_points_of(const node_file_read &file)
{
    std::vector<end_point> all;
    for (const positioned_line *line : lines_of(file, "pcep add"))
        all.push_back({line, "ID", pcep_kind});
    for (const positioned_line *line : lines_of(file, "group add"))
        all.push_back({line, "GROUP", group_kind});
    std::erase_if(all, [](const end_point &one) { return !one.line->asked.given.has(one.argument); });
    std::ranges::sort(all, {}, [](const end_point &one) { return one.line->at; });
    return all;
}

// The first one with each id: the one that members and streams refer to.
using end_points = std::map<uint32_t, end_point>;

// PCEPs and groups share the range of ids.
end_points check_ids(const node_file_read &file, problem_list &problems)
{
    end_points first_of_id;
    for (const end_point &one : end_points_of(file)) {
        const uint32_t id = one.line->asked.given.id(one.argument);
        const auto [first, is_new] = first_of_id.try_emplace(id, one);
        if (!is_new)
            problems.push_back(
                one.line->wrong(one.argument, fmt::format("{} is already the id of the {} in line {}", id,
                                                          first->second.kind, first->second.line->at.line)));
    }
    return first_of_id;
}

// Why no PCEP with this id can be a member of a group; empty: one can.
std::string no_member(uint32_t id, const end_points &all)
{
    const auto named = all.find(id);
    if (named == all.end())
        return fmt::format("no PCEP of this file has the id {}", id);
    if (named->second.kind == pcep_kind)
        return "";
    return fmt::format("{} is the {} in line {}, not a PCEP", id, named->second.kind, named->second.line->at.line);
}

// Members of one group have the position of one table.
void check_members(const node_file_read &file, const end_points &all, problem_list &problems)
{
    std::map<position, std::set<uint32_t>> members_of_table;
    std::map<position, size_t> count_of_table;
    for (const positioned_line *member : sound_lines_of(file, "group member add")) {
        if (++count_of_table[member->at] == most_members + 1)
            problems.push_back(member->wrong("ID", fmt::format("more than {} in one group", most_members)));
        const uint32_t id = member->asked.given.id("ID");
        const bool is_new = members_of_table[member->at].insert(id).second;
        const std::string what = is_new ? no_member(id, all) : fmt::format("{} is named twice", id);
        if (!what.empty())
            problems.push_back(member->wrong("ID", what));
    }
}

void check_group_count(const node_file_read &file, problem_list &problems)
{
    const lines groups = lines_of(file, "group add");
    if (groups.size() > most_groups)
        problems.push_back({groups[most_groups]->at, fmt::format("[[multicast]]: more than {} groups", most_groups)});
}

// Addresses of one line differ in their last three octets only, so comparing them as a whole is comparing these.
bool leads_to(const path_entry &path, const mac_address &mac)
{
    return path.first <= mac && mac <= counted_up(path.first, path.count - 1);
}

// A path leads there, or it is a PCEP's local address.
bool is_reached(const mac_address &mac, const path_list &paths, const lines &pceps)
{
    return std::ranges::any_of(paths, [&](const path_entry &path) { return leads_to(path, mac); }) ||
           std::ranges::any_of(pceps,
                               [&](const positioned_line *pcep) { return pcep->asked.given.mac("--local") == mac; });
}

// Checks nothing while the file has other problems: a path that could not be read may lead to the destination.
void check_destinations(const node_file_read &file, const path_list &paths, problem_list &problems)
{
    const lines pceps = lines_of(file, "pcep add");
    for (const positioned_line *stream : sound_lines_of(file, "traffic stream add")) {
        if (!file.problems.empty() || !stream->asked.given.has("--to"))
            continue;
        const mac_address mac = stream->asked.given.mac("--to");
        if (!is_reached(mac, paths, pceps))
            problems.push_back(stream->wrong("--to", fmt::format("no path of this file leads to {}, and no PCEP has "
                                                                 "it as its local address",
                                                                 to_text(mac))));
    }
}

void check_senders(const node_file_read &file, const end_points &all, problem_list &problems)
{
    for (const positioned_line *stream : sound_lines_of(file, "traffic stream add"))
        if (stream->asked.given.has("--from") && !all.contains(stream->asked.given.id("--from")))
            problems.push_back(
                stream->wrong("--from", fmt::format("no PCEP and no multicast group of this file has the id {}",
                                                    stream->asked.given.id("--from"))));
}

// PCEPs whose frames reach no destination, and groups and streams that use only those. Frames between PCEPs of one node
// need no path.
void warn_of_lost_frames(node_file_read &file, const path_list &paths)
{
    const lines pceps = lines_of(file, "pcep add");
    std::set<uint32_t> reaching; // ids of PCEPs and groups
    for (const positioned_line *pcep : pceps)
        if (const mac_address remote = pcep->asked.given.mac("--remote"); is_reached(remote, paths, pceps))
            reaching.insert(pcep->asked.given.id("ID"));
        else
            file.warnings.push_back(
                pcep->wrong("--remote", fmt::format("no path of this file leads to {}, and no PCEP has "
                                                    "it as its local address",
                                                    to_text(remote))));
    for (const positioned_line *member : lines_of(file, "group member add"))
        if (reaching.contains(member->asked.given.id("ID")))
            reaching.insert(member->asked.given.id("GROUP"));
    for (const positioned_line *stream : lines_of(file, "traffic stream add"))
        if (stream->asked.given.has("--from") && !reaching.contains(stream->asked.given.id("--from")))
            file.warnings.push_back(stream->wrong(
                "--from", fmt::format("frames from {} reach no destination", stream->asked.given.id("--from"))));
}

uint8_t mp_id_of(const node_file_read &file, uint8_t otherwise)
{
    const lines set = sound_lines_of(file, "mpid");
    return set.empty() ? otherwise : set.front()->asked.given.number<uint8_t>("MPID");
}

} // namespace

// Problems are collected apart, so that check_destinations() sees whether reading the file found any. Warnings come
// only for a file without problems: for another they would be guesses.
void check_rules(node_file_read &file, const surroundings &around)
{
    problem_list problems;
    const lines written = sound_lines_of(file, "ebcom path add");
    const path_list paths(written.begin(), written.end());
    check_stations(file, problems);
    check_ports(paths, problems);
    check_mac_channels(paths, mp_id_of(file, around.mp_id), problems);
    check_shaping(paths, problems);
    check_amounts(paths, problems);
    if (around.most_destinations)
        check_destination_count(paths, *around.most_destinations, problems);
    const end_points all = check_ids(file, problems);
    check_members(file, all, problems);
    check_group_count(file, problems);
    check_destinations(file, paths, problems);
    check_senders(file, all, problems);
    std::ranges::move(problems, std::back_inserter(file.problems));
    if (file.problems.empty())
        warn_of_lost_frames(file, paths);
}

} // namespace kelctl

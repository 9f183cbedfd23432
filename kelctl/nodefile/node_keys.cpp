// The tables with their keys, in the order of a bring-up. A table has no ranges and no units: they are the argument's.
#include "kelctl/nodefile/node_keys.h"

#include <fmt/core.h>

#include <algorithm>

namespace kelctl
{
namespace
{

// Keys in the order in which the manual page lists them, and in which a written file has them.
constexpr node_key node[] = {{"mpid", "MPID"}};

constexpr node_key ebcom[] = {{"ic_port_mtu", "--mtu"}, {"ether_type", "--ether-type"}, {"settings", "--settings"}};

// They have no arguments, and so no keys: a node file always has them.
constexpr std::string_view ebcom_service[] = {"ebcom interface create", "ebcom start"};

constexpr node_key path[] = {
    {"dst_mac", "MAC"},
    {"port", "--port"},
    {"shaping.rate", "--rate"},
    {"shaping.burst", "--burst"},
    {"shaping.threshold", "--threshold"},
    {"count", "--count"},
};

constexpr std::string_view pcep_service = "pcep start";

constexpr node_key pcep[] = {
    {"id", "ID"},       {"remote_id", "--remote-id"}, {"local_mac", "--local"}, {"remote_mac", "--remote"},
    {"vlan", "--vlan"}, {"priority", "--priority"},
};

constexpr node_key multicast[] = {{"id", "GROUP"}, {"members", "ID", "group member add"}};

constexpr node_key traffic[] = {
    {"to", "--to"},
    {"from", "--from"},
    {"octets", "--octets"},
    {"rate", "--rate"},
    {"frames_per_second", "--frames-per-second"},
    {"burst", "--burst"},
    {"arrivals", "--arrivals"},
    {"seed", "--seed"},
    {"on", "--on"},
    {"off", "--off"},
    {"start", "--start"},
    {"stop", "--stop"},
};

// PCEPs come after paths, because their frames leave through queues that paths make; groups after the PCEPs that are
// their members; traffic last, when there is somewhere to go.
constexpr node_table tables[] = {
    {.name = "node",
     .row = "mpid",
     .help = "The node itself. Without mpid, the environment variable MPID gives the own MP id.",
     .keys = node,
     .times = occurrence::at_most_once},
    {.name = "ebcom",
     .row = "ebcom params set",
     .help = "Parameters of the EBCOM service.",
     .keys = ebcom,
     .times = occurrence::once,
     .after = ebcom_service},
    {.name = "path",
     .row = "ebcom path add",
     .help = "A path from an IC port to a destination; any number of them. All paths of a port have the same shaping, "
             "which can also be an inline table: shaping = { rate = ..., ... }.",
     .keys = path},
    {.name = "pcep",
     .row = "pcep add",
     .help = "An end point of packet communication. The PCEP service starts only if there is a PCEP or a group.",
     .keys = pcep,
     .before = pcep_service},
    {.name = "multicast",
     .row = "group add",
     .help =
         "A multicast group: a frame sent to it goes to each of its members, at most 16 PCEPs of this file. At most "
         "30 groups, with ids from the same range as PCEPs.",
     .keys = multicast,
     .before = pcep_service},
    {.name = "traffic",
     .row = "traffic stream add",
     .help =
         "Frames that kelctl up --watch offers in the virtual time of the software accelerator. Any number of them.",
     .keys = traffic},
};

} // namespace

std::string node_table::heading() const
{
    return times == occurrence::any ? fmt::format("[[{}]]", name) : fmt::format("[{}]", name);
}

const node_key *node_table::find(std::string_view key) const
{
    const auto found = std::ranges::find(keys, key, &node_key::name);
    return found == keys.end() ? nullptr : &*found;
}

std::string_view node_table::key_of(std::string_view argument) const
{
    const auto found = std::ranges::find(keys, argument, &node_key::argument);
    return found == keys.end() ? argument : found->name;
}

std::span<const node_table> node_tables()
{
    return tables;
}

} // namespace kelctl

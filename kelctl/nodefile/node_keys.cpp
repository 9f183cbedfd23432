// The tables themselves. Ranges are those that the reader checks.
#include "kelctl/nodefile/node_keys.h"

#include "kelctl/values/limits.h"

namespace kelctl
{
namespace
{

constexpr std::string_view an_address = "address: 02:00:00:02:00:01, 02-00-00-02-00-01 or 0200.0002.0001";
constexpr std::string_view nothing = "unshaped";

constexpr node_key node[] = {
    {"mpid", mpid_range.text, "own MP id", "as the environment variable MPID says"},
};

constexpr node_key ebcom[] = {
    {"ic_port_mtu", mtu_range.text, "MTU of the IC ports"},
    {"ether_type", ether_type_range.text, "EtherType of EBCOM frames"},
    {"settings", "array of two numbers, 0 to 15 each", "two 4-bit values"},
};

constexpr node_key path[] = {
    {"dst_mac", an_address, "the destination; its bytes 2 and 3 tell where it sits"},
    {"port", "name or number of a port that carries EBCOM", "where the path begins"},
    {"shaping", "table, see [path.shaping]", "how the port's queue is limited; all paths of a port have the same",
     nothing},
    {"count", "1 to 100000", "so many paths, to addresses that count up in their last three bytes", "1"},
};

constexpr node_key shaping[] = {
    {"rate", "kbit/s, or a text with a unit: kbit/s, Mbit/s, Gbit/s", "how fast the queue is emptied"},
    {"burst", "octets, or a text with a unit: octets, KiB, MiB; at most 1048575 octets", "the largest burst"},
    {"threshold", "octets as for burst, a multiple of 256", "how much may wait"},
};

constexpr node_key pcep[] = {
    {"id", id_range.text, "of the PCEP; groups are numbered from the same range"},
    {"remote_id", remote_id_range.text, "the id at the other end"},
    {"local_mac", an_address, "at this end; on the HSFP the PCEP gets bound to the EHSFP"},
    {"remote_mac", an_address, "at the other end"},
    {"vlan", vlan_range.text, "VLAN id"},
    {"priority", priority_range.text, "VLAN priority", "0"},
};

constexpr node_key multicast[] = {
    {"id", id_range.text, "of the group, and of no PCEP"},
    {"members", "array of at most 16 ids", "PCEPs of this file"},
};

constexpr node_key traffic[] = {
    {.name = "to",
     .value = "address of a path, or local address of a PCEP",
     .help = "the destination",
     .instead = "from"},
    {.name = "from",
     .value = "id of a PCEP or a group",
     .help = "the sender: a PCEP sends to its remote address, a group to that of each member",
     .instead = "to"},
    {"octets", frame_length_range.text, "length of a frame"},
    {.name = "rate",
     .value = "kbit/s, or a text with a unit: kbit/s, Mbit/s, Gbit/s",
     .help = "how much there is",
     .instead = "frames_per_second"},
    {.name = "frames_per_second", .value = "1 to 4294967295", .help = "how many there are", .instead = "rate"},
    {"burst", "1 to 1000000 frames", "so many come at once, the more seldom", "1"},
    {"start", "a text with a unit: ns, us, ms, s", "when the first ones come, counted from the beginning of the watch",
     "at once"},
    {"stop", "as for start", "when no more come", "never"},
};

constexpr node_table tables[] = {
    {"node", "[node]", "The node itself. The table may be left out.", node},
    {"ebcom", "[ebcom]", "Parameters of the EBCOM service.", ebcom},
    {"path", "[[path]]", "A path from an IC port to a destination; any number of them.", path},
    {"path.shaping", "[path.shaping]", "The limits of a path's queue. Also written shaping = { rate = ..., ... }.",
     shaping},
    {"pcep", "[[pcep]]",
     "An end point of packet communication. Without one and without a group the PCEP service is not "
     "started.",
     pcep},
    {"multicast", "[[multicast]]", "A multicast group: what is sent to it goes to each member. At most 30 of them.",
     multicast},
    {"traffic", "[[traffic]]",
     "Frames that kelctl up --watch offers in the virtual time of the software accelerator. Any number of them.",
     traffic},
};

} // namespace

std::span<const node_table> node_tables()
{
    return tables;
}

std::vector<std::string_view> node_keys_of(std::string_view table)
{
    std::vector<std::string_view> names;
    for (const node_table &one : tables) {
        if (table.empty() && one.name.find('.') == std::string_view::npos)
            names.push_back(one.name);
        if (one.name == table)
            for (const node_key &key : one.keys)
                names.push_back(key.name);
    }
    return names;
}

} // namespace kelctl

// Reading the software accelerator's document, one function for each kind of object. Keys that kelctl does not use are
// left out.
#include "kelctl/accelerator/snapshot.h"

#include <charconv>
#include <string>

namespace kelctl
{
namespace
{

using notation::document;

snapshot::scheduler scheduler_in(const document &value)
{
    return {handle_in(value.at("handle")), handle_in(value.at("parent"))};
}

snapshot::queue queue_in(const document &value)
{
    return {.self = handle_in(value.at("handle")),
            .scheduler = handle_in(value.at("scheduler")),
            .rate = value.at("rate").number<uint32_t>(),
            .burst = value.at("bucket_size").number<uint32_t>(),
            .threshold = value.at("threshold").number<uint32_t>(),
            .shaped = value.at("shaped").boolean()};
}

mac_address mac_in(const document &value)
{
    return parse_mac_address(value.text()).value_or(mac_address{});
}

snapshot::path path_in(const document &value)
{
    return {mac_in(value.at("mac")), handle_in(value.at("queue"))};
}

snapshot::pcep pcep_in(const document &value)
{
    return {.id = value.at("id").number<uint32_t>(),
            .remote_id = value.at("remote_id").number<uint32_t>(),
            .local_mac = mac_in(value.at("local_mac")),
            .remote_mac = mac_in(value.at("remote_mac")),
            .vlan = value.at("vlan").number<uint16_t>(),
            .priority = value.at("priority").number<uint8_t>(),
            .bound = false};
}

snapshot::group group_in(const document &value)
{
    snapshot::group group = {value.at("id").number<uint32_t>(), {}};
    for (const document &member : value.at("members"))
        group.members.push_back(member.number<uint32_t>());
    return group;
}

snapshot::global_parameters globals_in(const document &value)
{
    const document &settings = value.at("settings");
    return {.mtu = value.at("mtu").number<uint16_t>(),
            .ether_type = value.at("ether_type").number<uint16_t>(),
            .settings = {settings[0].number<uint8_t>(), settings[1].number<uint8_t>()}};
}

// The only target there is to be bound to is the EHSFP.
void read_bindings(const document &bindings, std::vector<snapshot::pcep> &pceps)
{
    for (const document &binding : bindings)
        for (snapshot::pcep &pcep : pceps)
            if (pcep.id == binding.at("pcep").number<uint32_t>())
                pcep.bound = true;
}

template <typename Element> std::vector<Element> list_in(const document &list, Element (*read)(const document &))
{
    std::vector<Element> elements;
    for (const document &value : list)
        elements.push_back(read(value));
    return elements;
}

} // namespace

// from_chars() takes no "0x".
handle handle_in(const document &value)
{
    handle read = 0;
    if (value.is_null())
        return read;
    const auto &text = value.text();
    std::from_chars(text.data() + 2, text.data() + text.size(), read, 16);
    return read;
}

bool snapshot::empty() const
{
    return schedulers.empty() && queues.empty() && paths.empty() && pceps.empty() && groups.empty() && !interface;
}

std::vector<snapshot::queue> read_queues(const document &list)
{
    return list_in(list, queue_in);
}

// Only parts that a node may lack are null; any other member that is missing throws.
snapshot read_snapshot(const document &all)
{
    snapshot read;
    read.schedulers = list_in(all.at("schedulers"), scheduler_in);
    read.queues = read_queues(all.at("queues"));
    read.paths = list_in(all.at("paths"), path_in);
    read.pceps = list_in(all.at("pceps"), pcep_in);
    read_bindings(all.at("bindings"), read.pceps);
    read.groups = list_in(all.at("groups"), group_in);
    if (const document &interface = all.at("interface"); !interface.is_null())
        read.interface = {interface.at("eth_dev_id").number<uint16_t>(), interface.at("vsi").number<uint16_t>()};
    if (const document &globals = all.at("globals"); !globals.is_null())
        read.globals = globals_in(globals);
    if (const document &offset = all.at("timestamp_offset"); !offset.is_null())
        read.timestamp_offset = offset.number<int64_t>();
    return read;
}

} // namespace kelctl

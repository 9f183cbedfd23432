// Reading the software accelerator's JSON document, one function for each kind of object.
#include "kelctl/snapshot.h"

#include <nlohmann/json.hpp>

#include <charconv>
#include <string>

namespace kelctl
{
namespace
{

using nlohmann::json;

// "0x5c00000001" or null
handle handle_in(const json &value)
{
    handle read = 0;
    if (value.is_null())
        return read;
    const auto &text = value.get_ref<const std::string &>();
    std::from_chars(text.data() + 2, text.data() + text.size(), read, 16);
    return read;
}

snapshot::scheduler scheduler_in(const json &value)
{
    return {handle_in(value.at("handle")), handle_in(value.at("parent"))};
}

snapshot::queue queue_in(const json &value)
{
    return {.self = handle_in(value.at("handle")),
            .scheduler = handle_in(value.at("scheduler")),
            .rate = value.at("rate"),
            .burst = value.at("bucket_size"),
            .threshold = value.at("threshold"),
            .shaped = value.at("shaped")};
}

mac_address mac_in(const json &value)
{
    return parse_mac_address(value.get_ref<const std::string &>()).value_or(mac_address{});
}

snapshot::path path_in(const json &value)
{
    return {mac_in(value.at("mac")), handle_in(value.at("queue"))};
}

snapshot::pcep pcep_in(const json &value)
{
    return {.id = value.at("id"),
            .remote_id = value.at("remote_id"),
            .local_mac = mac_in(value.at("local_mac")),
            .remote_mac = mac_in(value.at("remote_mac")),
            .vlan = value.at("vlan"),
            .priority = value.at("priority"),
            .bound = false};
}

snapshot::group group_in(const json &value)
{
    return {value.at("id"), value.at("members")};
}

// The only target there is to be bound to is the EHSFP.
void read_bindings(const json &bindings, std::vector<snapshot::pcep> &pceps)
{
    for (const json &binding : bindings)
        for (snapshot::pcep &pcep : pceps)
            if (pcep.id == binding.at("pcep"))
                pcep.bound = true;
}

template <typename Element> std::vector<Element> list_in(const json &list, Element (*read)(const json &))
{
    std::vector<Element> elements;
    for (const json &value : list)
        elements.push_back(read(value));
    return elements;
}

} // namespace

bool snapshot::empty() const
{
    return schedulers.empty() && queues.empty() && paths.empty() && pceps.empty() && groups.empty() && !interface;
}

snapshot read_snapshot(std::string_view text)
{
    const json document = json::parse(text);
    snapshot read;
    read.schedulers = list_in(document.at("schedulers"), scheduler_in);
    read.queues = list_in(document.at("queues"), queue_in);
    read.paths = list_in(document.at("paths"), path_in);
    read.pceps = list_in(document.at("pceps"), pcep_in);
    read_bindings(document.at("bindings"), read.pceps);
    read.groups = list_in(document.at("groups"), group_in);
    if (const json &interface = document.at("interface"); !interface.is_null())
        read.interface = {interface.at("eth_dev_id"), interface.at("vsi")};
    if (const json &globals = document.at("globals"); !globals.is_null())
        read.globals = {globals.at("mtu"), globals.at("ether_type"), globals.at("settings")};
    if (const json &offset = document.at("timestamp_offset"); !offset.is_null())
        read.timestamp_offset = offset.get<int64_t>();
    return read;
}

} // namespace kelctl

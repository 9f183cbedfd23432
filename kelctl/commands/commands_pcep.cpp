// Rows of the PCEP service and of unicast PCEPs. Groups are in commands_group.cpp, counters in commands_statistics.cpp.
#include "kel/kel_core_ic_pcep.h"
#include "kel/kel_node_names.h"
#include "kelctl/commands/commands.h"
#include "kelctl/session/session.h"
#include "kelctl/values/limits.h"

#include <fmt/core.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <memory>

namespace kelctl
{
namespace
{

const argument pcep = {.name = "ID", .kind = kind::pcep_id(), .help = "id of the PCEP"};
const argument new_pcep = {.name = "ID", .kind = kind::new_pcep_id(), .help = "id of the PCEP"};

kel_pcep_config configuration_of(const arguments &given)
{
    // The remote id has 24 bits, in three octets, little-endian.
    const auto remote = given.number<uint32_t>("--remote-id");
    kel_pcep_config config{};
    for (size_t i = 0; i < std::size(config.remote_pcep_id); ++i)
        config.remote_pcep_id[i] = static_cast<uint8_t>(remote >> 8 * i);
    const mac_address local = given.mac("--local");
    const mac_address remote_end = given.mac("--remote");
    std::copy(local.octets.begin(), local.octets.end(), config.local_mac);
    std::copy(remote_end.octets.begin(), remote_end.octets.end(), config.remote_mac);
    config.vlan_id = given.number<uint16_t>("--vlan");
    config.priority = given.number<uint8_t>("--priority");
    config.byte19 = given.number<uint8_t>("--byte19");
    config.word20 = given.number<uint16_t>("--word20");
    return config;
}

result add_pcep(const invocation &asked, session &session)
{
    const kel_pcep_config config = configuration_of(asked.given);
    return session.call(asked, kel_core_ic_pcep_add, parameter::value("pcep_id", asked.given.number<uint32_t>("ID")),
                        parameter::input("config", config));
}

template <uint32_t (*Function)(uint32_t)> result change_pcep(const invocation &asked, session &session)
{
    return session.call(asked, Function, parameter::value("pcep_id", asked.given.number<uint32_t>("ID")));
}

result locate(const invocation &asked, session &session)
{
    uint32_t location = 0;
    uint32_t type = 0;
    result done = session.call(asked, kel_ic_pcep_get_location_and_type_from_branch,
                               parameter::input("mac", asked.given.mac("MAC")), parameter::output(location),
                               parameter::output(type));
    done.shown = {{"location", kel_location_name(location)}, {"location_code", location}, {"type", type}};
    return done;
}

// The companion library lists handles on a stream: the text that it made of them.
result dump_handles(const invocation &asked, session &session)
{
    char *text = nullptr;
    size_t size = 0;
    std::FILE *stream = open_memstream(&text, &size);
    if (!stream)
        throw std::bad_alloc();
    result done = session.call(asked, kel_core_ic_pcep_handle_dump, parameter::stream_value{stream});
    std::fclose(stream);
    const std::unique_ptr<char, void (*)(void *)> owned(text, std::free);
    done.text = std::string(text, size);
    done.shown = {{"dump", *done.text}};
    return done;
}

result ask_for_multicast_queue(const invocation &asked, session &session)
{
    kel_attach_info attach{};
    uint64_t queue = 0;
    uint64_t scheduler = 0;
    result done = session.call(asked, kel_core_ic_pcep_create_queue_and_scheduler_for_multicast,
                               parameter::output(attach), parameter::output(queue), parameter::output(scheduler));
    done.shown = {{"queue_handle", fmt::format("0x{:x}", queue)},
                  {"scheduler_handle", fmt::format("0x{:x}", scheduler)}};
    return done;
}

// --byte19 and --word20 are members that only the driver kit knows; without them a recorded call could not be repeated.
std::vector<argument> arguments_of_a_new_pcep()
{
    return {
        new_pcep,
        {.name = "--remote-id", .kind = kind::number(remote_id_range), .help = "id at the other end, 24 bits"},
        {.name = "--local", .kind = kind::mac(), .help = "address at this end; binds the PCEP if it is on the HSFP"},
        {.name = "--remote", .kind = kind::mac(), .help = "address at the other end"},
        {.name = "--vlan", .kind = kind::number(vlan_range, word_range), .help = "VLAN id"},
        {.name = "--priority",
         .kind = kind::number(priority_range, octet_range),
         .help = "VLAN priority",
         .otherwise = "0"},
        {.name = "--byte19",
         .kind = kind::number(octet_range),
         .help = "passed to the driver kit unchanged",
         .otherwise = "0"},
        {.name = "--word20",
         .kind = kind::number(word_range),
         .help = "passed to the driver kit unchanged",
         .otherwise = "0"}};
}

} // namespace

std::vector<command> pcep_commands()
{
    return {
        {.name = "pcep start",
         .variants = {{"kel_core_ic_pcep_start", call_plainly<kel_core_ic_pcep_start>}},
         .help = "Start the PCEP service with an empty table",
         .undo = "pcep stop",
         .makes = {.one = "PCEP service", .undone = "stopped"},
         .starts = "PCEP service"},
        {.name = "pcep stop",
         .variants = {{"kel_core_ic_pcep_stop", call_plainly<kel_core_ic_pcep_stop>}},
         .help = "Stop the PCEP service and clear its table",
         .details = "PCEPs and groups stay in the driver kit: remove them first."},
        {.name = "pcep add",
         .variants = {{"kel_core_ic_pcep_add", add_pcep}},
         .help = "Create a PCEP",
         .arguments = arguments_of_a_new_pcep(),
         .example = "pcep add 7 --remote-id 9 --local 02:00:00:03:00:01 "
                    "--remote 02:00:00:02:00:01 --vlan 100",
         .undo = "pcep remove",
         .makes = {"PCEP", "PCEPs", "removed"},
         .service = "PCEP service"},
        {.name = "pcep remove",
         .variants = {{"kel_core_ic_pcep_rem", change_pcep<kel_core_ic_pcep_rem>}},
         .help = "Remove a PCEP",
         .arguments = {pcep},
         .example = "pcep remove 7",
         .service = "PCEP service"},
        {.name = "pcep handles dump",
         .variants = {{"kel_core_ic_pcep_handle_dump", dump_handles}},
         .help = "List the driver-kit handles of all PCEPs"},
        {.name = "pcep multicast queue",
         .variants = {{"kel_core_ic_pcep_create_queue_and_scheduler_for_multicast", ask_for_multicast_queue}},
         .help = "Call the hook for multicast queues, which creates none"},
        {.name = "pcep locate",
         .variants = {{"kel_ic_pcep_get_location_and_type_from_branch", locate}},
         .help = "Show the location of an address and its type",
         .arguments = {{.name = "MAC", .kind = kind::mac(), .help = "any address"}},
         .example = "pcep locate 02:00:00:02:00:01"},
    };
}

} // namespace kelctl

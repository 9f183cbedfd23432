// Calls of the operations that change the PCEP service.
#include "kelctl/pcep_steps.h"

#include "kel/kel_core_ic_pcep.h"
#include "kelctl/library_call.h"

#include <algorithm>

namespace kelctl
{
namespace
{

// The stop forgets what stands and makes no driver-kit call, so everything else has to be removed before it.
step service_step()
{
    return {.make = operation_of("kel_core_ic_pcep_start", kel_core_ic_pcep_start),
            .undo = operation_of("kel_core_ic_pcep_stop", kel_core_ic_pcep_stop),
            .makes = {.one = "PCEP service", .undone = "stopped"}};
}

kel_pcep_config configuration_of(const pcep_entry &pcep)
{
    kel_pcep_config config{};
    config.remote_pcep_id[0] = static_cast<uint8_t>(pcep.remote_id);
    config.remote_pcep_id[1] = static_cast<uint8_t>(pcep.remote_id >> 8);
    config.remote_pcep_id[2] = static_cast<uint8_t>(pcep.remote_id >> 16);
    std::copy(pcep.local_mac.octets.begin(), pcep.local_mac.octets.end(), config.local_mac);
    std::copy(pcep.remote_mac.octets.begin(), pcep.remote_mac.octets.end(), config.remote_mac);
    config.vlan_id = pcep.vlan;
    config.priority = pcep.priority;
    return config;
}

// A PCEP whose binding failed stays in the driver kit, and the library knows of none: no operation can remove it.
step pcep_step(const pcep_entry &pcep)
{
    return {.make = operation_of("kel_core_ic_pcep_add", kel_core_ic_pcep_add, value("pcep_id", pcep.id),
                                 copied("config", configuration_of(pcep))),
            .undo = operation_of("kel_core_ic_pcep_rem", kel_core_ic_pcep_rem, value("pcep_id", pcep.id)),
            .makes = {"PCEP", "PCEPs", "removed"}};
}

step group_step(uint32_t group)
{
    const value id("mc_pcep_id", group);
    return {.make = operation_of("kel_core_ic_pcep_mc_group_add", kel_core_ic_pcep_mc_group_add, id),
            .undo = operation_of("kel_core_ic_pcep_mc_group_rem", kel_core_ic_pcep_mc_group_rem, id),
            .makes = {"multicast group", "multicast groups", "removed"}};
}

step member_step(uint32_t group, uint32_t member)
{
    const value group_id("mc_pcep_id", group);
    const value id("uc_pcep_id", member);
    return {.make = operation_of("kel_core_ic_pcep_mc_member_add", kel_core_ic_pcep_mc_member_add, group_id, id),
            .undo = operation_of("kel_core_ic_pcep_mc_member_rem", kel_core_ic_pcep_mc_member_rem, group_id, id),
            .makes = {"group member", "group members", "removed"}};
}

} // namespace

std::vector<step> pcep_steps(const node_file &node)
{
    if (node.pceps.empty() && node.groups.empty())
        return {};
    std::vector<step> steps = {service_step()};
    for (const pcep_entry &pcep : node.pceps)
        steps.push_back(pcep_step(pcep));
    for (const multicast_entry &group : node.groups)
        steps.push_back(group_step(group.id));
    for (const multicast_entry &group : node.groups)
        for (const placed_number &member : group.members)
            steps.push_back(member_step(group.id, member.value));
    return steps;
}

} // namespace kelctl

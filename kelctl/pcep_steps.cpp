// Calls of the operations that change the PCEP service.
#include "kelctl/pcep_steps.h"

#include "kel/kel_core_ic_pcep.h"

#include <fmt/format.h>

#include <algorithm>

namespace kelctl
{
namespace
{

// The stop forgets what stands and makes no driver-kit call, so everything else has to be removed before it.
step service_step()
{
    return {.make = {[] { return "kel_core_ic_pcep_start()"; }, kel_core_ic_pcep_start},
            .undo = {[] { return "kel_core_ic_pcep_stop()"; }, kel_core_ic_pcep_stop},
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

std::string add_text(const pcep_entry &pcep)
{
    return fmt::format("kel_core_ic_pcep_add(pcep_id={}, remote_pcep_id={}, local_mac={}, remote_mac={}, vlan_id={}, "
                       "priority={})",
                       pcep.id, pcep.remote_id, to_text(pcep.local_mac), to_text(pcep.remote_mac), pcep.vlan,
                       pcep.priority);
}

// A PCEP whose binding failed stays in the driver kit, and the library knows of none: no operation can remove it.
step pcep_step(const pcep_entry &pcep)
{
    const auto add = [&pcep] {
        const kel_pcep_config config = configuration_of(pcep);
        return kel_core_ic_pcep_add(pcep.id, &config);
    };
    return {.make = {[&pcep] { return add_text(pcep); }, add},
            .undo = {[&pcep] { return fmt::format("kel_core_ic_pcep_rem(pcep_id={})", pcep.id); },
                     [&pcep] { return kel_core_ic_pcep_rem(pcep.id); }},
            .makes = {"PCEP", "PCEPs", "removed"}};
}

operation group_operation(const char *function, uint32_t (*call)(uint32_t), uint32_t group)
{
    return {[=] { return fmt::format("{}(mc_pcep_id={})", function, group); }, [=] { return call(group); }};
}

step group_step(uint32_t group)
{
    return {.make = group_operation("kel_core_ic_pcep_mc_group_add", kel_core_ic_pcep_mc_group_add, group),
            .undo = group_operation("kel_core_ic_pcep_mc_group_rem", kel_core_ic_pcep_mc_group_rem, group),
            .makes = {"multicast group", "multicast groups", "removed"}};
}

operation member_operation(const char *function, uint32_t (*call)(uint32_t, uint32_t), uint32_t group, uint32_t member)
{
    return {[=] { return fmt::format("{}(mc_pcep_id={}, uc_pcep_id={})", function, group, member); },
            [=] { return call(group, member); }};
}

step member_step(uint32_t group, uint32_t member)
{
    return {.make = member_operation("kel_core_ic_pcep_mc_member_add", kel_core_ic_pcep_mc_member_add, group, member),
            .undo = member_operation("kel_core_ic_pcep_mc_member_rem", kel_core_ic_pcep_mc_member_rem, group, member),
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

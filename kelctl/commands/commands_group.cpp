// Rows of multicast groups and their members. The PCEPs that become members are in commands_pcep.cpp.
#include "kel/kel_core_ic_pcep.h"
#include "kelctl/commands/commands.h"
#include "kelctl/session/session.h"

namespace kelctl
{
namespace
{

// Completion offers the ids of groups that exist, but none for one that is yet to be made.
const argument group = {.name = "GROUP", .kind = kind::group_id(), .help = "id of the multicast group"};
const argument new_group = {.name = "GROUP", .kind = kind::new_group_id(), .help = "id of the multicast group"};
const argument member = {.name = "ID", .kind = kind::pcep_id(), .help = "id of the PCEP"};

template <uint32_t (*Function)(uint32_t)> result change_group(const invocation &asked, session &session)
{
    return session.call(asked, Function, parameter::value("mc_pcep_id", asked.given.number<uint32_t>("GROUP")));
}

template <uint32_t (*Function)(uint32_t, uint32_t)> result change_member(const invocation &asked, session &session)
{
    return session.call(asked, Function, parameter::value("mc_pcep_id", asked.given.number<uint32_t>("GROUP")),
                        parameter::value("uc_pcep_id", asked.given.number<uint32_t>("ID")));
}

} // namespace

std::vector<command> group_commands()
{
    return {
        {.name = "group add",
         .variants = {{"kel_core_ic_pcep_mc_group_add", change_group<kel_core_ic_pcep_mc_group_add>}},
         .help = "Create a multicast group",
         .arguments = {new_group},
         .example = "group add 300",
         .undo = "group remove",
         .makes = {"multicast group", "multicast groups", "removed"},
         .service = "PCEP service"},
        {.name = "group remove",
         .variants = {{"kel_core_ic_pcep_mc_group_rem", change_group<kel_core_ic_pcep_mc_group_rem>}},
         .help = "Delete a multicast group without members",
         .arguments = {group},
         .example = "group remove 300",
         .service = "PCEP service"},
        {.name = "group member add",
         .variants = {{"kel_core_ic_pcep_mc_member_add", change_member<kel_core_ic_pcep_mc_member_add>}},
         .help = "Add a PCEP to a multicast group",
         .arguments = {group, member},
         .example = "group member add 300 7",
         .undo = "group member remove",
         .makes = {"group member", "group members", "removed"},
         .service = "PCEP service"},
        {.name = "group member remove",
         .variants = {{"kel_core_ic_pcep_mc_member_rem", change_member<kel_core_ic_pcep_mc_member_rem>}},
         .help = "Remove a PCEP from a multicast group",
         .arguments = {group, member},
         .example = "group member remove 300 7",
         .service = "PCEP service"},
    };
}

} // namespace kelctl

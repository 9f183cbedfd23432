// Rows for values that the whole process shares: the own MP id, the service-wide parameters, the fixed limits.
#include "kel/kel_core_ic_ebcom.h"
#include "kelctl/commands/commands.h"
#include "kelctl/session/session.h"
#include "kelctl/values/limits.h"
#include "kelctl/values/mp_id.h"

#include <fmt/core.h>

#include <array>

namespace kelctl
{
namespace
{

// No library call: the library reads the environment variable MPID, and keeps the first id that it finds.
result set_mp_id(const invocation &asked, session &)
{
    const auto id = asked.given.number<uint8_t>("MPID");
    if (adopt_mp_id(id))
        return {};
    return refused(
        fmt::format("the MP id cannot change to {}: the library already uses {} in this process", id, own_mp_id()));
}

// The settings are two octets at an address of their own; the library uses the low 4 bits of each.
result set_parameters(const invocation &asked, session &session)
{
    const auto &numbers = asked.given.get<std::vector<uint32_t>>("--settings");
    const std::array<uint8_t, 2> settings = {static_cast<uint8_t>(numbers[0]), static_cast<uint8_t>(numbers[1])};
    const kel_ebcom_global_params params = {asked.given.number<uint32_t>("--mtu"),
                                            asked.given.number<uint32_t>("--ether-type")};
    return session.call(asked, kel_core_ic_ebcom_global_param_set, parameter::input("params", params),
                        parameter::input("settings", settings));
}

result show_capabilities(const invocation &asked, session &session)
{
    kel_ebcom_capabilities capabilities{};
    result done = session.call(asked, kel_core_ic_ebcom_capabilities_get, parameter::output(capabilities));
    done.shown = {{"max_burst_size", capabilities.max_burst_size},
                  {"max_pcep_id", capabilities.max_pcep_id},
                  {"max_multicast_groups", capabilities.max_multicast_groups},
                  {"max_multicast_members", capabilities.max_multicast_members}};
    return done;
}

} // namespace

std::vector<command> parameter_commands()
{
    return {
        {.name = "mpid",
         .variants = {{.run = set_mp_id}},
         .help = "Set the own MP id, the number of this processor",
         .details = "The library reads it once per process.",
         .arguments = {{.name = "MPID", .kind = kind::number(mpid_range), .help = "own MP id"}},
         .example = "mpid 5",
         .carried_out = executor::nobody},
        {.name = "ebcom params set",
         .variants = {{"kel_core_ic_ebcom_global_param_set", set_parameters}},
         .help = "Set the service-wide Ethernet parameters",
         .arguments = {{.name = "--mtu", .kind = kind::number(mtu_range, dword_range), .help = "MTU of the IC ports"},
                       {.name = "--ether-type",
                        .kind = kind::number(ether_type_range, dword_range),
                        .help = "EtherType of EBCOM frames"},
                       {.name = "--settings", .kind = kind::octets(2, setting_range), .help = "two 4-bit values"}},
         .example = "ebcom params set --mtu 1500 --ether-type 0x88b5 --settings 1,2",
         .makes = {.one = "parameters"}},
        {.name = "ebcom capabilities",
         .variants = {{"kel_core_ic_ebcom_capabilities_get", show_capabilities}},
         .help = "Show the fixed limits of the service"},
    };
}

} // namespace kelctl

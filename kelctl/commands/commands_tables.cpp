// Rows that print fixed tables and call no operation: ports and locations, codes, limits.
#include "kel/kel_core_ic_ebcom.h"
#include "kel/kel_node_names.h"
#include "kelctl/accelerator/software_accelerator.h"
#include "kelctl/commands/commands.h"
#include "kelctl/results/result.h"
#include "kelctl/values/ic_port.h"
#include "kelctl/values/limits.h"
#include "platform/kei_util.h"
#include "platform/kel_init.h"
#include "platform/ork.h"

#include <fmt/core.h>

namespace kelctl
{
namespace
{

fields port_row(int32_t port)
{
    const auto row = qos_row(port);
    return {{"port", port},
            {"name", kel_branch_name(port)},
            {"ebcom", row.has_value()},
            {"scheduler", row ? fields(row->scheduler) : fields(nullptr)},
            {"queue", row ? fields(row->queue) : fields(nullptr)}};
}

// How the bytes 2 and 3 of an address, counted from 0, give its owner's location.
constexpr struct location_bytes {
    kel_location location;
    const char *byte3;
    const char *byte2;
} locations[] = {
    {KEL_LOCATION_OB, "2", "any"},
    {KEL_LOCATION_HSFP, "3", "any"},
    {KEL_LOCATION_CPU, "0", "0x80 and above, or the own MP id"},
    {KEL_LOCATION_EIOA, "other", "other"},
};

fields location_row(const location_bytes &row)
{
    return {{"location", kel_location_name(row.location)},
            {"code", static_cast<int>(row.location)},
            {"mac_byte_3", row.byte3},
            {"mac_byte_2", row.byte2}};
}

result show_ports(const invocation &, session &)
{
    result done;
    for (int32_t port = 0; port < KEL_IELL_PORT_COUNT; ++port)
        done.shown["ports"].push_back(port_row(port));
    done.shown["locations"] = list_of(locations, location_row);
    return done;
}

// The codes that have a meaning, and what gives them.
constexpr struct {
    uint32_t code;
    const char *given;
} library_codes[] = {
    {KEL_RC_OK, "always on success"},
    {KEL_RC_ZERO_FREQUENCY, "a timing reading without a frequency"},
    {KEL_RC_OUT_OF_RANGE, "unknown IC port, unsupported location, invalid PCEP id"},
    {KEL_RC_NOT_FOUND, "destination not configured, PCEP id free"},
    {KEL_RC_IN_USE, "PCEP id taken"},
    {KEL_RC_NOT_EMPTY, "multicast group with members"},
    {KEL_RC_MISMATCH, "other kind of PCEP, or other shaping"},
    {KEL_RC_LIMIT, "limit reached, or no memory"},
    {KEL_RC_UNSUPPORTED, "not offered for this kind of object"},
    {KEL_RC_FAILED, "a driver-kit, thread or file call failed"},
};

constexpr struct {
    ork_rc code;
    const char *name;
} driver_kit_codes[] = {
    {ORK_OK, "OK"},
    {ORK_INVAL, "INVAL"},
    {ORK_UNSUPP, "UNSUPP"},
    {ORK_NOPORT, "NOPORT"},
    {ORK_AGAIN, "AGAIN"},
    {ORK_SHUTDOWN, "SHUTDOWN"},
    {ORK_NODOMAIN, "NODOMAIN"},
    {ORK_INTERNAL, "INTERNAL"},
    {ORK_NOTAVAIL, "NOTAVAIL"},
    {ORK_OUTOFRANGE, "OUTOFRANGE"},
};

// Texts come from the closed libraries, as trace records have them, and not from tables of kelctl.
result show_codes(const invocation &, session &)
{
    result done;
    for (const auto &[code, given] : library_codes)
        done.shown["codes"].push_back({{"code", code}, {"text", kei_util_init_rc_str_get(code)}, {"given_by", given}});
    void *sys_handle = nullptr;
    ork_syshandle_get(0, 1, &sys_handle);
    for (const auto &[code, name] : driver_kit_codes)
        done.shown["driver_kit_codes"].push_back({{"driver_kit_code", code},
                                                  {"record", fmt::format("0x{:x}", static_cast<uint32_t>(code))},
                                                  {"name", name},
                                                  {"text", ork_sys_status_get(sys_handle, code)}});
    return done;
}

constexpr struct {
    const char *what;
    range allowed;
} value_limits[] = {
    {"own MP id", mpid_range},
    {"MTU of the IC ports", mtu_range},
    {"EtherType", ether_type_range},
    {"setting", setting_range},
    {"rate of a shaped queue", rate_range},
    {"burst of a shaped queue", burst_range},
    {"threshold of a queue", threshold_range},
    {"id of a PCEP or group", id_range},
    {"remote id of a PCEP", remote_id_range},
    {"VLAN id", vlan_range},
    {"priority", priority_range},
};

// Limits of the library, of the platform where it says any, and of values where kelctl is stricter than both.
result show_limits(const invocation &, session &)
{
    kel_ebcom_capabilities capabilities{};
    kel_core_ic_ebcom_capabilities_get(&capabilities);
    result done;
    done.shown = {{"max_burst_size", capabilities.max_burst_size},
                  {"max_pcep_id", capabilities.max_pcep_id},
                  {"max_multicast_groups", capabilities.max_multicast_groups},
                  {"max_multicast_members", capabilities.max_multicast_members}};
    const auto platform = accelerator_limits();
    done.shown["platform"] = platform ? *platform : fields(nullptr);
    for (const auto &[what, allowed] : value_limits)
        done.shown["values"].push_back(
            {{"value", what}, {"min", allowed.min}, {"max", allowed.max}, {"allowed", allowed.text}});
    return done;
}

} // namespace

std::vector<command> table_commands()
{
    return {
        {.name = "ports",
         .variants = {{.run = show_ports}},
         .help = "List IC ports with their QoS rows, and locations",
         .offline = true},
        {.name = "codes", .variants = {{.run = show_codes}}, .help = "List return codes and the driver kit's codes"},
        {.name = "limits",
         .variants = {{.run = show_limits}},
         .help = "List the limits of the service and of values",
         .offline = true},
    };
}

} // namespace kelctl

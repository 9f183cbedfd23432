// Calls of the operations that change the EBCOM service.
#include "kelctl/ebcom_steps.h"

#include "kelctl/library_call.h"
#include "kelctl/limits.h"

#include <algorithm>

namespace kelctl
{
namespace
{

kel_ebcom_path_config path_configuration(const path_entry &entry, const mac_address &dst_mac)
{
    kel_ebcom_path_config config{};
    std::copy(dst_mac.octets.begin(), dst_mac.octets.end(), config.dst_mac);
    config.iell_port = entry.port;
    if (!entry.shaping)
        return config;
    config.shaping_enabled = 1;
    config.shaping_rate = entry.shaping->rate;
    config.burst_size = entry.shaping->burst;
    config.buffer_threshold = entry.shaping->threshold / threshold_block;
    return config;
}

step global_parameters_step(const ebcom_parameters &parameters)
{
    const kel_ebcom_global_params params = {parameters.ic_port_mtu, parameters.ether_type};
    return {.make = operation_of("kel_core_ic_ebcom_global_param_set", kel_core_ic_ebcom_global_param_set,
                                 copied("params", params), input("settings", parameters.settings)),
            .undo = {},
            .makes = {.one = "parameters"}};
}

step interface_step()
{
    return {.make = operation_of("kel_core_ic_ebcom_interface_create", kel_core_ic_ebcom_interface_create,
                                 unread<kel_vsi_t>(), unread<uint16_t>()),
            .undo = operation_of("kel_core_ic_ebcom_interface_delete", kel_core_ic_ebcom_interface_delete),
            .makes = {.one = "interface", .undone = "deleted"},
            .failure_leaves_something = true};
}

step service_step()
{
    return {.make = operation_of("kel_core_ic_ebcom_start", kel_core_ic_ebcom_start),
            .undo = operation_of("kel_core_ic_ebcom_stop", kel_core_ic_ebcom_stop),
            .makes = {.one = "EBCOM service", .undone = "stopped"},
            .failure_leaves_something = true};
}

// What a failed path add leaves is a reference on a queue, which the service's stop releases.
step path_step(const kel_ebcom_path_config &path)
{
    return {.make = operation_of("kel_core_ic_ebcom_path_add", kel_core_ic_ebcom_path_add, input("config", path)),
            .undo = operation_of("kel_core_ic_ebcom_path_rem", kel_core_ic_ebcom_path_rem, input("config", path)),
            .makes = {"path", "paths", "removed"}};
}

} // namespace

std::vector<kel_ebcom_path_config> path_configurations(const node_file &node)
{
    std::vector<kel_ebcom_path_config> paths;
    for (const path_entry &entry : node.paths)
        for (uint32_t i = 0; i < entry.count; ++i)
            paths.push_back(path_configuration(entry, counted_up(entry.dst_mac, i)));
    return paths;
}

std::vector<step> ebcom_steps(const ebcom_parameters &parameters, const std::vector<kel_ebcom_path_config> &paths)
{
    std::vector<step> steps = {global_parameters_step(parameters), interface_step(), service_step()};
    steps.reserve(steps.size() + paths.size());
    for (const kel_ebcom_path_config &path : paths)
        steps.push_back(path_step(path));
    return steps;
}

} // namespace kelctl

// Calls of the operations that change the EBCOM service.
#include "kelctl/ebcom_steps.h"

#include "kelctl/c_text.h"
#include "kelctl/limits.h"

#include <fmt/format.h>

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

std::string path_text(std::string_view function, const kel_ebcom_path_config &path)
{
    return fmt::format("{}({})", function, told("config", path));
}

step global_parameters_step(const ebcom_parameters &parameters)
{
    const auto text = [&parameters] {
        return fmt::format("kel_core_ic_ebcom_global_param_set(icPortMTU={}, etherType=0x{:04x}, settings={}, {})",
                           parameters.ic_port_mtu, parameters.ether_type, parameters.settings[0],
                           parameters.settings[1]);
    };
    const auto set = [&parameters] {
        const kel_ebcom_global_params globals = {parameters.ic_port_mtu, parameters.ether_type};
        return kel_core_ic_ebcom_global_param_set(&globals, parameters.settings.data());
    };
    return {.make = {text, set}, .undo = {}, .makes = {.one = "parameters"}};
}

step interface_step()
{
    const auto create = [] {
        kel_vsi_t vsi = 0;
        uint16_t out = 0;
        return kel_core_ic_ebcom_interface_create(&vsi, &out);
    };
    return {.make = {[] { return "kel_core_ic_ebcom_interface_create()"; }, create},
            .undo = {[] { return "kel_core_ic_ebcom_interface_delete()"; }, kel_core_ic_ebcom_interface_delete},
            .makes = {.one = "interface", .undone = "deleted"},
            .failure_leaves_something = true};
}

step service_step()
{
    return {.make = {[] { return "kel_core_ic_ebcom_start()"; }, kel_core_ic_ebcom_start},
            .undo = {[] { return "kel_core_ic_ebcom_stop()"; }, kel_core_ic_ebcom_stop},
            .makes = {.one = "EBCOM service", .undone = "stopped"},
            .failure_leaves_something = true};
}

// What a failed path add leaves is a reference on a queue, which the service's stop releases.
step path_step(const kel_ebcom_path_config &path)
{
    return {.make = {[&path] { return path_text("kel_core_ic_ebcom_path_add", path); },
                     [&path] { return kel_core_ic_ebcom_path_add(&path); }},
            .undo = {[&path] { return path_text("kel_core_ic_ebcom_path_rem", path); },
                     [&path] { return kel_core_ic_ebcom_path_rem(&path); }},
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

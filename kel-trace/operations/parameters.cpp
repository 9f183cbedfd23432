// Splits texts like "localPcepId=7, sMac=02:00:00:03:00:01(HSFP)" into parameters, and finds the objects that they
// name.
#include "kel-trace/operations/parameters.h"

#include "text/refusal.h"

#include <algorithm>

namespace kel_trace
{
namespace
{

// Which parameters name an object. Only path operations have dst_mac: the addresses of a PCEP have other names.
constexpr struct {
    std::string_view parameter;
    std::string_view object;
} naming[] = {
    {"dst_mac", "path"},    {"localPcepId", "PCEP"}, {"pcep_id", "PCEP"},         {"PCEP_ID", "PCEP"},
    {"uc_pcep_id", "PCEP"}, {"mc_pcep_id", "group"}, {"eth_dev_id", "interface"},
};

// Calls whose arguments come from the caller of the operation. The arguments of other calls are the library's own
// choice.
constexpr std::string_view calls_with_parameters[] = {
    "ork_ebcom_global_config_set",
    "ork_ebcom_interface_create",
    "ork_ebcom_interface_delete",
    "ork_ebcom_pcep_create",
    "ork_ebcom_pcep_delete",
    "ork_bind",
    "ork_unbind",
    "ork_ebcom_multicast_group_delete",
    "ork_ebcom_multicast_member_add",
    "ork_ebcom_multicast_member_rem",
};

std::string_view trimmed(std::string_view text)
{
    const size_t first = std::min(text.find_first_not_of(' '), text.size());
    text.remove_prefix(first);
    return text.substr(0, text.find_last_not_of(' ') + 1);
}

// The arguments of an announcement: what is in its parentheses, or after them.
std::string_view arguments_of(std::string_view detail)
{
    if (const size_t after = detail.find("): "); after != std::string_view::npos) {
        detail.remove_prefix(after + 3);
        return detail.substr(0, detail.find(" -> "));
    }
    const size_t begin = detail.find('(');
    return detail.ends_with(')') && begin != std::string_view::npos
               ? detail.substr(begin + 1, detail.size() - begin - 2)
               : "";
}

// The first record with a name decides its value.
void add_parameters(event event, std::string_view detail, std::vector<parameter> &parameters)
{
    if (event != event::fn_param) {
        if (event != event::api_call ||
            std::ranges::find(calls_with_parameters, called_function(detail)) == std::end(calls_with_parameters))
            return;
        detail = arguments_of(detail);
    }
    while (!detail.empty()) {
        const std::string_view one = detail.substr(0, detail.find(", "));
        detail.remove_prefix(std::min(one.size() + 2, detail.size()));
        const size_t sign = one.find('=');
        if (sign == std::string_view::npos)
            continue;
        const std::string_view name = trimmed(one.substr(0, sign));
        if (std::ranges::find(parameters, name, &parameter::name) == parameters.end())
            parameters.push_back({std::string(name), std::string(trimmed(one.substr(sign + 1)))});
    }
}

} // namespace

std::string_view called_function(std::string_view detail)
{
    return detail.substr(0, detail.find_first_of("(: "));
}

std::vector<parameter> parameters_of(const operation &operation)
{
    std::vector<parameter> parameters;
    for (const kept_record &one : operation.records())
        add_parameters(one.event, text::parts_of(one.message).detail, parameters);
    return parameters;
}

std::vector<std::string> objects_of(const operation &operation)
{
    std::vector<std::string> objects;
    for (const parameter &one : parameters_of(operation))
        for (const auto &[name, object] : naming) {
            if (one.name != name)
                continue;
            std::string text(object);
            text.append(" ").append(one.value);
            if (std::ranges::find(objects, text) == objects.end())
                objects.push_back(std::move(text));
        }
    return objects;
}

} // namespace kel_trace

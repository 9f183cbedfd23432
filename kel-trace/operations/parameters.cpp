// Taking texts like "localPcepId=7, sMac=02:00:00:03:00:01(HSFP)" apart.
#include "kel-trace/operations/parameters.h"

#include "text/refusal.h"

#include <algorithm>

namespace kel_trace
{
namespace
{

// Which parameters name an object. A path's address is that of its operations only: a PCEP's are others.
constexpr struct {
    std::string_view parameter;
    std::string_view object;
} naming[] = {
    {"dst_mac", "path"},    {"localPcepId", "PCEP"}, {"pcep_id", "PCEP"},         {"PCEP_ID", "PCEP"},
    {"uc_pcep_id", "PCEP"}, {"mc_pcep_id", "group"}, {"eth_dev_id", "interface"},
};

// Calls whose arguments say what the operation is about. Those of the others are the library's own.
constexpr std::string_view telling_calls[] = {
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
std::string_view arguments_of(std::string_view told)
{
    if (const size_t after = told.find("): "); after != std::string_view::npos) {
        told.remove_prefix(after + 3);
        return told.substr(0, told.find(" -> "));
    }
    const size_t begin = told.find('(');
    return told.ends_with(')') && begin != std::string_view::npos ? told.substr(begin + 1, told.size() - begin - 2)
                                                                  : "";
}

// Adds those of a record, unless they are there already.
void add_parameters(event event, std::string_view told, std::vector<parameter> &parameters)
{
    if (event != event::fn_param) {
        if (event != event::api_call ||
            std::ranges::find(telling_calls, called_function(told)) == std::end(telling_calls))
            return;
        told = arguments_of(told);
    }
    while (!told.empty()) {
        const std::string_view one = told.substr(0, told.find(", "));
        told.remove_prefix(std::min(one.size() + 2, told.size()));
        const size_t sign = one.find('=');
        if (sign == std::string_view::npos)
            continue;
        const std::string_view name = trimmed(one.substr(0, sign));
        if (std::ranges::find(parameters, name, &parameter::name) == parameters.end())
            parameters.push_back({std::string(name), std::string(trimmed(one.substr(sign + 1)))});
    }
}

} // namespace

std::string_view called_function(std::string_view told)
{
    return told.substr(0, told.find_first_of("(: "));
}

std::vector<parameter> parameters_of(const operation &operation)
{
    std::vector<parameter> parameters;
    for (const kept_record &one : operation.records())
        add_parameters(one.event, text::spoken_in(one.message).told, parameters);
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

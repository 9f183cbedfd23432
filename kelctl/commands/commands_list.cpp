// What exists of each kind: what this process set up, on every platform. What the software accelerator holds is shown
// by "snapshot" (commands_accelerator.cpp); how objects are found is change/node_model.h.
#include "kel/kel_node_names.h"
#include "kelctl/change/discrepancies.h"
#include "kelctl/change/node_model.h"
#include "kelctl/commands/commands.h"
#include "kelctl/session/session.h"
#include "kelctl/values/ic_port.h"
#include "kelctl/values/limits.h"
#include "kelctl/values/mp_id.h"
#include "kelctl/values/quantity_messages.h"

#include <algorithm>
#include <map>
#include <utility>

namespace kelctl
{
namespace
{

constexpr std::string_view list_details =
    R"(What this process set up and has not removed. On the software accelerator it is
compared with what the accelerator holds, and every difference is a warning.)";

constexpr std::pair<std::string_view, std::span<const unit>> quantities[] = {
    {"rate", rate_units}, {"burst", size_units}, {"threshold", size_units}};

// A row with its quantities in units, as people read it. Programs get plain numbers in kbit/s and octets.
fields row_for_people(const fields &row)
{
    fields shown = fields::object();
    for (const auto &[name, value] : row.members()) {
        const auto *const found = std::ranges::find(quantities, name, [](const auto &one) { return one.first; });
        shown[name] = found == std::end(quantities) || value.is_null()
                          ? value
                          : fields(quantity_text(value.number<uint64_t>(), found->second));
    }
    return shown;
}

// With what the accelerator holds otherwise, of this kind.
result listed(std::string_view name, fields rows, object_kind kind, const node_model &model, const session &session)
{
    result done;
    done.text = list_text(name, list_of(rows, row_for_people), session.output_page());
    done.shown[name] = std::move(rows);
    done.shown["discrepancies"] = nullptr;
    const auto found = discrepancies(model, session);
    if (!found)
        return done;
    fields told = fields::array();
    for (const discrepancy &one : *found)
        if (one.kind == kind) {
            told.push_back({{"object", one.object}, {"what", one.what}});
            done.warnings.push_back(without_position(text_of(one)));
        }
    done.shown["discrepancies"] = std::move(told);
    return done;
}

// Whether an option was not given, or is this.
template <typename Value> bool fits(const arguments &filter, std::string_view option, const Value &value)
{
    return !filter.has(option) || filter.get<Value>(option) == value;
}

fields value_or_null(const arguments &given, std::string_view argument)
{
    return given.has(argument) ? fields(given.number<uint64_t>(argument)) : fields(nullptr);
}

// A path is used unless another one to its destination was added after it.
result list_paths(const invocation &asked, session &session)
{
    const node_model model = model_of(session);
    std::map<mac_address, const node_object *> last_to; // the one that the accelerator sends through
    for (const node_object &one : model)
        if (one.key.kind == object_kind::path)
            last_to[one.key.mac] = &one;
    fields rows = fields::array();
    for (const node_object &one : model)
        if (one.key.kind == object_kind::path && fits(asked.given, "--to", one.key.mac) &&
            fits(asked.given, "--port", one.key.number))
            rows.push_back({{"destination", to_text(one.key.mac)},
                            {"location", kel_location_name(location_of(one.key.mac, own_mp_id()))},
                            {"port", one.key.number},
                            {"name", kel_branch_name(static_cast<int32_t>(one.key.number))},
                            {"used", last_to.at(one.key.mac) == &one}});
    return listed("paths", std::move(rows), object_kind::path, model, session);
}

// The first path or shaper of a port has made its queue.
result list_queues(const invocation &asked, session &session)
{
    const node_model model = model_of(session);
    std::map<int64_t, size_t> row_of;
    fields rows = fields::array();
    for (const node_object &one : model) {
        if (!uses_queue(one.key) || !fits(asked.given, "--port", one.key.number))
            continue;
        const auto [found, is_new] = row_of.try_emplace(one.key.number, rows.size());
        if (is_new)
            rows.push_back({{"port", one.key.number},
                            {"name", kel_branch_name(static_cast<int32_t>(one.key.number))},
                            {"rate", value_or_null(one.asked.given, "--rate")},
                            {"burst", value_or_null(one.asked.given, "--burst")},
                            {"threshold", one.asked.given.number<uint64_t>("--threshold")},
                            {"paths", 0},
                            {"shapers", 0}});
        fields &count = rows[found->second][one.key.kind == object_kind::path ? "paths" : "shapers"];
        count = count.number<uint64_t>() + 1;
    }
    return listed("queues", std::move(rows), object_kind::queue, model, session);
}

result list_pceps(const invocation &asked, session &session)
{
    const node_model model = model_of(session);
    fields rows = fields::array();
    for (const node_object &one : model) {
        const arguments &given = one.asked.given;
        if (one.key.kind != object_kind::pcep || !fits(asked.given, "--id", one.key.number) ||
            !fits(asked.given, "--vlan", given.get<int64_t>("--vlan")) ||
            !fits(asked.given, "--local", given.mac("--local")) ||
            !fits(asked.given, "--remote", given.mac("--remote")))
            continue;
        rows.push_back({{"id", one.key.number},
                        {"remote_id", given.number<uint32_t>("--remote-id")},
                        {"vlan", given.number<uint32_t>("--vlan")},
                        {"priority", given.number<uint32_t>("--priority")},
                        {"local", to_text(given.mac("--local"))},
                        {"remote", to_text(given.mac("--remote"))}});
    }
    return listed("pceps", std::move(rows), object_kind::pcep, model, session);
}

bool holds(const fields &list, int64_t number)
{
    return std::any_of(list.begin(), list.end(), [&](const fields &one) { return one.number<int64_t>() == number; });
}

// Members are collected first, as they come after all groups in the model.
result list_groups(const invocation &asked, session &session)
{
    const node_model model = model_of(session);
    std::map<int64_t, fields> members_of;
    for (const node_object &one : model)
        if (one.key.kind == object_kind::member)
            members_of.try_emplace(one.key.number, fields::array()).first->second.push_back(one.key.pcep);
    fields rows = fields::array();
    for (const node_object &one : model) {
        if (one.key.kind != object_kind::group || !fits(asked.given, "--id", one.key.number))
            continue;
        fields members = members_of.try_emplace(one.key.number, fields::array()).first->second;
        if (!asked.given.has("--member") || holds(members, asked.given.number<int64_t>("--member")))
            rows.push_back({{"id", one.key.number}, {"members", std::move(members)}});
    }
    return listed("groups", std::move(rows), object_kind::group, model, session);
}

// An option that leaves out all other rows.
argument only(std::string name, argument_kind kind, std::string help)
{
    return {.name = std::move(name), .kind = std::move(kind), .help = std::move(help), .required = false};
}

} // namespace

std::vector<command> list_commands()
{
    return {
        {.name = "ebcom path list",
         .variants = {{.run = list_paths}},
         .help = "List the paths that exist",
         .details = list_details,
         .arguments = {only("--port", kind::ebcom_port(), "those from this IC port"),
                       only("--to", kind::mac(), "those to this destination")},
         .example = "ebcom path list --port RLU1P"},
        {.name = "ebcom queue list",
         .variants = {{.run = list_queues}},
         .help = "List the queues that exist, with their shaping",
         .details = list_details,
         .arguments = {only("--port", kind::ebcom_port(), "that of this IC port")},
         .example = "ebcom queue list --port RLU1P"},
        {.name = "pcep list",
         .variants = {{.run = list_pceps}},
         .help = "List the PCEPs that exist",
         .details = list_details,
         .arguments = {only("--id", kind::pcep_id(), "that with this id"),
                       only("--vlan", kind::number(vlan_range, word_range), "those with this VLAN id"),
                       only("--local", kind::mac(), "those with this address at this end"),
                       only("--remote", kind::mac(), "those with this address at the other end")},
         .example = "pcep list --vlan 100"},
        {.name = "group list",
         .variants = {{.run = list_groups}},
         .help = "List the multicast groups that exist",
         .details = list_details,
         .arguments = {only("--id", kind::group_id(), "that with this id"),
                       only("--member", kind::pcep_id(), "those with this PCEP")},
         .example = "group list --member 7"},
    };
}

} // namespace kelctl

// Which row makes which object.
#include "kelctl/change/node_model.h"

#include "kelctl/values/ic_port.h"
#include "kelctl/values/mp_id.h"

#include <fmt/core.h>

#include <algorithm>
#include <iterator>
#include <set>
#include <utility>

namespace kelctl
{
namespace
{

// A row that makes an object, and which of its arguments are the object's key.
struct maker {
    std::string_view row;
    object_kind kind;
    std::string_view number = {}; // arguments that the key consists of; empty: none
    std::string_view mac = {};
    std::string_view pcep = {};
};

constexpr maker makers[] = {
    {"mpid", object_kind::mp_id},
    {"ebcom params set", object_kind::parameters},
    {"ebcom interface create", object_kind::interface},
    {"ebcom start", object_kind::ebcom_service},
    {"ebcom qos init", object_kind::scheduler_tree},
    {"ebcom path add", object_kind::path, "--port", "MAC"},
    {"ebcom shaper add", object_kind::shaper, "--port", "MAC"},
    {"pcep start", object_kind::pcep_service},
    {"pcep add", object_kind::pcep, "ID"},
    {"group add", object_kind::group, "GROUP"},
    {"group member add", object_kind::member, "GROUP", {}, "ID"},
};

constexpr std::string_view names[] = {"MP id",
                                      "parameters",
                                      "interface",
                                      "EBCOM service",
                                      "scheduler tree",
                                      "queue of {port}",
                                      "path to {mac} on {port}",
                                      "shaper for {mac} on {port}",
                                      "PCEP service",
                                      "PCEP {number}",
                                      "group {number}",
                                      "member {member} of group {number}"};
static_assert(std::size(names) == static_cast<size_t>(object_kind::member) + 1);

object_key key_of(const maker &made, const arguments &given)
{
    object_key key = {.kind = made.kind};
    if (!made.number.empty())
        key.number = given.number<int64_t>(made.number);
    if (!made.mac.empty())
        key.mac = given.mac(made.mac);
    if (!made.pcep.empty())
        key.pcep = given.number<int64_t>(made.pcep);
    return key;
}

// Several paths of one line are as many objects. Where a line comes from and how its result is shown are left out, so
// that equal commands compare as equal.
void add_objects(invocation line, node_model &model)
{
    const auto *const made = std::ranges::find(makers, line.row->name, &maker::row);
    if (made == std::end(makers))
        return;
    line.line = 0;
    line.shown = {};
    set_defaults(*line.row, line.given);
    const auto count = line.given.has("--count") ? line.given.number<uint32_t>("--count") : 1;
    line.given.erase("--count");
    for (uint32_t i = 0; i + 1 < count; ++i) {
        model.push_back({key_of(*made, line.given), line});
        line.given.set("MAC", counted_up(line.given.mac("MAC"), 1));
    }
    model.push_back({key_of(*made, line.given), std::move(line)});
}

// Paths and shapers are not sorted apart: which of them came first on a port has made its queue.
object_kind rank_of(const node_object &object)
{
    return object.key.kind == object_kind::shaper ? object_kind::path : object.key.kind;
}

// Of parameters, which are set again and again, the last ones count.
node_model in_order(node_model model)
{
    const auto last = std::ranges::find(model.rbegin(), model.rend(), object_kind::parameters,
                                        [](const node_object &one) { return one.key.kind; });
    if (last != model.rend())
        model.erase(std::remove_if(model.begin(), std::prev(last.base()),
                                   [](const node_object &one) { return one.key.kind == object_kind::parameters; }),
                    std::prev(last.base()));
    std::ranges::stable_sort(model, {}, rank_of);
    return model;
}

} // namespace

// People see these names, and documents have them as `object`.
std::string name_of(const object_key &key)
{
    return fmt::format(fmt::runtime(names[static_cast<size_t>(key.kind)]), fmt::arg("number", key.number),
                       fmt::arg("port", port_text(static_cast<int32_t>(key.number))), fmt::arg("mac", to_text(key.mac)),
                       fmt::arg("member", key.pcep));
}

bool uses_queue(const object_key &key)
{
    return key.kind == object_kind::path || key.kind == object_kind::shaper;
}

node_model model_of(const std::vector<invocation> &lines)
{
    node_model model;
    model.reserve(lines.size());
    for (const invocation &line : lines)
        add_objects(line, model);
    return in_order(std::move(model));
}

// The MP id may come from the environment, without a command. An object is left out when the start of its service is
// not in front of it any more: the service was stopped, and has forgotten it.
node_model model_of(const session &session)
{
    std::vector<invocation> lines;
    if (const uint8_t id = own_mp_id()) {
        lines.push_back(invocation_of(*session.table.find("mpid")));
        lines.back().given.set("MPID", int64_t{id});
    }
    std::set<std::string_view> started; // services, up to there
    for (const made_command &made : session.made.all()) {
        const command &row = *made.asked.row;
        if (made.failed || (!row.service.empty() && !started.contains(row.service)))
            continue;
        started.insert(row.starts);
        lines.push_back(made.asked);
    }
    return model_of(lines);
}

} // namespace kelctl

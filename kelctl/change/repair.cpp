// A row for each step that leaves something. Steps that are not in the table leave nothing when they fail.
#include "kelctl/change/repair.h"

#include "kel/kel_core_ic_ebcom.h"
#include "kelctl/change/node_model.h"
#include "kelctl/session/path_config.h"
#include "kelctl/session/undo.h"
#include "platform/kel_init.h"

#include <algorithm>
#include <iterator>

namespace kelctl
{
namespace
{

struct failed_step {
    const invocation &asked;
    uint32_t code;
    session &run_by;
};

// The paths and shapers to the destination of the step. A failed step is not noted: they are those before it.
node_model references_of(const failed_step &step)
{
    node_model model = model_of(step.run_by);
    std::erase_if(model, [&](const node_object &one) {
        return !uses_queue(one.key) || one.key.mac != step.asked.given.mac("MAC");
    });
    return model;
}

bool is_on_its_port(const failed_step &step, const node_object &one)
{
    return one.key.number == step.asked.given.number<int64_t>("--port");
}

// The session knows what it added, so what these do is not noted.

bool take_reference(const arguments &path, session &session)
{
    const kel_ebcom_path_config config = path_of(path);
    ork_ebcom_pcep_path unused{};
    return session
               .ask("kel_ic_ebcom_add_shaper", kel_ic_ebcom_add_shaper, parameter::input("config", config),
                    parameter::output(unused))
               .status == exit_done;
}

void give_reference_back(const arguments &path, session &session)
{
    const kel_ebcom_path_config config = path_of(path);
    ork_ebcom_pcep_path unused{};
    session.ask("kel_ic_ebcom_remove_shaper", kel_ic_ebcom_remove_shaper, parameter::input("config", config),
                parameter::output(unused));
}

bool has_reference(const mac_address &mac, session &session)
{
    void *queue = nullptr;
    return session
               .ask("kel_ic_ebcom_queue_handle_get", kel_ic_ebcom_queue_handle_get, parameter::input("dst_mac", mac),
                    parameter::output(queue))
               .status == exit_done;
}

// A path that the driver kit refused leaves its reference on the queue. With another one for the destination on this
// port it is not known whether there are two, and that one must stay.
std::optional<discrepancy> after_path_add(const failed_step &step)
{
    const node_model references = references_of(step);
    const auto other =
        std::ranges::find_if(references, [&](const node_object &one) { return is_on_its_port(step, one); });
    if (other != references.end())
        return discrepancy{other->key.kind, name_of(other->key),
                           "the one more that was refused may have left its reference on the queue"};
    give_reference_back(step.asked.given, step.run_by);
    return std::nullopt;
}

// The path stays with its count, and may have lost its reference and even its queue. Where it is the only one, adding
// it once more leads it through the queue that there is now, and removing that one only counts down.
std::optional<discrepancy> after_path_removal(const failed_step &step)
{
    const node_model references = references_of(step);
    const auto path = std::find_if(references.rbegin(), references.rend(), [&](const node_object &one) {
        return one.key.kind == object_kind::path && is_on_its_port(step, one);
    });
    if (references.size() > 1) {
        if (step.run_by.perform(step.asked).code == KEL_RC_NOT_FOUND)
            take_reference(path->asked.given, step.run_by);
        return std::nullopt;
    }
    if (has_reference(path->key.mac, step.run_by) || !take_reference(path->asked.given, step.run_by))
        return std::nullopt;
    if (step.run_by.perform(path->asked).status == exit_done)
        step.run_by.perform(step.asked);
    return std::nullopt;
}

// The queue stays, without the reference.
std::optional<discrepancy> after_shaper_removal(const failed_step &step)
{
    const node_model references = references_of(step);
    const auto shaper = std::ranges::find_if(references, [&](const node_object &one) {
        return one.key.kind == object_kind::shaper && is_on_its_port(step, one);
    });
    take_reference(shaper->asked.given, step.run_by);
    return std::nullopt;
}

// The library forgets it whatever the result.
std::optional<discrepancy> after_forgetting(const failed_step &step)
{
    if (step.code != KEL_RC_NOT_EMPTY)
        step.run_by.made.note(step.asked);
    return std::nullopt;
}

// What a failure of these leaves is removed as what their success makes is.
std::optional<discrepancy> after_partial_making(const failed_step &step)
{
    const size_t noted = step.run_by.made.all().size();
    step.run_by.perform(*undo_of(step.asked, step.run_by.table));
    if (step.run_by.made.all().size() == noted)
        step.run_by.made.drop_last();
    return std::nullopt;
}

constexpr struct {
    std::string_view row;
    std::optional<discrepancy> (*repair)(const failed_step &step);
} repairs[] = {
    {"ebcom path add", after_path_add},
    {"ebcom path remove", after_path_removal},
    {"ebcom shaper remove", after_shaper_removal},
    {"pcep remove", after_forgetting},
    {"group remove", after_forgetting},
    {"ebcom interface create", after_partial_making},
    {"ebcom start", after_partial_making},
};

} // namespace

std::optional<discrepancy> repair(const invocation &step, uint32_t code, session &session)
{
    for (const auto &one : repairs)
        if (one.row == step.row->name)
            return one.repair({step, code, session});
    return std::nullopt;
}

} // namespace kelctl

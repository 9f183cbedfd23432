// The difference between what exists and what is wanted, object by object. What the accelerator holds beside it is
// discrepancies.h.
//
//     for (const node_change &one : differences(model_of(session), model_of(lines)))
//         report(one.change, name_of(one.object));    // "removed", "path to 02:00:00:02:00:01 on RLU1P (6)"
#pragma once

#include "kelctl/change/node_model.h"
#include "kelctl/results/fields_view.h"
#include "kelctl/results/result.h"

#include <string>
#include <string_view>
#include <vector>

namespace kelctl
{

// One object that is not the same in both. The texts are for people; what to do about it is change_plan.h.
struct node_change {
    object_key object;
    std::string_view change; // "added", "removed", "changed"
    std::string was = {};    // of a changed object, what differs: "vlan 100"
    std::string becomes = {};
};

// From `now` to `wanted`, in the order of the keys. A queue whose shaping differs is one change, however many paths
// lead through it. A destination of several paths is sent through the one added last: another one is a change of that
// path.
std::vector<node_change> differences(const node_model &now, const node_model &wanted);

// Whether two paths ask for the same queue.
bool same_shaping(const arguments &one, const arguments &other);

// Rows of a document: `object`, `change`, `was`, `becomes`; null where there is nothing to say.
fields fields_of(const std::vector<node_change> &changes);

// For people, a line for each object and two more for what differs of it; at most as many objects as the page has rows.
std::string text_of(const std::vector<node_change> &changes, const page &page);

} // namespace kelctl

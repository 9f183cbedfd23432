// A node as the commands that make it: what this process set up, or what a node file wants. Both have the same form, so
// that they can be compared object by object (difference.h) and one can become the other (change_plan.h).
//
//     ebcom path add 02:00:00:02:00:01 --port RLU1P --count 2     two objects: the paths to ...:01 and to ...:02
//     traffic stream add ...                                      none
#pragma once

#include "kelctl/language/command.h"
#include "kelctl/session/session.h"
#include "kelctl/values/mac_address.h"

#include <compare>
#include <cstdint>
#include <string>
#include <vector>

namespace kelctl
{

// In the order of a bring-up. A queue is made by the first path or shaper of its port, and has no command of its own.
enum class object_kind {
    mp_id,
    parameters,
    interface,
    ebcom_service,
    scheduler_tree, // by itself, without the rest of the service
    queue,
    path,
    shaper,
    pcep_service,
    pcep,
    group,
    member
};

// What makes an object the one that it is; all else of it can change.
struct object_key {
    object_kind kind;
    int64_t number = 0;   // of the port, the PCEP or the group
    mac_address mac = {}; // where a path or a shaper leads
    int64_t pcep = 0;     // the member of the group

    auto operator<=>(const object_key &) const = default;
};

// "path to 02:00:00:02:00:01 on RLU1P (6)"
std::string name_of(const object_key &key);

// Whether it holds a reference on the queue of its port: a path or a shaper.
bool uses_queue(const object_key &key);

struct node_object {
    object_key key;
    invocation asked; // what makes it, with its defaults; a single path
};

// In the order of a bring-up, of each kind in the order of their making. Paths and shapers are of one kind there: the
// first of a port makes its queue. A path that was added twice is there twice.
using node_model = std::vector<node_object>;

// Of the lines of a node file. Lines that make no object of the node, such as streams of traffic, are left out.
node_model model_of(const std::vector<invocation> &lines);

// Of what this process made and has not undone. What a stopped service has forgotten is left out, as nothing can undo
// it.
node_model model_of(const session &session);

} // namespace kelctl

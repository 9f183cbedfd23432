// What exists, written so that it can be made again.
#pragma once

#include "kelctl/results/result.h"
#include "kelctl/session/session.h"

#include <string>
#include <vector>

namespace kelctl
{

struct exported {
    std::string text;
    std::vector<input_error> errors = {};   // what a node file cannot say; the text is empty then
    std::vector<input_error> warnings = {}; // what the accelerator holds otherwise, and what a node file leaves out
};

// Of what this process set up: a node file, or a script. Streams of traffic are no objects of the node.
exported exported_node(bool as_script, const session &session);

} // namespace kelctl

// A result as it travels from the process that has the node to the one that shows it. Written and read here alone:
// what a result holds, the other process holds as well, so it shows the same text, the same JSON and the same status.
#pragma once

#include "kelctl/results/result.h"

namespace kelctl
{

// Members that hold nothing are left out.
fields message_of(result done);

// Throws notation::document_error for what is no such message.
result result_of(const fields &message);

// Parts of results.
fields message_of(const trace_entry &entry);
trace_entry entry_of(const fields &message);

} // namespace kelctl

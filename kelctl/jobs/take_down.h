// Undoes what the session made (session/undo.h), from the newest to the oldest, and reports what was undone. What is
// left afterwards is views/leftover.h.
//
//     for (const undone_command &one : take_down(session))
//         if (!one.failures.empty())
//             report(one.command(), one.failures);
#pragma once

#include "kelctl/results/result.h"
#include "kelctl/session/session.h"

#include <string>
#include <string_view>
#include <vector>

namespace kelctl
{

struct undone_command {
    invocation undo;                     // its line is that of the command that it undoes
    product made;                        // what the undone command had made
    std::vector<failure> failures;       // empty: it succeeded
    std::vector<trace_entry> complaints; // failures in its trace records, though it succeeded
    bool may_find_nothing = false;       // the command that it undoes had failed

    // As a person would type it.
    std::string command() const;
};

// Undoes all that the session made, and goes on after failures. The newest command is the first one in the result.
std::vector<undone_command> take_down(session &session);

// "undone: 10,000 paths removed, EBCOM service stopped": kinds in the order of their first undo; "undone: nothing"
// without any. Lines of at most `width` columns.
std::string undone_text(const std::vector<undone_command> &undone, size_t width);

// The same for what is left: `lead`, and "10,000 paths, EBCOM service".
std::string products_text(std::string_view lead, const std::vector<product> &products, size_t width);

} // namespace kelctl

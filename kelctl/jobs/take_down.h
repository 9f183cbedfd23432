// Taking back what was made: every command that undoes one, from the last to the first, and what came of it.
#pragma once

#include "kelctl/session/result.h"
#include "kelctl/session/session.h"

#include <string>
#include <string_view>
#include <vector>

namespace kelctl
{

struct undone_command {
    invocation undo; // in the line of the file of what it undoes
    product made;
    std::vector<failure> failures;       // empty: it is undone
    std::vector<trace_entry> complaints; // failures that its records report, though it succeeded
    bool may_find_nothing = false;       // what it undoes had failed

    // As a person would type it.
    std::string command() const;
};

// Undoes all that the session made; goes on after failures.
std::vector<undone_command> take_down(session &session);

// "undone: 10,000 paths removed, EBCOM service stopped", in the order of the first of each; "nothing" of none. In lines
// of 80 columns, as is the next one.
std::string undone_text(const std::vector<undone_command> &undone);

// The lead and "10,000 paths, EBCOM service" of what stays.
std::string products_text(std::string_view lead, const std::vector<product> &products);

} // namespace kelctl

// Runs scripts on the model and on the library at once, and tells where they first differ. The library's state lives as
// long as its process: a trial goes on from where the latest script left it, and what must begin with nothing gets a
// process of its own.
#pragma once

#include "model.h"

#include <functional>
#include <string>

namespace proof
{

class trial
{
public:
    trial();

    // Runs the script. "" when model and library agree at every step; else the step and the difference. Steps that the
    // operations promise nothing for are left out.
    std::string difference(const script &steps);

    // Takes the library back to where nothing stands, as far as it forgets.
    std::string difference_on_way_back();

    // How many steps were compared.
    size_t steps() const
    {
        return steps_;
    }

private:
    model model_;
    size_t steps_ = 0;
};

// What the work, done in a process of its own, finds wrong. A process that dies has found something, too.
std::string found_in_own_process(const std::function<std::string()> &work);

} // namespace proof

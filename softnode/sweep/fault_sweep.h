/*
 * fault_sweep.h - running a scenario with each of its closed calls failing in turn. What softnode_fault_sweep() does.
 */
#ifndef SOFTNODE_FAULT_SWEEP_H
#define SOFTNODE_FAULT_SWEEP_H

#include "softnode/softnode.h"

#include <optional>
#include <string>

namespace softnode
{

/** The report; nothing when no child process can be created. `scenario.run` is there, `watcher` may be null. */
std::optional<std::string> fault_sweep(const softnode_scenario &scenario, softnode_sweep_watcher *watcher);

} // namespace softnode

#endif

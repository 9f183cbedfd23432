/*
 * graph_boxes.h - what the boxes of a node's picture say, one function per kind of object.
 */
#ifndef SOFTNODE_GRAPH_BOXES_H
#define SOFTNODE_GRAPH_BOXES_H

#include "softnode/views/dot.h"
#include "softnode/views/graph_layout.h"

namespace softnode
{

constexpr DotColumn group_column{"groups", "Multicast groups", "#6b55a3", "#f6f4fb"};
constexpr DotColumn pcep_column{"pceps", "PCEPs", "#1f679e", "#f1f6fb"};
constexpr DotColumn queue_column{"queues", "Queues and destinations", "#1a766b", "#eff8f6"};

/* Ports of lines: of PCEPs' remote addresses, of the destinations that are only counted. Those that are shown have
   their numbers as ports. */
constexpr const char *remote_port = "remote";
constexpr const char *further_port = "further";

DotBox group_box(Handle handle, const Group &group, const PcepsById &pceps);
/** Shows the way if it is not a path. */
DotBox pcep_box(Handle handle, const Pcep &pcep, const Words &way);
/** PCEPs that are only counted, and those of them whose remote address nothing leads to. */
DotBox further_pceps_box(std::size_t count, std::size_t astray);

DotBox target_box(Handle handle);
DotBox queue_box(Handle handle, const Queue &queue, const Destinations &destinations);
DotBox stranded_box(const Destinations &destinations);
DotBox chain_box(const SchedulerChain &chain, const Registry<TreeScheduler> &schedulers);
DotBox interface_box(const EbcomService &ebcom);

} // namespace softnode

#endif

/*
 * graph_boxes.h - what the boxes of a node's picture say, one function per kind of object.
 */
#ifndef SOFTNODE_GRAPH_BOXES_H
#define SOFTNODE_GRAPH_BOXES_H

#include "softnode/dot.h"
#include "softnode/graph_layout.h"

namespace softnode
{

constexpr DotColumn group_column{"groups", "Multicast groups", "#6b55a3", "#f6f4fb"};
constexpr DotColumn pcep_column{"pceps", "PCEPs", "#1f679e", "#f1f6fb"};
constexpr DotColumn queue_column{"queues", "Queues and destinations", "#1a766b", "#eff8f6"};

/* Ports of lines: of a PCEP's remote address, of the destinations that are only counted. Those that are shown have
   their numbers as ports. */
constexpr const char *remote_port = "remote";
constexpr const char *further_port = "further";

DotBox group_box(Handle handle, const Group &group, const PcepsById &pceps);
DotBox pcep_box(Handle handle, const Pcep &pcep, bool has_path);
DotBox target_box(Handle handle);
DotBox queue_box(Handle handle, const Queue &queue, const Destinations &destinations);
DotBox stranded_box(const Destinations &destinations);
DotBox chain_box(const SchedulerChain &chain);
DotBox interface_box(const EbcomService &ebcom);

} // namespace softnode

#endif

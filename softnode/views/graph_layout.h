/*
 * graph_layout.h - which objects of a node share a box of its picture, and where its edges end.
 */
#ifndef SOFTNODE_GRAPH_LAYOUT_H
#define SOFTNODE_GRAPH_LAYOUT_H

#include "softnode/node/node.h"

#include <cstddef>
#include <map>
#include <optional>
#include <vector>

namespace softnode
{

/** Destinations whose paths lead through one queue: a handful of them, by address, and how many there are. */
struct Destinations {
    static constexpr std::size_t most_shown = 5;

    std::vector<Mac> shown;
    std::size_t count = 0;

    /** The line of an address among those shown; nothing for one that is only counted. */
    std::optional<std::size_t> line_of(const Mac &mac) const;
};

/** By queue; null: of paths without a queue. Every queue is there. */
std::map<Handle, Destinations> destinations_of(const Node &node);

/** PCEPs of this moment. A group may list ids that none of them has. */
using PcepsById = std::map<std::uint32_t, Handle>;

PcepsById pceps_by_id(const PcepTable &table);

/** Schedulers below one another, from the root's side, on which nothing but the next one hangs. */
using SchedulerChain = std::vector<Handle>;

/** Every scheduler is in one of them; chains are in the order of their first schedulers' creation. */
std::vector<SchedulerChain> scheduler_chains(const Node &node);

} // namespace softnode

#endif

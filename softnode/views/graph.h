/*
 * graph.h - a picture of everything a node holds, in Graphviz' language.
 *
 * Frames go from left to right: groups and the EHSFP target, PCEPs, queues with the destinations that lead through
 * them, schedulers, the Ethernet device. Every object is drawn once, with its handle of the snapshot.
 * A chain of schedulers without other children shares a box. A queue shows a handful of its destinations and
 * counts the others, and so does the picture with PCEPs when there are many; counters that are 0 are left out.
 */
#ifndef SOFTNODE_GRAPH_H
#define SOFTNODE_GRAPH_H

#include "softnode/node/node.h"

#include <string>

namespace softnode
{

std::string graph(const Node &node);

} // namespace softnode

#endif

/*
 * inventory.h - what a node holds, by names that do not depend on handles: so that two nodes can be compared.
 *
 *     kind               name
 *     scheduler          its position in the tree: 1.2 is the second one below the first one under the root, in the order
 *                        of creation
 *     queue              "of scheduler 1.2: 100000 kbit/s, burst 65536, threshold 1048576"; or "unshaped"
 *     path               its address
 *     pcep               its id
 *     binding            "of pcep 7"
 *     group              its id
 *     member             "pcep 7 of group 300"
 *     interface          "on Ethernet device 7"
 *     timing connection  "waiting", "working", "blocked" or "ended", as in the snapshot
 *     timing event       taken and not handed back: "type 6 of domain 0"
 *
 * Two objects can have one name: siblings are distinguished by their number, queues by what they are made of. Of
 * three schedulers below 1 of which the first is missing, 1.3 is missing.
 */
#ifndef SOFTNODE_INVENTORY_H
#define SOFTNODE_INVENTORY_H

#include "softnode/node/node.h"

#include <compare>
#include <string>
#include <vector>

namespace softnode
{

struct Item {
    std::string kind;
    std::string name;

    auto operator<=>(const Item &) const = default;
};

/* In the order of the table above, and of each kind in the order of the snapshot. */
using Inventory = std::vector<Item>;

Inventory inventory_of(const Node &node);

/** The items of one inventory that another does not hold, or not as often. */
Inventory items_beyond(const Inventory &other, const Inventory &items);

} // namespace softnode

#endif

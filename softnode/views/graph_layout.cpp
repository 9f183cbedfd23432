/*
 * graph_layout.cpp - sorting paths by queue, and schedulers into chains.
 */
#include "softnode/views/graph_layout.h"

#include <algorithm>

namespace softnode
{

namespace
{

/* How many of the objects name a handle in the given member. */
template <class Object> auto count_of(const Registry<Object> &objects, Handle Object::*member, Handle named)
{
    return std::count_if(objects.begin(), objects.end(),
                         [&](const auto &entry) { return entry.second.*member == named; });
}

/* Whether a scheduler is all that hangs on its parent. */
bool continues_its_parent(const Node &node, const TreeScheduler &scheduler)
{
    const Handle parent = scheduler.parent;
    return count_of(node.qos.schedulers(), &TreeScheduler::parent, parent) == 1 &&
           count_of(node.qos.queues(), &Queue::scheduler, parent) == 0 &&
           count_of(node.pceps.groups(), &Group::scheduler, parent) == 0;
}

} // namespace

std::optional<std::size_t> Destinations::line_of(const Mac &mac) const
{
    const auto found = std::find(shown.begin(), shown.end(), mac);
    if (found == shown.end())
        return std::nullopt;
    return static_cast<std::size_t>(found - shown.begin());
}

std::map<Handle, Destinations> destinations_of(const Node &node)
{
    std::map<Handle, Destinations> destinations;
    for (const auto &[handle, queue] : node.qos.queues())
        destinations[handle];
    for (const auto &[mac, path] : node.ebcom.paths()) {
        Destinations &through = destinations[node.queue_of(path)];
        if (++through.count <= Destinations::most_shown)
            through.shown.push_back(mac);
    }
    return destinations;
}

PcepsById pceps_by_id(const PcepTable &table)
{
    PcepsById pceps;
    for (const auto &[handle, pcep] : table.pceps())
        pceps[pcep.id()] = handle;
    return pceps;
}

/* A scheduler comes after its parent, which therefore is in a chain by then, as the last one so far. */
std::vector<SchedulerChain> scheduler_chains(const Node &node)
{
    std::vector<SchedulerChain> chains;
    for (const auto &[handle, scheduler] : node.qos.schedulers()) {
        const Handle parent = scheduler.parent;
        const auto chain = std::find_if(chains.begin(), chains.end(),
                                        [parent](const SchedulerChain &links) { return links.back() == parent; });
        if (chain != chains.end() && continues_its_parent(node, scheduler))
            chain->push_back(handle);
        else
            chains.push_back({handle});
    }
    return chains;
}

} // namespace softnode

// The words of a snapshot.
#include "kelctl/node/known_on_node.h"

#include "kelctl/node/read_back.h"

namespace kelctl
{
namespace
{

// Both ends of a PCEP are addresses that other commands take.
void add_words_of(const snapshot &node, known_words &known)
{
    for (const snapshot::path &path : node.paths)
        known.macs.insert(path.mac);
    for (const snapshot::pcep &pcep : node.pceps) {
        known.pceps.insert(pcep.id);
        known.macs.insert({pcep.local_mac, pcep.remote_mac});
    }
    for (const snapshot::group &group : node.groups)
        known.groups.insert(group.id);
    for (const snapshot::scheduler &scheduler : node.schedulers)
        known.schedulers.insert(scheduler.self);
    for (const snapshot::queue &queue : node.queues)
        known.queues.insert(queue.self);
}

} // namespace

known_words known_on_node(const session &session)
{
    known_words known = session.known;
    if (const auto node = current_snapshot())
        add_words_of(*node, known);
    return known;
}

} // namespace kelctl

// Collecting what a snapshot names.
#include "kelctl/known_words.h"

#include "kelctl/snapshot.h"

namespace kelctl
{

void known_words::add(const snapshot &node)
{
    for (const snapshot::path &path : node.paths)
        macs.insert(path.mac);
    for (const snapshot::pcep &pcep : node.pceps) {
        ids.insert(pcep.id);
        macs.insert({pcep.local_mac, pcep.remote_mac});
    }
    for (const snapshot::group &group : node.groups)
        ids.insert(group.id);
    for (const snapshot::scheduler &scheduler : node.schedulers)
        handles.insert(scheduler.self);
    for (const snapshot::queue &queue : node.queues)
        handles.insert(queue.self);
}

} // namespace kelctl

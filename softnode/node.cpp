/*
 * node.cpp - operations that concern more than one family of objects.
 */
#include "softnode/node.h"

namespace softnode
{

Refusal Node::create_path(const ork_ebcom_pcep_path &path)
{
    const Handle queue = handle_of(path.queue_hdl);
    if (const Refusal refusal = qos.check_queue(queue))
        return refusal;
    return ebcom.create_path(mac_at(path.macAddr), {path.pcepType, path.eioaPort, queue});
}

Refusal Node::remove_queue(Handle queue)
{
    if (const Refusal refusal = qos.remove_queue(queue))
        return refusal;

    ebcom.forget_queue(queue);
    return Refusal::granted;
}

void Node::reset()
{
    attachment.reset();
    qos.reset();
    ebcom.reset();
    timing.reset();
    restarts.clear();
    faults.reset();
}

} // namespace softnode

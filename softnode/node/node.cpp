/*
 * node.cpp - operations that concern more than one family of objects.
 */
#include "softnode/node/node.h"

#include "softnode/node/records.h"

namespace softnode
{

Refusal Node::create_path(const ork_ebcom_pcep_path &path)
{
    const Handle queue = handle_of(path.queue_hdl);
    if (const Refusal refusal = qos.check_queue(queue))
        return refusal;
    return ebcom.create_path(mac_at(path.macAddr), {path.pcepType, path.eioaPort, queue});
}

Handle Node::queue_of(const Path &path) const
{
    return qos.check_queue(path.queue) == Refusal::granted ? path.queue : Handle::null;
}

Refusal Node::remove_queue(Handle queue)
{
    if (const Refusal refusal = qos.check_queue(queue))
        return refusal;

    const Queue &found = qos.queues().at(queue);
    const Waiting waiting = found.waiting();
    ebcom.drop(Drop::no_queue, {waiting.frames, waiting.octets});
    if (watcher)
        report_all(found);
    return qos.remove_queue(queue);
}

Refusal Node::delete_scheduler(Handle scheduler)
{
    if (const Refusal refusal = qos.check_scheduler(scheduler))
        return refusal;
    if (pceps.send_through(scheduler))
        return Refusal::busy;
    return qos.delete_scheduler(scheduler);
}

Refusal Node::bind(const ork_bind_params &params)
{
    if (const Refusal refusal = check_binding(params))
        return refusal;
    return pceps.bind(params.pcep_id, static_cast<Handle>(params.target));
}

Refusal Node::unbind(const ork_bind_params &params)
{
    if (const Refusal refusal = check_binding(params))
        return refusal;
    return pceps.unbind(params.pcep_id);
}

Refusal Node::create_group(const ork_ebcom_multicast_group &params, Handle scheduler, Handle &group)
{
    if (scheduler != Handle::null)
        if (const Refusal refusal = qos.check_scheduler(scheduler))
            return refusal;
    return pceps.create_group(params, scheduler, group);
}

/* What waits in a queue that is removed. */
void Node::report_all(const Queue &queue) const
{
    for (FrameQueue waiting = queue.frames(); !waiting.empty();) {
        const Frame frame = waiting.pop();
        report({frame.identity, Fate::dropped, Drop::no_queue, queue.self, frame.entered, clock.now()});
    }
}

void Node::reset()
{
    clock.reset();
    attachment.reset();
    qos.reset();
    ebcom.reset();
    pceps.reset();
    timing.reset();
    restarts.clear();
    on_the_line.reset();
    watcher = nullptr;
}

Refusal Node::check_binding(const ork_bind_params &params) const
{
    if (!well_formed(params))
        return Refusal::invalid;
    if (const Refusal refusal = attachment.check_driver_kit(handle_of(params.ork_handle)))
        return refusal;
    return attachment.check_ehsfp_target(static_cast<Handle>(params.target));
}

} // namespace softnode

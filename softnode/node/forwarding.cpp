/*
 * forwarding.cpp - what happens to frames, from whoever sends them through a queue to whoever receives them.
 */
#include "softnode/node/node.h"

#include "softnode/common/facts.h"

#include <map>

namespace softnode
{

namespace
{

bool possible(const Frames &frames)
{
    return frames.length >= 1 && frames.length <= facts::longest_frame;
}

} // namespace

Refusal Node::offer(const Mac &destination, const Frames &frames)
{
    if (!possible(frames))
        return Refusal::invalid;
    if (!leads_to(destination))
        return Refusal::gone;

    if (const Handle sender = pceps.at_remote(destination); sender != Handle::null)
        pceps.account(sender, Fate::sent, frames);
    carry({destination}, frames);
    return Refusal::granted;
}

Refusal Node::send(std::uint32_t id, const Frames &frames)
{
    if (!possible(frames))
        return Refusal::invalid;
    Handle sender = Handle::null;
    if (const Refusal refusal = pceps.find(id, sender))
        return refusal;

    const bool group = pceps.groups().check(sender) == Refusal::granted;
    const std::uint64_t lost = group ? replicate(sender, frames) : send_out({sender}, frames);
    drop({frames.count * lost, frames.length});
    return Refusal::granted;
}

void Node::advance(std::uint64_t nanoseconds)
{
    clock.advance(nanoseconds);
    let_leave();
}

bool Node::leads_to(const Mac &destination) const
{
    return ebcom.paths().contains(destination) || pceps.at_local(destination) != Handle::null;
}

/* A group has its members send a copy of each frame. Yields how many of these members or their ways are missing. */
std::uint64_t Node::replicate(Handle group, const Frames &frames)
{
    const std::vector<Handle> members = pceps.present_members(group);
    const std::uint64_t absent = pceps.groups().at(group).members.size() - members.size();
    const std::uint64_t lost = absent + send_out(members, frames);
    pceps.account_replication(group, frames, lost);
    return lost;
}

/* PCEPs send a copy of each frame to their remote addresses. Yields how many of these addresses nothing leads to. */
std::uint64_t Node::send_out(const std::vector<Handle> &senders, const Frames &frames)
{
    DestinationMacs destinations;
    for (const Handle sender : senders) {
        pceps.account(sender, Fate::sent, frames);
        const Mac remote = pceps.pceps().at(sender).remote_mac();
        if (leads_to(remote))
            destinations.push_back(remote);
    }
    carry(destinations, frames);
    return senders.size() - destinations.size();
}

/*
 * One copy at most can leave a scheduler at once, as it keeps it busy. It takes no room from the copies behind it, so
 * the first frame goes alone. All others have to wait, and find room or not, together.
 */
void Node::carry(const DestinationMacs &destinations, const Frames &frames)
{
    if (frames.count == 0)
        return;
    for (const Mac &destination : destinations) {
        enter({destination}, {1, frames.length});
        let_leave();
    }
    enter(destinations, {frames.count - 1, frames.length});
}

/* Frames enter the service, and there the queues of the paths to their destinations. */
void Node::enter(const DestinationMacs &destinations, const Frames &frames)
{
    std::map<Handle, DestinationMacs> by_queue;
    for (const Mac &destination : destinations) {
        ebcom.account(Fate::received, frames);
        const auto path = ebcom.paths().find(destination);
        if (path == ebcom.paths().end())
            arrive(destination, frames);
        else if (qos.check_queue(path->second.queue) == Refusal::granted)
            by_queue[path->second.queue].push_back(destination);
        else
            ebcom.account(Fate::dropped, frames);
    }
    for (const auto &[queue, reached] : by_queue)
        ebcom.account(Fate::dropped, {qos.enter(queue, reached, frames, clock.now()), frames.length});
}

/* Has every frame leave that does by now. */
void Node::let_leave()
{
    while (const auto frame = qos.depart(clock.now()))
        arrive(frame->destination, {1, frame->length});
}

/* Frames leave the service, towards whoever is at their destination. */
void Node::arrive(const Mac &destination, const Frames &frames)
{
    ebcom.account(Fate::sent, frames);
    if (const Handle receiver = pceps.at_local(destination); receiver != Handle::null)
        pceps.account(receiver, Fate::received, frames);
}

/* Frames enter the service and get no further. */
void Node::drop(const Frames &frames)
{
    ebcom.account(Fate::received, frames);
    ebcom.account(Fate::dropped, frames);
}

} // namespace softnode

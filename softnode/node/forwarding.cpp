/*
 * forwarding.cpp - what happens to frames, from whoever sends them through a queue to whoever receives them.
 */
#include "softnode/node/node.h"

#include "softnode/common/facts.h"

#include <array>
#include <span>

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
    carry({&destination, 1}, frames);
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
    const std::uint64_t lost = group ? replicate(sender, frames) : send_out({&sender, 1}, frames);
    const Frames nowhere{frames.count * lost, frames.length, frames.identity};
    ebcom.account(Fate::received, nowhere);
    drop(Drop::no_way, nowhere);
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
std::uint64_t Node::send_out(std::span<const Handle> senders, const Frames &frames)
{
    std::array<Mac, facts::most_members> destinations;
    std::size_t reached = 0;
    for (const Handle sender : senders) {
        pceps.account(sender, Fate::sent, frames);
        const Mac remote = pceps.pceps().at(sender).remote_mac();
        if (leads_to(remote))
            destinations[reached++] = remote;
    }
    carry(std::span(destinations).first(reached), frames);
    return senders.size() - reached;
}

/*
 * One copy at most can leave at once, as it keeps the line busy. It takes no room from the copies behind it, so the
 * first frame goes alone. All others have to wait, and find room or not, together.
 */
void Node::carry(std::span<const Mac> destinations, const Frames &frames)
{
    if (frames.count == 0)
        return;
    Frames part = frames;
    part.count = 1;
    for (const Mac &destination : destinations) {
        enter({&destination, 1}, part);
        let_leave();
    }
    part.count = frames.count - 1;
    if (part.count != 0)
        enter(destinations, part);
}

/* Frames enter the service, and there the queues of the paths to their destinations: those of one queue in turn. */
void Node::enter(std::span<const Mac> destinations, const Frames &frames)
{
    std::array<Handle, facts::most_members> queues;
    for (std::size_t number = 0; number < destinations.size(); ++number)
        queues[number] = admit(destinations[number], frames);

    for (std::size_t number = 0; number < destinations.size(); ++number) {
        const Handle queue = queues[number];
        if (queue == Handle::null)
            continue;
        std::array<Mac, facts::most_members> together;
        std::size_t reached = 0;
        for (std::size_t other = number; other < destinations.size(); ++other)
            if (queues[other] == queue) {
                together[reached++] = destinations[other];
                queues[other] = Handle::null;
            }
        const std::uint64_t dropped = qos.enter(queue, std::span(together).first(reached), frames, clock.now());
        drop(Drop::no_room, {dropped, frames.length, frames.identity}, queue);
    }
}

/* Frames enter the service. Yields the queue of the path to their destination; null: they get no further, or are there. */
Handle Node::admit(const Mac &destination, const Frames &frames)
{
    ebcom.account(Fate::received, frames);
    const auto path = ebcom.paths().find(destination);
    const bool has_path = path != ebcom.paths().end();
    if (frames.length > ebcom.longest_frame()) {
        drop(Drop::too_long, frames, has_path ? path->second.queue : Handle::null);
        return Handle::null;
    }
    if (!has_path) {
        ebcom.account(Fate::sent, frames);
        report({.identity = frames.identity, .fate = Fate::sent, .entered = clock.now(), .left = clock.now()});
        receive(destination, frames);
        return Handle::null;
    }
    const Handle queue = queue_of(path->second);
    if (queue == Handle::null)
        drop(Drop::no_queue, frames, path->second.queue);
    return queue;
}

/* Has every frame leave that does by now, and arrive. */
void Node::let_leave()
{
    while (const auto departure = qos.depart(clock.now())) {
        let_arrive();
        const Frame &frame = departure->frame;
        ebcom.account(Fate::sent, {1, frame.length, frame.identity});
        report({.identity = frame.identity,
                .fate = Fate::sent,
                .queue = departure->queue,
                .entered = frame.entered,
                .left = departure->left});
        on_the_line = departure;
    }
    if (on_the_line && on_the_line->arrives <= clock.now())
        let_arrive();
}

/* The frame on the line arrives, if there is one. */
void Node::let_arrive()
{
    if (on_the_line)
        receive(on_the_line->frame.destination, {1, on_the_line->frame.length, on_the_line->frame.identity});
    on_the_line.reset();
}

/* Frames arrive at whoever is at their destination. */
void Node::receive(const Mac &destination, const Frames &frames)
{
    if (const Handle receiver = pceps.at_local(destination); receiver != Handle::null)
        pceps.account(receiver, Fate::received, frames);
}

/* Frames that entered the service get no further. */
void Node::drop(Drop reason, const Frames &frames, Handle queue)
{
    ebcom.drop(reason, {frames.count, frames.count * frames.length});
    if (frames.count != 0)
        report({frames.identity, Fate::dropped, reason, queue, clock.now(), clock.now()});
}

void Node::report(const FrameReport &frame) const
{
    if (frame.identity != 0 && watcher)
        watcher(frame);
}

} // namespace softnode

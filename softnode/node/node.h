/*
 * node.h - the node: one engine that holds everything the closed libraries keep behind them.
 *
 * Each family of objects is a class of its own; what concerns two of them is an operation here. No globals, no locks,
 * no C interface: a test can have as many nodes as it likes.
 */
#ifndef SOFTNODE_NODE_H
#define SOFTNODE_NODE_H

#include "softnode/node/attachment.h"
#include "softnode/node/ebcom_service.h"
#include "softnode/node/pcep_table.h"
#include "softnode/node/qos_graph.h"
#include "softnode/node/timing_unit.h"
#include "softnode/traffic/virtual_clock.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace softnode
{

/* Somebody asked for a restart of the node. It is kept and not obeyed. */
struct RestartRequest {
    std::uint32_t line = 0;
    std::string file;
    std::string reason;
};

/* What became of a frame that has an identity. */
struct FrameReport {
    std::uint64_t identity = 0;
    Fate fate = Fate::sent;       /* or dropped */
    Drop reason = Drop::too_long; /* why it was dropped */
    Handle queue = Handle::null;  /* of the path to its destination, maybe removed; null: no path leads there */
    Instant entered = 0;          /* the service */
    Instant left = 0;             /* its queue, or was dropped */
};

struct Node {
    VirtualClock clock;
    Attachment attachment;
    QosGraph qos;
    EbcomService ebcom;
    PcepTable pceps;
    TimingUnit timing;
    std::vector<RestartRequest> restarts;
    std::optional<Departure> on_the_line; /* has left its queue, and not arrived */
    std::function<void(const FrameReport &)> watcher;

    /** Lays a path; its queue has to be there. */
    Refusal create_path(const ork_ebcom_pcep_path &path);

    /** The queue that a path leads through; null once it was removed. */
    Handle queue_of(const Path &path) const;

    /** Removes a queue, also under paths that use it. What waits in it is dropped. */
    Refusal remove_queue(Handle queue);

    /** Deletes a scheduler that nothing hangs below and no group sends through. */
    Refusal delete_scheduler(Handle scheduler);

    /* Tie a PCEP to the EHSFP target and untie it. Both take the same record. */
    Refusal bind(const ork_bind_params &params);
    Refusal unbind(const ork_bind_params &params);

    /** Creates a group that sends through a scheduler of its own, or null: through those of its members' paths. */
    Refusal create_group(const ork_ebcom_multicast_group &params, Handle scheduler, Handle &group);

    /**
     * Offers frames for a destination, at this instant. Refused: frames of an impossible length (invalid); a
     * destination that no path leads to and that is no PCEP's local address (gone).
     */
    Refusal offer(const Mac &destination, const Frames &frames);

    /**
     * Has a PCEP send frames to its remote address, or a group replicate them to those of its members, at this instant.
     * What nothing leads to is dropped. Refused: frames of an impossible length, an impossible id (invalid); an id that
     * neither a PCEP nor a group has (gone).
     */
    Refusal send(std::uint32_t id, const Frames &frames);

    /** Whether a path leads to an address, or it is a PCEP's local address. */
    bool leads_to(const Mac &destination) const;

    /** Lets time pass, and frames leave. */
    void advance(std::uint64_t nanoseconds);

    /** Back to a node just switched on. Handles issued before are stale afterwards. */
    void reset();

private:
    Refusal check_binding(const ork_bind_params &params) const;

    std::uint64_t replicate(Handle group, const Frames &frames);
    std::uint64_t send_out(std::span<const Handle> senders, const Frames &frames);
    void carry(std::span<const Mac> destinations, const Frames &frames);
    void enter(std::span<const Mac> destinations, const Frames &frames);
    Handle admit(const Mac &destination, const Frames &frames);
    void let_leave();
    void let_arrive();
    void receive(const Mac &destination, const Frames &frames);
    void drop(Drop reason, const Frames &frames, Handle queue = Handle::null);
    void report(const FrameReport &frame) const;
    void report_all(const Queue &queue) const;
};

} // namespace softnode

#endif

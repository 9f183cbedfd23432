/*
 * snapshot.h - everything a node holds, as a JSON document. The keys are stable: tools and tests read them.
 *
 *     time               nanoseconds since the node was switched on
 *     schedulers         in the order of creation
 *         handle             "0x5c00000001", as %p prints it; so are all handles
 *         parent             handle, or null: under the root
 *         children, queues   handles of what hangs below, in the order of creation
 *         peak_rate, peak_burst, sustain_rate, sustain_burst     as given; kbit/s, octets. What all below it share;
 *                            both 0: no limit
 *         length_correction  as given; octets that a frame costs beside its own
 *         shaping_mode, scheduling_mode, arbitration_mode, service_quantum, root_id     as given
 *     queues             in the order of creation
 *         handle, scheduler
 *         rate, threshold, bucket_size     as given; kbit/s, octets, octets
 *         shaped             whether it has a rate or a bucket
 *         counters           received, sent, dropped: frames and octets of each
 *         waiting            frames, octets, and blocks, the memory that they take; received = sent + dropped + waiting
 *         deepest            the most that ever waited, of each
 *         delay              of the frames sent, from entering to leaving, nanoseconds: frames, how many; sum, which wraps
 *                            around; median and p99, within 1 %; largest
 *     paths              in the order of their addresses
 *         mac                "02:00:02:02:00:01"
 *         type, eioa_port
 *         queue              handle, or null: the queue was removed
 *     pceps              in the order of creation
 *         handle
 *         id, remote_id
 *         local_mac, remote_mac
 *         vlan, priority
 *         target             handle, or null: not bound
 *         counters           received, sent, dropped (always 0): frames and octets of each
 *     bindings           in the order of their PCEPs' creation
 *         pcep               id
 *         target             handle
 *     groups             in the order of creation
 *         handle, id
 *         scheduler          handle, or null
 *         members            ids in the order of adding, also those whose PCEP was deleted
 *         counters           offered to it, copies made of these, dropped of the copies for want of a member or of a
 *                            way to its remote address: frames and octets of each
 *     interface          null, or
 *         eth_dev_id, vsi
 *     globals            null until set, or
 *         mtu                octets
 *         ether_type
 *         settings           the two 4-bit settings, the low one first
 *     statistics         received, sent, dropped by the service: frames and octets of each; received = sent + dropped
 *                        + what waits in the queues
 *     drops              what the service dropped, by reason: too_long, no_room, no_way, no_queue: frames and octets of
 *                        each
 *     on_the_line        null, or the frame that has left its queue and not arrived
 *         mac, octets
 *         arrives            nanoseconds since the node was switched on; null: time ends before
 *     timestamp_offset   null until set
 *     timing_unit
 *         reading            cycles, frequency
 *         connections        in the order of opening
 *             handle, subscribed
 *             state              "working", "waiting" (with no event left), "blocked" (by a fault rule), "ended" (its
 *                                thread has)
 *             events_left        posted, not taken yet
 *             events_outstanding taken, not handed back yet
 *         blocked            functions of the calls that a fault rule blocks at this moment
 *     restarts           requests for a restart of the node: line, file, reason
 *     calls              per closed function that returns a code and was called: how often
 *     faults             fault rules in the order they were added
 *         rule               as written
 *         hits               how many calls met it
 */
#ifndef SOFTNODE_SNAPSHOT_H
#define SOFTNODE_SNAPSHOT_H

#include "softnode/faults/fault_book.h"
#include "softnode/node/node.h"

#include <string>

namespace softnode
{

std::string snapshot(const Node &node, const FaultBook &book);

/** The part `queues` alone. */
std::string queue_list(const Node &node);

/** The part `faults` alone. */
std::string fault_list(const FaultBook &book);

} // namespace softnode

#endif

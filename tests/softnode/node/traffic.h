/*
 * traffic.h - a node to load: schedulers, queues, paths, PCEPs and groups in a line each, and what was counted.
 */
#ifndef TESTS_SOFTNODE_TRAFFIC_H
#define TESTS_SOFTNODE_TRAFFIC_H

#include "softnode/node/node.h"

#include <cstdint>
#include <initializer_list>

/* An address by a number. */
softnode::Mac numbered_mac(std::uint32_t number);

/* kbit/s, octets, octets */
struct Shaping {
    std::uint32_t rate = 0;
    std::uint32_t burst = 0;
    std::uint32_t threshold = 5'120'000;
};

/* What EBCOM makes a scheduler from, without limits. */
ork_qos_scheduler_params scheduler_params(softnode::Handle parent = softnode::Handle::null);

struct LoadedNode : softnode::Node {
    softnode::Handle add_scheduler(const ork_qos_scheduler_params &params);

    /* Peak rate in kbit/s. */
    softnode::Handle add_scheduler(std::uint64_t rate = 0, softnode::Handle parent = softnode::Handle::null);
    softnode::Handle add_queue(softnode::Handle scheduler, const Shaping &shaping = {});
    void lay_path(const softnode::Mac &mac, softnode::Handle queue);
    softnode::Handle add_pcep(std::uint32_t id, const softnode::Mac &local, const softnode::Mac &remote);
    softnode::Handle add_group(std::uint16_t id, std::initializer_list<std::uint32_t> members);

    const softnode::Queue &queue(softnode::Handle handle) const;
    const softnode::Counters &pcep(std::uint32_t id) const;
    const softnode::Replication &group(std::uint32_t id) const;

    /* What waits in all queues. */
    softnode::Tally waiting() const;
};

#endif

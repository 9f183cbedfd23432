/*
 * traffic.cpp - putting a node together.
 */
#include "traffic.h"

#include "softnode/common/facts.h"

#include <gtest/gtest.h>

#include <algorithm>

using namespace softnode;

Mac numbered_mac(std::uint32_t number)
{
    return {2,
            0,
            static_cast<std::uint8_t>(number >> 24),
            static_cast<std::uint8_t>(number >> 16),
            static_cast<std::uint8_t>(number >> 8),
            static_cast<std::uint8_t>(number)};
}

ork_qos_scheduler_params scheduler_params(Handle parent)
{
    ork_qos_scheduler_params params{};
    params.parent = pointer_of(parent);
    params.schedulingMode = facts::scheduling_mode;
    params.arbitrationMode = facts::arbitration_mode;
    params.serviceQuantum = 3036;
    params.vsiEthDevId = facts::event_device;
    return params;
}

Handle LoadedNode::add_scheduler(const ork_qos_scheduler_params &params)
{
    Handle scheduler = Handle::null;
    EXPECT_EQ(qos.create_scheduler(params, scheduler), Refusal::granted);
    return scheduler;
}

Handle LoadedNode::add_scheduler(std::uint64_t rate, Handle parent)
{
    ork_qos_scheduler_params params = scheduler_params(parent);
    params.qosRates.peak.rate = rate;
    return add_scheduler(params);
}

Handle LoadedNode::add_queue(Handle scheduler, const Shaping &shaping)
{
    Handle added = Handle::null;
    EXPECT_EQ(qos.add_queue({facts::queue_mode, shaping.rate, shaping.threshold, shaping.burst}, facts::queue_kind,
                            scheduler, facts::event_device, added),
              Refusal::granted);
    return added;
}

void LoadedNode::lay_path(const Mac &mac, Handle queue)
{
    ork_ebcom_pcep_path path{};
    std::copy(mac.begin(), mac.end(), path.macAddr);
    path.queue_hdl = pointer_of(queue);
    EXPECT_EQ(create_path(path), Refusal::granted);
}

Handle LoadedNode::add_pcep(std::uint32_t id, const Mac &local, const Mac &remote)
{
    ork_ebcom_pcep_params params{};
    std::copy(local.begin(), local.end(), params.sMac);
    std::copy(remote.begin(), remote.end(), params.dMac);
    params.localPcepId = id;
    params.byte28 = 1;
    Handle created = Handle::null;
    EXPECT_EQ(pceps.create_pcep(params, created), Refusal::granted);
    return created;
}

Handle LoadedNode::add_group(std::uint16_t id, std::initializer_list<std::uint32_t> members)
{
    Handle created = Handle::null;
    EXPECT_EQ(create_group({id, {}}, Handle::null, created), Refusal::granted);
    for (const std::uint32_t member : members)
        EXPECT_EQ(pceps.add_member(created, member), Refusal::granted);
    return created;
}

const Queue &LoadedNode::queue(Handle handle) const
{
    return qos.queues().at(handle);
}

const Counters &LoadedNode::pcep(std::uint32_t id) const
{
    Handle holder = Handle::null;
    EXPECT_EQ(pceps.find(id, holder), Refusal::granted);
    return pceps.pceps().at(holder).counters;
}

const Replication &LoadedNode::group(std::uint32_t id) const
{
    Handle holder = Handle::null;
    EXPECT_EQ(pceps.find(id, holder), Refusal::granted);
    return pceps.groups().at(holder).counters;
}

Tally LoadedNode::waiting() const
{
    Tally all;
    for (const auto &[handle, queue] : qos.queues())
        all += Tally{queue.waiting().frames, queue.waiting().octets};
    return all;
}

/*
 * pcep_table.cpp - what may be created, bound, grouped and deleted.
 */
#include "softnode/node/pcep_table.h"

#include "softnode/node/records.h"

#include <algorithm>

namespace softnode
{

namespace
{

bool possible(std::uint32_t id)
{
    return id >= 1 && id <= facts::highest_pcep_id;
}

} // namespace

std::uint32_t Pcep::id() const
{
    return params.localPcepId;
}

std::uint32_t Pcep::remote_id() const
{
    return params.remotePcepId >> 8;
}

std::uint16_t Pcep::vlan_id() const
{
    return params.vlan & 0x0fff;
}

std::uint16_t Pcep::priority() const
{
    return params.vlan >> 12;
}

Mac Pcep::local_mac() const
{
    return mac_at(params.sMac);
}

Mac Pcep::remote_mac() const
{
    return mac_at(params.dMac);
}

bool Group::lists(std::uint32_t pcep_id) const
{
    return std::find(members.begin(), members.end(), pcep_id) != members.end();
}

Refusal PcepTable::create_pcep(const ork_ebcom_pcep_params &params, Handle &pcep)
{
    if (!well_formed(params))
        return Refusal::invalid;
    if (const Refusal refusal = check_free(params.localPcepId))
        return refusal;

    const Pcep fresh{params};
    pcep = pceps_.add(fresh);
    holders_[fresh.id()] = pcep;
    by_local_.emplace(fresh.local_mac(), fresh.id());
    by_remote_.emplace(fresh.remote_mac(), fresh.id());
    return Refusal::granted;
}

Refusal PcepTable::delete_pcep(Handle pcep)
{
    if (const Refusal refusal = pceps_.check(pcep))
        return refusal;
    const Pcep &found = pceps_.at(pcep);
    if (found.target != Handle::null)
        return Refusal::busy;

    holders_[found.id()] = Handle::null;
    by_local_.erase({found.local_mac(), found.id()});
    by_remote_.erase({found.remote_mac(), found.id()});
    pceps_.remove(pcep);
    return Refusal::granted;
}

Refusal PcepTable::bind(std::uint32_t pcep_id, Handle target)
{
    if (const Refusal refusal = check_pcep_id(pcep_id))
        return refusal;
    Pcep &pcep = pceps_.at(holders_[pcep_id]);
    if (pcep.target != Handle::null)
        return Refusal::busy;

    pcep.target = target;
    return Refusal::granted;
}

Refusal PcepTable::unbind(std::uint32_t pcep_id)
{
    if (const Refusal refusal = check_pcep_id(pcep_id))
        return refusal;
    Pcep &pcep = pceps_.at(holders_[pcep_id]);
    if (pcep.target == Handle::null)
        return Refusal::gone;

    pcep.target = Handle::null;
    return Refusal::granted;
}

Refusal PcepTable::create_group(const ork_ebcom_multicast_group &params, Handle scheduler, Handle &group)
{
    if (!well_formed(params))
        return Refusal::invalid;
    if (const Refusal refusal = check_free(params.pcep_id))
        return refusal;
    if (listings_[params.pcep_id] != 0)
        return Refusal::busy;
    if (groups_.size() >= facts::most_groups)
        return Refusal::full;

    group = groups_.add(Group{params.pcep_id, scheduler});
    holders_[params.pcep_id] = group;
    ++senders_[scheduler];
    return Refusal::granted;
}

Refusal PcepTable::delete_group(Handle group)
{
    if (const Refusal refusal = groups_.check(group))
        return refusal;
    const Group &found = groups_.at(group);
    if (!found.members.empty())
        return Refusal::busy;

    holders_[found.id] = Handle::null;
    if (--senders_.at(found.scheduler) == 0)
        senders_.erase(found.scheduler);
    groups_.remove(group);
    return Refusal::granted;
}

Refusal PcepTable::add_member(Handle group, std::uint32_t pcep_id)
{
    if (const Refusal refusal = groups_.check(group))
        return refusal;
    if (const Refusal refusal = check_pcep_id(pcep_id))
        return refusal;
    Group &found = groups_.at(group);
    if (found.lists(pcep_id))
        return Refusal::busy;
    if (found.members.size() >= facts::most_members)
        return Refusal::full;

    found.members.push_back(pcep_id);
    ++listings_[pcep_id];
    return Refusal::granted;
}

Refusal PcepTable::remove_member(Handle group, std::uint32_t pcep_id)
{
    if (const Refusal refusal = groups_.check(group))
        return refusal;
    if (!possible(pcep_id))
        return Refusal::invalid;
    if (std::erase(groups_.at(group).members, pcep_id) == 0)
        return Refusal::gone;

    --listings_[pcep_id];
    return Refusal::granted;
}

Refusal PcepTable::account(Handle pcep, Fate fate, const Frames &frames)
{
    if (const Refusal refusal = pceps_.check(pcep))
        return refusal;

    pceps_.at(pcep).counters.account(fate, frames);
    return Refusal::granted;
}

std::vector<Handle> PcepTable::present_members(Handle group) const
{
    std::vector<Handle> present;
    for (const std::uint32_t id : groups_.at(group).members)
        if (check_pcep_id(id) == Refusal::granted)
            present.push_back(holders_[id]);
    return present;
}

void PcepTable::account_replication(Handle group, const Frames &frames, std::uint64_t lost)
{
    Group &replicating = groups_.at(group);
    replicating.counters.offered += frames;
    replicating.counters.copies += Frames{frames.count * replicating.members.size(), frames.length};
    replicating.counters.dropped += Frames{frames.count * lost, frames.length};
}

bool PcepTable::send_through(Handle scheduler) const
{
    return senders_.contains(scheduler);
}

Refusal PcepTable::find(std::uint32_t id, Handle &holder) const
{
    if (!possible(id))
        return Refusal::invalid;
    if (holders_[id] == Handle::null)
        return Refusal::gone;

    holder = holders_[id];
    return Refusal::granted;
}

Handle PcepTable::at_local(const Mac &mac) const
{
    return first_at(mac, by_local_);
}

Handle PcepTable::at_remote(const Mac &mac) const
{
    return first_at(mac, by_remote_);
}

const Registry<Pcep> &PcepTable::pceps() const
{
    return pceps_;
}

const Registry<Group> &PcepTable::groups() const
{
    return groups_;
}

void PcepTable::reset()
{
    pceps_.clear();
    groups_.clear();
    holders_.fill(Handle::null);
    listings_.fill(0);
    senders_.clear();
    by_local_.clear();
    by_remote_.clear();
}

/* Whether a PCEP or a group can be created with this id. */
Refusal PcepTable::check_free(std::uint32_t id) const
{
    if (!possible(id))
        return Refusal::invalid;
    return holders_[id] == Handle::null ? Refusal::granted : Refusal::busy;
}

/* Whether this is the id of a PCEP: gone when it is free, invalid when it is a group's or no id at all. */
Refusal PcepTable::check_pcep_id(std::uint32_t id) const
{
    Handle holder = Handle::null;
    if (const Refusal refusal = find(id, holder))
        return refusal;
    return pceps_.check(holder);
}

Handle PcepTable::first_at(const Mac &mac, const AddressIndex &index) const
{
    const auto first = index.lower_bound({mac, 0});
    return first != index.end() && first->first == mac ? holders_[first->second] : Handle::null;
}

} // namespace softnode

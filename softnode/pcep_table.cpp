/*
 * pcep_table.cpp - what may be created, bound, grouped and deleted.
 */
#include "softnode/pcep_table.h"

#include "softnode/records.h"
#include "softnode/statistics.h"

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

    pcep = pceps_.add({params});
    holders_[params.localPcepId] = pcep;
    return Refusal::granted;
}

Refusal PcepTable::delete_pcep(Handle pcep)
{
    if (const Refusal refusal = pceps_.check(pcep))
        return refusal;
    if (pceps_.at(pcep).target != Handle::null)
        return Refusal::busy;

    holders_[pceps_.at(pcep).id()] = Handle::null;
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
    const auto lists_it = [&](const auto &entry) { return entry.second.lists(params.pcep_id); };
    if (std::any_of(groups_.begin(), groups_.end(), lists_it))
        return Refusal::busy;
    if (groups_.size() >= facts::most_groups)
        return Refusal::full;

    group = groups_.add({params.pcep_id, scheduler});
    holders_[params.pcep_id] = group;
    return Refusal::granted;
}

Refusal PcepTable::delete_group(Handle group)
{
    if (const Refusal refusal = groups_.check(group))
        return refusal;
    if (!groups_.at(group).members.empty())
        return Refusal::busy;

    holders_[groups_.at(group).id] = Handle::null;
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
    return Refusal::granted;
}

Refusal PcepTable::remove_member(Handle group, std::uint32_t pcep_id)
{
    if (const Refusal refusal = groups_.check(group))
        return refusal;
    if (!possible(pcep_id))
        return Refusal::invalid;
    return std::erase(groups_.at(group).members, pcep_id) ? Refusal::granted : Refusal::gone;
}

Refusal PcepTable::account(Handle pcep, Fate fate, const Frames &frames)
{
    if (const Refusal refusal = pceps_.check(pcep))
        return refusal;

    pceps_.at(pcep).counters.account(fate, frames);
    return Refusal::granted;
}

Refusal PcepTable::read_statistics(Handle pcep, ebcom_pcep_stats &record) const
{
    if (const Refusal refusal = pceps_.check(pcep))
        return refusal;

    record = pcep_statistics(pceps_.at(pcep).counters);
    return Refusal::granted;
}

bool PcepTable::send_through(Handle scheduler) const
{
    return std::any_of(groups_.begin(), groups_.end(),
                       [scheduler](const auto &entry) { return entry.second.scheduler == scheduler; });
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
    if (!possible(id))
        return Refusal::invalid;
    if (holders_[id] == Handle::null)
        return Refusal::gone;
    return pceps_.check(holders_[id]);
}

} // namespace softnode

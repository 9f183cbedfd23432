/*
 * pcep_table.h - PCEPs, their bindings, and the multicast groups they are members of.
 *
 * PCEPs and groups are numbered from one range of ids. A group lists its members by id, as the replication table of an
 * accelerator does, and not by handle: a PCEP can be deleted while groups list it, and its id stays listed. Copies for
 * an id without a PCEP are dropped; a PCEP created with that id takes part again; the id can be taken off the list at
 * any time. Until then no group can have it.
 */
#ifndef SOFTNODE_PCEP_TABLE_H
#define SOFTNODE_PCEP_TABLE_H

#include "softnode/common/counters.h"
#include "softnode/common/facts.h"
#include "softnode/common/mac.h"
#include "softnode/common/registry.h"
#include "softnode/platform.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <set>
#include <utility>
#include <vector>

namespace softnode
{

struct Pcep {
    ork_ebcom_pcep_params params{};
    Handle target = Handle::null; /* null: not bound */
    Counters counters{};          /* sent: handed to the service; received: arrived; nothing is dropped here */

    std::uint32_t id() const;
    std::uint32_t remote_id() const;
    std::uint16_t vlan_id() const;
    std::uint16_t priority() const;
    Mac local_mac() const;
    Mac remote_mac() const;
};

/* What a group made of the frames that it was to replicate. */
struct Replication {
    Tally offered;
    Tally copies;  /* one of each frame for each member, those dropped among them */
    Tally dropped; /* copies for a member that does not exist, or whose remote address nothing leads to */
};

struct Group {
    std::uint32_t id = 0;
    Handle scheduler = Handle::null;      /* null: the schedulers of the members' paths */
    std::vector<std::uint32_t> members{}; /* PCEP ids, in the order of adding */
    Replication counters{};

    bool lists(std::uint32_t pcep_id) const;
};

/* PCEP ids in the order of one of their addresses. */
using AddressIndex = std::set<std::pair<Mac, std::uint32_t>>;

class PcepTable
{
public:
    Refusal create_pcep(const ork_ebcom_pcep_params &params, Handle &pcep);

    /** Refused while the PCEP is bound; granted while groups list it. */
    Refusal delete_pcep(Handle pcep);

    /** Ties a PCEP to a target that exists. */
    Refusal bind(std::uint32_t pcep_id, Handle target);
    Refusal unbind(std::uint32_t pcep_id);

    /** Creates a group that sends through a scheduler that exists, or null. */
    Refusal create_group(const ork_ebcom_multicast_group &params, Handle scheduler, Handle &group);

    /** Refused while the group has members. */
    Refusal delete_group(Handle group);

    Refusal add_member(Handle group, std::uint32_t pcep_id);
    Refusal remove_member(Handle group, std::uint32_t pcep_id);

    Refusal account(Handle pcep, Fate fate, const Frames &frames);

    /** The members of a group that are there, in the order of adding. */
    std::vector<Handle> present_members(Handle group) const;

    /** Counts frames that a group that is there replicated to all its members; `lost` copies of each were dropped. */
    void account_replication(Handle group, const Frames &frames, std::uint64_t lost);

    /** Whether a group sends through the scheduler. */
    bool send_through(Handle scheduler) const;

    /** The PCEP or group with an id: gone when the id is free, invalid when it is none. */
    Refusal find(std::uint32_t id, Handle &holder) const;

    /* The PCEP with the lowest id that has this local or remote address; null when there is none. */
    Handle at_local(const Mac &mac) const;
    Handle at_remote(const Mac &mac) const;

    const Registry<Pcep> &pceps() const;
    const Registry<Group> &groups() const;

    void reset();

private:
    Refusal check_free(std::uint32_t id) const;
    Refusal check_pcep_id(std::uint32_t id) const;
    Handle first_at(const Mac &mac, const AddressIndex &index) const;

    Registry<Pcep> pceps_{Kind::pcep};
    Registry<Group> groups_{Kind::multicast_group};
    std::array<Handle, facts::highest_pcep_id + 1> holders_{};       /* by id: its PCEP or group; null: free */
    std::array<std::size_t, facts::highest_pcep_id + 1> listings_{}; /* by id: how many groups list it */
    std::map<Handle, std::size_t> senders_;                          /* by scheduler: how many groups send through it */
    AddressIndex by_local_;
    AddressIndex by_remote_;
};

} // namespace softnode

#endif

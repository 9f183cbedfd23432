/*
 * pcep_table_test.cpp - PCEPs, bindings and groups alone.
 */
#include "softnode/node/pcep_table.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>

namespace facts = softnode::facts;
using softnode::Fate;
using softnode::Handle;
using softnode::Refusal;

namespace
{

constexpr Handle unknown = static_cast<Handle>(0x1234);
constexpr Handle target = static_cast<Handle>(0x5200000001);
constexpr Handle scheduler = static_cast<Handle>(0x5c00000001);
constexpr softnode::Mac here{2, 0, 2, 3, 0, 1};
constexpr softnode::Mac there{2, 0, 2, 2, 0, 2};

/* PCEP ids that cannot be. */
constexpr std::uint32_t impossible_ids[] = {0, 512, 0xffffff, 0xffffffff};

class PcepTable : public testing::Test
{
protected:
    static ork_ebcom_pcep_params numbered(std::uint32_t id)
    {
        ork_ebcom_pcep_params params{};
        params.localPcepId = id;
        params.byte28 = 1;
        return params;
    }

    Refusal create_group(std::uint32_t id, Handle &group)
    {
        ork_ebcom_multicast_group params{};
        params.pcep_id = static_cast<std::uint16_t>(id);
        return table.create_group(params, Handle::null, group);
    }

    Handle pcep(std::uint32_t id)
    {
        Handle created = Handle::null;
        EXPECT_EQ(table.create_pcep(numbered(id), created), Refusal::granted);
        return created;
    }

    Handle group(std::uint32_t id)
    {
        Handle created = Handle::null;
        EXPECT_EQ(create_group(id, created), Refusal::granted);
        return created;
    }

    const std::vector<std::uint32_t> &members(Handle group) const
    {
        return table.groups().at(group).members;
    }

    Handle untouched = unknown;
    softnode::PcepTable table;
};

using PcepBinding = PcepTable;
using PcepGroup = PcepTable;

} // namespace

TEST_F(PcepTable, KeepsAPcepAsGiven)
{
    ork_ebcom_pcep_params params = numbered(17);
    params.sMac[5] = 1;
    params.dMac[0] = 2;
    params.vlan = 0x5123;
    params.remotePcepId = 0xabcdef77;
    Handle handle = Handle::null;
    ASSERT_EQ(table.create_pcep(params, handle), Refusal::granted);
    const softnode::Pcep &kept = table.pceps().at(handle);
    EXPECT_EQ(kept.id(), 17U);
    EXPECT_EQ(kept.remote_id(), 0xabcdefU);
    EXPECT_EQ(kept.vlan_id(), 0x123);
    EXPECT_EQ(kept.priority(), 5);
    EXPECT_EQ(kept.params.sMac[5], 1);
    EXPECT_EQ(kept.params.dMac[0], 2);
    EXPECT_EQ(kept.target, Handle::null);
}

TEST_F(PcepTable, APcepNeedsAPossibleId)
{
    for (const std::uint32_t id : impossible_ids)
        EXPECT_EQ(table.create_pcep(numbered(id), untouched), Refusal::invalid) << id;
    EXPECT_EQ(untouched, unknown);
    EXPECT_NE(pcep(1), pcep(511));
}

TEST_F(PcepTable, APcepNeedsAWellFormedRecord)
{
    ork_ebcom_pcep_params params = numbered(1);
    params.byte28 = 0;
    EXPECT_EQ(table.create_pcep(params, untouched), Refusal::invalid);
    EXPECT_EQ(untouched, unknown);
    EXPECT_EQ(table.pceps().size(), 0U);
}

TEST_F(PcepTable, AnIdIsTakenByOnePcepOrGroup)
{
    pcep(1);
    group(2);
    EXPECT_EQ(table.create_pcep(numbered(1), untouched), Refusal::busy);
    EXPECT_EQ(table.create_pcep(numbered(2), untouched), Refusal::busy);
    EXPECT_EQ(create_group(1, untouched), Refusal::busy);
    EXPECT_EQ(create_group(2, untouched), Refusal::busy);
    EXPECT_EQ(untouched, unknown);
}

TEST_F(PcepTable, EveryIdCanBeTakenAndThenNoneIsLeft)
{
    for (std::uint32_t id = 1; id <= facts::highest_pcep_id; ++id)
        pcep(id);
    for (std::uint32_t id = 1; id <= facts::highest_pcep_id; ++id)
        EXPECT_EQ(table.create_pcep(numbered(id), untouched), Refusal::busy);
}

TEST_F(PcepTable, DeletingAPcepFreesItsIdAndNotItsHandle)
{
    const Handle first = pcep(1);
    ASSERT_EQ(table.delete_pcep(first), Refusal::granted);
    const Handle second = pcep(1);
    EXPECT_NE(first, second);
    EXPECT_EQ(table.delete_pcep(first), Refusal::gone);
    EXPECT_EQ(table.delete_pcep(second), Refusal::granted);
}

TEST_F(PcepTable, OnlyPcepsCanBeDeletedAsPceps)
{
    for (const Handle wrong : {Handle::null, unknown, group(1)})
        EXPECT_EQ(table.delete_pcep(wrong), Refusal::invalid);
}

TEST_F(PcepTable, ResetLeavesNothingAndMakesHandlesStale)
{
    const Handle end_point = pcep(1);
    const Handle bundle = group(2);
    Handle sending = Handle::null;
    ASSERT_EQ(table.create_group({3, {}}, scheduler, sending), Refusal::granted);
    ASSERT_EQ(table.add_member(bundle, 1), Refusal::granted);
    table.reset();
    EXPECT_FALSE(table.send_through(scheduler));
    EXPECT_EQ(table.pceps().size(), 0U);
    EXPECT_EQ(table.groups().size(), 0U);
    EXPECT_EQ(table.delete_pcep(end_point), Refusal::gone);
    EXPECT_EQ(table.delete_group(bundle), Refusal::gone);
    group(1);
    pcep(2);
}

TEST_F(PcepTable, FindsWhatHasAnId)
{
    const Handle end_point = pcep(1);
    const Handle bundle = group(2);
    Handle found = unknown;
    ASSERT_EQ(table.find(1, found), Refusal::granted);
    EXPECT_EQ(found, end_point);
    ASSERT_EQ(table.find(2, found), Refusal::granted);
    EXPECT_EQ(found, bundle);
    EXPECT_EQ(table.find(3, found), Refusal::gone);
    for (const std::uint32_t id : impossible_ids)
        EXPECT_EQ(table.find(id, found), Refusal::invalid);
    EXPECT_EQ(found, bundle);
}

TEST_F(PcepTable, FindsTheLowestIdWithAnAddress)
{
    ork_ebcom_pcep_params params = numbered(0);
    std::copy(here.begin(), here.end(), params.sMac);
    std::copy(there.begin(), there.end(), params.dMac);
    std::map<std::uint32_t, Handle> pceps;
    for (const std::uint32_t id : {9U, 300U, 4U}) {
        params.localPcepId = id;
        ASSERT_EQ(table.create_pcep(params, pceps[id]), Refusal::granted);
    }
    for (const std::uint32_t lowest : {4U, 9U, 300U}) {
        EXPECT_EQ(table.at_local(here), pceps[lowest]);
        EXPECT_EQ(table.at_remote(there), pceps[lowest]);
        ASSERT_EQ(table.delete_pcep(pceps[lowest]), Refusal::granted);
    }
    EXPECT_EQ(table.at_local(here), Handle::null);
    EXPECT_EQ(table.at_remote(there), Handle::null);
}

TEST_F(PcepTable, TellsLocalAddressesFromRemoteOnes)
{
    ork_ebcom_pcep_params params = numbered(1);
    std::copy(here.begin(), here.end(), params.sMac);
    std::copy(there.begin(), there.end(), params.dMac);
    Handle created = Handle::null;
    ASSERT_EQ(table.create_pcep(params, created), Refusal::granted);
    EXPECT_EQ(table.at_local(there), Handle::null);
    EXPECT_EQ(table.at_remote(here), Handle::null);
    table.reset();
    pcep(1);
    EXPECT_EQ(table.at_local(here), Handle::null) << "another one has the id now";
    EXPECT_EQ(table.at_remote(there), Handle::null);
}

TEST_F(PcepTable, CountersAreTheirPceps)
{
    const Handle counted = pcep(1);
    const Handle idle = pcep(2);
    ASSERT_EQ(table.account(counted, Fate::received, {3, 100}), Refusal::granted);
    EXPECT_EQ(table.pceps().at(counted).counters[Fate::received].frames, 3U);
    EXPECT_EQ(table.pceps().at(idle).counters[Fate::received].frames, 0U);
}

TEST_F(PcepTable, CountersBelongToPcepsOnly)
{
    const Handle deleted = pcep(1);
    ASSERT_EQ(table.delete_pcep(deleted), Refusal::granted);
    for (const Handle wrong : {Handle::null, unknown, group(2)})
        EXPECT_EQ(table.account(wrong, Fate::sent, {1, 1}), Refusal::invalid);
    EXPECT_EQ(table.account(deleted, Fate::sent, {1, 1}), Refusal::gone);
}

TEST_F(PcepTable, ANewPcepCountsFromZeroAlsoUnderAnOldId)
{
    const Handle old = pcep(1);
    ASSERT_EQ(table.account(old, Fate::sent, {1, 1}), Refusal::granted);
    ASSERT_EQ(table.delete_pcep(old), Refusal::granted);
    EXPECT_EQ(table.pceps().at(pcep(1)).counters[Fate::sent].frames, 0U);
}

TEST_F(PcepBinding, TiesThePcepOfTheIdToTheTarget)
{
    const Handle other = pcep(1);
    const Handle bound = pcep(2);
    ASSERT_EQ(table.bind(2, target), Refusal::granted);
    EXPECT_EQ(table.pceps().at(bound).target, target);
    EXPECT_EQ(table.pceps().at(other).target, Handle::null);
    ASSERT_EQ(table.unbind(2), Refusal::granted);
    EXPECT_EQ(table.pceps().at(bound).target, Handle::null);
}

TEST_F(PcepBinding, IsMadeOnceAndUndoneOnce)
{
    pcep(1);
    EXPECT_EQ(table.unbind(1), Refusal::gone);
    EXPECT_EQ(table.bind(1, target), Refusal::granted);
    EXPECT_EQ(table.bind(1, target), Refusal::busy);
    EXPECT_EQ(table.unbind(1), Refusal::granted);
    EXPECT_EQ(table.unbind(1), Refusal::gone);
}

TEST_F(PcepBinding, NeedsAPcep)
{
    group(2);
    for (const std::uint32_t id : impossible_ids) {
        EXPECT_EQ(table.bind(id, target), Refusal::invalid);
        EXPECT_EQ(table.unbind(id), Refusal::invalid);
    }
    EXPECT_EQ(table.bind(1, target), Refusal::gone);
    EXPECT_EQ(table.unbind(1), Refusal::gone);
    EXPECT_EQ(table.bind(2, target), Refusal::invalid);
    EXPECT_EQ(table.unbind(2), Refusal::invalid);
}

TEST_F(PcepBinding, KeepsThePcepFromBeingDeleted)
{
    const Handle bound = pcep(1);
    ASSERT_EQ(table.bind(1, target), Refusal::granted);
    EXPECT_EQ(table.delete_pcep(bound), Refusal::busy);
    ASSERT_EQ(table.unbind(1), Refusal::granted);
    EXPECT_EQ(table.delete_pcep(bound), Refusal::granted);
}

TEST_F(PcepGroup, IsKeptAsGiven)
{
    ork_ebcom_multicast_group params{};
    params.pcep_id = 17;
    Handle handle = Handle::null;
    ASSERT_EQ(table.create_group(params, scheduler, handle), Refusal::granted);
    const softnode::Group &kept = table.groups().at(handle);
    EXPECT_EQ(kept.id, 17U);
    EXPECT_EQ(kept.scheduler, scheduler);
    EXPECT_TRUE(kept.members.empty());
    EXPECT_TRUE(table.send_through(scheduler));
    EXPECT_FALSE(table.send_through(static_cast<Handle>(0x5c00000002)));
}

TEST_F(PcepGroup, SendsThroughItsSchedulerUntilItIsDeleted)
{
    std::array<Handle, 2> groups{};
    for (std::uint16_t index = 0; index < groups.size(); ++index)
        ASSERT_EQ(table.create_group({static_cast<std::uint16_t>(index + 1), {}}, scheduler, groups[index]),
                  Refusal::granted);
    ASSERT_EQ(table.delete_group(groups[0]), Refusal::granted);
    EXPECT_TRUE(table.send_through(scheduler));
    ASSERT_EQ(table.delete_group(groups[1]), Refusal::granted);
    EXPECT_FALSE(table.send_through(scheduler));
}

TEST_F(PcepGroup, NeedsAPossibleIdAndAWellFormedRecord)
{
    for (const std::uint32_t id : {0U, 512U, 0xfffU, 0x1001U})
        EXPECT_EQ(create_group(id, untouched), Refusal::invalid) << id;
    ork_ebcom_multicast_group reserved{1, {0, 0, 0, 0, 0, 1}};
    EXPECT_EQ(table.create_group(reserved, Handle::null, untouched), Refusal::invalid);
    EXPECT_EQ(untouched, unknown);
}

TEST_F(PcepGroup, TheGroupAfterTheLastOneThatFitsIsRefused)
{
    for (std::uint32_t id = 1; id < facts::most_groups; ++id)
        group(id);
    const Handle last = group(facts::most_groups);
    EXPECT_EQ(create_group(31, untouched), Refusal::full);
    EXPECT_EQ(untouched, unknown);
    ASSERT_EQ(table.delete_group(last), Refusal::granted);
    group(31);
}

TEST_F(PcepGroup, DeletingFreesTheIdAndNotTheHandle)
{
    const Handle first = group(1);
    ASSERT_EQ(table.delete_group(first), Refusal::granted);
    EXPECT_NE(group(1), first);
    EXPECT_EQ(table.delete_group(first), Refusal::gone);
}

TEST_F(PcepGroup, OnlyGroupsCanBeDeletedAsGroups)
{
    for (const Handle wrong : {Handle::null, unknown, pcep(1)})
        EXPECT_EQ(table.delete_group(wrong), Refusal::invalid);
}

TEST_F(PcepGroup, WithMembersIsNotDeleted)
{
    const Handle bundle = group(100);
    pcep(1);
    ASSERT_EQ(table.add_member(bundle, 1), Refusal::granted);
    EXPECT_EQ(table.delete_group(bundle), Refusal::busy);
    ASSERT_EQ(table.remove_member(bundle, 1), Refusal::granted);
    EXPECT_EQ(table.delete_group(bundle), Refusal::granted);
}

TEST_F(PcepGroup, ListsMembersInTheOrderOfAdding)
{
    const Handle bundle = group(100);
    for (const std::uint32_t id : {7U, 3U, 5U}) {
        pcep(id);
        ASSERT_EQ(table.add_member(bundle, id), Refusal::granted);
    }
    EXPECT_EQ(members(bundle), (std::vector<std::uint32_t>{7, 3, 5}));
    ASSERT_EQ(table.remove_member(bundle, 3), Refusal::granted);
    EXPECT_EQ(members(bundle), (std::vector<std::uint32_t>{7, 5}));
}

TEST_F(PcepGroup, APcepCanBeInSeveralGroupsOnceInEach)
{
    const Handle one = group(100);
    const Handle two = group(101);
    pcep(1);
    EXPECT_EQ(table.add_member(one, 1), Refusal::granted);
    EXPECT_EQ(table.add_member(two, 1), Refusal::granted);
    EXPECT_EQ(table.add_member(one, 1), Refusal::busy);
    EXPECT_EQ(members(one).size(), 1U);
}

TEST_F(PcepGroup, TheMemberAfterTheLastOneThatFitsIsRefused)
{
    const Handle bundle = group(100);
    for (std::uint32_t id = 1; id <= facts::most_members + 1; ++id)
        pcep(id);
    for (std::uint32_t id = 1; id <= facts::most_members; ++id)
        ASSERT_EQ(table.add_member(bundle, id), Refusal::granted);
    EXPECT_EQ(table.add_member(bundle, 17), Refusal::full);
    ASSERT_EQ(table.remove_member(bundle, 4), Refusal::granted);
    EXPECT_EQ(table.add_member(bundle, 17), Refusal::granted);
}

TEST_F(PcepGroup, AMemberHasToBeAPcep)
{
    const Handle bundle = group(100);
    group(101);
    for (const std::uint32_t id : impossible_ids)
        EXPECT_EQ(table.add_member(bundle, id), Refusal::invalid);
    EXPECT_EQ(table.add_member(bundle, 100), Refusal::invalid);
    EXPECT_EQ(table.add_member(bundle, 101), Refusal::invalid);
    EXPECT_EQ(table.add_member(bundle, 1), Refusal::gone);
    EXPECT_TRUE(members(bundle).empty());
}

TEST_F(PcepGroup, OnlyMembersCanBeRemoved)
{
    const Handle bundle = group(100);
    pcep(1);
    for (const std::uint32_t id : impossible_ids)
        EXPECT_EQ(table.remove_member(bundle, id), Refusal::invalid);
    for (const std::uint32_t id : {1U, 2U, 100U})
        EXPECT_EQ(table.remove_member(bundle, id), Refusal::gone);
}

TEST_F(PcepGroup, MembersAreAddedToAndRemovedFromGroupsOnly)
{
    const Handle deleted = group(100);
    ASSERT_EQ(table.delete_group(deleted), Refusal::granted);
    for (const Handle wrong : {Handle::null, unknown, pcep(1)}) {
        EXPECT_EQ(table.add_member(wrong, 1), Refusal::invalid);
        EXPECT_EQ(table.remove_member(wrong, 1), Refusal::invalid);
    }
    EXPECT_EQ(table.add_member(deleted, 1), Refusal::gone);
    EXPECT_EQ(table.remove_member(deleted, 1), Refusal::gone);
}

TEST_F(PcepGroup, ListsTheIdOfADeletedPcepUntilItIsRemoved)
{
    const Handle bundle = group(100);
    const Handle member = pcep(1);
    ASSERT_EQ(table.add_member(bundle, 1), Refusal::granted);
    ASSERT_EQ(table.delete_pcep(member), Refusal::granted);
    EXPECT_EQ(members(bundle), std::vector<std::uint32_t>{1});
    EXPECT_EQ(table.delete_group(bundle), Refusal::busy);
    EXPECT_EQ(table.remove_member(bundle, 1), Refusal::granted);
    EXPECT_EQ(table.delete_group(bundle), Refusal::granted);
}

TEST_F(PcepGroup, TellsWhichOfItsMembersAreThere)
{
    const Handle bundle = group(100);
    std::map<std::uint32_t, Handle> pceps;
    for (const std::uint32_t id : {7U, 3U, 5U}) {
        pceps[id] = pcep(id);
        ASSERT_EQ(table.add_member(bundle, id), Refusal::granted);
    }
    EXPECT_EQ(table.present_members(bundle), (std::vector<Handle>{pceps[7], pceps[3], pceps[5]}));
    ASSERT_EQ(table.delete_pcep(pceps[3]), Refusal::granted);
    EXPECT_EQ(table.present_members(bundle), (std::vector<Handle>{pceps[7], pceps[5]}));
    pceps[3] = pcep(3);
    EXPECT_EQ(table.present_members(bundle), (std::vector<Handle>{pceps[7], pceps[3], pceps[5]}));
}

TEST_F(PcepGroup, CountsWhatItReplicated)
{
    const Handle bundle = group(100);
    for (const std::uint32_t id : {1U, 2U, 3U}) {
        pcep(id);
        ASSERT_EQ(table.add_member(bundle, id), Refusal::granted);
    }
    table.account_replication(bundle, {10, 100}, 0);
    table.account_replication(bundle, {1, 50}, 2);
    const softnode::Replication &counters = table.groups().at(bundle).counters;
    EXPECT_EQ(counters.offered.frames, 11U);
    EXPECT_EQ(counters.offered.octets, 1050U);
    EXPECT_EQ(counters.copies.frames, 33U);
    EXPECT_EQ(counters.copies.octets, 3150U);
    EXPECT_EQ(counters.dropped.frames, 2U);
    EXPECT_EQ(counters.dropped.octets, 100U);
}

TEST_F(PcepGroup, APcepCreatedUnderAListedIdIsAMember)
{
    const Handle bundle = group(100);
    const Handle member = pcep(1);
    ASSERT_EQ(table.add_member(bundle, 1), Refusal::granted);
    ASSERT_EQ(table.delete_pcep(member), Refusal::granted);
    pcep(1);
    EXPECT_EQ(table.add_member(bundle, 1), Refusal::busy);
    EXPECT_EQ(members(bundle), std::vector<std::uint32_t>{1});
}

TEST_F(PcepGroup, CannotHaveAnIdAsLongAsOneGroupListsIt)
{
    const std::array<Handle, 2> bundles{group(100), group(101)};
    const Handle member = pcep(1);
    for (const Handle bundle : bundles)
        ASSERT_EQ(table.add_member(bundle, 1), Refusal::granted);
    ASSERT_EQ(table.delete_pcep(member), Refusal::granted);
    for (const Handle bundle : bundles) {
        EXPECT_EQ(create_group(1, untouched), Refusal::busy);
        ASSERT_EQ(table.remove_member(bundle, 1), Refusal::granted);
        EXPECT_EQ(table.remove_member(bundle, 1), Refusal::gone);
    }
    group(1);
}

TEST_F(PcepGroup, CannotHaveAnIdThatAGroupLists)
{
    const Handle bundle = group(100);
    const Handle member = pcep(1);
    ASSERT_EQ(table.add_member(bundle, 1), Refusal::granted);
    ASSERT_EQ(table.delete_pcep(member), Refusal::granted);
    EXPECT_EQ(create_group(1, untouched), Refusal::busy);
    ASSERT_EQ(table.remove_member(bundle, 1), Refusal::granted);
    group(1);
}

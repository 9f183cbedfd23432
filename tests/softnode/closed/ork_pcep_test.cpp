/*
 * ork_pcep_test.cpp - the driver kit's PCEPs, bindings and multicast groups through its C functions.
 */
#include "control.h"

#include <cstdint>
#include <cstring>
#include <functional>
#include <initializer_list>
#include <vector>

namespace
{

class OrkPcep : public ControlledNode
{
protected:
    void expect_no_binding(const ork_bind_params &params, ork_rc rc)
    {
        EXPECT_EQ(ork_bind(attach.sys_handle, &params), rc);
        EXPECT_EQ(ork_unbind(attach.sys_handle, &params), rc);
    }

    ork_rc create_group_through(std::uint64_t scheduler)
    {
        const ork_ebcom_multicast_group params{101, {}};
        return ork_ebcom_multicast_group_create(ork, &params, &untouched, scheduler);
    }

    static std::uint64_t number_of(void *handle)
    {
        return reinterpret_cast<std::uintptr_t>(handle);
    }

    /* Handles that name neither a PCEP nor a group. */
    std::vector<std::uint64_t> wrong_handles()
    {
        void *scheduler = create_scheduler();
        return {0, number_of(foreign), number_of(ork), number_of(scheduler), number_of(add_queue(scheduler))};
    }

    std::uint64_t untouched = 11;
    ebcom_pcep_stats record{{55, 0, {}}, {}};
};

using OrkBind = OrkPcep;
using OrkMulticast = OrkPcep;

} // namespace

TEST_F(OrkPcep, APcepReachesTheNode)
{
    const ork_ebcom_pcep_params params{
        {2, 0, 2, 3, 0, 1}, {2, 0, 2, 2, 0, 2}, 0x5123, 0, 511, 0xabcdef77, 0x9999, 0, 1, {}};
    std::uint64_t handle = 0;
    ASSERT_EQ(ork_ebcom_pcep_create(ork, &params, &handle), ORK_OK);
    EXPECT_NE(handle, 0U);
    const auto pcep = look_into_node().at("pceps")[0];
    EXPECT_EQ(pcep.at("id"), 511);
    EXPECT_EQ(pcep.at("remote_id"), 0xabcdef);
    EXPECT_EQ(pcep.at("local_mac"), "02:00:02:03:00:01");
    EXPECT_EQ(pcep.at("remote_mac"), "02:00:02:02:00:02");
    EXPECT_EQ(pcep.at("vlan"), 0x123);
    EXPECT_EQ(pcep.at("priority"), 5);
    EXPECT_TRUE(pcep.at("target").is_null());
}

TEST_F(OrkPcep, CreatingRefusesNull)
{
    const ork_ebcom_pcep_params params = pcep_params(1);
    EXPECT_EQ(ork_ebcom_pcep_create(ork, nullptr, &untouched), ORK_INVAL);
    EXPECT_EQ(ork_ebcom_pcep_create(ork, &params, nullptr), ORK_INVAL);
    EXPECT_EQ(untouched, 11U);
    EXPECT_TRUE(look_into_node().at("pceps").empty());
}

TEST_F(OrkPcep, CreatingRefusesImpossibleIdsAndReservedBits)
{
    for (const std::uint32_t id : {0U, 512U, 0x01000001U}) {
        const ork_ebcom_pcep_params params = pcep_params(id);
        EXPECT_EQ(ork_ebcom_pcep_create(ork, &params, &untouched), ORK_INVAL);
    }
    ork_ebcom_pcep_params reserved = pcep_params(1);
    reserved.vlan = 0x8000;
    EXPECT_EQ(ork_ebcom_pcep_create(ork, &reserved, &untouched), ORK_INVAL);
    EXPECT_EQ(untouched, 11U);
}

TEST_F(OrkPcep, AnIdInUseIsRefused)
{
    create_pcep(1);
    create_group(2);
    for (const auto id : std::initializer_list<std::uint16_t>{1, 2}) {
        const ork_ebcom_pcep_params pcep = pcep_params(id);
        const ork_ebcom_multicast_group group{id, {}};
        EXPECT_EQ(ork_ebcom_pcep_create(ork, &pcep, &untouched), ORK_AGAIN);
        EXPECT_EQ(ork_ebcom_multicast_group_create(ork, &group, &untouched, 0), ORK_AGAIN);
    }
    EXPECT_EQ(untouched, 11U);
}

TEST_F(OrkPcep, DeletingFreesTheId)
{
    ASSERT_EQ(ork_ebcom_pcep_delete(ork, create_pcep(1)), ORK_OK);
    EXPECT_TRUE(look_into_node().at("pceps").empty());
    create_group(1);
}

TEST_F(OrkPcep, DeletingAndReadingRefuseWrongHandles)
{
    std::vector<std::uint64_t> wrong = wrong_handles();
    wrong.push_back(create_group(100));
    for (const std::uint64_t handle : wrong) {
        EXPECT_EQ(ork_ebcom_pcep_delete(ork, handle), ORK_INVAL);
        EXPECT_EQ(ork_ebcom_pcep_statistics_get(ork, handle, &record), ORK_INVAL);
    }
    const std::uint64_t stale = create_pcep(1);
    EXPECT_EQ(ork_ebcom_pcep_statistics_get(ork, stale, nullptr), ORK_INVAL);
    ASSERT_EQ(ork_ebcom_pcep_delete(ork, stale), ORK_OK);
    EXPECT_EQ(ork_ebcom_pcep_delete(ork, stale), ORK_NOTAVAIL);
    EXPECT_EQ(ork_ebcom_pcep_statistics_get(ork, stale, &record), ORK_NOTAVAIL);
    EXPECT_EQ(record.outbound.out_cnt0, 55U);
}

TEST_F(OrkPcep, HandlesOfBeforeAResetAreStale)
{
    const std::uint64_t pcep = create_pcep(1);
    const std::uint64_t group = create_group(100);
    switch_on_afresh();
    EXPECT_EQ(ork_ebcom_pcep_delete(ork, pcep), ORK_NOTAVAIL);
    EXPECT_EQ(ork_ebcom_multicast_group_delete(ork, group), ORK_NOTAVAIL);
}

TEST_F(OrkPcep, StatisticsOfAnIdlePcepAreZeroAllOver)
{
    std::memset(&record, 0xa5, sizeof record);
    ASSERT_EQ(ork_ebcom_pcep_statistics_get(ork, create_pcep(1), &record), ORK_OK);
    const ebcom_pcep_stats expected{};
    EXPECT_EQ(std::memcmp(&record, &expected, sizeof expected), 0);
}

TEST_F(OrkBind, ABindingReachesTheNode)
{
    const std::uint64_t pcep = create_pcep(17);
    const ork_bind_params params = binding_of(17);
    ASSERT_EQ(ork_bind(attach.sys_handle, &params), ORK_OK);
    const auto bindings = look_into_node().at("bindings");
    ASSERT_EQ(bindings.size(), 1U);
    EXPECT_EQ(bindings[0].at("pcep"), 17);
    EXPECT_EQ(ork_ebcom_pcep_delete(ork, pcep), ORK_AGAIN);
    ASSERT_EQ(ork_unbind(attach.sys_handle, &params), ORK_OK);
    EXPECT_TRUE(look_into_node().at("bindings").empty());
    EXPECT_EQ(ork_ebcom_pcep_delete(ork, pcep), ORK_OK);
}

TEST_F(OrkBind, ASecondBindingAndAnUnboundUnbindingAreRefused)
{
    create_pcep(17);
    const ork_bind_params params = binding_of(17);
    EXPECT_EQ(ork_unbind(attach.sys_handle, &params), ORK_NOTAVAIL);
    ASSERT_EQ(ork_bind(attach.sys_handle, &params), ORK_OK);
    EXPECT_EQ(ork_bind(attach.sys_handle, &params), ORK_AGAIN);
}

TEST_F(OrkBind, TheFirstArgumentIsTheSystemHandle)
{
    create_pcep(17);
    const ork_bind_params params = binding_of(17);
    for (void *wrong : {static_cast<void *>(nullptr), foreign, ork, create_scheduler()}) {
        EXPECT_EQ(ork_bind(wrong, &params), ORK_INVAL);
        EXPECT_EQ(ork_unbind(wrong, &params), ORK_INVAL);
    }
    void *stale = attach.sys_handle;
    switch_on_afresh();
    create_pcep(17);
    const ork_bind_params fresh = binding_of(17);
    EXPECT_EQ(ork_bind(stale, &fresh), ORK_NOTAVAIL);
    EXPECT_EQ(ork_unbind(stale, &fresh), ORK_NOTAVAIL);
    EXPECT_TRUE(look_into_node().at("bindings").empty());
}

TEST_F(OrkBind, RefusesNullAndAnythingReserved)
{
    create_pcep(17);
    EXPECT_EQ(ork_bind(attach.sys_handle, nullptr), ORK_INVAL);
    EXPECT_EQ(ork_unbind(attach.sys_handle, nullptr), ORK_INVAL);
    ork_bind_params params = binding_of(17);
    params.reserved85[10] = 1;
    expect_no_binding(params, ORK_INVAL);
}

TEST_F(OrkBind, RefusesWrongHandlesInTheRecord)
{
    create_pcep(17);
    for (void *wrong : {static_cast<void *>(nullptr), foreign, attach.sys_handle, create_scheduler()}) {
        ork_bind_params params = binding_of(17);
        params.ork_handle = wrong;
        expect_no_binding(params, ORK_INVAL);
        params = binding_of(17);
        params.target = number_of(wrong);
        expect_no_binding(params, ORK_INVAL);
    }
}

TEST_F(OrkBind, RefusesHandlesOfBeforeAResetInTheRecord)
{
    const ork_bind_params stale = binding_of(17);
    switch_on_afresh();
    create_pcep(17);
    ork_bind_params params = binding_of(17);
    params.ork_handle = stale.ork_handle;
    expect_no_binding(params, ORK_NOTAVAIL);
    params = binding_of(17);
    params.target = stale.target;
    expect_no_binding(params, ORK_NOTAVAIL);
}

TEST_F(OrkBind, NeedsAPcep)
{
    create_group(100);
    expect_no_binding(binding_of(0), ORK_INVAL);
    expect_no_binding(binding_of(512), ORK_INVAL);
    expect_no_binding(binding_of(100), ORK_INVAL);
    expect_no_binding(binding_of(17), ORK_NOTAVAIL);
}

TEST_F(OrkMulticast, AGroupReachesTheNodeWithItsMembers)
{
    const std::uint64_t group = create_group(100);
    create_pcep(1);
    ASSERT_EQ(ork_ebcom_multicast_member_add(ork, group, 1), ORK_OK);
    const auto groups = look_into_node().at("groups");
    ASSERT_EQ(groups.size(), 1U);
    EXPECT_EQ(groups[0].at("id"), 100);
    EXPECT_TRUE(groups[0].at("scheduler").is_null());
    EXPECT_EQ(groups[0].at("members"), notation::document::array({1}));
    EXPECT_EQ(ork_ebcom_multicast_group_delete(ork, group), ORK_AGAIN);
    ASSERT_EQ(ork_ebcom_multicast_member_rem(ork, group, 1), ORK_OK);
    EXPECT_EQ(ork_ebcom_multicast_group_delete(ork, group), ORK_OK);
    EXPECT_TRUE(look_into_node().at("groups").empty());
}

TEST_F(OrkMulticast, CreatingRefusesNullImpossibleIdsAndReservedOctets)
{
    ork_ebcom_multicast_group params{100, {}};
    EXPECT_EQ(ork_ebcom_multicast_group_create(ork, nullptr, &untouched, 0), ORK_INVAL);
    EXPECT_EQ(ork_ebcom_multicast_group_create(ork, &params, nullptr, 0), ORK_INVAL);
    for (const auto id : std::initializer_list<std::uint16_t>{0, 512, 0x1064}) {
        params.pcep_id = id;
        EXPECT_EQ(ork_ebcom_multicast_group_create(ork, &params, &untouched, 0), ORK_INVAL);
    }
    params = {100, {1}};
    EXPECT_EQ(ork_ebcom_multicast_group_create(ork, &params, &untouched, 0), ORK_INVAL);
    EXPECT_EQ(untouched, 11U);
    EXPECT_TRUE(look_into_node().at("groups").empty());
}

TEST_F(OrkMulticast, AGroupCanHaveASchedulerWhichThenStays)
{
    void *scheduler = create_scheduler();
    ASSERT_EQ(create_group_through(number_of(scheduler)), ORK_OK);
    const auto document = look_into_node();
    EXPECT_EQ(document.at("groups")[0].at("scheduler"), document.at("schedulers")[0].at("handle"));
    EXPECT_EQ(ork_qos_scheduler_delete(ork, scheduler), ORK_AGAIN);
    ASSERT_EQ(ork_ebcom_multicast_group_delete(ork, untouched), ORK_OK);
    EXPECT_EQ(ork_qos_scheduler_delete(ork, scheduler), ORK_OK);
}

TEST_F(OrkMulticast, AGroupRefusesAWrongScheduler)
{
    void *stale = create_scheduler();
    ASSERT_EQ(ork_qos_scheduler_delete(ork, stale), ORK_OK);
    for (void *wrong : {foreign, ork, add_queue(create_scheduler())})
        EXPECT_EQ(create_group_through(number_of(wrong)), ORK_INVAL);
    EXPECT_EQ(create_group_through(number_of(stale)), ORK_NOTAVAIL);
    EXPECT_EQ(untouched, 11U);
}

TEST_F(OrkMulticast, TheThirtyFirstGroupIsRefused)
{
    for (std::uint16_t id = 1; id <= 30; ++id)
        create_group(id);
    EXPECT_EQ(create_group_through(0), ORK_OUTOFRANGE);
    EXPECT_EQ(untouched, 11U);
}

TEST_F(OrkMulticast, TheSeventeenthMemberIsRefused)
{
    const std::uint64_t group = create_group(100);
    for (std::uint32_t id = 1; id <= 16; ++id) {
        create_pcep(id);
        ASSERT_EQ(ork_ebcom_multicast_member_add(ork, group, id), ORK_OK);
    }
    create_pcep(17);
    EXPECT_EQ(ork_ebcom_multicast_member_add(ork, group, 17), ORK_OUTOFRANGE);
}

TEST_F(OrkMulticast, AMemberIsAPcepAndThereOnce)
{
    const std::uint64_t group = create_group(100);
    create_group(101);
    create_pcep(1);
    for (const std::uint32_t id : {0U, 512U, 100U, 101U})
        EXPECT_EQ(ork_ebcom_multicast_member_add(ork, group, id), ORK_INVAL);
    EXPECT_EQ(ork_ebcom_multicast_member_add(ork, group, 2), ORK_NOTAVAIL);
    ASSERT_EQ(ork_ebcom_multicast_member_add(ork, group, 1), ORK_OK);
    EXPECT_EQ(ork_ebcom_multicast_member_add(ork, group, 1), ORK_AGAIN);
}

TEST_F(OrkMulticast, OnlyMembersAreRemoved)
{
    const std::uint64_t group = create_group(100);
    create_pcep(1);
    EXPECT_EQ(ork_ebcom_multicast_member_rem(ork, group, 1), ORK_NOTAVAIL);
    EXPECT_EQ(ork_ebcom_multicast_member_rem(ork, group, 0), ORK_INVAL);
    EXPECT_EQ(ork_ebcom_multicast_member_rem(ork, group, 512), ORK_INVAL);
}

TEST_F(OrkMulticast, GroupCallsRefuseWrongHandles)
{
    std::vector<std::uint64_t> wrong = wrong_handles();
    wrong.push_back(create_pcep(1));
    const std::vector<std::function<ork_rc(std::uint64_t)>> calls{
        [this](std::uint64_t group) { return ork_ebcom_multicast_group_delete(ork, group); },
        [this](std::uint64_t group) { return ork_ebcom_multicast_member_add(ork, group, 1); },
        [this](std::uint64_t group) { return ork_ebcom_multicast_member_rem(ork, group, 1); }};
    const std::uint64_t stale = create_group(100);
    ASSERT_EQ(ork_ebcom_multicast_group_delete(ork, stale), ORK_OK);
    for (const auto &call : calls) {
        for (const std::uint64_t handle : wrong)
            EXPECT_EQ(call(handle), ORK_INVAL);
        EXPECT_EQ(call(stale), ORK_NOTAVAIL);
    }
}

TEST_F(OrkMulticast, APcepCanBeDeletedAsAMemberAndItsIdRemovedAfterwards)
{
    const std::uint64_t group = create_group(100);
    const std::uint64_t pcep = create_pcep(1);
    ASSERT_EQ(ork_ebcom_multicast_member_add(ork, group, 1), ORK_OK);
    ASSERT_EQ(ork_ebcom_pcep_delete(ork, pcep), ORK_OK);
    EXPECT_EQ(look_into_node().at("groups")[0].at("members"), notation::document::array({1}));
    EXPECT_EQ(ork_ebcom_multicast_member_rem(ork, group, 1), ORK_OK);
    EXPECT_EQ(ork_ebcom_multicast_group_delete(ork, group), ORK_OK);
}

// Multicast groups: their number, which is counted apart from the table, and every way to fail.
#include "expected.h"
#include "kel/kel_core_ic_pcep.h"
#include "pcep_requests.h"
#include "scripted_platform.h"
#include "transcript.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

using expected::refusal;
using expected::refused;

namespace
{

constexpr uint32_t most_groups = 30;
constexpr uint32_t free_id = 511; // kept free where groups are counted
constexpr const char *not_a_group = "mc_pcep_id is not a Multicast PCEP";

// The creation of group 300 and the deletion of it as the first one created, up to the driver kit's result.
const std::string creation = R"(
        kel_core_ic_pcep_mc_group_add:
          FN_ENTER PCEP
          > ork_ebcom_multicast_group_create(ork, id 300, scheduler 0))";

const std::string deletion = R"(
        kel_core_ic_pcep_mc_group_rem:
          FN_ENTER PCEP
          API_CALL PCEP ork_ebcom_multicast_group_delete(mc_pcep_id=300)
          > ork_ebcom_multicast_group_delete(ork, group 1))";

void expect_add_refused(uint32_t mc_pcep_id, uint32_t rc, const std::string &detail)
{
    transcript::forget();
    EXPECT_EQ(kel_core_ic_pcep_mc_group_add(mc_pcep_id), rc) << mc_pcep_id;
    transcript::expect(refusal("kel_core_ic_pcep_mc_group_add", rc, detail));
}

void expect_rem_refused(uint32_t mc_pcep_id, uint32_t rc, const std::string &detail)
{
    transcript::forget();
    EXPECT_EQ(kel_core_ic_pcep_mc_group_rem(mc_pcep_id), rc) << mc_pcep_id;
    transcript::expect(refusal("kel_core_ic_pcep_mc_group_rem", rc, detail));
}

void expect_no_room()
{
    expect_add_refused(free_id, 10, "");
}

// Takes exactly so many groups, with this id and the next ones.
void expect_room_for(uint32_t groups, uint32_t first_id)
{
    make_groups(first_id, first_id + groups - 1);
    expect_no_room();
}

// Lowers the number of groups without removing any.
void remove_free_id(uint32_t times = 1)
{
    for (uint32_t n = 1; n <= times; ++n)
        ASSERT_EQ(kel_core_ic_pcep_mc_group_rem(free_id), 4U) << n;
    transcript::forget();
}

// Codes of the driver kit, none of which is returned.
class PcepGroupRefusedWith : public testing::TestWithParam<int32_t>
{
};

INSTANTIATE_TEST_SUITE_P(Codes, PcepGroupRefusedWith, testing::Values(-1, -4, -9, -10, 3, INT32_MIN));

class PcepGroupOfInvalidId : public testing::TestWithParam<uint32_t>
{
};

INSTANTIATE_TEST_SUITE_P(Ids, PcepGroupOfInvalidId,
                         testing::Values(0U, 512U, 513U, 4096U, 0x1'0007U, 0x8000'0000U, UINT32_MAX));

} // namespace

TEST(PcepGroupAdd, CreatesTheGroupWithoutAnnouncingIt)
{
    pcep_service_up();
    EXPECT_EQ(kel_core_ic_pcep_mc_group_add(300), 0U);
    transcript::expect(R"(
        kel_core_ic_pcep_mc_group_add:
          FN_ENTER PCEP
          > ork_ebcom_multicast_group_create(ork, id 300, scheduler 0)
          FN_EXIT PCEP
    )");
    expect_entries({"300: id 300, group 1"});
}

TEST(PcepGroupAdd, TellsTheDriverKitNothingButTheId)
{
    pcep_service_up();
    for (const auto &[id, octets_of_id] :
         {std::pair<uint32_t, octets>{1, {0x01, 0x00}}, std::pair<uint32_t, octets>{0x0102, {0x02, 0x01}},
          std::pair<uint32_t, octets>{511, {0xFF, 0x01}}}) {
        scripted::soil_stack();
        EXPECT_EQ(kel_core_ic_pcep_mc_group_add(id), 0U);
        EXPECT_EQ(scripted::record_of("ork_ebcom_multicast_group_create"), record(8, {{0, octets_of_id}}));
    }
    expect_entries({"1: id 1, group 1", "258: id 258, group 2", "511: id 511, group 3"});
}

TEST(PcepGroupAdd, BeforeTheStartPassesANullHandle)
{
    EXPECT_EQ(kel_core_ic_pcep_mc_group_add(300), 0U);
    transcript::expect(R"(
        kel_core_ic_pcep_mc_group_add:
          FN_ENTER PCEP
          > ork_ebcom_multicast_group_create((nil), id 300, scheduler 0)
          FN_EXIT PCEP
    )");
}

TEST_P(PcepGroupOfInvalidId, IsRefusedByAdd)
{
    pcep_service_up();
    expect_add_refused(GetParam(), 3, "(pcep_id)");
    expect_entries({});
}

TEST_P(PcepGroupOfInvalidId, IsRefusedByRemoveAndTheNumberStays)
{
    pcep_service_up();
    make_groups(1, most_groups);
    expect_rem_refused(GetParam(), 3, "(pcep_id)");
    expect_no_room();
}

TEST(PcepGroupAdd, OfATakenIdIsRefused)
{
    pcep_service_up();
    make_pcep(7, on_hsfp);
    make_group(300);
    expect_add_refused(7, 5, "(pcep_id)");
    expect_add_refused(300, 5, "(pcep_id)");
    expect_entries({"7: id 7, pcep 1", "300: id 300, group 1"});
    expect_room_for(most_groups - 1, 301);
}

TEST(PcepGroupAdd, Takes30GroupsAndOneMoreAfterARemoval)
{
    pcep_service_up();
    expect_room_for(most_groups, 1);
    EXPECT_EQ(scripted::calls_of("ork_ebcom_multicast_group_create"), most_groups);
    EXPECT_EQ(kel_core_ic_pcep_mc_group_rem(15), 0U);
    expect_room_for(1, 15);
}

TEST(PcepGroupAdd, LooksAtTheIdBeforeTheNumberOfGroups)
{
    pcep_service_up();
    make_pcep(7);
    make_groups(301, 330);
    expect_add_refused(0, 3, "(pcep_id)");
    expect_add_refused(512, 3, "(pcep_id)");
    expect_add_refused(7, 5, "(pcep_id)");
    expect_add_refused(301, 5, "(pcep_id)");
    expect_add_refused(8, 10, "");
    EXPECT_EQ(scripted::calls_of("ork_ebcom_multicast_group_create"), most_groups);
}

TEST_P(PcepGroupRefusedWith, AtTheCreationIs13AndTheGroupNotCounted)
{
    pcep_service_up();
    scripted::fail("ork_ebcom_multicast_group_create", GetParam());
    EXPECT_EQ(kel_core_ic_pcep_mc_group_add(300), 13U);
    transcript::expect(creation + refused("ork_ebcom_multicast_group_create", GetParam()));
    expect_entries({"300: id 0, refused"}); // the driver kit writes into the entry
    expect_room_for(most_groups, 300);
}

TEST(PcepGroupRem, DeletesTheGroup)
{
    pcep_service_up();
    make_group(300);
    EXPECT_EQ(kel_core_ic_pcep_mc_group_rem(300), 0U);
    transcript::expect(R"(
        kel_core_ic_pcep_mc_group_rem:
          FN_ENTER PCEP
          API_CALL PCEP ork_ebcom_multicast_group_delete(mc_pcep_id=300)
          > ork_ebcom_multicast_group_delete(ork, group 1)
          FN_EXIT PCEP
    )");
    expect_entries({});
    expect_room_for(most_groups, 1);
}

TEST(PcepGroupRem, LeavesTheOtherEntries)
{
    pcep_service_up();
    make_pcep(299);
    make_groups(300, 302);
    EXPECT_EQ(kel_core_ic_pcep_mc_group_rem(301), 0U);
    expect_entries({"299: id 299, pcep 1", "300: id 300, group 1", "302: id 302, group 3"});
}

TEST(PcepGroupRem, BeforeTheStartPassesANullHandle)
{
    make_group(300);
    EXPECT_EQ(kel_core_ic_pcep_mc_group_rem(300), 0U);
    transcript::expect(R"(
        kel_core_ic_pcep_mc_group_rem:
          FN_ENTER PCEP
          API_CALL PCEP ork_ebcom_multicast_group_delete(mc_pcep_id=300)
          > ork_ebcom_multicast_group_delete((nil), group 1)
          FN_EXIT PCEP
    )");
}

TEST(PcepGroupRem, OfAUnicastPcepIsRefusedAndChangesNothing)
{
    pcep_service_up();
    make_pcep(500);
    make_groups(1, most_groups);
    expect_rem_refused(500, 7, not_a_group);
    expect_no_room();
    EXPECT_EQ(kel_core_ic_pcep_rem(500), 0U);
}

TEST(PcepGroupRem, OfAGroupWithMembersIsRefusedAndChangesNothing)
{
    pcep_service_up();
    make_pcep(500);
    make_groups(1, most_groups);
    make_members(30, 500, 1);
    expect_rem_refused(30, 6, "");
    expect_rem_refused(30, 6, "");
    expect_no_room();
    EXPECT_EQ(kel_core_ic_pcep_mc_member_rem(30, 500), 0U);
    EXPECT_EQ(kel_core_ic_pcep_mc_group_rem(30), 0U);
}

TEST(PcepGroupRem, OfAGroupWhoseMembersWereRemovedIsAccepted)
{
    pcep_service_up();
    make_pcep(7);
    make_group(300);
    make_members(300, 7, 2);
    EXPECT_EQ(kel_core_ic_pcep_mc_member_rem(300, 7), 0U);
    expect_rem_refused(300, 6, "");
    EXPECT_EQ(kel_core_ic_pcep_mc_member_rem(300, 7), 0U);
    EXPECT_EQ(kel_core_ic_pcep_mc_group_rem(300), 0U);
}

TEST(PcepGroupRem, OfAFreeIdIsRefusedAndStillLowersTheNumber)
{
    pcep_service_up();
    make_groups(1, most_groups);
    expect_rem_refused(500, 4, "(pcep_id)");
    expect_rem_refused(501, 4, "(pcep_id)");
    expect_room_for(2, 31);
    EXPECT_EQ(scripted::calls_of("ork_ebcom_multicast_group_delete"), 0U);
}

TEST(PcepGroupRem, OfAFreeIdClearsTheHandleThatAFailedCreationLeft)
{
    pcep_service_up();
    scripted::fail("ork_ebcom_multicast_group_create", -7);
    EXPECT_EQ(kel_core_ic_pcep_mc_group_add(300), 13U);
    expect_entries({"300: id 0, refused"});
    expect_rem_refused(300, 4, "(pcep_id)");
    expect_entries({});
}

TEST(PcepGroupRem, BelowZeroWrapsTheNumberAndBlocksEveryFurtherGroup)
{
    pcep_service_up();
    remove_free_id();
    for (uint32_t id = 1; id <= 511; ++id)
        expect_add_refused(id, 10, "");
    EXPECT_EQ(scripted::calls_of("ork_ebcom_multicast_group_create"), 0U);
    expect_entries({});
}

TEST(PcepGroupRem, WrapsTheNumberTo255)
{
    pcep_service_up();
    remove_free_id(1 + 255 - most_groups);
    expect_add_refused(300, 10, "");
    remove_free_id();
    expect_room_for(1, 300);
}

TEST(PcepGroupRem, WrapsTheNumberRightAfterTheLastGroupToo)
{
    pcep_service_up();
    make_group(300);
    EXPECT_EQ(kel_core_ic_pcep_mc_group_rem(300), 0U);
    expect_rem_refused(300, 4, "(pcep_id)");
    expect_add_refused(300, 10, "");
}

TEST_P(PcepGroupRefusedWith, AtTheDeletionIs13AndTheGroupForgottenAndNotCounted)
{
    pcep_service_up();
    make_groups(300, 329);
    scripted::fail("ork_ebcom_multicast_group_delete", GetParam());
    EXPECT_EQ(kel_core_ic_pcep_mc_group_rem(300), 13U);
    transcript::expect(deletion + refused("ork_ebcom_multicast_group_delete", GetParam()));
    expect_room_for(1, 300);
}

// A group has no statistics, 11; an id that is free is not found, 4.
TEST(PcepGroupRem, RefusedByTheDriverKitIsForgottenOnceItIsReported)
{
    pcep_service_up();
    make_group(300);
    ebcom_pcep_stats stats;
    uint32_t found_at_the_report = 0;
    scripted::on_call("ork_syshandle_get", [&] { found_at_the_report = kel_ic_pcep_get_stats(300, &stats); });
    scripted::fail("ork_ebcom_multicast_group_delete", -2);
    EXPECT_EQ(kel_core_ic_pcep_mc_group_rem(300), 13U);
    EXPECT_EQ(found_at_the_report, 11U);
    EXPECT_EQ(kel_ic_pcep_get_stats(300, &stats), 4U);
}

TEST(PcepGroupRem, RefusedByTheDriverKitClearsTheEntry)
{
    pcep_service_up();
    make_group(300);
    scripted::fail("ork_ebcom_multicast_group_delete", -2);
    EXPECT_EQ(kel_core_ic_pcep_mc_group_rem(300), 13U);
    expect_entries({});
    expect_rem_refused(300, 4, "(pcep_id)");
}

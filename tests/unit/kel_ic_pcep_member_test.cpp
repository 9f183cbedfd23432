// Members of multicast groups: how many there may be, in which order a request is checked, and every way to fail.
#include "expected.h"
#include "kel/kel_core_ic_pcep.h"
#include "pcep_requests.h"
#include "scripted_platform.h"
#include "transcript.h"

#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <tuple>

using expected::refusal;
using expected::refused;
using expected::with;

namespace
{

constexpr uint32_t most_members = 16;

// The two operations, which check their ids alike.
struct member_operation {
    const char *name;
    uint32_t (*call)(uint32_t mc_pcep_id, uint32_t uc_pcep_id);
    const char *driver_kit_call;
};

constexpr member_operation add_member = {"kel_core_ic_pcep_mc_member_add", kel_core_ic_pcep_mc_member_add,
                                         "ork_ebcom_multicast_member_add"};
constexpr member_operation remove_member = {"kel_core_ic_pcep_mc_member_rem", kel_core_ic_pcep_mc_member_rem,
                                            "ork_ebcom_multicast_member_rem"};

void PrintTo(const member_operation &shown, std::ostream *out)
{
    *out << shown.name;
}

void expect_refused(const member_operation &operation, uint32_t mc_pcep_id, uint32_t uc_pcep_id, uint32_t rc,
                    const std::string &detail)
{
    transcript::forget();
    EXPECT_EQ(operation.call(mc_pcep_id, uc_pcep_id), rc) << mc_pcep_id << ", " << uc_pcep_id;
    transcript::expect(refusal(operation.name, rc, detail));
}

// The operation on group 300, the first one created, up to the driver kit's result.
std::string called(const member_operation &operation, uint32_t uc_pcep_id)
{
    return with({operation.name, operation.driver_kit_call, std::to_string(uc_pcep_id)}, R"(
        $1:
          FN_ENTER PCEP
          API_CALL PCEP $2(mc_pcep_id=300, uc_pcep_id=$3)
          > $2(ork, group 1, id $3))");
}

// How many members the group 300 counts, seen by how many more it takes. Fills it up.
uint32_t members_of_group_300(uint32_t uc_pcep_id)
{
    uint32_t taken = 0;
    while (kel_core_ic_pcep_mc_member_add(300, uc_pcep_id) == 0)
        ++taken;
    transcript::forget();
    return most_members - taken;
}

class PcepMember : public testing::TestWithParam<member_operation>
{
protected:
    const member_operation operation = GetParam();
};

INSTANTIATE_TEST_SUITE_P(Operations, PcepMember, testing::Values(add_member, remove_member),
                         [](const auto &test) { return std::string(test.index == 0 ? "Add" : "Rem"); });

// An operation and the driver kit's code, which is not returned.
class PcepMemberRefusedWith : public testing::TestWithParam<std::tuple<member_operation, int32_t>>
{
protected:
    const member_operation operation = std::get<0>(GetParam());
    const int32_t rc = std::get<1>(GetParam());
};

INSTANTIATE_TEST_SUITE_P(Codes, PcepMemberRefusedWith,
                         testing::Combine(testing::Values(add_member, remove_member),
                                          testing::Values(-1, -4, -9, -10, 3, INT32_MIN)));

constexpr uint32_t invalid_ids[] = {0, 512, 513, 0x1'0007, 0x1'012C, 0x8000'0000, UINT32_MAX};

} // namespace

TEST(PcepMemberAdd, NamesTheMemberByItsId)
{
    pcep_service_up();
    make_pcep(7);
    make_group(300);
    EXPECT_EQ(kel_core_ic_pcep_mc_member_add(300, 7), 0U);
    transcript::expect(R"(
        kel_core_ic_pcep_mc_member_add:
          FN_ENTER PCEP
          API_CALL PCEP ork_ebcom_multicast_member_add(mc_pcep_id=300, uc_pcep_id=7)
          > ork_ebcom_multicast_member_add(ork, group 1, id 7)
          FN_EXIT PCEP
    )");
}

TEST(PcepMemberRem, NamesTheMemberByItsId)
{
    pcep_service_up();
    make_pcep(7);
    make_group(300);
    make_members(300, 7, 1);
    EXPECT_EQ(kel_core_ic_pcep_mc_member_rem(300, 7), 0U);
    transcript::expect(R"(
        kel_core_ic_pcep_mc_member_rem:
          FN_ENTER PCEP
          API_CALL PCEP ork_ebcom_multicast_member_rem(mc_pcep_id=300, uc_pcep_id=7)
          > ork_ebcom_multicast_member_rem(ork, group 1, id 7)
          FN_EXIT PCEP
    )");
}

TEST_P(PcepMember, OfTheLowestAndHighestIdsIsAccepted)
{
    pcep_service_up();
    make_group(511);
    make_pcep(1);
    EXPECT_EQ(operation.call(511, 1), 0U);
    EXPECT_EQ(kel_core_ic_pcep_stop(), 0U);
    pcep_service_up();
    make_group(1);
    make_pcep(511);
    EXPECT_EQ(operation.call(1, 511), 0U);
}

TEST_P(PcepMember, BeforeTheStartPassesANullHandle)
{
    make_pcep(7);
    make_group(300);
    EXPECT_EQ(operation.call(300, 7), 0U);
    transcript::expect(with({operation.name, operation.driver_kit_call}, R"(
        $1:
          FN_ENTER PCEP
          API_CALL PCEP $2(mc_pcep_id=300, uc_pcep_id=7)
          > $2((nil), group 1, id 7)
          FN_EXIT PCEP
    )"));
}

TEST_P(PcepMember, OfAGroupWithAnInvalidIdIsRefused)
{
    pcep_service_up();
    make_pcep(7);
    make_group(300);
    for (const uint32_t id : invalid_ids)
        expect_refused(operation, id, 7, 3, "(pcep_id)");
}

TEST_P(PcepMember, WithAnInvalidIdIsRefused)
{
    pcep_service_up();
    make_pcep(7);
    make_group(300);
    for (const uint32_t id : invalid_ids)
        expect_refused(operation, 300, id, 3, "(pcep_id)");
}

TEST_P(PcepMember, OfAFreeGroupIdIsRefused)
{
    pcep_service_up();
    make_pcep(7);
    expect_refused(operation, 300, 7, 4, "(pcep_id)");
}

TEST_P(PcepMember, WithAFreeIdIsRefused)
{
    pcep_service_up();
    make_group(300);
    expect_refused(operation, 300, 7, 4, "(pcep_id)");
}

TEST_P(PcepMember, OfAUnicastPcepIsRefused)
{
    pcep_service_up();
    make_pcep(7);
    make_pcep(8, on_hsfp);
    expect_refused(operation, 8, 7, 7, "mc_pcep_id is not a Multicast PCEP");
}

TEST_P(PcepMember, LooksAtTheGroupsIdAndEntryBeforeTheMembers)
{
    pcep_service_up();
    expect_refused(operation, 0, 7, 3, "(pcep_id)");
    expect_refused(operation, 512, 512, 3, "(pcep_id)");
    expect_refused(operation, 300, 0, 4, "(pcep_id)");
    expect_refused(operation, 300, 512, 4, "(pcep_id)");
    expect_refused(operation, 300, 7, 4, "(pcep_id)");
}

TEST_P(PcepMember, LooksAtTheMemberBeforeTheGroupsKind)
{
    pcep_service_up();
    make_pcep(8);
    expect_refused(operation, 8, 512, 3, "(pcep_id)");
    expect_refused(operation, 8, 7, 4, "(pcep_id)");
}

TEST_P(PcepMember, MayBeAGroupEvenItself)
{
    pcep_service_up();
    make_groups(300, 301);
    EXPECT_EQ(operation.call(300, 301), 0U);
    transcript::expect(called(operation, 301) + expected::left);
    EXPECT_EQ(operation.call(300, 300), 0U);
    transcript::expect(called(operation, 300) + expected::left);
}

TEST_P(PcepMember, BelongsToTheGroupThatIsNamed)
{
    pcep_service_up();
    make_pcep(7);
    make_groups(299, 300);
    EXPECT_EQ(operation.call(300, 7), 0U);
    transcript::expect(with({operation.name, operation.driver_kit_call}, R"(
        $1:
          FN_ENTER PCEP
          API_CALL PCEP $2(mc_pcep_id=300, uc_pcep_id=7)
          > $2(ork, group 2, id 7)
          FN_EXIT PCEP
    )"));
    EXPECT_EQ(kel_core_ic_pcep_mc_group_rem(299), 0U);
    EXPECT_EQ(kel_core_ic_pcep_mc_group_rem(300), 6U);
}

TEST_P(PcepMemberRefusedWith, Is13AndNotCounted)
{
    pcep_service_up();
    make_pcep(7);
    make_group(300);
    make_members(300, 7, 5);
    scripted::fail(operation.driver_kit_call, rc);
    EXPECT_EQ(operation.call(300, 7), 13U);
    transcript::expect(called(operation, 7) + refused(operation.driver_kit_call, rc));
    EXPECT_EQ(members_of_group_300(7), 5U);
}

TEST(PcepMemberAdd, Takes16MembersAndNoMore)
{
    pcep_service_up();
    make_group(300);
    for (uint32_t id = 1; id <= 17; ++id)
        make_pcep(id);
    for (uint32_t id = 1; id <= most_members; ++id) {
        EXPECT_EQ(kel_core_ic_pcep_mc_member_add(300, id), 0U);
        transcript::expect(called(add_member, id) + expected::left);
    }
    expect_refused(add_member, 300, 17, 10, "");
    EXPECT_EQ(scripted::calls_of("ork_ebcom_multicast_member_add"), most_members);
}

TEST(PcepMemberAdd, ToAFullGroupLooksAtTheMemberFirst)
{
    pcep_service_up();
    make_pcep(7);
    make_group(300);
    make_members(300, 7, most_members);
    expect_refused(add_member, 300, 512, 3, "(pcep_id)");
    expect_refused(add_member, 300, 8, 4, "(pcep_id)");
    expect_refused(add_member, 300, 7, 10, "");
}

TEST(PcepMemberAdd, CountsAMemberAsOftenAsItIsAdded)
{
    pcep_service_up();
    make_pcep(7);
    make_group(300);
    make_members(300, 7, 3);
    EXPECT_EQ(members_of_group_300(7), 3U);
}

TEST(PcepMemberAdd, CountsEachGroupForItself)
{
    pcep_service_up();
    make_pcep(7);
    make_groups(300, 301);
    make_members(301, 7, most_members);
    EXPECT_EQ(members_of_group_300(7), 0U);
}

TEST(PcepMemberAdd, HasRoomAgainAfterARemovalFromAFullGroup)
{
    pcep_service_up();
    make_pcep(7);
    make_group(300);
    make_members(300, 7, most_members);
    EXPECT_EQ(kel_core_ic_pcep_mc_member_rem(300, 7), 0U);
    make_members(300, 7, 1);
    expect_refused(add_member, 300, 7, 10, "");
}

TEST(PcepMemberRem, LeavesTheCountBeforeTheAdd)
{
    pcep_service_up();
    make_pcep(7);
    make_pcep(8);
    make_group(300);
    make_members(300, 7, 4);
    EXPECT_EQ(kel_core_ic_pcep_mc_member_add(300, 8), 0U);
    EXPECT_EQ(kel_core_ic_pcep_mc_member_rem(300, 8), 0U);
    EXPECT_EQ(members_of_group_300(7), 4U);
}

TEST(PcepMemberRem, OfNoMemberIsLeftToTheDriverKitAndCounted)
{
    pcep_service_up();
    make_pcep(7);
    make_pcep(8);
    make_group(300);
    make_members(300, 7, 4);
    EXPECT_EQ(kel_core_ic_pcep_mc_member_rem(300, 8), 0U);
    EXPECT_EQ(members_of_group_300(7), 3U);
}

TEST(PcepMemberRem, FromAnEmptyGroupWrapsTheCount)
{
    pcep_service_up();
    make_pcep(7);
    make_group(300);
    EXPECT_EQ(kel_core_ic_pcep_mc_member_rem(300, 7), 0U);
    transcript::expect(called(remove_member, 7) + expected::left);
    expect_refused(add_member, 300, 7, 10, "");
    EXPECT_EQ(kel_core_ic_pcep_mc_group_rem(300), 6U);
    transcript::expect(refusal("kel_core_ic_pcep_mc_group_rem", 6, ""));
}

TEST(PcepMemberRem, OfAMemberWhosePcepIsGoneIsRefusedAndItStaysCounted)
{
    pcep_service_up();
    make_pcep(7);
    make_group(300);
    make_members(300, 7, 1);
    EXPECT_EQ(kel_core_ic_pcep_rem(7), 0U);
    expect_refused(remove_member, 300, 7, 4, "(pcep_id)");
    transcript::forget();
    EXPECT_EQ(kel_core_ic_pcep_mc_group_rem(300), 6U);
    make_pcep(7);
    EXPECT_EQ(kel_core_ic_pcep_mc_member_rem(300, 7), 0U);
    EXPECT_EQ(kel_core_ic_pcep_mc_group_rem(300), 0U);
}

TEST(PcepMemberAdd, StartsAtZeroInAGroupThatTakesAForgottenOnesId)
{
    pcep_service_up();
    make_pcep(7);
    make_group(300);
    make_members(300, 7, 9);
    EXPECT_EQ(kel_core_ic_pcep_stop(), 0U);
    pcep_service_up();
    make_pcep(7);
    make_group(300);
    EXPECT_EQ(members_of_group_300(7), 0U);
}

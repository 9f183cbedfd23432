// Removing unicast PCEPs: their entry is cleared whatever the driver kit says, and a group's as well.
#include "expected.h"
#include "kel/kel_core_ic_pcep.h"
#include "pcep_requests.h"
#include "scripted_platform.h"
#include "transcript.h"

#include <gtest/gtest.h>

#include <string>

using expected::refusal;
using expected::refused;

namespace
{

// The removal of PCEP 7, the first one created, up to the driver kit's result: its unbinding and its deletion.
const std::string entered = R"(
        kel_core_ic_pcep_rem:
          FN_ENTER PCEP
)";

const std::string unbinding = R"(
          API_CALL PCEP ork_unbind(ID2M): PCEP_ID=7 -> EHSFP
          > ork_unbind(sys, id 7))";

const std::string deletion = R"(
          API_CALL PCEP ork_ebcom_pcep_delete(pcep_id=7)
          > ork_ebcom_pcep_delete(ork, pcep 1))";

void expect_refused_as_free(uint32_t pcep_id)
{
    transcript::forget();
    EXPECT_EQ(kel_core_ic_pcep_rem(pcep_id), 4U);
    transcript::expect(refusal("kel_core_ic_pcep_rem", 4, "(pcep_id)"));
}

class PcepRemFromLocation : public testing::TestWithParam<pcep_side>
{
};

INSTANTIATE_TEST_SUITE_P(Sides, PcepRemFromLocation, testing::Values(on_cpu, on_ob, on_eioa),
                         [](const auto &test) { return test.param.location; });

// Codes of the driver kit, none of which is returned.
class PcepRemRefusedWith : public testing::TestWithParam<int32_t>
{
};

INSTANTIATE_TEST_SUITE_P(Codes, PcepRemRefusedWith, testing::Values(-1, -4, -9, -10, 3, INT32_MIN));

class PcepRemOfInvalidId : public testing::TestWithParam<uint32_t>
{
};

INSTANTIATE_TEST_SUITE_P(Ids, PcepRemOfInvalidId, testing::Values(0U, 512U, 513U, 0x1'0007U, 0x8000'0000U, UINT32_MAX));

class PcepRemOfFreeId : public testing::TestWithParam<uint32_t>
{
};

INSTANTIATE_TEST_SUITE_P(Ids, PcepRemOfFreeId, testing::Values(1U, 2U, 255U, 256U, 510U, 511U));

} // namespace

TEST(PcepRem, UnbindsAPcepOnTheHsfpBeforeItsDeletion)
{
    pcep_service_up();
    make_pcep(7, on_hsfp);
    EXPECT_EQ(kel_core_ic_pcep_rem(7), 0U);
    transcript::expect(R"(
        kel_core_ic_pcep_rem:
          FN_ENTER PCEP
          API_CALL PCEP ork_unbind(ID2M): PCEP_ID=7 -> EHSFP
          > ork_unbind(sys, id 7)
          API_CALL PCEP ork_ebcom_pcep_delete(pcep_id=7)
          > ork_ebcom_pcep_delete(ork, pcep 1)
          FN_EXIT PCEP
    )");
    expect_entries({});
}

TEST_P(PcepRemFromLocation, DeletesWithoutUnbinding)
{
    pcep_service_up();
    make_pcep(7, GetParam());
    EXPECT_EQ(kel_core_ic_pcep_rem(7), 0U);
    transcript::expect(R"(
        kel_core_ic_pcep_rem:
          FN_ENTER PCEP
          API_CALL PCEP ork_ebcom_pcep_delete(pcep_id=7)
          > ork_ebcom_pcep_delete(ork, pcep 1)
          FN_EXIT PCEP
    )");
    expect_entries({});
}

TEST(PcepRem, UnbindsWithTheRecordOfTheBinding)
{
    pcep_service_up();
    make_pcep(0x0102, on_hsfp);
    scripted::soil_stack();
    EXPECT_EQ(kel_core_ic_pcep_rem(0x0102), 0U);
    EXPECT_EQ(scripted::record_of("ork_unbind"), record(96, {{0, {0x04}},
                                                             {4, {0x01}},
                                                             {8, {0x01}},
                                                             {16, {0x21, 0x01}}, // the driver-kit handle
                                                             {32, {0x02, 0x01}},
                                                             {36, {0x02}},
                                                             {40, {0x5F, 0xE4}}, // the EHSFP target
                                                             {60, {0x02}},
                                                             {84, {0x01}}}));
    EXPECT_EQ(scripted::record_of("ork_unbind"), scripted::record_of("ork_bind"));
}

TEST(PcepRem, GoesByTheLocationOfTheAdd)
{
    pcep_service_up();
    make_pcep(7, on_hsfp);
    make_pcep(8, on_ob);
    scripted::classify_as(2);
    EXPECT_EQ(kel_core_ic_pcep_rem(7), 0U);
    transcript::expect(entered + unbinding + deletion + expected::left);
    scripted::classify_as(3);
    EXPECT_EQ(kel_core_ic_pcep_rem(8), 0U);
    EXPECT_EQ(scripted::calls_of("ork_unbind"), 1U);
}

TEST(PcepRem, LeavesTheOtherEntries)
{
    pcep_service_up();
    for (const uint32_t id : {1U, 6U, 7U, 8U, 511U})
        make_pcep(id);
    EXPECT_EQ(kel_core_ic_pcep_rem(7), 0U);
    expect_entries({"1: id 1, pcep 1", "6: id 6, pcep 2", "8: id 8, pcep 4", "511: id 511, pcep 5"});
}

TEST(PcepRem, LetsTheIdBeAddedAgain)
{
    pcep_service_up();
    make_pcep(7, on_hsfp);
    EXPECT_EQ(kel_core_ic_pcep_rem(7), 0U);
    make_pcep(7, on_ob);
    expect_entries({"7: id 7, pcep 2"});
    EXPECT_EQ(kel_core_ic_pcep_rem(7), 0U);
    transcript::expect(R"(
        kel_core_ic_pcep_rem:
          FN_ENTER PCEP
          API_CALL PCEP ork_ebcom_pcep_delete(pcep_id=7)
          > ork_ebcom_pcep_delete(ork, pcep 2)
          FN_EXIT PCEP
    )");
}

TEST(PcepRem, BeforeTheStartPassesNullHandles)
{
    make_pcep(7, on_hsfp);
    EXPECT_EQ(kel_core_ic_pcep_rem(7), 0U);
    transcript::expect(R"(
        kel_core_ic_pcep_rem:
          FN_ENTER PCEP
          API_CALL PCEP ork_unbind(ID2M): PCEP_ID=7 -> EHSFP
          > ork_unbind((nil), id 7)
          API_CALL PCEP ork_ebcom_pcep_delete(pcep_id=7)
          > ork_ebcom_pcep_delete((nil), pcep 1)
          FN_EXIT PCEP
    )");
    EXPECT_EQ(
        scripted::record_of("ork_unbind"),
        record(96, {{0, {0x04}}, {4, {0x01}}, {8, {0x01}}, {32, {0x07}}, {36, {0x02}}, {60, {0x02}}, {84, {0x01}}}));
}

TEST_P(PcepRemOfInvalidId, IsRefusedAsOutOfRangeAndLeavesTheTable)
{
    pcep_service_up();
    make_pcep(1);
    make_pcep(7);
    make_pcep(511);
    EXPECT_EQ(kel_core_ic_pcep_rem(GetParam()), 3U);
    transcript::expect(refusal("kel_core_ic_pcep_rem", 3, "(pcep_id)"));
    expect_entries({"1: id 1, pcep 1", "7: id 7, pcep 2", "511: id 511, pcep 3"});
}

TEST_P(PcepRemOfFreeId, IsRefusedAsNotFound)
{
    pcep_service_up();
    EXPECT_EQ(kel_core_ic_pcep_rem(GetParam()), 4U);
    transcript::expect(refusal("kel_core_ic_pcep_rem", 4, "(pcep_id)"));
}

TEST(PcepRem, TwiceIsRefusedAsNotFound)
{
    pcep_service_up();
    make_pcep(7, on_hsfp);
    EXPECT_EQ(kel_core_ic_pcep_rem(7), 0U);
    expect_refused_as_free(7);
}

TEST(PcepRem, OfAFreeIdClearsTheHandleThatAFailedBindingLeft)
{
    pcep_service_up();
    scripted::fail("ork_bind", -7);
    EXPECT_EQ(add_pcep(7, on_hsfp), 13U);
    expect_entries({"7: id 0, pcep 1"});
    expect_refused_as_free(7);
    expect_entries({});
}

TEST(PcepRem, OfAFreeIdClearsTheHandleThatAFailedCreationLeft)
{
    pcep_service_up();
    scripted::fail("ork_ebcom_pcep_create", -7);
    EXPECT_EQ(add_pcep(7), 13U);
    expect_entries({"7: id 0, refused"});
    expect_refused_as_free(7);
    expect_entries({});
}

TEST(PcepRem, OfAGroupsIdIsRefusedAndForgetsTheGroup)
{
    pcep_service_up();
    make_group(300);
    EXPECT_EQ(kel_core_ic_pcep_rem(300), 7U);
    transcript::expect(refusal("kel_core_ic_pcep_rem", 7, "pcep_id is a Multicast PCEP"));
    expect_entries({});
    expect_refused_as_free(300);
}

TEST(PcepRem, OfAGroupsIdForgetsItsMembersToo)
{
    pcep_service_up();
    make_pcep(7);
    make_group(300);
    make_members(300, 7, 16);
    EXPECT_EQ(kel_core_ic_pcep_rem(300), 7U);
    make_group(300);
    make_members(300, 7, 16);
    expect_entries({"7: id 7, pcep 1", "300: id 300, group 2"});
}

TEST(PcepRem, OfAGroupsIdLeavesTheGroupCounted)
{
    pcep_service_up();
    make_groups(1, 30);
    EXPECT_EQ(kel_core_ic_pcep_rem(30), 7U);
    transcript::forget();
    EXPECT_EQ(kel_core_ic_pcep_mc_group_add(30), 10U);
    transcript::expect(refusal("kel_core_ic_pcep_mc_group_add", 10, ""));
}

TEST(PcepRem, OfAGroupsIdLetsAPcepHaveIt)
{
    pcep_service_up();
    make_group(300);
    EXPECT_EQ(kel_core_ic_pcep_rem(300), 7U);
    make_pcep(300);
    EXPECT_EQ(kel_core_ic_pcep_rem(300), 0U);
}

TEST_P(PcepRemRefusedWith, AtTheUnbindingIs13WithoutADeletionAndClearsTheEntry)
{
    pcep_service_up();
    make_pcep(7, on_hsfp);
    scripted::fail("ork_unbind", GetParam());
    EXPECT_EQ(kel_core_ic_pcep_rem(7), 13U);
    transcript::expect(entered + unbinding + refused("ork_unbind", GetParam()));
    expect_entries({});
    expect_refused_as_free(7);
}

TEST_P(PcepRemRefusedWith, AtTheDeletionIs13AndClearsTheEntry)
{
    pcep_service_up();
    make_pcep(7, on_ob);
    scripted::fail("ork_ebcom_pcep_delete", GetParam());
    EXPECT_EQ(kel_core_ic_pcep_rem(7), 13U);
    transcript::expect(entered + deletion + refused("ork_ebcom_pcep_delete", GetParam()));
    expect_entries({});
    expect_refused_as_free(7);
}

TEST(PcepRem, RefusedAtTheDeletionDoesNotBindAgain)
{
    pcep_service_up();
    make_pcep(7, on_hsfp);
    scripted::fail("ork_ebcom_pcep_delete", -4);
    EXPECT_EQ(kel_core_ic_pcep_rem(7), 13U);
    transcript::expect(entered + unbinding + deletion + refused("ork_ebcom_pcep_delete", -4));
    expect_entries({});
}

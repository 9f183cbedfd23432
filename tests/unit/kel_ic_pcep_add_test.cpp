// Adding unicast PCEPs: what the driver kit gets, the binding of those on the HSFP, and every way to fail.
#include "expected.h"
#include "kel/kel_core_ic_pcep.h"
#include "pcep_requests.h"
#include "scripted_platform.h"
#include "trace/com_vantorix_ob_kel_ic.h"
#include "transcript.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

using expected::refusal;
using expected::refused;
using expected::with;

namespace
{

constexpr const char *classifier = "kel_ic_pcep_get_location_and_type_from_branch";

// The creation of PCEP 7 with the given names of its sides' locations, up to the driver kit's result.
std::string creation(const pcep_side &local, const pcep_side &remote)
{
    return with({local.mac_text, local.location, remote.mac_text, remote.location}, R"(
        kel_core_ic_pcep_add:
          FN_ENTER PCEP
          API_CALL PCEP ork_ebcom_pcep_create(localPcepId=7, remotePcepId=11259375, vlanId=291, sMac=$1($2), dMac=$3($4))
          > ork_ebcom_pcep_create(ork, id 7))");
}

const std::string binding = R"(
          API_CALL PCEP ork_bind(ID2M): PCEP_ID=7 -> EHSFP
          > ork_bind(sys, id 7))";

size_t erase_lines(std::string &text, const std::string &beginning)
{
    size_t erased = 0;
    for (size_t at; (at = text.find(beginning)) != std::string::npos; ++erased)
        text.erase(at, text.find('\n', at) + 1 - at);
    return erased;
}

// The transcript of an add that gets to the creation. The texts of its two addresses are made for the same record, and
// which one comes first is left to the compiler: they are counted only.
void expect_add(const std::string &expected)
{
    std::string actual = transcript::take();
    EXPECT_EQ(erase_lines(actual, "  > macAddr2str("), transcript::traced() ? 2U : 0U);
    transcript::expect_equal(actual, expected);
}

bool is_bound(const pcep_side &local)
{
    return local.mac == on_hsfp.mac;
}

// The create record of an add with this configuration.
octets create_record(const kel_pcep_config &config, uint32_t pcep_id = 7)
{
    scripted::soil_stack();
    EXPECT_EQ(kel_core_ic_pcep_add(pcep_id, &config), 0U);
    return scripted::record_of("ork_ebcom_pcep_create");
}

octets bind_record(uint32_t pcep_id)
{
    const kel_pcep_config config = between(on_hsfp, on_ob);
    scripted::soil_stack();
    EXPECT_EQ(kel_core_ic_pcep_add(pcep_id, &config), 0U);
    return scripted::record_of("ork_bind");
}

// The VLAN word of a create record, and the id in its announcement.
struct vlan_case {
    uint16_t vlan_id;
    uint8_t priority;
    octets word;
    const char *shown;
};

void PrintTo(const vlan_case &shown, std::ostream *out)
{
    *out << "VLAN " << shown.vlan_id << ", priority " << int{shown.priority};
}

class PcepVlan : public testing::TestWithParam<vlan_case>
{
};

INSTANTIATE_TEST_SUITE_P(
    Words, PcepVlan,
    testing::Values(vlan_case{0x0123, 0x05, {0x23, 0x51}, "291"}, vlan_case{0x0123, 0x0D, {0x23, 0x51}, "291"},
                    vlan_case{0xFFFF, 0x00, {0xFF, 0x0F}, "4095"}, vlan_case{0xFFFF, 0xFF, {0xFF, 0x7F}, "4095"},
                    vlan_case{0x0000, 0x00, {0x00, 0x00}, "0"}, vlan_case{0x0000, 0xF8, {0x00, 0x00}, "0"},
                    vlan_case{0xF000, 0x00, {0x00, 0x00}, "0"}, vlan_case{0x0000, 0x07, {0x00, 0x70}, "0"},
                    vlan_case{0x8801, 0x01, {0x01, 0x18}, "2049"}, vlan_case{0x0000, 0x04, {0x00, 0x40}, "0"}));

// Codes of the driver kit, none of which is returned.
class PcepAddRefusedWith : public testing::TestWithParam<int32_t>
{
};

INSTANTIATE_TEST_SUITE_P(Codes, PcepAddRefusedWith, testing::Values(-1, -4, -9, -10, 3, INT32_MIN));

// Codes of a classifier, all of which are.
class PcepClassifierCode : public testing::TestWithParam<uint32_t>
{
protected:
    const uint32_t rc = GetParam();
};

INSTANTIATE_TEST_SUITE_P(Codes, PcepClassifierCode, testing::Values(1U, 3U, 13U, 255U, UINT32_MAX));

class PcepAddOfInvalidId : public testing::TestWithParam<uint32_t>
{
};

INSTANTIATE_TEST_SUITE_P(Ids, PcepAddOfInvalidId, testing::Values(0U, 512U, 513U, 0x1'0007U, 0x8000'0000U, UINT32_MAX));

class PcepAddOfValidId : public testing::TestWithParam<uint32_t>
{
};

INSTANTIATE_TEST_SUITE_P(Ids, PcepAddOfValidId, testing::Values(1U, 2U, 255U, 256U, 510U, 511U));

} // namespace

TEST(PcepAdd, CreatesThePcepInTheDriverKit)
{
    pcep_service_up();
    EXPECT_EQ(add_pcep(7, on_ob, on_eioa), 0U);
    expect_add(R"(
        kel_core_ic_pcep_add:
          FN_ENTER PCEP
          API_CALL PCEP ork_ebcom_pcep_create(localPcepId=7, remotePcepId=11259375, vlanId=291, sMac=22:23:24:02:25:26(OB), dMac=42:43:44:09:45:46(EIOA))
          > ork_ebcom_pcep_create(ork, id 7)
          FN_EXIT PCEP
    )");
    expect_entries({"7: id 7, pcep 1"});
}

TEST(PcepAdd, BindsAPcepOnTheHsfpAfterItsCreation)
{
    pcep_service_up();
    EXPECT_EQ(add_pcep(7, on_hsfp, on_ob), 0U);
    expect_add(R"(
        kel_core_ic_pcep_add:
          FN_ENTER PCEP
          API_CALL PCEP ork_ebcom_pcep_create(localPcepId=7, remotePcepId=11259375, vlanId=291, sMac=32:33:34:03:35:36(HSFP), dMac=22:23:24:02:25:26(OB))
          > ork_ebcom_pcep_create(ork, id 7)
          API_CALL PCEP ork_bind(ID2M): PCEP_ID=7 -> EHSFP
          > ork_bind(sys, id 7)
          FN_EXIT PCEP
    )");
    expect_entries({"7: id 7, pcep 1"});
}

TEST(PcepAdd, PrintsBothLocationsAndBindsForTheLocalOneOnly)
{
    pcep_service_up();
    for (const pcep_side &local : sides) {
        for (const pcep_side &remote : sides) {
            EXPECT_EQ(add_pcep(7, local, remote), 0U);
            expect_add(creation(local, remote) + (is_bound(local) ? binding : "") + expected::left);
            EXPECT_EQ(kel_core_ic_pcep_rem(7), 0U);
            transcript::forget();
        }
    }
}

TEST(PcepAdd, PrintsTheNamesOfLocationsThatNoAddressHas)
{
    pcep_service_up();
    const std::pair<uint32_t, const char *> locations[] = {
        {0, "NONE"}, {5, "MULTICAST"}, {6, "UNKNOWN"}, {UINT32_MAX, "UNKNOWN"}};
    for (const auto &[location, name] : locations) {
        scripted::classify_as(location);
        EXPECT_EQ(add_pcep(7, on_ob, on_eioa), 0U);
        expect_add(creation({on_ob.mac, on_ob.mac_text, name}, {on_eioa.mac, on_eioa.mac_text, name}) + expected::left);
        kel_core_ic_pcep_rem(7);
        transcript::forget();
    }
}

TEST(PcepAdd, MakesNoTextOfAnAddressForAnAnnouncementThatNobodyListensTo)
{
    lttng_ust_tracepoint_com_vantorix_ob_kel_ic___API_CALL.state = 0;
    pcep_service_up();
    EXPECT_EQ(add_pcep(7, on_hsfp, on_ob), 0U);
    transcript::expect(R"(
        kel_core_ic_pcep_add:
          FN_ENTER PCEP
          > ork_ebcom_pcep_create(ork, id 7)
          > ork_bind(sys, id 7)
          FN_EXIT PCEP
    )");
}

TEST(PcepAdd, ReadsTheOwnMpIdWhereTheAddressNeedsIt)
{
    const pcep_side own = {{2, 0, 7, 0, 0, 1}, "02:00:07:00:00:01", "CPU"};
    setenv("MPID", "7", 1);
    pcep_service_up();
    EXPECT_EQ(add_pcep(7, own, on_ob), 0U);
    expect_add(R"(
        kel_core_ic_pcep_add:
          FN_ENTER PCEP
        own_mp_id_get:
          INFO PCEP MPID = 7 (7)
        kel_core_ic_pcep_add:
          API_CALL PCEP ork_ebcom_pcep_create(localPcepId=7, remotePcepId=11259375, vlanId=291, sMac=02:00:07:00:00:01(CPU), dMac=22:23:24:02:25:26(OB))
          > ork_ebcom_pcep_create(ork, id 7)
          FN_EXIT PCEP
    )");
}

TEST(PcepAdd, TellsTheDriverKitBothSidesAndTheVlan)
{
    pcep_service_up();
    EXPECT_EQ(create_record(between(on_hsfp, on_ob), 0x0102), record(40, {{0, {0x32, 0x33, 0x34, 0x03, 0x35, 0x36}},
                                                                          {6, {0x22, 0x23, 0x24, 0x02, 0x25, 0x26}},
                                                                          {12, {0x23, 0x51}},
                                                                          {16, {0x02, 0x01, 0x00, 0x00}},
                                                                          {20, {0x5A, 0xEF, 0xCD, 0xAB}},
                                                                          {24, {0x6C, 0x7B}},
                                                                          {28, {0x01}}}));
}

TEST(PcepAdd, TellsTheDriverKitNothingThatTheConfigurationHasAsZero)
{
    pcep_service_up();
    EXPECT_EQ(create_record(kel_pcep_config{}, 511), record(40, {{16, {0xFF, 0x01}}, {28, {0x01}}}));
}

TEST(PcepAdd, KeepsTheRemoteIdAndTheByteBelowItApart)
{
    pcep_service_up();
    kel_pcep_config config = between(on_ob, on_ob);
    std::ranges::fill(config.remote_pcep_id, uint8_t{0xFF});
    config.byte19 = 0;
    const octets with_highest_id = create_record(config, 7);
    EXPECT_EQ(octets(with_highest_id.begin() + 20, with_highest_id.begin() + 24), octets({0x00, 0xFF, 0xFF, 0xFF}));

    std::ranges::fill(config.remote_pcep_id, uint8_t{0});
    config.byte19 = 0xFF;
    const octets with_lowest_id = create_record(config, 8);
    EXPECT_EQ(octets(with_lowest_id.begin() + 20, with_lowest_id.begin() + 24), octets({0xFF, 0x00, 0x00, 0x00}));
}

TEST(PcepAdd, PrintsTheHighestIds)
{
    pcep_service_up();
    kel_pcep_config config = between(on_ob, on_eioa);
    std::ranges::fill(config.remote_pcep_id, uint8_t{0xFF});
    EXPECT_EQ(kel_core_ic_pcep_add(511, &config), 0U);
    expect_add(R"(
        kel_core_ic_pcep_add:
          FN_ENTER PCEP
          API_CALL PCEP ork_ebcom_pcep_create(localPcepId=511, remotePcepId=16777215, vlanId=291, sMac=22:23:24:02:25:26(OB), dMac=42:43:44:09:45:46(EIOA))
          > ork_ebcom_pcep_create(ork, id 511)
          FN_EXIT PCEP
    )");
}

TEST(PcepAdd, HandsOnNothingOfTheUnreadOctets)
{
    pcep_service_up();
    kel_pcep_config config = between(on_hsfp, on_ob);
    const octets create = create_record(config, 7);
    EXPECT_EQ(kel_core_ic_pcep_rem(7), 0U);
    config.reserved3 ^= 0xFF;
    std::ranges::fill(config.rest, uint8_t{0});
    EXPECT_EQ(create_record(config, 7), create);
    const std::vector<octets> bindings = scripted::records_of("ork_bind");
    ASSERT_EQ(bindings.size(), 2U);
    EXPECT_EQ(bindings[0], bindings[1]);
}

TEST(PcepAdd, LeavesTheCallersConfigurationAsItWas)
{
    pcep_service_up();
    const kel_pcep_config before = between(on_hsfp, on_ob);
    const kel_pcep_config config = before;
    EXPECT_EQ(kel_core_ic_pcep_add(7, &config), 0U);
    EXPECT_EQ(memcmp(&config, &before, sizeof config), 0);
}

TEST_P(PcepVlan, HasItsPriorityRightAboveTheId)
{
    const vlan_case &vlan = GetParam();
    kel_pcep_config config = between(on_ob, on_eioa);
    config.vlan_id = vlan.vlan_id;
    config.priority = vlan.priority;
    pcep_service_up();

    const octets create = create_record(config);
    EXPECT_EQ(octets(create.begin() + 12, create.begin() + 16), octets({vlan.word[0], vlan.word[1], 0, 0}));
    expect_add(with({vlan.shown}, R"(
        kel_core_ic_pcep_add:
          FN_ENTER PCEP
          API_CALL PCEP ork_ebcom_pcep_create(localPcepId=7, remotePcepId=11259375, vlanId=$1, sMac=22:23:24:02:25:26(OB), dMac=42:43:44:09:45:46(EIOA))
          > ork_ebcom_pcep_create(ork, id 7)
          FN_EXIT PCEP
    )"));
}

TEST(PcepAdd, BindsToTheTargetOfTheAttachment)
{
    pcep_service_up();
    EXPECT_EQ(bind_record(0x0102), record(96, {{0, {0x04}},
                                               {4, {0x01}},
                                               {8, {0x01}},
                                               {16, {0x21, 0x01}}, // the driver-kit handle
                                               {32, {0x02, 0x01}},
                                               {36, {0x02}},
                                               {40, {0x5F, 0xE4}}, // the EHSFP target
                                               {60, {0x02}},
                                               {84, {0x01}}}));
}

TEST(PcepAdd, BeforeTheStartPassesNullHandles)
{
    EXPECT_EQ(add_pcep(7, on_hsfp, on_ob), 0U);
    expect_add(R"(
        kel_core_ic_pcep_add:
          FN_ENTER PCEP
          API_CALL PCEP ork_ebcom_pcep_create(localPcepId=7, remotePcepId=11259375, vlanId=291, sMac=32:33:34:03:35:36(HSFP), dMac=22:23:24:02:25:26(OB))
          > ork_ebcom_pcep_create((nil), id 7)
          API_CALL PCEP ork_bind(ID2M): PCEP_ID=7 -> EHSFP
          > ork_bind((nil), id 7)
          FN_EXIT PCEP
    )");
    expect_entries({"7: id 7, pcep 1"});
}

TEST(PcepAdd, AfterTheStopBindsWithNullHandles)
{
    pcep_service_up();
    EXPECT_EQ(kel_core_ic_pcep_stop(), 0U);
    EXPECT_EQ(
        bind_record(0x0102),
        record(96,
               {{0, {0x04}}, {4, {0x01}}, {8, {0x01}}, {32, {0x02, 0x01}}, {36, {0x02}}, {60, {0x02}}, {84, {0x01}}}));
}

TEST_P(PcepAddOfValidId, IsAccepted)
{
    const std::string id = std::to_string(GetParam());
    pcep_service_up();
    EXPECT_EQ(add_pcep(GetParam()), 0U);
    expect_entries({with({id}, "$1: id $1, pcep 1")});
}

TEST_P(PcepAddOfInvalidId, IsRefusedAsOutOfRange)
{
    pcep_service_up();
    EXPECT_EQ(add_pcep(GetParam(), on_hsfp), 3U);
    transcript::expect(refusal("kel_core_ic_pcep_add", 3, "(pcep_id)"));
    EXPECT_EQ(scripted::calls_of(classifier), 0U);
    expect_entries({});
}

TEST(PcepAdd, TwiceIsRefusedAndLeavesTheFirst)
{
    pcep_service_up();
    make_pcep(7, on_hsfp);
    EXPECT_EQ(add_pcep(7, on_ob), 5U);
    transcript::expect(refusal("kel_core_ic_pcep_add", 5, "(pcep_id)"));
    expect_entries({"7: id 7, pcep 1"});

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
}

TEST(PcepAdd, OfAGroupsIdIsRefused)
{
    pcep_service_up();
    make_group(300);
    EXPECT_EQ(add_pcep(300), 5U);
    transcript::expect(refusal("kel_core_ic_pcep_add", 5, "(pcep_id)"));
    expect_entries({"300: id 300, group 1"});
}

TEST(PcepAdd, OfATakenIdIsRefusedBeforeTheAddressesAreLookedAt)
{
    pcep_service_up();
    make_pcep(7);
    scripted::fail(classifier, 255);
    EXPECT_EQ(add_pcep(7), 5U);
    EXPECT_EQ(scripted::calls_of(classifier), 2U); // those of the first add
}

TEST_P(PcepClassifierCode, ForTheLocalSideIsReturnedAndTheRemoteOneNotLookedAt)
{
    pcep_service_up();
    scripted::fail(classifier, rc);
    EXPECT_EQ(add_pcep(7, on_hsfp), rc);
    transcript::expect(refusal("kel_core_ic_pcep_add", rc, "get_pcep_location_and_type_from_branch(local)"));
    EXPECT_EQ(scripted::calls_of(classifier), 1U);
    expect_entries({});
}

TEST_P(PcepClassifierCode, ForTheRemoteSideIsReturnedAndNothingCreated)
{
    pcep_service_up();
    scripted::fail(classifier, rc, 2);
    EXPECT_EQ(add_pcep(7, on_hsfp), rc);
    transcript::expect(refusal("kel_core_ic_pcep_add", rc, "get_pcep_location_and_type_from_branch(remote)"));
    EXPECT_EQ(scripted::calls_of(classifier), 2U);
    expect_entries({});
}

TEST_P(PcepAddRefusedWith, AtTheCreationIs13AndTheIdStaysFree)
{
    pcep_service_up();
    scripted::fail("ork_ebcom_pcep_create", GetParam());
    EXPECT_EQ(add_pcep(7, on_hsfp, on_ob), 13U);
    expect_add(creation(on_hsfp, on_ob) + refused("ork_ebcom_pcep_create", GetParam()));
    expect_entries({"7: id 0, refused"}); // the driver kit writes into the entry

    EXPECT_EQ(add_pcep(7, on_hsfp, on_ob), 0U);
    expect_add(creation(on_hsfp, on_ob) + binding + expected::left);
}

TEST_P(PcepAddRefusedWith, AtTheBindingIs13AndLeavesThePcepInTheDriverKit)
{
    pcep_service_up();
    scripted::fail("ork_bind", GetParam());
    EXPECT_EQ(add_pcep(7, on_hsfp, on_ob), 13U);
    expect_add(creation(on_hsfp, on_ob) + binding + refused("ork_bind", GetParam()));
    expect_entries({"7: id 0, pcep 1"});
}

TEST(PcepAdd, AfterAFailedBindingCreatesAgain)
{
    pcep_service_up();
    scripted::fail("ork_bind", -7);
    EXPECT_EQ(add_pcep(7, on_hsfp, on_ob), 13U);
    transcript::forget();
    EXPECT_EQ(add_pcep(7, on_hsfp, on_ob), 0U);
    expect_add(creation(on_hsfp, on_ob) + binding + expected::left);
    expect_entries({"7: id 7, pcep 2"});
}

TEST(PcepAdd, OfAllIdsFillsTheTable)
{
    pcep_service_up();
    for (uint32_t id = 1; id <= 511; ++id)
        make_pcep(id, sides[id % 4]);
    for (uint32_t id = 1; id <= 511; ++id)
        EXPECT_EQ(add_pcep(id), 5U) << id;
    EXPECT_EQ(scripted::calls_of("ork_ebcom_pcep_create"), 511U);
}

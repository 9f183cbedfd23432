// The PCEP service: start, stop, what each keeps and forgets, the multicast hook and the handle dump.
#include "expected.h"
#include "kel/kel_core_ic_pcep.h"
#include "pcep_requests.h"
#include "scripted_pcep.h"
#include "scripted_platform.h"
#include "transcript.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

using expected::with;

namespace
{

const octets zero_attachment(sizeof(kel_attach_info));

constexpr const char *hook = "kel_core_ic_pcep_create_queue_and_scheduler_for_multicast";

constexpr const char *started = R"(
        kel_core_ic_pcep_start:
          FN_ENTER PCEP
          > kel_init_attach()
          FN_EXIT PCEP
)";

constexpr const char *stopped = R"(
        kel_core_ic_pcep_stop:
          FN_ENTER PCEP
          FN_EXIT PCEP
)";

std::string start_without_attachment(const std::string &rc)
{
    return with({rc}, R"(
        kel_core_ic_pcep_start:
          FN_ENTER PCEP
          > kel_init_attach() = $1
          ~ kei_util_init_rc_str_get($1)
          init:EXCEPTION GENERAL code $1, kel_init_attach
          FN_EXIT PCEP
    )");
}

// The table's one group, deleted with this driver-kit handle.
std::string group_300_deleted(const std::string &ork)
{
    return with({ork}, R"(
        kel_core_ic_pcep_mc_group_rem:
          FN_ENTER PCEP
          API_CALL PCEP ork_ebcom_multicast_group_delete(mc_pcep_id=300)
          > ork_ebcom_multicast_group_delete($1, group 1)
          FN_EXIT PCEP
    )");
}

// A group's create and the scheduler that it passes.
std::string group_300_added(const std::string &ork, const std::string &scheduler)
{
    return with({ork, scheduler}, R"(
        kel_core_ic_pcep_mc_group_add:
          FN_ENTER PCEP
          > ork_ebcom_multicast_group_create($1, id 300, scheduler $2)
          FN_EXIT PCEP
    )");
}

void expect_filled(const kel_attach_info &attach)
{
    EXPECT_EQ(attach.sys_handle, scripted::sys_handle);
    EXPECT_EQ(attach.ehsfp_target, scripted::ehsfp_target);
    EXPECT_EQ(attach.ork_handle, scripted::ork_handle);
}

// The attachment that the service keeps, through the pointer that the hook got.
octets kept_attachment()
{
    const auto *record = reinterpret_cast<const uint8_t *>(scripted::last_hook_call().record);
    return {record, record + sizeof(kel_attach_info)};
}

// As if the companion library had left no octet of it zero.
void soil_attachment()
{
    memset(scripted::last_hook_call().record, 0xA5, sizeof(kel_attach_info));
}

// A dump that succeeds or fails: $1 is nothing or " = code".
const std::string dumped = R"(
          > kel_init_dump_ork_handles(0xd57, PCEP Handles, 511)$1
)";

void *const destination = reinterpret_cast<void *>(0xD57);

// Codes of the companion library, which pass through.
class PcepCompanionCode : public testing::TestWithParam<uint32_t>
{
protected:
    const uint32_t rc = GetParam();
    const std::string shown = std::to_string(rc);
};

INSTANTIATE_TEST_SUITE_P(Codes, PcepCompanionCode, testing::Values(1U, 3U, 13U, 255U, UINT32_MAX));

} // namespace

TEST(PcepStart, AttachesOnceWithoutAnnouncingIt)
{
    EXPECT_EQ(kel_core_ic_pcep_start(), 0U);
    transcript::expect(started);
}

TEST(PcepStart, AttachesForAllCallsUntilTheStop)
{
    pcep_service_up();
    make_pcep(7, on_hsfp);
    make_group(300);
    make_members(300, 7, 2);
    EXPECT_EQ(kel_core_ic_pcep_mc_member_rem(300, 7), 0U);
    EXPECT_EQ(kel_core_ic_pcep_rem(7), 0U);
    EXPECT_EQ(scripted::calls_of("kel_init_attach"), 1U);
}

TEST(PcepStart, GivesTheAttachmentAndBothHandlesToTheMulticastHook)
{
    EXPECT_EQ(kel_core_ic_pcep_start(), 0U);
    EXPECT_EQ(scripted::calls_of(hook), 1U);
    expect_filled(scripted::last_hook_call().attach);
    EXPECT_EQ(scripted::last_hook_call().queue_handle, 0U);
    EXPECT_EQ(scripted::last_hook_call().scheduler_handle, 0U);
}

TEST(PcepStart, AfterAddsLeavesTheTableEmpty)
{
    pcep_service_up();
    make_pcep(1);
    make_pcep(511, on_hsfp);
    make_group(300);
    EXPECT_EQ(kel_core_ic_pcep_start(), 0U);
    transcript::expect(started);
    expect_entries({});
    EXPECT_EQ(kel_core_ic_pcep_rem(511), 4U);
    transcript::expect(expected::refusal("kel_core_ic_pcep_rem", 4, "(pcep_id)"));
}

TEST(PcepStart, AgainWithoutAStopAttachesAnewIntoTheSameRecord)
{
    pcep_service_up();
    EXPECT_EQ(scripted::record_of("kel_init_attach"), zero_attachment);
    const octets attachment = kept_attachment();
    EXPECT_NE(attachment, zero_attachment);
    EXPECT_EQ(kel_core_ic_pcep_start(), 0U);
    transcript::expect(started);
    EXPECT_EQ(scripted::record_of("kel_init_attach"), attachment);
}

TEST_P(PcepCompanionCode, OfAFailedAttachmentIsReturnedAndTheHookNotCalled)
{
    scripted::fail("kel_init_attach", rc);
    EXPECT_EQ(kel_core_ic_pcep_start(), rc);
    transcript::expect(start_without_attachment(shown));
    EXPECT_EQ(scripted::calls_of(hook), 0U);
}

TEST(PcepStart, FailingStillLeavesTheTableEmpty)
{
    pcep_service_up();
    make_pcep(1);
    make_pcep(511, on_hsfp);
    scripted::fail("kel_init_attach", 3);
    EXPECT_EQ(kel_core_ic_pcep_start(), 3U);
    expect_entries({});
    EXPECT_EQ(kel_core_ic_pcep_rem(1), 4U);
}

TEST(PcepStart, FailingAtFirstLeavesNullHandles)
{
    scripted::fail("kel_init_attach", 3);
    EXPECT_EQ(kel_core_ic_pcep_start(), 3U);
    transcript::forget();
    EXPECT_EQ(kel_core_ic_pcep_mc_group_add(300), 0U);
    transcript::expect(group_300_added("(nil)", "0"));
}

TEST(PcepStart, FailingAgainKeepsWhatTheFailedAttachmentLeft)
{
    pcep_service_up();
    soil_attachment();
    const octets before = kept_attachment();
    scripted::fail("kel_init_attach", 3);
    EXPECT_EQ(kel_core_ic_pcep_start(), 3U);
    EXPECT_EQ(kept_attachment(), before);
    transcript::forget();
    EXPECT_EQ(kel_core_ic_pcep_mc_group_add(300), 0U);
    transcript::expect(group_300_added("0xa5a5a5a5a5a5a5a5", "0"));
}

TEST_P(PcepCompanionCode, OfAFailedHookIsReturnedAndTheAttachmentStays)
{
    scripted::fail(hook, rc);
    EXPECT_EQ(kel_core_ic_pcep_start(), rc);
    transcript::expect(with({shown}, R"(
        kel_core_ic_pcep_start:
          FN_ENTER PCEP
          > kel_init_attach()
          ~ kei_util_init_rc_str_get($1)
          init:EXCEPTION GENERAL code $1, kel_core_ic_pcep_create_queue_and_scheduler_for_multicast
          FN_EXIT PCEP
    )"));
    EXPECT_EQ(kel_core_ic_pcep_mc_group_add(300), 0U);
    transcript::expect(group_300_added("ork", "0"));
}

TEST(PcepStop, MakesNoCallAndForgetsTheTable)
{
    pcep_service_up();
    make_pcep(1);
    make_pcep(511, on_hsfp);
    make_group(300);
    make_members(300, 1, 2);
    EXPECT_EQ(kel_core_ic_pcep_stop(), 0U);
    transcript::expect(stopped);
    expect_entries({});
    EXPECT_EQ(kel_core_ic_pcep_rem(511), 4U);
    transcript::expect(expected::refusal("kel_core_ic_pcep_rem", 4, "(pcep_id)"));
}

TEST(PcepStop, ForgetsTheHandles)
{
    pcep_service_up();
    EXPECT_EQ(kel_core_ic_pcep_stop(), 0U);
    transcript::forget();
    EXPECT_EQ(kel_core_ic_pcep_mc_group_add(300), 0U);
    transcript::expect(group_300_added("(nil)", "0"));
    EXPECT_EQ(kel_core_ic_pcep_mc_group_rem(300), 0U);
    transcript::expect(group_300_deleted("(nil)"));
}

TEST(PcepStop, ClearsTheWholeAttachment)
{
    pcep_service_up();
    soil_attachment();
    EXPECT_EQ(kel_core_ic_pcep_stop(), 0U);
    EXPECT_EQ(kept_attachment(), zero_attachment);
    EXPECT_EQ(kel_core_ic_pcep_start(), 0U);
    EXPECT_EQ(scripted::record_of("kel_init_attach"), zero_attachment);
}

TEST(PcepStop, NeedsNoStart)
{
    EXPECT_EQ(kel_core_ic_pcep_stop(), 0U);
    EXPECT_EQ(kel_core_ic_pcep_stop(), 0U);
    transcript::expect(std::string(stopped) + R"(
          FN_ENTER PCEP
          FN_EXIT PCEP
    )");
}

TEST(PcepStop, LetsTheServiceStartAgain)
{
    pcep_service_up();
    make_pcep(7);
    EXPECT_EQ(kel_core_ic_pcep_stop(), 0U);
    transcript::forget();
    EXPECT_EQ(kel_core_ic_pcep_start(), 0U);
    transcript::expect(started);
    make_pcep(7);
    expect_entries({"7: id 7, pcep 2"});
}

TEST(PcepStop, KeepsTheNumberOfGroups)
{
    pcep_service_up();
    make_groups(1, 30);
    EXPECT_EQ(kel_core_ic_pcep_stop(), 0U);
    pcep_service_up();
    EXPECT_EQ(kel_core_ic_pcep_mc_group_add(1), 10U);
    transcript::expect(expected::refusal("kel_core_ic_pcep_mc_group_add", 10, ""));
}

TEST(PcepStart, KeepsTheNumberOfGroups)
{
    make_groups(1, 30);
    pcep_service_up();
    EXPECT_EQ(kel_core_ic_pcep_mc_group_add(1), 10U);
    transcript::expect(expected::refusal("kel_core_ic_pcep_mc_group_add", 10, ""));
}

TEST(PcepStop, KeepsTheOwnMpId)
{
    const pcep_side own = {{2, 0, 7, 0, 0, 1}, "02:00:07:00:00:01", "CPU"};
    setenv("MPID", "7", 1);
    pcep_service_up();
    make_pcep(1, own);
    setenv("MPID", "8", 1);
    EXPECT_EQ(kel_core_ic_pcep_stop(), 0U);
    pcep_service_up();
    EXPECT_EQ(add_pcep(2, own, own), 0U);
    transcript::expect(R"(
        kel_core_ic_pcep_add:
          FN_ENTER PCEP
          ~ macAddr2str(02:00:07:00:00:01)
          ~ macAddr2str(02:00:07:00:00:01)
          API_CALL PCEP ork_ebcom_pcep_create(localPcepId=2, remotePcepId=11259375, vlanId=291, sMac=02:00:07:00:00:01(CPU), dMac=02:00:07:00:00:01(CPU))
          > ork_ebcom_pcep_create(ork, id 2)
          FN_EXIT PCEP
    )");
}

TEST(PcepHook, MakesNothingAndLeavesBothHandles)
{
    kel_attach_info attach;
    memset(&attach, 0xA5, sizeof attach);
    const kel_attach_info before = attach;
    uint64_t queue = 0x1111;
    uint64_t scheduler = 0x2222;
    EXPECT_EQ(kel_core_ic_pcep_create_queue_and_scheduler_for_multicast(&attach, &queue, &scheduler), 0U);
    EXPECT_EQ(queue, 0x1111U);
    EXPECT_EQ(scheduler, 0x2222U);
    EXPECT_EQ(memcmp(&attach, &before, sizeof attach), 0);
    transcript::expect("");
}

TEST(PcepHook, WithoutASchedulerGroupsAreCreatedWithZero)
{
    pcep_service_up();
    EXPECT_EQ(kel_core_ic_pcep_mc_group_add(300), 0U);
    transcript::expect(group_300_added("ork", "0"));
}

TEST(PcepHook, ReplacedByOneThatMakesASchedulerGroupsAreCreatedWithIt)
{
    scripted::set_hook_handles(0x1111'2222'3333'4444, 0x5555'6666'7777'8888);
    pcep_service_up();
    EXPECT_EQ(kel_core_ic_pcep_mc_group_add(300), 0U);
    transcript::expect(group_300_added("ork", "0x5555666677778888"));
}

TEST(PcepHook, FindsItsHandlesKeptOverAStop)
{
    scripted::set_hook_handles(0x1111'2222'3333'4444, 0x5555'6666'7777'8888);
    pcep_service_up();
    EXPECT_EQ(kel_core_ic_pcep_stop(), 0U);
    transcript::forget();
    EXPECT_EQ(kel_core_ic_pcep_mc_group_add(300), 0U);
    transcript::expect(group_300_added("(nil)", "0x5555666677778888"));

    pcep_service_up();
    expect_filled(scripted::last_hook_call().attach);
    EXPECT_EQ(scripted::last_hook_call().queue_handle, 0x1111'2222'3333'4444U);
    EXPECT_EQ(scripted::last_hook_call().scheduler_handle, 0x5555'6666'7777'8888U);
}

TEST(PcepHook, FailingLeavesTheHandlesOfTheStartBefore)
{
    scripted::set_hook_handles(0x1111, 0x2222);
    pcep_service_up();
    scripted::set_hook_handles(0x3333, 0x4444);
    scripted::fail(hook, 9);
    EXPECT_EQ(kel_core_ic_pcep_start(), 9U);
    transcript::forget();
    EXPECT_EQ(kel_core_ic_pcep_mc_group_add(300), 0U);
    transcript::expect(group_300_added("ork", "0x2222"));
}

TEST(PcepHandleDump, ShowsAllEntriesAndNothingOutsideTheTable)
{
    pcep_service_up();
    make_pcep(1);
    make_pcep(511, on_hsfp);
    make_group(300);
    EXPECT_EQ(kel_core_ic_pcep_handle_dump(destination), 0U);
    transcript::expect(with({""}, dumped) + R"(
          > entry 1: id 1, pcep 1
          > entry 300: id 300, group 1
          > entry 511: id 511, pcep 2
    )");
}

TEST(PcepHandleDump, OfAnEmptyTableShowsNoEntry)
{
    EXPECT_EQ(kel_core_ic_pcep_handle_dump(destination), 0U);
    transcript::expect(with({""}, dumped));
    pcep_service_up();
    EXPECT_EQ(kel_core_ic_pcep_handle_dump(destination), 0U);
    transcript::expect(with({""}, dumped));
}

TEST(PcepHandleDump, HandsOnANullDestination)
{
    EXPECT_EQ(kel_core_ic_pcep_handle_dump(nullptr), 0U);
    transcript::expect(R"(
          > kel_init_dump_ork_handles((nil), PCEP Handles, 511)
    )");
}

TEST(PcepHandleDump, OfAFullTableShowsEveryId)
{
    std::vector<std::string> entries;
    pcep_service_up();
    for (uint32_t id = 1; id <= 511; ++id) {
        make_pcep(id);
        entries.push_back(with({std::to_string(id)}, "$1: id $1, pcep $1"));
    }
    expect_entries(entries);
}

TEST(PcepHandleDump, NeedsNoStartForWhatWasMadeWithoutOne)
{
    make_pcep(7);
    expect_entries({"7: id 7, pcep 1"});
}

TEST_P(PcepCompanionCode, OfAFailedHandleDumpIsIgnored)
{
    scripted::fail("kel_init_dump_ork_handles", rc);
    EXPECT_EQ(kel_core_ic_pcep_handle_dump(destination), 0U);
    transcript::expect(with({" = " + shown}, dumped));
}

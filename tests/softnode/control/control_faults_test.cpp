/*
 * control_faults_test.cpp - the control interface over the process-wide node: fault rules, and calls that they block.
 */
#include "control.h"
#include "follower.h"
#include "temporary_file.h"

#include "platform/kel_fmt.h"
#include "platform/qol_ng.h"
#include "platform/vorn_tu.h"
#include "softnode/faults/closed_functions.h"

#include <cstdint>
#include <cstdlib>
#include <fcntl.h>
#include <map>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace
{

/* Every closed function that returns a code, called so that it is refused unless a fault rule answers first. */
const std::map<std::string_view, std::int64_t (*)()> calls{
    {"kel_fmt_ebcom_global_stats", [] { return std::int64_t{kel_fmt_ebcom_global_stats(nullptr, 0, 0, nullptr)}; }},
    {"kel_fmt_ebcom_pcep_inbound_stats",
     [] { return std::int64_t{kel_fmt_ebcom_pcep_inbound_stats(nullptr, 0, 0, nullptr)}; }},
    {"kel_fmt_ebcom_pcep_outbound_stats",
     [] { return std::int64_t{kel_fmt_ebcom_pcep_outbound_stats(nullptr, 0, 0, nullptr)}; }},
    {"kel_fmt_end", [] { return std::int64_t{kel_fmt_end(nullptr, 0)}; }},
    {"kel_fmt_header", [] { return std::int64_t{kel_fmt_header(nullptr, 0, 0, nullptr)}; }},
    {"kel_fmt_uint32", [] { return std::int64_t{kel_fmt_uint32(nullptr, 0, 0, nullptr, 0)}; }},
    {"kel_init_attach", [] { return std::int64_t{kel_init_attach(nullptr)}; }},
    {"kel_init_dump_ork_handles",
     [] { return std::int64_t{kel_init_dump_ork_handles(nullptr, nullptr, 0, nullptr, nullptr)}; }},
    {"kel_init_eventdev_dev_id_ebcom_get", [] { return std::int64_t{kel_init_eventdev_dev_id_ebcom_get(nullptr)}; }},
    {"kel_init_eventdev_vsi_ebcom_get", [] { return std::int64_t{kel_init_eventdev_vsi_ebcom_get(nullptr)}; }},
    {"kel_init_qos_queue_add", [] { return std::int64_t{kel_init_qos_queue_add(nullptr, 5, nullptr, 0, nullptr)}; }},
    {"kel_init_qos_queue_rem", [] { return std::int64_t{kel_init_qos_queue_rem(nullptr)}; }},
    {"kel_init_qos_queue_stats_get", [] { return std::int64_t{kel_init_qos_queue_stats_get(nullptr, nullptr)}; }},
    {"ork_bind", [] { return std::int64_t{ork_bind(nullptr, nullptr)}; }},
    {"ork_ebcom_global_config_set", [] { return std::int64_t{ork_ebcom_global_config_set(nullptr, nullptr)}; }},
    {"ork_ebcom_global_statistics_get", [] { return std::int64_t{ork_ebcom_global_statistics_get(nullptr, nullptr)}; }},
    {"ork_ebcom_interface_create", [] { return std::int64_t{ork_ebcom_interface_create(nullptr, 0)}; }},
    {"ork_ebcom_interface_delete", [] { return std::int64_t{ork_ebcom_interface_delete(nullptr, 0)}; }},
    {"ork_ebcom_multicast_group_create",
     [] { return std::int64_t{ork_ebcom_multicast_group_create(nullptr, nullptr, nullptr, 0)}; }},
    {"ork_ebcom_multicast_group_delete", [] { return std::int64_t{ork_ebcom_multicast_group_delete(nullptr, 0)}; }},
    {"ork_ebcom_multicast_member_add", [] { return std::int64_t{ork_ebcom_multicast_member_add(nullptr, 0, 0)}; }},
    {"ork_ebcom_multicast_member_rem", [] { return std::int64_t{ork_ebcom_multicast_member_rem(nullptr, 0, 0)}; }},
    {"ork_ebcom_pcep_create", [] { return std::int64_t{ork_ebcom_pcep_create(nullptr, nullptr, nullptr)}; }},
    {"ork_ebcom_pcep_delete", [] { return std::int64_t{ork_ebcom_pcep_delete(nullptr, 0)}; }},
    {"ork_ebcom_pcep_path_create", [] { return std::int64_t{ork_ebcom_pcep_path_create(nullptr, nullptr)}; }},
    {"ork_ebcom_pcep_path_delete", [] { return std::int64_t{ork_ebcom_pcep_path_delete(nullptr, nullptr)}; }},
    {"ork_ebcom_pcep_statistics_get", [] { return std::int64_t{ork_ebcom_pcep_statistics_get(nullptr, 0, nullptr)}; }},
    {"ork_ebcom_timestamp_offset_set", [] { return std::int64_t{ork_ebcom_timestamp_offset_set(nullptr, 0)}; }},
    {"ork_qos_queue_get", [] { return std::int64_t{ork_qos_queue_get(nullptr, nullptr, nullptr)}; }},
    {"ork_qos_scheduler_create", [] { return std::int64_t{ork_qos_scheduler_create(nullptr, nullptr, 0, nullptr)}; }},
    {"ork_qos_scheduler_delete", [] { return std::int64_t{ork_qos_scheduler_delete(nullptr, nullptr)}; }},
    {"ork_syshandle_get", [] { return std::int64_t{ork_syshandle_get(0, 1, nullptr)}; }},
    {"ork_unbind", [] { return std::int64_t{ork_unbind(nullptr, nullptr)}; }},
    {"qol_ng_restart_request_line_and_file",
     [] { return std::int64_t{qol_ng_restart_request_line_and_file(0, nullptr, 1, nullptr, 0, nullptr)}; }},
    {"vorn_tu_free_event", [] { return std::int64_t{vorn_tu_free_event(nullptr, nullptr)}; }},
    {"vorn_tu_get_nputimeoffset", [] { return std::int64_t{vorn_tu_get_nputimeoffset(nullptr, 0, nullptr)}; }},
    {"vorn_tu_init", [] { return std::int64_t{vorn_tu_init(nullptr)}; }},
    {"vorn_tu_subscribe_adjnpuoffs", [] { return std::int64_t{vorn_tu_subscribe_adjnpuoffs(nullptr, 0)}; }},
    {"vorn_tu_wait_event", [] { return std::int64_t{vorn_tu_wait_event(nullptr, nullptr)}; }},
};

constexpr std::uint32_t generous = 60'000; /* milliseconds; never reached when all is well */

class Faults : public ControlledNode
{
protected:
    /* Follows the timing unit, with a rule that blocks the follower at once. */
    static void expect_blocked(const char *function)
    {
        ASSERT_EQ(softnode_timing_settle(generous), 1);
        EXPECT_EQ(look_into_node().at("timing_unit").at("blocked"), notation::document::array({function}));
    }
};

using BlockedCalls = Faults;

} // namespace

TEST_F(Faults, ReachEveryFunctionThatReturnsACode)
{
    ASSERT_EQ(calls.size(), softnode::closed_functions.size());
    for (const auto &[name, call] : calls) {
        EXPECT_NE(call(), 77) << name;
        ASSERT_EQ(add_faults((std::string(name) + ":1=77").c_str()), "");
        EXPECT_EQ(call(), 77) << name;
        EXPECT_NE(call(), 77) << name;
    }
}

TEST_F(Faults, EveryFunctionIsCountedUnderItsName)
{
    for (const auto &[name, call] : calls) {
        softnode_reset();
        call();
        call();
        EXPECT_EQ(look_into_node().at("calls"), (notation::document{{std::string(name), 2}}));
    }
}

TEST_F(Faults, ACallMadeToFailChangesNothing)
{
    void *scheduler = create_scheduler();
    void *queue = add_queue(scheduler);
    void *untouched = foreign;
    const auto before = held();
    ASSERT_EQ(add_faults("ork_qos_scheduler_create=-4;ork_qos_scheduler_delete=-7;kel_init_qos_queue_add=10;"
                         "kel_init_qos_queue_rem=13;ork_ebcom_interface_create=-3;ork_ebcom_timestamp_offset_set=-1"),
              "");
    const ork_qos_scheduler_params params = scheduler_params();
    const kel_init_qos_queue_params queue_params{1, 0, 0, 0};
    EXPECT_EQ(ork_qos_scheduler_create(ork, &params, 0, &untouched), -4);
    EXPECT_EQ(ork_qos_scheduler_delete(ork, scheduler), -7);
    EXPECT_EQ(kel_init_qos_queue_add(&queue_params, 5, scheduler, device, &untouched), 10U);
    EXPECT_EQ(kel_init_qos_queue_rem(queue), 13U);
    EXPECT_EQ(ork_ebcom_interface_create(ork, device), -3);
    EXPECT_EQ(ork_ebcom_timestamp_offset_set(ork, 160), -1);
    EXPECT_EQ(untouched, foreign);
    EXPECT_EQ(held(), before);
}

TEST_F(Faults, APcepOrGroupCallMadeToFailChangesNothing)
{
    const std::uint64_t pcep = create_pcep(1);
    const std::uint64_t group = create_group(100);
    std::uint64_t untouched = 11;
    const auto before = held();
    ASSERT_EQ(add_faults("ork_ebcom_pcep_create=-1;ork_ebcom_pcep_delete=-2;ork_bind=-3;"
                         "ork_ebcom_multicast_group_create=-4;ork_ebcom_multicast_group_delete=-5;"
                         "ork_ebcom_multicast_member_add=-6"),
              "");
    const ork_ebcom_pcep_params params = pcep_params(2);
    const ork_ebcom_multicast_group group_params{101, {}};
    const ork_bind_params binding = binding_of(1);
    EXPECT_EQ(ork_ebcom_pcep_create(ork, &params, &untouched), -1);
    EXPECT_EQ(ork_ebcom_pcep_delete(ork, pcep), -2);
    EXPECT_EQ(ork_bind(attach.sys_handle, &binding), -3);
    EXPECT_EQ(ork_ebcom_multicast_group_create(ork, &group_params, &untouched, 0), -4);
    EXPECT_EQ(ork_ebcom_multicast_group_delete(ork, group), -5);
    EXPECT_EQ(ork_ebcom_multicast_member_add(ork, group, 1), -6);
    EXPECT_EQ(untouched, 11U);
    EXPECT_EQ(held(), before);
}

TEST_F(Faults, ResultsTakeTheTypeOfTheFunction)
{
    ASSERT_EQ(add_faults("kel_init_attach=-1;vorn_tu_init=4294967295"), "");
    EXPECT_EQ(kel_init_attach(&attach), UINT32_MAX);
    void *connection = nullptr;
    EXPECT_EQ(vorn_tu_init(&connection), -1);
}

TEST_F(Faults, BadRulesComeBackAsTextAndAddNone)
{
    EXPECT_EQ(add_faults("kel_init_attach=10;kel_init_attach:0=10"),
              "\"kel_init_attach:0=10\": the call is not a number from 1 to 4294967295");
    EXPECT_EQ(kel_init_attach(&attach), 0U);
    EXPECT_EQ(add_faults(nullptr), "no rules: the pointer is null");
}

TEST_F(Faults, ClearForgetsEveryRuleAndKeepsTheCounts)
{
    ASSERT_EQ(add_faults("kel_init_attach=10"), "");
    ASSERT_EQ(kel_init_attach(&attach), 10U);
    softnode_faults_clear();
    EXPECT_EQ(kel_init_attach(&attach), 0U);
    EXPECT_TRUE(look_into_node().at("faults").empty());
    EXPECT_EQ(look_into_node().at("calls").at("kel_init_attach"), 3);
}

TEST_F(Faults, AFileOfRulesIsAddedWhole)
{
    const TemporaryFile file("# the second attach\nkel_init_attach:1=10\n");
    EXPECT_EQ(add_fault_file(file.name().c_str()), "");
    EXPECT_EQ(kel_init_attach(&attach), 10U);
    const TemporaryFile bad("kel_init_attach=3\nkel_init_attach:0=10\n");
    EXPECT_EQ(add_fault_file(bad.name().c_str()), bad.name() + ":2:17: the call is not a number from 1 to 4294967295");
    EXPECT_EQ(kel_init_attach(&attach), 0U);
    EXPECT_EQ(add_fault_file(nullptr), "no file: the pointer is null");
}

/* What softnode_faults_add_text() answers. */
struct TextAnswer {
    std::uint32_t line = 7;
    std::uint32_t column = 7;
    std::string problem; /* last: its making writes the others */

    explicit TextAnswer(std::string_view text)
        : problem(taken(softnode_faults_add_text(text.data(), text.size(), &line, &column)))
    {
    }
};

TEST_F(Faults, ATextOfRulesIsAddedWhole)
{
    using namespace std::string_view_literals;
    const TextAnswer wrong("kel_init_attach:1=10\n ork_bind:0=1");
    EXPECT_EQ(wrong.problem, "the call is not a number from 1 to 4294967295");
    EXPECT_EQ(wrong.line, 2U);
    EXPECT_EQ(wrong.column, 11U);
    EXPECT_EQ(TextAnswer("kel_init_attach:1=10\n\0"sv).line, 2U) << "a text has its size, and no end of its own";
    EXPECT_TRUE(fault_rules().empty());

    const TextAnswer good("kel_init_attach:1=10\n");
    EXPECT_EQ(good.problem, "");
    EXPECT_EQ(good.line, 0U);
    EXPECT_EQ(good.column, 0U);
    EXPECT_EQ(fault_rules().size(), 1U);
}

TEST_F(Faults, PlacesInATextAreOptionalAndTheTextIsNot)
{
    EXPECT_EQ(taken(softnode_faults_add_text("nope", 4, nullptr, nullptr)).find("no effect"), 0U);
    EXPECT_EQ(taken(softnode_faults_add_text(nullptr, 0, nullptr, nullptr)), "no text: the pointer is null");
}

TEST_F(Faults, AFileThatTakesLongToReadHoldsNobodyUp)
{
    const TemporaryFile place("");
    const std::string pipe = place.name() + ".pipe";
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    std::string problem = "not read";
    std::thread reader([&] { problem = add_fault_file(pipe.c_str()); });
    int writing = -1;
    while ((writing = open(pipe.c_str(), O_WRONLY | O_NONBLOCK | O_CLOEXEC)) < 0) /* until it is open for reading */
        std::this_thread::yield();
    EXPECT_EQ(kel_init_attach(&attach), 0U);
    constexpr std::string_view rule = "kel_init_attach:1=10";
    EXPECT_EQ(write(writing, rule.data(), rule.size()), static_cast<ssize_t>(rule.size()));
    close(writing);
    reader.join();
    unlink(pipe.c_str());
    EXPECT_EQ(problem, "");
    EXPECT_EQ(kel_init_attach(&attach), 10U);
}

TEST_F(Faults, AreListedAsTheSnapshotHasThem)
{
    EXPECT_EQ(fault_rules(), notation::document::array());
    ASSERT_EQ(add_faults("kel_init_attach:1=10;ork_bind=latency:250us"), "");
    kel_init_attach(&attach);
    EXPECT_EQ(fault_rules(), notation::read_json(R"([{"rule": "kel_init_attach:1=10", "hits": 1},
                                         {"rule": "ork_bind=latency:250us", "hits": 0}])"));
    EXPECT_EQ(fault_rules(), look_into_node().at("faults"));
}

TEST_F(Faults, ACallThatOnlyTakesTimeDoesItsWork)
{
    ASSERT_EQ(add_faults("ork_qos_scheduler_create=latency:250us"), "");
    EXPECT_NE(create_scheduler(), nullptr);
    EXPECT_EQ(fault_rules()[0].at("hits"), 1);
}

TEST_F(Faults, ACallTakesTheTimeThatItsRuleSays)
{
    ASSERT_EQ(add_faults("kel_init_attach:2=latency:250us,10"), "");
    kel_attach_info attached{};
    EXPECT_EQ(kel_init_attach(&attached), 0U);
    EXPECT_EQ(softnode_time(), 0U);
    EXPECT_EQ(kel_init_attach(&attached), 10U);
    EXPECT_EQ(softnode_time(), 250'000U);
}

TEST_F(BlockedCalls, WaitUntilTheyAreReleasedAndThenDoTheirWork)
{
    ASSERT_EQ(add_faults("vorn_tu_wait_event:1=block"), "");
    Follower follower;
    expect_blocked("vorn_tu_wait_event");
    EXPECT_EQ(look_into_node().at("timing_unit").at("connections")[0].at("state"), "blocked");
    softnode_timing_event_post(6, 0);
    EXPECT_EQ(softnode_timing_settle(generous), 1) << "a blocked thread is at rest, with an event left for it";
    EXPECT_EQ(softnode_faults_release(), 1U);
    ASSERT_EQ(softnode_timing_settle(generous), 1);
    EXPECT_EQ(follower.events(), (std::vector<std::uint32_t>{6}));
    EXPECT_EQ(look_into_node().at("timing_unit").at("blocked"), notation::document::array());
}

TEST_F(BlockedCalls, ReturnTheResultOfTheirRuleOnceTheyAreReleased)
{
    ASSERT_EQ(add_faults("vorn_tu_subscribe_adjnpuoffs=block,-8"), "");
    Follower follower;
    expect_blocked("vorn_tu_subscribe_adjnpuoffs");
    EXPECT_EQ(softnode_faults_release(), 1U);
    follower.join();
    EXPECT_EQ(follower.ended_with(), ORK_NOTAVAIL);
}

TEST_F(BlockedCalls, CountAsArrivedBeforeThereIsAConnection)
{
    ASSERT_EQ(add_faults("vorn_tu_init=block"), "");
    Follower follower;
    expect_blocked("vorn_tu_init");
    EXPECT_EQ(softnode_faults_release(), 1U);
}

TEST_F(BlockedCalls, GoOnWhenTheRulesAreCleared)
{
    ASSERT_EQ(add_faults("vorn_tu_wait_event=block"), "");
    Follower follower;
    expect_blocked("vorn_tu_wait_event");
    softnode_faults_clear();
    ASSERT_EQ(softnode_timing_settle(generous), 1);
    EXPECT_EQ(look_into_node().at("timing_unit").at("connections")[0].at("state"), "waiting");
}

TEST_F(BlockedCalls, AreShutDownByAReset)
{
    ASSERT_EQ(add_faults("vorn_tu_subscribe_adjnpuoffs=block,-8"), "");
    Follower follower;
    expect_blocked("vorn_tu_subscribe_adjnpuoffs");
    softnode_reset();
    follower.join();
    EXPECT_EQ(follower.ended_with(), ORK_SHUTDOWN);
}

TEST_F(BlockedCalls, OfSeveralThreadsAreReleasedTogether)
{
    ASSERT_EQ(add_faults("vorn_tu_init=block"), "");
    Follower first;
    Follower second;
    while (look_into_node().at("timing_unit").at("blocked").size() < 2)
        std::this_thread::yield();
    EXPECT_EQ(softnode_faults_release(), 2U);
    while (look_into_node().at("timing_unit").at("connections").size() < 2)
        std::this_thread::yield();
    EXPECT_EQ(softnode_timing_settle(generous), 1);
    EXPECT_EQ(softnode_faults_release(), 0U);
}

TEST_F(BlockedCalls, LeaveTheNodeToOthers)
{
    ASSERT_EQ(add_faults("vorn_tu_wait_event=block"), "");
    Follower follower;
    expect_blocked("vorn_tu_wait_event");
    vorn_tu_nputimeoffset reading{};
    void *connection = nullptr;
    EXPECT_EQ(vorn_tu_init(&connection), ORK_OK);
    EXPECT_EQ(vorn_tu_get_nputimeoffset(connection, 0, &reading), ORK_OK);
    EXPECT_NE(create_scheduler(), nullptr);
}

TEST_F(BlockedCalls, BlockAgainWhenTheyMeetTheirRuleAgain)
{
    ASSERT_EQ(add_faults("vorn_tu_wait_event:1*2=block"), "");
    Follower follower;
    expect_blocked("vorn_tu_wait_event");
    softnode_timing_event_post(5, 0);
    ASSERT_EQ(softnode_faults_release(), 1U);
    expect_blocked("vorn_tu_wait_event");
    EXPECT_EQ(follower.events(), (std::vector<std::uint32_t>{5}));
}

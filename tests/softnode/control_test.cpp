/*
 * control_test.cpp - the control interface over the process-wide node: faults, snapshot, reset.
 */
#include "control.h"

#include "platform/kel_fmt.h"
#include "platform/qol_ng.h"
#include "platform/vorn_tu.h"
#include "softnode/closed_functions.h"

#include <cstdint>
#include <map>
#include <string>
#include <string_view>

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

class Faults : public ControlledNode
{
};

class Snapshot : public ControlledNode
{
};

class Reset : public ControlledNode
{
};

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
        EXPECT_EQ(look_into_node()["calls"], (nlohmann::json{{std::string(name), 2}}));
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
    EXPECT_TRUE(look_into_node()["faults"].empty());
    EXPECT_EQ(look_into_node()["calls"]["kel_init_attach"], 3);
}

TEST_F(Snapshot, CountsRuleHits)
{
    ASSERT_EQ(add_faults("kel_init_attach:1*2=10"), "");
    for (int count = 0; count < 3; ++count)
        kel_init_attach(&attach);
    EXPECT_EQ(look_into_node()["faults"], json_of(R"([{"rule": "kel_init_attach:1*2=10", "hits": 2}])"));
    EXPECT_EQ(look_into_node()["calls"]["kel_init_attach"], 4);
}

TEST_F(Snapshot, HandlesPrintAsTheCallerPrintsThem)
{
    char printed[32];
    std::snprintf(printed, sizeof printed, "%p", create_scheduler());
    EXPECT_EQ(look_into_node()["schedulers"][0]["handle"], printed);
}

TEST_F(Reset, LeavesANodeJustSwitchedOn)
{
    switch_on_afresh();
    const auto before = look_into_node();
    add_queue(create_scheduler());
    create_pcep(1);
    create_group(100);
    softnode_timing_reading_set(1, 2);
    ASSERT_EQ(add_faults("kel_init_attach=10"), "");
    ASSERT_NE(look_into_node(), before);
    switch_on_afresh();
    EXPECT_EQ(look_into_node(), before);
}

TEST_F(Reset, MakesEveryHandleStale)
{
    void *const kit = ork;
    void *const scheduler = create_scheduler();
    void *const queue = add_queue(scheduler);
    const std::uint64_t pcep = create_pcep(1);
    const std::uint64_t group = create_group(100);
    switch_on_afresh();
    EXPECT_EQ(ork_ebcom_interface_create(kit, device), ORK_NOTAVAIL);
    EXPECT_EQ(ork_qos_scheduler_delete(ork, scheduler), ORK_NOTAVAIL);
    EXPECT_EQ(kel_init_qos_queue_rem(queue), 4U);
    EXPECT_EQ(ork_ebcom_pcep_delete(ork, pcep), ORK_NOTAVAIL);
    EXPECT_EQ(ork_ebcom_multicast_group_delete(ork, group), ORK_NOTAVAIL);
}

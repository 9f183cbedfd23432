// Every step of the bring-up and of the take-down made to fail on the software accelerator.
#include "program.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ostream>

namespace
{

using testing::AnyOf;
using testing::HasSubstr;
using testing::Not;

constexpr const char *no_tracer = "\n  no trace records: the tracer is not installed on this machine\n";

const std::string two_paths = ebcom_table + "[[path]]\ndst_mac = \"02:00:00:02:00:01\"\nport = \"RLU1P\"\n"
                                            "[[path]]\ndst_mac = \"02:00:00:02:00:02\"\nport = \"RLU1P\"\n";
const std::string second_path = "(dst_mac=02:00:00:02:00:02, port=RLU1P (6), unshaped)";

// With a board's PCEP and one that gets bound, in one group and alone in another.
const std::string two_groups =
    two_paths +
    "[[pcep]]\nid = 7\nremote_id = 9\nlocal_mac = \"02:00:00:02:00:01\"\nremote_mac = \"02:00:00:02:00:02\"\n"
    "vlan = 100\n"
    "[[pcep]]\nid = 8\nremote_id = 9\nlocal_mac = \"02:00:00:03:00:01\"\nremote_mac = \"02:00:00:02:00:02\"\n"
    "vlan = 100\npriority = 5\n"
    "[[multicast]]\nid = 300\nmembers = [7, 8]\n[[multicast]]\nid = 301\nmembers = [8]\n";
const std::string bound_pcep = "(pcep_id=8, remote_pcep_id=9, local_mac=02:00:00:03:00:01, "
                               "remote_mac=02:00:00:02:00:02, vlan_id=100, priority=5)";

struct failing_operation {
    const char *name;
    std::string fault;
    std::string operation;
    int code;
    std::string record;     // of the failed call
    std::string end;        // the last line
    std::string place = {}; // of what the node file says
};

void PrintTo(const failing_operation &failing, std::ostream *out)
{
    *out << failing.name;
}

std::string left_behind(const std::string &row)
{
    return "Taken down. Left behind:\n  " + row + "\n";
}

const failing_operation going_up[] = {
    {"GlobalParameters", "ork_ebcom_global_config_set=-1",
     "kel_core_ic_ebcom_global_param_set(icPortMTU=1500, etherType=0x88b5, settings=1, 2)", 13,
     "EXCEPTION GENERAL kel_core_ic_ebcom_global_param_set(): 0xffffffff - ", empty_again, "node.toml:1: "},
    {"InterfaceCreate", "ork_ebcom_interface_create=-4", "kel_core_ic_ebcom_interface_create()", 13,
     "EXCEPTION GENERAL kel_core_ic_ebcom_interface_create(): 0xfffffffc - ", empty_again},
    {"InterfaceVsiWhichLeavesTheInterface", "kel_init_eventdev_vsi_ebcom_get=9", "kel_core_ic_ebcom_interface_create()",
     9, "EXCEPTION GENERAL kel_core_ic_ebcom_interface_create(): ", empty_again},
    {"StartAttach", "kel_init_attach:3=10", "kel_core_ic_ebcom_start()", 10,
     "EXCEPTION GENERAL kel_core_ic_ebcom_start(): ", empty_again},
    {"StartSchedulerWhichLeavesTheFirstOnes", "ork_qos_scheduler_create:9=-7", "kel_core_ic_ebcom_start()", 13,
     "EXCEPTION GENERAL create_scheduler(): 0xfffffff9 - ", empty_again},
    {"PathQueue", "kel_init_qos_queue_add=10",
     "kel_core_ic_ebcom_path_add(dst_mac=02:00:00:02:00:01, port=RLU1P (6), unshaped)", 10,
     "EXCEPTION GENERAL kel_ic_ebcom_add_shaper(): ", empty_again, "node.toml:5: "},
    {"PathCreateWhichLeavesAReferenceOnTheQueue", "ork_ebcom_pcep_path_create:2=-4",
     "kel_core_ic_ebcom_path_add" + second_path, 13, "EXCEPTION GENERAL kel_core_ic_ebcom_path_add(): 0xfffffffc - ",
     empty_again, "node.toml:8: "},
    {"PcepCreate", "ork_ebcom_pcep_create:2=-4", "kel_core_ic_pcep_add" + bound_pcep, 13,
     "EXCEPTION GENERAL kel_core_ic_pcep_add(): 0xfffffffc - ", empty_again, "node.toml:17: "},
    {"BindWhichLeavesThePcep", "ork_bind=-8", "kel_core_ic_pcep_add" + bound_pcep, 13,
     "EXCEPTION GENERAL kel_core_ic_pcep_add(): 0xfffffff8 - ", left_behind("1 PCEP:              8"),
     "node.toml:17: "},
    {"GroupCreate", "ork_ebcom_multicast_group_create:2=-4", "kel_core_ic_pcep_mc_group_add(mc_pcep_id=301)", 13,
     "EXCEPTION GENERAL kel_core_ic_pcep_mc_group_add(): 0xfffffffc - ", empty_again, "node.toml:27: "},
    {"MemberAdd", "ork_ebcom_multicast_member_add:3=-4", "kel_core_ic_pcep_mc_member_add(mc_pcep_id=301, uc_pcep_id=8)",
     13, "EXCEPTION GENERAL kel_core_ic_pcep_mc_member_add(): 0xfffffffc - ", empty_again, "node.toml:29: "},
};

// What exists is shown as far as possible, and taken down.
const failing_operation showing[] = {
    {"GlobalStatistics", "ork_ebcom_global_statistics_get=-1", "kel_core_ic_ebcom_global_fmt_stats_get(format=2)", 13,
     "EXCEPTION GENERAL kel_ic_ebcom_get_global_stats(): 0xffffffff - ", ""},
    {"QueueStatistics", "kel_init_qos_queue_stats_get=9",
     "kel_core_ic_ebcom_queue_stats_get(dst_mac=02:00:00:02:00:01)", 9,
     "EXCEPTION GENERAL kel_core_ic_ebcom_queue_stats_get(): ", ""},
    {"PcepStatistics", "ork_ebcom_pcep_statistics_get:2=-8", "kel_core_ic_pcep_fmt_stats_get(pcep_id=8, format=2)", 13,
     "EXCEPTION GENERAL kel_ic_pcep_get_stats(): 0xfffffff8 - ", ""},
    {"EndOfTheText", "kel_fmt_end:1=10", "kel_core_ic_ebcom_global_fmt_stats_get(format=2)", 10,
     "EXCEPTION GENERAL kel_core_ic_ebcom_global_fmt_stats_get(): ", ""},
};

const failing_operation going_down[] = {
    {"PathDelete", "ork_ebcom_pcep_path_delete:1=-4", "kel_core_ic_ebcom_path_rem" + second_path, 13,
     "EXCEPTION GENERAL kel_core_ic_ebcom_path_rem(): 0xfffffffc - ",
     left_behind("1 path:              02:00:00:02:00:02")},
    {"InterfaceDelete", "ork_ebcom_interface_delete=-4", "kel_core_ic_ebcom_interface_delete()", 13,
     "EXCEPTION GENERAL kel_core_ic_ebcom_interface_delete(): 0xfffffffc - ",
     left_behind("1 interface:         Ethernet device 7")},
    {"Unbind", "ork_unbind=-4", "kel_core_ic_pcep_rem(pcep_id=8)", 13,
     "EXCEPTION GENERAL kel_core_ic_pcep_rem(): 0xfffffffc - ", left_behind("1 PCEP:              8")},
    {"PcepDelete", "ork_ebcom_pcep_delete=-4", "kel_core_ic_pcep_rem(pcep_id=7)", 13,
     "EXCEPTION GENERAL kel_core_ic_pcep_rem(): 0xfffffffc - ", left_behind("2 PCEPs:             7 8")},
    {"GroupDelete", "ork_ebcom_multicast_group_delete:1=-4", "kel_core_ic_pcep_mc_group_rem(mc_pcep_id=301)", 13,
     "EXCEPTION GENERAL kel_core_ic_pcep_mc_group_rem(): 0xfffffffc - ", left_behind("1 multicast group:   301")},
    {"MemberRemoveWhichKeepsTheGroup", "ork_ebcom_multicast_member_rem:1=-4",
     "kel_core_ic_pcep_mc_group_rem(mc_pcep_id=301)", 6,
     "EXCEPTION GENERAL kel_core_ic_pcep_mc_group_rem(): ", left_behind("1 multicast group:   301")},
};

class FailingOperation : public testing::TestWithParam<failing_operation>
{
protected:
    program_outcome outcome = kelctl_up(two_groups, {{"KEL_SOFTNODE_FAULTS", GetParam().fault}});

    void expect_report()
    {
        EXPECT_EQ(outcome.status, 1);
        EXPECT_THAT(outcome.err, HasSubstr("failed: " + GetParam().operation + "\n  code " +
                                           std::to_string(GetParam().code) + ": "));
        EXPECT_THAT(outcome.err, AnyOf(HasSubstr("\n    " + GetParam().record), HasSubstr(no_tracer)));
        EXPECT_THAT(outcome.err, testing::EndsWith(GetParam().end));
    }
};

class GoingUp : public FailingOperation
{
};

TEST_P(GoingUp, IsReportedOnceWithWhatIsLeftBehind)
{
    expect_report();
    EXPECT_THAT(outcome.err, testing::HasSubstr(GetParam().place + "failed: "));
    EXPECT_EQ(outcome.err.find("failed: "), outcome.err.rfind("failed: "));
    EXPECT_EQ(outcome.out, "");
}

INSTANTIATE_TEST_SUITE_P(Steps, GoingUp, testing::ValuesIn(going_up),
                         [](const auto &tested) { return std::string(tested.param.name); });

class Showing : public FailingOperation
{
};

TEST_P(Showing, IsReportedAndTheRestIsShownAndTakenDown)
{
    expect_report();
    EXPECT_EQ(outcome.err.find("failed: "), outcome.err.rfind("failed: "));
    EXPECT_THAT(outcome.out, HasSubstr("\nPCEP      id  VLAN "));
    EXPECT_THAT(outcome.out, HasSubstr("\nPCEP  received "));
    EXPECT_THAT(outcome.out, testing::EndsWith("\n" + empty_again));
}

INSTANTIATE_TEST_SUITE_P(Reads, Showing, testing::ValuesIn(showing),
                         [](const auto &tested) { return std::string(tested.param.name); });

TEST(FailingStatistics, OnlyTheFirstOfManyFailuresAreToldInFull)
{
    std::string pceps;
    for (int id = 1; id <= 25; ++id)
        pceps += "[[pcep]]\nid = " + std::to_string(id) +
                 "\nremote_id = 1\nlocal_mac = \"02:00:00:02:00:01\"\nremote_mac = \"02:00:00:02:00:02\"\nvlan = 1\n";
    const auto outcome = kelctl_up(ebcom_table + pceps, {{"KEL_SOFTNODE_FAULTS", "ork_ebcom_pcep_statistics_get=-8"}});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.err, HasSubstr("failed: kel_core_ic_pcep_fmt_stats_get(pcep_id=10, format=2)\n"));
    EXPECT_THAT(outcome.err, Not(HasSubstr("pcep_id=11)")));
    EXPECT_THAT(outcome.err,
                testing::EndsWith("\n15 more operations of the reading of counters failed; --all shows them\n"));
}

class GoingDown : public FailingOperation
{
};

TEST_P(GoingDown, IsReportedWithWhatIsLeftBehind)
{
    expect_report();
    EXPECT_THAT(outcome.out, HasSubstr("02:00:00:02:00:02"));
    EXPECT_THAT(outcome.out, Not(HasSubstr("Taken down")));
}

INSTANTIATE_TEST_SUITE_P(Steps, GoingDown, testing::ValuesIn(going_down),
                         [](const auto &tested) { return std::string(tested.param.name); });

TEST(FailingTakeDown, SchedulerThatStaysIsLeftBehindThoughNoOperationFailed)
{
    const auto outcome = kelctl_up(ebcom_table, {{"KEL_SOFTNODE_FAULTS", "ork_qos_scheduler_delete:1=-7"}});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.err,
                testing::EndsWith("Taken down. Left behind:\n"
                                  "  8 schedulers:        0x5c00000001 0x5c00000002 0x5c00000003 0x5c00000004\n"
                                  "                       0x5c00000005 0x5c00000006 0x5c00000007 0x5c00000008\n"));
}

TEST(FailingTakeDown, OnlyTheFirstOfManyFailuresAreToldInFull)
{
    const auto outcome = kelctl_up(ebcom_table + "[[path]]\ndst_mac = \"02:00:00:02:00:01\"\nport = 6\ncount = 25\n",
                                   {{"KEL_SOFTNODE_FAULTS", "ork_ebcom_pcep_path_delete=-4"}});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.err, HasSubstr("\n15 more operations of the take-down failed; --all shows them\n"));
    EXPECT_THAT(
        outcome.err,
        HasSubstr("\nnot undone: 25 paths\nTaken down. Left behind:\n  25 paths:            02:00:00:02:00:01 "));
}

TEST(FailingBoth, FailureGoingUpAndFailureGoingDownAreBothTold)
{
    const auto outcome = kelctl_up(
        two_paths, {{"KEL_SOFTNODE_FAULTS", "ork_ebcom_pcep_path_create:2=-4;ork_ebcom_pcep_path_delete=-8"}});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.err, testing::HasSubstr("node.toml:8: failed: kel_core_ic_ebcom_path_add" + second_path));
    EXPECT_THAT(outcome.err, HasSubstr("\nfailed: kel_core_ic_ebcom_path_rem(dst_mac=02:00:00:02:00:01, "));
    EXPECT_THAT(outcome.err, testing::EndsWith(left_behind("1 path:              02:00:00:02:00:01")));
}

TEST(FailingBoth, LeftoverThatCannotBeRemovedIsTold)
{
    const auto outcome = kelctl_up(
        two_paths, {{"KEL_SOFTNODE_FAULTS", "kel_init_eventdev_vsi_ebcom_get=9;ork_ebcom_interface_delete=-4"}});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.err, testing::HasSubstr("failed: kel_core_ic_ebcom_interface_create()\n"));
    EXPECT_THAT(outcome.err, HasSubstr("\nfailed: kel_core_ic_ebcom_interface_delete()\n"));
    EXPECT_THAT(outcome.err, testing::EndsWith(left_behind("1 interface:         Ethernet device 7")));
}

TEST(FailingBringUp, WhatWasUndoneIsToldInItsOrder)
{
    const auto outcome = kelctl_up(two_groups, {{"KEL_SOFTNODE_FAULTS", "ork_ebcom_multicast_member_add:3=-4"}});
    EXPECT_THAT(outcome.err,
                testing::EndsWith("\nundone: 2 group members removed, 2 multicast groups removed, 2 PCEPs removed,\n"
                                  "        PCEP service stopped, 2 paths removed, EBCOM service stopped,\n"
                                  "        interface deleted\n" +
                                  empty_again));
}

TEST(FailingBringUp, ManyPathsAreCountedInTextAndListedInJson)
{
    const std::string many = ebcom_table + "[[path]]\ndst_mac = \"02:00:00:02:00:00\"\nport = 6\ncount = 1500\n";
    const std::map<std::string, std::string> fault = {{"KEL_SOFTNODE_FAULTS", "ork_ebcom_pcep_path_create:1235=-4"}};
    EXPECT_THAT(
        kelctl_up(many, fault).err,
        testing::EndsWith("\nundone: 1,234 paths removed, EBCOM service stopped, interface deleted\n" + empty_again));

    const std::string out = kelctl_up(many, fault, {"--json"}).out;
    EXPECT_THAT(out, HasSubstr(R"_("undone":["ebcom path remove 02:00:00:02:04:d1 --port RLU1P",)_"));
    EXPECT_THAT(out, HasSubstr(R"_("ebcom path remove 02:00:00:02:00:00 --port RLU1P","ebcom stop",)_"
                               R"_("ebcom interface delete"],"not_undone":[],"complaints":[],)_"
                               R"_("left_behind":"","left_objects":[]})_"));
}

TEST(FailingBringUp, JsonTellsWhatCouldNotBeUndoneAndWhy)
{
    const auto outcome =
        kelctl_up(two_paths, {{"KEL_SOFTNODE_FAULTS", "ork_ebcom_pcep_path_create:2=-4;ork_ebcom_pcep_path_delete=-8"}},
                  {"--json"});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.err, "");
    EXPECT_THAT(outcome.out,
                HasSubstr(R"_("not_undone":[{"operation":"kel_core_ic_ebcom_path_rem(dst_mac=02:00:00:02:)_"
                          R"_(00:01, port=RLU1P (6), unshaped)","function":"kel_core_ic_ebcom_path_rem",)_"
                          R"_("code":13,"text":"operation failed","refusal":)_"));
    EXPECT_THAT(outcome.out, HasSubstr(R"_("left_behind":"1 path","left_objects":[{"kind":"path",)_"
                                       R"_("name":"02:00:00:02:00:01"}]},)_"));
    EXPECT_THAT(outcome.out, HasSubstr(R"_(,"further_failures":[{"operation":"kel_core_ic_ebcom_path_rem()_"));
}

TEST(FailingBringUp, KeepLeavesStandingWhatStands)
{
    const auto outcome = kelctl_up(two_paths, {{"KEL_SOFTNODE_FAULTS", "ork_ebcom_pcep_path_create:2=-4"}}, {"--keep"});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.out, "");
    EXPECT_THAT(outcome.err, testing::HasSubstr("node.toml:8: failed: kel_core_ic_ebcom_path_add" + second_path));
    EXPECT_THAT(outcome.err, HasSubstr("\nkept: parameters, interface, EBCOM service, 1 path\n"
                                       "The node contains:\n  12 schedulers: "));
    EXPECT_THAT(outcome.err, testing::EndsWith("\n  1 path:              02:00:00:02:00:01\n"
                                               "  1 interface:         Ethernet device 7\n"));
    EXPECT_THAT(outcome.err, Not(HasSubstr("undone")));
}

TEST(FailingBringUp, JsonListsWhatWasKept)
{
    const auto outcome =
        kelctl_up(two_paths, {{"KEL_SOFTNODE_FAULTS", "ork_ebcom_pcep_path_create:2=-4"}}, {"--keep", "--json"});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.out, HasSubstr(R"_("kept":["ebcom params set --mtu 1500 --ether-type 0x88b5 --settings 1,2",)_"
                                       R"_("ebcom interface create","ebcom start",)_"
                                       R"_("ebcom path add 02:00:00:02:00:01 --port RLU1P"])_"));
    EXPECT_THAT(outcome.out, HasSubstr(R"_(,"kept_objects":[{"kind":"scheduler","name":"0x5c00000001"},)_"));
    EXPECT_THAT(outcome.out, Not(HasSubstr("left_behind")));
}

TEST(FailingBringUp, KeepOfANodeThatStandsTakesItDownAsEver)
{
    const auto outcome = kelctl_up(two_paths, {}, {"--keep"});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_THAT(outcome.out, testing::EndsWith("\n" + empty_again));
}

TEST(FailingTakeDown, StopThatSucceededIsToldWithWhatItsRecordsTell)
{
    const auto outcome = kelctl_up(ebcom_table, {{"KEL_SOFTNODE_FAULTS", "ork_qos_scheduler_delete:1=-7"}});
    const auto traced = kelctl_up(ebcom_table, {}, {"--trace"});
    if (traced.err.find("not installed") != std::string::npos)
        GTEST_SKIP() << "there is no tracer on this machine";
    EXPECT_THAT(outcome.err, testing::StartsWith("undone: EBCOM service stopped, interface deleted\n"
                                                 "ebcom stop succeeded, but its trace records report "
                                                 "failures:\n    EXCEPTION GENERAL remove_scheduler(): 0xfffffff9 - "));
}

TEST(FailingOperation, RecordsAreThoseOfTheOperationOnly)
{
    const auto outcome = kelctl_up(two_paths, {{"KEL_SOFTNODE_FAULTS", "ork_ebcom_pcep_path_create:2=-4"}});
    if (outcome.err.find(no_tracer) != std::string::npos)
        GTEST_SKIP() << "there is no tracer on this machine";
    EXPECT_THAT(outcome.err, HasSubstr("trace records of kel_core_ic_ebcom_path_add():\n"
                                       "    FN_ENTER  EBCOM   kel_core_ic_ebcom_path_add()  ("));
    EXPECT_THAT(outcome.err, HasSubstr("    FN_EXIT   EBCOM   kel_core_ic_ebcom_path_add()  ("));
    EXPECT_THAT(outcome.err, Not(HasSubstr("02:00:00:02:00:01")));
    EXPECT_THAT(outcome.err, Not(HasSubstr("timestamp_thread")));
}

TEST(TimestampThread, ItsFailureIsToldAndTheNodeStandsWithoutOffset)
{
    const auto outcome = kelctl_up(two_paths, {{"KEL_SOFTNODE_FAULTS", "vorn_tu_get_nputimeoffset=-8"}});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_THAT(outcome.out, HasSubstr("\ntimestamp     no offset\n"));
    EXPECT_THAT(outcome.out, testing::EndsWith(empty_again));
    EXPECT_THAT(outcome.err,
                AnyOf("", testing::StartsWith("the timestamp thread reported:\n    EXCEPTION GENERAL "
                                              "update_timestamp_offset(): vorn_tu_get_nputimeoffset returned ")));
}

} // namespace

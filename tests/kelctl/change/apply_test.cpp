// Changes of a node that works, on the software accelerator.
#include "kelctl/change/apply.h"

#include "bare_node.h"
#include "kelctl/change/discrepancies.h"
#include "kelctl/change/node_model.h"
#include "kelctl/input/interruption.h"
#include "kelctl/jobs/take_down.h"
#include "notation/json.h"
#include "random_node.h"
#include "script_session.h"
#include "softnode/softnode.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>

namespace kelctl
{
namespace
{

using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

using lines = std::vector<std::string>;

lines with_service(lines more)
{
    lines all = {"ebcom params set --mtu 1500 --ether-type 0x88b5 --settings 1,2", "ebcom interface create",
                 "ebcom start"};
    all.insert(all.end(), more.begin(), more.end());
    return all;
}

const std::string to_1_on_p = "ebcom path add 02:00:00:02:00:01 --port RLU1P --rate 8000 --burst 4096";
const std::string to_1_faster = "ebcom path add 02:00:00:02:00:01 --port RLU1P --rate 9000 --burst 4096";
const std::string to_2_on_q = "ebcom path add 02:00:00:02:00:02 --port RLU1Q --rate 8000 --burst 4096";
const std::string to_3_on_q = "ebcom path add 02:00:00:02:00:03 --port RLU1Q --rate 8000 --burst 4096";

std::string pcep(int id, int vlan)
{
    return fmt::format("pcep add {} --remote-id 9 --local 02:00:00:03:00:01 --remote 02:00:00:02:00:01 --vlan {}", id,
                       vlan);
}

class Apply : public testing::Test
{
protected:
    Apply()
    {
        softnode_reset();
    }

    ~Apply() override
    {
        softnode_faults_clear();
        take_down(here);
    }

    void up(const lines &all)
    {
        for (const std::string &line : all)
            ASSERT_EQ(here.run(line).status, exit_done) << line;
    }

    // On a node that was just switched on.
    std::multiset<std::string> of(const lines &all)
    {
        take_down(here);
        softnode_reset();
        up(all);
        const auto made = bare_now();
        take_down(here);
        softnode_reset();
        return made;
    }

    std::string counter(const std::string &mac, const std::string &name)
    {
        return notation::to_json(here.run("ebcom queue stats " + mac + " --variant record").shown.at(name));
    }

    script_session here;
};

TEST_F(Apply, MakesAnyNodeAnyOther)
{
    for (uint32_t seed = 0; seed < 30; ++seed) {
        SCOPED_TRACE(seed);
        const lines wanted = random_node(seed + 1000).lines();
        const auto expected = of(wanted);
        up(random_node(seed).lines());
        const result done = apply(all_asked(wanted), false, here);
        EXPECT_EQ(done.status, exit_done);
        EXPECT_THAT(done.warnings, IsEmpty());
        EXPECT_EQ(bare_now(), expected);
        const result left = difference_from(all_asked(wanted), here);
        EXPECT_EQ(left.status, exit_done)
            << notation::to_json(left.shown) << (left.warnings.empty() ? "" : left.warnings[0].message);
        for (const undone_command &undone : take_down(here))
            EXPECT_THAT(undone.failures, IsEmpty()) << undone.command();
        EXPECT_TRUE(current_snapshot()->empty());
    }
}

TEST_F(Apply, DoesNothingWhereNothingDiffers)
{
    const lines node = with_service({to_1_on_p, "pcep start", pcep(7, 1)});
    up(node);
    const result done = apply(all_asked(node), false, here);
    EXPECT_EQ(done.status, exit_done);
    EXPECT_THAT(done.shown.at("steps"), IsEmpty());
    EXPECT_EQ(done.text->text(), "nothing differs");
}

TEST_F(Apply, DryRunShowsTheStepsAndDoesNothing)
{
    up(with_service({to_1_on_p, to_2_on_q}));
    const auto before = bare_now();
    const result done = apply(all_asked(with_service({to_1_faster, to_2_on_q})), true, here);
    EXPECT_EQ(done.status, exit_done);
    EXPECT_EQ(done.text->text(), "ebcom path remove 02:00:00:02:00:01 --port RLU1P\n"
                                 "ebcom path add 02:00:00:02:00:01 --port RLU1P --rate \"9 Mbit/s\" --burst \"4 KiB\"\n"
                                 "interrupts queue of RLU1P (6): 1 destination\n");
    EXPECT_EQ(bare_now(), before);
    EXPECT_EQ(done.shown.find("applied"), nullptr);
}

// The same traffic with and without a change of another queue.
TEST_F(Apply, OtherQueuesGoOnCounting)
{
    const auto counted = [&](bool changed) {
        up(with_service({to_1_on_p, to_2_on_q}));
        up({"traffic stream add --to 02:00:00:02:00:01 --octets 500 --rate 7000",
            "traffic stream add --to 02:00:00:02:00:02 --octets 500 --rate 7000", "time advance 100ms"});
        const std::string halfway = counter("02:00:00:02:00:02", "pkts_tx");
        const std::string changing = counter("02:00:00:02:00:01", "pkts_tx");
        if (changed)
            EXPECT_EQ(apply(all_asked(with_service({to_1_faster, to_2_on_q, to_3_on_q})), false, here).status,
                      exit_done);
        EXPECT_EQ(counter("02:00:00:02:00:02", "pkts_tx"), halfway);
        EXPECT_EQ(counter("02:00:00:02:00:01", "pkts_tx"), changed ? "0" : changing);
        up({"time advance 100ms"});
        EXPECT_GT(std::stoi(counter("02:00:00:02:00:02", "pkts_tx")), std::stoi(halfway));
        lines all;
        for (const char *name : {"pkts_rx", "pkts_tx", "octets_rx", "octets_tx", "pkts_dropped", "pkts_out_standing"})
            all.push_back(counter("02:00:00:02:00:02", name));
        take_down(here);
        up({"node reset"});
        return all;
    };
    const lines undisturbed = counted(false);
    EXPECT_EQ(counted(true), undisturbed);
}

TEST_F(Apply, MovingDestinationLosesNoFrame)
{
    up(with_service({to_1_on_p, to_2_on_q}));
    up({"traffic offer 02:00:00:02:00:01 --frames 1 --octets 100"});
    const std::string moved = "ebcom path add 02:00:00:02:00:01 --port RLU1Q --rate 8000 --burst 4096";
    EXPECT_EQ(apply(all_asked(with_service({to_2_on_q, moved})), false, here).status, exit_done);
    EXPECT_EQ(counter("02:00:00:02:00:01", "pkts_rx"), "0"); // it waits in the old queue, or is gone with it
    up({"traffic offer 02:00:00:02:00:01 --frames 1 --octets 100"});
    EXPECT_EQ(counter("02:00:00:02:00:01", "pkts_rx"), "1");
}

TEST_F(Apply, RestoresTheOldNodeAfterAFailure)
{
    up(with_service({to_1_on_p, to_2_on_q, "pcep start", pcep(7, 1), "group add 300", "group member add 300 7"}));
    const auto before = bare_now();
    ASSERT_EQ(softnode_faults_add("ork_ebcom_multicast_member_add:1=-9"), nullptr);
    const result done = apply(
        all_asked(with_service({to_1_faster, "pcep start", pcep(7, 2), "group add 300", "group member add 300 7"})),
        false, here);
    EXPECT_EQ(done.status, exit_operation_failed);
    EXPECT_THAT(done.failures, SizeIs(1));
    EXPECT_THAT(done.shown.at("left"), IsEmpty());
    EXPECT_EQ(done.remark, "the old node is restored");
    EXPECT_EQ(bare_now(), before);
    EXPECT_THAT(*discrepancies(model_of(here), here), IsEmpty());
}

// The reference that a refused path leaves would keep the queue.
TEST_F(Apply, TakesBackTheReferenceOfARefusedPath)
{
    up(with_service({to_1_on_p}));
    const auto before = bare_now();
    ASSERT_EQ(softnode_faults_add("ork_ebcom_pcep_path_create:1=-9"), nullptr);
    EXPECT_EQ(apply(all_asked(with_service({to_1_on_p, to_2_on_q})), false, here).status, exit_operation_failed);
    EXPECT_EQ(bare_now(), before);
}

// The interface is made before the step that fails, or not; the services are started halfway.
TEST_F(Apply, TakesBackWhatFailedStartsLeft)
{
    const lines node = with_service({to_1_on_p});
    for (const char *fault :
         {"ork_ebcom_interface_create=-9", "kel_init_eventdev_vsi_ebcom_get=13", "ork_qos_scheduler_create:3=-9"}) {
        SCOPED_TRACE(fault);
        up({node.front()}); // parameters stay
        const auto before = bare_now();
        ASSERT_EQ(softnode_faults_add(fault), nullptr);
        const result done = apply(all_asked(node), false, here);
        softnode_faults_clear();
        EXPECT_EQ(done.status, exit_operation_failed);
        EXPECT_EQ(notation::to_json(done.shown.at("left")), "[]");
        EXPECT_THAT(here.made.all(), SizeIs(1));
        EXPECT_EQ(bare_now(), before);
        EXPECT_EQ(apply(all_asked(node), false, here).status, exit_done);
        take_down(here);
    }
}

// The driver kit keeps a PCEP that it refused to delete, and the library has forgotten it.
TEST_F(Apply, ListsWhatCannotBeRestored)
{
    up(with_service({"pcep start", pcep(7, 1), "group add 300", "group member add 300 7"}));
    ASSERT_EQ(softnode_faults_add("ork_ebcom_pcep_delete:1=-9"), nullptr);
    const result done = apply(
        all_asked(with_service({"pcep start", pcep(7, 2), "group add 300", "group member add 300 7"})), false, here);
    EXPECT_EQ(done.status, exit_operation_failed);
    EXPECT_EQ(notation::to_json(done.shown.at("left")),
              R"([{"object":"PCEP 7","what":"removed"},{"object":"member 7 of group 300","what":"removed"},)"
              R"({"object":"PCEP 7","what":"the accelerator holds it, but this process knows of no such one"}])");
    EXPECT_EQ(done.remark, "the old node is restored, but for:\n"
                           "  PCEP 7: removed\n"
                           "  member 7 of group 300: removed\n"
                           "  PCEP 7: the accelerator holds it, but this process knows of no such one\n");
}

TEST_F(Apply, AnotherMpIdIsRefusedByItsNameBeforeAnythingIsDone)
{
    up({"mpid 5"});
    up(with_service({to_1_on_p}));
    const auto before = bare_now();
    lines wanted = with_service({to_2_on_q});
    wanted.insert(wanted.begin(), "mpid 6");
    for (const bool dry : {true, false}) {
        const result done = apply(all_asked(wanted), dry, here);
        EXPECT_EQ(done.status, exit_operation_failed);
        ASSERT_THAT(done.errors, SizeIs(1));
        EXPECT_EQ(done.errors[0].message,
                  "mpid: it cannot change from 5 to 6 in this process, because the library keeps it");
    }
    EXPECT_EQ(bare_now(), before);
    EXPECT_EQ(apply(all_asked(with_service({to_1_on_p})), false, here).status, exit_done); // one without an MP id
}

TEST_F(Apply, InterruptionRestoresTheOldNode)
{
    up(with_service({to_1_on_p}));
    const auto before = bare_now();
    const interruption_watch watch;
    std::raise(SIGINT);
    const result done = apply(all_asked(with_service({to_2_on_q})), false, here);
    EXPECT_EQ(done.status, exit_operation_failed);
    EXPECT_EQ(done.remark, "interrupted after 0 of 2 steps; the old node is restored");
    EXPECT_EQ(bare_now(), before);
}

TEST_F(Apply, ReportsTheReferenceThatARefusedPathMayLeaveBesideAnEqualOne)
{
    up(with_service({to_1_on_p}));
    EXPECT_EQ(softnode_faults_add("ork_ebcom_pcep_path_create=-4"), nullptr);
    const result done = apply(all_asked(with_service({to_1_on_p, to_1_on_p})), false, here);
    EXPECT_EQ(done.status, exit_operation_failed);
    const fields &left = done.shown.at("left");
    ASSERT_EQ(left.size(), 1u) << notation::to_json(left);
    EXPECT_EQ(left[0].at("object").text(), "path to 02:00:00:02:00:01 on RLU1P (6)");
    EXPECT_THAT(left[0].at("what").text(), HasSubstr("may have left its reference"));
}

TEST_F(Apply, WhatTheAcceleratorHeldOtherwiseBeforeIsAWarningOnly)
{
    const lines node = with_service({"ebcom path add 02:00:00:02:00:01 --port RLU1P"});
    up(node);
    up({"ebcom path add 02:00:00:02:00:01 --port RLU1Q", "ebcom path remove 02:00:00:02:00:01 --port RLU1Q"});
    lines wanted = node;
    wanted.push_back(to_2_on_q);
    for (const bool refused : {true, false}) {
        if (refused)
            ASSERT_EQ(softnode_faults_add("ork_ebcom_pcep_path_create:1=-9"), nullptr);
        const result done = apply(all_asked(wanted), false, here);
        EXPECT_EQ(done.shown.at("applied").boolean(), !refused);
        EXPECT_EQ(done.remark, refused ? "the old node is restored" : "");
        ASSERT_THAT(done.warnings, SizeIs(1));
        EXPECT_EQ(done.warnings[0].message, "path to 02:00:00:02:00:01 on RLU1P (6): its queue is gone");
    }
}

TEST_F(Apply, DryRunListsTwentyInterruptions)
{
    lines now = {"pcep start"};
    lines wanted = now;
    for (int id = 1; id <= 22; ++id) {
        now.push_back(pcep(id, 1));
        wanted.push_back(pcep(id, 2));
    }
    up(now);
    EXPECT_THAT(apply(all_asked(wanted), true, here).text->text(),
                testing::EndsWith("interrupts PCEP 19\ninterrupts PCEP 20\ninterrupts 2 more; --all shows them\n"));
}

TEST_F(Apply, DifferenceIsTroubleWhenTheAcceleratorHoldsSomethingElse)
{
    const lines node = with_service({to_1_on_p});
    up(node);
    EXPECT_EQ(difference_from(all_asked(node), here).status, exit_done);
    softnode_reset();
    const result done = difference_from(all_asked(node), here);
    EXPECT_EQ(done.status, exit_operation_failed);
    EXPECT_THAT(done.shown.at("differences"), IsEmpty());
    EXPECT_THAT(done.warnings, testing::Not(IsEmpty()));
    here.made.take_all();
    here.paths.clear();
}

} // namespace
} // namespace kelctl

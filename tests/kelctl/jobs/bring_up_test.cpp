// Lines brought up and taken down on the software accelerator, and what the result says of it.
#include "kelctl/jobs/bring_up.h"

#include "kelctl/input/interruption.h"
#include "kelctl/node/read_back.h"
#include "notation/json.h"
#include "script_session.h"
#include "softnode/softnode.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>

namespace kelctl
{
namespace
{

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class BringUp : public testing::Test
{
protected:
    BringUp()
    {
        softnode_reset();
        uint32_t number = 0;
        for (const char *text : {"ebcom interface create", "ebcom start",
                                 "ebcom path add 02:00:00:02:00:01 --port 6 --count 2", "pcep start"}) {
            lines.push_back(asked(text));
            lines.back().line = ++number;
        }
    }

    ~BringUp() override
    {
        softnode_faults_clear();
    }

    std::vector<invocation> lines;
    script_session here;
};

TEST_F(BringUp, StandsAndGoesDownInReverse)
{
    bring_up node(lines, "a.toml", here);
    EXPECT_TRUE(node.up());
    EXPECT_THAT(current_snapshot()->paths, SizeIs(2));
    EXPECT_TRUE(node.down());
    const result done = node.take_result(true);
    EXPECT_EQ(done.status, exit_done);
    EXPECT_EQ(notation::to_json(done.shown.at("stood")), "true");
    EXPECT_EQ(notation::to_json(done.shown.at("undone")),
              R"(["pcep stop","ebcom path remove 02:00:00:02:00:02 --port RLU1P",)"
              R"("ebcom path remove 02:00:00:02:00:01 --port RLU1P","ebcom stop","ebcom interface delete"])");
    EXPECT_TRUE(current_snapshot()->empty());
}

TEST_F(BringUp, StopsAtTheFirstFailureAndUndoesWhatWasMade)
{
    ASSERT_EQ(softnode_faults_add("ork_ebcom_pcep_path_create:2=-4"), nullptr);
    bring_up node(lines, "a.toml", here);
    EXPECT_FALSE(node.up());
    EXPECT_TRUE(node.down());
    const result done = node.take_result(false);
    ASSERT_THAT(done.failures, SizeIs(1));
    EXPECT_EQ(done.failures[0].code, 13u);
    EXPECT_EQ(notation::to_json(done.shown.at("stood")), "false");
    EXPECT_THAT(done.shown.at("undone"), SizeIs(3));
    EXPECT_TRUE(current_snapshot()->empty());
}

TEST_F(BringUp, RefusedTakeDownIsReportedWithWhatIsLeft)
{
    bring_up node(lines, "a.toml", here);
    EXPECT_TRUE(node.up());
    ASSERT_EQ(softnode_faults_add("ork_ebcom_interface_delete=-4"), nullptr);
    EXPECT_FALSE(node.down());
    const result done = node.take_result(false);
    ASSERT_THAT(done.shown.at("not_undone"), SizeIs(1));
    EXPECT_EQ(notation::to_json(done.shown.at("left_objects")), R"([{"kind":"interface","name":"Ethernet device 7"}])");
}

TEST_F(BringUp, WhatIsKeptIsNotTakenDown)
{
    {
        ASSERT_EQ(softnode_faults_add("ork_ebcom_pcep_path_create:2=-4"), nullptr);
        bring_up node(lines, "a.toml", here);
        EXPECT_FALSE(node.up());
        EXPECT_TRUE(node.keep());
        EXPECT_EQ(notation::to_json(node.take_result(false).shown["kept"]),
                  R"(["ebcom interface create","ebcom start","ebcom path add 02:00:00:02:00:01 --port RLU1P"])");
    }
    EXPECT_THAT(current_snapshot()->paths, SizeIs(1));
    EXPECT_THAT(here.made.all(), IsEmpty());
    for (const char *line : {"ebcom path remove 02:00:00:02:00:01 --port 6", "ebcom stop", "ebcom interface delete"})
        here.run(line);
}

TEST_F(BringUp, KeepsNothingWhereNothingFailed)
{
    bring_up node(lines, "a.toml", here);
    EXPECT_TRUE(node.up());
    EXPECT_FALSE(node.keep());
}

TEST_F(BringUp, TakesDownWhatStillStandsWhenItGoes)
{
    {
        bring_up node(lines, "a.toml", here);
        EXPECT_TRUE(node.up());
    }
    EXPECT_TRUE(current_snapshot()->empty());
}

TEST_F(BringUp, InterruptionEndsItBetweenTwoLines)
{
    const interruption_watch watch;
    bring_up node(lines, "a.toml", here);
    std::raise(SIGINT);
    EXPECT_FALSE(node.up());
    EXPECT_TRUE(node.down());
    EXPECT_FALSE(node.keep());
    EXPECT_THAT(node.take_result(false).shown["undone"], IsEmpty());
}

} // namespace
} // namespace kelctl

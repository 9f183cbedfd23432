// What a session made, taken down on the software accelerator.
#include "kelctl/jobs/take_down.h"

#include "kelctl/library/trace_log.h"
#include "kelctl/node/read_back.h"
#include "script_session.h"
#include "softnode/softnode.h"
#include "terminal/folding.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kelctl
{
namespace
{

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Property;
using testing::SizeIs;

constexpr product path = {"path", "paths", "removed"};
constexpr product service = {.one = "EBCOM service", .undone = "stopped"};

undone_command undone(const product &made, std::vector<failure> failures = {})
{
    return {.undo = {}, .made = made, .failures = std::move(failures), .complaints = {}};
}

class TakeDown : public testing::Test
{
protected:
    TakeDown()
    {
        softnode_reset();
    }

    script_session here;
};

TEST_F(TakeDown, GoesFromTheLastToTheFirst)
{
    for (const char *line : {"ebcom interface create", "ebcom start", "ebcom path add 02:00:00:02:00:01 --port 6"})
        ASSERT_EQ(here.run(line).status, exit_done) << line;
    EXPECT_THAT(take_down(here),
                ElementsAre(Property(&undone_command::command, "ebcom path remove 02:00:00:02:00:01 --port RLU1P"),
                            Property(&undone_command::command, "ebcom stop"),
                            Property(&undone_command::command, "ebcom interface delete")));
    EXPECT_TRUE(current_snapshot()->empty());
    EXPECT_THAT(take_down(here), IsEmpty());
}

TEST_F(TakeDown, GoesOnAfterAFailureAndReportsIt)
{
    here.run("ebcom interface create");
    here.run("ebcom start");
    ASSERT_EQ(softnode_faults_add("kel_init_attach:1=10"), nullptr); // of the stop, which only traces it, or the delete
    ASSERT_EQ(softnode_faults_add("ork_ebcom_interface_delete=-4"), nullptr);
    const auto all = take_down(here);
    softnode_faults_clear();
    ASSERT_THAT(all, SizeIs(2));
    EXPECT_EQ(all[0].command(), "ebcom stop");
    ASSERT_THAT(all[1].failures, SizeIs(1));
    EXPECT_EQ(all[1].failures[0].code, 13u);
    EXPECT_THAT(here.made.all(), IsEmpty());
}

TEST_F(TakeDown, ReportsWhatAStopOnlyTraces)
{
    if (!here.log().installed())
        GTEST_SKIP() << "there is no tracer on this machine";
    here.run("ebcom start");
    ASSERT_EQ(softnode_faults_add("ork_qos_scheduler_delete:1=-4"), nullptr);
    const auto all = take_down(here);
    softnode_faults_clear();
    ASSERT_THAT(all, SizeIs(1));
    EXPECT_THAT(all[0].failures, IsEmpty());
    EXPECT_THAT(all[0].complaints, testing::Not(IsEmpty()));
}

TEST_F(TakeDown, UndoesWhatAFailedCommandMayHaveLeft)
{
    ASSERT_EQ(softnode_faults_add("kel_init_eventdev_vsi_ebcom_get=4"), nullptr);
    EXPECT_EQ(here.run("ebcom interface create").code, 4u);
    softnode_faults_clear();
    const auto all = take_down(here);
    ASSERT_THAT(all, SizeIs(1));
    EXPECT_TRUE(all[0].may_find_nothing);
    EXPECT_TRUE(current_snapshot()->empty());
}

TEST(TakeDownText, ProductsOfAKindAreCountedWhereTheFirstOneStands)
{
    EXPECT_EQ(undone_text({undone(path), undone(service), undone(path)}, terminal::usual_width),
              "undone: 2 paths removed, EBCOM service stopped\n");
    EXPECT_EQ(products_text("kept: ", {service, path}, terminal::usual_width), "kept: EBCOM service, 1 path\n");
}

TEST(TakeDownText, WhatWasRefusedIsNotUndone)
{
    EXPECT_EQ(undone_text({undone(path), undone(service, {{"stop()", 13, {}}})}, terminal::usual_width),
              "undone: 1 path removed\n");
}

TEST(TakeDownText, LargeNumbersAreReadable)
{
    EXPECT_EQ(undone_text(std::vector<undone_command>(10'000, undone(path)), terminal::usual_width),
              "undone: 10,000 paths removed\n");
    EXPECT_EQ(products_text("", std::vector<product>(999, path), terminal::usual_width), "999 paths\n");
}

TEST(TakeDownText, NothingIsSaidAsSuch)
{
    EXPECT_EQ(undone_text({}, terminal::usual_width), "undone: nothing\n");
    EXPECT_EQ(products_text("kept: ", {}, terminal::usual_width), "kept: nothing\n");
}

} // namespace
} // namespace kelctl

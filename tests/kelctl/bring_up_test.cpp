// Steps that only say that they were called.
#include "kelctl/bring_up.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

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
    operation call(const std::string &name, uint32_t code = 0)
    {
        return {[name] { return name + "()"; },
                [this, name, code] {
                    calls.push_back(name);
                    return code;
                }};
    }

    step plain(const std::string &name)
    {
        return {call(name), call("undo " + name)};
    }

    static void nobody(size_t)
    {
    }

    std::vector<std::string> calls;
    trace_log log{nullptr};
};

TEST_F(BringUp, GoesUpInOrderAndDownInReverse)
{
    bring_up node({plain("a"), plain("b")}, log);
    std::vector<size_t> told;
    EXPECT_FALSE(node.up([&](size_t made) { told.push_back(made); }));
    EXPECT_THAT(told, ElementsAre(1, 2));
    EXPECT_THAT(node.down().refused, IsEmpty());
    EXPECT_THAT(calls, ElementsAre("a", "b", "undo b", "undo a"));
}

TEST_F(BringUp, StopsAtTheFirstFailureAndUndoesWhatWasMade)
{
    bring_up node({plain("a"), {call("b", 13), call("undo b")}, plain("c")}, log);
    const auto failed = node.up(nobody);
    ASSERT_TRUE(failed);
    EXPECT_EQ(failed->operation, "b()");
    EXPECT_EQ(failed->code, 13u);
    EXPECT_THAT(node.down().refused, IsEmpty());
    EXPECT_THAT(calls, ElementsAre("a", "b", "undo a"));
}

TEST_F(BringUp, RemovesWhatAFailedStepMayHaveLeftAndTellsARefusalApart)
{
    bring_up node({plain("a"), {call("b", 13), call("undo b", 13), {}, true}}, log);
    EXPECT_TRUE(node.up(nobody));
    const take_down done = node.down();
    EXPECT_THAT(done.refused, IsEmpty());
    ASSERT_TRUE(done.refused_leftover);
    EXPECT_EQ(done.refused_leftover->why.operation, "undo b()");
    EXPECT_THAT(calls, ElementsAre("a", "b", "undo b", "undo a"));
}

TEST_F(BringUp, TakeDownGoesOnAfterAFailureAndTellsAllOfThem)
{
    bring_up node({{call("a"), call("undo a", 4)}, plain("b"), {call("c"), call("undo c", 13)}}, log);
    EXPECT_FALSE(node.up(nobody));
    const take_down done = node.down();
    ASSERT_THAT(done.refused, SizeIs(2));
    EXPECT_EQ(done.refused[0].why.operation, "undo c()");
    EXPECT_EQ(done.refused[1].why.operation, "undo a()");
    EXPECT_EQ(done.refused[1].why.code, 4u);
    ASSERT_THAT(done.undone, SizeIs(1));
    EXPECT_EQ(done.undone[0].operation, "undo b()");
    EXPECT_THAT(calls, ElementsAre("a", "b", "c", "undo c", "undo b", "undo a"));
}

TEST_F(BringUp, StepWithoutAnUndoIsPassedOver)
{
    bring_up node({{call("a"), {}}}, log);
    EXPECT_FALSE(node.up(nobody));
    EXPECT_THAT(node.down().refused, IsEmpty());
    EXPECT_THAT(calls, ElementsAre("a"));
}

TEST_F(BringUp, NothingIsUndoneTwice)
{
    bring_up node({plain("a")}, log);
    node.up(nobody);
    node.down();
    EXPECT_THAT(node.down().refused, IsEmpty());
    EXPECT_THAT(calls, ElementsAre("a", "undo a"));
}

TEST_F(BringUp, TellsWhatWasUndoneAndWhatItWas)
{
    step named = plain("a");
    named.makes = {"thing", "things", "removed"};
    bring_up node({named, {call("b", 13), call("undo b"), {.one = "rest", .undone = "swept up"}, true}}, log);
    EXPECT_TRUE(node.up(nobody));
    const take_down done = node.down();
    EXPECT_FALSE(done.refused_leftover);
    ASSERT_THAT(done.undone, SizeIs(2));
    EXPECT_EQ(done.undone[0].made.one, "rest");
    EXPECT_EQ(done.undone[1].operation, "undo a()");
    EXPECT_EQ(done.undone[1].made.several, "things");
}

TEST_F(BringUp, StopsWhenToldTo)
{
    bring_up node({plain("a"), plain("b")}, log);
    EXPECT_FALSE(node.up(nobody, [this] { return !calls.empty(); }));
    EXPECT_FALSE(node.whole());
    EXPECT_THAT(node.down().undone, SizeIs(1));
    EXPECT_THAT(calls, ElementsAre("a", "undo a"));
}

TEST_F(BringUp, WhatIsLetStandIsNotTakenDown)
{
    {
        bring_up node({plain("a"), {call("b", 13), call("undo b"), {}, true}}, log);
        EXPECT_TRUE(node.up(nobody));
        const auto kept = node.let_stand();
        ASSERT_THAT(kept, SizeIs(1));
        EXPECT_EQ(kept[0].make.text(), "a()");
        EXPECT_THAT(node.down().undone, IsEmpty());
    }
    EXPECT_THAT(calls, ElementsAre("a", "b"));
}

TEST_F(BringUp, TakesDownWhatStillStandsWhenItGoes)
{
    {
        bring_up node({plain("a")}, log);
        node.up(nobody);
    }
    EXPECT_THAT(calls, ElementsAre("a", "undo a"));
}

TEST_F(BringUp, StopsBetweenStepsWhenToldToAndIsNotWhole)
{
    bring_up node({plain("a"), plain("b")}, log);
    EXPECT_FALSE(node.up(nobody, [this] { return !calls.empty(); }));
    EXPECT_FALSE(node.whole());
    EXPECT_FALSE(node.up(nobody));
    EXPECT_TRUE(node.whole());
    EXPECT_THAT(calls, ElementsAre("a", "b"));
}

} // namespace
} // namespace kelctl

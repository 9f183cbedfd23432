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
    EXPECT_THAT(node.down().failures, IsEmpty());
    EXPECT_THAT(calls, ElementsAre("a", "b", "undo b", "undo a"));
}

TEST_F(BringUp, StopsAtTheFirstFailureAndUndoesWhatWasMade)
{
    bring_up node({plain("a"), {call("b", 13), call("undo b")}, plain("c")}, log);
    const auto failed = node.up(nobody);
    ASSERT_TRUE(failed);
    EXPECT_EQ(failed->operation, "b()");
    EXPECT_EQ(failed->code, 13u);
    EXPECT_THAT(node.down().failures, IsEmpty());
    EXPECT_THAT(calls, ElementsAre("a", "b", "undo a"));
}

TEST_F(BringUp, RemovesWhatAFailedStepMayHaveLeftAndTellsARefusalApart)
{
    bring_up node({plain("a"), {call("b", 13), call("undo b", 13), true}}, log);
    EXPECT_TRUE(node.up(nobody));
    const take_down done = node.down();
    EXPECT_THAT(done.failures, IsEmpty());
    ASSERT_TRUE(done.refused_leftover);
    EXPECT_EQ(done.refused_leftover->operation, "undo b()");
    EXPECT_THAT(calls, ElementsAre("a", "b", "undo b", "undo a"));
}

TEST_F(BringUp, TakeDownGoesOnAfterAFailureAndTellsAllOfThem)
{
    bring_up node({{call("a"), call("undo a", 4)}, plain("b"), {call("c"), call("undo c", 13)}}, log);
    EXPECT_FALSE(node.up(nobody));
    const auto failures = node.down().failures;
    ASSERT_THAT(failures, SizeIs(2));
    EXPECT_EQ(failures[0].operation, "undo c()");
    EXPECT_EQ(failures[1].operation, "undo a()");
    EXPECT_EQ(failures[1].code, 4u);
    EXPECT_THAT(calls, ElementsAre("a", "b", "c", "undo c", "undo b", "undo a"));
}

TEST_F(BringUp, StepWithoutAnUndoIsPassedOver)
{
    bring_up node({{call("a"), {}}}, log);
    EXPECT_FALSE(node.up(nobody));
    EXPECT_THAT(node.down().failures, IsEmpty());
    EXPECT_THAT(calls, ElementsAre("a"));
}

TEST_F(BringUp, NothingIsUndoneTwice)
{
    bring_up node({plain("a")}, log);
    node.up(nobody);
    node.down();
    EXPECT_THAT(node.down().failures, IsEmpty());
    EXPECT_THAT(calls, ElementsAre("a", "undo a"));
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

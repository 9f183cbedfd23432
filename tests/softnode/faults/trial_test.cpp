/*
 * trial_test.cpp - calls noted by thread, and the one that is to fail.
 */
#include "softnode/faults/trial.h"

#include <gtest/gtest.h>
#include <string>

using namespace softnode;

namespace
{

constexpr User scenario = 17;
constexpr User other = 4;
constexpr User third = 5;

const std::size_t attach = *closed_function("kel_init_attach");
const std::size_t init = *closed_function("vorn_tu_init");

/* "thread function call" of each call. */
std::vector<std::string> texts(const Trial &trial)
{
    std::vector<std::string> list;
    for (const TrialCall &call : trial.calls())
        list.push_back(std::to_string(call.thread) + " " + std::string(closed_functions[call.function]) + " " +
                       std::to_string(call.call));
    return list;
}

} // namespace

TEST(Trial, NotesCallsInTheirOrder)
{
    Trial trial(scenario, std::nullopt);
    for (const std::size_t function : {attach, init, attach})
        EXPECT_FALSE(trial.begin_call(scenario, function));
    EXPECT_EQ(texts(trial),
              (std::vector<std::string>{"0 kel_init_attach 1", "0 vorn_tu_init 1", "0 kel_init_attach 2"}));
}

TEST(Trial, CountsEachThreadsCallsAlone)
{
    Trial trial(scenario, std::nullopt);
    for (const User user : {other, scenario, third, other})
        trial.begin_call(user, attach);
    EXPECT_EQ(texts(trial), (std::vector<std::string>{"0 kel_init_attach 1", "1 kel_init_attach 1",
                                                      "1 kel_init_attach 2", "2 kel_init_attach 1"}));
}

TEST(Trial, FailsTheOneCallOfTheOneThread)
{
    Trial trial(scenario, TrialFault{{1, attach, 2}, -4, false});
    EXPECT_FALSE(trial.begin_call(scenario, attach));
    EXPECT_FALSE(trial.begin_call(scenario, attach));
    EXPECT_FALSE(trial.begin_call(other, attach));
    EXPECT_FALSE(trial.begin_call(other, init));
    EXPECT_EQ(trial.begin_call(other, attach), -4);
    EXPECT_FALSE(trial.begin_call(other, attach));
}

TEST(Trial, FailsAllLaterCallsWhenTheFaultIsPersistent)
{
    Trial trial(scenario, TrialFault{{0, attach, 2}, 13, true});
    EXPECT_FALSE(trial.begin_call(scenario, attach));
    EXPECT_EQ(trial.begin_call(scenario, attach), 13);
    EXPECT_EQ(trial.begin_call(scenario, attach), 13);
    EXPECT_FALSE(trial.begin_call(scenario, init));
    EXPECT_FALSE(trial.begin_call(other, attach));
}

TEST(Trial, NotesACallThatFails)
{
    Trial trial(scenario, TrialFault{{0, attach, 1}, 13, false});
    trial.begin_call(scenario, attach);
    EXPECT_EQ(texts(trial), (std::vector<std::string>{"0 kel_init_attach 1"}));
}

TEST(Trial, NeitherNotesNorFailsOnceItIsStopped)
{
    Trial trial(scenario, TrialFault{{0, attach, 1}, 13, true});
    trial.stop();
    EXPECT_FALSE(trial.begin_call(scenario, attach));
    EXPECT_TRUE(trial.calls().empty());
}

// Plans as the commands that a person would type.
#include "kelctl/change/change_plan.h"

#include "kelctl/language/command_text.h"
#include "random_node.h"
#include "script_session.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kelctl
{
namespace
{

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

using lines = std::vector<std::string>;

change_plan plan(const lines &now, const lines &wanted, std::optional<size_t> room = std::nullopt)
{
    return plan_between(model_of(all_asked(now)), model_of(all_asked(wanted)), commands(), room);
}

lines steps(const lines &now, const lines &wanted, std::optional<size_t> room = std::nullopt)
{
    lines texts;
    for (const invocation &step : plan(now, wanted, room).steps)
        texts.push_back(text_of(step));
    return texts;
}

lines interrupted(const lines &now, const lines &wanted)
{
    lines texts;
    for (const interruption &one : plan(now, wanted).interrupted) {
        texts.push_back(name_of(one.object));
        for (const mac_address &mac : one.destinations)
            texts.back() += " " + to_text(mac);
    }
    return texts;
}

const std::string to_1_on_p = "ebcom path add 02:00:00:02:00:01 --port RLU1P";
const std::string to_1_on_q = "ebcom path add 02:00:00:02:00:01 --port RLU1Q";
const std::string to_2_on_p = "ebcom path add 02:00:00:02:00:02 --port RLU1P";
const std::string to_3_on_p = "ebcom path add 02:00:00:02:00:03 --port RLU1P";
const std::string to_1_off_p = "ebcom path remove 02:00:00:02:00:01 --port RLU1P";
const std::string to_1_off_q = "ebcom path remove 02:00:00:02:00:01 --port RLU1Q";
const std::string to_2_off_p = "ebcom path remove 02:00:00:02:00:02 --port RLU1P";
const std::string shaped = " --rate \"1 Mbit/s\" --burst \"2000 octets\"";

std::string pcep(int id, int vlan)
{
    return fmt::format("pcep add {} --remote-id 9 --local 02:00:00:03:00:01 --remote 02:00:00:02:00:01 --vlan {}", id,
                       vlan);
}

TEST(ChangePlan, HasNoStepsBetweenEqualNodes)
{
    for (uint32_t seed = 0; seed < 20; ++seed)
        EXPECT_THAT(steps(random_node(seed).lines(), random_node(seed).lines()), IsEmpty());
}

TEST(ChangePlan, EmptiesAPortWhoseShapingChanges)
{
    EXPECT_THAT(steps({to_1_on_p, to_2_on_p}, {to_1_on_p + shaped, to_2_on_p + shaped}),
                ElementsAre(to_2_off_p, to_1_off_p, to_1_on_p + shaped, to_2_on_p + shaped));
    EXPECT_THAT(interrupted({to_1_on_p, to_2_on_p}, {to_1_on_p + shaped, to_2_on_p + shaped}),
                ElementsAre("queue of RLU1P (6) 02:00:00:02:00:01 02:00:00:02:00:02"));
}

TEST(ChangePlan, MovesADestinationWithoutInterruptingIt)
{
    EXPECT_THAT(steps({to_1_on_p}, {to_1_on_q}), ElementsAre(to_1_on_q, to_1_off_p));
    EXPECT_THAT(interrupted({to_1_on_p}, {to_1_on_q}), IsEmpty());
}

TEST(ChangePlan, KeepsAQueueWhosePathsAreExchanged)
{
    EXPECT_THAT(steps({to_1_on_p}, {to_2_on_p}), ElementsAre(to_2_on_p, to_1_off_p));
}

TEST(ChangePlan, RemovesBeforeItAddsWhereThereIsNoRoom)
{
    EXPECT_THAT(steps({to_1_on_p}, {to_2_on_p}, 1), ElementsAre(to_1_off_p, to_2_on_p));
    EXPECT_THAT(steps({to_1_on_p}, {to_2_on_p}, 2), ElementsAre(to_2_on_p, to_1_off_p));
    EXPECT_THAT(steps({to_1_on_p, to_2_on_p}, {to_1_on_q, to_3_on_p}, 2), // 1 stays, and is not interrupted
                ElementsAre(to_2_off_p, to_1_on_q, to_3_on_p, to_1_off_p));
}

// The library takes 65,536 references that are left for none.
TEST(ChangePlan, EmptiesAPortThatCannotHoldThePathsOfBoth)
{
    const lines now = {"ebcom path add 02:00:00:02:00:00 --port RLU1P --count 40000"};
    const lines wanted = {"ebcom path add 02:00:00:03:00:00 --port RLU1P --count 40000"};
    const lines all = steps(now, wanted);
    ASSERT_THAT(all, SizeIs(80'000));
    EXPECT_EQ(all[39'999], "ebcom path remove 02:00:00:02:00:00 --port RLU1P");
    EXPECT_EQ(all[40'000], "ebcom path add 02:00:00:03:00:00 --port RLU1P");
}

TEST(ChangePlan, RenewsThePathThatIsToBeTheUsedOne)
{
    EXPECT_THAT(steps({to_1_on_p, to_1_on_q}, {to_1_on_q, to_1_on_p}), ElementsAre(to_1_off_p, to_1_on_p));
    EXPECT_THAT(steps({to_1_on_p, to_1_on_q}, {to_1_on_p}), ElementsAre(to_1_off_p, to_1_on_p, to_1_off_q));
    EXPECT_THAT(interrupted({to_1_on_p, to_1_on_q}, {to_1_on_q, to_1_on_p}), IsEmpty());
}

TEST(ChangePlan, TakesBackOnlyWhatIsTooMuchOfAPathAddedTwice)
{
    EXPECT_THAT(steps({to_1_on_p, to_1_on_p}, {to_1_on_p}), ElementsAre(to_1_off_p));
    EXPECT_THAT(steps({to_1_on_p}, {to_1_on_p, to_1_on_p}), ElementsAre(to_1_on_p));
}

TEST(ChangePlan, ChangesAPcepWithItsMemberships)
{
    const lines now = {
        "pcep start", pcep(7, 1), pcep(8, 1), "group add 300", "group member add 300 7", "group member add 300 8"};
    const lines wanted = {
        "pcep start", pcep(7, 2), pcep(8, 1), "group add 300", "group member add 300 7", "group member add 300 8"};
    EXPECT_THAT(steps(now, wanted),
                ElementsAre("group member remove 300 7", "pcep remove 7", pcep(7, 2), "group member add 300 7"));
    EXPECT_THAT(interrupted(now, wanted), ElementsAre("PCEP 7"));
}

// The library counts a PCEP that was removed as a member on.
TEST(ChangePlan, RemovesAMemberThatIsNoPcepAnyMore)
{
    EXPECT_THAT(steps({"pcep start", "group add 300", "group member add 300 7"}, {"pcep start", "group add 300"}),
                ElementsAre("group member remove 300 7"));
}

TEST(ChangePlan, RemovesWhatHasAnIdBeforeItIsTakenAgain)
{
    EXPECT_THAT(steps({"pcep start", pcep(7, 1), "group add 8", "group member add 8 7"},
                      {"pcep start", pcep(8, 1), "group add 7", "group member add 7 8"}),
                ElementsAre("group member remove 8 7", "group remove 8", "pcep remove 7", pcep(8, 1), "group add 7",
                            "group member add 7 8"));
}

TEST(ChangePlan, StartsAndStopsServicesAroundWhatNeedsThem)
{
    const lines whole = {"ebcom params set --mtu 1500 --ether-type 0x88b5 --settings 1,2",
                         "ebcom interface create",
                         "ebcom start",
                         to_1_on_p,
                         "pcep start",
                         "group add 300"};
    EXPECT_EQ(steps({}, whole), whole);
    EXPECT_THAT(steps(whole, {}), ElementsAre("group remove 300", "pcep stop", to_1_off_p, "ebcom stop",
                                              "ebcom interface delete")); // parameters cannot be taken back
    EXPECT_THAT(steps({"ebcom qos init"}, {}), ElementsAre("ebcom qos deinit"));
}

TEST(ChangePlan, RefusesWhatARunningProcessCannotChange)
{
    EXPECT_THAT(plan({"mpid 5"}, {"mpid 6"}).refusals,
                ElementsAre("mpid: it cannot change from 5 to 6 in this process, because the library keeps it"));
    EXPECT_THAT(plan({"ebcom qos init"}, {"ebcom start"}).refusals,
                ElementsAre("scheduler tree: it was made without the rest of the EBCOM service"));
    EXPECT_THAT(plan({"ebcom start", "ebcom start"}, {"ebcom start"}).refusals,
                ElementsAre("EBCOM service: it was made 2 times, and is undone only as a whole"));
}

} // namespace
} // namespace kelctl

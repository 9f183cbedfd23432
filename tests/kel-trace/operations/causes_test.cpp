// Equal causes together, consequences under them.
#include "kel-trace/operations/causes.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

namespace kel_trace
{
namespace
{

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using testing::UnorderedElementsAre;

operation ended(std::string name, std::string parameters, std::string refuser = "", int64_t time = 1,
                int64_t process = 10)
{
    operation made;
    made.name = name;
    made.of = {0, process, process};
    made.framed = made.whole = true;
    made.kept.push_back({time, event::fn_param, "", "", name + "(): " + parameters});
    made.kept_count = 1;
    if (!refuser.empty())
        made.complaints.push_back({"driver kit", refuser, -4, "busy", time, {name}});
    return made;
}

constexpr auto everything = [](const thread_key &, int64_t) { return true; };

TEST(Causes, EqualOnesAreCounted)
{
    causes all(everything);
    all.take(ended("kel_core_ic_ebcom_path_add", "dst_mac = a", "ork_ebcom_pcep_path_create", 1));
    all.take(ended("kel_core_ic_ebcom_path_add", "dst_mac = b", "ork_ebcom_pcep_path_create", 2));
    all.take(ended("kel_core_ic_ebcom_path_add", "dst_mac = c", "kel_init_attach", 3));
    const auto failures = all.failures();
    ASSERT_THAT(failures, SizeIs(2));
    EXPECT_EQ(failures[0]->count, 2U);
    EXPECT_EQ(failures[0]->first, 1);
    EXPECT_EQ(failures[0]->last, 2);
    EXPECT_THAT(failures[0]->objects, ElementsAre("path a", "path b"));
    EXPECT_EQ(failures[1]->newest.failure()->what, "kel_init_attach");
}

TEST(Causes, FailureOfAnObjectFollowsFromItsCreation)
{
    causes all(everything);
    all.take(ended("kel_core_ic_ebcom_path_add", "dst_mac = a", "ork_ebcom_pcep_path_create"));
    all.take(ended("kel_core_ic_ebcom_path_rem", "dst_mac = a", "mac address of port not found to be configured"));
    all.take(ended("kel_core_ic_ebcom_path_rem", "dst_mac = b", "mac address of port not found to be configured"));
    const auto failures = all.failures();
    ASSERT_THAT(failures, SizeIs(2));
    ASSERT_THAT(failures[0]->consequences, SizeIs(1));
    EXPECT_TRUE(failures[0]->consequences.begin()->second.certain);
    EXPECT_THAT(failures[1]->objects, ElementsAre("path b"));
}

TEST(Causes, CreationThatSucceedsLaterEndsIt)
{
    causes all(everything);
    all.take(ended("kel_core_ic_ebcom_path_add", "dst_mac = a", "ork_ebcom_pcep_path_create"));
    all.take(ended("kel_core_ic_ebcom_path_add", "dst_mac = a"));
    all.take(ended("kel_core_ic_ebcom_path_rem", "dst_mac = a", "ork_ebcom_pcep_path_delete"));
    for (const cause *one : all.failures())
        EXPECT_THAT(one->consequences, IsEmpty());
}

TEST(Causes, StopAndStartBeginAnew)
{
    causes all(everything);
    all.take(ended("kel_core_ic_pcep_start", "", "kel_init_attach"));
    all.take(ended("kel_core_ic_pcep_start", ""));
    all.take(ended("kel_core_ic_pcep_rem", "", "(pcep_id)"));
    EXPECT_THAT(all.failures(), SizeIs(2));
}

TEST(Causes, StopOfOneServiceLeavesTheObjectsOfTheOther)
{
    for (const char *stop : {"kel_core_ic_pcep_stop", "kel_core_ic_ebcom_stop"}) {
        causes all(everything);
        all.take(ended("kel_core_ic_ebcom_path_add", "dst_mac = a", "ork_ebcom_pcep_path_create"));
        all.take(ended("kel_core_ic_pcep_add", "localPcepId = 7", "ork_bind"));
        all.take(ended("kel_core_ic_pcep_mc_group_add", "mc_pcep_id = 300", "ork_ebcom_multicast_group_create"));
        all.take(ended(stop, ""));
        all.take(ended("kel_core_ic_ebcom_path_rem", "dst_mac = a", "mac address of port not found to be configured"));
        all.take(ended("kel_core_ic_pcep_rem", "pcep_id = 7", "ork_unbind"));
        all.take(ended("kel_core_ic_pcep_mc_group_rem", "mc_pcep_id = 300", "ork_ebcom_multicast_group_delete"));
        std::vector<std::string> with_consequences;
        for (const cause *one : all.failures())
            if (!one->consequences.empty())
                with_consequences.push_back(one->newest.name);
        if (std::string_view(stop) == "kel_core_ic_pcep_stop")
            EXPECT_THAT(with_consequences, ElementsAre("kel_core_ic_ebcom_path_add"));
        else
            EXPECT_THAT(with_consequences,
                        UnorderedElementsAre("kel_core_ic_pcep_add", "kel_core_ic_pcep_mc_group_add"));
    }
}

TEST(Causes, NoFailureFollowsFromItself)
{
    causes all(everything);
    const operation remove_b =
        ended("kel_core_ic_ebcom_path_rem", "dst_mac = b", "mac address of port not found to be configured");
    const operation add_a = ended("kel_core_ic_ebcom_path_add", "dst_mac = a", "ork_ebcom_pcep_path_create");
    all.take(remove_b);
    all.take(add_a);
    all.take(add_a);
    all.take(ended("kel_core_ic_ebcom_path_rem", "dst_mac = a", "mac address of port not found to be configured"));
    const auto failures = all.failures();
    ASSERT_THAT(failures, SizeIs(2));
    EXPECT_EQ(failures[0]->count + failures[1]->count, 3U);
    const auto add = std::ranges::find(failures, add_a.name, [](const cause *one) { return one->newest.name; });
    EXPECT_EQ((*add)->count, 2U);
    EXPECT_THAT((*add)->objects, ElementsAre("path a"));
    EXPECT_THAT((*add)->consequences, SizeIs(1));
}

TEST(Causes, ReportsOfOperationsThatContinuedAreCounted)
{
    causes all(everything);
    for (const int64_t time : {1, 2}) {
        operation went_on = ended("kel_core_ic_ebcom_stop", "", "ork_qos_scheduler_delete", time);
        went_on.complaints[0].ignored = true;
        all.take(went_on);
    }
    ASSERT_THAT(all.asides(), SizeIs(1));
    EXPECT_EQ(all.asides()[0]->count, 2U);
    EXPECT_EQ(all.asides()[0]->first, 1);
    EXPECT_EQ(all.asides()[0]->last, 2);
}

TEST(Causes, ObjectThatIsNotNamedIsALikelyOne)
{
    causes all(everything);
    all.take(ended("kel_core_ic_pcep_add", "", "ork_bind"));
    all.take(ended("kel_core_ic_pcep_rem", "", "(pcep_id)"));
    all.take(ended("kel_core_ic_pcep_rem", "", "(pcep_id)"));
    const auto failures = all.failures();
    ASSERT_THAT(failures, SizeIs(1));
    ASSERT_THAT(failures[0]->consequences, SizeIs(1));
    EXPECT_EQ(failures[0]->consequences.begin()->second.count, 2U);
    EXPECT_FALSE(failures[0]->consequences.begin()->second.certain);
}

TEST(Causes, OthersThanWantedAreLeftOut)
{
    causes all([](const thread_key &of, int64_t time) { return of.process == 20 && time >= 5; });
    all.take(ended("kel_core_ic_pcep_add", "", "ork_bind", 1, 20));
    all.take(ended("kel_core_ic_pcep_add", "", "ork_bind", 6, 10));
    all.take(ended("kel_core_ic_pcep_add", "", "ork_bind", 6, 20));
    ASSERT_THAT(all.failures(), SizeIs(1));
    EXPECT_EQ(all.failures()[0]->count, 1U);
}

} // namespace
} // namespace kel_trace

// Parameters as the library words them.
#include "kel-trace/operations/parameters.h"

#include <gmock/gmock.h>

namespace kel_trace
{
namespace
{

using testing::ElementsAre;
using testing::IsEmpty;

operation with(std::vector<std::pair<event, std::string>> records)
{
    operation made;
    for (auto &[event, message] : records)
        made.kept.push_back({0, event, "", "", message});
    made.kept_count = made.kept.size();
    return made;
}

TEST(Parameters, OfAPathAreThoseOfItsConfiguration)
{
    const operation add =
        with({{event::fn_param, "f(): dst_mac = 02:00:00:02:00:01, iell_port = 6 (RLU1P), shaping_rate = 100000"}});
    EXPECT_THAT(parameters_of(add),
                ElementsAre(parameter{"dst_mac", "02:00:00:02:00:01"}, parameter{"iell_port", "6 (RLU1P)"},
                            parameter{"shaping_rate", "100000"}));
    EXPECT_THAT(objects_of(add), ElementsAre("path 02:00:00:02:00:01"));
}

TEST(Parameters, AreNoneWhereAMessageIsWordedOtherwise)
{
    EXPECT_THAT(parameters_of(with({{event::api_call, "f(): ork_ebcom_pcep_create"},
                                    {event::api_call, "f(): ork_ebcom_pcep_create)"},
                                    {event::api_call, "f(): ork_bind: a=1)"},
                                    {event::fn_param, "f(): words alone, vlan=1, vlan=2"}})),
                ElementsAre(parameter{"vlan", "1"}));
}

TEST(Parameters, OfAPcepAreThoseOfItsAnnouncedCalls)
{
    const operation add =
        with({{event::api_call, "f(): ork_ebcom_pcep_create(localPcepId=7, sMac=02:00:00:03:00:01(HSFP))"},
              {event::api_call, "f(): ork_bind(ID2M): PCEP_ID=7 -> EHSFP"}});
    EXPECT_THAT(parameters_of(add),
                ElementsAre(parameter{"localPcepId", "7"}, parameter{"sMac", "02:00:00:03:00:01(HSFP)"},
                            parameter{"PCEP_ID", "7"}));
    EXPECT_THAT(objects_of(add), ElementsAre("PCEP 7"));
}

TEST(Parameters, OfAMemberNameBothObjects)
{
    const operation add =
        with({{event::api_call, "f(): ork_ebcom_multicast_member_add(mc_pcep_id=300, uc_pcep_id=7)"}});
    EXPECT_THAT(objects_of(add), ElementsAre("group 300", "PCEP 7"));
}

TEST(Parameters, AreNotThoseOfTheLibrarysOwnCalls)
{
    EXPECT_THAT(parameters_of(with({{event::api_call, "f(): ork_qos_scheduler_create(rootId=20, vsiEthDevId=7)"},
                                    {event::api_call, "f(): kel_init_attach()"},
                                    {event::lab, "f(): cycles=1 frequency=2"}})),
                IsEmpty());
}

TEST(Parameters, CalledFunctionIsItsNameAlone)
{
    EXPECT_EQ(called_function("ork_bind(ID2M): PCEP_ID=7 -> EHSFP"), "ork_bind");
    EXPECT_EQ(called_function("vorn_tu_free_event"), "vorn_tu_free_event");
}

} // namespace
} // namespace kel_trace

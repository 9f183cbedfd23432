// `kelctl up --trace`.
#include "program.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

namespace
{

using testing::ContainsRegex;
using testing::HasSubstr;

const std::string with_path =
    ebcom_table + "[[path]]\ndst_mac = \"02:00:05:00:00:01\"\nport = \"RLU1P\"\n[node]\nmpid = 5\n";
const std::string with_group = with_path +
                               "[[pcep]]\nid = 7\nremote_id = 9\nlocal_mac = \"02:00:00:03:00:01\"\n"
                               "remote_mac = \"02:00:05:00:00:01\"\nvlan = 1\n[[multicast]]\nid = 300\nmembers = [7]\n";

class Trace : public testing::Test
{
protected:
    void SetUp() override
    {
        if (outcome.err.find("the tracer is not installed") != std::string::npos)
            GTEST_SKIP() << "there is no tracer on this machine";
    }

    program_outcome outcome = kelctl_up(with_group, {}, {"--trace"});
};

TEST_F(Trace, EveryLineHasEventDomainMessageAndLocation)
{
    std::istringstream lines(outcome.err);
    size_t count = 0;
    for (std::string line; std::getline(lines, line); ++count)
        EXPECT_THAT(line, testing::MatchesRegex(
                              "(FN_ENTER |FN_EXIT  |FN_PARAM |API_CALL |INFO     |LAB      ) (EBCOM  |PCEP   ) "
                              "[a-z_]+\\(\\).*  \\(kel_ic_[a-z_0-9]+\\.cpp:[0-9]+\\)"));
    EXPECT_GT(count, 50u);
    EXPECT_EQ(outcome.status, 0);
}

TEST_F(Trace, TellsTheWholeWayUpAndDown)
{
    size_t from = 0;
    for (const char *entered :
         {"EBCOM   kel_core_ic_ebcom_global_param_set", "EBCOM   kel_core_ic_ebcom_interface_create",
          "EBCOM   kel_core_ic_ebcom_start", "EBCOM   kel_core_ic_ebcom_path_add", "PCEP    kel_core_ic_pcep_start",
          "PCEP    kel_core_ic_pcep_add", "PCEP    kel_core_ic_pcep_mc_group_add",
          "PCEP    kel_core_ic_pcep_mc_member_add", "EBCOM   kel_core_ic_ebcom_queue_stats_get",
          "PCEP    kel_core_ic_pcep_mc_member_rem", "PCEP    kel_core_ic_pcep_mc_group_rem",
          "PCEP    kel_core_ic_pcep_rem", "PCEP    kel_core_ic_pcep_stop", "EBCOM   kel_core_ic_ebcom_path_rem",
          "EBCOM   kel_core_ic_ebcom_stop", "EBCOM   kel_core_ic_ebcom_interface_delete"}) {
        from = outcome.err.find(std::string("FN_ENTER  ") + entered + "()  (", from);
        ASSERT_NE(from, std::string::npos) << entered;
    }
}

TEST_F(Trace, PcepServiceIsNotStartedForAFileWithoutPcepsAndGroups)
{
    ASSERT_THAT(outcome.err, HasSubstr("kel_core_ic_pcep_start()"));
    EXPECT_THAT(kelctl_up(with_path, {}, {"--trace"}).err, testing::Not(HasSubstr("kel_core_ic_pcep_start()")));
}

TEST_F(Trace, HasTheTimestampThreadsRecordsAndTheOwnMpId)
{
    EXPECT_THAT(outcome.err, HasSubstr("API_CALL  EBCOM   timestamp_thread(): vorn_tu_init()"));
    EXPECT_THAT(outcome.err, HasSubstr("ork_ebcom_timestamp_offset_set(timestamp_offset=160)"));
    EXPECT_THAT(outcome.err, HasSubstr("INFO      PCEP    own_mp_id_get(): MPID = 5 (5)"));
}

TEST_F(Trace, LeavesStandardOutputAsItIs)
{
    const auto quiet = kelctl_up(with_group);
    EXPECT_EQ(quiet.out, outcome.out);
    EXPECT_EQ(quiet.err, "");
}

} // namespace

// `kelctl up --trace`.
#include "program.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

namespace
{

using testing::ContainsRegex;
using testing::HasSubstr;

class Trace : public testing::Test
{
protected:
    void SetUp() override
    {
        if (outcome.err.find("the tracer is not installed") != std::string::npos)
            GTEST_SKIP() << "there is no tracer on this machine";
    }

    program_outcome outcome =
        kelctl_up(ebcom_table + "[[path]]\ndst_mac = \"02:00:05:00:00:01\"\nport = \"RLU1P\"\n[node]\nmpid = 5\n", {},
                  {"--trace"});
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
    for (const char *function : {"kel_core_ic_ebcom_global_param_set", "kel_core_ic_ebcom_interface_create",
                                 "kel_core_ic_ebcom_start", "kel_core_ic_ebcom_path_add", "kel_core_ic_ebcom_path_rem",
                                 "kel_core_ic_ebcom_stop", "kel_core_ic_ebcom_interface_delete"}) {
        from = outcome.err.find(std::string("FN_ENTER  EBCOM   ") + function + "()  (", from);
        ASSERT_NE(from, std::string::npos) << function;
    }
}

TEST_F(Trace, HasTheTimestampThreadsRecordsAndTheOwnMpId)
{
    EXPECT_THAT(outcome.err, HasSubstr("API_CALL  EBCOM   timestamp_thread(): vorn_tu_init()"));
    EXPECT_THAT(outcome.err, HasSubstr("ork_ebcom_timestamp_offset_set(timestamp_offset=160)"));
    EXPECT_THAT(outcome.err, HasSubstr("INFO      PCEP    own_mp_id_get(): MPID = 5 (5)"));
}

TEST_F(Trace, LeavesStandardOutputAsItIs)
{
    const auto quiet = kelctl_up(ebcom_table + "[[path]]\ndst_mac = \"02:00:05:00:00:01\"\nport = \"RLU1P\"\n"
                                               "[node]\nmpid = 5\n");
    EXPECT_EQ(quiet.out, outcome.out);
    EXPECT_EQ(quiet.err, "");
}

} // namespace

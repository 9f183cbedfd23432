// The state of a node on the software accelerator.
#include "kelctl/node/state.h"

#include "kelctl/accelerator/software_accelerator.h"
#include "kelctl/jobs/take_down.h"
#include "kelctl/node/read_back.h"
#include "notation/json.h"
#include "script_session.h"
#include "softnode/softnode.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

namespace kelctl
{
namespace
{

using notation::to_json;
using testing::HasSubstr;

constexpr const char *add_queue =
    "ebcom path add 02:00:00:02:00:01 --port RLU1P --rate 1000 --burst 3000 --threshold 2560";
constexpr const char *add_pcep =
    "pcep add 9 --remote-id 1 --local 02:00:00:03:00:01 --remote 02:00:00:02:00:02 --vlan 1";

class State : public testing::Test
{
protected:
    State()
    {
        softnode_reset();
        for (const char *line : {"ebcom start", add_queue, "ebcom path add 02:00:00:02:00:02 --port 42", "pcep start",
                                 add_pcep, "group add 300", "group member add 300 9", "group add 301"})
            run(line);
    }

    ~State() override
    {
        take_down(here);
    }

    void run(const std::string &line)
    {
        EXPECT_EQ(here.run(line).status, exit_done) << line;
    }

    fields state()
    {
        result taken = take_state(here);
        EXPECT_EQ(taken.status, exit_done);
        return std::move(taken.shown);
    }

    script_session here;
};

TEST_F(State, DescribesQueuesPcepsAndGroups)
{
    fields now = state();
    for (const char *list : {"queues", "pceps"})
        for (size_t i = 0; i < now.at(list).size(); ++i)
            for (const char *number : {"counters", "made"})
                now[list][i][number] = nullptr;
    EXPECT_EQ(to_json(now.at("queues")),
              R"([{"port":6,"name":"RLU1P","counters":null,"scheduler":"RLU1","rate":1000,"burst":3000,)"
              R"("threshold":2560,"made":null},)"
              R"({"port":42,"name":"RLU4W","counters":null,"scheduler":"RLU4","rate":null,"burst":null,)"
              R"("threshold":null,"made":null}])");
    EXPECT_EQ(to_json(now.at("pceps")), R"([{"id":9,"counters":null,"location":"HSFP","made":null}])");
    EXPECT_EQ(to_json(now.at("groups")), R"([{"id":300,"members":[9]},{"id":301,"members":[]}])");
}

TEST_F(State, NamesTheSchedulersOfAllUnitsBelowTheLine)
{
    EXPECT_EQ(to_json(state().at("schedulers")),
              R"([{"name":"line","above":null},{"name":"RLU1","above":"line"},{"name":"RLU2","above":"line"},)"
              R"({"name":"RLU3","above":"line"},{"name":"RLU4","above":"line"},{"name":"NONE","above":"line"}])");
}

TEST_F(State, HasTheCountersOfServiceQueuesAndPceps)
{
    run("traffic offer 02:00:00:02:00:01 --frames 3 --octets 100");
    const fields now = state();
    EXPECT_EQ(now.at("queues")[0].at("counters").at("pkts_rx"), 3);
    EXPECT_EQ(now.at("ebcom").at("EBCOM global statistics").at("frames_received"), 3);
    EXPECT_THAT(to_json(now.at("pceps")[0].at("counters")), HasSubstr(R"("octets_sent":0)"));
}

TEST_F(State, CountsOperationsByTheirCode)
{
    here.run("group add 300");
    const std::string operations = to_json(state().at("operations"));
    EXPECT_THAT(operations, HasSubstr(R"({"operation":"kel_core_ic_pcep_mc_group_add","code":0,"count":2})"));
    EXPECT_THAT(operations, HasSubstr(R"({"operation":"kel_core_ic_pcep_mc_group_add","code":5,"count":1})"));
}

TEST_F(State, TimesAreOfOneClock)
{
    settle();
    softnode_time_advance(1234);
    const fields now = state();
    EXPECT_EQ(now.at("virtual"), 1234);
    EXPECT_LT(now.at("since").number<uint64_t>(), now.at("real").number<uint64_t>());
    if (!here.tracer_installed())
        GTEST_SKIP() << "there is no tracer on this machine";
    EXPECT_LT(now.at("since").number<uint64_t>(), now.at("timestamp").number<uint64_t>());
    EXPECT_LT(now.at("timestamp").number<uint64_t>(), now.at("real").number<uint64_t>());
}

TEST_F(State, ObjectsThatAreMadeAgainHaveNewNumbers)
{
    std::set<uint64_t> queues;
    std::set<uint64_t> pceps;
    for (int i = 0; i < 3; ++i) {
        const fields now = state();
        for (const fields &queue : now.at("queues"))
            if (queue.at("port") == 6)
                queues.insert(queue.at("made").number<uint64_t>());
        pceps.insert(now.at("pceps")[0].at("made").number<uint64_t>());
        for (const char *line : {"group member remove 300 9", "pcep remove 9", add_pcep, "group member add 300 9",
                                 "ebcom path remove 02:00:00:02:00:01 --port RLU1P", add_queue})
            run(line);
    }
    EXPECT_EQ(queues.size(), 3u);
    EXPECT_EQ(pceps.size(), 3u);
}

} // namespace
} // namespace kelctl

// What a session made, as a model.
#include "kelctl/change/node_model.h"

#include "kelctl/jobs/take_down.h"
#include "kelctl/language/command_text.h"
#include "script_session.h"
#include "softnode/softnode.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kelctl
{
namespace
{

using testing::ElementsAre;
using testing::IsEmpty;

std::vector<std::string> lines_of(const node_model &model)
{
    std::vector<std::string> lines;
    for (const node_object &one : model)
        if (one.key.kind != object_kind::mp_id) // of the process
            lines.push_back(text_of(one.asked));
    return lines;
}

class NodeModel : public testing::Test
{
protected:
    NodeModel()
    {
        softnode_reset();
    }

    ~NodeModel() override
    {
        softnode_faults_clear();
        take_down(here);
    }

    void run(const std::vector<std::string> &lines)
    {
        for (const std::string &line : lines)
            EXPECT_EQ(here.run(line).status, exit_done) << line;
    }

    script_session here;
};

TEST_F(NodeModel, HoldsWhatWasMadeAndNotUndoneInTheOrderOfABringUp)
{
    run({"pcep start", "group add 300", "ebcom start", "ebcom path add 02:00:00:02:00:01 --port 6 --count 2",
         "ebcom path add 02:00:00:02:00:09 --port 7", "ebcom path remove 02:00:00:02:00:01 --port 6",
         "pcep add 7 --remote-id 9 --local 02:00:00:03:00:01 --remote 02:00:00:02:00:01 --vlan 100",
         "group member add 300 7"});
    EXPECT_THAT(lines_of(model_of(here)),
                ElementsAre("ebcom start", "ebcom path add 02:00:00:02:00:02 --port RLU1P",
                            "ebcom path add 02:00:00:02:00:09 --port RLU1Q", "pcep start",
                            "pcep add 7 --remote-id 9 --local 02:00:00:03:00:01 --remote 02:00:00:02:00:01 --vlan 100",
                            "group add 300", "group member add 300 7"));
}

TEST_F(NodeModel, OfParametersTheLastOnesCount)
{
    run({"ebcom params set --mtu 1500 --ether-type 0x88b5 --settings 1,2",
         "ebcom params set --mtu 9000 --ether-type 0x88b5 --settings 1,2"});
    EXPECT_THAT(lines_of(model_of(here)),
                ElementsAre("ebcom params set --mtu 9000 --ether-type 0x88b5 --settings 1,2"));
}

TEST_F(NodeModel, WhatAStopForgotIsNotThere)
{
    run({"ebcom start", "ebcom path add 02:00:00:02:00:01 --port 6", "pcep start", "group add 300", "ebcom stop",
         "pcep stop", "ebcom start"});
    EXPECT_THAT(lines_of(model_of(here)), ElementsAre("ebcom start"));
    run({"ebcom stop"});
    here.made.take_all(); // nothing undoes them any more
}

TEST_F(NodeModel, WhatFailedIsNotThere)
{
    ASSERT_EQ(softnode_faults_add("ork_qos_scheduler_create:3=-9"), nullptr);
    EXPECT_EQ(here.run("ebcom start").status, exit_operation_failed);
    EXPECT_THAT(lines_of(model_of(here)), IsEmpty());
}

TEST_F(NodeModel, OfAFileHasSinglePathsAndNoTraffic)
{
    EXPECT_THAT(lines_of(model_of({asked("traffic stream add --to 02:00:00:02:00:01 --octets 64 --rate 1"),
                                   asked("ebcom path add 02:00:00:02:00:01 --port 6 --count 3")})),
                ElementsAre("ebcom path add 02:00:00:02:00:01 --port RLU1P",
                            "ebcom path add 02:00:00:02:00:02 --port RLU1P",
                            "ebcom path add 02:00:00:02:00:03 --port RLU1P"));
}

} // namespace
} // namespace kelctl

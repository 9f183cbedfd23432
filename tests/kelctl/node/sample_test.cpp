// Samples of a node on the software accelerator.
#include "kelctl/node/sample.h"

#include "kelctl/accelerator/software_accelerator.h"
#include "kelctl/jobs/take_down.h"
#include "kelctl/node/read_back.h"
#include "notation/json.h"
#include "script_session.h"
#include "softnode/softnode.h"

#include <gtest/gtest.h>

namespace kelctl
{
namespace
{

class Sample : public testing::Test
{
protected:
    Sample()
    {
        softnode_reset();
        for (const char *line :
             {"ebcom start", "ebcom path add 02:00:00:02:00:01 --port 6", "ebcom path add 02:00:00:02:00:02 --port 42",
              "pcep start", "pcep add 9 --remote-id 1 --local 02:00:00:02:00:01 --remote 02:00:00:02:00:02 --vlan 1",
              "pcep add 3 --remote-id 1 --local 02:00:00:02:00:01 --remote 02:00:00:02:00:02 --vlan 1"})
            EXPECT_EQ(here.run(line).status, exit_done) << line;
    }

    ~Sample() override
    {
        take_down(here);
    }

    result sample(const counted &which)
    {
        const fields queues = queues_now();
        return take_sample(queues, ports_of(queues, here.paths), which, here);
    }

    // "6 42, 9": the ports of its queues and the ids of its PCEPs.
    std::string objects(const counted &which)
    {
        const result taken = sample(which);
        EXPECT_EQ(taken.status, exit_done);
        EXPECT_EQ(taken.shown.at("delays").size(), taken.shown.at("queues").size());
        std::string found;
        for (const fields &queue : taken.shown.at("queues"))
            found += notation::to_json(queue.at("port")) + " ";
        for (const fields &pcep : taken.shown.at("pceps"))
            found += "#" + notation::to_json(pcep.at("id")) + " ";
        return found;
    }

    script_session here;
};

TEST_F(Sample, HasBothTimesAndLetsNonePass)
{
    softnode_time_advance(1234);
    const fields before = sample({}).shown;
    const fields now = sample({}).shown;
    EXPECT_EQ(now.at("virtual"), 1234);
    EXPECT_EQ(time_between(before, now, time_base::virtual_time), 0u);
    EXPECT_GT(time_between(before, now, time_base::real_time), 0u);
    EXPECT_EQ(time_between(now, before, time_base::real_time), 0u) << "a clock that went back";
    EXPECT_EQ(virtual_time(), 1234u);
}

TEST_F(Sample, HasWhatIsAskedFor)
{
    EXPECT_EQ(objects({}), "6 42 #9 #3 ");
    EXPECT_EQ(objects({.port = 42}), "42 ");
    EXPECT_EQ(objects({.pcep = 3}), "#3 ");
    EXPECT_EQ(objects({.port = 6, .pcep = 9}), "6 #9 ");
    EXPECT_EQ(objects({.port = 7}), "");
}

TEST_F(Sample, IsAPlainDocument)
{
    const fields taken = sample({}).shown;
    EXPECT_EQ(notation::read_json(notation::to_json(taken)), taken);
}

} // namespace
} // namespace kelctl

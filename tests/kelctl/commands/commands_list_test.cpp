// The lists of what a session made: which rows their options leave.
#include "kelctl/jobs/take_down.h"
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

class Lists : public testing::Test
{
protected:
    Lists()
    {
        softnode_reset();
        for (const char *line :
             {"ebcom start", "ebcom path add 02:00:00:02:00:01 --port 6", "ebcom path add 02:00:00:02:00:02 --port 6",
              "ebcom path add 02:00:00:02:00:01 --port 7", "ebcom shaper add 02:00:00:02:00:05 --port 12", "pcep start",
              "pcep add 7 --remote-id 9 --local 02:00:00:03:00:01 --remote 02:00:00:02:00:01 --vlan 100",
              "pcep add 8 --remote-id 9 --local 02:00:00:03:00:02 --remote 02:00:00:02:00:02 --vlan 100",
              "group add 300", "group add 301", "group member add 300 7", "group member add 300 8"})
            EXPECT_EQ(here.run(line).status, exit_done) << line;
    }

    ~Lists() override
    {
        take_down(here);
    }

    // A number of each row.
    std::vector<uint32_t> rows(const std::string &line, const char *list, const char *number)
    {
        const result shown = here.run(line);
        std::vector<uint32_t> numbers;
        for (const fields &row : shown.shown.at(list))
            numbers.push_back(row.at(number).number<uint32_t>());
        return numbers;
    }

    script_session here;
};

TEST_F(Lists, OfPathsAreFilteredByDestinationAndPort)
{
    EXPECT_THAT(rows("ebcom path list", "paths", "port"), ElementsAre(6, 6, 7));
    EXPECT_THAT(rows("ebcom path list --to 02:00:00:02:00:01", "paths", "port"), ElementsAre(6, 7));
    EXPECT_THAT(rows("ebcom path list --to 02:00:00:02:00:01 --port 6", "paths", "port"), ElementsAre(6));
}

TEST_F(Lists, OfQueuesCountTheirPathsAndShapers)
{
    EXPECT_THAT(rows("ebcom queue list", "queues", "port"), ElementsAre(6, 7, 12));
    EXPECT_THAT(rows("ebcom queue list", "queues", "paths"), ElementsAre(2, 1, 0));
    EXPECT_THAT(rows("ebcom queue list", "queues", "shapers"), ElementsAre(0, 0, 1));
    EXPECT_THAT(rows("ebcom queue list --port 7", "queues", "port"), ElementsAre(7));
}

TEST_F(Lists, OfPcepsAreFilteredByEachOfTheirValues)
{
    EXPECT_THAT(rows("pcep list", "pceps", "id"), ElementsAre(7, 8));
    EXPECT_THAT(rows("pcep list --id 8", "pceps", "id"), ElementsAre(8));
    EXPECT_THAT(rows("pcep list --vlan 101", "pceps", "id"), IsEmpty());
    EXPECT_THAT(rows("pcep list --local 02:00:00:03:00:01", "pceps", "id"), ElementsAre(7));
    EXPECT_THAT(rows("pcep list --remote 02:00:00:02:00:02", "pceps", "id"), ElementsAre(8));
}

TEST_F(Lists, OfGroupsAreFilteredByIdAndMember)
{
    EXPECT_THAT(rows("group list", "groups", "id"), ElementsAre(300, 301));
    EXPECT_THAT(rows("group list --id 301", "groups", "id"), ElementsAre(301));
    EXPECT_THAT(rows("group list --member 8", "groups", "id"), ElementsAre(300));
    EXPECT_THAT(rows("group list --member 9", "groups", "id"), IsEmpty());
}

} // namespace
} // namespace kelctl

// Progress lines as they reach a stream.
#include "kelctl/progress.h"

#include "captured_stream.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace kelctl
{
namespace
{

std::string shown(size_t total, size_t upto, bool redrawn)
{
    captured_stream out;
    progress job("adding", total, out.stream(), redrawn);
    for (size_t done = 1; done <= upto; ++done)
        job.show(done);
    job.leave_line();
    return out.text();
}

TEST(Progress, ShortJobsShowNothing)
{
    EXPECT_EQ(shown(199, 199, true), "");
    EXPECT_EQ(shown(199, 199, false), "");
    EXPECT_EQ(shown(0, 0, false), "");
}

TEST(Progress, EveryTenthOfALongJobHasALine)
{
    EXPECT_EQ(shown(200, 200, false),
              "adding 20/200\nadding 40/200\nadding 60/200\nadding 80/200\nadding 100/200\n"
              "adding 120/200\nadding 140/200\nadding 160/200\nadding 180/200\nadding 200/200\n");
}

TEST(Progress, JobThatTenDoesNotDivideStillEndsWithItsTotal)
{
    const std::string lines = shown(207, 207, false);
    EXPECT_EQ(std::count(lines.begin(), lines.end(), '\n'), 10);
    EXPECT_EQ(lines.substr(lines.size() - 15), "adding 207/207\n");
}

TEST(Progress, OneLineIsDrawnOverOnATerminal)
{
    const std::string line = shown(1000, 1000, true);
    EXPECT_EQ(line.substr(0, 16), "\radding 10/1000\r");
    EXPECT_EQ(line.substr(line.size() - 18), "\radding 1000/1000\n");
    EXPECT_EQ(std::count(line.begin(), line.end(), '\n'), 1);
}

TEST(Progress, LineOfAJobThatEndsEarlyIsLeft)
{
    EXPECT_EQ(shown(1000, 15, true), "\radding 10/1000\n");
    EXPECT_EQ(shown(1000, 100, false), "adding 100/1000\n");
}

} // namespace
} // namespace kelctl

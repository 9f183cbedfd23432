// Progress lines as they reach a stream.
#include "terminal/progress.h"

#include "tests/terminal/captured_stream.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace terminal
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
    EXPECT_EQ(shown(0, 0, true), "");
}

TEST(Progress, NothingIsShownOffATerminal)
{
    EXPECT_EQ(shown(1000, 1000, false), "");
}

TEST(Progress, JobThatAHundredDoesNotDivideStillEndsWithItsTotal)
{
    const std::string line = shown(207, 207, true);
    EXPECT_EQ(std::count(line.begin(), line.end(), '\r'), 100);
    EXPECT_EQ(line.substr(line.size() - 16), "\radding 207/207\n");
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
}

} // namespace
} // namespace terminal

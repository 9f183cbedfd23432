// Scripts taken apart. What becomes of them when they are run is run_test.cpp.
#include "kelctl/jobs/script.h"

#include "kelctl/commands/commands.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kelctl
{
namespace
{

using testing::IsEmpty;
using testing::SizeIs;

TEST(Script, LinesKeepTheirNumbers)
{
    const script parsed = parse_script(commands(), "# first\nebcom start\r\n\n  ebcom stop # last");
    EXPECT_THAT(parsed.problems, IsEmpty());
    ASSERT_THAT(parsed.lines, SizeIs(2));
    EXPECT_EQ(parsed.lines[0].line, 2u);
    EXPECT_EQ(parsed.lines[0].row->name, "ebcom start");
    EXPECT_EQ(parsed.lines[1].line, 4u);
    EXPECT_EQ(parsed.lines[1].row->name, "ebcom stop");
}

TEST(Script, EveryWrongLineIsAProblemAndTheOthersAreRead)
{
    const script parsed = parse_script(commands(), "what\nebcom start\n group add 0\n");
    ASSERT_THAT(parsed.problems, SizeIs(2));
    EXPECT_EQ(parsed.problems[0].at, (position{1, 1}));
    EXPECT_EQ(parsed.problems[1].at, (position{3, 12}));
    EXPECT_EQ(parsed.problems[1].message, "GROUP: 0 is not in the range 1 to 511");
    EXPECT_THAT(parsed.lines, SizeIs(1));
}

TEST(Script, HostileTextIsProblemsAndNothingElse)
{
    for (const std::string &text : {std::string(3, '\0'), std::string(1000, '\xff'), std::string(100'000, '-'),
                                    "\x1b[31m " + std::string(9, '"')})
        EXPECT_THAT(parse_script(commands(), text).problems, SizeIs(1)) << text.substr(0, 20);
}

} // namespace
} // namespace kelctl

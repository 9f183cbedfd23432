// What the session remembers of paths that come and go.
#include "kelctl/jobs/take_down.h"
#include "kelctl/session/session.h"
#include "script_session.h"
#include "softnode/softnode.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kelctl
{
namespace
{

using testing::ElementsAre;

class AskedPaths : public testing::Test
{
protected:
    AskedPaths()
    {
        softnode_reset();
        for (const char *line :
             {"ebcom start", "ebcom path add 02:00:00:02:00:01 --port 6 --rate 100 --burst 4096",
              "ebcom path add 02:00:00:02:00:01 --port 7", "ebcom path add 02:00:00:02:00:02 --port 7",
              "ebcom path add 02:00:00:02:00:01 --port 6 --rate 100 --burst 4096"})
            EXPECT_EQ(here.run(line).status, exit_done) << line;
    }

    ~AskedPaths() override
    {
        take_down(here);
    }

    script_session here;
};

TEST_F(AskedPaths, AreThoseThatWereAddedAndNotRemoved)
{
    EXPECT_EQ(here.paths.size(), 4u);
    EXPECT_EQ(here.run("ebcom path remove 02:00:00:02:00:01 --port 6").status, exit_done);
    EXPECT_EQ(here.run("ebcom path remove 02:00:00:02:00:01 --port 42").status, exit_operation_failed);
    EXPECT_EQ(here.paths.size(), 3u);
    EXPECT_THAT(here.paths.ports(), ElementsAre(6, 7));
}

TEST_F(AskedPaths, HandleHasTheNameThatItsCommandGaveIt)
{
    constexpr uint64_t name = 0x77;
    EXPECT_EQ(here.handle_called(name), name);
    for (const char *line :
         {"ebcom queue handle 02:00:00:02:00:02 --as 0x77", "ebcom scheduler handle 02:00:00:02:00:02 --as 0x78",
          "ebcom shaper add 02:00:00:02:00:02 --port 7 --as 0x79"})
        EXPECT_EQ(here.run(line).status, exit_done) << line;
    EXPECT_NE(here.handle_called(name), name);
    EXPECT_EQ(here.handle_called(name), here.handle_called(0x79));
    EXPECT_NE(here.handle_called(0x78), here.handle_called(0x79));
    EXPECT_EQ(here.run("ebcom burst stats --queue 0x77 --scheduler 0x78").status, exit_done);
}

TEST_F(AskedPaths, TextThatItsBufferIsTooSmallForIsRefused)
{
    EXPECT_EQ(here.run("ebcom stats --length 20").code, 10U);
    EXPECT_EQ(here.run("ebcom stats --length 1000000").code, 0U);
    EXPECT_EQ(here.run("ebcom stats --length 0 --raw").code, 10U);
}

} // namespace
} // namespace kelctl

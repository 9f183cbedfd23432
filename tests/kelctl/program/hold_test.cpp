// A node that is held, and what Ctrl-C and SIGTERM do at different moments.
#include "held_node.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>

namespace
{

using testing::EndsWith;
using testing::HasSubstr;

std::string many_paths(int count)
{
    return ebcom_table + "[[path]]\ndst_mac = \"02:00:00:02:00:00\"\nport = 6\ncount = " + std::to_string(count) + "\n";
}

class Hold : public testing::TestWithParam<int>
{
};

TEST_P(Hold, EndsWithTheSignalAndTakesTheNodeDown)
{
    held_node node(many_paths(2));
    const auto outcome = node.end(GetParam());
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.err, "");
    EXPECT_THAT(outcome.out, EndsWith("\nThe node is up until Ctrl-C.\n" + empty_again));
}

INSTANTIATE_TEST_SUITE_P(Signals, Hold, testing::Values(SIGINT, SIGTERM));

TEST(HoldInJson, LineTellsThatTheNodeIsHeldAndTheDocumentFollows)
{
    held_node node(many_paths(2), {"--json"});
    ASSERT_TRUE(node.program().shows("{\"holding\":{\"paths_added\":2,\"name\":\"" + node.name() + "\"}}\n"));
    const auto outcome = node.end(SIGINT);
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.err, "");
    EXPECT_THAT(outcome.out, HasSubstr("}}\n{\"command\":\"up\",\"arguments\":{\"file\":\"node.toml\",\"hold\":true,"));
}

TEST(HoldAfterAFailure, HoldsOnlyWhatIsKept)
{
    const file_in_folder file("node.toml", many_paths(2));
    const std::map<std::string, std::string> fault = {{"KEL_SOFTNODE_FAULTS", "ork_ebcom_pcep_path_create:2=-4"}};
    const auto undone = run_kelctl({.arguments = {"up", "node.toml", "--hold", "--name", file.node_name()},
                                    .environment = fault,
                                    .folder = file.folder()});
    EXPECT_EQ(undone.status, 1);

    running_kelctl kelctl({.arguments = {"up", "node.toml", "--hold", "--keep", "--name", file.node_name()},
                           .environment = fault,
                           .folder = file.folder()});
    ASSERT_TRUE(kelctl.shows("The node is up until Ctrl-C.\n"));
    kelctl.signal(SIGINT);
    const auto kept = kelctl.finish();
    EXPECT_EQ(kept.status, 1);
    EXPECT_THAT(kept.err, HasSubstr("\nkept: parameters, interface, EBCOM service, 1 path\n"));
}

// Nobody reads the records, so that the program waits in the middle of its work for the pipe to have room.
TEST(Interruption, InTheMiddleOfManyPathsTakesDownWhatStands)
{
    const file_in_folder file("node.toml", many_paths(10'000));
    running_kelctl kelctl({.arguments = {"up", "node.toml", "--trace"}, .environment = {}, .folder = file.folder()});
    if (!kelctl.shows("kel_core_ic_ebcom_path_add()"))
        GTEST_SKIP() << "there is no tracer on this machine";
    kelctl.signal(SIGINT);
    const auto outcome = kelctl.finish();
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.out, "");
    EXPECT_THAT(outcome.err, HasSubstr("\ninterrupted before the node was up\n"));
    EXPECT_THAT(outcome.err, HasSubstr(" removed, EBCOM service stopped, interface deleted\n"));
    EXPECT_THAT(outcome.err, HasSubstr("\n" + empty_again)); // a record of another thread may follow
}

} // namespace

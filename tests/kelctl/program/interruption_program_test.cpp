// Ctrl-C and SIGTERM between the operations of `up` and `run`.
#include "terminal_session.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>

namespace
{

using testing::HasSubstr;
using testing::Not;

// So much that the program is far from its end when the signal comes.
const std::string many_paths = ebcom_table +
                               "[[path]]\ndst_mac = \"02:00:00:02:00:00\"\nport = \"RLU1P\"\ncount = 30000\n"
                               "[[path]]\ndst_mac = \"02:00:00:03:00:00\"\nport = \"RLU2P\"\ncount = 30000\n";

TEST(Interruption, CtrlCTakesDownWhatUpHasMade)
{
    const file_in_folder file("node.toml", many_paths);
    terminal_session up({.arguments = {"up", "node.toml"}, .environment = {}, .folder = file.folder()});
    up.wait_for("adding paths 600/60000");
    up.type("\x03");
    up.wait_for("interrupted before the node was up");
    up.wait_for("Taken down. The node is empty again.");
    EXPECT_EQ(up.wait_for_end(), 1);
    EXPECT_THAT(up.screen(), Not(HasSubstr("schedulers and queues")));
}

TEST(Interruption, TerminationDoesTheSame)
{
    const file_in_folder file("node.toml", many_paths);
    terminal_session up({.arguments = {"up", "node.toml"}, .environment = {}, .folder = file.folder()});
    up.wait_for("adding paths 600/60000");
    up.send(SIGTERM);
    up.wait_for("interrupted before the node was up");
    up.wait_for("Taken down. The node is empty again.");
    EXPECT_EQ(up.wait_for_end(), 1);
}

// The records of the take-down are more than a terminal holds that nobody reads, so it is not over by the second signal.
TEST(Interruption, SecondHangUpDoesNotEndTheTakeDown)
{
    const file_in_folder file("node.toml", many_paths);
    terminal_session up({.arguments = {"up", "node.toml", "--trace"}, .environment = {}, .folder = file.folder()});
    up.wait_for("02:00:00:02:00:40");
    up.send(SIGHUP);
    up.wait_for("interrupted before the node was up");
    up.send(SIGHUP);
    up.wait_for("Taken down. The node is empty again.");
    EXPECT_EQ(up.wait_for_end(), 1);
}

// A terminal holds little of what is not read, so most of the script is still to come.
TEST(Interruption, CtrlCStopsAScriptBetweenItsLines)
{
    std::string script;
    for (int i = 0; i < 20000; ++i)
        script += "pcep locate 02:00:00:02:00:01\n";
    const file_in_folder file("long.kel", script);
    terminal_session run({.arguments = {"run", "long.kel"}, .environment = {}, .folder = file.folder()});
    run.wait_for("OB");
    run.type("\x03");
    run.wait_for("long.kel: interrupted, ");
    EXPECT_THAT(run.wait_for(" commands were run"), testing::MatchesRegex("[0-9]+ of 20000"));
    EXPECT_EQ(run.wait_for_end(), 1);
}

// As many frames as a queue holds, which take a machine some seconds.
TEST(Interruption, CtrlCEndsALongTimeThatPasses)
{
    const file_in_folder file("long.kel", "ebcom interface create\nebcom start\n"
                                          "ebcom path add 02:00:00:02:00:01 --port RLU1P --rate 1000000 "
                                          "--burst 1048575 --threshold 4294967040\n"
                                          "traffic offer 02:00:00:02:00:01 --frames 1000000000 --octets 64\n"
                                          "time advance 100s\n");
    terminal_session run({.arguments = {"run", "long.kel"}, .environment = {}, .folder = file.folder()});
    run.wait_for("advancing time ");
    run.type("\x03");
    run.wait_for("long.kel:5: interrupted after ");
    run.wait_for(" of 100 s");
    EXPECT_EQ(run.wait_for_end(), 1);
}

// Nothing was run by then, so there is nothing to be careful with.
TEST(Interruption, CtrlCEndsTheTypingOfAScript)
{
    terminal_session run({.arguments = {"run", "-"}});
    run.type("trace message never\n");
    run.wait_for("never");
    run.type("\x03");
    EXPECT_EQ(run.wait_for_end(), -1);
}

} // namespace

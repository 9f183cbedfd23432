// `kelctl up` of sound files.
#include "program.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace
{

using testing::HasSubstr;
using testing::Not;

std::string paths_to(const std::string &mac, const std::string &port, int count)
{
    return "[[path]]\ndst_mac = \"" + mac + "\"\nport = \"" + port + "\"\ncount = " + std::to_string(count) + "\n";
}

TEST(Up, ExampleFileShowsWhatIsExpected)
{
    const auto outcome =
        run_kelctl({.arguments = {"up", "examples/node.toml"}, .environment = {}, .folder = KELCTL_SOURCE_DIR});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(outcome.out, text_of(KELCTL_EXPECTED_DIR "/up_example.expected"));
    EXPECT_LE(widest_line(outcome.out), 80u);
}

TEST(Up, NodeWithoutPathsStands)
{
    const auto outcome = kelctl_up(ebcom_table);
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.err, "");
    EXPECT_THAT(outcome.out, HasSubstr("paths         0 added, to 0 destinations through 0 queues\n"));
    EXPECT_THAT(outcome.out, testing::EndsWith("\n" + empty_again));
}

const std::string one_pcep = "[[pcep]]\nid = 7\nremote_id = 9\nlocal_mac = \"02:00:00:03:00:01\"\n"
                             "remote_mac = \"02:00:00:02:00:01\"\nvlan = 100\n";

TEST(Up, NodeWithPcepsButNoPathsStands)
{
    const auto outcome = kelctl_up(ebcom_table + one_pcep);
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.err,
              "node.toml:9:14: warning: remote_mac: no path of this file leads to 02:00:00:02:00:01, and no PCEP "
              "has it as its local address\n");
    EXPECT_THAT(outcome.out,
                HasSubstr("\n   7       9   100    0  02:00:00:03:00:01 HSFP  02:00:00:02:00:01 OB  EHSFP\n"));
    EXPECT_THAT(outcome.out, Not(HasSubstr("\nqueue  ")));
    EXPECT_THAT(outcome.out, testing::EndsWith("\n" + empty_again));
}

TEST(Up, FullNodeOfPcepsAndGroupsComesAndGoes)
{
    std::string file = ebcom_table;
    for (int id = 1; id <= 481; ++id)
        file += "[[pcep]]\nid = " + std::to_string(id) + one_pcep.substr(one_pcep.find("\nremote_id"));
    for (int id = 482; id <= 511; ++id)
        file += "[[multicast]]\nid = " + std::to_string(id) +
                "\nmembers = [1, 2, 3, 4, 5, 6, 7, 8, 474, 475, 476, 477, 478, 479, 480, 481]\n";
    const auto outcome = kelctl_up(file);
    EXPECT_EQ(outcome.status, 0);
    EXPECT_THAT(outcome.err, testing::EndsWith("\n461 more warnings; --all shows them\n"));
    EXPECT_THAT(outcome.out, HasSubstr("\n  511  1 2 3 4 5 6 7 8 474 475 476 477 478 479 480 481\n"));
    EXPECT_THAT(outcome.out, testing::EndsWith("\n" + empty_again));
}

TEST(Up, OwnMpIdOfTheFileGoesBeforeTheEnvironments)
{
    const std::string path = paths_to("02:00:07:00:00:01", "RLU1P", 1);
    EXPECT_THAT(kelctl_up(ebcom_table + path + "[node]\nmpid = 7\n", {{"MPID", "8"}}).out,
                HasSubstr("02:00:07:00:00:01 CPU\n"));
    EXPECT_THAT(kelctl_up(ebcom_table + path, {{"MPID", "7"}}).out, HasSubstr("02:00:07:00:00:01 CPU\n"));
    EXPECT_THAT(kelctl_up(ebcom_table + path, {{"MPID", "8"}}).out, HasSubstr("02:00:07:00:00:01 EIOA\n"));
}

TEST(Up, SameDestinationTwiceOnAPortIsOneDestination)
{
    const std::string path = paths_to("02:00:00:02:00:01", "RLU1P", 1);
    const auto outcome = kelctl_up(ebcom_table + path + path);
    EXPECT_EQ(outcome.status, 0);
    EXPECT_THAT(outcome.out, HasSubstr("paths         2 added, to 1 destination through 1 queue\n"));
    EXPECT_THAT(outcome.out, testing::EndsWith("\n" + empty_again));
}

TEST(Up, TenThousandPathsComeAndGo)
{
    const auto outcome = kelctl_up(ebcom_table + paths_to("02:00:00:02:00:00", "RLU1P", 5000) +
                                   paths_to("02:00:00:02:20:00", "RLU2P", 5000));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.err, "");
    EXPECT_THAT(outcome.out, HasSubstr("02:00:00:02:00:00 - 02:00:00:02:13:87 OB, 5000 destinations\n"));
    EXPECT_THAT(outcome.out, HasSubstr("02:00:00:02:20:00 - 02:00:00:02:33:87 OB, 5000 destinations\n"));
    EXPECT_THAT(outcome.out, testing::EndsWith("\n" + empty_again));
}

TEST(Up, TerminalGetsColoursAndOneProgressLine)
{
    const file_in_folder file("node.toml", ebcom_table + paths_to("02:00:00:02:00:00", "RLU1P", 200));
    const auto outcome =
        run_kelctl({.arguments = {"up", "node.toml"}, .environment = {}, .folder = file.folder(), .on_terminal = true});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_THAT(outcome.out, HasSubstr("\x1b[1minterface"));
    EXPECT_THAT(outcome.out, HasSubstr("\radding paths 100/200\radding paths 102/200\r"));
}

TEST(Up, JsonOnATerminalComesWithoutProgress)
{
    const file_in_folder file("node.toml", ebcom_table + paths_to("02:00:00:02:00:00", "RLU1P", 200));
    const auto outcome = run_kelctl(
        {.arguments = {"up", "node.toml", "--json"}, .environment = {}, .folder = file.folder(), .on_terminal = true});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_THAT(outcome.out, HasSubstr("\"paths_added\""));
    EXPECT_THAT(outcome.out, Not(HasSubstr("adding paths")));
}

TEST(Up, NodeIsTakenDownAlsoWhenItCannotBeShown)
{
    const file_in_folder file("node.toml", ebcom_table);
    const auto outcome = run_kelctl({.arguments = {"up", "node.toml", "--trace"},
                                     .environment = {},
                                     .folder = file.folder(),
                                     .out_device = "/dev/full"});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.err, HasSubstr("kel_core_ic_ebcom_interface_delete()"));
    EXPECT_THAT(outcome.err, testing::EndsWith("kelctl: standard output cannot be written: No space left on device\n"));
}

TEST(Up, KeepsNothingOfACommandThatFailed)
{
    const auto outcome = kelctl_up(ebcom_table, {{"KEL_SOFTNODE_FAULTS", "ork_qos_scheduler_create:3=-4"}}, {"--keep"});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.err, HasSubstr("\nkept: parameters, interface\n"));
}

TEST(Up, JsonHasWhatATakeDownComplainedOf)
{
    if (run_text("version\n", {"--trace"}).err.find("no trace") != std::string::npos)
        GTEST_SKIP() << "there is no tracer on this machine";
    const auto outcome = kelctl_up(ebcom_table, {{"KEL_SOFTNODE_FAULTS", "ork_qos_scheduler_delete:1=-4"}}, {"--json"});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.out, HasSubstr(R"("complaints":[{"operation":"ebcom stop","records":[{"event":"EXCEPTION")"));
}

TEST(Up, NoColorIsHonoured)
{
    const file_in_folder file("node.toml", ebcom_table);
    const auto outcome = run_kelctl({.arguments = {"up", "node.toml"},
                                     .environment = {{"NO_COLOR", "1"}},
                                     .folder = file.folder(),
                                     .on_terminal = true});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_THAT(outcome.out, HasSubstr("interface"));
    EXPECT_THAT(outcome.out, Not(HasSubstr("\x1b")));
}

} // namespace

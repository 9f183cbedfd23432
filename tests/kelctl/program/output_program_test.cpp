// Standard output whose reader goes away, or that cannot be written.
#include "program.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <iterator>

namespace
{

using testing::EndsWith;
using testing::StartsWith;

const std::string one_path = ebcom_table + "[[path]]\ndst_mac = \"02:00:00:02:00:01\"\nport = 6\n";
const char *const full_disk = "/dev/full";
const std::string no_space = "kelctl: standard output cannot be written: No space left on device\n";

class OutputOfUp : public testing::TestWithParam<const char *>
{
protected:
    program_run up(const std::map<std::string, std::string> &environment = {}) const
    {
        return {.arguments = {"up", name_, GetParam()}, .environment = environment, .folder = file_.folder()};
    }

private:
    const std::string name_ = "output-" + std::to_string(getpid()) + ".toml"; // also of the node that is held
    file_in_folder file_{name_, one_path};
};

TEST_P(OutputOfUp, ReaderThatGoesAwayEndsItQuietlyOnceTheNodeIsDown)
{
    running_kelctl kelctl(up());
    ASSERT_TRUE(kelctl.shows("schedulers and queues"));
    kelctl.leave_output();
    const auto outcome = kelctl.finish();
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.err, "");
}

// The failing take-down shows that there was one.
TEST_P(OutputOfUp, ReaderThatGoesAwayLeavesTheStatusOfAFailureAsItIs)
{
    running_kelctl kelctl(up({{"KEL_SOFTNODE_FAULTS", "ork_ebcom_interface_delete=-4"}}));
    ASSERT_TRUE(kelctl.shows("schedulers and queues"));
    kelctl.leave_output();
    const auto outcome = kelctl.finish();
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.err, testing::HasSubstr("failed: kel_core_ic_ebcom_interface_delete()\n"));
}

TEST_P(OutputOfUp, ThatCannotBeWrittenEndsItAndIsReportedWithTheReason)
{
    program_run to_full_disk = up();
    to_full_disk.out_device = full_disk;
    const auto outcome = run_kelctl(to_full_disk);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.err, no_space);
}

INSTANTIATE_TEST_SUITE_P(Waiting, OutputOfUp, testing::Values("--hold", "--watch"),
                         [](const auto &tested) { return std::string(tested.param).substr(2); });

// They print more than a pipe or a terminal holds: the program is not at its end when the reader goes away.
std::string many_commands()
{
    std::string lines;
    for (int i = 0; i < 2000; ++i)
        lines += "ebcom capabilities\n";
    return lines;
}

TEST(Output, ScriptIsCarriedOutToItsEndWithoutAReader)
{
    const file_in_folder file("long.kel", many_commands() + "group add 300\n");
    running_kelctl kelctl({.arguments = {"run", "long.kel"}, .environment = {}, .folder = file.folder()});
    ASSERT_TRUE(kelctl.shows("max burst size"));
    kelctl.leave_output();
    const auto outcome = kelctl.finish();
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.err,
                testing::HasSubstr("long.kel:2001: failed: kel_core_ic_pcep_mc_group_add(mc_pcep_id=300)\n"));
}

TEST(Output, ShellEndsWithoutAReader)
{
    running_kelctl kelctl({.arguments = {"shell"}, .in = many_commands() + "group add 300\n"});
    ASSERT_TRUE(kelctl.shows("max burst size"));
    kelctl.leave_output();
    const auto outcome = kelctl.finish();
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.err, "");
}

TEST(Output, ThatCannotBeWrittenIsReportedOnce)
{
    const auto outcome =
        run_kelctl({.arguments = {"run", "-"}, .out_device = full_disk, .in = "ports\ncodes\ngroup add 300\n"});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.err, testing::HasSubstr("-:3: failed: kel_core_ic_pcep_mc_group_add(mc_pcep_id=300)\n"));
    EXPECT_THAT(outcome.err, EndsWith("\n" + no_space));
}

TEST(Output, TerminalThatIsClosedIsAReaderThatGoesAway)
{
    running_kelctl kelctl({.arguments = {"run", "-"}, .in = many_commands(), .on_terminal = true});
    ASSERT_TRUE(kelctl.shows("max burst size"));
    kelctl.leave_output();
    EXPECT_EQ(kelctl.finish().status, 0);
}

} // namespace

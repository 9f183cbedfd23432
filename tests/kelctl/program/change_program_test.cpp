// `export`, `diff`, `apply` and the lists in the program: in scripts, in the shell and after `up`.
#include "program.h"
#include "tests/notation/print.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sstream>

#include <fstream>
#include <sys/stat.h>
#include <unistd.h>

namespace
{

using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

std::string node(const std::string &rate)
{
    return ebcom_table + "[[path]]\ndst_mac = \"02:00:00:02:00:01\"\nport = \"RLU1P\"\nshaping = { rate = \"" + rate +
           "\", burst = \"64 KiB\" }\n";
}

// What a script yields in the folder of two node files, a.toml and b.toml.
class Change : public testing::Test
{
protected:
    program_outcome run(const std::string &script, const std::vector<std::string> &options = {},
                        const std::map<std::string, std::string> &environment = {})
    {
        return run_kelctl({.arguments = with({"run", "-", "--keep-going"}, options),
                           .environment = environment,
                           .folder = a_.folder(),
                           .in = script});
    }

    const std::string b_text = node("200 Mbit/s");
    const file_in_folder a_{"a.toml", node("100 Mbit/s")};
    const file_in_folder b_{"b.toml", b_text};
    const std::string to_b = " " + b_.folder() + "/b.toml\n";
};

TEST_F(Change, ExitStatusOfADifferenceIsThatOfDiff)
{
    EXPECT_EQ(run("apply a.toml\ndiff a.toml\n").status, 0);
    EXPECT_EQ(run("apply a.toml\ndiff" + to_b).status, 1);
    EXPECT_EQ(run("apply a.toml\ndiff nothing.toml\n").status, 2);
}

TEST_F(Change, WrongFileChangesNothingAndSaysWhy)
{
    const file_in_folder wrong("c.toml", node("100 Mbit/s") + "colour = 1\n");
    const auto outcome = run("apply a.toml\napply " + wrong.folder() + "/c.toml\ndiff a.toml\n");
    EXPECT_EQ(outcome.status, 2);
    EXPECT_THAT(outcome.err, HasSubstr("c.toml:9:1: unknown key \"colour\" in [[path]]\n"));
    EXPECT_THAT(outcome.err, HasSubstr("1 problem, nothing was changed\n"));
    EXPECT_THAT(outcome.out, EndsWith("nothing differs\n"));
}

TEST_F(Change, ShellOfANodeFileComparesAndAppliesAndGoesDownClean)
{
    const auto outcome = run_kelctl({.arguments = {"shell", "a.toml"},
                                     .folder = a_.folder(),
                                     .in = "diff a.toml\napply" + to_b + "diff" + to_b + "ebcom queue list\n"});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.err, "");
    EXPECT_THAT(outcome.out, HasSubstr("nothing differs\n"
                                       "changed  queue of RLU1P (6)\n"
                                       "         from rate 100 Mbit/s\n"
                                       "         to   rate 200 Mbit/s\n"
                                       "interrupts queue of RLU1P (6): 1 destination\n"
                                       "nothing differs\n"
                                       "port  name   rate        burst   threshold  paths  shapers\n"
                                       "   6  RLU1P  200 Mbit/s  64 KiB  5000 KiB       1        0\n"));
    EXPECT_THAT(outcome.out, EndsWith(empty_again));
}

TEST_F(Change, FailureIsReportedWithWhatIsRestored)
{
    const auto outcome =
        run("apply a.toml\nfault add ork_ebcom_pcep_path_create:1=-4\napply" + to_b + "diff a.toml\n", {"--brief"});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.err, StartsWith("-:3: failed: kel_core_ic_ebcom_path_add("));
    EXPECT_THAT(outcome.err, HasSubstr("-:3: the old node is restored\n"));
    EXPECT_THAT(outcome.out, EndsWith("nothing differs\n"));
}

TEST_F(Change, JsonHasTheStepsAndWhatIsLeft)
{
    const auto outcome =
        run("apply a.toml --json\nfault add ork_ebcom_pcep_path_create=-4\napply" + to_b, {"--json", "--brief"});
    std::istringstream lines(outcome.out);
    std::string line;
    for (int i = 0; i < 3; ++i)
        std::getline(lines, line);
    const auto told = notation::read_json(line);
    EXPECT_EQ(told.at("ok"), false);
    const auto &result = told.at("result");
    EXPECT_EQ(result.at("applied"), false);
    EXPECT_EQ(result.at("steps").size(), 2u);
    EXPECT_EQ(to_json(result.at("interrupted")),
              R"json([{"object":"queue of RLU1P (6)","destinations":["02:00:00:02:00:01"]}])json");
    EXPECT_EQ(to_json(result.at("left")),
              R"json([{"object":"path to 02:00:00:02:00:01 on RLU1P (6)","what":"removed"}])json");
}

TEST_F(Change, ExportedFileIsANodeFile)
{
    EXPECT_EQ(run("apply a.toml\nexport --output /dev/null\nexport --output c.toml\n").status, 0);
    const auto outcome = run("apply a.toml\ndiff c.toml\napply c.toml\n");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_THAT(outcome.out, EndsWith("nothing differs\nnothing differs\n"));
    EXPECT_EQ(run_kelctl({.arguments = {"up", "c.toml"}, .folder = a_.folder()}).status, 0);
}

// Root may write any file.
TEST_F(Change, ExportSaysWhyItCannotBeWritten)
{
    std::ofstream(a_.folder() + "/kept") << "old";
    ASSERT_EQ(chmod(a_.folder().c_str(), 0777), 0);
    ASSERT_EQ(chmod((a_.folder() + "/kept").c_str(), 0444), 0);
    std::vector<std::string> as_user;
    if (geteuid() == 0)
        as_user = {"setpriv", "--reuid=65002"};
    const struct {
        std::string file;
        std::string why;
        std::vector<std::string> through = {};
    } refused[] = {
        {".", "Is a directory"}, {"/dev/full", "No space left on device"}, {"kept", "Permission denied", as_user}};
    for (const auto &[file, why, through] : refused) {
        const auto outcome = run_kelctl({.arguments = {"run", "-"},
                                         .folder = a_.folder(),
                                         .in = "apply a.toml\nexport --output " + file + "\n",
                                         .through = through});
        EXPECT_EQ(outcome.status, 1);
        EXPECT_EQ(outcome.err, "-:2: " + file + ": cannot be written: " + why + "\n");
    }
    EXPECT_EQ(text_of(a_.folder() + "/kept"), "old");
}

TEST_F(Change, ExportDoesNotReplaceTheScriptThatAsksForIt)
{
    const file_in_folder script("s.kel", "ebcom start\nexport --script --output s.kel\n");
    const auto outcome = run_kelctl(
        {.arguments = {"run", "-"}, .folder = script.folder(), .through = {"sh", "-c", "exec \"$@\" <s.kel", "sh"}});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.err, HasSubstr("s.kel: cannot be written: it is an input of this run\n"));
    EXPECT_THAT(text_of(script.folder() + "/s.kel"), StartsWith("ebcom start\nexport"));
}

TEST_F(Change, NothingIsExportedWhereANodeFileCannotSayIt)
{
    const auto outcome = run("ebcom start\nexport --output c.toml\n");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.err, "-:2: a node file cannot say this: [ebcom] is required\n"
                           "-:2: nothing was written; --script writes a script\n");
}

TEST_F(Change, ListsHaveTwentyRowsUnlessAllAreAskedFor)
{
    const std::string paths = "ebcom start\nebcom path add 02:00:00:02:00:01 --port 6 --count 30\n";
    EXPECT_THAT(run(paths + "ebcom path list\n").out, EndsWith("10 more rows; --all shows them\n"));
    EXPECT_THAT(run(paths + "ebcom path list --all\n").out,
                EndsWith("02:00:00:02:00:1e  OB           6  RLU1P  yes\n"));
}

TEST_F(Change, WhatTheAcceleratorHoldsOtherwiseIsAWarning)
{
    const auto outcome = run("ebcom start\nebcom path add 02:00:00:02:00:01 --port 6\n"
                             "ebcom path add 02:00:00:02:00:01 --port 7\n"
                             "ebcom path remove 02:00:00:02:00:01 --port 7\nebcom path list\nebcom queue list\n");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.err, "-:5: warning: path to 02:00:00:02:00:01 on RLU1P (6): its queue is gone\n");
}

} // namespace

// The commands of the software accelerator: faults, snapshot, graph, reset.
#include "program.h"
#include "tests/notation/print.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace
{

using json = notation::document;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

// The document of the last command but the script itself.
json last_document(const std::string &script)
{
    const auto outcome = run_text(script, {"--json"});
    std::istringstream lines(outcome.out);
    std::string before_last;
    std::string last;
    for (std::string line; std::getline(lines, line);)
        before_last = std::exchange(last, line);
    return notation::read_json(before_last);
}

const std::string small_node = "ebcom interface create\n"
                               "ebcom start\n"
                               "ebcom path add 02:00:00:02:00:01 --port RLU1P --rate 100000 --burst 65536\n";

// ---- Faults ----

TEST(Faults, AreMetByTheCallsThatFollow)
{
    const auto outcome = run_text("fault add kel_init_attach:1=10 ork_bind=-4\npcep start\npcep start\nfault list\n");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.err, testing::HasSubstr("-:2: failed: kel_core_ic_pcep_start()\n  code 10: "));
}

TEST(Faults, AreListedWithTheirHits)
{
    const json printed = last_document("fault add 'kel_init_attach:2=10; ork_bind=-4'\npcep start\nfault list\n");
    EXPECT_EQ(printed.at("result"), notation::read_json(R"({"rules": [{"rule": "kel_init_attach:2=10", "hits": 0},
                                                        {"rule": "ork_bind=-4", "hits": 0}]})"));
    EXPECT_EQ(run_text("fault add ork_bind=-4\nfault list\n").out, "rule         hits\nork_bind=-4     0\n");
}

TEST(Faults, AreForgotten)
{
    EXPECT_EQ(last_document("fault add ork_bind=-4\nfault clear\nfault list\n").at("result").at("rules"),
              json::array());
}

TEST(Faults, NothingIsReleasedWhenNothingBlocks)
{
    EXPECT_EQ(run_text("fault release\n").out, "released  0\n");
}

TEST(Faults, WrongRuleIsToldAndNoneIsAdded)
{
    const auto outcome = run_text("fault add ork_bind=-4 nonsense=1\n");
    EXPECT_EQ(outcome.status, 2);
    EXPECT_THAT(outcome.err, HasSubstr("nonsense"));
    EXPECT_TRUE(last_document("fault add ork_bind=-4 nonsense=1\n").at("error").at("file").is_null());
}

TEST(Faults, ComeFromAFileAndWrongOnesAreToldWithTheirPlace)
{
    const file_in_folder good("faults", "# two\nork_bind=-4\nork_unbind:2=-1 # later\n");
    EXPECT_EQ(
        last_document("fault add --file " + good.folder() + "/faults\nfault list\n").at("result").at("rules").size(),
        2u);

    const file_in_folder bad("faults", "ork_bind=-4\n  nonsense=1\n");
    const json printed = last_document("fault add --file " + bad.folder() + "/faults\n");
    EXPECT_EQ(printed.at("ok"), false);
    EXPECT_EQ(printed.at("error").at("file"), bad.folder() + "/faults");
    EXPECT_EQ(printed.at("error").at("line"), 2);
    EXPECT_EQ(printed.at("error").at("column"), 3);
    EXPECT_THAT(printed.at("error").at("message").text(), HasSubstr("nonsense"));
}

TEST(Faults, EndlessOnesAreRefused)
{
    const auto outcome = run_text("fault add --file /dev/zero\n");
    EXPECT_EQ(outcome.status, 2);
    EXPECT_THAT(outcome.err, HasSubstr("/dev/zero: is larger than 16 MiB\n"));
    const auto from_environment = run_text("pcep start\n", {}, {{"KEL_SOFTNODE_FAULTS", "@/dev/zero"}});
    EXPECT_EQ(from_environment.status, 2);
    EXPECT_THAT(from_environment.err, HasSubstr("/dev/zero: File too large\n"));
}

TEST(Faults, ComeFromOneOfTheTwo)
{
    EXPECT_EQ(run_kelctl({.arguments = {"fault", "add"}}).status, 2);
    EXPECT_EQ(run_kelctl({.arguments = {"fault", "add", "ork_bind=-4", "--file", "x"}}).status, 2);
}

TEST(Faults, FunctionsAreListedWithCodes)
{
    const json functions = last_document("fault functions\n").at("result").at("functions");
    EXPECT_GT(functions.size(), 30u);
    EXPECT_EQ(std::count(functions.begin(), functions.end(),
                         notation::read_json(R"({"function": "ork_bind", "codes": [-1, -4, -9]})")),
              1);
}

// ---- Snapshot ----

TEST(Snapshot, IsTheAcceleratorsOwnDocument)
{
    const json node = last_document(small_node + "snapshot\n").at("result");
    EXPECT_EQ(node.at("paths").size(), 1u);
    EXPECT_EQ(node.at("queues")[0].at("rate"), 100000);
    EXPECT_TRUE(node.find("timing_unit"));
}

TEST(Snapshot, IsASummaryForPeople)
{
    const std::string printed = run_text(small_node + "snapshot\n").out;
    EXPECT_THAT(printed, HasSubstr("interface     Ethernet device 7, VSI 258\n"));
    EXPECT_THAT(printed, HasSubstr("paths         to 1 destination through 1 queue\n"));
    EXPECT_THAT(printed, HasSubstr("timestamp     offset 160\n"));
    EXPECT_THAT(printed, HasSubstr("\n  0x5c00000008  RLU1\n    RLU1P (6)   100 Mbit/s,"));
    EXPECT_THAT(printed, HasSubstr("02:00:00:02:00:01"));
}

TEST(Snapshot, NamesThePortsThatStandAfterOthersWentAway)
{
    const std::string printed = run_text(small_node + "ebcom path add 02:00:00:02:00:02 --port RLU2P\n"
                                                      "ebcom path add 02:00:00:02:00:02 --port RLU3P\n"
                                                      "ebcom path remove 02:00:00:02:00:01 --port RLU1P\n"
                                                      "snapshot\n")
                                    .out;
    EXPECT_THAT(printed, Not(HasSubstr("RLU1P")));
    EXPECT_THAT(printed, HasSubstr("  RLU2\n    RLU2P (8) "));
    EXPECT_THAT(printed, HasSubstr("  RLU3\n    RLU3P (10) "));
    EXPECT_THAT(run_text(small_node + "ebcom stop\nebcom start\nebcom path add 02:00:00:02:00:02 --port RLU4Q\n"
                                      "snapshot\n")
                    .out,
                HasSubstr("  RLU4\n    RLU4Q (13) "));
}

TEST(Snapshot, OfANodeFromAFileNamesItsPorts)
{
    const file_in_folder file("node.toml",
                              ebcom_table + "[[path]]\ndst_mac = \"02:00:00:02:00:01\"\nport = \"RLU1P\"\n");
    const auto outcome = run_kelctl({.arguments = {"shell", "node.toml"}, .folder = file.folder(), .in = "snapshot\n"});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_THAT(outcome.out, HasSubstr("  RLU1\n    RLU1P (6) "));
}

TEST(Reset, LeavesAnEmptyAccelerator)
{
    const json node = last_document(small_node + "fault add ork_bind=-4\nnode reset\nsnapshot\n").at("result");
    for (const char *list : {"schedulers", "queues", "paths", "faults"})
        EXPECT_EQ(node.at(list), json::array()) << list;
    EXPECT_TRUE(node.at("interface").is_null());
}

// ---- Graph ----

TEST(Graph, IsDotText)
{
    const auto outcome = run_text(small_node + "graph\n");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_THAT(outcome.out, HasSubstr("digraph"));
    EXPECT_THAT(outcome.out, HasSubstr("02:00:00:02:00:01"));
}

size_t occurrences(const std::string &text, const std::string &of)
{
    size_t count = 0;
    for (size_t at = text.find(of); at != std::string::npos; at = text.find(of, at + 1))
        ++count;
    return count;
}

// The timestamp thread works beside: without waiting for it some of them lack its offset.
TEST(Graph, NamesQueuesByTheirPortsAndSchedulersByTheirUnits)
{
    const auto outcome = run_kelctl(
        {.arguments = {"run", "-"}, .in = "ebcom start\nebcom path add 02:00:00:02:00:01 --port RLU2Q\ngraph\n"});
    EXPECT_EQ(outcome.status, 0);
    for (const char *shown :
         {">RLU2Q (9) 0x5d00000001<", ">RLU1 0x5c00000008<", ">RLU2 0x5c00000009<", ">NONE 0x5c0000000c<"})
        EXPECT_THAT(outcome.out, testing::HasSubstr(shown));
}

TEST(Graph, OfANodeJustStartedHasTheTimestampOffset)
{
    constexpr size_t rounds = 200;
    std::string script;
    for (size_t i = 0; i < rounds; ++i)
        script += "ebcom start\ngraph\nnode reset\n";
    const std::string pictures = run_text(script).out;
    EXPECT_EQ(occurrences(pictures, "digraph"), rounds);
    EXPECT_EQ(occurrences(pictures, "timestamp offset 160"), rounds);
}

TEST(Graph, IsWrittenToAFile)
{
    const file_in_folder file("empty", "");
    const std::string picture = file.folder() + "/node.gv";
    const json printed = last_document(small_node + "graph --output " + picture + "\n");
    EXPECT_EQ(printed.at("result"), json({{"format", "dot"}, {"file", picture}}));
    EXPECT_THAT(text_of(picture), HasSubstr("digraph"));
}

TEST(Graph, FileThatCannotBeWrittenIsTold)
{
    const auto outcome = run_text("graph --output /nowhere/node.gv\n");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.err, StartsWith("-:1: /nowhere/node.gv: cannot be written: No such file or directory\n"));
}

TEST(Graph, InputsOfTheRunAreNotWritten)
{
    const std::string node = ebcom_table + "[[path]]\ndst_mac = \"02:00:00:02:00:01\"\nport = \"RLU1P\"\n";
    const file_in_folder of_node("node.toml", node);
    const auto shell = run_kelctl(
        {.arguments = {"shell", "node.toml"}, .folder = of_node.folder(), .in = "graph --output node.toml\n"});
    EXPECT_EQ(shell.status, 1);
    EXPECT_THAT(shell.err, HasSubstr("node.toml: cannot be written: it is an input of this run\n"));
    EXPECT_EQ(text_of(of_node.folder() + "/node.toml"), node);

    const std::string script = "fault add --file rules\ngraph --output rules\ngraph --output script.kel\n";
    const file_in_folder of_script("script.kel", script);
    std::ofstream(of_script.folder() + "/rules") << "ork_bind=-4\n";
    const auto run = run_kelctl({.arguments = {"run", "script.kel", "--keep-going"}, .folder = of_script.folder()});
    EXPECT_THAT(run.err, HasSubstr("rules: cannot be written: it is an input of this run\n"));
    EXPECT_THAT(run.err, HasSubstr("script.kel: cannot be written: it is an input of this run\n"));
    EXPECT_EQ(text_of(of_script.folder() + "/script.kel"), script);
    EXPECT_EQ(text_of(of_script.folder() + "/rules"), "ork_bind=-4\n");
}

TEST(Graph, WithoutGraphvizSaysSo)
{
    const auto outcome = run_text("graph --format svg\n", {}, {{"PATH", "/nowhere"}});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.out, "");
    EXPECT_THAT(outcome.err, StartsWith("-:1: Graphviz's \"dot\" is not installed; "));
}

TEST(Graph, PngNeedsAFile)
{
    EXPECT_EQ(run_kelctl({.arguments = {"graph", "--format", "png"}}).status, 2);
}

// A stand-in for Graphviz's program: it tells its option and what it was handed.
class GraphWithGraphviz : public testing::Test
{
protected:
    void become(const std::string &script)
    {
        std::ofstream(program_.folder() + "/dot") << "#!/bin/sh\n" << script;
        std::filesystem::permissions(program_.folder() + "/dot", std::filesystem::perms::owner_all);
    }

    // Draws its option, and opens nothing.
    void become_echo()
    {
        std::filesystem::remove(program_.folder() + "/dot");
        std::filesystem::create_symlink("/bin/echo", program_.folder() + "/dot");
    }

    program_outcome draw(const std::string &options, const std::vector<std::string> &through = {})
    {
        return run_kelctl({.arguments = {"run", "-"},
                           .environment = {{"PATH", program_.folder() + ":/usr/bin:/bin"}},
                           .in = "graph " + options + "\n",
                           .through = through});
    }

private:
    file_in_folder program_{"dot", ""};
};

TEST_F(GraphWithGraphviz, HandsItTheGraphAndShowsWhatItDraws)
{
    become("echo \"drawn with $1\"; cat\n");
    const auto outcome = draw("--format svg");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_THAT(outcome.out, StartsWith("drawn with -Tsvg\n"));
    EXPECT_THAT(outcome.out, HasSubstr("digraph"));
}

TEST_F(GraphWithGraphviz, TellsWhyItFailed)
{
    become("echo 'no fonts' >&2; exit 3\n");
    const auto outcome = draw("--format svg");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.err, HasSubstr("failed: no fonts\n"));
    become("exit 3\n");
    EXPECT_THAT(draw("--format svg").err, HasSubstr("failed: exit status 3\n"));
}

TEST_F(GraphWithGraphviz, PngIsWrittenToAFile)
{
    become("echo \"drawn with $1\"\n");
    const file_in_folder file("empty", "");
    EXPECT_EQ(draw("--format png --output " + file.folder() + "/picture").status, 0);
    EXPECT_EQ(text_of(file.folder() + "/picture"), "drawn with -Tpng\n");
}

TEST_F(GraphWithGraphviz, EmptyPictureIsAFailure)
{
    become("cat >/dev/null\n");
    const auto outcome = draw("--format svg");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.out, "");
    EXPECT_THAT(outcome.err, HasSubstr("returned no picture"));
}

// Whoever starts kelctl may ignore the ends of its children, and those of kelctl count none the less.
TEST_F(GraphWithGraphviz, CutPictureOfAProgramThatDiesIsAFailure)
{
    become("echo '<svg>'; kill -KILL $$\n");
    for (const std::vector<std::string> &through : {std::vector<std::string>{}, {"env", "--ignore-signal=CHLD"}}) {
        const auto outcome = draw("--format svg", through);
        EXPECT_EQ(outcome.status, 1);
        EXPECT_EQ(outcome.out, "");
        EXPECT_THAT(outcome.err, HasSubstr("failed: ended by signal 9"));
    }
}

TEST_F(GraphWithGraphviz, FewDescriptorsMakeAWholePictureOrAReason)
{
    become_echo();
    for (int descriptors = 5; descriptors <= 20; ++descriptors) {
        const file_in_folder file("empty", "");
        const std::string picture = file.folder() + "/picture";
        // The thread sanitizer needs descriptors to find out which of its reports are suppressed.
        const auto outcome = draw("--format svg --output " + picture, {"env", "TSAN_OPTIONS=report_bugs=0", "prlimit",
                                                                       "--nofile=" + std::to_string(descriptors)});
        EXPECT_EQ(text_of(picture), outcome.status == 0 ? "-Tsvg\n" : "") << descriptors;
        EXPECT_EQ(outcome.err.empty(), outcome.status == 0) << descriptors << ": " << outcome.err;
    }
}

} // namespace

// What --emit c writes: a program that compiles, and does to a node what was done to this one.
#include "dump_file.h"
#include "program.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <cstdlib>
#include <fstream>
#include <iterator>

namespace
{

using nlohmann::json;
using testing::HasSubstr;
using testing::StartsWith;

std::string text_of(const std::string &file)
{
    std::ifstream stream(file);
    return {std::istreambuf_iterator<char>(stream), {}};
}

// Shows what stands once the emitted program is through.
constexpr const char *witness = R"(#include <softnode/softnode.h>
#include <stdio.h>
#include <stdlib.h>

__attribute__((destructor)) static void tell(void)
{
    softnode_timing_settle(1000);
    char *document = softnode_snapshot_json();
    fputs(document, stderr);
    free(document);
}
)";

// A script, and the program that it is emitted as.
class Emitted : public testing::Test
{
protected:
    program_outcome emit(const std::string &script)
    {
        return run_kelctl({.arguments = {"run", "-", "--emit", "c", "--output", source(), "--json"}, .in = script});
    }

    program_outcome emit_up(const std::string &node, const std::vector<std::string> &options = {},
                            const std::map<std::string, std::string> &environment = {})
    {
        std::vector<std::string> all = {"--emit", "c", "--output", source()};
        all.insert(all.end(), options.begin(), options.end());
        return kelctl_up(node, environment, all);
    }

    std::string source() const
    {
        return folder_.folder() + "/emitted.c";
    }

    // Cuts off what the program does from the comment on.
    void end_at(const std::string &comment) const
    {
        std::string program = text_of(source());
        const size_t at = program.find("    /* " + comment + " */\n");
        ASSERT_NE(at, std::string::npos);
        std::ofstream(source()) << program.insert(at, "    return 0;\n");
    }

    bool compile() const
    {
        const std::string command =
            "cd '" + folder_.folder() +
            "' && " KEL_C_COMPILER " -std=c11 -Wall -Wextra -Werror -pedantic-errors -I'" KELCTL_SOURCE_DIR
            "/include' -I'" KELCTL_SOURCE_DIR "' emitted.c witness.c '" KEL_LIBRARY "' '" KEL_SOFTNODE
            "' -Wl,-rpath,'" KEL_LIBRARY_FOLDER "' -o emitted " KEL_SANITIZER_OPTION;
        return std::system(command.c_str()) == 0;
    }

    // The exit status; what it wrote is in files.
    int run() const
    {
        const std::string command = "cd '" + folder_.folder() + "' && ./emitted >out 2>err";
        const int status = std::system(command.c_str());
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

    std::string out() const
    {
        return text_of(folder_.folder() + "/out");
    }

    std::string err() const
    {
        return text_of(folder_.folder() + "/err");
    }

private:
    file_in_folder folder_{"witness.c", witness};
};

// Of the document that a script ends with.
json standing_after(const std::string &script)
{
    const auto outcome = run_kelctl({.arguments = {"run", "-", "--json"}, .in = script + "snapshot\n"});
    std::istringstream lines(outcome.out);
    std::string before_last;
    std::string last;
    for (std::string line; std::getline(lines, line);)
        before_last = std::exchange(last, line);
    return json::parse(before_last)["result"];
}

// What a node consists of, without what the timestamp thread does beside.
json lasting(const json &node)
{
    json kept;
    for (const char *key :
         {"schedulers", "queues", "paths", "pceps", "bindings", "groups", "interface", "globals", "restarts"})
        kept[key] = node.at(key);
    return kept;
}

const std::string everything = text_of(KELCTL_SOURCE_DIR "/examples/node.kel");

// The part of the example that builds up.
std::string building_up()
{
    return everything.substr(0, everything.find("# And back."));
}

TEST_F(Emitted, ProgramLeavesTheSameNode)
{
    const std::string script = building_up() + "ebcom path add 02:00:00:01:00:2a --port RLU4W\n"
                                               "abort 'a \"reason\" with ?? and \\\\ in it' --line 4000000000\n";
    ASSERT_EQ(emit(script).status, 0);
    ASSERT_TRUE(compile()) << text_of(source());
    EXPECT_EQ(run(), 0) << err();
    const json node = lasting(json::parse(err()));
    EXPECT_EQ(node["paths"].size(), 3u);
    EXPECT_EQ(node["restarts"].size(), 1u);
    EXPECT_EQ(node, lasting(standing_after(script)));
}

TEST_F(Emitted, ProgramTakesDownWhatTheScriptTookDown)
{
    ASSERT_EQ(emit(everything).status, 0);
    ASSERT_TRUE(compile()) << text_of(source());
    EXPECT_EQ(run(), 0) << err();
    EXPECT_EQ(json::parse(err())["schedulers"], json::array());
}

TEST_F(Emitted, ProgramHoldsEveryKindOfCall)
{
    const std::string script = building_up() + R"(
ebcom capabilities
ebcom scheduler handle 02:00:00:02:00:01
ebcom shaper add 02:00:00:02:00:03 --port RLU2P
ebcom shaper remove 02:00:00:02:00:03 --port RLU2P
ebcom timestamp offset --cycles -9223372036854775808 --frequency 4294967295
ebcom port channel RLU1P
ebcom qos dump
ebcom stats --variant text-second-name
ebcom stats --variant record
ebcom queue stats 02:00:00:02:00:01 --variant text-second-name
ebcom queue stats 02:00:00:02:00:01 --variant text-2
ebcom queue stats 02:00:00:02:00:01 --variant record
ebcom burst stats --queue 0x5c0000000d
pcep handles dump
pcep multicast queue
pcep locate 02:00:00:02:00:01
pcep stats 7 --variant text-second-name
pcep stats 7 --variant record
pcep stats 7 --variant record-second-name
pcep stats 7 --variant driver-kit-record
trace message 'port=6' --prefix bring_up
trace message 'in a list' --variant list
trace message 'again in a list' --variant list
trace point
)";
    const dump_file_removed afterwards;
    ASSERT_EQ(emit(script).status, 0);
    ASSERT_TRUE(compile()) << text_of(source());
    EXPECT_EQ(run(), 0) << err();
    EXPECT_THAT(out(), HasSubstr("bring_up(): port=6\n"));
    EXPECT_THAT(out(), HasSubstr("again in a list\n"));
    EXPECT_THAT(out(), HasSubstr("EBCOM Queue statistics version 2"));
}

TEST_F(Emitted, ProgramExpectsTheCodeOfAFailedCall)
{
    EXPECT_EQ(emit("pcep start\npcep remove 7\n").status, 1);
    EXPECT_THAT(text_of(source()), HasSubstr("    expect(4, \"kel_core_ic_pcep_rem\", kel_core_ic_pcep_rem(7));\n"));
    ASSERT_TRUE(compile());
    EXPECT_EQ(run(), 0) << err();
}

TEST_F(Emitted, ProgramEndsWhereACallReturnsSomethingElse)
{
    EXPECT_EQ(emit("fault add kel_init_attach=10\npcep start\n").status, 1);
    ASSERT_TRUE(compile());
    EXPECT_EQ(run(), 1);
    EXPECT_THAT(err(), StartsWith("kel_core_ic_pcep_start() returned 0, not 10\n"));
}

const std::string whole_node = text_of(KELCTL_SOURCE_DIR "/examples/node.toml");

TEST_F(Emitted, ProgramOfUpMakesTheSameNode)
{
    const auto outcome = emit_up(whole_node, {"--json"});
    ASSERT_EQ(outcome.status, 0);
    end_at("Its counters.");
    ASSERT_TRUE(compile()) << text_of(source());
    EXPECT_EQ(run(), 0) << err();
    EXPECT_EQ(lasting(json::parse(err())), lasting(json::parse(outcome.out)["result"]["node"]));
}

TEST_F(Emitted, ProgramOfUpReadsTheCountersAndTakesDown)
{
    ASSERT_EQ(emit_up(whole_node).status, 0);
    ASSERT_TRUE(compile()) << text_of(source());
    EXPECT_EQ(run(), 0) << err();
    EXPECT_THAT(out(), HasSubstr("EBCOM global statistics"));
    const json left = json::parse(err());
    EXPECT_EQ(left["schedulers"], json::array());
    EXPECT_EQ(left["pceps"], json::array());
    EXPECT_EQ(left["interface"], nullptr);
}

TEST_F(Emitted, ProgramOfUpLeavesStandingWhatUpKept)
{
    const std::map<std::string, std::string> fault = {{"KEL_SOFTNODE_FAULTS", "ork_ebcom_pcep_create:2=-8"}};
    const auto outcome = emit_up(whole_node, {"--keep", "--json"}, fault);
    ASSERT_EQ(outcome.status, 1);
    ASSERT_TRUE(compile()) << text_of(source());
    setenv("KEL_SOFTNODE_FAULTS", "ork_ebcom_pcep_create:2=-8", 1);
    EXPECT_EQ(run(), 0) << err();
    unsetenv("KEL_SOFTNODE_FAULTS");
    const json left = json::parse(err());
    EXPECT_EQ(left["pceps"].size(), 1u);
    EXPECT_GT(left["paths"].size(), 0u);
    EXPECT_THAT(text_of(source()), testing::Not(HasSubstr("Down again")));
}

TEST_F(Emitted, NeedsAFileAndNamesOneThatCannotBeWritten)
{
    EXPECT_EQ(run_kelctl({.arguments = {"run", "-", "--emit", "c"}, .in = ""}).status, 2);
    const auto outcome = run_kelctl({.arguments = {"run", "-", "--emit", "c", "--output", "/nowhere/a.c"}, .in = ""});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.err, "/nowhere/a.c: cannot be written: No such file or directory\n");
}

} // namespace

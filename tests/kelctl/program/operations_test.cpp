// Every command of the table, with the arguments of its example, in the life of one node on the software accelerator.
#include "dump_file.h"
#include "kelctl/commands/commands.h"
#include "program.h"
#include "temporary_folder.h"
#include "tests/notation/print.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <regex>
#include <set>
#include <sstream>

namespace
{

using namespace kelctl;

// The order in which they all succeed.
constexpr std::string_view life_of_a_node[] = {
    "help",
    "ports",
    "codes",
    "limits",
    "check",
    "plan",
    "mpid",
    "ebcom capabilities",
    "ebcom params set",
    "ebcom interface create",
    "ebcom start",
    "ebcom timestamp offset",
    "ebcom path add",
    "ebcom shaper add",
    "ebcom queue handle",
    "ebcom scheduler handle",
    "ebcom port channel",
    "ebcom queue stats",
    "ebcom burst stats",
    "ebcom stats",
    "ebcom qos dump",
    "pcep start",
    "pcep multicast queue",
    "pcep locate",
    "pcep add",
    "pcep stats",
    "pcep handles dump",
    "snapshot",
    "graph",
    "group add",
    "group member add",
    "ebcom path list",
    "ebcom queue list",
    "pcep list",
    "group list",
    "traffic offer",
    "traffic send",
    "traffic stream add",
    "watch",
    "time advance",
    "time show",
    "group member remove",
    "group remove",
    "pcep remove",
    "expect",
    "pcep stop",
    "ebcom shaper remove",
    "ebcom path remove",
    "ebcom stop",
    "ebcom qos init",
    "ebcom qos deinit",
    "ebcom interface delete",
    "apply",
    "diff",
    "export",
    "trace message",
    "trace point",
    "abort",
    "fault functions",
    "fault add",
    "fault list",
    "fault release",
    "fault clear",
    "node reset",
    "exit",
};

// A line for each variant of each command.
std::string script_of_all()
{
    std::string script;
    for (const std::string_view name : life_of_a_node) {
        const command *row = commands().find(name);
        for (const variant &one : row->variants) {
            script += row->example;
            script += one.word.empty() ? "\n" : " --variant " + std::string(one.word) + "\n";
        }
    }
    return script;
}

program_outcome run_script(const std::string &script, const std::vector<std::string> &options = {})
{
    const temporary_folder folder; // for what they write
    std::filesystem::create_symlink(KELCTL_SOURCE_DIR "/examples", folder.path() + "/examples");
    const dump_file_removed afterwards;
    return run_kelctl(
        {.arguments = with({"run", "-"}, options), .environment = {}, .folder = folder.path(), .in = script});
}

TEST(Operations, LifeOfANodeHasEveryCommandOfAScript)
{
    std::set<std::string_view> expected;
    for (const command &row : commands().rows())
        if (row.allowed_in(source::script))
            expected.insert(row.name);
    EXPECT_EQ(std::set<std::string_view>(std::begin(life_of_a_node), std::end(life_of_a_node)), expected);
}

TEST(Operations, EveryCommandAndVariantSucceeds)
{
    const auto outcome = run_script(script_of_all());
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.err, "");
}

TEST(Operations, EveryCommandAndVariantHasOneDocument)
{
    const std::string script = script_of_all();
    const auto outcome = run_script(script, {"--json"});
    std::istringstream asked(script);
    const std::regex step_of_a_watch("\\{\"watch\":.*\n");
    std::istringstream printed(std::regex_replace(outcome.out, step_of_a_watch, ""));
    size_t count = 0;
    for (std::string line, document; std::getline(asked, line) && std::getline(printed, document); ++count) {
        const auto parsed = notation::try_read_json(document);
        ASSERT_TRUE(parsed && parsed->is_object()) << document;
        const std::string expecting =
            parsed->find("expected") ? "expect " + std::to_string(parsed->at("expected").number<uint32_t>()) + " " : "";
        EXPECT_TRUE(line.starts_with(expecting + parsed->at("command").text())) << line;
        EXPECT_EQ(parsed->at("ok"), true) << line;
        EXPECT_TRUE(parsed->at("result").is_object()) << line;
    }
    EXPECT_GT(count, 50u);
    EXPECT_EQ(outcome.err, "");
}

TEST(Operations, HelpOnWhatIsNoCommandHereIsAMistake)
{
    for (const std::string words : {"nothing", "up"}) {
        const auto outcome = run_text("help " + words + "\n");
        EXPECT_EQ(outcome.status, 2);
        EXPECT_THAT(outcome.err, testing::HasSubstr("unknown command \"" + words + "\""));
    }
}

TEST(Operations, ExampleScriptShowsWhatIsExpected)
{
    const auto outcome =
        run_kelctl({.arguments = {"run", "examples/node.kel"}, .environment = {}, .folder = KELCTL_SOURCE_DIR});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(outcome.out, text_of(KELCTL_EXPECTED_DIR "/run_example.expected"));
}

TEST(Operations, ExampleScriptHasTheDocumentsThatAreExpected)
{
    const auto outcome = run_kelctl(
        {.arguments = {"--json", "run", "examples/node.kel"}, .environment = {}, .folder = KELCTL_SOURCE_DIR});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(outcome.out, text_of(KELCTL_EXPECTED_DIR "/run_example_json.expected"));
}

} // namespace

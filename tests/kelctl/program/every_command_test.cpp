// What every command shows, as text and as JSON, compared as a whole with the files beside this one. After a change that
// is meant, write them anew and look at the difference:
//
//     KELCTL_WRITE_EXPECTED=1 build/dev/bin/kelctl-program-tests --gtest_filter='EveryCommand.*'
#include "dump_file.h"
#include "kelctl/commands/commands.h"
#include "kelctl/jobs/script.h"
#include "program.h"
#include "tests/notation/print.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <regex>
#include <set>
#include <sstream>

namespace
{

constexpr const char *script = "tests/kelctl/program/every_command.kel";

// Lines of the library's sources are none of kelctl's business.
std::string without_line_numbers(const std::string &text)
{
    return std::regex_replace(text, std::regex("\\.cpp:[0-9]+"), ".cpp:0");
}

void expect_same(const std::string &name, const std::string &text)
{
    const std::string file = std::string(KELCTL_EXPECTED_DIR "/") + name + ".expected";
    if (std::getenv("KELCTL_WRITE_EXPECTED"))
        std::ofstream(file) << without_line_numbers(text);
    EXPECT_EQ(without_line_numbers(text), text_of(file)) << name;
}

bool is_command(const std::string &line)
{
    const kelctl::script one = kelctl::parse_script(kelctl::commands(), line);
    return one.problems.empty() && one.lines.size() == 1;
}

// Commands stay in one line, so that they can be copied.
std::string without_commands(const std::string &text)
{
    std::string others;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);)
        others += is_command(line) ? "" : line + "\n";
    return others;
}

program_outcome run_script(const std::vector<std::string> &options = {})
{
    const dump_file_removed afterwards;
    return run_kelctl({.arguments = with({"run", script, "--keep-going"}, options), .folder = KELCTL_SOURCE_DIR});
}

TEST(EveryCommand, IsInTheScript)
{
    std::set<std::string_view> run;
    const kelctl::script parsed =
        kelctl::parse_script(kelctl::commands(), text_of(std::string(KELCTL_SOURCE_DIR "/") + script));
    for (const kelctl::invocation &line : parsed.lines) {
        run.insert(line.row->name);
        if (line.expected)
            run.insert(kelctl::expect_name);
    }
    for (const kelctl::command &row : kelctl::commands().rows())
        EXPECT_EQ(run.contains(row.name), row.allowed_in(kelctl::source::script)) << row.name;
}

TEST(EveryCommand, ShowsTextAsExpectedInEightyColumns)
{
    const program_outcome outcome = run_script();
    EXPECT_EQ(outcome.status, 1); // some lines are there to fail
    expect_same("every_command", outcome.out);
    expect_same("every_command_errors", outcome.err);
    EXPECT_LE(widest_line(without_commands(outcome.out)), 80u);
}

void expect_documents_with_the_same_keys(const std::string &text)
{
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        const notation::document document = notation::read_json(line);
        if (document.find("watch"))
            continue; // a step of the live view, before the document
        for (const char *key : {"command", "arguments", "ok", "code", "text", "result"})
            EXPECT_TRUE(document.find(key)) << key << " in " << line.substr(0, 100);
        // What failed in a script is shown by its lines, and a difference is no failure.
        const bool shown = document.find("failure") || document.find("error") || document.at("command") == "run" ||
                           (document.at("command") == "diff" && !document.at("result").at("differences").empty());
        EXPECT_EQ(!document.at("ok").boolean(), shown) << line.substr(0, 100);
    }
}

TEST(EveryCommand, ShowsJsonAsExpectedAndNothingElse)
{
    const program_outcome outcome = run_script({"--json"});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.err, "");
    expect_same("every_command_json", outcome.out);
    expect_documents_with_the_same_keys(outcome.out);
}

TEST(EveryCommand, OfAWholeNodeShowsJsonAsExpected)
{
    const program_outcome outcome =
        run_kelctl({.arguments = {"up", "examples/node.toml", "--json"}, .folder = KELCTL_SOURCE_DIR});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.err, "");
    expect_same("up_example_json", outcome.out);
}

} // namespace

// What is shown fits the terminal: no line is wider, and none is broken within a word. These lines may be wider:
//
// - one word: the name of a file or of a function, the octets of a record;
// - the script that `plan` prints, which is there to be run or pasted, and JSON and DOT, which programs read.
#include "dump_file.h"
#include "made_capture.h"
#include "temporary_folder.h"
#include "terminal_session.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <regex>
#include <sstream>

namespace
{

using testing::Each;
using testing::HasSubstr;
using testing::SizeIs;

constexpr unsigned short narrow = 40;
constexpr unsigned short wide = 120;

// The lines of a screen, and of one that is redrawn each drawing, without what takes no room.
std::vector<std::string> lines_of(const std::string &screen)
{
    std::istringstream text(std::regex_replace(std::regex_replace(screen, std::regex("\x1b\\[[?0-9;]*[a-zA-Z]"), ""),
                                               std::regex("\r"), "\n"));
    std::vector<std::string> lines;
    for (std::string line; std::getline(text, line);)
        lines.push_back(line);
    return lines;
}

std::string screen_of(const std::vector<std::string> &lines)
{
    std::string text;
    for (const std::string &line : lines)
        text += line.empty() ? "" : line + "\n";
    return text;
}

std::vector<std::string> shown(const program_run &run, unsigned short columns)
{
    terminal_session terminal(run, columns);
    terminal.wait_for_end();
    return lines_of(terminal.screen());
}

bool is_one_word(const std::string &line)
{
    return line.find(' ', std::min(line.find_first_not_of(' '), line.size())) == std::string::npos;
}

void expect_fits(const std::vector<std::string> &lines, size_t columns)
{
    EXPECT_GT(lines.size(), 1u);
    for (const std::string &line : lines)
        EXPECT_TRUE(line.size() <= columns || is_one_word(line)) << line;
}

size_t widest(const std::vector<std::string> &lines)
{
    return std::ranges::max(lines, {}, &std::string::size).size();
}

struct fitting {
    const char *name;
    std::vector<std::string> arguments;
    std::string faults = {};
    bool fills_wide_lines = false; // it has text that is longer
};

const fitting commands[] = {
    {"Nothing", {}},
    {"Help", {"help"}},
    {"HelpOfACommand", {"help", "up"}, "", true},
    {"HelpOfAGroup", {"help", "ebcom"}},
    {"HelpOfManyOptions", {"traffic", "stream", "add", "--help"}},
    {"Tables", {"codes"}},
    {"WideRows", {"fault", "functions"}},
    {"WrongWords", {"ebcom", "path", "add", "02:00:00:02:00:01", "--port", "RLU1P", "--burst", "many"}},
    {"CommandInQuotes", {"ebcom start"}},
    {"WrongRule", {"fault", "add", "ork_bnd=-4"}},
    {"MissingFile", {"up", "nosuch.toml"}},
    {"WrongFile", {"check", "tests/fuzz/corpus/kelctl-node-file/every-mistake.toml", "--all"}, "", true},
    {"Node", {"up", "examples/node.toml"}},
    {"LiveView", {"up", "examples/node.toml", "--watch", "--interval", "0s", "--for", "400ms"}},
    {"Records", {"up", "examples/node.toml", "--trace"}},
    {"Failure", {"up", "examples/node.toml"}, "ork_ebcom_pcep_path_create:3=-4"},
    {"FailureKept", {"up", "examples/node.toml", "--keep"}, "ork_ebcom_pcep_path_create:3=-4"},
    {"FailuresOfTheTakeDown", {"up", "examples/node.toml"}, "ork_ebcom_pcep_path_delete=-4", true},
    {"SingleFailure", {"ebcom", "path", "add", "02:00:00:02:00:01", "--port", "RLU1P"}},
    {"UnreadableRules", {"pcep", "start"}, "@/nowhere"},
    {"UnmatchedRules", {"pcep", "start"}, "ork_ebcom_pcep_path_create:3=-4"},
};

class TerminalWidth : public testing::TestWithParam<fitting>
{
};

TEST_P(TerminalWidth, IsKept)
{
    const auto &[name, arguments, faults, fills_wide_lines] = GetParam();
    const program_run run = {
        .arguments = arguments, .environment = {{"KEL_SOFTNODE_FAULTS", faults}}, .folder = KELCTL_SOURCE_DIR};
    expect_fits(shown(run, narrow), narrow);
    const auto lines = shown(run, wide);
    expect_fits(lines, wide);
    EXPECT_TRUE(!fills_wide_lines || widest(lines) > 80);
}

INSTANTIATE_TEST_SUITE_P(Of, TerminalWidth, testing::ValuesIn(commands),
                         [](const auto &row) { return std::string(row.param.name); });

// Commands stay in one line, so that they can be copied.
bool shows_commands(const std::string &line)
{
    return line.starts_with("plan ") || line == "export --script" || line.ends_with(" --dry-run");
}

// The script of every command, but for those that show commands.
TEST(TerminalWidths, EveryCommandKeepsThem)
{
    std::istringstream every(text_of(std::string(KELCTL_EXPECTED_DIR "/every_command.kel")));
    std::string script;
    for (std::string line; std::getline(every, line);)
        script += shows_commands(line) ? "" : line + "\n";
    const file_in_folder file("script", script);
    const dump_file_removed afterwards;
    for (const unsigned short columns : {narrow, wide})
        expect_fits(
            shown({.arguments = {"run", file.folder() + "/script", "--keep-going"}, .folder = KELCTL_SOURCE_DIR},
                  columns),
            columns);
}

TEST(TerminalWidths, ReplayKeepsThem)
{
    const temporary_folder folder;
    std::ofstream(folder.path() + "/node.toml")
        << ebcom_table << "[[path]]\ndst_mac = \"02:00:00:02:00:01\"\nport = \"RLU1P\"\n";
    std::ofstream(folder.path() + "/in.pcap", std::ios::binary)
        << pcap_of({{1, frame_to(1, 96)}, {2, frame_to(1, 1'600)}, {3, frame_to(2, 96)}});
    for (const unsigned short columns : {narrow, wide}) {
        const auto lines = shown(
            {.arguments = {"traffic", "replay", "node.toml", "in.pcap", "--out", "out.pcap"}, .folder = folder.path()},
            columns);
        expect_fits(lines, columns);
        EXPECT_THAT(screen_of(lines), HasSubstr("largest"));
    }
}

TEST(TerminalWidths, SweepKeepsThem)
{
    const file_in_folder script("script", "ebcom interface create\npcep start\n"
                                          "pcep add 7 --remote-id 9 --local 02:00:00:03:00:01 "
                                          "--remote 02:00:00:02:00:01 --vlan 100\n");
    const program_run sweep = {.arguments = {"sweep", "script"}, .folder = script.folder()};
    expect_fits(shown(sweep, narrow), narrow);
    const auto lines = shown(sweep, wide);
    expect_fits(lines, wide);
    EXPECT_GT(widest(lines), 80u);
}

TEST(TerminalWidths, ShellKeepsThem)
{
    const temporary_folder state;
    for (const unsigned short columns : {narrow, wide}) {
        terminal_session shell({.arguments = {"shell", "examples/node.toml"},
                                .environment = {{"XDG_STATE_HOME", state.path()}},
                                .folder = KELCTL_SOURCE_DIR},
                               columns);
        shell.wait_for("kelctl> ");
        shell.type("fault \t");
        shell.wait_for("release");
        shell.type("list\r");
        shell.wait_for("kelctl> ");
        shell.type("pcep remove 200\r");
        shell.wait_for("kelctl> ");
        shell.type("quit\r");
        EXPECT_EQ(shell.wait_for_end(), 0);
        expect_fits(lines_of(shell.screen()), columns);
    }
}

TEST(TerminalWidths, TakeDownSummariesFillTheLine)
{
    const program_run up = {.arguments = {"up", "examples/node.toml", "--brief"},
                            .environment = {{"KEL_SOFTNODE_FAULTS", "ork_ebcom_pcep_path_delete=-4"}},
                            .folder = KELCTL_SOURCE_DIR};
    EXPECT_THAT(screen_of(shown(up, narrow)), HasSubstr("\nundone: 5 group members removed,\n"
                                                        "        2 multicast groups removed,\n"
                                                        "        4 PCEPs removed,\n"));
    EXPECT_THAT(screen_of(shown(up, wide)),
                HasSubstr("\nundone: 5 group members removed, 2 multicast groups removed, 4 PCEPs removed, "
                          "PCEP service stopped, 1 path removed,\n"));
}

TEST(TerminalWidths, CallsAreBrokenBeforeTheirArguments)
{
    const auto lines =
        shown({.arguments = {"ebcom", "path", "remove", "02:00:00:02:00:01", "--port", "RLU1P"}}, narrow);
    EXPECT_THAT(screen_of(lines), HasSubstr("failed: kel_core_ic_ebcom_path_rem(\n"
                                            "    dst_mac=02:00:00:02:00:01,\n"
                                            "    port=RLU1P (6), unshaped)\n"));
}

} // namespace

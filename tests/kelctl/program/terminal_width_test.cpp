// What is told on a terminal of 80 columns: no word is torn apart at its edge.
#include "terminal_session.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <regex>
#include <sstream>

namespace
{

using testing::HasSubstr;

// Without what takes no room.
std::string seen(const terminal_session &terminal)
{
    return std::regex_replace(terminal.screen(), std::regex("\x1b\\[[0-9;]*[a-zA-Z]|\r"), "");
}

void expect_narrow(const std::string &text)
{
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);)
        EXPECT_LE(line.size(), 80u) << line;
}

TEST(TerminalWidth, FailureReportsAreFolded)
{
    const file_in_folder file("node.toml",
                              ebcom_table + "[[path]]\ndst_mac = \"02:00:00:02:00:01\"\nport = \"RLU1P\"\n");
    terminal_session up({.arguments = {"up", "node.toml"},
                         .environment = {{"KEL_SOFTNODE_FAULTS", "ork_ebcom_pcep_path_create=-4"}},
                         .folder = file.folder()});
    up.wait_for("Taken down.");
    EXPECT_EQ(up.wait_for_end(), 1);
    expect_narrow(seen(up));
    EXPECT_THAT(seen(up), HasSubstr("node.toml:5: failed: kel_core_ic_ebcom_path_add(dst_mac=02:00:00:02:00:01,\n"
                                    "    port=RLU1P (6), unshaped)\n"));
}

TEST(TerminalWidth, LongMessagesAreFolded)
{
    terminal_session add({.arguments = {"fault", "add", "ork_bnd=-4"}});
    add.wait_for("vorn_tu_wait_event");
    EXPECT_EQ(add.wait_for_end(), 2);
    expect_narrow(seen(add));
}

} // namespace

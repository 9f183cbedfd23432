// `kelctl shell` on a terminal: prompt, editing, completion, history, signals.
#include "terminal_session.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>
#include <fstream>

namespace
{

using testing::HasSubstr;
using testing::Not;

const std::string prompt = "kelctl> ";
const std::string tab = "\t";
const std::string ctrl_c = "\x03";
const std::string ctrl_d = "\x04";
const std::string ctrl_e = "\x05";
const std::string ctrl_y = "\x19";
const std::string ctrl_u = "\x15"; // clears what is before the cursor
const std::string arrow_up = "\x1b[A";
const std::string arrow_left = "\x1b[D";
const std::string backspace = "\x7f";
const std::string bell = "\a";

class ShellOnTerminal : public testing::Test
{
protected:
    // A plain terminal, the editor as it is by itself, and a history of the test's own.
    program_run run(const std::vector<std::string> &arguments = {"shell"}) const
    {
        return {.arguments = arguments,
                .environment = {{"TERM", "dumb"},
                                {"EDITRC", "/dev/null"},
                                {"NO_COLOR", "1"},
                                {"XDG_STATE_HOME", home.folder() + "/state"}},
                .folder = home.folder()};
    }

    std::string history() const
    {
        return home.folder() + "/state/kelctl/history";
    }

    const file_in_folder home{"node.toml", ebcom_table + "[[path]]\ndst_mac = \"02:00:00:02:0a:0b\"\nport = \"RLU1P\"\n"
                                                         "[[multicast]]\nid = 444\nmembers = []\n"};
};

TEST_F(ShellOnTerminal, RunsWhatIsTypedUntilCtrlD)
{
    terminal_session shell(run());
    shell.wait_for(prompt);
    shell.type("pcep locate 02:00:00:03:00:01" + enter);
    EXPECT_THAT(shell.wait_for(prompt), testing::EndsWith("location       HSFP" + line_end + "location code  3" +
                                                          line_end + "type           2" + line_end));
    shell.type(ctrl_d);
    EXPECT_EQ(shell.wait_for_end(), 0);
}

TEST_F(ShellOnTerminal, ExitAndQuitLeave)
{
    for (const char *word : {"exit", "quit"}) {
        terminal_session shell(run());
        shell.wait_for(prompt);
        shell.type(word + enter);
        EXPECT_EQ(shell.wait_for_end(), 0);
    }
}

TEST_F(ShellOnTerminal, QuestionMarkHelps)
{
    terminal_session shell(run());
    shell.wait_for(prompt);
    shell.type("? group mem" + tab);
    shell.wait_for("member ");
    shell.type(enter);
    EXPECT_THAT(shell.wait_for(prompt), HasSubstr("group member add      Add a PCEP to a multicast group"));
}

TEST_F(ShellOnTerminal, WrongAndFailingLinesAreToldAndItGoesOn)
{
    terminal_session shell(run());
    shell.wait_for(prompt);
    shell.type("ebcom pth" + enter);
    EXPECT_THAT(shell.wait_for(prompt), HasSubstr("unknown command \"ebcom pth\"; did you mean \"ebcom path\"?"));
    shell.type("pcep remove 7" + enter);
    EXPECT_THAT(shell.wait_for(prompt), HasSubstr("failed: kel_core_ic_pcep_rem(pcep_id=7)"));
    shell.type("trace message fine" + enter);
    EXPECT_THAT(shell.wait_for(prompt), HasSubstr(line_end + "fine" + line_end));
    shell.type(ctrl_d);
    EXPECT_EQ(shell.wait_for_end(), 0);
}

TEST_F(ShellOnTerminal, TabCompletesCommandsOptionsAndValues)
{
    terminal_session shell(run());
    shell.wait_for(prompt);
    for (const auto &[begun, completed] : {std::pair<std::string, std::string>{"ebc", "ebcom "},
                                           {"ebcom path a", "ebcom path add "},
                                           {"ebcom path add 02:00:00:02:00:01 --po", "02:00:00:02:00:01 --port "},
                                           {"ebcom port channel rlu1p", "RLU1P "},
                                           {"ebcom path remove x --port=rlu4q", "RLU4Q "},
                                           {"pcep stats 1 --format j", "--format json "},
                                           {"help ebcom cap", "help ebcom capabilities "},
                                           {"check no", "check node.toml "}}) {
        shell.type(begun + tab);
        shell.wait_for(completed);
        shell.type(ctrl_u);
    }
    shell.type(ctrl_d);
    EXPECT_EQ(shell.wait_for_end(), 0);
}

TEST_F(ShellOnTerminal, TabListsWhatIsPossibleWhereNothingIsCommon)
{
    terminal_session shell(run());
    shell.wait_for(prompt);
    shell.type("ebcom path " + tab);
    shell.wait_for(line_end + "add     remove  list    " + line_end);
    shell.wait_for(prompt + "ebcom path ");
}

TEST_F(ShellOnTerminal, TabCompletesWhatWasUsedAndWhatStands)
{
    terminal_session shell(run({"shell", "node.toml"}));
    EXPECT_THAT(shell.wait_for(prompt),
                testing::EndsWith("The node is up: 1 path, 0 PCEPs, 1 multicast group" + line_end));
    shell.type("ebcom queue handle 0" + tab);
    shell.wait_for("02:00:00:02:0a:0b ");
    shell.type(enter);
    shell.wait_for(prompt);
    shell.type("group remove 4" + tab);
    shell.wait_for("group remove 444 ");
    shell.type(ctrl_u + "ebcom burst stats --queue 0x" + tab);
    shell.wait_for("--queue 0x5d00000001 ");
    shell.type(ctrl_u + "pcep locate 0e:00:00:00:00:01" + enter);
    shell.wait_for(prompt);
    shell.type("pcep locate 0e" + tab);
    shell.wait_for("0e:00:00:00:00:01 ");
    shell.type(ctrl_u + ctrl_d);
    shell.wait_for("Taken down. The node is empty again.");
    EXPECT_EQ(shell.wait_for_end(), 0);
}

TEST_F(ShellOnTerminal, IdsAreOfWhatIsMeantAndInTheirOrder)
{
    terminal_session shell(run({"shell", "node.toml"}));
    shell.wait_for(prompt);
    for (const char *id : {"70", "7", "300"}) {
        shell.type(std::string("pcep remove ") + id + enter);
        shell.wait_for(prompt);
    }
    shell.type("group member add 444 " + tab);
    shell.wait_for(line_end + "7    70   300  " + line_end);
}

TEST_F(ShellOnTerminal, TabPutsInWhatIsCommonFirst)
{
    terminal_session shell(run());
    shell.wait_for(prompt);
    shell.type("group m" + tab);
    shell.wait_for("group member ");
    shell.type("x" + ctrl_u + "ebcom port channel rl" + tab + tab);
    shell.wait_for("RLU");
    shell.wait_for(line_end + "RLU1P  ");
}

TEST_F(ShellOnTerminal, OfManyWordsTheFirstAreListed)
{
    terminal_session shell(run());
    shell.wait_for(prompt);
    for (const char *line : {"ebcom start", "ebcom path add 02:00:00:03:00:00 --port RLU1P --count 5000"}) {
        shell.type(line + enter);
        shell.wait_for(prompt);
    }
    shell.type("ebcom path remove 02:" + tab + tab);
    shell.wait_for("02:00:00:03:00:c7  " + line_end + "and 4800 more" + line_end);
    shell.wait_for(prompt + "ebcom path remove 02:00:00:03:");
}

TEST_F(ShellOnTerminal, CharactersOfSeveralOctetsAreOne)
{
    for (const char *locale : {"C.UTF-8", "C", "no_LOCALE"}) {
        program_run asked = run();
        asked.environment["LC_ALL"] = locale;
        terminal_session shell(asked);
        shell.wait_for(prompt);
        shell.type("trace message 'z\xc3\xbc\xe2\x82\xac\xf0\x9f\x98\x80" + backspace + "ge'" + enter);
        shell.wait_for(line_end + "z\xc3\xbc\xe2\x82\xacge" + line_end);
        shell.wait_for(prompt);
        shell.type("trace message '\xff"
                   "a'" +
                   enter); // what is no character is passed over
        shell.wait_for(line_end + "a" + line_end);
    }
}

TEST_F(ShellOnTerminal, KeysAreAsTheFileOfThePersonSays)
{
    const file_in_folder keys{"keys", "kelctl:bind ^B ed-delete-prev-char\nother:bind ^A ed-newline\n"};
    program_run asked = run();
    asked.environment["EDITRC"] = keys.folder() + "/keys";
    terminal_session shell(asked);
    shell.wait_for(prompt);
    shell.type("trace message 'abc\x02\x01" + ctrl_e + "'" + enter);
    shell.wait_for(line_end + "ab" + line_end);
}

TEST_F(ShellOnTerminal, CtrlUClearsUpToTheCursorAndCtrlYPutsItBack)
{
    terminal_session shell(run());
    shell.wait_for(prompt);
    shell.type("x'fine'");
    for (int i = 0; i < 6; ++i)
        shell.type(arrow_left);
    shell.type(ctrl_u + "trace message " + ctrl_u + ctrl_y + enter);
    shell.wait_for(line_end + "fine" + line_end);
}

TEST_F(ShellOnTerminal, NothingPossibleRingsTheBell)
{
    terminal_session shell(run());
    shell.wait_for(prompt);
    shell.type("nothing" + tab);
    shell.wait_for("nothing" + bell);
}

TEST_F(ShellOnTerminal, CtrlCGivesTheLineUpAndTheNextOneIsRun)
{
    terminal_session shell(run());
    shell.wait_for(prompt);
    shell.type("trace message never" + ctrl_c);
    shell.wait_for("^C" + line_end + prompt);
    shell.type(ctrl_c);
    shell.wait_for("^C" + line_end + prompt);
    shell.type("trace message 'again'" + enter);
    EXPECT_THAT(shell.wait_for(prompt), testing::EndsWith(line_end + "again" + line_end));
    shell.type(ctrl_d);
    EXPECT_EQ(shell.wait_for_end(), 0);
    EXPECT_THAT(shell.screen(), Not(HasSubstr(line_end + "never" + line_end)));
}

TEST_F(ShellOnTerminal, CtrlCLeavesASearchThroughTheHistory)
{
    terminal_session shell(run());
    shell.wait_for(prompt);
    shell.type("\x12");
    shell.wait_for("bck:");
    shell.type(ctrl_c);
    shell.wait_for("^C" + line_end + prompt);
    shell.type("trace message 'again'" + enter);
    EXPECT_THAT(shell.wait_for(prompt), testing::EndsWith(line_end + "again" + line_end));
}

TEST_F(ShellOnTerminal, HistoryLastsFromOneShellToTheNext)
{
    {
        terminal_session first(run());
        first.wait_for(prompt);
        for (const std::string line : {"trace message one", "trace message two", "trace message two", "   "}) {
            first.type(line + enter);
            first.wait_for(prompt);
        }
        first.type(ctrl_d);
        EXPECT_EQ(first.wait_for_end(), 0);
    }
    using std::filesystem::perms;
    EXPECT_EQ(std::filesystem::status(history()).permissions(), perms::owner_read | perms::owner_write);

    terminal_session second(run());
    second.wait_for(prompt);
    second.type(arrow_up);
    second.wait_for("trace message two");
    second.type(arrow_up);
    second.wait_for("one"); // a line that is the same as before was kept once
    second.type(enter);
    EXPECT_THAT(second.wait_for(prompt), testing::EndsWith(line_end + "one" + line_end));
}

TEST_F(ShellOnTerminal, HistoryForgetsTheOldestOfAThousandLines)
{
    constexpr int kept = 1000;
    std::filesystem::create_directories(std::filesystem::path(history()).parent_path());
    {
        std::ofstream lines(history());
        for (int line = 1; line <= kept; ++line)
            lines << "trace message line-" << line << "-of-old\n";
    }
    terminal_session shell(run());
    shell.wait_for(prompt);
    shell.type("trace message 'new'" + enter);
    shell.wait_for(prompt);
    for (int up = 0; up < kept + 1; ++up)
        shell.type(arrow_up);
    shell.type(enter);
    EXPECT_THAT(shell.wait_for(line_end + prompt), testing::EndsWith(line_end + "line-2-of-old"));
}

TEST_F(ShellOnTerminal, HistoryThatIsNoFileIsToldOnce)
{
    std::filesystem::create_directories(history());
    terminal_session shell(run());
    EXPECT_THAT(shell.wait_for(prompt), HasSubstr("/state/kelctl/history: not a regular file"));
    shell.type("trace message one" + enter);
    EXPECT_THAT(shell.wait_for(prompt), Not(HasSubstr("history")));
    shell.type(arrow_up);
    shell.wait_for("trace message one");
}

TEST_F(ShellOnTerminal, HistoryOfAKilledShellIsThere)
{
    terminal_session first(run());
    first.wait_for(prompt);
    first.type("trace message kept" + enter);
    first.wait_for(prompt);
    first.send(SIGKILL);
    EXPECT_EQ(first.wait_for_end(), -1);

    terminal_session second(run());
    second.wait_for(prompt);
    second.type(arrow_up);
    second.wait_for("trace message kept");
}

TEST_F(ShellOnTerminal, TerminationTakesTheNodeDown)
{
    terminal_session shell(run({"shell", "node.toml"}));
    shell.wait_for(prompt);
    shell.send(SIGTERM);
    shell.wait_for("Taken down. The node is empty again.");
    EXPECT_EQ(shell.wait_for_end(), 0);
}

TEST_F(ShellOnTerminal, PastedLinesAreRunOneByOne)
{
    terminal_session shell(run());
    shell.wait_for(prompt);
    shell.type("trace message 'a'\rtrace message 'b'\r");
    shell.wait_for(line_end + "a" + line_end);
    shell.wait_for(line_end + "b" + line_end);
}

} // namespace

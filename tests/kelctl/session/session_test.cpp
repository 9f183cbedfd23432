// Commands carried out one after the other in this process.
#include "kelctl/session/session.h"

#include "kelctl/commands/commands.h"
#include "kelctl/language/command_line.h"
#include "kelctl/language/command_text.h"
#include "kelctl/library/trace_log.h"
#include "kelctl/results/result_document.h"
#include "notation/json.h"
#include "terminal/terminal.h"

#include <fmt/core.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>

namespace kelctl
{
namespace
{

using testing::ElementsAre;
using testing::HasSubstr;
using testing::internal::CaptureStderr;
using testing::internal::CaptureStdout;
using testing::internal::GetCapturedStderr;
using testing::internal::GetCapturedStdout;

class Session : public testing::Test
{
protected:
    // What it printed is in `out` and `err`.
    result carry_out(session &session, const std::string &line)
    {
        CaptureStdout();
        CaptureStderr();
        result done = session.carry_out(parse(commands(), words_of(line), source::shell));
        out = GetCapturedStdout();
        err = GetCapturedStderr();
        return done;
    }

    std::string out;
    std::string err;
};

TEST_F(Session, CountsCallsByFunctionAndCode)
{
    session session(commands(), source::shell, {.json = true});
    for (const char *line : {"ebcom port channel 6", "ebcom port channel 6", "ebcom port channel 0", "ports"})
        carry_out(session, line);
    EXPECT_THAT(session.operations, ElementsAre(std::pair(std::pair("kel_ic_ebcom_port_to_mac_chan", 0u), 2u),
                                                std::pair(std::pair("kel_ic_ebcom_port_to_mac_chan", 3u), 1u)));
}

TEST_F(Session, ResultIsShownAndGivenBack)
{
    session session(commands(), source::shell, {});
    const result done = carry_out(session, "pcep locate 02:00:00:02:00:01");
    EXPECT_EQ(done.status, exit_done);
    EXPECT_EQ(done.code, 0u);
    EXPECT_EQ(done.shown.at("location"), "OB");
    EXPECT_THAT(out, HasSubstr("location       OB\n"));
    EXPECT_EQ(err, "");
}

TEST_F(Session, FailureForWantOfAServiceSaysSo)
{
    constexpr const char *add = "ebcom path add 02:00:00:02:00:01 --port RLU1P";
    constexpr const char *hint = "  the EBCOM service is not started in this process: \"ebcom start\" starts it\n";
    session session(commands(), source::shell, {});
    EXPECT_EQ(carry_out(session, add).failures.front().hint, std::string(hint, 2, std::string(hint).size() - 3));
    EXPECT_THAT(err, testing::EndsWith(hint));
    carry_out(session, "ebcom start");
    EXPECT_EQ(carry_out(session, add).status, exit_done);
    EXPECT_THAT(carry_out(session, "ebcom path remove 02:00:00:02:00:02 --port RLU1P").failures.front().hint, "");
    carry_out(session, "ebcom path remove 02:00:00:02:00:01 --port RLU1P");
    carry_out(session, "ebcom stop");
    EXPECT_NE(carry_out(session, add).failures.front().hint, "");
}

TEST_F(Session, FailureOfWhatNeedsNoServiceHasNoHint)
{
    session session(commands(), source::shell, {});
    EXPECT_EQ(carry_out(session, "ebcom port channel 0").failures.front().hint, "");
}

TEST_F(Session, WrongUseEndsWithTheHelpOfTheCommand)
{
    session session(commands(), source::program, {});
    carry_out(session, "fault add");
    EXPECT_THAT(err, testing::EndsWith("kelctl: a RULE or --file is required\nSee \"kelctl fault add --help\".\n"));
}

TEST_F(Session, QuietPrintsFailuresOnly)
{
    session session(commands(), source::shell, {.quiet = true});
    carry_out(session, "trace message a");
    EXPECT_EQ(out + err, "");
    carry_out(session, "trace message a --json");
    EXPECT_EQ(out + err, "");
    carry_out(session, "ebcom port channel 0 --json");
    EXPECT_THAT(out, HasSubstr("\"ok\":false"));
    carry_out(session, "ebcom port channel 0");
    EXPECT_THAT(err, HasSubstr("failed: kel_ic_ebcom_port_to_mac_chan"));
}

TEST_F(Session, FailureIsAResult)
{
    session session(commands(), source::shell, {});
    const result done = carry_out(session, "ebcom port channel 0");
    EXPECT_EQ(done.status, exit_operation_failed);
    EXPECT_EQ(done.code, 3u);
    ASSERT_EQ(done.failures.size(), 1u);
    EXPECT_EQ(done.failures[0].operation, "kel_ic_ebcom_port_to_mac_chan(iell_port=0)");
    EXPECT_THAT(err, testing::HasSubstr("failed: kel_ic_ebcom_port_to_mac_chan(iell_port=0)\n"));
}

TEST_F(Session, ExceptionIsAnErrorOfItsCommand)
{
    const command row = {.name = "fail", .variants = {{.run = [](const invocation &, session &) -> result {
                                             throw std::runtime_error("Too many open files");
                                         }}}};
    session json(commands(), source::shell, {.json = true});
    CaptureStdout();
    const result done = json.carry_out({.row = &row, .chosen = &row.variants.front(), .given = {}});
    EXPECT_EQ(GetCapturedStdout(), R"({"command":"fail","arguments":{},"ok":false,"code":null,"text":null,"result":{},)"
                                   R"("error":{"message":"Too many open files","file":null,"line":null,"column":null}})"
                                   "\n");
    EXPECT_EQ(done.status, exit_operation_failed);
}

TEST_F(Session, AddressesIdsAndHandlesAreRemembered)
{
    session session(commands(), source::shell, {});
    carry_out(session, "pcep locate 02:00:00:02:00:01");
    carry_out(session, "pcep start");
    carry_out(session, "pcep remove 7");
    carry_out(session, "group add 300");
    carry_out(session, "traffic send 4 --frames 1 --octets 64");
    EXPECT_THAT(session.known.macs, ElementsAre(*parse_mac_address("02:00:00:02:00:01")));
    EXPECT_THAT(session.known.pceps, ElementsAre(7));
    EXPECT_THAT(session.known.groups, ElementsAre(300));
}

TEST_F(Session, JsonCountsForOneCommandOrForAll)
{
    session plain(commands(), source::shell, {});
    carry_out(plain, "trace message a --json");
    EXPECT_THAT(out, testing::StartsWith("{\"command\":\"trace message\""));
    EXPECT_FALSE(plain.json());
    carry_out(plain, "trace message b");
    EXPECT_EQ(out, "b\n");
}

TEST_F(Session, JsonOfTheProgramCountsForEveryCommand)
{
    session json(commands(), source::shell, {.json = true});
    EXPECT_TRUE(json.json());
    carry_out(json, "trace message a");
    EXPECT_THAT(out, testing::StartsWith("{\"command\":\"trace message\""));
    carry_out(json, "ebcom port channel 0");
    EXPECT_EQ(err, "");
}

TEST_F(Session, TraceCountsForOneCommand)
{
    session session(commands(), source::shell, {});
    if (!session.log().installed())
        GTEST_SKIP() << "there is no tracer on this machine";
    carry_out(session, "pcep start --trace");
    EXPECT_THAT(err, HasSubstr("FN_ENTER  PCEP    kel_core_ic_pcep_start()"));
    carry_out(session, "pcep start --trace --json");
    EXPECT_THAT(err, testing::StartsWith("{\"trace\":{\"event\":\"FN_ENTER\",\"domain\":\"PCEP\","));
    carry_out(session, "pcep start");
    EXPECT_EQ(err, "");
}

TEST_F(Session, PartsAreShownAtOnceAndKept)
{
    result whole;
    CaptureStdout();
    session plain(commands(), source::shell, {});
    plain.show_part(whole, {.shown = {{"a", 1}}, .text = "first"}, {});
    EXPECT_EQ(GetCapturedStdout(), "first\n");
    plain.show_part(whole, {.status = exit_operation_failed, .shown = {{"b", 2}}, .text = ""}, {});
    EXPECT_EQ(notation::to_json(whole.shown), R"({"a":1,"b":2})");
    EXPECT_EQ(whole.status, exit_operation_failed);
    EXPECT_TRUE(whole.shown_already);
}

TEST_F(Session, PartsOfAJsonDocumentAreNotShown)
{
    result whole;
    CaptureStdout();
    session(commands(), source::shell, {.json = true}).show_part(whole, {.shown = {{"a", 1}}, .text = "first"}, {});
    EXPECT_EQ(GetCapturedStdout(), "");
}

TEST_F(Session, QuietStreamsNothing)
{
    CaptureStdout();
    session(commands(), source::shell, {.json = true, .quiet = true}).stream({{"watch", 1}});
    session(commands(), source::shell, {.json = true}).stream({{"watch", 2}});
    EXPECT_EQ(GetCapturedStdout(), "{\"watch\":2}\n");
}

TEST_F(Session, WhatACommandMadeIsNoted)
{
    session session(commands(), source::shell, {.json = true});
    carry_out(session, "pcep start");
    carry_out(session, "pcep locate 02:00:00:02:00:01");
    ASSERT_EQ(session.made.all().size(), 1u);
    carry_out(session, "pcep stop");
    EXPECT_TRUE(session.made.all().empty());
}

TEST_F(Session, ExitFinishesIt)
{
    session session(commands(), source::shell, {});
    EXPECT_FALSE(session.finished);
    carry_out(session, "exit");
    EXPECT_TRUE(session.finished);
}

// ---- Between two processes ----

// Answers with what it was made with, and remembers who asked.
struct made_up_process : other_process {
    explicit made_up_process(answer its_answer) : given(std::move(its_answer))
    {
    }

    answer carry_out(const invocation &asked, const asker &whom) override
    {
        lines.push_back(text_of(asked));
        pages.push_back(whom.shown_on);
        return given;
    }

    fields ask(const fields &) override
    {
        throw std::runtime_error("there is no answer");
    }

    answer given;
    std::vector<std::string> lines = {};
    std::vector<page> pages = {};
};

const trace_entry record = {"FN_ENTER", "EBCOM", "f()", "f.cpp:1"};

TEST_F(Session, CommandCarriedOutElsewhereIsShownHere)
{
    made_up_process other({.done = {.shown = {{"location", "elsewhere"}}, .code = 0}});
    session session(commands(), source::shell, {});
    session.elsewhere = &other;
    EXPECT_EQ(carry_out(session, "pcep locate 02:00:00:02:00:01 --all").shown.at("location"), "elsewhere");
    EXPECT_EQ(out, "location  elsewhere\n");
    EXPECT_EQ(err, "");
    EXPECT_THAT(other.lines, ElementsAre("pcep locate 02:00:00:02:00:01"));
    EXPECT_EQ(other.pages.front().most_rows, std::nullopt);

    other.given.trace = {record};
    carry_out(session, "pcep locate 02:00:00:02:00:01 --trace --json");
    EXPECT_EQ(err, "no trace: the tracer is not installed on this machine\n" + json_line(record));
    EXPECT_THAT(out, HasSubstr("\"result\":{\"location\":\"elsewhere\"}"));
    carry_out(session, "pcep locate 02:00:00:02:00:01 --trace --json");
    EXPECT_EQ(err, json_line(record)) << "that there is no tracer is said once";
}

TEST_F(Session, CommandWithoutACodeIsAsItIsWhateverIsExpected)
{
    made_up_process other({.done = refused("no such node")});
    session session(commands(), source::shell, {});
    session.elsewhere = &other;
    const result done = carry_out(session, "expect 3 pcep locate 02:00:00:02:00:01");
    EXPECT_EQ(done.status, exit_operation_failed);
    EXPECT_EQ(err, "kelctl: no such node\n");
}

TEST_F(Session, PartsOfACommandElsewhereAreShownHere)
{
    result whole = {.status = exit_operation_failed, .shown_already = true, .remark = "is not shown again"};
    made_up_process other(
        {.done = whole, .parts = {{{.text = "first"}, {}}, {{.text = "", .remark = "second"}, {"node.toml", 7}}}});
    session session(commands(), source::shell, {});
    session.elsewhere = &other;
    EXPECT_EQ(carry_out(session, "time show").status, exit_operation_failed);
    EXPECT_EQ(out, "first\n");
    EXPECT_EQ(err, "node.toml:7: second\n");
}

TEST_F(Session, WhatNeedsNoNodeAndWhatHasOneStayHere)
{
    made_up_process other({});
    session session(commands(), source::program, {});
    session.elsewhere = &other;
    EXPECT_EQ(carry_out(session, "limits").status, exit_done);
    EXPECT_EQ(carry_out(session, "mpid 5").status, exit_operation_failed);
    EXPECT_EQ(err, "kelctl: \"mpid\" cannot be asked of the node of another process\n");
    EXPECT_THAT(other.lines, testing::IsEmpty());
}

TEST_F(Session, AnswersAnotherProcessAndShowsNothing)
{
    const command row = {.name = "long", .variants = {{.run = [](const invocation &, session &session) -> result {
                                             result whole;
                                             session.show_part(whole, {.shown = {{"a", 1}}, .text = "part"}, {"f", 2});
                                             whole.text = fmt::format("{}", *session.output_page().width);
                                             kel_ic_ebcom_port_to_mac_chan(0, nullptr);
                                             return whole;
                                         }}}};
    const invocation asked = {.row = &row, .chosen = &row.variants.front(), .given = {}};
    session session(commands(), source::program, {});
    CaptureStdout();
    CaptureStderr();
    const answer given = session.answer_to(asked, {{.paint = terminal::painter(false), .width = 33}, true});
    EXPECT_EQ(GetCapturedStdout() + GetCapturedStderr(), "");
    EXPECT_EQ(given.done.shown.at("a"), 1);
    EXPECT_EQ(*given.done.text, "33");
    EXPECT_TRUE(given.done.shown_already);
    ASSERT_EQ(given.parts.size(), 1u);
    EXPECT_EQ(*given.parts[0].part.text, "part");
    EXPECT_EQ(given.parts[0].from.line, 2u);
    EXPECT_EQ(given.tracer_installed, session.tracer_installed());
    EXPECT_EQ(given.trace.empty(), !given.tracer_installed);
    EXPECT_FALSE(session.json());
    EXPECT_EQ(session.where, source::program);
}

} // namespace
} // namespace kelctl

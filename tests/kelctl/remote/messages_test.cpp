// Requests and answers, there and back.
#include "kelctl/remote/messages.h"

#include "notation/json.h"
#include "terminal/terminal.h"

#include <gtest/gtest.h>

namespace kelctl
{
namespace
{

template <typename Message> fields sent(const Message &message)
{
    return notation::read_json(notation::to_json(message_of(message)));
}

TEST(CommandRequest, ArrivesWhole)
{
    const command_request asked = {
        .words = {"trace", "message", "a b", "\xff"},
        .whom = {.shown_on = {.paint = terminal::painter(true), .width = 60, .most_rows = std::nullopt},
                 .traces = true},
        .files = {{"rules", {"f:1=-4\n"}}, {"none", {"", "cannot be read: it is gone"}}}};
    const command_request arrived = request_of(sent(asked));
    EXPECT_EQ(arrived.words, asked.words);
    EXPECT_TRUE(arrived.whom.traces);
    EXPECT_TRUE(arrived.whom.shown_on.paint.colours());
    EXPECT_EQ(arrived.whom.shown_on.width, 60u);
    EXPECT_EQ(arrived.whom.shown_on.most_rows, std::nullopt);
    EXPECT_EQ(arrived.files.at("rules").text, "f:1=-4\n");
    EXPECT_EQ(arrived.files.at("rules").problem, "");
    EXPECT_EQ(arrived.files.at("none").problem, "cannot be read: it is gone");
}

TEST(CommandRequest, WordsAreEnough)
{
    const command_request asked = request_of(notation::read_json(R"({"command":["time","show"]})"));
    EXPECT_EQ(asked.words, (std::vector<std::string>{"time", "show"}));
    EXPECT_FALSE(asked.whom.traces);
    EXPECT_FALSE(asked.whom.shown_on.paint.colours());
    EXPECT_EQ(asked.whom.shown_on.width, std::nullopt);
    EXPECT_EQ(asked.whom.shown_on.most_rows, page{.paint = terminal::painter(false)}.most_rows);
}

TEST(CommandRequest, MayRefuseColours)
{
    EXPECT_FALSE(
        request_of(notation::read_json(R"({"command":[],"page":{"colours":false}})")).whom.shown_on.paint.colours());
}

TEST(CommandRequest, WrongOnesAreRefused)
{
    for (const char *wrong :
         {"{}", "7", R"({"command":[7]})", R"({"command":[],"trace":1})", R"({"command":[],"page":{"width":-1}})",
          R"({"command":[],"page":{"width":70000}})", R"({"command":[],"files":[{"name":"f"}]})"})
        EXPECT_THROW(request_of(notation::read_json(wrong)), notation::document_error) << wrong;
}

TEST(CommandAnswer, ArrivesWhole)
{
    const trace_entry record = {"FN_ENTER", "EBCOM", "f()", "f.cpp:1"};
    command_answer given;
    given.given.done = {.status = exit_operation_failed, .remark = "r"};
    given.given.parts = {{{.text = "first"}, {"node.toml", 4}}, {{.text = "second"}, {}}};
    given.given.trace = {record};
    given.given.tracer_installed = true;
    given.written = {{"node.png", std::string("\x89PNG\0", 5)}};

    const command_answer arrived = answer_of(sent(given));
    EXPECT_EQ(arrived.given.done.status, exit_operation_failed);
    EXPECT_EQ(arrived.given.done.remark, "r");
    ASSERT_EQ(arrived.given.parts.size(), 2u);
    EXPECT_EQ(*arrived.given.parts[0].part.text, "first");
    EXPECT_EQ(arrived.given.parts[0].from.file, "node.toml");
    EXPECT_EQ(arrived.given.parts[0].from.line, 4u);
    EXPECT_EQ(arrived.given.parts[1].from.file, "");
    ASSERT_EQ(arrived.given.trace.size(), 1u);
    EXPECT_EQ(to_text(arrived.given.trace[0]), to_text(record));
    EXPECT_TRUE(arrived.given.tracer_installed);
    EXPECT_EQ(arrived.written, given.written);
}

TEST(KnownWords, ArriveWhole)
{
    known_words known;
    known.macs = {mac_address{{2, 0, 0, 2, 0, 1}}};
    known.pceps = {7, 8};
    known.groups = {300};
    known.queues = {0x5d00000001};
    const known_words arrived = known_of(sent(known));
    EXPECT_EQ(arrived.macs, known.macs);
    EXPECT_EQ(arrived.pceps, known.pceps);
    EXPECT_EQ(arrived.groups, known.groups);
    EXPECT_EQ(arrived.queues, known.queues);
    EXPECT_EQ(arrived.schedulers, known.schedulers);
}

TEST(KnownWords, WhatIsNoAddressIsNotOffered)
{
    const known_words known = known_of(notation::read_json(
        R"({"macs":["02:00:00:02:00:01","here"],"pceps":[],"groups":[],"queues":[],"schedulers":[]})"));
    EXPECT_EQ(known.macs, (std::set{mac_address{{2, 0, 0, 2, 0, 1}}}));
}

TEST(QuestionForASample, NamesTheCountersThatAreWanted)
{
    EXPECT_EQ(notation::to_json(question_of({})), R"({"ask":"sample"})");
    EXPECT_EQ(notation::to_json(question_of({.port = 6, .pcep = 7})), R"({"ask":"sample","queue":6,"pcep":7})");
    const counted which = counted_of(question_of({.port = 6, .pcep = 7}));
    EXPECT_EQ(which.port, 6);
    EXPECT_EQ(which.pcep, 7u);
    EXPECT_EQ(counted_of(question_of({})).port, std::nullopt);
}

TEST(ErrorInAMessage, IsItsReason)
{
    EXPECT_EQ(error_in({{"error", "why"}}), "why");
    EXPECT_EQ(error_in({{"result", nullptr}}), "");
}

} // namespace
} // namespace kelctl

// Every kind of result, there and back: what arrives is shown as what was sent would be.
#include "kelctl/remote/result_message.h"

#include "kelctl/commands/commands.h"
#include "kelctl/results/result_document.h"
#include "kelctl/results/result_view.h"
#include "notation/json.h"
#include "script_session.h"
#include "temporary_folder.h"

#include <gtest/gtest.h>

namespace kelctl
{
namespace
{

const origin line = {"node.kel", 3};

result there_and_back(const result &sent)
{
    return result_of(notation::read_json(notation::to_json(message_of(sent))));
}

std::string shown_as_text(const result &done)
{
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    show(done, line, {.all = true}, true);
    const std::string out = testing::internal::GetCapturedStdout();
    return out + testing::internal::GetCapturedStderr();
}

void expect_arrives_whole(const result &sent, const invocation &of = asked("trace point"))
{
    const result arrived = there_and_back(sent);
    EXPECT_EQ(message_of(arrived), message_of(sent)) << of.row->name;
    EXPECT_EQ(arrived.status, sent.status) << of.row->name;
    EXPECT_EQ(arrived.shown_already, sent.shown_already) << of.row->name;
    EXPECT_EQ(shown_as_text(arrived), shown_as_text(sent)) << of.row->name;
    EXPECT_EQ(line_of(document_of(arrived, of, line, true)), line_of(document_of(sent, of, line, true)))
        << of.row->name;
}

TEST(ResultMessage, OfEveryCommandArrivesWhole)
{
    const temporary_folder folder;
    for (const command &row : commands().rows()) {
        if (row.carried_out != executor::node || !row.allowed_in(source::script))
            continue;
        script_session session;
        session.run("ebcom params set --mtu 1500 --ether-type 0x88b5 --settings 1,2");
        session.run("ebcom start");
        session.run("pcep start");
        invocation one = asked(std::string(row.example));
        if (one.given.has("--output"))
            one.given.set("--output", folder.path() + "/written");
        expect_arrives_whole(session.perform(one), one);
        session.run("node reset");
        session.run("pcep stop");
        session.run("ebcom stop");
    }
}

const trace_entry record = {"EXCEPTION", "GENERAL", "f(): limit reached, \"g\"\n", "kel_ic_pcep.cpp:9"};

TEST(ResultMessage, EveryMemberArrives)
{
    result all;
    all.status = exit_wrong_input;
    all.shown = {{"port", 6}, {"rate", 1.5}, {"low", -3}, {"bound", true}};
    all.shown["rows"].push_back({{"queue", nullptr}});
    all.code = 3;
    all.failures = {{"f(x=1)", 3, {record, record}, "start it"}, {"g()", 4, {}}};
    all.errors = {{"is wrong", "node.toml", {4, 7}}, {"no place"}, {"whole", "node.toml"}};
    all.warnings = {{"hardly meant", "node.toml", {1, 0}}};
    all.complaints = {record};
    all.stage = "take-down";
    all.remark = "2 problems\nnothing was started";
    expect_arrives_whole(all);
    EXPECT_EQ(there_and_back(all).failures[0].hint, "start it");
    EXPECT_EQ(there_and_back(all).errors[0].at, (position{4, 7}));
    EXPECT_EQ(there_and_back(all).errors[1].at, whole_file);

    all.shown_already = true;
    expect_arrives_whole(all);
}

TEST(ResultMessage, TextIsNoneEmptyPlainOrLaidOut)
{
    const std::optional<fields> texts[] = {std::nullopt, fields(""), fields("a\x1b[1mb"),
                                           fields(std::string("\xff\0\n", 3)), fields{{"queues", 3}}};
    for (const std::optional<fields> &text : texts) {
        const result sent = {.text = text};
        EXPECT_EQ(there_and_back(sent).text, text);
        expect_arrives_whole(sent);
    }
}

TEST(ResultMessage, NothingIsLittle)
{
    EXPECT_EQ(notation::to_json(message_of(result{})), R"({"status":0})");
    expect_arrives_whole({});
}

TEST(ResultMessage, WrongOnesAreRefused)
{
    for (const char *wrong :
         {"{}", "[]", "7", R"({"status":3})", R"({"status":-1})", R"({"status":"0"})", R"({"status":0,"code":-1})",
          R"({"status":0,"text":5})", R"({"status":0,"text":[]})", R"({"status":0,"failures":[{"code":1}]})",
          R"({"status":0,"complaints":[{}]})", R"({"status":0,"errors":[{"message":"m","line":"x"}]})"})
        EXPECT_THROW(result_of(notation::read_json(wrong)), notation::document_error) << wrong;
}

} // namespace
} // namespace kelctl

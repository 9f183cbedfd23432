// The JSON document: its keys and their order.
#include "kelctl/results/result_document.h"

#include "kelctl/commands/commands.h"
#include "kelctl/language/command_line.h"
#include "notation/json.h"
#include "platform/kei_util.h"

#include <gtest/gtest.h>

namespace kelctl
{
namespace
{

invocation asked(const char *line)
{
    return parse(commands(), words_of(line), source::script);
}

std::string text_of_code(uint32_t code)
{
    return kei_util_init_rc_str_get(code);
}

TEST(ResultDocument, SuccessHasTheSameKeysInTheSameOrder)
{
    result done;
    done.code = 0;
    done.shown = {{"vsi", 258}};
    EXPECT_EQ(notation::to_json(document_of(done, asked("ebcom interface create"), {}, true)),
              R"({"command":"ebcom interface create","arguments":{},"ok":true,"code":0,"text":")" + text_of_code(0) +
                  R"(","result":{"vsi":258}})");
}

TEST(ResultDocument, ArgumentsAreTypedAndNamedWithoutDashes)
{
    auto document = document_of({}, asked("ebcom path add 0200.0202.0001 --port rlu1p --rate 5 --burst 6"), {}, true);
    EXPECT_EQ(notation::to_json(document["arguments"]),
              R"({"mac":"02:00:02:02:00:01","port":6,"rate":5,"burst":6,"threshold":5120000})");
    EXPECT_EQ(notation::to_json(document_of({}, asked("ebcom params set --mtu 68 --ether-type 0x600 --settings 1,2"),
                                            {}, true)["arguments"]),
              R"({"mtu":68,"ether_type":1536,"settings":[1,2]})");
    EXPECT_EQ(notation::to_json(document_of({}, asked("ebcom burst stats --queue 0x5d"), {}, true)["arguments"]),
              R"({"queue":"0x5d"})");
    EXPECT_EQ(notation::to_json(document_of({}, asked("help ebcom start"), {}, true)["arguments"]),
              R"({"command":["ebcom","start"]})");
}

TEST(ResultDocument, BriefFailureHasNoRecords)
{
    const result done = {.status = exit_operation_failed, .failures = {{"f()", 13, {}}}};
    EXPECT_NE(document_of(done, asked("pcep start"), {}, true).at("failure").find("records"), nullptr);
    EXPECT_EQ(document_of(done, asked("pcep start --brief"), {}, true).at("failure").find("records"), nullptr);
}

TEST(ResultDocument, CommandWithoutALibraryFunctionHasNoCode)
{
    auto document = document_of({}, asked("ports"), {}, true);
    EXPECT_TRUE(document["code"].is_null());
    EXPECT_TRUE(document["text"].is_null());
}

TEST(ResultDocument, LineOfAScriptIsTold)
{
    auto document = document_of({}, asked("ports"), {"setup.kel", 7}, true);
    EXPECT_EQ(document["file"], "setup.kel");
    EXPECT_EQ(document["line"], 7);
}

result failing()
{
    result done;
    done.status = exit_operation_failed;
    done.code = 13;
    done.failures = {{"f(a=1)", 13, {{"EXCEPTION", "GENERAL", "f(): 0xffffffff - no, ork_bind", "x.cpp:1"}}},
                     {"g()", 3, {}}};
    return done;
}

TEST(ResultDocument, FailureIsExplainedAndOthersFollow)
{
    auto document = document_of(failing(), asked("ports"), {}, true);
    EXPECT_EQ(document["ok"], false);
    const fields record = {{"event", "EXCEPTION"},
                           {"domain", "GENERAL"},
                           {"message", "f(): 0xffffffff - no, ork_bind"},
                           {"location", "x.cpp:1"}};
    const fields refusal = {{"by", "driver kit"}, {"what", "ork_bind"}, {"code", -1}, {"text", "no"}};
    const fields expected = {{"operation", "f(a=1)"},    {"function", "f"},    {"code", 13},
                             {"text", text_of_code(13)}, {"refusal", refusal}, {"records", fields::array({record})}};
    EXPECT_EQ(notation::to_json(document["failure"]), notation::to_json(expected));
    ASSERT_EQ(document["further_failures"].size(), 1u);
    EXPECT_EQ(document["further_failures"][0]["operation"], "g()");
    EXPECT_TRUE(document["further_failures"][0]["refusal"].is_null());
}

TEST(ResultDocument, WithoutATracerThereAreNoRecordsRatherThanNone)
{
    EXPECT_TRUE(document_of(failing(), asked("ports"), {}, false)["failure"]["records"].is_null());
}

TEST(ResultDocument, ErrorsTellTheirPlacesAsFarAsTheyHaveThem)
{
    result wrong;
    wrong.status = exit_wrong_input;
    wrong.errors = {{"wrong", "a.toml", {3, 4}}, {"unreadable", "a.toml", whole_file}, {"odd", "", whole_file}};
    auto document = document_of(wrong, asked("check a.toml"), {}, true);
    EXPECT_EQ(notation::to_json(document["error"]), R"({"message":"wrong","file":"a.toml","line":3,"column":4})");
    EXPECT_EQ(notation::to_json(document["further_errors"]),
              R"([{"message":"unreadable","file":"a.toml","line":null,)"
              R"("column":null},{"message":"odd","file":null,"line":null,)"
              R"("column":null}])");
}

TEST(ResultDocument, LineThatIsNoCommandHasADocument)
{
    EXPECT_EQ(notation::to_json(document_of(input_error{"what?", "s.kel", {2, 0}})),
              R"({"command":null,"arguments":{},"ok":false,"code":null,"text":null,"result":{},)"
              R"("error":{"message":"what?","file":"s.kel","line":2,"column":null}})");
}

TEST(ResultDocument, OctetsThatAreNoTextAreReplaced)
{
    EXPECT_EQ(line_of({{"text", "a\xff"}}), "{\"text\":\"a\xef\xbf\xbd\"}\n");
}

} // namespace
} // namespace kelctl

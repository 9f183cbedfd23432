// The message formatter and the fatal path.
#include "kel/kel_trace.h"
#include "scripted_platform.h"
#include "transcript.h"

#include <gtest/gtest.h>

#include <string>
#include <thread>

namespace
{

constexpr const char *no_text = nullptr;

std::string format(const char *prefix_format, const char *prefix_arg, const char *body)
{
    return kel_trace_internal_format_str(prefix_format, prefix_arg, "%s", body);
}

} // namespace

TEST(Formatter, PrefixThenBody)
{
    EXPECT_STREQ(kel_trace_internal_format_str("%s(): ", "bring_up", "port=%d (%s)", 6, "RLU1P"),
                 "bring_up(): port=6 (RLU1P)");
}

TEST(Formatter, NullBodyYieldsExactlyThePrefix)
{
    EXPECT_STREQ(kel_trace_internal_format_str("%s()", "kel_core_ic_ebcom_stop", no_text), "kel_core_ic_ebcom_stop()");
}

TEST(Formatter, NullPrefixArgumentYieldsTheBodyAlone)
{
    EXPECT_EQ(format("%s(): ", no_text, "body"), "body");
}

TEST(Formatter, EmptyPrefixYieldsTheBodyAlone)
{
    EXPECT_EQ(format("%s", "", "body"), "body");
}

TEST(Formatter, PrefixThatCannotBeMadeYieldsTheBodyAlone)
{
    const wchar_t no_character[] = {0x7FFFFFFF, 0};
    EXPECT_EQ(format("%ls", reinterpret_cast<const char *>(no_character), "body"), "body");
}

TEST(Formatter, NullPrefixArgumentAndBodyShowTheMessageBefore)
{
    format("%s(): ", "one", "before");
    EXPECT_STREQ(kel_trace_internal_format_str("%s(): ", no_text, no_text), "one(): before");
}

TEST(Formatter, PrefixIsCutAt255CharactersAndTheBodyFollows)
{
    for (const size_t length : {254U, 255U, 256U, 300U, 2000U}) {
        const std::string prefix(length, 'p');
        EXPECT_EQ(format("%s", prefix.c_str(), "body"), prefix.substr(0, 255) + "body") << length;
    }
}

TEST(Formatter, PrefixIsCutInTheTextBehindItsArgumentToo)
{
    for (const size_t length : {251U, 252U, 253U, 254U, 255U}) {
        const std::string argument(length, 'p');
        EXPECT_EQ(format("%s(): ", argument.c_str(), "body"), (argument + "(): ").substr(0, 255) + "body") << length;
    }
}

TEST(Formatter, PrefixOfAnyFormatIsCutAt255CharactersToo)
{
    for (const size_t length : {253U, 254U, 255U, 300U}) {
        const std::string argument(length, 'p');
        EXPECT_EQ(format("[%s", argument.c_str(), "body"), ("[" + argument).substr(0, 255) + "body") << length;
    }
}

TEST(Formatter, PrefixMayHaveAnyFormat)
{
    EXPECT_EQ(format("[%s] ", "one", "body"), "[one] body");
    EXPECT_EQ(format("& ", "one", "body"), "& body"); // one character behind '%'
    EXPECT_EQ(format("%6s: ", "one", "body"), "   one: body");
    EXPECT_EQ(format("%s%%", "one", "body"), "one%body");
    EXPECT_EQ(format("", "one", "body"), "body");
    EXPECT_EQ(format("%s", "", "body"), "body");
}

TEST(Formatter, BodyIsCutAtTheEndOfTheBuffer)
{
    for (const size_t length : {1020U, 1021U, 1022U, 5000U}) {
        const std::string body(length, 'b');
        EXPECT_EQ(format("%s:", "p", body.c_str()), "p:" + body.substr(0, 1021)) << length;
    }
}

TEST(Formatter, LongestPrefixLeaves768CharactersForTheBody)
{
    const std::string prefix(255, 'p');
    const std::string body(1000, 'b');
    EXPECT_EQ(format("%s", prefix.c_str(), body.c_str()), prefix + body.substr(0, 768));
}

TEST(Formatter, EveryMessageOfAThreadUsesTheSameBuffer)
{
    const char *first = kel_trace_internal_format_str("%s()", "one", no_text);
    const char *second = kel_trace_internal_format_str("%s()", "two", no_text);
    EXPECT_EQ(first, second);
}

TEST(Formatter, EachThreadHasABufferOfItsOwn)
{
    const char *own = kel_trace_internal_format_str("%s()", "main", no_text);
    std::string other_text;
    const char *other = nullptr;
    std::thread([&] {
        other = kel_trace_internal_format_str("%s()", "other", no_text);
        other_text = other;
    }).join();
    EXPECT_STREQ(own, "main()");
    EXPECT_EQ(other_text, "other()");
    EXPECT_NE(own, other);
}

TEST(Tracepoint, DoesNothing)
{
    kel_tracepoint();
    EXPECT_EQ(transcript::take(), "");
}

TEST(Abort, RequestsARestartAndReturns)
{
    kel_abort_internal_abort(214, "/src/node.cpp", "no memory for %s (%d)", "paths", 3);
    const scripted::restart_request request = scripted::last_restart_request();
    EXPECT_EQ(request.line, 214U);
    EXPECT_EQ(request.file, "/src/node.cpp");
    EXPECT_EQ(request.one, 1U);
    EXPECT_EQ(request.reason, "no memory for paths (3)");
    EXPECT_EQ(request.zero, 0U);
    EXPECT_EQ(request.null, nullptr);
    transcript::expect(R"(
          > qol_ng_restart_request_line_and_file(no memory for paths (3))
    )");
}

TEST(Abort, ReasonIsCutAt127Characters)
{
    for (const size_t length : {126U, 127U, 128U, 1000U}) {
        const std::string reason(length, 'r');
        kel_abort_internal_abort(1, "file", "%s", reason.c_str());
        EXPECT_EQ(scripted::last_restart_request().reason, reason.substr(0, 127)) << length;
    }
}

TEST(Abort, IgnoresTheAnswerOfTheRestartService)
{
    scripted::fail("qol_ng_restart_request_line_and_file", -1);
    kel_abort_internal_abort(1, "file", "reason");
    EXPECT_EQ(scripted::calls_of("qol_ng_restart_request_line_and_file"), 1U);
}

// The wording of a given failure.
#include "kelctl/results/failure_report.h"

#include "platform/kei_util.h"
#include "terminal/terminal.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kelctl
{
namespace
{

const failure failed = {"do_it(port=6)",
                        7,
                        {{"API_CALL", "EBCOM", "do_it(): thing()", "file.cpp:12"},
                         {"EXCEPTION", "GENERAL", "do_it(): no, thing", "file.cpp:14"}}};

TEST(FailureReport, TellsOperationCodeTextAndRecords)
{
    EXPECT_EQ(records_of(failed, true, {terminal::painter(false)}) + report_of(failed, {terminal::painter(false)}),
              std::string("trace records of do_it():\n"
                          "    API_CALL  EBCOM   do_it(): thing()  (file.cpp:12)\n"
                          "    EXCEPTION GENERAL do_it(): no, thing  (file.cpp:14)\n"
                          "failed: do_it(port=6)\n"
                          "  code 7: ") +
                  kei_util_init_rc_str_get(7) +
                  "\n"
                  "  refused by the library itself: thing: no\n");
}

TEST(FailureReport, NamesTheRefusingCallWithItsOwnCode)
{
    const failure refused = {
        "do_it()", 13, {{"EXCEPTION", "GENERAL", "do_it(): 0xfffffffc - try again, ork_bind", "file.cpp:14"}}};
    EXPECT_THAT(report_of(refused, {terminal::painter(false)}),
                testing::HasSubstr("\n  refused by the driver kit: ork_bind, code -4 (0xfffffffc): try again\n"));
    const failure by_itself = {"do_it()", 6, {{"EXCEPTION", "GENERAL", "do_it(): no,  ", "file.cpp:14"}}};
    EXPECT_THAT(report_of(by_itself, {terminal::painter(false)}),
                testing::HasSubstr("\n  refused by the library itself: no\n"));
}

TEST(FailureReport, WithoutATracerOneLineSaysSo)
{
    EXPECT_EQ(records_of({"do_it()", 13, {}}, false, {terminal::painter(false)}),
              "no trace records: the tracer is not installed on this machine\n");
}

TEST(FailureReport, EndsWithWhatToDo)
{
    EXPECT_EQ(report_of({"do_it()", 13, {}, "do that first"}, {terminal::painter(false)}),
              std::string("failed: do_it()\n  code 13: ") + kei_util_init_rc_str_get(13) + "\n  do that first\n");
}

TEST(FailureReport, ItsFirstWordIsPainted)
{
    EXPECT_THAT(report_of({"do_it()", 7, {}}, {terminal::painter(true)}),
                testing::StartsWith("\x1b[1;31mfailed:\x1b[0m do_it()\n"));
}

TEST(FailureReport, IsFoldedToTheWidthOfItsPage)
{
    const failure long_one = {"do_it(dst_mac=02:00:00:02:00:01, port=RLU1P (6))",
                              7,
                              {{"API_CALL", "EBCOM", "do_it(): thing(handle=12)", "file.cpp:12"}}};
    EXPECT_EQ(records_of(long_one, true, {terminal::painter(false), 40}) +
                  report_of(long_one, {terminal::painter(false), 40}, "a.kel:3: "),
              std::string("trace records of do_it():\n"
                          "    API_CALL  EBCOM   do_it():\n"
                          "        thing(handle=12)  (file.cpp:12)\n"
                          "a.kel:3: failed:\n"
                          "    do_it(dst_mac=02:00:00:02:00:01,\n"
                          "    port=RLU1P (6))\n"
                          "  code 7: ") +
                  kei_util_init_rc_str_get(7) + "\n");
}

TEST(FailureReport, ColoursTakeNoRoom)
{
    const failure short_one = {"do_it(dst_mac=02:00:00:02:00:01)", 7, {}};
    const std::string plain = report_of(short_one, {terminal::painter(false), 40});
    const std::string painted = report_of(short_one, {terminal::painter(true), 40});
    EXPECT_THAT(plain, testing::StartsWith("failed: do_it(dst_mac=02:00:00:02:00:01)\n"));
    EXPECT_EQ(painted.substr(painted.find(" do_it(dst")), plain.substr(plain.find(" do_it(dst")));
}

} // namespace
} // namespace kelctl

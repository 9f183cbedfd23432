// The program that calls are written as.
#include "kelctl/c_program.h"

#include "kel/kel_core_ic_pcep.h"
#include "kelctl/library_call.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>

namespace kelctl
{
namespace
{

using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;

class CProgram : public testing::Test
{
protected:
    CProgram()
    {
        unsetenv("MPID");
    }

    c_program program;
};

TEST_F(CProgram, WithoutCallsDoesNothing)
{
    EXPECT_THAT(program.text(), EndsWith("\nint main(void)\n{\n    return 0;\n}\n"));
}

TEST_F(CProgram, CallsAreInTheirOrderWithTheirCodes)
{
    program.add("kel_core_ic_pcep_start", text_of_call(), 0);
    program.add("kel_core_ic_pcep_rem", text_of_call(value("pcep_id", 7u)), 4);
    EXPECT_THAT(program.text(), EndsWith("{\n    expect(0, \"kel_core_ic_pcep_start\", kel_core_ic_pcep_start());\n"
                                         "    expect(4, \"kel_core_ic_pcep_rem\", kel_core_ic_pcep_rem(7));\n"
                                         "    return 0;\n}\n"));
}

TEST_F(CProgram, WhatACallReadsAndWritesIsDeclaredAroundIt)
{
    const mac_address mac = {{2, 0, 0, 2, 0, 1}};
    void *handle = nullptr;
    program.add("kel_ic_ebcom_queue_handle_get", text_of_call(input("dst_mac", mac), output("handle", handle)), 0);
    EXPECT_THAT(program.text(), HasSubstr("    {\n"
                                          "        const uint8_t dst_mac[6] = {0x02, 0x00, 0x00, 0x02, 0x00, 0x01};\n"
                                          "        void *handle = 0;\n"
                                          "        expect(0, \"kel_ic_ebcom_queue_handle_get\", "
                                          "kel_ic_ebcom_queue_handle_get(dst_mac, &handle));\n"
                                          "    }\n"));
}

TEST_F(CProgram, TextsAreShown)
{
    std::array<char, 80> buffer{};
    program.add("text_get", text_of_call(text_output(buffer), value("format", 1u)), 0);
    EXPECT_THAT(program.text(), HasSubstr("        char text[80] = \"\";\n"
                                          "        expect(0, \"text_get\", text_get(text, sizeof text, 1));\n"
                                          "        fputs(text, stdout);\n"));
}

TEST_F(CProgram, WhatReturnsNoCodeIsNotChecked)
{
    program.add("kel_tracepoint", {.result = returned::nothing}, 0);
    EXPECT_THAT(program.text(), HasSubstr("{\n    kel_tracepoint();\n"));
}

TEST_F(CProgram, HelperIsDefinedOnce)
{
    call_text call = text_of_call(string_value{"body", "text"});
    call.result = returned::text;
    call.instead = {"helper", "static char *helper(const char *body);\n"};
    program.add("never_named", call, 0);
    program.add("never_named", call, 0);
    const std::string text = program.text();
    EXPECT_EQ(text.find(call.instead.definition), text.rfind(call.instead.definition));
    EXPECT_THAT(text, HasSubstr("    puts(helper(\"text\"));\n    puts(helper(\"text\"));\n"));
    EXPECT_THAT(text, Not(HasSubstr("never_named")));
}

TEST_F(CProgram, RemarksStandBetweenTheCalls)
{
    program.remark("First.");
    program.add("kel_core_ic_pcep_start", text_of_call(), 0);
    program.remark("Then.");
    EXPECT_THAT(program.text(), HasSubstr("{\n    /* First. */\n    expect(0, "));
    EXPECT_THAT(program.text(), HasSubstr("());\n\n    /* Then. */\n"));
}

TEST_F(CProgram, GetsTheOwnMpId)
{
    setenv("MPID", "5", 1);
    EXPECT_THAT(program.text(), HasSubstr("{\n    setenv(\"MPID\", \"5\", 1);\n"));
}

TEST_F(CProgram, ReportsTellWhatIsPassedIn)
{
    const mac_address mac = {{2, 0, 0, 2, 0, 1}};
    uint32_t out = 0;
    const call_text call = text_of_call(value("id", 7u), pointer{"queue", 0x5c}, input("mac", mac), output("out", out));
    EXPECT_THAT(call.told, testing::ElementsAre("id=7", "queue=0x5c", "mac=02:00:00:02:00:01"));
    EXPECT_THAT(call.arguments, testing::ElementsAre("7", "(void *)0x5c", "mac", "&out"));
}

} // namespace
} // namespace kelctl

// Commands written again.
#include "kelctl/language/command_text.h"

#include "script_session.h"

#include <gtest/gtest.h>

namespace kelctl
{
namespace
{

TEST(CommandText, ValuesAreWrittenWithTheirUnitsAndNames)
{
    EXPECT_EQ(
        text_of(asked("ebcom path add 0200.0002.0001 --port 6 --rate 100000 --burst=65536 --threshold 1024")),
        R"(ebcom path add 02:00:00:02:00:01 --port RLU1P --rate "100 Mbit/s" --burst "64 KiB" --threshold "1 KiB")");
    EXPECT_EQ(text_of(asked("ebcom params set --settings 1,2 --mtu 1500 --ether-type 35000")),
              "ebcom params set --mtu 1500 --ether-type 0x88b8 --settings 1,2");
    EXPECT_EQ(text_of(asked("time advance 1500us")), R"(time advance "1500 us")");
}

TEST(CommandText, PortWithoutANameIsItsNumber)
{
    EXPECT_EQ(text_of(asked("ebcom port channel 0")), "ebcom port channel 0");
}

TEST(CommandText, DefaultsAreLeftOut)
{
    EXPECT_EQ(text_of(asked("pcep add 7 --remote-id 9 --local 02:00:00:03:00:01 --remote 02:00:00:02:00:01 --vlan 1 "
                            "--priority 0")),
              "pcep add 7 --remote-id 9 --local 02:00:00:03:00:01 --remote 02:00:00:02:00:01 --vlan 1");
}

TEST(CommandText, WordsThatNeedQuotesHaveThem)
{
    EXPECT_EQ(text_of(asked(R"(trace message 'a "b" \ # c')")), R"(trace message "a \"b\" \\ # c")");
    EXPECT_EQ(text_of(asked(R"(trace message "")")), R"(trace message "")");
    EXPECT_EQ(text_of(asked("trace message --prefix up -- --text")), "trace message --prefix up -- --text");
}

TEST(CommandText, RawValuesComeBehindTheOptionThatAllowsThem)
{
    const char *text =
        "ebcom path add --raw 02:00:00:02:00:01 --port -1 --rate \"0 kbit/s\" --burst \"0 octets\" --shaping 0";
    EXPECT_EQ(text_of(asked(text)), text);
    EXPECT_THROW(asked("ebcom path add 02:00:00:02:00:01 --port -1"), wrong_line);
}

TEST(CommandText, CodeThatIsExpectedComesBeforeTheCommand)
{
    EXPECT_EQ(text_of(asked("expect 0x4 pcep remove 7")), "expect 4 pcep remove 7");
}

TEST(CommandText, WordByWordThereAreNoQuotes)
{
    EXPECT_EQ(words_of(asked(R"(trace message 'a "b"' --prefix "")")),
              (std::vector<std::string>{"trace", "message", "a \"b\"", "--prefix", ""}));
}

// What parse() reads is what it was made from, for every example of the table.
TEST(CommandText, IsReadAsTheSameCommand)
{
    for (const command &row : commands().rows()) {
        if (!row.allowed_in(source::script))
            continue;
        const invocation once = asked(std::string(row.example));
        const invocation again = asked(text_of(once));
        EXPECT_EQ(again.row, once.row) << row.example;
        EXPECT_EQ(again.chosen, once.chosen) << row.example;
        EXPECT_EQ(again.given, once.given) << row.example;
    }
}

} // namespace
} // namespace kelctl

// What the last word of a line may become.
#include "kelctl/completion.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kelctl
{
namespace
{

using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

const known_words known = {.macs = {*parse_mac_address("02:00:00:02:00:01"), *parse_mac_address("0a:00:00:00:00:01")},
                           .ids = {7, 70, 300},
                           .handles = {0x5C}};

std::vector<std::string> words(std::string_view line, place where = place::shell)
{
    return complete(line, known, where).words;
}

TEST(Completion, CommandsWordByWord)
{
    EXPECT_THAT(words("eb"), ElementsAre("ebcom"));
    EXPECT_THAT(words("ebcom path "), ElementsAre("add", "remove"));
    EXPECT_THAT(words("group m"), ElementsAre("member"));
    EXPECT_THAT(words("group member r"), ElementsAre("remove"));
    EXPECT_THAT(words("nothing "), IsEmpty());
    EXPECT_THAT(words("ebcom nothing x"), IsEmpty());
}

TEST(Completion, EverythingMayBeginAnEmptyLine)
{
    EXPECT_THAT(words(""), AllOf(Contains("ebcom"), Contains("help"), Contains("exit"), Not(Contains("up"))));
    EXPECT_THAT(words("", place::program), AllOf(Contains("up"), Contains("run"), Not(Contains("exit"))));
}

TEST(Completion, SharedOptionsMayStandBeforeACommand)
{
    EXPECT_THAT(words("--j"), ElementsAre("--json"));
    EXPECT_THAT(words("--json ebcom sto"), ElementsAre("stop"));
}

TEST(Completion, PositionalArgumentsByTheirPlace)
{
    EXPECT_THAT(words("ebcom queue handle 02"), ElementsAre("02:00:00:02:00:01"));
    EXPECT_THAT(words("group member add "), ElementsAre("7", "70", "300"));
    EXPECT_THAT(words("group member add 300 7"), ElementsAre("7", "70"));
    EXPECT_THAT(words("ebcom port channel rlu1p"), ElementsAre("RLU1P"));
}

TEST(Completion, OptionsThatWereNotGivenYet)
{
    EXPECT_THAT(words("ebcom path add 02:00:00:02:00:01 --"),
                ElementsAre("--port", "--rate", "--burst", "--threshold", "--json", "--trace", "--help"));
    EXPECT_THAT(words("ebcom path add 02:00:00:02:00:01 --port 6 --json --"),
                ElementsAre("--rate", "--burst", "--threshold", "--trace", "--help"));
    EXPECT_THAT(words("ebcom path add 02:00:00:02:00:01 --port=6 --p"), IsEmpty());
}

TEST(Completion, OptionsWhereNothingElseIsLeft)
{
    EXPECT_THAT(words("ebcom start "), ElementsAre("--json", "--trace", "--help"));
    EXPECT_THAT(words("group add 300 "), ElementsAre("--json", "--trace", "--help"));
}

TEST(Completion, ValuesOfOptions)
{
    EXPECT_THAT(words("ebcom path remove x --port "), SizeIs(51));
    EXPECT_THAT(words("ebcom path remove x --port RLU4"), SizeIs(8));
    EXPECT_THAT(words("ebcom path remove x --port=mz_"), ElementsAre("--port=MZ_T"));
    EXPECT_THAT(words("pcep stats 7 --variant rec"), ElementsAre("record", "record-second-name"));
    EXPECT_THAT(words("ebcom burst stats --queue "), ElementsAre("0x5c"));
    EXPECT_THAT(words("ebcom path add x --rate "), IsEmpty());
}

TEST(Completion, FlagsHaveNoValue)
{
    EXPECT_THAT(words("ebcom queue handle --json 0a"), ElementsAre("0a:00:00:00:00:01"));
}

TEST(Completion, FilesAreLeftToTheEditor)
{
    EXPECT_TRUE(complete("check no", known, place::shell).files);
    EXPECT_FALSE(complete("ebcom start ", known, place::shell).files);
}

TEST(Completion, HelpTakesTheWordsOfCommands)
{
    EXPECT_THAT(words("help ebcom path "), ElementsAre("add", "remove"));
    EXPECT_THAT(words("help gro"), ElementsAre("group"));
}

TEST(Completion, OpenQuotesHaveNone)
{
    EXPECT_THAT(words("ebcom 'pa"), IsEmpty());
}

} // namespace
} // namespace kelctl

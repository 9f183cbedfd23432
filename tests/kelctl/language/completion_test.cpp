// What the last word of a line may become.
#include "kelctl/language/completion.h"

#include "kelctl/commands/commands.h"
#include "made_up_commands.h"

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
                           .pceps = {7, 70, 300, 8},
                           .groups = {444, 9},
                           .queues = {},
                           .schedulers = {}};

completion completed(std::string_view line, source where = source::shell)
{
    return complete(made_up_commands(), line, known, where);
}

std::vector<std::string> words(std::string_view line, source where = source::shell)
{
    std::vector<std::string> all;
    for (const candidate &one : completed(line, where).candidates)
        all.push_back(one.word);
    return all;
}

TEST(Completion, CommandsWordByWord)
{
    EXPECT_THAT(words("la"), ElementsAre("lamp"));
    EXPECT_THAT(words("lamp group "), ElementsAre("make", "drop", "join"));
    EXPECT_THAT(words("lamp g"), ElementsAre("group"));
    EXPECT_THAT(words("lamp group d"), ElementsAre("drop"));
    EXPECT_THAT(words("nothing "), IsEmpty());
    EXPECT_THAT(words("lamp nothing x"), IsEmpty());
}

TEST(Completion, EverythingMayBeginAnEmptyLine)
{
    EXPECT_THAT(words(""), AllOf(Contains("lamp"), Contains("help"), Contains("leave"), Not(Contains("load"))));
    EXPECT_THAT(words("", source::program), AllOf(Contains("load"), Contains("say"), Not(Contains("leave"))));
}

TEST(Completion, SharedOptionsMayStandBeforeACommand)
{
    EXPECT_THAT(words("--j"), ElementsAre("--json"));
    EXPECT_THAT(words("--json lamp sh"), ElementsAre("show"));
    EXPECT_THAT(words("lamp --trace group j"), ElementsAre("join"));
}

TEST(Completion, PositionalArgumentsByTheirPlace)
{
    EXPECT_THAT(words("lamp show 02"), ElementsAre("02:00:00:02:00:01"));
    EXPECT_THAT(words("lamp show --variant record 0A"), ElementsAre("0a:00:00:00:00:01"));
}

TEST(Completion, IdsOfWhatIsMeantInTheirOrder)
{
    EXPECT_THAT(words("lamp group drop "), ElementsAre("9", "444"));
    EXPECT_THAT(words("lamp group join 444 "), ElementsAre("7", "8", "70", "300"));
    EXPECT_THAT(words("lamp group join 444 7"), ElementsAre("7", "70"));
    EXPECT_THAT(words("lamp group make "),
                ElementsAre("--json", "--trace", "--brief", "--quiet", "--all", "--raw", "--help"));
}

TEST(Completion, OptionsThatWereNotGivenYet)
{
    EXPECT_THAT(words("lamp add 02:00:00:02:00:01 --"),
                ElementsAre("--port", "--rate", "--burst", "--level", "--json", "--trace", "--brief", "--quiet",
                            "--all", "--raw", "--help"));
    EXPECT_THAT(
        words("lamp add 02:00:00:02:00:01 --port 6 --json --"),
        ElementsAre("--rate", "--burst", "--level", "--trace", "--brief", "--quiet", "--all", "--raw", "--help"));
    EXPECT_THAT(words("lamp add 02:00:00:02:00:01 --port=6 --p"), IsEmpty());
}

TEST(Completion, OptionsThatFitWhatWasGiven)
{
    EXPECT_THAT(words("lamp show 02:00:00:02:00:01 --f"), ElementsAre("--format"));
    EXPECT_THAT(words("lamp show 02:00:00:02:00:01 --variant text --f"), ElementsAre("--format"));
    EXPECT_THAT(words("lamp show 02:00:00:02:00:01 --variant record --f"), IsEmpty());
    EXPECT_THAT(words("lamp show 02:00:00:02:00:01 --variant record --q"), ElementsAre("--quiet"));
    const auto stream = complete(commands(), "traffic stream add --from 7 --", {}, source::shell);
    EXPECT_THAT(lines_of(stream), AllOf(testing::HasSubstr("--octets"), Not(testing::HasSubstr("--to\t"))));
}

TEST(Completion, OptionsWhereNothingElseIsLeft)
{
    EXPECT_THAT(words("leave "), ElementsAre("--json", "--trace", "--brief", "--quiet", "--all", "--raw", "--help"));
    EXPECT_THAT(words("lamp group drop 9 "),
                ElementsAre("--json", "--trace", "--brief", "--quiet", "--all", "--raw", "--help"));
}

TEST(Completion, ValuesOfOptions)
{
    EXPECT_THAT(words("lamp remove x --port "), AllOf(SizeIs(33), Not(Contains("HERON"))));
    EXPECT_THAT(words("lamp remove x --port rlu1p"), ElementsAre("RLU1P"));
    EXPECT_THAT(words("lamp remove x --port=rlu4q"), ElementsAre("--port=RLU4Q"));
    EXPECT_THAT(words("lamp show x --variant rec"), ElementsAre("record"));
    EXPECT_THAT(words("lamp add x --rate "), IsEmpty());
    EXPECT_THAT(words("say hello --prefix --"), IsEmpty());
}

TEST(Completion, FlagsHaveNoValue)
{
    EXPECT_THAT(words("lamp show --json 0a"), ElementsAre("0a:00:00:00:00:01"));
}

TEST(Completion, NoOptionsBehindTwoDashes)
{
    EXPECT_THAT(words("lamp show -- "), ElementsAre("02:00:00:02:00:01", "0a:00:00:00:00:01"));
    EXPECT_THAT(words("lamp show -- --"), IsEmpty());
}

TEST(Completion, FilesAreLeftToTheEditor)
{
    EXPECT_TRUE(completed("load la", source::program).files);
    EXPECT_FALSE(completed("load la", source::shell).files);
    EXPECT_FALSE(completed("load la --", source::program).files);
    EXPECT_FALSE(completed("leave ").files);
}

TEST(Completion, HelpTakesTheWordsOfCommands)
{
    EXPECT_THAT(words("help lamp group "), ElementsAre("make", "drop", "join"));
    EXPECT_THAT(words("help la"), ElementsAre("lamp"));
}

TEST(Completion, OpenQuotesHaveNone)
{
    EXPECT_THAT(words("lamp 'ad"), IsEmpty());
}

TEST(Completion, ATabSeparatesAsABlankDoes)
{
    EXPECT_THAT(words("lamp group\t"), ElementsAre("make", "drop", "join"));
}

TEST(Completion, OptionsAreNoWordsOfACommand)
{
    EXPECT_THAT(words("help --json lamp g"), ElementsAre("group"));
}

TEST(Completion, AValueBehindEqualsIsOfAnOptionThatThereIsAndNoFile)
{
    EXPECT_THAT(words("lamp show --nothing="), IsEmpty());
    const completion found = complete(commands(), "graph --output=x", known, source::shell);
    EXPECT_FALSE(found.files);
    EXPECT_THAT(found.candidates, IsEmpty());
}

TEST(Completion, WordsMayComeApart)
{
    const completion found =
        complete(made_up_commands(), {{.text = "say"}, {.text = "two words"}}, "--p", known, source::program);
    ASSERT_THAT(found.candidates, SizeIs(1));
    EXPECT_EQ(found.candidates[0].word, "--prefix");
}

TEST(Completion, LinesTellWhatWordsAreFor)
{
    EXPECT_EQ(lines_of(completed("la")), "lamp\tlamps and groups of them\n");
    EXPECT_EQ(lines_of(completed("lamp g")), "group\tmake, drop, join\n");
    EXPECT_EQ(lines_of(completed("lamp group ")),
              "make\tMake a group\ndrop\tDrop a group\njoin\tLet a lamp join a group\n");
    EXPECT_EQ(lines_of(completed("lamp --j")), "--json\tshow results as JSON, one document per command\n");
    EXPECT_EQ(lines_of(completed("lamp group drop ")), "9\n444\n");
    EXPECT_EQ(lines_of(completed("load x", source::program)), "@files\n");
    EXPECT_EQ(lines_of(completed("nothing x")), "");
}

} // namespace
} // namespace kelctl

// The reader of node files. What wrong values are answered with is tested on the program, in bad_file_test.cpp.
#include "kelctl/nodefile/node_file.h"

#include "kelctl/commands/commands.h"
#include "kelctl/language/command_text.h"
#include "script_session.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kelctl
{
namespace
{

using testing::Each;
using testing::ElementsAre;
using testing::Field;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

constexpr std::string_view ebcom = "[ebcom]\nic_port_mtu = 1500\nether_type = 0x88B5\nsettings = [1, 15]\n";

constexpr std::string_view path = "[[path]]\ndst_mac = '02:00:00:02:00:01'\nport = 'rlu1q'\n";

constexpr std::string_view pcep = "[[pcep]]\nid = 511\nremote_id = 0xFFFFFF\nlocal_mac = '02:00:00:03:00:01'\n"
                                  "remote_mac = '0200.0002.0001'\nvlan = 4095\n";

node_file_read with_ebcom(std::string_view more)
{
    return parse_node_file(std::string(ebcom) + std::string(more), commands());
}

// What follows the parameters, the interface and the service, which are in every file.
std::vector<std::string> lines_after_start(const node_file_read &read)
{
    EXPECT_THAT(read.problems, IsEmpty());
    std::vector<std::string> texts;
    for (const positioned_line &line : read.lines)
        texts.push_back(text_of(line.asked));
    texts.erase(texts.begin(), std::ranges::find(texts, "ebcom start") + 1);
    return texts;
}

std::vector<std::string> lines_after_start(const std::string &text)
{
    return lines_after_start(with_ebcom(text));
}

TEST(NodeFile, ParametersAloneAreAFile)
{
    const auto read = with_ebcom("");
    EXPECT_THAT(read.problems, IsEmpty());
    ASSERT_THAT(read.lines, SizeIs(3));
    EXPECT_EQ(text_of(read.lines[0].asked), "ebcom params set --mtu 1500 --ether-type 0x88b5 --settings 1,15");
    EXPECT_EQ(text_of(read.lines[1].asked), "ebcom interface create");
    EXPECT_EQ(text_of(read.lines[2].asked), "ebcom start");
}

TEST(NodeFile, OwnMpIdComesFirst)
{
    EXPECT_EQ(text_of(with_ebcom("[node]\nmpid = 255").lines.at(0).asked), "mpid 255");
    EXPECT_THAT(lines_after_start(with_ebcom("[node]\n")), IsEmpty());
    EXPECT_THAT(with_ebcom("[node]\n").lines, SizeIs(3));
}

TEST(NodeFile, UnshapedPathNeedsAddressAndPortOnly)
{
    EXPECT_THAT(lines_after_start(std::string(path)), ElementsAre("ebcom path add 02:00:00:02:00:01 --port RLU1Q"));
}

TEST(NodeFile, NumbersAndTextsAreReadAsOnTheCommandLine)
{
    EXPECT_THAT(lines_after_start("[[path]]\ndst_mac = '02:00:00:02:00:01'\nport = '42'\ncount = '0x10'\n"
                                  "shaping = {rate = '2 Mbit/s', burst = 3000, threshold = '1 KiB'}"),
                ElementsAre(R"(ebcom path add 02:00:00:02:00:01 --port RLU4W --rate "2 Mbit/s" --burst "3000 octets" )"
                            R"(--threshold "1 KiB" --count 16)"));
}

TEST(NodeFile, ThresholdHasTheDefaultOfTheCommandLine)
{
    const std::string shaped = "shaping = { rate = 1000, burst = 2000 }";
    EXPECT_THAT(
        lines_after_start(std::string(path) + shaped),
        ElementsAre(R"(ebcom path add 02:00:00:02:00:01 --port RLU1Q --rate "1 Mbit/s" --burst "2000 octets")"));
}

TEST(NodeFile, BothEndsOfEveryRangeAreAccepted)
{
    const auto least = parse_node_file(
        "[node]\nmpid=1\n[ebcom]\nic_port_mtu=68\nether_type=0x600\nsettings=[0,0]\n"
        "[[path]]\ndst_mac='02:00:00:02:00:01'\nport=0\ncount=1\nshaping={rate=1,burst=1,threshold=256}",
        commands());
    const auto most =
        parse_node_file("[node]\nmpid=255\n[ebcom]\nic_port_mtu=65535\nether_type=0xFFFF\nsettings=[15,15]"
                        "\n[[path]]\ndst_mac='02:00:00:02:00:01'\nport=42\ncount=100000\n"
                        "shaping={rate=4294967295,burst=1048575,threshold=4294967040}",
                        commands());
    EXPECT_THAT(least.problems, IsEmpty());
    EXPECT_THAT(most.problems, IsEmpty());
    EXPECT_EQ(most.lines.back().asked.given.number<uint32_t>("--threshold"), 4'294'967'040u);
}

TEST(NodeFile, ServiceOfEndPointsIsStartedOnceAndBeforeTheFirst)
{
    const std::string group = "[[multicast]]\nid = 2\nmembers = []\n";
    EXPECT_THAT(lines_after_start(group), ElementsAre("pcep start", "group add 2"));
    EXPECT_THAT(lines_after_start(group + std::string(pcep) + "priority = 7\n"),
                ElementsAre("pcep start",
                            "pcep add 511 --remote-id 16777215 --local 02:00:00:03:00:01 --remote 02:00:00:02:00:01 "
                            "--vlan 4095 --priority 7",
                            "group add 2"));
}

TEST(NodeFile, LinesAreInTheOrderOfABringUp)
{
    EXPECT_THAT(lines_after_start("[[traffic]]\nfrom = 300\noctets = 64\nframes_per_second = 10\nstop = '1 s'\n"
                                  "[[multicast]]\nmembers = [511]\nid = 300\n[[multicast]]\nid = 2\n" +
                                  std::string(pcep) + std::string(path)),
                ElementsAre("ebcom path add 02:00:00:02:00:01 --port RLU1Q", "pcep start",
                            "pcep add 511 --remote-id 16777215 --local 02:00:00:03:00:01 --remote 02:00:00:02:00:01 "
                            "--vlan 4095",
                            "group add 300", "group add 2", "group member add 300 511",
                            R"(traffic stream add --from 300 --octets 64 --frames-per-second 10 --stop "1 s")"));
}

TEST(NodeFile, LinesAreThoseThatParseMakes)
{
    const auto read = with_ebcom(std::string(path) + std::string(pcep) +
                                 "[[traffic]]\nto = '0200.0002.0001'\noctets = 64\nrate = '2 Mbit/s'\nburst = 5\n"
                                 "start = '1500 us'\nstop = '2 s'\n");
    EXPECT_THAT(read.problems, IsEmpty());
    for (const positioned_line &line : read.lines)
        EXPECT_EQ(asked(text_of(line.asked)).given, line.asked.given) << text_of(line.asked);
}

TEST(NodeFile, LinesKnowTheirPlacesInTheFile)
{
    const auto read = with_ebcom(std::string(path) + "shaping = { rate = 1, burst = 2 }\n"
                                                     "[[multicast]]\nmembers = [ 1,\n 511 ]\nid = 300\n");
    ASSERT_THAT(read.lines, SizeIs(8));
    const positioned_line &added = read.lines[3];
    EXPECT_EQ(added.asked.line, 5u);
    EXPECT_EQ(added.at, (position{5, 1}));
    EXPECT_EQ(added.at_of("--port"), (position{7, 8}));
    EXPECT_EQ(added.at_of("--burst"), (position{8, 31}));
    EXPECT_EQ(added.at_of("--count"), (position{5, 1}));
    EXPECT_EQ(read.lines[6].at_of("ID"), (position{10, 13}));
    EXPECT_EQ(read.lines[7].at_of("ID"), (position{11, 2}));
    EXPECT_EQ(read.lines[7].asked.line, 11u);
}

TEST(NodeFile, LineWithAProblemKeepsWhatCouldBeRead)
{
    const auto [lines, problems, warnings] =
        with_ebcom("[[path]]\ndst_mac = 'nobody'\nport = 6\n[[pcep]]\nid = 7\n[[pcep]]\nid = 'x'\n");
    EXPECT_THAT(problems, SizeIs(10));
    ASSERT_THAT(lines, SizeIs(7));
    EXPECT_FALSE(lines[3].sound);
    EXPECT_EQ(lines[3].asked.given.number<int>("--port"), 6);
    EXPECT_EQ(lines[5].asked.given.id("ID"), 7u);
    EXPECT_FALSE(lines[6].asked.given.has("ID"));
}

TEST(NodeFile, AsManyOfferingsAsASecondMayHaveAreTaken)
{
    const auto problems_with = [](const std::string &keys) {
        return with_ebcom("[[traffic]]\nfrom = 1\n" + keys).problems;
    };
    EXPECT_THAT(problems_with("octets = 1\nframes_per_second = 1000000\n"), IsEmpty());
    EXPECT_THAT(problems_with("octets = 1\nframes_per_second = 1000001\n"), SizeIs(1));
    EXPECT_THAT(problems_with("octets = 1\nframes_per_second = 2000000\nburst = 2\n"), IsEmpty());
    EXPECT_THAT(problems_with("octets = 125\nrate = '1 Gbit/s'\n"), IsEmpty());
    EXPECT_THAT(problems_with("octets = 124\nrate = '1 Gbit/s'\n"), SizeIs(1));
}

TEST(NodeFile, HostileTextIsAProblemAndNothingElse)
{
    const std::string dots = "a" + std::string(500'000, '.') + "a = 1";
    std::string deep = "a = ";
    for (int i = 0; i < 20; ++i)
        deep += "{ b" + std::string(1, '.') + "c = [\n";
    for (const std::string &text : {std::string(), std::string(1, '\0'), std::string(1000, '\xff'), dots,
                                    std::string(100'000, '['), "x = " + std::string(100'000, '['), deep,
                                    std::string("\"\xc3\x28\" = 1"), std::string("a = 99999999999999999999")})
        EXPECT_THAT(parse_node_file(text, commands()).problems, SizeIs(1)) << text.substr(0, 40);
}

// U+00E4, U+2F00, U+FB26 and U+FE0F, where a blank could be.
TEST(NodeFile, CharactersThatTheParserCannotTakeAreTold)
{
    for (const char *character : {"\xC3\xA4", "\xE2\xBC\x80", "\xEF\xAC\xA6", "\xEF\xB8\x8F"}) {
        const auto read = with_ebcom(std::string("x = 1 ") + character + " \n");
        EXPECT_THAT(read.problems, SizeIs(1)) << character;
    }
    EXPECT_THAT(with_ebcom("# \xE2\x9A\xA0\xEF\xB8\x8F a comment\n").problems, IsEmpty());
    EXPECT_THAT(
        parse_node_file("\xEF\xBB\xBF[ebcom]\nic_port_mtu = 1500\nether_type = 0x88B5\nsettings = [1, 2]\n", commands())
            .problems,
        IsEmpty());
}

TEST(NodeFile, DeepestDocumentThatTheParserTakesIsTakenApartAgain)
{
    std::string key = "b";
    for (int i = 0; i < 120; ++i)
        key += ".b";
    std::string text = "x = ";
    for (int i = 0; i < 15; ++i)
        text += "{ " + key + " = [\n";
    text += "1";
    for (int i = 0; i < 15; ++i)
        text += "] }";
    const auto read = with_ebcom("[z]\n" + text);
    EXPECT_THAT(read.problems, SizeIs(1));
    EXPECT_THAT(read.problems, Each(Field(&problem::message, HasSubstr("unknown table \"z\""))));
}

TEST(NodeFile, UnreadableFileIsAProblemWithoutAPlace)
{
    const auto [lines, problems, warnings] = read_node_file("/nowhere/node.toml", commands());
    ASSERT_THAT(problems, SizeIs(1));
    EXPECT_EQ(problems[0].message, "cannot be read: No such file or directory");
    EXPECT_EQ(problems[0].at, whole_file);
}

} // namespace
} // namespace kelctl

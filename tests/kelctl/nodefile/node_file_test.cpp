// The reader of node files. What wrong values are answered with is tested on the program, in bad_file_test.cpp.
#include "kelctl/nodefile/node_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kelctl
{
namespace
{

using testing::Each;
using testing::Field;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

constexpr std::string_view ebcom = "[ebcom]\nic_port_mtu = 1500\nether_type = 0x88B5\nsettings = [1, 15]\n";

node_file_read with_ebcom(std::string_view more)
{
    return parse_node_file(std::string(ebcom) + std::string(more));
}

TEST(NodeFile, ParametersAloneAreAFile)
{
    const auto [node, problems] = with_ebcom("");
    EXPECT_THAT(problems, IsEmpty());
    EXPECT_EQ(node.mpid, std::nullopt);
    EXPECT_EQ(node.ebcom.ic_port_mtu, 1500);
    EXPECT_EQ(node.ebcom.ether_type, 0x88B5);
    EXPECT_EQ(node.ebcom.settings, (std::array<uint8_t, 2>{1, 15}));
    EXPECT_THAT(node.paths, IsEmpty());
}

TEST(NodeFile, OwnMpIdIsRead)
{
    EXPECT_EQ(with_ebcom("[node]\nmpid = 255").node.mpid, 255);
}

TEST(NodeFile, UnshapedPathNeedsAddressAndPortOnly)
{
    const auto [node, problems] = with_ebcom("[[path]]\ndst_mac = '02:00:00:02:00:01'\nport = 'rlu1q'");
    EXPECT_THAT(problems, IsEmpty());
    ASSERT_THAT(node.paths, SizeIs(1));
    const path_entry &path = node.paths[0];
    EXPECT_EQ(to_text(path.dst_mac), "02:00:00:02:00:01");
    EXPECT_EQ(path.port, 7);
    EXPECT_EQ(path.shaping, std::nullopt);
    EXPECT_EQ(path.count, 1u);
    EXPECT_EQ(path.at.line, 5u);
}

TEST(NodeFile, ShapingIsReadInItsUnits)
{
    const auto [node, problems] = with_ebcom("[[path]]\ndst_mac = '02:00:00:02:00:01'\nport = 42\ncount = 100000\n"
                                             "shaping = {rate = '2 Mbit/s', burst = 3000, threshold = '1 KiB'}");
    EXPECT_THAT(problems, IsEmpty());
    ASSERT_THAT(node.paths, SizeIs(1));
    EXPECT_EQ(node.paths[0].port, 42);
    EXPECT_EQ(node.paths[0].shaping, (shaping{.rate = 2000, .burst = 3000, .threshold = 1024}));
    EXPECT_EQ(node.paths[0].count, 100'000u);
    EXPECT_EQ(node.paths[0].shaping_at.line, 9u);
    EXPECT_EQ(node.paths[0].shaping_at.column, 11u);
}

TEST(NodeFile, BothEndsOfEveryRangeAreAccepted)
{
    const auto least = parse_node_file(
        "[node]\nmpid=1\n[ebcom]\nic_port_mtu=68\nether_type=0x600\nsettings=[0,0]\n"
        "[[path]]\ndst_mac='02:00:00:02:00:01'\nport=0\ncount=1\nshaping={rate=1,burst=1,threshold=256}");
    const auto most =
        parse_node_file("[node]\nmpid=255\n[ebcom]\nic_port_mtu=65535\nether_type=0xFFFF\nsettings=[15,15]"
                        "\n[[path]]\ndst_mac='02:00:00:02:00:01'\nport=42\ncount=100000\n"
                        "shaping={rate=4294967295,burst=1048575,threshold=4294967040}");
    EXPECT_THAT(least.problems, IsEmpty());
    EXPECT_THAT(most.problems, IsEmpty());
    EXPECT_EQ(most.node.paths.at(0).shaping->threshold, 4'294'967'040u);
}

TEST(NodeFile, EntryWithAProblemIsLeftOutAndTheOthersStay)
{
    const auto [node, problems] = with_ebcom("[[path]]\ndst_mac = 'nobody'\nport = 6\n"
                                             "[[path]]\ndst_mac = '02:00:00:02:00:01'\nport = 7\n");
    EXPECT_THAT(problems, SizeIs(1));
    ASSERT_THAT(node.paths, SizeIs(1));
    EXPECT_EQ(node.paths[0].port, 7);
}

TEST(NodeFile, PcepIsRead)
{
    const auto [node, problems] =
        with_ebcom("[[pcep]]\nid = 511\nremote_id = 0xFFFFFF\nlocal_mac = '02:00:00:03:00:01'\n"
                   "remote_mac = '0200.0002.0001'\nvlan = 4095\npriority = 7\n");
    EXPECT_THAT(problems, IsEmpty());
    ASSERT_THAT(node.pceps, SizeIs(1));
    const pcep_entry &pcep = node.pceps[0];
    EXPECT_EQ(pcep.id, 511u);
    EXPECT_EQ(pcep.remote_id, 0xFFFFFFu);
    EXPECT_EQ(to_text(pcep.local_mac), "02:00:00:03:00:01");
    EXPECT_EQ(to_text(pcep.remote_mac), "02:00:00:02:00:01");
    EXPECT_EQ(pcep.vlan, 4095);
    EXPECT_EQ(pcep.priority, 7);
    EXPECT_EQ(pcep.at, (position{5, 1}));
    EXPECT_EQ(pcep.id_at, (position{6, 6}));
}

TEST(NodeFile, PcepHasPriorityZeroUnlessItSaysOtherwise)
{
    const auto [node, problems] = with_ebcom("[[pcep]]\nid = 1\nremote_id = 0\nlocal_mac = '02:00:00:03:00:01'\n"
                                             "remote_mac = '02:00:00:02:00:01'\nvlan = 0\n");
    EXPECT_THAT(problems, IsEmpty());
    ASSERT_THAT(node.pceps, SizeIs(1));
    EXPECT_EQ(node.pceps[0].priority, 0);
}

TEST(NodeFile, GroupIsReadWithThePlacesOfItsMembers)
{
    const auto [node, problems] = with_ebcom("[[multicast]]\nmembers = [ 1,\n 511 ]\nid = 300\n"
                                             "[[multicast]]\nid = 1\nmembers = []\n");
    EXPECT_THAT(problems, IsEmpty());
    ASSERT_THAT(node.groups, SizeIs(2));
    EXPECT_EQ(node.groups[0].id, 300u);
    ASSERT_THAT(node.groups[0].members, SizeIs(2));
    EXPECT_EQ(node.groups[0].members[0].value, 1u);
    EXPECT_EQ(node.groups[0].members[0].at, (position{6, 13}));
    EXPECT_EQ(node.groups[0].members[1].value, 511u);
    EXPECT_EQ(node.groups[0].members[1].at, (position{7, 2}));
    EXPECT_THAT(node.groups[1].members, IsEmpty());
}

TEST(NodeFile, PcepWithAProblemStaysForThoseWhoNameItsId)
{
    const auto [node, problems] = with_ebcom("[[pcep]]\nid = 7\n[[pcep]]\nid = 'x'\n");
    EXPECT_THAT(problems, SizeIs(9));
    ASSERT_THAT(node.pceps, SizeIs(2));
    EXPECT_EQ(node.pceps[0].id, 7u);
    EXPECT_EQ(node.pceps[1].id, no_id);
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
        EXPECT_THAT(parse_node_file(text).problems, SizeIs(1)) << text.substr(0, 40);
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
        parse_node_file("\xEF\xBB\xBF[ebcom]\nic_port_mtu = 1500\nether_type = 0x88B5\nsettings = [1, 2]\n").problems,
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
    const auto [node, problems] = read_node_file("/nowhere/node.toml");
    ASSERT_THAT(problems, SizeIs(1));
    EXPECT_EQ(problems[0].message, "cannot be read: No such file or directory");
    EXPECT_EQ(problems[0].at, whole_file);
}

} // namespace
} // namespace kelctl

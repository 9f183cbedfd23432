// Node files as commands, and these carried out on the software accelerator.
#include "kelctl/node/node_lines.h"

#include "kelctl/jobs/take_down.h"
#include "kelctl/language/command_text.h"
#include "kelctl/node/standing.h"
#include "kelctl/values/mp_id.h"
#include "script_session.h"
#include "softnode/softnode.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>

namespace kelctl
{
namespace
{

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr const char *small_file = R"([node]
mpid = 5
[ebcom]
ic_port_mtu = 1500
ether_type = 0x88B5
settings = [1, 2]
[[path]]
dst_mac = "02:00:00:02:00:01"
port = "RLU1P"
shaping = { rate = "100 Mbit/s", burst = "64 KiB", threshold = 1024 }
[[path]]
dst_mac = "02:00:00:03:00:fe"
port = 42
count = 3
)";

constexpr const char *end_points = R"([[pcep]]
id = 1
remote_id = 0xABCDEF
local_mac = "02:00:00:02:00:01"
remote_mac = "02:00:00:02:00:09"
vlan = 4095
priority = 7
[[multicast]]
id = 300
members = [1]
[[multicast]]
id = 2
members = []
[[traffic]]
from = 300
octets = 64
frames_per_second = 10
stop = "1 s"
)";

std::vector<invocation> lines_in(const std::string &text)
{
    const node_file_read read = parse_node_file(text);
    EXPECT_THAT(read.problems, IsEmpty());
    return lines_of(read.node, commands());
}

std::vector<std::string> texts_of(const std::vector<invocation> &lines)
{
    std::vector<std::string> texts;
    for (const invocation &line : lines)
        texts.push_back(text_of(line));
    return texts;
}

TEST(NodeLines, AreTheCommandsThatAPersonWouldType)
{
    EXPECT_THAT(texts_of(lines_in(small_file)),
                ElementsAre("mpid 5", "ebcom params set --mtu 1500 --ether-type 0x88b5 --settings 1,2",
                            "ebcom interface create", "ebcom start",
                            R"(ebcom path add 02:00:00:02:00:01 --port RLU1P --rate "100 Mbit/s" --burst "64 KiB" )"
                            R"(--threshold "1 KiB")",
                            "ebcom path add 02:00:00:03:00:fe --port RLU4W --count 3"));
}

TEST(NodeLines, EndPointsComeAfterThePathsAndTrafficAfterThem)
{
    const auto texts = texts_of(lines_in(std::string(small_file) + end_points));
    EXPECT_THAT(std::vector(texts.begin() + 6, texts.end()),
                ElementsAre("pcep start",
                            "pcep add 1 --remote-id 11259375 --local 02:00:00:02:00:01 --remote 02:00:00:02:00:09 "
                            "--vlan 4095 --priority 7",
                            "group add 300", "group add 2", "group member add 300 1",
                            R"(traffic stream add --from 300 --octets 64 --frames-per-second 10 --stop "1 s")"));
}

TEST(NodeLines, KnowTheirPlaceInTheFile)
{
    const auto lines = lines_in(small_file);
    EXPECT_EQ(lines[1].line, 3u);
    EXPECT_EQ(lines[4].line, 7u);
    EXPECT_EQ(lines[5].line, 11u);
}

TEST(NodeLines, AreThoseThatParseMakes)
{
    for (const invocation &line : lines_in(std::string(small_file) + end_points))
        EXPECT_EQ(asked(text_of(line)).given.all(), line.given.all()) << text_of(line);
}

TEST(NodeLines, BringTheNodeUpAndDown)
{
    softnode_reset();
    script_session here;
    for (const invocation &line : lines_in(std::string(small_file) + end_points))
        ASSERT_EQ(here.perform(line).status, exit_done) << text_of(line);

    const snapshot up = read_snapshot(settled_document().value());
    EXPECT_EQ(up.globals->mtu, 1500);
    EXPECT_TRUE(up.interface);
    EXPECT_THAT(up.schedulers, SizeIs(12));
    ASSERT_THAT(up.queues, SizeIs(2));
    EXPECT_EQ(up.queues[0].rate, 100'000u);
    EXPECT_EQ(up.queues[0].burst, 65'536u);
    EXPECT_EQ(up.queues[0].threshold, 1024u);
    EXPECT_FALSE(up.queues[1].shaped);
    EXPECT_THAT(up.paths, SizeIs(4));
    ASSERT_THAT(up.pceps, SizeIs(1));
    EXPECT_THAT(up.groups, SizeIs(2));

    for (const undone_command &one : take_down(here))
        EXPECT_THAT(one.failures, IsEmpty()) << one.command;
    EXPECT_TRUE(current_snapshot()->empty());
}

// The library keeps the first one, and would go on with it.
TEST(NodeLines, AnotherMpIdInTheSameProcessIsRefusedByName)
{
    script_session here;
    EXPECT_EQ(here.run("mpid 5").status, exit_done);
    EXPECT_EQ(own_mp_id(), 5);
    EXPECT_EQ(here.run("mpid 5").status, exit_done);
    const result other = here.run("mpid 6");
    EXPECT_EQ(other.status, exit_operation_failed);
    ASSERT_THAT(other.errors, SizeIs(1));
    EXPECT_EQ(other.errors[0].message,
              "the MP id cannot become 6: it is 5 in this process already, and the library keeps it");
    EXPECT_EQ(own_mp_id(), 5);
}

TEST(NodeLines, PathsAreCountedWithoutBeingMade)
{
    const node_file_read read = parse_node_file(small_file);
    EXPECT_EQ(path_count(read.node), 4u);
}

} // namespace
} // namespace kelctl

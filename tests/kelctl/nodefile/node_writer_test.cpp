// Commands written as a node file, and read again.
#include "kelctl/nodefile/node_writer.h"

#include "kelctl/commands/commands.h"
#include "kelctl/nodefile/node_file.h"
#include "script_session.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kelctl
{
namespace
{

using testing::IsEmpty;

std::vector<invocation> lines_of(const std::string &text)
{
    const node_file_read read = parse_node_file(text, commands());
    EXPECT_THAT(read.problems, IsEmpty());
    std::vector<invocation> lines;
    for (const positioned_line &line : read.lines)
        lines.push_back(line.asked);
    return lines;
}

TEST(NodeWriter, WritesWhatIsNoDefaultUnderItsKey)
{
    EXPECT_EQ(node_file_of({asked("ebcom params set --mtu 1500 --ether-type 0x88b5 --settings 1,2"),
                            asked("ebcom start"), asked("ebcom path add 02:00:00:02:00:01 --port 0 --count 3"),
                            asked("pcep add 7 --remote-id 9 --local 02:00:00:03:00:01 --remote 02:00:00:02:00:01 "
                                  "--vlan 0 --priority 0")}),
              R"([ebcom]
ic_port_mtu = 1500
ether_type = 0x88b5
settings = [1, 2]

[[path]]
dst_mac = "02:00:00:02:00:01"
port = 0
count = 3

[[pcep]]
id = 7
remote_id = 9
local_mac = "02:00:00:03:00:01"
remote_mac = "02:00:00:02:00:01"
vlan = 0
)");
}

TEST(NodeWriter, MembersBelongToTheirGroup)
{
    EXPECT_EQ(node_file_of({asked("group add 300"), asked("group add 301"), asked("group member add 300 7"),
                            asked("group member add 301 8"), asked("group member add 300 9")}),
              "[[multicast]]\nid = 300\nmembers = [7, 9]\n\n[[multicast]]\nid = 301\nmembers = [8]\n");
}

TEST(NodeWriter, WritesWhatTheReaderReads)
{
    const std::string text = R"(
[node]
mpid = 5
[ebcom]
ic_port_mtu = 1500
ether_type = 0x88B5
settings = [1, 2]
[[path]]
dst_mac = "0200.0001.0019"
port = "rlu4w"
shaping = { rate = "1 Gbit/s", burst = "512 KiB", threshold = 25600 }
[[pcep]]
id = 1
remote_id = 0xABCDEF
local_mac = "02:00:05:00:00:01"
remote_mac = "02-00-00-02-00-01"
vlan = 4000
priority = 7
[[multicast]]
id = 300
members = []
[[traffic]]
from = 300
octets = 64
frames_per_second = 1000
arrivals = "on-off"
on = "5 ms"
off = "250 us"
stop = "2 s"
)";
    const std::vector<invocation> read = lines_of(text);
    const std::vector<invocation> again = lines_of(node_file_of(read));
    ASSERT_EQ(again.size(), read.size());
    for (size_t i = 0; i < read.size(); ++i) {
        EXPECT_EQ(again[i].row, read[i].row);
        EXPECT_EQ(again[i].given, read[i].given) << read[i].row->name;
    }
}

} // namespace
} // namespace kelctl

// [[traffic]] as it is read. What wrong values are answered with is tested on the program, in bad_file_test.cpp.
#include "kelctl/nodefile/node_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kelctl
{
namespace
{

using testing::IsEmpty;
using testing::SizeIs;

node_file_read with_traffic(const std::string &table)
{
    return parse_node_file("[ebcom]\nic_port_mtu = 1500\nether_type = 0x88B5\nsettings = [1, 15]\n[[traffic]]\n" +
                           table);
}

TEST(TrafficTable, StreamOfFramesToADestination)
{
    const auto [node, problems] = with_traffic("to = '0200.0002.0001'\noctets = 1500\nframes_per_second = 1000\n");
    EXPECT_THAT(problems, IsEmpty());
    ASSERT_THAT(node.traffic, SizeIs(1));
    const traffic_entry &entry = node.traffic[0];
    EXPECT_EQ(to_text(entry.to.value()), "02:00:00:02:00:01");
    EXPECT_EQ(entry.octets, 1500u);
    EXPECT_EQ(entry.rate, 0u);
    EXPECT_EQ(entry.frames_per_second, 1000u);
    EXPECT_EQ(entry.burst, 1u);
    EXPECT_EQ(entry.start, 0u);
    EXPECT_EQ(entry.stop, std::nullopt);
    EXPECT_EQ(entry.to_at, (position{6, 6}));
}

TEST(TrafficTable, RateOfASenderWithTimes)
{
    const auto [node, problems] =
        with_traffic("from = 300\noctets = 64\nrate = '2 Mbit/s'\nburst = 5\nstart = '1500 us'\nstop = '2 s'\n");
    EXPECT_THAT(problems, IsEmpty());
    ASSERT_THAT(node.traffic, SizeIs(1));
    const traffic_entry &entry = node.traffic[0];
    EXPECT_EQ(entry.to, std::nullopt);
    EXPECT_EQ(entry.from, 300u);
    EXPECT_EQ(entry.rate, 2000u);
    EXPECT_EQ(entry.burst, 5u);
    EXPECT_EQ(entry.start, 1'500'000u);
    EXPECT_EQ(entry.stop, 2'000'000'000u);
    EXPECT_EQ(entry.from_at, (position{6, 8}));
}

TEST(TrafficTable, AsManyOfferingsAsASecondMayHaveAreTaken)
{
    EXPECT_THAT(with_traffic("from = 1\noctets = 1\nframes_per_second = 1000000\n").problems, IsEmpty());
    EXPECT_THAT(with_traffic("from = 1\noctets = 1\nframes_per_second = 1000001\n").problems, SizeIs(1));
    EXPECT_THAT(with_traffic("from = 1\noctets = 1\nframes_per_second = 2000000\nburst = 2\n").problems, IsEmpty());
    EXPECT_THAT(with_traffic("from = 1\noctets = 125\nrate = '1 Gbit/s'\n").problems, IsEmpty());
    EXPECT_THAT(with_traffic("from = 1\noctets = 124\nrate = '1 Gbit/s'\n").problems, SizeIs(1));
}

} // namespace
} // namespace kelctl

// `kelctl traffic` and `kelctl time` in scripts.
#include "program.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace
{

using testing::EndsWith;
using testing::HasSubstr;

const std::string node = "ebcom params set --mtu 1500 --ether-type 0x88b5 --settings 1,2\n"
                         "ebcom interface create\nebcom start\npcep start\n"
                         "ebcom path add 02:00:00:02:00:01 --port RLU1P --rate '8 Mbit/s' --burst 1000 "
                         "--threshold '1 KiB'\n"
                         "pcep add 7 --remote-id 1 --local 02:00:00:02:00:05 --remote 02:00:00:02:00:01 --vlan 1\n";

program_outcome run_text(const std::string &script, const std::vector<std::string> &options = {})
{
    std::vector<std::string> arguments = {"run", "-"};
    arguments.insert(arguments.end(), options.begin(), options.end());
    return run_kelctl({.arguments = arguments, .in = script});
}

// One frame fits the bucket, one waits in the four blocks of the threshold, the third is dropped.
TEST(TrafficCommands, OfferedFramesLeaveAsTimePasses)
{
    const std::string shown = "ebcom queue stats 02:00:00:02:00:01 --variant record\n";
    const auto outcome = run_text(node + "traffic offer 02:00:00:02:00:01 --frames 3 --octets 1000\n" + shown +
                                  "time advance 1ms\n" + shown + "time show\n");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.err, "");
    EXPECT_THAT(outcome.out, HasSubstr("pkts out standing   1\npkts dropped        1\npkts tx             1\n"));
    EXPECT_THAT(outcome.out, HasSubstr("pkts out standing   0\npkts dropped        1\npkts tx             2\n"));
    EXPECT_THAT(outcome.out, EndsWith("\n1 ms\n"));
}

TEST(TrafficCommands, PcepSendsToItsRemoteAddress)
{
    const auto outcome = run_text(node + "traffic send 7 --frames 2 --octets 100\npcep stats 7 --format csv\n");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_THAT(outcome.out, HasSubstr("frames_sent,2"));
}

TEST(TrafficCommands, UnknownEndPointsAreRefusedWithTheirPlace)
{
    const auto outcome = run_text("traffic offer 02:00:00:02:00:01 --frames 1 --octets 1\n"
                                  "traffic send 9 --frames 1 --octets 1\n",
                                  {"--keep-going"});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(outcome.err, "-:1: neither a path nor a PCEP has the address 02:00:00:02:00:01\n"
                           "-:2: neither a PCEP nor a multicast group has the id 9\n");
}

TEST(TrafficCommands, JsonHasDurationsInNanoseconds)
{
    const auto outcome =
        run_text("time advance '1500 us'\ntime show\ntraffic send 9 --frames 1 --octets 1\n", {"--json"});
    EXPECT_THAT(outcome.out, HasSubstr(R"({"command":"time advance","arguments":{"time":1500000},)"));
    EXPECT_THAT(outcome.out, HasSubstr(R"("result":{"nanoseconds":1500000}})"));
    EXPECT_THAT(outcome.out, HasSubstr(R"("ok":false,"code":null,"text":null,"result":{},)"
                                       R"("error":{"message":"neither a PCEP nor a multicast group has the id 9",)"));
}

} // namespace

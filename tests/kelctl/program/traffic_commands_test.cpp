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
    EXPECT_EQ(outcome.err, "-:1: no path and no PCEP has the address 02:00:00:02:00:01\n"
                           "-:2: no PCEP and no multicast group has the id 9\n");
}

TEST(TrafficCommands, JsonHasDurationsInNanoseconds)
{
    const auto outcome =
        run_text("time advance '1500 us'\ntime show\ntraffic send 9 --frames 1 --octets 1\n", {"--json"});
    EXPECT_THAT(outcome.out, HasSubstr(R"({"command":"time advance","arguments":{"time":1500000},)"));
    EXPECT_THAT(outcome.out, HasSubstr(R"("result":{"nanoseconds":1500000}})"));
    EXPECT_THAT(outcome.out, HasSubstr(R"("ok":false,"code":null,"text":null,"result":{},)"
                                       R"("error":{"message":"no PCEP and no multicast group has the id 9",)"));
}

// One octet in a microsecond: a frame each millisecond, from the second on to before the fifth.
TEST(TrafficStream, OffersFramesAsTimePasses)
{
    const std::string stream = "traffic stream add --to 02:00:00:02:00:01 --octets 1000 --rate '8 Mbit/s'"
                               " --start 2ms --stop 5ms\n";
    const std::string shown = "ebcom queue stats 02:00:00:02:00:01 --variant record\n";
    const auto outcome = run_text(node + "time advance 7ms\n" + stream + "time advance 2ms\n" + shown +
                                  "time advance 1ms\n" + shown + "time advance 9ms\n" + shown + "time show\n");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.err, "");
    const auto none = outcome.out.find("pkts tx             0\n");
    const auto one = outcome.out.find("pkts tx             1\n");
    const auto all = outcome.out.find("pkts tx             3\n");
    EXPECT_LT(none, one);
    EXPECT_LT(one, all);
    EXPECT_NE(all, std::string::npos);
    EXPECT_THAT(outcome.out, EndsWith("\n19 ms\n"));
}

TEST(TrafficStream, ChanceIsTheSameForTheSameSeed)
{
    const auto statistics = [](const std::string &seed) {
        return run_text(node +
                        "traffic stream add --to 02:00:00:02:00:01 --octets 100 --rate '8 Mbit/s'"
                        " --arrivals poisson --seed " +
                        seed + "\ntime advance 100ms\nebcom queue stats 02:00:00:02:00:01 --variant record\n")
            .out;
    };
    EXPECT_EQ(statistics("5"), statistics("5"));
    EXPECT_NE(statistics("5"), statistics("6"));
}

TEST(TrafficStream, WrongOnesAreRefused)
{
    const std::string stream = "traffic stream add --from 7 --octets 64 --frames-per-second ";
    EXPECT_THAT(run_text(stream + "2000000\n").err,
                HasSubstr("-:1:61: --frames-per-second: more than 1000000 frames or bursts"));
    EXPECT_THAT(run_text(stream + "10 --start 2s --stop 1s\n").err,
                HasSubstr("-:1:82: --stop: is not later than the start\n"));
    EXPECT_THAT(run_text(stream + "10 --arrivals on-off\n").err,
                HasSubstr("-:1:75: --arrivals: --on and --off are required with on-off, and only with it\n"));
    EXPECT_THAT(run_text(stream + "10 --on 1ms --off 1ms\n").err,
                HasSubstr("-:1:82: --arrivals: --on and --off are required with on-off, and only with it\n"));
}

} // namespace

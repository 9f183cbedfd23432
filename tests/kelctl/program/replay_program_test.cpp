// `kelctl traffic replay`: captures through a node.
#include "made_capture.h"
#include "program.h"
#include "temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>

namespace
{

using testing::HasSubstr;
using testing::Not;

constexpr uint64_t morning = 1'700'000'000'000'000'000;

// An octet takes a microsecond; four blocks of 256 octets.
const std::string node = ebcom_table + "[[path]]\ndst_mac = \"02:00:00:02:00:01\"\nport = \"RLU1P\"\n"
                                       "shaping = { rate = \"8 Mbit/s\", burst = 1, threshold = 1024 }\n"
                                       "[[path]]\ndst_mac = \"02:00:00:02:00:02\"\nport = \"RLU1Q\"\n";

class Replay : public testing::Test
{
protected:
    program_outcome replay(const std::string &capture, std::vector<std::string> options = {},
                           const std::map<std::string, std::string> &environment = {})
    {
        write("node.toml", node_file);
        write("in.pcap", capture);
        std::vector<std::string> arguments = {"traffic", "replay", "node.toml", "in.pcap", "--out", "out.pcap"};
        arguments.insert(arguments.end(), options.begin(), options.end());
        return run_kelctl({.arguments = arguments, .environment = environment, .folder = folder.path()});
    }

    void write(const std::string &name, const std::string &text) const
    {
        std::ofstream(folder.path() + "/" + name, std::ios::binary) << text;
    }

    std::string read(const std::string &name) const
    {
        std::ostringstream text;
        text << std::ifstream(folder.path() + "/" + name, std::ios::binary).rdbuf();
        return text.str();
    }

    temporary_folder folder;
    std::string node_file = node;
};

// 100 octets with the check sequence each: 96 in the capture. The first one leaves at once, the others in 100 us each, less
// the octet that the bucket has at first; of six together four wait, and one finds no room.
TEST_F(Replay, FramesLeaveAsTheNodeLetsThemAndTheOthersAreDropped)
{
    std::vector<made_frame> in;
    for (int frame = 0; frame < 6; ++frame)
        in.push_back({morning, frame_to(1, 96)});
    in.push_back({morning + 50'000, frame_to(2, 96)});
    in.push_back({morning + 60'000, frame_to(9, 96)});
    in.push_back({morning + 1'000'000, frame_to(1, 1'600)});
    const auto outcome = replay(pcap_of(in), {"--dropped", "dropped.pcap", "--json"});
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_EQ(read("out.pcap"), pcap_of({{morning, frame_to(1, 96)},
                                         {morning + 50'000, frame_to(2, 96)},
                                         {morning + 99'000, frame_to(1, 96)},
                                         {morning + 199'000, frame_to(1, 96)},
                                         {morning + 299'000, frame_to(1, 96)},
                                         {morning + 399'000, frame_to(1, 96)}}));
    EXPECT_EQ(read("dropped.pcap"), pcap_of({in[5], in[7], in[8]}));
    EXPECT_THAT(outcome.out, HasSubstr(R"("replay":{"frames":9,"octets":2404,"cut":0,"nanoseconds":1000000,"queues":[)"
                                       R"({"port":6,"name":"RLU1P","offered":{"frames":7,"octets":2204},)"
                                       R"("sent":{"frames":5,"octets":500},)"
                                       R"("dropped":{"too_long":1,"no_room":1,"no_way":0,"no_queue":0},"never_left":0,)"
                                       R"("kbit_per_second":8020,)"
                                       R"("delay":{"sum":996000,"median":199000,"p99":399000,"largest":399000}},)"
                                       R"({"port":7,"name":"RLU1Q","offered":{"frames":1,"octets":100},)"
                                       R"("sent":{"frames":1,"octets":100},)"
                                       R"("dropped":{"too_long":0,"no_room":0,"no_way":0,"no_queue":0},"never_left":0,)"
                                       R"("kbit_per_second":null,)"
                                       R"("delay":{"sum":0,"median":0,"p99":0,"largest":0}},)"
                                       R"({"port":null,"name":null,"offered":{"frames":1,"octets":100},)"
                                       R"("sent":{"frames":0,"octets":0},)"
                                       R"("dropped":{"too_long":0,"no_room":0,"no_way":1,"no_queue":0},)"
                                       R"("never_left":0,"kbit_per_second":null,"delay":null}])"));
    EXPECT_THAT(outcome.out, HasSubstr(R"("left_behind":"")"));
}

TEST_F(Replay, TheSameIsShownEveryTime)
{
    const std::string capture = pcapng_of({{morning, frame_to(1, 96)}, {morning + 5, frame_to(1, 1'000)}});
    const auto first = replay(capture);
    const std::string out = read("out.pcap");
    const auto second = replay(capture);
    EXPECT_EQ(first.status, 0) << first.err;
    EXPECT_EQ(first.out, second.out);
    EXPECT_EQ(out, read("out.pcap"));
    EXPECT_THAT(first.out, HasSubstr("out.pcap: 2 frames\n"));
    EXPECT_THAT(first.out, HasSubstr("Taken down. The node is empty again."));
}

// The second frame leaves once the whole length of the first one is paid, tag and check sequence included.
TEST_F(Replay, ACutFrameCountsWithItsWholeLengthAndATagBelongsToTheFrame)
{
    const std::string tagged = frame_to(1, 32, std::string("\x81\x00\x00\x07", 4));
    const auto outcome = replay(pcap_of({{morning, tagged, 1'500}, {morning, frame_to(1, 60)}}));
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_EQ(read("out.pcap"), pcap_of({{morning, tagged, 1'500}, {morning + 1'503'000, frame_to(1, 60)}}));
    EXPECT_THAT(outcome.out, HasSubstr("frames cut    1\n"));
}

TEST_F(Replay, TimesThatGoBackAreAnErrorUnlessTheyAreSorted)
{
    const std::string back = pcap_of({{morning + 2'000'000, frame_to(2, 96)}, {morning, frame_to(2, 60)}});
    write("out.pcap", "as it was");
    const auto outcome = replay(back);
    EXPECT_EQ(outcome.status, 2);
    EXPECT_EQ(outcome.err, "in.pcap: frame 2: is 2 ms earlier than the frame before it; --sort sorts frames by time\n"
                           "in.pcap: 1 problem, nothing was started\n");
    EXPECT_EQ(read("out.pcap"), "as it was");
    EXPECT_EQ(replay(back, {"--sort"}).status, 0);
    EXPECT_EQ(read("out.pcap"), pcap_of({{morning, frame_to(2, 60)}, {morning + 2'000'000, frame_to(2, 96)}}));
}

TEST_F(Replay, WarningsOfTheNodeFileAreShown)
{
    node_file += "[[pcep]]\nid = 7\nremote_id = 9\nlocal_mac = \"02:00:00:03:00:01\"\n"
                 "remote_mac = \"02:00:00:02:00:07\"\nvlan = 1\n";
    const auto outcome = replay(pcap_of({{morning, frame_to(1, 96)}}));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_THAT(outcome.err, HasSubstr("node.toml:"));
    EXPECT_THAT(outcome.err, HasSubstr("02:00:00:02:00:07"));
}

TEST_F(Replay, WhatCannotBeReplayedStartsNothing)
{
    const std::string whole = pcap_of({{morning, frame_to(1, 96)}, {morning, frame_to(1, 4), 96}});
    EXPECT_EQ(replay(whole).err,
              "in.pcap: frame 2: only 4 octets were captured, without the whole destination address\n"
              "in.pcap: 1 problem, nothing was started\n");
    EXPECT_THAT(replay(whole.substr(0, 60)).err, HasSubstr("in.pcap: at octet 24: truncated"));
    EXPECT_THAT(replay("").err, HasSubstr("in.pcap: at octet 0: "));
    EXPECT_EQ(replay(whole, {"--dropped", "out.pcap"}).status, 2);
    EXPECT_EQ(read("out.pcap"), "");
}

// Captures of a host's own traffic have frames that no line carries.
TEST_F(Replay, AFrameLongerThanTheAcceleratorKnowsIsTooLong)
{
    const auto outcome = replay(pcap_of({{morning, frame_to(1, 64), 65'550}}), {"--json"});
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_THAT(outcome.out, HasSubstr(R"("name":"RLU1P","offered":{"frames":1,"octets":65554})"));
    EXPECT_THAT(outcome.out, HasSubstr(R"("dropped":{"too_long":1,)"));
}

TEST_F(Replay, ACaptureWithoutFramesMakesOneWithoutFrames)
{
    const auto outcome = replay(pcap_of({}));
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_EQ(read("out.pcap"), pcap_of({}));
}

TEST_F(Replay, OutIsNoInput)
{
    const std::string capture = pcap_of({{morning, frame_to(1, 96)}});
    write("node.toml", node);
    write("in.pcap", capture);
    const auto outcome = run_kelctl(
        {.arguments = {"traffic", "replay", "node.toml", "in.pcap", "--out", "in.pcap"}, .folder = folder.path()});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.err, HasSubstr("in.pcap: cannot be written: it is an input of this run"));
    EXPECT_EQ(read("in.pcap"), capture);
}

TEST_F(Replay, APictureShowsEachQueueAndItsDrops)
{
    std::vector<made_frame> in(6, {morning, frame_to(1, 96)});
    in.push_back({morning + 50'000, frame_to(2, 96)});
    const auto outcome = replay(pcap_of(in), {"--plot", "plot.svg"});
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    const std::string picture = read("plot.svg");
    for (const char *shown : {"<svg", ">rate, Mbit/s<", ">backlog, KiB<", ">largest delay, ms<", ">RLU1P<", ">RLU1Q<",
                              ">RLU1P drops<", "</svg>"})
        EXPECT_THAT(picture, HasSubstr(shown));
    EXPECT_THAT(picture, Not(HasSubstr(">RLU1Q drops<")));
}

TEST_F(Replay, WithoutGnuplotThePictureIsAnError)
{
    write("node.toml", node);
    write("in.pcap", pcap_of({}));
    const auto outcome = run_kelctl(
        {.arguments = {"traffic", "replay", "node.toml", "in.pcap", "--out", "out.pcap", "--plot", "plot.svg"},
         .environment = {{"PATH", folder.path()}},
         .folder = folder.path()});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.err, HasSubstr("gnuplot is not installed"));
    EXPECT_EQ(read("plot.svg"), "");
    EXPECT_EQ(read("out.pcap"), pcap_of({})) << "what can be written is";
}

// The loader tells which libraries it maps.
TEST_F(Replay, NoOtherCommandLoadsTheLibraryOfCaptures)
{
    const std::map<std::string, std::string> loader = {{"LD_DEBUG", "files"}};
    EXPECT_THAT(run_kelctl({.arguments = {"version"}, .environment = loader}).err, Not(HasSubstr("libpcap")));
    write("node.toml", node);
    write("in.pcap", pcap_of({}));
    EXPECT_THAT(run_kelctl({.arguments = {"traffic", "replay", "node.toml", "in.pcap", "--out", "out.pcap"},
                            .environment = loader,
                            .folder = folder.path()})
                    .err,
                HasSubstr("libpcap"));
}

// The second one is a library, but another one.
TEST_F(Replay, SaysWhatItLacksOfTheLibraryOfCaptures)
{
    const std::string soname = folder.path() + "/libpcap.so.0.8";
    write("libpcap.so.1", "");
    const std::map<std::string, std::string> here = {{"LD_LIBRARY_PATH", folder.path()}};
    write("libpcap.so.0.8", "");
    const auto none = replay(pcap_of({}), {}, here);
    EXPECT_EQ(none.status, 1);
    EXPECT_THAT(none.err, HasSubstr("captures need libpcap: "));
    EXPECT_THAT(none.err, HasSubstr("libpcap.so.1: file too short"));
    std::filesystem::remove(soname);
    std::filesystem::create_symlink("/lib/x86_64-linux-gnu/libm.so.6", soname);
    const auto other = replay(pcap_of({}), {}, here);
    EXPECT_EQ(other.status, 1);
    EXPECT_THAT(other.err, HasSubstr("captures need libpcap: "));
    EXPECT_THAT(other.err, HasSubstr("undefined symbol: pcap_close"));
}

TEST_F(Replay, IsRefusedWithANodeFileThatHasMistakes)
{
    node_file = "[nothing]\n";
    const auto outcome = replay(pcap_of({{morning, frame_to(1, 96)}}));
    EXPECT_EQ(outcome.status, 2);
    EXPECT_EQ(outcome.out, "");
    EXPECT_THAT(outcome.err, HasSubstr("node.toml:1:"));
}

TEST_F(Replay, WritesNothingWhereTheNodeDoesNotComeUp)
{
    const auto outcome =
        replay(pcap_of({{morning, frame_to(1, 96)}}), {}, {{"KEL_SOFTNODE_FAULTS", "ork_ebcom_pcep_path_create=-4"}});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(read("out.pcap"), "");
}

TEST_F(Replay, AFailedTakeDownIsAFailureOfItAll)
{
    const std::vector<made_frame> in = {{morning, frame_to(1, 96)}};
    const auto outcome = replay(pcap_of(in), {}, {{"KEL_SOFTNODE_FAULTS", "ork_ebcom_pcep_path_delete=-4"}});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(read("out.pcap"), pcap_of(in));
}

TEST_F(Replay, DrawsFramesThatNoPathTakesAndNothingAfterAFileThatCannotBeWritten)
{
    const std::string capture = pcap_of({{morning, frame_to(1, 96)}, {morning, frame_to(9, 96)}});
    EXPECT_EQ(replay(capture, {"--plot", "plot.svg"}).status, 0);
    EXPECT_THAT(read("plot.svg"), HasSubstr(">no path drops<"));
    const auto outcome = replay(capture, {"--dropped", "nowhere/dropped.pcap", "--plot", "other.svg"});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(read("other.svg"), "");
}

} // namespace

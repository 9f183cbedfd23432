// Reading and writing captures.
#include "kelctl/capture/capture.h"

#include "made_capture.h"
#include "temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <sys/stat.h>
#include <thread>

namespace
{

using namespace kelctl;
using testing::HasSubstr;
using testing::StartsWith;

constexpr uint64_t morning = 1'700'000'000'123'456'789;

const std::vector<made_frame> two = {{morning, frame_to(1, 60)}, {morning + 1'001, frame_to(2, 64), 1'514}};

class Capture : public testing::Test
{
protected:
    capture read(const std::string &text)
    {
        return read_capture(folder.file_with(text));
    }

    std::string wrong(const std::string &text)
    {
        return read(text).wrong.value_or("");
    }

    static std::string text_of(const std::string &file)
    {
        std::ostringstream text;
        text << std::ifstream(file, std::ios::binary).rdbuf();
        return text.str();
    }

    void expect_two(const std::string &text, uint64_t unit)
    {
        const capture got = read(text);
        EXPECT_EQ(got.wrong, std::nullopt);
        ASSERT_EQ(got.frames.size(), 2U);
        EXPECT_EQ(got.frames[0].time, morning / unit * unit);
        EXPECT_EQ(got.frames[1].time, (morning + 1'001) / unit * unit);
        EXPECT_EQ(got.frames[0].length, 60U);
        EXPECT_EQ(got.frames[1].length, 1'514U) << "as long as it was, though only its beginning is there";
        EXPECT_EQ(std::string(got.frames[1].octets.begin(), got.frames[1].octets.end()), frame_to(2, 64));
    }

    temporary_folder folder;
};

// Messages tell the octet at which something is wrong.
TEST_F(Capture, APipeIsNotRead)
{
    const std::string name = folder.path() + "/pipe";
    ASSERT_EQ(mkfifo(name.c_str(), 0600), 0);
    std::thread writer([&] { std::ofstream(name) << ""; });
    EXPECT_EQ(read_capture(name).wrong, "cannot be read: Illegal seek");
    writer.join();
}

TEST_F(Capture, BothFormatsAreReadWithEitherUnitOfTime)
{
    expect_two(pcap_of(two, 1), 1);
    expect_two(pcap_of(two, 1'000), 1'000);
    expect_two(pcapng_of(two, 9), 1);
    expect_two(pcapng_of(two, 6), 1'000);
}

TEST_F(Capture, ATruncatedFileIsWrongWithTheOffsetOfWhatIsNotWhole)
{
    const std::string whole = pcap_of(two);
    EXPECT_THAT(wrong(whole.substr(0, whole.size() - 1)), StartsWith("at octet 100: truncated"));
    EXPECT_THAT(wrong(whole.substr(0, 30)), StartsWith("at octet 24: truncated"));
    EXPECT_THAT(wrong(whole.substr(0, 7)), StartsWith("at octet 7: truncated"));
    const std::string blocks = pcapng_of(two);
    EXPECT_THAT(wrong(blocks.substr(0, blocks.size() - 1)), HasSubstr("at octet "));
}

TEST_F(Capture, AForeignFileIsWrong)
{
    EXPECT_THAT(wrong("not a capture at all, whatever it is"), HasSubstr("unknown file format"));
    EXPECT_EQ(wrong(pcap_of(two, 1, 113)), "is a capture of LINUX_SLL, not of Ethernet");
    EXPECT_EQ(wrong(pcap_of(two, 1, 9999)), "is a capture of link type 9999, not of Ethernet");
    EXPECT_EQ(read_capture(folder.path() + "/none").wrong, "cannot be read: No such file or directory");
}

TEST_F(Capture, WhatIsWrittenIsTheSameOctetForOctet)
{
    const capture got = read(pcap_of(two));
    const std::string out = folder.path() + "/out";
    const std::vector<timed_frame> frames = {{&got.frames[0], morning}, {&got.frames[1], morning + 1'001}};
    EXPECT_EQ(write_capture(out, frames), std::nullopt);
    EXPECT_EQ(text_of(out), pcap_of(two));
}

TEST_F(Capture, WhatCannotBeWrittenLeavesTheFileAlone)
{
    const capture got = read(pcap_of(two));
    const std::vector<timed_frame> late = {{&got.frames[0], uint64_t{4'294'967'296} * 1'000'000'000}};
    const std::string input = folder.path() + "/file";
    EXPECT_EQ(write_capture(folder.path() + "/out", late),
              "cannot be written: pcap holds no times after the year 2106");
    EXPECT_EQ(text_of(folder.path() + "/out"), "");
    EXPECT_EQ(write_capture(input, {}), "cannot be written: it is an input of this run");
    EXPECT_EQ(text_of(input), pcap_of(two));
}

} // namespace

// Records of the library, fired by this thread and by others.
#include "kelctl/library/trace_log.h"

#include "kel/kel_core_ic_ebcom.h"
#include "softnode/softnode.h"
#include "terminal/terminal.h"
#include "tests/terminal/captured_stream.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

namespace kelctl
{
namespace
{

using testing::ElementsAre;
using testing::Field;
using testing::IsEmpty;

// Traces FN_ENTER, ERROR, EXCEPTION and FN_EXIT.
void refused_port()
{
    uint8_t channel = 0;
    EXPECT_EQ(kel_ic_ebcom_port_to_mac_chan(0, &channel), 3u);
}

class TraceLog : public testing::Test
{
protected:
    void SetUp() override
    {
        if (!trace_log().installed())
            GTEST_SKIP() << "there is no tracer on this machine";
    }
};

TEST_F(TraceLog, KeepsTheRecordsOfTheLatestOperation)
{
    trace_log log;
    refused_port();
    log.start_operation();
    EXPECT_THAT(log.operation_records(), IsEmpty());
    refused_port();
    EXPECT_THAT(log.operation_records(),
                ElementsAre(Field(&trace_entry::event, "FN_ENTER"), Field(&trace_entry::event, "ERROR"),
                            Field(&trace_entry::event, "EXCEPTION"), Field(&trace_entry::event, "FN_EXIT")));
    EXPECT_EQ(log.operation_records()[1].domain, "EBCOM");
    EXPECT_EQ(log.operation_records()[1].message, "kel_ic_ebcom_port_to_mac_chan(): Unknown iell_port=0");
    EXPECT_THAT(log.operation_records()[1].location, testing::MatchesRegex("kel_ic_ebcom\\.cpp:[0-9]+"));
}

TEST_F(TraceLog, OtherThreadsRecordsAreNoneOfTheOperations)
{
    trace_log log;
    log.start_operation();
    std::thread(refused_port).join();
    EXPECT_THAT(log.operation_records(), IsEmpty());
    EXPECT_THAT(log.background_failures(),
                ElementsAre(Field(&trace_entry::event, "ERROR"), Field(&trace_entry::event, "EXCEPTION")));
}

TEST_F(TraceLog, KeepsABoundedNumberOfBackgroundFailures)
{
    trace_log log;
    std::thread([] {
        for (int i = 0; i < 100; ++i)
            refused_port();
    }).join();
    EXPECT_THAT(log.background_failures(), testing::SizeIs(100));
}

TEST_F(TraceLog, PrintsEveryRecordOfEveryThreadOnALineOfItsOwn)
{
    captured_stream out;
    trace_log log;
    log.pass_to([&out](const trace_entry &entry) { terminal::write(out.stream(), to_text(entry) + "\n"); });
    std::thread other([] {
        for (int i = 0; i < 100; ++i)
            refused_port();
    });
    for (int i = 0; i < 100; ++i)
        refused_port();
    other.join();

    std::istringstream lines(out.text());
    size_t count = 0;
    for (std::string line; std::getline(lines, line); ++count)
        EXPECT_THAT(line,
                    testing::MatchesRegex("(FN_ENTER |FN_EXIT  |ERROR    |EXCEPTION) (EBCOM  |GENERAL) "
                                          "kel_ic_ebcom_port_to_mac_chan\\(\\).*  \\(kel_ic_ebcom.cpp:[0-9]+\\)"));
    EXPECT_EQ(count, 800u);
}

// The thread of the library itself.
TEST_F(TraceLog, KnowsWhenTheLatestOffsetWasWritten)
{
    constexpr uint32_t adjustment = 6;
    constexpr uint32_t longest = 10'000; // milliseconds
    softnode_reset();
    trace_log log;
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_EQ(log.timestamp_written(), std::nullopt);
    EXPECT_EQ(kel_core_ic_ebcom_start(), 0u);
    ASSERT_EQ(softnode_timing_settle(longest), 1);
    const auto first = log.timestamp_written();
    ASSERT_TRUE(first);
    EXPECT_GT(*first, begin);
    softnode_timing_event_post(adjustment + 1, 0); // which no offset is written for
    ASSERT_EQ(softnode_timing_settle(longest), 1);
    EXPECT_EQ(log.timestamp_written(), first);
    softnode_timing_event_post(adjustment, 0);
    ASSERT_EQ(softnode_timing_settle(longest), 1);
    const auto second = log.timestamp_written();
    EXPECT_GT(*second, *first);

    const std::string fault = "ork_ebcom_timestamp_offset_set=-7";
    EXPECT_EQ(softnode_faults_add_text(fault.data(), fault.size(), nullptr, nullptr), nullptr);
    softnode_timing_event_post(adjustment, 0);
    ASSERT_EQ(softnode_timing_settle(longest), 1);
    EXPECT_EQ(log.timestamp_written(), second);
    EXPECT_EQ(kel_core_ic_ebcom_stop(), 0u);
    softnode_reset();
}

TEST_F(TraceLog, HearsNothingBeforeAndAfterItsLife)
{
    refused_port();
    trace_log log;
    EXPECT_THAT(log.operation_records(), IsEmpty());
}

} // namespace
} // namespace kelctl

// The dump of the QoS handles: the file line by line, the records beside it, and a file that does not take it.
#include "expected.h"
#include "script.h"
#include "scripted_dump_file.h"
#include "scripted_platform.h"
#include "shaper_requests.h"
#include "transcript.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <ranges>
#include <string>
#include <vector>

namespace
{

using lines = std::vector<std::string>; // of handles, without line ends

constexpr size_t queues_of_group = 8;

const std::string opened = R"(
        kel_core_ic_ebcom_qos_handle_dump:
          API_CALL EBCOM fopen(/tmp/KEL_DUMP_EBCOM_QOS_HANDLE_FILENAME, w)
          > fopen(/tmp/KEL_DUMP_EBCOM_QOS_HANDLE_FILENAME, w)
)";

const std::string header_written = R"(
          > fprintf(\n------ EBCOM QOS scheduler and queue handle info------\n)
)";

const std::string closed = R"(
          > fclose()
)";

lines handle_lines(const std::vector<void *> &schedulers, const std::vector<void *> &queues)
{
    lines result;
    for (size_t group = 0; group < schedulers.size(); ++group) {
        result.push_back(scripted::text("scheduler_handle=%p", schedulers[group]));
        for (size_t queue = 0; queue < queues_of_group; ++queue)
            result.push_back(scripted::text("  queue_handle=%p", queues[group * queues_of_group + queue]));
    }
    return result;
}

lines all_null()
{
    return handle_lines(std::vector<void *>(5), std::vector<void *>(40));
}

lines first(size_t count, const lines &all)
{
    return {all.begin(), all.begin() + static_cast<ptrdiff_t>(count)};
}

// The file with these lines.
std::string dumped(const lines &handles)
{
    std::string result = "\n------ EBCOM QOS scheduler and queue handle info------\n";
    for (const std::string &line : handles)
        result += line + "\n";
    return result;
}

std::string line_written(const std::string &line)
{
    return expected::with({line}, R"(
          LAB EBCOM $1
          > fprintf($1\n)
    )");
}

// The transcript of writing these lines.
std::string written(const lines &handles)
{
    std::string result = header_written;
    for (const std::string &line : handles)
        result += line_written(line);
    return result;
}

std::string write_refused(const std::string &text, int32_t rc)
{
    return expected::with({text, std::to_string(rc)}, R"(
          > fprintf($1\n) = $2
          ~ strerror(28)
          init:EXCEPTION GENERAL fprintf => rc=$2, errno=No space left on device(28)
    )");
}

// Every port with QoS gets a queue, the last one in dump order first. Gives the lines of the whole.
lines registry_filled()
{
    scheduler_tree_up();
    std::vector<void *> queues(40);
    for (size_t slot = std::size(qos_ports); slot-- > 0;) {
        EXPECT_EQ(add(unshaped(qos_ports[slot].iell_port)), 0U);
        queues[slot] = scripted::queue(static_cast<uint32_t>(std::size(qos_ports) - slot));
    }
    transcript::forget();
    return handle_lines(
        {group_scheduler(0), group_scheduler(1), group_scheduler(2), group_scheduler(3), group_scheduler(4)}, queues);
}

} // namespace

TEST(QosHandleDump, OfAnEmptyRegistryShowsEverySlotAsNull)
{
    EXPECT_EQ(kel_core_ic_ebcom_qos_handle_dump(), 0U);
    EXPECT_EQ(scripted::dump_file_text(), dumped(all_null()));
    transcript::expect(opened + written(all_null()) + closed);
}

TEST(QosHandleDump, IsFortySevenLines)
{
    EXPECT_EQ(kel_core_ic_ebcom_qos_handle_dump(), 0U);
    const std::string text = scripted::dump_file_text();
    EXPECT_EQ(std::ranges::count(text, '\n'), 47);
    EXPECT_TRUE(text.ends_with("=(nil)\n"));
}

TEST(QosHandleDump, ShowsTheHandlesGroupByGroupAndQueueByQueue)
{
    const lines handles = registry_filled();
    EXPECT_EQ(kel_core_ic_ebcom_qos_handle_dump(), 0U);
    EXPECT_EQ(scripted::dump_file_text(), dumped(handles));
    transcript::expect(opened + written(handles) + closed);
}

TEST(QosHandleDump, ShowsWhatAFailedSetUpLeft)
{
    scripted::fail("ork_qos_scheduler_create", -1, 10);
    ASSERT_EQ(kel_ic_ebcom_init_qos(), 13U);
    transcript::forget();
    const lines handles =
        handle_lines({group_scheduler(0), group_scheduler(1), nullptr, nullptr, nullptr}, std::vector<void *>(40));
    EXPECT_EQ(kel_core_ic_ebcom_qos_handle_dump(), 0U);
    EXPECT_EQ(scripted::dump_file_text(), dumped(handles));
}

TEST(QosHandleDump, ReplacesTheOneBefore)
{
    registry_filled();
    EXPECT_EQ(kel_core_ic_ebcom_qos_handle_dump(), 0U);
    ASSERT_EQ(kel_ic_ebcom_deinit_qos(), 0U);
    EXPECT_EQ(kel_core_ic_ebcom_qos_handle_dump(), 0U);
    EXPECT_EQ(scripted::dump_file_text(), dumped(all_null()));
}

TEST(QosHandleDump, ReplacesALongerFile)
{
    scripted::set_dump_file_text(std::string(100'000, 'x'));
    EXPECT_EQ(kel_core_ic_ebcom_qos_handle_dump(), 0U);
    EXPECT_EQ(scripted::dump_file_text(), dumped(all_null()));
}

TEST(QosHandleDump, ChangesNothing)
{
    const lines handles = registry_filled();
    EXPECT_EQ(kel_core_ic_ebcom_qos_handle_dump(), 0U);
    EXPECT_EQ(kel_core_ic_ebcom_qos_handle_dump(), 0U);
    EXPECT_EQ(scripted::dump_file_text(), dumped(handles));
    EXPECT_EQ(queue_of(peer), scripted::queue(static_cast<uint32_t>(std::size(qos_ports))));
}

TEST(QosHandleDump, FileThatDoesNotOpenIs13WithoutARecord)
{
    for (const int32_t number : {EACCES, ENOENT, EMFILE, EISDIR}) {
        SCOPED_TRACE(strerror(number));
        scripted::fail("fopen", number);
        EXPECT_EQ(kel_core_ic_ebcom_qos_handle_dump(), 13U);
        transcript::expect(expected::with({std::to_string(number)}, R"(
        kel_core_ic_ebcom_qos_handle_dump:
          API_CALL EBCOM fopen(/tmp/KEL_DUMP_EBCOM_QOS_HANDLE_FILENAME, w)
          > fopen(/tmp/KEL_DUMP_EBCOM_QOS_HANDLE_FILENAME, w) = $1
        )"));
    }
}

TEST(QosHandleDump, FileThatDoesNotOpenIsRecordedOnlyForANegativeErrorNumber)
{
    for (const int32_t number : {-1, -13}) {
        SCOPED_TRACE(number);
        scripted::fail("fopen", number);
        EXPECT_EQ(kel_core_ic_ebcom_qos_handle_dump(), 13U);
        transcript::expect(expected::with({std::to_string(number)}, R"(
        kel_core_ic_ebcom_qos_handle_dump:
          API_CALL EBCOM fopen(/tmp/KEL_DUMP_EBCOM_QOS_HANDLE_FILENAME, w)
          > fopen(/tmp/KEL_DUMP_EBCOM_QOS_HANDLE_FILENAME, w) = $1
          ~ strerror($1)
          init:EXCEPTION GENERAL fopen(w) => rc=$1, errno=Unknown error $1($1)
        )"));
    }
}

TEST(QosHandleDump, HeaderThatIsNotWrittenIs13AndLeavesAnEmptyFile)
{
    for (const int32_t rc : {-1, -28}) {
        SCOPED_TRACE(rc);
        scripted::fail("fprintf", rc);
        EXPECT_EQ(kel_core_ic_ebcom_qos_handle_dump(), 13U);
        EXPECT_EQ(scripted::dump_file_text(), "");
        transcript::expect(opened + write_refused(R"(\n------ EBCOM QOS scheduler and queue handle info------)", rc) +
                           closed);
    }
}

// Every scheduler line and every queue line in turn.
TEST(QosHandleDump, LineThatIsNotWrittenIs13AndLeavesThoseBeforeIt)
{
    const lines handles = registry_filled();
    for (size_t before = 0; before < handles.size(); ++before) {
        SCOPED_TRACE(handles[before]);
        const auto write = static_cast<uint32_t>(before) + 2; // the header is the first one
        scripted::fail("fprintf", -1, write);
        EXPECT_EQ(kel_core_ic_ebcom_qos_handle_dump(), 13U);
        EXPECT_EQ(scripted::dump_file_text(), dumped(first(before, handles)));
        transcript::expect(opened + written(first(before, handles)) + expected::with({handles[before]}, R"(
          LAB EBCOM $1
        )") + write_refused(handles[before], -1) +
                           closed);
    }
}

TEST(QosHandleDump, FailureToCloseACompleteOneIsIgnored)
{
    scripted::fail("fclose", EOF);
    EXPECT_EQ(kel_core_ic_ebcom_qos_handle_dump(), 0U);
    EXPECT_EQ(scripted::dump_file_text(), dumped(all_null()));
    transcript::expect(opened + written(all_null()) + R"(
          > fclose() = -1
    )");
}

TEST(QosHandleDump, FailureToCloseAnIncompleteOneChangesNothing)
{
    scripted::fail("fprintf", -1);
    scripted::fail("fclose", EOF);
    EXPECT_EQ(kel_core_ic_ebcom_qos_handle_dump(), 13U);
    transcript::expect(opened + write_refused(R"(\n------ EBCOM QOS scheduler and queue handle info------)", -1) + R"(
          > fclose() = -1
    )");
}

TEST(QosHandleDump, SucceedsAfterAFailedOne)
{
    scripted::fail("fopen", EACCES);
    scripted::fail("fprintf", -1, 5);
    EXPECT_EQ(kel_core_ic_ebcom_qos_handle_dump(), 13U);
    EXPECT_EQ(kel_core_ic_ebcom_qos_handle_dump(), 13U);
    EXPECT_EQ(kel_core_ic_ebcom_qos_handle_dump(), 0U);
    EXPECT_EQ(scripted::dump_file_text(), dumped(all_null()));
}

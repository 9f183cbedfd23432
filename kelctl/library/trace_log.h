// The library's trace records, received in this process without a tracing daemon: kept for each operation, for the
// report of its failure, and passed on as they are fired (--trace).
//
//     log.start_operation();
//     if (kel_core_ic_ebcom_stop() != 0)
//         report(log.operation_records());
#pragma once

#include "kelctl/library/trace_entry.h"
#include "trace/tap.h"

#include <chrono>
#include <cstddef>
#include <functional>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

namespace kelctl
{

// Receives records from its construction to its destruction; one at a time. Its callback runs on the thread that fires
// a record: the thread of the commands, or the library's timestamp thread, whose records belong to no operation.
class trace_log
{
public:
    // Where the tracer is not installed, nothing is received: see installed().
    trace_log();
    ~trace_log();
    trace_log(const trace_log &) = delete;
    trace_log &operator=(const trace_log &) = delete;

    // From here on each record is passed to it as it is fired, one at a time; null: to nobody. It must not use this
    // log.
    void pass_to(std::function<void(const trace_entry &)> live);

    // True when the tracer is installed on this machine. Without it there are no records.
    bool installed() const;

    // Begins an operation: the records that the calling thread fires from here on belong to it.
    void start_operation();

    // The records of the operation so far.
    std::vector<trace_entry> operation_records();

    // Those among them that report a failure: ERROR and EXCEPTION.
    std::vector<trace_entry> operation_failures();

    // When the library's timestamp thread last wrote an offset that the accelerator took; none: not since the
    // construction, or the tracer is not installed.
    std::optional<std::chrono::steady_clock::time_point> timestamp_written();

    // The failures that other threads have reported since the construction, the first 100 of them.
    std::vector<trace_entry> background_failures();

private:
    void take(const trace::record &record);
    trace_entry &next_of_operation();
    void follow_timestamp_thread(const trace_entry &entry);

    std::mutex mutex_; // guards what follows, and the order of records for live_
    std::function<void(const trace_entry &)> live_;
    std::thread::id operation_thread_ = std::this_thread::get_id();
    std::vector<trace_entry> operation_; // never shrinks: the next operation uses the memory of its texts again
    std::ptrdiff_t operation_count_ = 0; // entries that belong to the operation
    trace_entry other_; // the last record of any other thread; a member so that its memory is used again
    std::vector<trace_entry> background_;
    std::optional<std::chrono::steady_clock::time_point> timestamp_written_;
    bool installed_ = false;
};

} // namespace kelctl

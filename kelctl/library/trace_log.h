// The library's trace records, heard in this process: kept per operation for a failure report, and printed live.
#pragma once

#include "kelctl/library/trace_entry.h"
#include "trace/tap.h"

#include <cstddef>
#include <cstdio>
#include <mutex>
#include <thread>
#include <vector>

namespace kelctl
{

// Listens from its construction to its destruction; one at a time. Records arrive on the threads that fire them.
class trace_log
{
public:
    // `live` is where every record is printed as it is fired, or null.
    explicit trace_log(std::FILE *live);
    ~trace_log();
    trace_log(const trace_log &) = delete;
    trace_log &operator=(const trace_log &) = delete;

    // From here on every record is printed there, as this lays it out; nowhere when null.
    void print_to(std::FILE *live, std::string (*layout)(const trace_entry &));

    // Whether there is a tracer on this machine. Without one there are no records.
    bool installed() const;

    // From here on the calling thread's records are those of a new operation.
    void start_operation();

    // The records of the operation so far.
    std::vector<trace_entry> operation_records();

    // Those of them that tell of failures.
    std::vector<trace_entry> operation_failures();

    // The failures that other threads told of, since the beginning. At most 100 are kept.
    std::vector<trace_entry> background_failures();

private:
    void take(const trace::record &record);
    trace_entry &next_of_operation();

    std::mutex mutex_; // guards what follows, and the order of lines on live_
    std::FILE *live_;
    std::string (*layout_)(const trace_entry &) = text_line;
    std::thread::id operation_thread_ = std::this_thread::get_id();
    std::vector<trace_entry> operation_; // so many of them; the others keep their texts' memory for the next operation
    std::ptrdiff_t operation_count_ = 0;
    trace_entry other_; // the latest one of any other thread
    std::vector<trace_entry> background_;
    bool installed_ = false;
};

} // namespace kelctl

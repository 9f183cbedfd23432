// Sorting trace records by the thread that fired them.
#include "kelctl/library/trace_log.h"

#include <algorithm>
#include <iterator>
#include <new>
#include <utility>

namespace kelctl
{
namespace
{

// The timestamp thread may fail every second for days: the first failures say what is wrong, and memory stays bounded.
constexpr size_t most_background_failures = 100;

bool tells_failure(const trace_entry &entry)
{
    return entry.event == "ERROR" || entry.event == "EXCEPTION";
}

} // namespace

trace_log::trace_log()
{
    // No exception may leave through the tracer, which is locked: a record that there is no memory for is lost.
    installed_ = trace::listen([this](const trace::record &record) {
        try {
            take(record);
        } catch (const std::bad_alloc &) {
        }
    });
}

trace_log::~trace_log()
{
    if (installed_)
        trace::stop_listening();
}

void trace_log::pass_to(std::function<void(const trace_entry &)> live)
{
    const std::lock_guard lock(mutex_);
    live_ = std::move(live);
}

bool trace_log::installed() const
{
    return installed_;
}

// Entries are kept and written over: a bring-up with 10,000 paths would otherwise allocate four texts for each record.
void trace_log::start_operation()
{
    const std::lock_guard lock(mutex_);
    operation_thread_ = std::this_thread::get_id();
    operation_count_ = 0;
}

std::vector<trace_entry> trace_log::operation_records()
{
    const std::lock_guard lock(mutex_);
    return {operation_.begin(), operation_.begin() + operation_count_};
}

std::vector<trace_entry> trace_log::operation_failures()
{
    const std::lock_guard lock(mutex_);
    std::vector<trace_entry> failures;
    std::copy_if(operation_.begin(), operation_.begin() + operation_count_, std::back_inserter(failures),
                 tells_failure);
    return failures;
}

std::vector<trace_entry> trace_log::background_failures()
{
    const std::lock_guard lock(mutex_);
    return background_;
}

std::optional<std::chrono::steady_clock::time_point> trace_log::timestamp_written()
{
    const std::lock_guard lock(mutex_);
    return timestamp_written_;
}

// Runs inside of the library's call. The members of an entry are assigned to, so that their memory is used again.
void trace_log::take(const trace::record &record)
{
    const std::lock_guard lock(mutex_);
    const bool of_operation = std::this_thread::get_id() == operation_thread_;
    trace_entry &entry = of_operation ? next_of_operation() : other_;
    entry.event = record.event;
    entry.domain = record.domain;
    entry.message = record.message;
    entry.location = record.location;
    operation_count_ += of_operation;
    if (live_)
        live_(entry);
    if (!of_operation)
        follow_timestamp_thread(entry);
    if (!of_operation && tells_failure(entry) && background_.size() < most_background_failures)
        background_.push_back(entry);
}

// The thread announces that it writes, and after a success what it does next; a failure is a record of another event.
// There may be several such threads.
void trace_log::follow_timestamp_thread(const trace_entry &entry)
{
    thread_local bool writes = false;
    const bool announced = entry.event == "API_CALL";
    if (writes && announced)
        timestamp_written_ = std::chrono::steady_clock::now();
    writes = announced && entry.message.find("ork_ebcom_timestamp_offset_set(") != std::string::npos;
}

trace_entry &trace_log::next_of_operation()
{
    if (operation_count_ == std::ssize(operation_))
        operation_.emplace_back();
    return operation_[static_cast<size_t>(operation_count_)];
}

} // namespace kelctl

// Sorting trace records by the thread that fired them.
#include "kelctl/library/trace_log.h"

#include "kelctl/terminal/terminal.h"

#include <algorithm>
#include <iterator>

namespace kelctl
{
namespace
{

constexpr size_t most_background_failures = 100;

bool tells_failure(const trace_entry &entry)
{
    return entry.event == "ERROR" || entry.event == "EXCEPTION";
}

} // namespace

trace_log::trace_log(std::FILE *live) : live_(live)
{
    installed_ = trace::listen([this](const trace::record &record) { take(record); });
}

trace_log::~trace_log()
{
    if (installed_)
        trace::stop_listening();
}

void trace_log::print_to(std::FILE *live, std::string (*layout)(const trace_entry &))
{
    const std::lock_guard lock(mutex_);
    live_ = live;
    layout_ = layout;
}

bool trace_log::installed() const
{
    return installed_;
}

void trace_log::start_operation()
{
    const std::lock_guard lock(mutex_);
    operation_thread_ = std::this_thread::get_id();
    operation_.clear();
}

std::vector<trace_entry> trace_log::operation_records()
{
    const std::lock_guard lock(mutex_);
    return operation_;
}

std::vector<trace_entry> trace_log::operation_failures()
{
    const std::lock_guard lock(mutex_);
    std::vector<trace_entry> failures;
    std::ranges::copy_if(operation_, std::back_inserter(failures), tells_failure);
    return failures;
}

std::vector<trace_entry> trace_log::background_failures()
{
    const std::lock_guard lock(mutex_);
    return background_;
}

void trace_log::take(const trace::record &record)
{
    trace_entry entry{record.event, record.domain, record.message, record.location};
    const std::lock_guard lock(mutex_);
    if (live_)
        write(live_, layout_(entry));
    if (std::this_thread::get_id() == operation_thread_)
        operation_.push_back(std::move(entry));
    else if (tells_failure(entry) && background_.size() < most_background_failures)
        background_.push_back(std::move(entry));
}

} // namespace kelctl

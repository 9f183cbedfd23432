#include "model.h"

#include <algorithm>
#include <numeric>

namespace proof
{

const model::dispatch model::operations[operation_count] = {
    {operation::ebcom_start, &model::ebcom_start},
    {operation::ebcom_stop, &model::ebcom_stop},
    {operation::convert_cycles, &model::convert_cycles},
    {operation::global_param_set, &model::global_param_set},
    {operation::capabilities_get, &model::capabilities_get},
    {operation::interface_create, &model::interface_create},
    {operation::interface_delete, &model::interface_delete},
    {operation::queue_handle_get, &model::queue_handle_get},
    {operation::scheduler_handle_get, &model::scheduler_handle_get},
    {operation::init_qos, &model::init_qos},
    {operation::deinit_qos, &model::deinit_qos},
    {operation::add_shaper, &model::add_shaper},
    {operation::remove_shaper, &model::remove_shaper},
    {operation::path_add, &model::path_add},
    {operation::path_rem, &model::path_rem},
    {operation::port_to_mac_chan, &model::port_to_mac_chan},
    {operation::qos_handle_dump, &model::qos_handle_dump},
    {operation::global_stats, &model::global_stats},
    {operation::global_text, &model::global_text},
    {operation::global_text_second_name, &model::global_text},
    {operation::queue_stats, &model::queue_stats},
    {operation::queue_text, &model::queue_text},
    {operation::queue_text_2, &model::queue_text_2},
    {operation::queue_text_second_name, &model::queue_text},
    {operation::set_burst_stats, &model::set_burst_stats},
    {operation::classify, &model::classify},
    {operation::pcep_start, &model::pcep_start},
    {operation::pcep_stop, &model::pcep_stop},
    {operation::pcep_dump, &model::pcep_dump},
    {operation::multicast_hook, &model::multicast_hook},
    {operation::pcep_add, &model::pcep_add},
    {operation::pcep_rem, &model::pcep_rem},
    {operation::group_add, &model::group_add},
    {operation::group_rem, &model::group_rem},
    {operation::member_add, &model::member_add},
    {operation::member_rem, &model::member_rem},
    {operation::pcep_driver_kit_stats, &model::pcep_driver_kit_stats},
    {operation::pcep_stats, &model::pcep_compact_stats},
    {operation::pcep_stats_second_name, &model::pcep_compact_stats},
    {operation::pcep_text, &model::pcep_text},
    {operation::pcep_text_second_name, &model::pcep_text},
    {operation::tracepoint, &model::tracepoint},
    {operation::abort, &model::abort_requested},
    {operation::timing_event, &model::timing},
    {operation::timing_failure, &model::timing},
    {operation::end_threads, &model::timing},
    {operation::set_reading, &model::surroundings},
    {operation::set_queue_record, &model::surroundings},
    {operation::set_mpid, &model::surroundings},
    {operation::classify_all_as, &model::surroundings},
};

outcome model::perform(const step &step)
{
    tell_.begin(step.faults);
    thread_faults_ = step.thread_faults;
    outputs_.clear();
    for (timestamp_thread &thread : threads_) {
        thread.over = thread.ended;
        thread.shown += thread.tell.transcript();
        thread.tell.begin_again(step.thread_faults);
    }

    outcome result;
    result.result = (this->*operations[static_cast<size_t>(step.what)].perform)(step);
    result.outputs = outputs_;
    result.transcript = tell_.transcript();
    result.records = tell_.records();
    for (size_t n = 0; n < threads_.size(); ++n)
        if (!threads_[n].over)
            result.threads[n] = threads_[n].shown + threads_[n].tell.transcript();
    return result;
}

std::vector<made_call> model::thread_calls() const
{
    std::vector<made_call> result;
    for (const timestamp_thread &thread : threads_)
        result.insert(result.end(), thread.tell.calls().begin(), thread.tell.calls().end());
    return result;
}

uint32_t model::waiting_threads() const
{
    return static_cast<uint32_t>(std::ranges::count(threads_, false, &timestamp_thread::ended));
}

bool model::thread_ended(size_t n) const
{
    return threads_[n].ended;
}

// Of several threads that wait, any one gets the next event.
bool model::allows(const step &step) const
{
    if (step.what == operation::timing_event || step.what == operation::timing_failure)
        return waiting_threads() == 1;
    return true;
}

script model::way_back() const
{
    script result;
    const auto add = [&result](operation what) -> step & { return result.emplace_back(step{.what = what}); };
    add(operation::classify_all_as);
    add(operation::set_mpid);
    add(operation::set_queue_record).queue = {0, 0, 3};
    add(operation::set_reading).reading = {10, 250000};
    add(operation::end_threads);
    add(operation::deinit_qos);
    add(operation::pcep_start);
    add(operation::pcep_stop);
    for (unsigned n = groups_; n > 0; --n)
        add(operation::group_rem).id = 1;
    return result;
}

uint32_t model::tracepoint(const step &)
{
    return 0;
}

// The restart service's answer does not matter.
uint32_t model::abort_requested(const step &step)
{
    tell_.call("qol_ng_restart_request_line_and_file",
               format("%0*u", static_cast<int>(step.id % 200), step.other_id).substr(0, 127));
    return 0;
}

uint32_t model::surroundings(const step &step)
{
    if (step.what == operation::set_reading)
        reading_ = step.reading;
    if (step.what == operation::set_queue_record)
        queue_record_ = step.queue;
    if (step.what == operation::set_mpid)
        mpid_ = step.mpid;
    if (step.what == operation::classify_all_as)
        location_ = step.location;
    return 0;
}

void model::append(octets &to, const void *from, size_t size)
{
    const auto *begin = static_cast<const uint8_t *>(from);
    to.insert(to.end(), begin, begin + size);
}

std::string pointer(uint64_t handle)
{
    return handle ? format("%#lx", handle) : "(nil)";
}

const char *location_name(uint32_t location)
{
    static const char *const names[] = {"NONE", "CPU", "OB", "HSFP", "EIOA", "MULTICAST"};
    return location < std::size(names) ? names[location] : "UNKNOWN";
}

octets counted(size_t size)
{
    octets result(size);
    std::iota(result.begin(), result.end(), uint8_t{1});
    return result;
}

} // namespace proof

#include "library.h"

#include "kel/kel_trace.h"
#include "script.h"
#include "scripted_dump_file.h"
#include "scripted_pcep.h"
#include "scripted_platform.h"
#include "transcript.h"

#include <array>
#include <cstdlib>
#include <cstring>

namespace proof
{
namespace
{

// What the caller hands over to be written, soiled before.
class storage
{
public:
    template <typename Record> Record *take()
    {
        const size_t offset = used_;
        used_ += sizeof(Record);
        return reinterpret_cast<Record *>(begin(offset));
    }

    // Aligned: a record of the interface stands at the beginning, or is followed by its like.
    octets octets_written() const
    {
        return {memory_.begin(), memory_.begin() + static_cast<ptrdiff_t>(used_)};
    }

    storage()
    {
        memory_.fill(soil);
    }

private:
    uint8_t *begin(size_t offset)
    {
        return memory_.data() + offset;
    }

    alignas(16) std::array<uint8_t, 1024> memory_;
    size_t used_ = 0;
};

struct text_buffer {
    char text[text_buffer_size];
};

using runner = uint32_t (*)(const step &, storage &);

uint32_t set_global_params(const step &step, storage &)
{
    const kel_ebcom_global_params params = {step.id, step.other_id};
    const uint8_t settings[2] = {static_cast<uint8_t>(step.format), static_cast<uint8_t>(step.format >> 8)};
    return kel_core_ic_ebcom_global_param_set(&params, settings);
}

uint32_t convert_cycles(const step &step, storage &out)
{
    return kel_ic_ebcom_cycles_to_ork_timestamp_offset(step.reading.cycles, step.reading.frequency,
                                                       out.take<int64_t>());
}

uint32_t create_interface(const step &, storage &out)
{
    auto *vsi = out.take<kel_vsi_t>();
    return kel_core_ic_ebcom_interface_create(vsi, out.take<uint16_t>());
}

uint32_t port_to_mac_chan(const step &step, storage &out)
{
    return kel_ic_ebcom_port_to_mac_chan(step.path.iell_port, out.take<uint8_t>());
}

uint32_t dump_qos_handles(const step &, storage &)
{
    return kel_core_ic_ebcom_qos_handle_dump();
}

uint32_t classify(const step &step, storage &out)
{
    auto *location = out.take<uint32_t>();
    return kel_ic_pcep_get_location_and_type_from_branch(step.path.dst_mac, location, out.take<uint32_t>());
}

uint32_t multicast_hook(const step &, storage &out)
{
    kel_attach_info attach{};
    auto *queue = out.take<uint64_t>();
    return kel_core_ic_pcep_create_queue_and_scheduler_for_multicast(&attach, queue, out.take<uint64_t>());
}

uint32_t request_abort(const step &step, storage &)
{
    kel_abort_internal_abort(1, "file", "%0*u", static_cast<int>(step.id % 200), step.other_id);
    return 0;
}

uint32_t do_nothing(const step &, storage &)
{
    kel_tracepoint();
    return 0;
}

// Takes effect on the thread that waits.
uint32_t post_event(const step &step, storage &)
{
    scripted::post_event(step.event.type, step.event.domain);
    return 0;
}

uint32_t fail_wait(const step &step, storage &)
{
    scripted::fail_wait(static_cast<int32_t>(step.event.type));
    return 0;
}

uint32_t set_surroundings(const step &step, storage &)
{
    if (step.what == operation::set_reading)
        scripted::set_reading(step.reading);
    if (step.what == operation::set_queue_record)
        scripted::set_queue_record(step.queue);
    if (step.what == operation::classify_all_as)
        scripted::classify_as(step.location);
    if (step.what == operation::set_mpid && step.mpid)
        setenv("MPID", step.mpid->c_str(), 1);
    if (step.what == operation::set_mpid && !step.mpid)
        unsetenv("MPID");
    return 0;
}

const runner runners[operation_count] = {
    [](const step &, storage &) { return kel_core_ic_ebcom_start(); },
    [](const step &, storage &) { return kel_core_ic_ebcom_stop(); },
    convert_cycles,
    set_global_params,
    [](const step &, storage &out) { return kel_core_ic_ebcom_capabilities_get(out.take<kel_ebcom_capabilities>()); },
    create_interface,
    [](const step &, storage &) { return kel_core_ic_ebcom_interface_delete(); },
    [](const step &s, storage &out) { return kel_ic_ebcom_queue_handle_get(s.path.dst_mac, out.take<void *>()); },
    [](const step &s, storage &out) { return kel_ic_ebcom_scheduler_handle_get(s.path.dst_mac, out.take<void *>()); },
    [](const step &, storage &) { return kel_ic_ebcom_init_qos(); },
    [](const step &, storage &) { return kel_ic_ebcom_deinit_qos(); },
    [](const step &s, storage &out) { return kel_ic_ebcom_add_shaper(&s.path, out.take<ork_ebcom_pcep_path>()); },
    [](const step &s, storage &out) { return kel_ic_ebcom_remove_shaper(&s.path, out.take<ork_ebcom_pcep_path>()); },
    [](const step &s, storage &) { return kel_core_ic_ebcom_path_add(&s.path); },
    [](const step &s, storage &) { return kel_core_ic_ebcom_path_rem(&s.path); },
    port_to_mac_chan,
    dump_qos_handles,
    [](const step &, storage &out) { return kel_ic_ebcom_get_global_stats(out.take<ebcom_global_stats>()); },
    [](const step &s, storage &out) {
        return kel_core_ic_ebcom_global_fmt_stats_get(out.take<text_buffer>()->text, s.length,
                                                      static_cast<uint8_t>(s.format));
    },
    [](const step &s, storage &out) {
        return kel_core_ic_ebcom_fmt_global_stats(out.take<text_buffer>()->text, s.length, s.format);
    },
    [](const step &s, storage &out) {
        return kel_core_ic_ebcom_queue_stats_get(s.path.dst_mac, out.take<ebcom_queue_stats>());
    },
    [](const step &s, storage &out) {
        return kel_core_ic_ebcom_queue_fmt_stats_get(s.path.dst_mac, out.take<text_buffer>()->text, s.length,
                                                     static_cast<uint8_t>(s.format));
    },
    [](const step &s, storage &out) {
        return kel_core_ic_ebcom_queue_fmt_stats_get_2(s.path.dst_mac, out.take<text_buffer>()->text, s.length,
                                                       static_cast<uint8_t>(s.format));
    },
    [](const step &s, storage &out) {
        return kel_core_ic_ebcom_fmt_queue_stats(s.path.dst_mac, out.take<text_buffer>()->text, s.length, s.format);
    },
    [](const step &, storage &out) {
        return kel_ic_ebcom_set_burst_stats(nullptr, nullptr, out.take<ebcom_queue_stats>());
    },
    classify,
    [](const step &, storage &) { return kel_core_ic_pcep_start(); },
    [](const step &, storage &) { return kel_core_ic_pcep_stop(); },
    [](const step &, storage &) { return kel_core_ic_pcep_handle_dump(nullptr); },
    multicast_hook,
    [](const step &s, storage &) { return kel_core_ic_pcep_add(s.id, &s.pcep); },
    [](const step &s, storage &) { return kel_core_ic_pcep_rem(s.id); },
    [](const step &s, storage &) { return kel_core_ic_pcep_mc_group_add(s.id); },
    [](const step &s, storage &) { return kel_core_ic_pcep_mc_group_rem(s.id); },
    [](const step &s, storage &) { return kel_core_ic_pcep_mc_member_add(s.id, s.other_id); },
    [](const step &s, storage &) { return kel_core_ic_pcep_mc_member_rem(s.id, s.other_id); },
    [](const step &s, storage &out) { return kel_ic_pcep_get_stats(s.id, out.take<ebcom_pcep_stats>()); },
    [](const step &s, storage &out) { return kel_core_ic_pcep_stats_get(s.id, out.take<pcep_stats>()); },
    [](const step &s, storage &out) { return kel_core_ic_pcep_get_stats(s.id, out.take<pcep_stats>()); },
    [](const step &s, storage &out) {
        return kel_core_ic_pcep_fmt_stats_get(s.id, out.take<text_buffer>()->text, s.length,
                                              static_cast<uint8_t>(s.format));
    },
    [](const step &s, storage &out) {
        return kel_core_ic_pcep_fmt_stats(s.id, out.take<text_buffer>()->text, s.length, s.format);
    },
    do_nothing,
    request_abort,
    post_event,
    fail_wait,
    do_nothing, // the model knows how many threads there are to be ended
    set_surroundings,
    set_surroundings,
    set_surroundings,
    set_surroundings,
};

void plant(const step &step)
{
    scripted::renew();
    for (const fault &each : step.faults)
        scripted::fail(each.function, each.result, each.call, each.times);
    for (const fault &each : step.thread_faults)
        scripted::fail_on_thread(each.function, each.result, each.call, each.times);
}

std::map<size_t, std::string> settled_threads(const model &expected, const outcome &expected_outcome)
{
    for (const auto &[n, text] : expected_outcome.threads)
        if (expected.thread_ended(n))
            transcript::wait_until_thread_ended(n);
    if (!expected_outcome.threads.empty())
        scripted::wait_for_waiting_threads(expected.waiting_threads());
    std::map<size_t, std::string> result;
    for (const auto &[n, text] : expected_outcome.threads)
        result[n] = transcript::of_thread(n);
    return result;
}

} // namespace

outcome perform_on_library(const step &step, const model &expected, const outcome &expected_outcome)
{
    plant(step);
    storage out;
    outcome result;
    scripted::soil_stack();
    if (step.what == operation::end_threads)
        for (size_t n = 0; n < expected_outcome.threads.size(); ++n)
            scripted::fail_wait(-1);
    result.result = runners[static_cast<size_t>(step.what)](step, out);
    result.transcript = transcript::take();
    result.outputs = out.octets_written();
    if (step.what == operation::qos_handle_dump) {
        const std::string text = scripted::dump_file_text();
        result.outputs.assign(text.begin(), text.end());
    }
    result.threads = settled_threads(expected, expected_outcome);
    return result;
}

std::vector<octets> handed_over(const std::string &function)
{
    return scripted::records_of(function);
}

} // namespace proof

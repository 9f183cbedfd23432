// Exported operations of the library under test that its other operations call, and that a test must be able to make
// fail though they never fail by themselves. Unless a test said otherwise, the library's own do the work.
#include "kel/kel_core_ic_ebcom.h"
#include "kel/kel_core_ic_pcep.h"
#include "kel/kel_trace.h"
#include "script.h"
#include "scripted_pcep.h"
#include "scripted_platform.h"

#include <dlfcn.h>

#include <mutex>
#include <optional>
#include <set>
#include <string>

using scripted::next_result;

namespace
{

struct real_functions {
    decltype(&kel_ic_pcep_get_location_and_type_from_branch) classify;
    decltype(&kel_ic_ebcom_deinit_qos) deinit_qos;
    decltype(&kel_core_ic_pcep_create_queue_and_scheduler_for_multicast) multicast_hook;
    decltype(&kel_trace_internal_vformat_str) format_message;
} real;

struct multicast_handles {
    uint64_t queue;
    uint64_t scheduler;
};

std::optional<uint32_t> chosen_location;
std::optional<multicast_handles> chosen_handles;
scripted::hook_call latest_hook_call;
const void *latest_type_place;
thread_local std::set<std::string> used_formats;

template <typename Function> void find_real(const char *name, Function &function)
{
    function = reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

[[gnu::constructor]] void find_real_functions()
{
    find_real("kel_ic_pcep_get_location_and_type_from_branch", real.classify);
    find_real("kel_ic_ebcom_deinit_qos", real.deinit_qos);
    find_real("kel_core_ic_pcep_create_queue_and_scheduler_for_multicast", real.multicast_hook);
    find_real("kel_trace_internal_vformat_str", real.format_message);
}

} // namespace

void scripted::classify_as(std::optional<uint32_t> location)
{
    chosen_location = location;
}

scripted::hook_call scripted::last_hook_call()
{
    return latest_hook_call;
}

void scripted::set_hook_handles(uint64_t queue_handle, uint64_t scheduler_handle)
{
    chosen_handles = {queue_handle, scheduler_handle};
}

const void *scripted::last_type_place()
{
    return latest_type_place;
}

std::set<std::string> scripted::formats()
{
    return used_formats;
}

extern "C" char *kel_trace_internal_vformat_str(const char *prefix_format, const char *prefix_arg,
                                                const char *body_format, va_list values)
{
    if (body_format)
        used_formats.emplace(body_format);
    return real.format_message(prefix_format, prefix_arg, body_format, values);
}

extern "C" uint32_t kel_ic_pcep_get_location_and_type_from_branch(const uint8_t *mac, uint32_t *location,
                                                                  uint32_t *type)
{
    latest_type_place = type;
    if (const auto rc = next_result(__func__))
        return static_cast<uint32_t>(*rc);
    if (!chosen_location)
        return real.classify(mac, location, type);
    *location = *chosen_location;
    *type = 0x7E57; // a type that no location has
    return 0;
}

extern "C" uint32_t kel_ic_ebcom_deinit_qos()
{
    if (const auto rc = next_result(__func__))
        return static_cast<uint32_t>(*rc);
    return real.deinit_qos();
}

extern "C" uint32_t kel_core_ic_pcep_create_queue_and_scheduler_for_multicast(kel_attach_info *attach,
                                                                              uint64_t *queue_handle,
                                                                              uint64_t *scheduler_handle)
{
    latest_hook_call = {*attach, attach, *queue_handle, *scheduler_handle};
    if (const auto rc = next_result(__func__))
        return static_cast<uint32_t>(*rc);
    if (!chosen_handles)
        return real.multicast_hook(attach, queue_handle, scheduler_handle);
    *queue_handle = chosen_handles->queue;
    *scheduler_handle = chosen_handles->scheduler;
    return 0;
}

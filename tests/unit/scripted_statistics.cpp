// The closed functions that read counters, and the exported operations on the way to a queue's counters.
#include "scripted_statistics.h"

#include "platform/ork.h"
#include "script.h"
#include "scripted_pcep.h"
#include "scripted_platform.h"

#include <dlfcn.h>

#include <cstring>
#include <numeric>
#include <optional>

using scripted::keep_record;
using scripted::logged_result;
using scripted::next_result;
using scripted::ork_text;
using scripted::text;

namespace
{

std::optional<qos_queue_stats> queue_stats;
scripted::burst_request latest_burst_request;

template <typename Record> void fill(Record &record)
{
    memcpy(&record, scripted::counted_octets(sizeof record).data(), sizeof record);
}

struct real_functions {
    decltype(&kel_ic_ebcom_queue_handle_get) queue_of;
    decltype(&kel_ic_ebcom_scheduler_handle_get) scheduler_of;
    decltype(&kel_ic_ebcom_set_burst_stats) set_burst_stats;
} real;

template <typename Function> void find_real(const char *name, Function &function)
{
    function = reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

[[gnu::constructor]] void find_real_functions()
{
    find_real("kel_ic_ebcom_queue_handle_get", real.queue_of);
    find_real("kel_ic_ebcom_scheduler_handle_get", real.scheduler_of);
    find_real("kel_ic_ebcom_set_burst_stats", real.set_burst_stats);
}

} // namespace

scripted::octets scripted::counted_octets(size_t size)
{
    octets result(size);
    std::iota(result.begin(), result.end(), uint8_t{1});
    return result;
}

void scripted::set_queue_stats(const qos_queue_stats &stats)
{
    queue_stats = stats;
}

scripted::burst_request scripted::last_burst_request()
{
    return latest_burst_request;
}

// ---- The driver kit ----

// The record is the caller's own: a refusal leaves it alone.
extern "C" ork_rc ork_ebcom_global_statistics_get(void *ork, ebcom_global_stats *stats)
{
    keep_record(__func__, stats, sizeof *stats);
    const int64_t rc = logged_result(__func__, ork_text(ork));
    if (!rc)
        fill(*stats);
    return static_cast<ork_rc>(rc);
}

// Fills the record in also when it fails: nothing of that may come through.
extern "C" ork_rc ork_ebcom_pcep_statistics_get(void *ork, uint64_t handle, ebcom_pcep_stats *stats)
{
    fill(*stats);
    return static_cast<ork_rc>(
        logged_result(__func__, text("%s, %s", ork_text(ork).c_str(), scripted::handle_text(handle).c_str())));
}

// ---- The companion library ----

// Fills the record in also when it fails: nothing of that may come through.
extern "C" uint32_t kel_init_qos_queue_stats_get(void *queue, qos_queue_stats *stats)
{
    keep_record(__func__, stats, sizeof *stats);
    fill(*stats);
    *stats = queue_stats.value_or(*stats);
    return static_cast<uint32_t>(logged_result(__func__, text("%p", queue)));
}

// ---- Exported operations ----

extern "C" uint32_t kel_ic_ebcom_queue_handle_get(const uint8_t *dst_mac, void **queue_handle)
{
    if (const auto rc = next_result(__func__))
        return static_cast<uint32_t>(*rc);
    return real.queue_of(dst_mac, queue_handle);
}

extern "C" uint32_t kel_ic_ebcom_scheduler_handle_get(const uint8_t *dst_mac, void **scheduler_handle)
{
    if (const auto rc = next_result(__func__))
        return static_cast<uint32_t>(*rc);
    return real.scheduler_of(dst_mac, scheduler_handle);
}

extern "C" uint32_t kel_ic_ebcom_set_burst_stats(void *queue_handle, void *scheduler_handle, ebcom_queue_stats *stats)
{
    latest_burst_request = {queue_handle, scheduler_handle, stats};
    if (const auto rc = next_result(__func__))
        return static_cast<uint32_t>(*rc);
    return real.set_burst_stats(queue_handle, scheduler_handle, stats);
}

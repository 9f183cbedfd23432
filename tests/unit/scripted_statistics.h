// The statistics of the scripted platform: what the calls that read counters fill in, and the exported operations that
// the queue statistics go through (kel_ic_ebcom_queue_handle_get, kel_ic_ebcom_scheduler_handle_get,
// kel_ic_ebcom_set_burst_stats). fail() makes those fail, unseen in the transcript; else they are the real ones.
#pragma once

#include "kel/kel_core_ic_ebcom.h"
#include "scripted_platform.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace scripted
{

// What is filled in where a test said nothing: 1, 2, 3 and so on, so that no two octets are equal.
octets counted_octets(size_t size);

// What kel_init_qos_queue_stats_get() fills in from now on.
void set_queue_stats(const qos_queue_stats &stats);

// What kel_ic_ebcom_set_burst_stats() was called with last.
struct burst_request {
    void *queue_handle;
    void *scheduler_handle;
    ebcom_queue_stats *stats;
};
burst_request last_burst_request();

} // namespace scripted

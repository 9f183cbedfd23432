// EBCOM's QoS objects: the steps over their registry, the scheduler tree, the shaped queues, and the handle dump.
#include "call_frame.h"
#include "destinations.h"
#include "kel/kel_core_ic_ebcom.h"
#include "qos_registry.h"

using namespace kel;

namespace
{

constexpr char trace_domain[] = "EBCOM";

static_assert(port_group_count * queues_per_group == port_count);

// ---- Steps over the registry ----

uint32_t get_scheduler_idx(int32_t iell_port, uint8_t &scheduler_idx)
{
    const port_index index = index_of(iell_port);
    if (!index.known)
        return report(HERE, KEL_RC_OUT_OF_RANGE, "iell_port");
    scheduler_idx = index.scheduler;
    return KEL_RC_OK;
}

uint32_t get_queue_idx(int32_t iell_port, uint8_t &queue_idx)
{
    const port_index index = index_of(iell_port);
    if (!index.known)
        return report(HERE, KEL_RC_OUT_OF_RANGE, "iell_port");
    queue_idx = index.queue;
    return KEL_RC_OK;
}

// An IC port's place in the registry. Failures are reported in the name of the function that asks.
struct port_place {
    port_group *group;
    queue_slot *slot;
    size_t number; // in the order of search, see search_number()
};

uint32_t find_place(call_site site, int32_t iell_port, port_place &place)
{
    uint8_t scheduler_idx = 0;
    uint8_t queue_idx = 0;
    if (const uint32_t rc = get_scheduler_idx(iell_port, scheduler_idx))
        return report(site, rc, "get_scheduler_idx");
    if (const uint32_t rc = get_queue_idx(iell_port, queue_idx))
        return report(site, rc, "get_queue_idx");
    place.group = &port_groups[scheduler_idx];
    place.slot = &place.group->queues[queue_idx];
    place.number = search_number(scheduler_idx, queue_idx);
    return KEL_RC_OK;
}

// A null queue clears the port's slot.
uint32_t store_queue_handle(int32_t iell_port, void *queue)
{
    port_place place{};
    if (const uint32_t rc = find_place(HERE, iell_port, place))
        return rc;
    place.slot->queue = queue;
    return KEL_RC_OK;
}

// Either handle may come back null; that is not an error.
uint32_t ebcom_qos_handles_get(int32_t iell_port, void *&scheduler, void *&queue)
{
    port_place place{};
    if (const uint32_t rc = find_place(HERE, iell_port, place))
        return rc;
    scheduler = place.group->scheduler;
    queue = place.slot->queue;
    return KEL_RC_OK;
}

uint32_t store_dst_mac(const kel_ebcom_path_config &config, ork_ebcom_pcep_path &path)
{
    port_place place{};
    if (const uint32_t rc = find_place(HERE, config.iell_port, place))
        return rc;
    if (!add_destination(place.number, config.dst_mac))
        return report(HERE, KEL_RC_LIMIT, "malloc");
    path.queue_hdl = place.slot->queue;
    return KEL_RC_OK;
}

// `left` becomes the number of destinations, of any MAC address, that remain on the port.
uint32_t remove_dst_mac(const kel_ebcom_path_config &config, uint32_t &left)
{
    port_place place{};
    if (const uint32_t rc = find_place(HERE, config.iell_port, place))
        return rc;
    if (!remove_destination(place.number, config.dst_mac))
        return report(HERE, KEL_RC_NOT_FOUND, "dst_mac");
    left = destination_count(place.number);
    return KEL_RC_OK;
}

uint32_t find_handles_by_dst_mac(const uint8_t *dst_mac, void *&scheduler, void *&queue)
{
    size_t number = 0;
    if (!find_destination(dst_mac, number))
        return report(HERE, KEL_RC_NOT_FOUND, "dst_mac");
    const port_group &group = port_groups[number / queues_per_group];
    scheduler = group.scheduler;
    queue = group.queues[number % queues_per_group].queue;
    return KEL_RC_OK;
}

// ---- Schedulers ----

// What all twelve schedulers share; they differ in their parent only. The numbers are the driver kit's.
ork_qos_scheduler_params scheduler_params(void *parent, uint16_t eth_dev_id)
{
    ork_qos_scheduler_params params;
    memset(&params, 0, sizeof params); // the driver kit sees the padding, too
    params.parent = parent;
    params.shapingMode = 3;
    params.schedulingMode = 11;
    params.arbitrationMode = 7;
    params.serviceQuantum = 3036;
    params.rootId = 20;
    params.vsiEthDevId = eth_dev_id;
    return params;
}

void trace_scheduler_create(call_site site, const ork_qos_scheduler_params &params)
{
    const ork_qos_rate &peak = params.qosRates.peak;
    const ork_qos_rate &sustain = params.qosRates.sr_mr_u.sustain;
    TRACE_AT(site, API_CALL,
             "ork_qos_scheduler_create(tsScriptId=%u, shapingMode=%u, schedulingMode=%u, arbitrationMode=%u, "
             "serviceQuantum=%u, qosRates.peak.rate=%lu, qosRates.peak.bucketSize=%u, "
             "qosRates.sr_mr_u.sustain.rate=%lu, sr_mr_u.sustain.bucketSize=%u, lengthCorrection=%u, "
             "outputIdSelect=%u, bpDestIndex=%u, timeScale=%u)",
             params.tsScriptId, params.shapingMode, params.schedulingMode, params.arbitrationMode,
             params.serviceQuantum, peak.rate, peak.bucketSize, sustain.rate, sustain.bucketSize,
             params.lengthCorrection, params.outputIdSelect, params.bpDestIndex, params.timeScale);
    TRACE_AT(site, API_CALL, "ork_qos_scheduler_create(rootId=%u, orkRootParentLevel=%u, vsiEthDevId=%u)",
             params.rootId, params.orkRootParentLevel, params.vsiEthDevId);
}

// The handle is written on success only.
uint32_t create_scheduler(const ork_qos_scheduler_params &params, void *&scheduler)
{
    kel_attach_info attach{};
    if (const uint32_t rc = attach_accelerator(HERE, attach))
        return rc;
    trace_scheduler_create(HERE, params);
    void *created = nullptr;
    if (const ork_rc rc = ork_qos_scheduler_create(attach.ork_handle, &params, 0, &created))
        return report_ork(HERE, rc, "ork_qos_scheduler_create");
    TRACE(INFO, "ork_qos_scheduler_create handle: %p", created);
    scheduler = created;
    return KEL_RC_OK;
}

uint32_t remove_scheduler(void *scheduler)
{
    kel_attach_info attach{};
    if (const uint32_t rc = attach_accelerator(HERE, attach))
        return rc;
    TRACE(API_CALL, "ork_qos_scheduler_delete(scheduler_hdl=%p)", scheduler);
    if (const ork_rc rc = ork_qos_scheduler_delete(attach.ork_handle, scheduler))
        return report_ork(HERE, rc, "ork_qos_scheduler_delete");
    return KEL_RC_OK;
}

// Removes the port's queue if it has one. A queue that cannot be removed is forgotten all the same.
uint32_t release_queue(call_site site, int32_t iell_port)
{
    void *scheduler = nullptr;
    void *queue = nullptr;
    if (const uint32_t rc = ebcom_qos_handles_get(iell_port, scheduler, queue))
        return report(site, rc, "ebcom_qos_handles_get");
    if (!queue)
        return KEL_RC_OK;
    TRACE_AT(site, API_CALL, "kel_init_qos_queue_rem()");
    if (const uint32_t rc = kel_init_qos_queue_rem(queue))
        report(site, rc, "kel_init_qos_queue_rem");
    if (const uint32_t rc = store_queue_handle(iell_port, nullptr))
        return report(site, rc, "store_queue_handle");
    return KEL_RC_OK;
}

// A scheduler that cannot be removed, a null one among them, is traced and forgotten.
void release_scheduler(call_site site, void *scheduler)
{
    if (const uint32_t rc = remove_scheduler(scheduler))
        report(site, rc, "remove_scheduler");
}

// ---- Shapers ----

constexpr uint32_t queue_mode = 1;
constexpr uint32_t queue_add_constant = 5;
constexpr uint32_t unshaped_threshold = 20000;
constexpr uint32_t threshold_unit_bits = 8; // thresholds are counted in blocks of 256 octets

kel_init_qos_queue_params queue_params(const kel_ebcom_path_config &config)
{
    if (!config.shaping_enabled)
        return {queue_mode, 0, unshaped_threshold << threshold_unit_bits, 0};
    return {queue_mode, config.shaping_rate, config.buffer_threshold << threshold_unit_bits, config.burst_size};
}

// The rate and burst of the request are compared as they are, for an unshaped one, too: callers send zeros there.
bool matches(const ork_qos_queue &queue, const kel_ebcom_path_config &config)
{
    const uint32_t shaping_mode = config.shaping_enabled ? ORK_QOS_QUEUE_SHAPED : ORK_QOS_QUEUE_UNSHAPED;
    return queue.rate == config.shaping_rate && queue.bucketSize == config.burst_size &&
           queue.shapingMode == shaping_mode;
}

uint32_t check_if_queue_params_has_changed(const kel_ebcom_path_config &config, void *queue)
{
    kel_attach_info attach{};
    if (const uint32_t rc = attach_accelerator(HERE, attach))
        return rc;
    ork_qos_queue present{};
    TRACE(API_CALL, "ork_qos_queue_get(%p)", queue);
    if (const ork_rc rc = ork_qos_queue_get(attach.ork_handle, queue, &present))
        return report_ork(HERE, rc, "ork_qos_queue_get");
    TRACE(LAB, "Queue params: rate = %lu, bucketSize = %u, shapingMode = %u", present.rate, present.bucketSize,
          present.shapingMode);
    TRACE(LAB, "Config params: shaping_rate = %u, burst_size = %u, shaping_enabled = %u", config.shaping_rate,
          config.burst_size, config.shaping_enabled);
    if (!matches(present, config))
        return report(HERE, KEL_RC_MISMATCH, "Requested config is different than applied on already created queue");
    return KEL_RC_OK;
}

// Makes the port's queue under its group's scheduler.
uint32_t create_queue(call_site site, const kel_ebcom_path_config &config, void *scheduler, void *&queue)
{
    const kel_init_qos_queue_params params = queue_params(config);
    uint16_t eth_dev_id = 0;
    if (const uint32_t rc = ebcom_event_device(site, eth_dev_id))
        return rc;
    TRACE_AT(site, API_CALL, "kel_init_qos_queue_add()");
    if (const uint32_t rc = kel_init_qos_queue_add(&params, queue_add_constant, scheduler, eth_dev_id, &queue))
        return report(site, rc, "kel_init_qos_queue_add");
    return KEL_RC_OK;
}

// Removes a queue that could not be kept. Callers rely on it as it is: it tries without limit, it returns success,
// and the registry may go on naming the removed queue.
uint32_t roll_back_queue(call_site site, void *queue)
{
    for (;;) {
        TRACE_AT(site, API_CALL, "kel_init_qos_queue_rem()");
        const uint32_t rc = kel_init_qos_queue_rem(queue);
        if (!rc)
            return KEL_RC_OK;
        report(site, rc, "kel_init_qos_queue_rem");
    }
}

// ---- The handle dump ----

constexpr char dump_path[] = "/tmp/KEL_DUMP_EBCOM_QOS_HANDLE_FILENAME";
constexpr char dump_header[] = "\n------ EBCOM QOS scheduler and queue handle info------\n";

// Writes one line of the dump, traced first. The record has no line end.
uint32_t dump_handle(call_site site, FILE *file, const char *label, const void *handle)
{
    TRACE_AT(site, LAB, "%s=%p", label, handle);
    if (const int written = fprintf(file, "%s=%p\n", label, handle); written < 0)
        return report_system(site, written, "fprintf");
    return KEL_RC_OK;
}

// Every slot is written, used or not. Stops at the first line that cannot be written.
uint32_t dump_registry(call_site site, FILE *file)
{
    if (const int written = fprintf(file, "%s", dump_header); written < 0)
        return report_system(site, written, "fprintf");
    for (const port_group &group : port_groups) {
        if (const uint32_t rc = dump_handle(site, file, "scheduler_handle", group.scheduler))
            return rc;
        for (const queue_slot &slot : group.queues) {
            if (const uint32_t rc = dump_handle(site, file, "  queue_handle", slot.queue))
                return rc;
        }
    }
    return KEL_RC_OK;
}

} // namespace

// ---- Exported: look-ups ----

extern "C" uint32_t kel_ic_ebcom_queue_handle_get(const uint8_t *dst_mac, void **queue_handle)
{
    TRACE_FUNCTION();

    void *scheduler = nullptr;
    if (const uint32_t rc = find_handles_by_dst_mac(dst_mac, scheduler, *queue_handle))
        return report(HERE, rc, "find_handles_by_dst_mac");
    return KEL_RC_OK;
}

extern "C" uint32_t kel_ic_ebcom_scheduler_handle_get(const uint8_t *dst_mac, void **scheduler_handle)
{
    TRACE_FUNCTION();

    void *queue = nullptr;
    if (const uint32_t rc = find_handles_by_dst_mac(dst_mac, *scheduler_handle, queue))
        return report(HERE, rc, "find_handles_by_dst_mac");
    return KEL_RC_OK;
}

// ---- Exported: the scheduler tree ----

extern "C" uint32_t kel_ic_ebcom_init_qos()
{
    TRACE_FUNCTION();

    uint16_t eth_dev_id = 0;
    if (const uint32_t rc = ebcom_event_device(HERE, eth_dev_id))
        return rc;

    for (size_t level = 1; level <= level_count; ++level) {
        // Slot 0 stays null: the first level has no parent.
        const ork_qos_scheduler_params params = scheduler_params(level_schedulers[level - 1], eth_dev_id);
        if (const uint32_t rc = create_scheduler(params, level_schedulers[level]))
            return report(HERE, rc, "create_scheduler");
    }

    const ork_qos_scheduler_params params = scheduler_params(level_schedulers[level_count], eth_dev_id);
    for (port_group &group : port_groups) {
        if (const uint32_t rc = create_scheduler(params, group.scheduler))
            return report(HERE, rc, "create_scheduler");
    }
    return KEL_RC_OK;
}

extern "C" uint32_t kel_ic_ebcom_deinit_qos()
{
    TRACE_FUNCTION();

    // From the last group to the first: the order is relied upon.
    for (size_t group = port_group_count; group-- > 0;) {
        for (const int32_t iell_port : qos_ports[group]) {
            if (iell_port == no_port)
                continue;
            if (const uint32_t rc = release_queue(HERE, iell_port))
                return rc;
        }
    }

    for (size_t group = 0; group < port_group_count; ++group) {
        for (size_t queue = 0; queue < queues_per_group; ++queue)
            forget_destinations(search_number(group, queue));
        release_scheduler(HERE, port_groups[group].scheduler);
    }
    for (size_t level = level_count; level > 0; --level)
        release_scheduler(HERE, level_schedulers[level]);

    clear_registry();
    return KEL_RC_OK;
}

// ---- Exported: shapers ----

extern "C" uint32_t kel_ic_ebcom_add_shaper(const kel_ebcom_path_config *config, ork_ebcom_pcep_path *path)
{
    TRACE_FUNCTION();

    void *scheduler = nullptr;
    void *queue = nullptr;
    if (const uint32_t rc = ebcom_qos_handles_get(config->iell_port, scheduler, queue))
        return report(HERE, rc, "ebcom_qos_handles_get");

    if (queue) {
        if (const uint32_t rc = check_if_queue_params_has_changed(*config, queue))
            return report(HERE, rc, "check_if_queue_params_has_changed");
        if (const uint32_t rc = store_dst_mac(*config, *path))
            return report(HERE, rc, "store_dst_mac");
        return KEL_RC_OK;
    }

    if (const uint32_t rc = create_queue(HERE, *config, scheduler, queue))
        return rc;
    if (const uint32_t rc = store_queue_handle(config->iell_port, queue)) {
        report(HERE, rc, "store_queue_handle");
        return roll_back_queue(HERE, queue);
    }
    if (const uint32_t rc = store_dst_mac(*config, *path)) {
        report(HERE, rc, "store_dst_mac");
        return roll_back_queue(HERE, queue);
    }
    return KEL_RC_OK;
}

extern "C" uint32_t kel_ic_ebcom_remove_shaper(const kel_ebcom_path_config *config, ork_ebcom_pcep_path *)
{
    TRACE_FUNCTION();

    uint32_t left = 0;
    if (const uint32_t rc = remove_dst_mac(*config, left))
        return report(HERE, rc, "remove_dst_mac");
    if (static_cast<uint16_t>(left) != 0) // 65,536 count as none, a limit that is relied upon
        return KEL_RC_OK;

    void *scheduler = nullptr;
    void *queue = nullptr;
    if (const uint32_t rc = ebcom_qos_handles_get(config->iell_port, scheduler, queue))
        return report(HERE, rc, "ebcom_qos_handles_get");
    TRACE(API_CALL, "kel_init_qos_queue_rem()");
    if (const uint32_t rc = kel_init_qos_queue_rem(queue)) // the port keeps its queue
        return report(HERE, rc, "kel_init_qos_queue_rem");
    if (const uint32_t rc = store_queue_handle(config->iell_port, nullptr))
        return report(HERE, rc, "store_queue_handle");
    return KEL_RC_OK;
}

// ---- Exported: the handle dump ----

extern "C" uint32_t kel_core_ic_ebcom_qos_handle_dump()
{
    TRACE(API_CALL, "fopen(%s, w)", dump_path);
    FILE *file = fopen(dump_path, "w");
    if (!file) {
        if (errno < 0) // which it never is: a file that cannot be opened leaves no record, as callers rely on
            report_system(HERE, errno, "fopen(w)");
        return KEL_RC_FAILED;
    }
    const uint32_t rc = dump_registry(HERE, file);
    fclose(file);
    return rc;
}

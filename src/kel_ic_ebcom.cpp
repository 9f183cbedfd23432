// The EBCOM service: start and stop, the timestamp synchroniser, global parameters, paths, and statistics.
#include "call_frame.h"
#include "kel/kel_core_ic_ebcom.h"
#include "kel/kel_core_ic_pcep.h"
#include "kel/kel_node_names.h"
#include "pcep_table.h"
#include "platform/kel_fmt.h"
#include "platform/vorn_tu.h"
#include "queue_counters.h"
#include "signal_free_thread.h"
#include "timing_unit_report.h"

#include <glib.h>
#include <pthread.h>
#include <sys/syscall.h>
#include <unistd.h>

using namespace kel;

namespace
{

constexpr char trace_domain[] = "EBCOM";

// Number of paths by the text of their destination MAC. Made by the first start; survives every stop with its counts.
GHashTable *dest_mac_addr_count;

// The thread that was created last. 0 while there never was one.
pthread_t timestamp_thread_id;

// ---- The timestamp synchroniser ----

// Reads the timing unit, converts, and writes the accelerator's offset once.
uint32_t update_timestamp_offset(void *ork, void *timing_unit)
{
    vorn_tu_nputimeoffset reading{};
    TRACE(API_CALL, "vorn_tu_get_nputimeoffset()");
    if (const int32_t rc = vorn_tu_get_nputimeoffset(timing_unit, 0, &reading))
        return report_timing_unit(HERE, rc, "vorn_tu_get_nputimeoffset");

    int64_t offset = 0;
    if (const uint32_t rc = kel_ic_ebcom_cycles_to_ork_timestamp_offset(reading.cycles, reading.frequency, &offset))
        return report(HERE, rc, "kel_ic_ebcom_cycles_to_ork_timestamp_offset");

    TRACE(API_CALL, "ork_ebcom_timestamp_offset_set(timestamp_offset=%ld)", offset);
    if (const ork_rc rc = ork_ebcom_timestamp_offset_set(ork, offset))
        return report_ork(HERE, rc, "ork_ebcom_timestamp_offset_set");
    return KEL_RC_OK;
}

constexpr int32_t own_domain = 0;

// True for an adjustment in our domain. Any other event stays with the timing-unit client: it is not handed back.
bool is_adjustment(call_site site, const vorn_tu_event &event)
{
    if (event.type != VORN_TU_EVENT_ADJNPUOFFS) {
        TRACE_AT(site, INFO, "Ignore unexpected event(%d)", event.type);
        return false;
    }
    if (event.domain != own_domain) {
        TRACE_AT(site, INFO, "Ignore unexpected domain(%d)", event.domain);
        return false;
    }
    return true;
}

// The work of the timestamp thread: writes the current offset at once and again after every adjustment, until anything
// fails. The timing-unit connection is never closed.
uint32_t timestamp_thread()
{
    kel_attach_info attach{};
    void *timing_unit = nullptr;

    if (const uint32_t rc = attach_accelerator(HERE, attach))
        return rc;
    TRACE(API_CALL, "vorn_tu_init()");
    if (const int32_t rc = vorn_tu_init(&timing_unit))
        return report_timing_unit(HERE, rc, "vorn_tu_init");
    TRACE(API_CALL, "vorn_tu_subscribe_adjnpuoffs(doamin=%d)", own_domain);
    if (const int32_t rc = vorn_tu_subscribe_adjnpuoffs(timing_unit, own_domain))
        return report_timing_unit(HERE, rc, "vorn_tu_subscribe_adjnpuoffs");
    if (const uint32_t rc = update_timestamp_offset(attach.ork_handle, timing_unit))
        return report(HERE, rc, "udpate_timestamp_offset");

    for (;;) {
        vorn_tu_event *event = nullptr;
        TRACE(API_CALL, "vorn_tu_wait_event()");
        if (const int32_t rc = vorn_tu_wait_event(timing_unit, &event))
            return report_timing_unit(HERE, rc, "vorn_tu_wait_event");
        if (!event) // a success without an event ends the thread, too
            return KEL_RC_FAILED;
        if (!is_adjustment(HERE, *event))
            continue;
        if (const uint32_t rc = update_timestamp_offset(attach.ork_handle, timing_unit))
            return report(HERE, rc, "udpate_timestamp_offset");
        TRACE(API_CALL, "vorn_tu_free_event");
        vorn_tu_free_event(timing_unit, &event);
    }
}

// The thread itself. It bears the name of its work, which is the name that its records show.
void *timestamp_thread(void *)
{
    timestamp_thread();
    TRACE(ERROR, "tid=%ld terminated (pthread_exit)", syscall(SYS_gettid));
    pthread_exit(nullptr); // runs no destructors: nothing above may need one
}

// Starts one more thread. Callers rely on it that a positive result, too, counts as success: only a negative one fails.
uint32_t start_timestamp_thread(call_site site)
{
    TRACE_AT(site, API_CALL, "pthread_create(kel-time-stamp)");
    const int created = create_signal_free_thread(timestamp_thread_id, timestamp_thread);
    if (created < 0)
        return report_system(site, created, "pthread_create(kel-time-stamp)");

    TRACE_AT(site, API_CALL, "pthread_setname_np(kel-time-stamp)");
    // The C library crashes on a thread identifier that was never stored.
    const int named = timestamp_thread_id ? pthread_setname_np(timestamp_thread_id, "kel-time-stamp") : 0;
    if (named < 0)
        report_system(site, named, "pthread_setname_np(kel-time-stamp)");
    return KEL_RC_OK;
}

// ---- Paths ----

// What the driver kit calls a destination, by location; the other locations cannot be the end of a path.
constexpr int32_t unsupported = -1;
constexpr int32_t path_pcep_types[KEL_LOCATION_COUNT] = {unsupported, 1, 2, 2, 0, unsupported};

int32_t path_pcep_type(uint32_t location)
{
    return location < KEL_LOCATION_COUNT ? path_pcep_types[location] : unsupported;
}

// Fills the driver kit's record, all but the queue, and returns the destination's location in `location`.
uint32_t set_ork_path_attr(const kel_ebcom_path_config &config, const mac_text &mac, ork_ebcom_pcep_path &path,
                           uint32_t &location)
{
    memset(&path, 0, sizeof path); // the driver kit sees the padding, too
    memcpy(path.macAddr, config.dst_mac, sizeof path.macAddr);

    // The classifier writes its type there first; the path's own type, which its location decides, takes its place.
    auto &branch_type = reinterpret_cast<uint32_t &>(path.pcepType);
    if (const uint32_t rc = kel_ic_pcep_get_location_and_type_from_branch(config.dst_mac, &location, &branch_type))
        return report(HERE, rc, "kel_ic_pcep_get_location_and_type_from_branch");

    const int32_t pcep_type = path_pcep_type(location);
    if (pcep_type == unsupported) {
        TRACE_AT(HERE.general(), ERROR, "dst_mac=%s: Unsupported location=%d", mac.text, location);
        return report(HERE, KEL_RC_OUT_OF_RANGE, "Unknown location");
    }
    path.pcepType = pcep_type;
    if (location != KEL_LOCATION_EIOA)
        return KEL_RC_OK;
    if (const uint32_t rc = kel_ic_ebcom_port_to_mac_chan(config.iell_port, &path.eioaPort))
        return report(HERE, rc, "kel_ic_ebcom_port_to_mac_chan");
    return KEL_RC_OK;
}

void trace_path_config(call_site site, const kel_ebcom_path_config &config, const mac_text &mac)
{
    TRACE_AT(site, FN_PARAM,
             "dst_mac = %s, shaping_enabled = %u, iell_port = %i (%s), shaping_rate = %u, buffer_threshold = %u, "
             "burst_size = %u",
             mac.text, config.shaping_enabled, config.iell_port, kel_branch_name(config.iell_port), config.shaping_rate,
             config.buffer_threshold, config.burst_size);
}

constexpr char path_create_call[] =
    "ork_ebcom_pcep_path_create(pcepType=%d, macAddr=%s(%s), eioaPort=%d%s, shaping_enabled=%d, queue_hdl=%p)";
constexpr char path_delete_call[] =
    "ork_ebcom_pcep_path_delete(pcepType=%d, macAddr=%s(%s), eioaPort=%d%s, shaping_enabled=%d, queue_hdl=%p)";

// The create and the delete of a path are announced with the same values.
void trace_path_call(call_site site, const char *format, const kel_ebcom_path_config &config, const mac_text &mac,
                     const ork_ebcom_pcep_path &path, uint32_t location)
{
    TRACE_AT(site, API_CALL, format, path.pcepType, mac.text, kel_location_name(location), path.eioaPort,
             location == KEL_LOCATION_EIOA ? "" : " - NOT USED", config.shaping_enabled, path.queue_hdl);
}

// GLib hashes texts that differ in a digit or two to neighbours, and searches long among many of them.
guint hash_mac_text(gconstpointer text)
{
    constexpr guint golden_ratio = 0x9E3779B1; // 2^32 times its fraction, about
    return g_str_hash(text) * golden_ratio;
}

// Without the table, which the first start creates, there are no counts: an add is not counted, a remove finds nothing.
guint path_count(const mac_text &mac)
{
    return dest_mac_addr_count ? GPOINTER_TO_UINT(g_hash_table_lookup(dest_mac_addr_count, mac.text)) : 0;
}

void set_path_count(const mac_text &mac, guint count)
{
    if (dest_mac_addr_count)
        g_hash_table_insert(dest_mac_addr_count, g_strdup(mac.text), GUINT_TO_POINTER(count));
}

// ---- Statistics ----

uint32_t format_queue_stats(call_site site, const text_layout &layout, const uint8_t *dst_mac, char *buf, uint32_t len,
                            uint8_t format)
{
    *buf = '\0';
    ebcom_queue_stats stats{};
    if (const uint32_t rc = kel_core_ic_ebcom_queue_stats_get(dst_mac, &stats))
        return report(site, rc, "kel_core_ic_ebcom_queue_stats_get");
    kel_fmt_header(buf, len, format, layout.title);
    for (const text_line &line : layout.lines)
        kel_fmt_uint32(buf, len, format, line.label, low_word(stats, line));
    if (const uint32_t rc = kel_fmt_end(buf, len))
        return report(site, rc, "kel_fmt_end");
    return KEL_RC_OK;
}

} // namespace

// ---- Exported: start and stop ----

extern "C" uint32_t kel_core_ic_ebcom_start()
{
    TRACE_FUNCTION();

    if (!dest_mac_addr_count)
        dest_mac_addr_count = g_hash_table_new_full(hash_mac_text, g_str_equal, g_free, nullptr);
    if (!dest_mac_addr_count) {
        TRACE(ERROR, "Failed to allocate memory for dest_mac_addr_count");
        kel_abort_internal_abort(__LINE__, __FILE__, "Failed to allocate memory for dest_mac_addr_count");
    }

    kel_attach_info attach{};
    if (const uint32_t rc = attach_accelerator(HERE, attach))
        return rc;
    if (const uint32_t rc = start_timestamp_thread(HERE))
        return rc;
    if (const uint32_t rc = kel_ic_ebcom_init_qos()) // the thread runs on
        return report(HERE, rc, "kel_ic_ebcom_init_qos");
    return KEL_RC_OK;
}

extern "C" uint32_t kel_core_ic_ebcom_stop()
{
    TRACE_FUNCTION();

    // Only a table that is not there is destroyed: the counts survive a stop, and the next start goes on with them.
    if (!dest_mac_addr_count)
        g_hash_table_destroy(dest_mac_addr_count);

    if (const uint32_t rc = kel_ic_ebcom_deinit_qos())
        return report(HERE, rc, "kel_ic_ebcom_deinit_qos");
    return KEL_RC_OK;
}

extern "C" uint32_t kel_ic_ebcom_cycles_to_ork_timestamp_offset(int64_t cycles, uint32_t frequency,
                                                                int64_t *ork_timestamp_offset)
{
    TRACE_FUNCTION();

    // The quotient is truncated before it is multiplied, and the product wraps: callers rely on both.
    const uint64_t factor = frequency ? 1000000U / frequency : 0;
    *ork_timestamp_offset = static_cast<int64_t>(static_cast<uint64_t>(cycles) * factor);
    TRACE(LAB, "cycles=%ld frequency=%u ork_timestamp_offset=%ld", cycles, frequency, *ork_timestamp_offset);
    return frequency ? KEL_RC_OK : KEL_RC_ZERO_FREQUENCY;
}

// ---- Exported: global parameters and capabilities ----

extern "C" uint32_t kel_core_ic_ebcom_global_param_set(const kel_ebcom_global_params *params, const uint8_t settings[2])
{
    TRACE_FUNCTION();

    kel_attach_info attach{};
    if (const uint32_t rc = attach_accelerator(HERE, attach))
        return rc;

    const ork_ebcom_global_config config = {
        .icPortMTU = static_cast<uint16_t>(params->icPortMTU),
        .etherType = static_cast<uint16_t>(params->etherType),
        .nibbles = static_cast<uint8_t>((settings[0] & 0x0F) | (settings[1] << 4)),
        .reserved = 0,
    };
    TRACE(API_CALL, "ork_ebcom_global_config_set(icPortMTU=%d, etherType=0x%04x)", config.icPortMTU, config.etherType);
    if (const ork_rc rc = ork_ebcom_global_config_set(attach.ork_handle, &config))
        return report_ork(HERE, rc, "ork_ebcom_global_config_set");
    return KEL_RC_OK;
}

extern "C" uint32_t kel_core_ic_ebcom_capabilities_get(kel_ebcom_capabilities *capabilities)
{
    *capabilities = {
        .max_burst_size = 0xFFFFF,
        .max_pcep_id = highest_pcep_id,
        .max_multicast_groups = max_multicast_groups,
        .max_multicast_members = max_group_members,
    };
    return KEL_RC_OK;
}

// ---- Exported: paths ----

extern "C" uint32_t kel_core_ic_ebcom_path_add(const kel_ebcom_path_config *config)
{
    TRACE_FUNCTION();

    const mac_text mac(config->dst_mac);
    trace_path_config(HERE, *config, mac);

    kel_attach_info attach{};
    ork_ebcom_pcep_path path;
    uint32_t location = KEL_LOCATION_NONE;
    if (const uint32_t rc = attach_accelerator(HERE, attach))
        return rc;
    if (const uint32_t rc = set_ork_path_attr(*config, mac, path, location))
        return report(HERE, rc, "set_ork_path_attr");
    if (const uint32_t rc = kel_ic_ebcom_add_shaper(config, &path))
        return report(HERE, rc, "kel_ic_ebcom_add_shaper");

    // On every add, also of a destination that is counted already. A refusal leaves the reference on the queue.
    trace_path_call(HERE, path_create_call, *config, mac, path, location);
    if (const ork_rc rc = ork_ebcom_pcep_path_create(attach.ork_handle, &path))
        return report_ork(HERE, rc, "ork_ebcom_pcep_path_create");

    set_path_count(mac, path_count(mac) + 1);
    return KEL_RC_OK;
}

extern "C" uint32_t kel_core_ic_ebcom_path_rem(const kel_ebcom_path_config *config)
{
    TRACE_FUNCTION();

    const mac_text mac(config->dst_mac);
    trace_path_config(HERE, *config, mac);

    const guint count = path_count(mac);
    if (count == 0)
        return report(HERE, KEL_RC_NOT_FOUND, "mac address of port not found to be configured");

    kel_attach_info attach{};
    ork_ebcom_pcep_path path;
    uint32_t location = KEL_LOCATION_NONE;
    if (const uint32_t rc = attach_accelerator(HERE, attach))
        return rc;
    if (const uint32_t rc = set_ork_path_attr(*config, mac, path, location))
        return report(HERE, rc, "set_ork_path_attr");
    if (const uint32_t rc = kel_ic_ebcom_remove_shaper(config, &path))
        return report(HERE, rc, "kel_ic_ebcom_remove_shaper");

    if (count > 1) {
        set_path_count(mac, count - 1);
        return KEL_RC_OK;
    }
    // A refusal leaves the count at 1 though the reference on the queue is gone.
    trace_path_call(HERE, path_delete_call, *config, mac, path, location);
    if (const ork_rc rc = ork_ebcom_pcep_path_delete(attach.ork_handle, &path))
        return report_ork(HERE, rc, "ork_ebcom_pcep_path_delete");
    g_hash_table_remove(dest_mac_addr_count, mac.text);
    return KEL_RC_OK;
}

extern "C" uint32_t kel_ic_ebcom_port_to_mac_chan(int32_t iell_port, uint8_t *)
{
    TRACE_FUNCTION();

    if (iell_port == 0) {
        TRACE(ERROR, "Unknown iell_port=%d", iell_port);
        return report(HERE, KEL_RC_OUT_OF_RANGE, "iell_port");
    }
    // There is no mapping table: the channel stays what the caller put there.
    return KEL_RC_OK;
}

// ---- Exported: statistics ----

extern "C" uint32_t kel_ic_ebcom_get_global_stats(ebcom_global_stats *stats)
{
    *stats = {};
    kel_attach_info attach{};
    if (const uint32_t rc = kel_init_attach(&attach))
        return report(HERE, rc, "kel_init_attach");
    if (const ork_rc rc = ork_ebcom_global_statistics_get(attach.ork_handle, stats))
        return report_ork(HERE, rc, "ork_ebcom_global_statistics_get");
    return KEL_RC_OK;
}

extern "C" uint32_t kel_core_ic_ebcom_global_fmt_stats_get(char *buf, uint32_t len, uint8_t format)
{
    *buf = '\0';
    ebcom_global_stats stats;
    if (const uint32_t rc = kel_ic_ebcom_get_global_stats(&stats))
        return report(HERE, rc, "kel_ic_ebcom_get_global_stats");
    kel_fmt_ebcom_global_stats(buf, len, format, &stats);
    if (const uint32_t rc = kel_fmt_end(buf, len))
        return report(HERE, rc, "kel_fmt_end");
    return KEL_RC_OK;
}

extern "C" uint32_t kel_core_ic_ebcom_fmt_global_stats(char *buf, uint32_t len, uint32_t format)
{
    return kel_core_ic_ebcom_global_fmt_stats_get(buf, len, static_cast<uint8_t>(format));
}

extern "C" uint32_t kel_core_ic_ebcom_queue_stats_get(const uint8_t *dst_mac, ebcom_queue_stats *stats)
{
    TRACE_FUNCTION();

    memset(stats, 0, sizeof *stats);
    TRACE(FN_PARAM, "dst_mac = %s", mac_text(dst_mac).text);

    void *queue = nullptr;
    void *scheduler = nullptr;
    qos_queue_stats counters{};
    if (const uint32_t rc = kel_ic_ebcom_queue_handle_get(dst_mac, &queue))
        return report(HERE, rc, "kel_ic_ebcom_queue_handle_get");
    TRACE(API_CALL, "kel_init_qos_queue_stats_get()");
    if (const uint32_t rc = kel_init_qos_queue_stats_get(queue, &counters))
        return report(HERE, rc, "kel_init_qos_queue_stats_get");
    copy_counters(counters, *stats);

    if (const uint32_t rc = kel_ic_ebcom_scheduler_handle_get(dst_mac, &scheduler))
        return report(HERE, rc, "kel_ic_ebcom_scheduler_handle_get");
    if (const uint32_t rc = kel_ic_ebcom_set_burst_stats(queue, scheduler, stats))
        return report(HERE, rc, "kel_core_ic_set_burst_stats"); // readers know it by this name
    return KEL_RC_OK;
}

extern "C" uint32_t kel_core_ic_ebcom_queue_fmt_stats_get(const uint8_t *dst_mac, char *buf, uint32_t len,
                                                          uint8_t format)
{
    return format_queue_stats(HERE, queue_layout, dst_mac, buf, len, format);
}

extern "C" uint32_t kel_core_ic_ebcom_queue_fmt_stats_get_2(const uint8_t *dst_mac, char *buf, uint32_t len,
                                                            uint8_t format)
{
    return format_queue_stats(HERE, queue_layout_2, dst_mac, buf, len, format);
}

extern "C" uint32_t kel_core_ic_ebcom_fmt_queue_stats(const uint8_t *dst_mac, char *buf, uint32_t len, uint32_t format)
{
    return kel_core_ic_ebcom_queue_fmt_stats_get(dst_mac, buf, len, static_cast<uint8_t>(format));
}

extern "C" uint32_t kel_ic_ebcom_set_burst_stats(void *, void *, ebcom_queue_stats *)
{
    TRACE_FUNCTION();
    return KEL_RC_OK; // bursts are not measured
}

#include "bare.h"

#include "platform/kei_util.h"
#include "platform/kel_fmt.h"
#include "platform/kel_init.h"
#include "platform/vorn_tu.h"

#include <glib.h>
#include <pthread.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace bare
{
namespace
{

constexpr int levels = 7;
constexpr int groups = 5;
constexpr int handles_of_group = 9; // a scheduler and eight queues

void *schedulers[levels + groups];
GHashTable *path_counts;

struct port_state {
    void *queue;
    GSList *destinations;
};

port_state empty_port;
port_state used_port;

port_state &state_of(port where)
{
    return where == port::used ? used_port : empty_port;
}

struct mac_text {
    explicit mac_text(const uint8_t *mac)
    {
        macAddr2str(text, mac);
    }

    char text[18] = {};
};

void *attach()
{
    kel_attach_info info{};
    kel_init_attach(&info);
    return info.ork_handle;
}

uint16_t event_device()
{
    uint16_t eth_dev_id = 0;
    kel_init_eventdev_dev_id_ebcom_get(&eth_dev_id);
    return eth_dev_id;
}

void *timestamp_thread(void *)
{
    void *timing_unit = nullptr;
    attach();
    vorn_tu_init(&timing_unit);
    return nullptr;
}

void create_scheduler(void *parent, uint16_t eth_dev_id, void *&scheduler)
{
    void *ork = attach();
    ork_qos_scheduler_params params{};
    params.parent = parent;
    params.shapingMode = 3;
    params.schedulingMode = 11;
    params.arbitrationMode = 7;
    params.serviceQuantum = 3036;
    params.rootId = 20;
    params.vsiEthDevId = eth_dev_id;
    ork_qos_scheduler_create(ork, &params, 0, &scheduler);
}

void keep_destination(const uint8_t *mac, GSList *&destinations)
{
    void *copy = malloc(6);
    if (!copy)
        return;
    memcpy(copy, mac, 6);
    destinations = g_slist_append(destinations, copy);
}

int compare_mac(const void *left, const void *right)
{
    return memcmp(left, right, 6);
}

guint drop_destination(const uint8_t *mac, GSList *&destinations)
{
    GSList *found = g_slist_find_custom(destinations, mac, compare_mac);
    destinations = g_slist_remove_link(destinations, found);
    free(found->data);
    g_slist_free(found);
    return g_slist_length(destinations);
}

ork_ebcom_pcep_path path_record(const kel_ebcom_path_config &config)
{
    ork_ebcom_pcep_path path{};
    memcpy(path.macAddr, config.dst_mac, sizeof path.macAddr);
    uint32_t location = 0;
    uint32_t type = 0;
    kel_ic_pcep_get_location_and_type_from_branch(config.dst_mac, &location, &type);
    path.pcepType = static_cast<int32_t>(location); // near enough
    return path;
}

guint path_count(const char *mac)
{
    return GPOINTER_TO_UINT(g_hash_table_lookup(path_counts, mac));
}

void set_path_count(const char *mac, guint count)
{
    g_hash_table_insert(path_counts, g_strdup(mac), GUINT_TO_POINTER(count));
}

} // namespace

void init_qos()
{
    const uint16_t eth_dev_id = event_device();
    for (int level = 0; level < levels; ++level)
        create_scheduler(level ? schedulers[level - 1] : nullptr, eth_dev_id, schedulers[level]);
    for (int group = 0; group < groups; ++group)
        create_scheduler(schedulers[levels - 1], eth_dev_id, schedulers[levels + group]);
}

void deinit_qos()
{
    for (void *&scheduler : schedulers) {
        ork_qos_scheduler_delete(attach(), scheduler);
        scheduler = nullptr;
    }
}

void ebcom_start()
{
    if (!path_counts)
        path_counts = g_hash_table_new_full(g_str_hash, g_str_equal, g_free, nullptr);
    attach();
    pthread_t thread;
    pthread_create(&thread, nullptr, timestamp_thread, nullptr);
    pthread_setname_np(thread, "kel-time-stamp");
    init_qos();
}

void ebcom_stop()
{
    deinit_qos();
}

void global_param_set(const kel_ebcom_global_params &params, const uint8_t (&settings)[2])
{
    void *ork = attach();
    const ork_ebcom_global_config config = {static_cast<uint16_t>(params.icPortMTU),
                                            static_cast<uint16_t>(params.etherType),
                                            static_cast<uint8_t>((settings[0] & 0x0F) | (settings[1] << 4)), 0};
    ork_ebcom_global_config_set(ork, &config);
}

void interface_create(kel_vsi_t &vsi, uint16_t &out)
{
    void *ork = attach();
    ork_ebcom_interface_create(ork, event_device());
    kel_init_eventdev_vsi_ebcom_get(&vsi);
    out = 0;
}

void interface_delete()
{
    void *ork = attach();
    ork_ebcom_interface_delete(ork, event_device());
}

void add_shaper(const kel_ebcom_path_config &config, port where, ork_ebcom_pcep_path &path)
{
    port_state &state = state_of(where);
    if (state.queue) {
        ork_qos_queue present{};
        ork_qos_queue_get(attach(), state.queue, &present);
    } else {
        const kel_init_qos_queue_params params = {1, config.shaping_rate, config.buffer_threshold << 8,
                                                  config.burst_size};
        kel_init_qos_queue_add(&params, 5, schedulers[levels], event_device(), &state.queue);
    }
    keep_destination(config.dst_mac, state.destinations);
    path.queue_hdl = state.queue;
}

void remove_shaper(const kel_ebcom_path_config &config, port where)
{
    port_state &state = state_of(where);
    if (drop_destination(config.dst_mac, state.destinations) > 0)
        return;
    kel_init_qos_queue_rem(state.queue);
    state.queue = nullptr;
}

void path_add(const kel_ebcom_path_config &config, port where)
{
    const mac_text mac(config.dst_mac);
    void *ork = attach();
    ork_ebcom_pcep_path path = path_record(config);
    add_shaper(config, where, path);
    ork_ebcom_pcep_path_create(ork, &path);
    set_path_count(mac.text, path_count(mac.text) + 1);
}

void path_rem(const kel_ebcom_path_config &config, port where)
{
    const mac_text mac(config.dst_mac);
    const guint count = path_count(mac.text);
    void *ork = attach();
    const ork_ebcom_pcep_path path = path_record(config);
    remove_shaper(config, where);
    if (count > 1)
        return set_path_count(mac.text, count - 1);
    ork_ebcom_pcep_path_delete(ork, &path);
    g_hash_table_remove(path_counts, mac.text);
}

bool find_destination(const uint8_t *mac)
{
    return g_slist_find_custom(used_port.destinations, mac, compare_mac) != nullptr;
}

void get_global_stats(ebcom_global_stats &stats)
{
    memset(&stats, 0, sizeof stats);
    ork_ebcom_global_statistics_get(attach(), &stats);
}

void format_global_stats(char *buf, uint32_t len, uint8_t format)
{
    *buf = '\0';
    ebcom_global_stats stats;
    get_global_stats(stats);
    kel_fmt_ebcom_global_stats(buf, len, format, &stats);
    kel_fmt_end(buf, len);
}

void get_queue_stats(const uint8_t *mac, ebcom_queue_stats &stats)
{
    memset(&stats, 0, sizeof stats);
    qos_queue_stats counters{};
    find_destination(mac);
    kel_init_qos_queue_stats_get(used_port.queue, &counters);
    stats.mem_blks_in_use = counters.mem_blks_in_use;
    stats.pkts_out_standing = counters.pkts_out_standing;
    stats.pkts_dropped = counters.pkts_dropped;
    stats.pkts_tx = counters.pkts_tx;
    stats.pkts_rx = counters.pkts_rx;
    stats.octets_dropped = counters.octets_dropped;
    stats.octets_tx = counters.octets_tx;
    stats.octets_rx = counters.octets_rx;
    find_destination(mac);
    kel_ic_ebcom_set_burst_stats(used_port.queue, nullptr, &stats);
}

void format_queue_stats(const uint8_t *mac, char *buf, uint32_t len, uint8_t format)
{
    *buf = '\0';
    ebcom_queue_stats stats{};
    get_queue_stats(mac, stats);
    kel_fmt_header(buf, len, format, "EBCOM Queue statistics");
    kel_fmt_uint32(buf, len, format, "mem_blks_in_use", stats.mem_blks_in_use);
    kel_fmt_uint32(buf, len, format, "pkts_out_standing", stats.pkts_out_standing);
    kel_fmt_uint32(buf, len, format, "pkts_dropped", stats.pkts_dropped);
    kel_fmt_uint32(buf, len, format, "pkts_tx", stats.pkts_tx);
    kel_fmt_uint32(buf, len, format, "pkts_rq", stats.pkts_rx);
    kel_fmt_end(buf, len);
}

void format_queue_stats_2(const uint8_t *mac, char *buf, uint32_t len, uint8_t format)
{
    *buf = '\0';
    ebcom_queue_stats stats{};
    get_queue_stats(mac, stats);
    kel_fmt_header(buf, len, format, "EBCOM Queue statistics version 2");
    kel_fmt_uint32(buf, len, format, "mem_blks_in_use", stats.mem_blks_in_use);
    kel_fmt_uint32(buf, len, format, "pkts_out_standing", stats.pkts_out_standing);
    kel_fmt_uint32(buf, len, format, "pkts_dropped", stats.pkts_dropped);
    kel_fmt_uint32(buf, len, format, "pkts_tx", stats.pkts_tx);
    kel_fmt_uint32(buf, len, format, "pkts_rx", stats.pkts_rx);
    kel_fmt_uint32(buf, len, format, "octets_dropped", static_cast<uint32_t>(stats.octets_dropped));
    kel_fmt_uint32(buf, len, format, "octets_tx", static_cast<uint32_t>(stats.octets_tx));
    kel_fmt_uint32(buf, len, format, "octets_rx", static_cast<uint32_t>(stats.octets_rx));
    kel_fmt_uint32(buf, len, format, "max_burst_size", stats.max_burst_size);
    kel_fmt_uint32(buf, len, format, "current_burst_size", stats.current_burst_size);
    kel_fmt_end(buf, len);
}

void dump_handles()
{
    FILE *file = fopen("/tmp/KEL_DUMP_EBCOM_QOS_HANDLE_FILENAME", "w");
    if (!file)
        return;
    fprintf(file, "\n------ EBCOM QOS scheduler and queue handle info------\n");
    for (int i = 0; i < groups * handles_of_group; ++i) {
        if (i % handles_of_group == 0)
            fprintf(file, "scheduler_handle=%p\n", schedulers[levels + i / handles_of_group]);
        else
            fprintf(file, "  queue_handle=%p\n", used_port.queue);
    }
    fclose(file);
}

} // namespace bare

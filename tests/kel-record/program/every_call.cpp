// A control process that calls every exported function once or more, with values that kelctl refuses among them.
#include "kel/kel_core_ic_ebcom.h"
#include "kel/kel_core_ic_pcep.h"
#include "kel/kel_trace.h"

#include <cstdarg>
#include <cstdio>

namespace
{

[[gnu::format(printf, 1, 2)]] void format_list(const char *body, ...)
{
    va_list values;
    va_start(values, body);
    kel_trace_internal_vformat_str("%s(): ", "list", body, values);
    va_end(values);
}

void use_ebcom()
{
    const kel_ebcom_global_params params = {.icPortMTU = 1500, .etherType = 0x88B5};
    const kel_ebcom_global_params odd_params = {.icPortMTU = 1, .etherType = 70000};
    const uint8_t settings[] = {1, 2};
    const kel_ebcom_path_config path = {.dst_mac = {2, 0, 0, 2, 0, 1},
                                        .shaping_enabled = 1,
                                        .iell_port = 6,
                                        .shaping_rate = 1000,
                                        .buffer_threshold = 16,
                                        .burst_size = 4096};
    kel_ebcom_path_config odd_path = path;
    odd_path.shaping_enabled = 2;
    odd_path.iell_port = -1;
    odd_path.burst_size = 0xFFFFFFFF;
    odd_path.buffer_threshold = 0xFFFFFFFF;
    ork_ebcom_pcep_path taken = {};
    kel_vsi_t vsi;
    uint16_t out;
    int64_t offset;
    uint8_t channel;
    void *queue = nullptr;
    void *scheduler = nullptr;
    kel_ebcom_capabilities capabilities;
    ebcom_global_stats global;
    ebcom_queue_stats stats;
    char text[2048];

    kel_core_ic_ebcom_global_param_set(&params, settings);
    kel_core_ic_ebcom_global_param_set(&odd_params, settings);
    kel_core_ic_ebcom_capabilities_get(&capabilities);
    kel_core_ic_ebcom_interface_create(&vsi, &out);
    kel_core_ic_ebcom_start();
    kel_ic_ebcom_cycles_to_ork_timestamp_offset(-40, 250000, &offset);
    kel_core_ic_ebcom_path_add(&path);
    kel_core_ic_ebcom_path_add(&odd_path);
    kel_ic_ebcom_add_shaper(&path, &taken);
    kel_ic_ebcom_queue_handle_get(path.dst_mac, &queue);
    kel_ic_ebcom_scheduler_handle_get(path.dst_mac, &scheduler);
    kel_ic_ebcom_set_burst_stats(queue, scheduler, &stats);
    kel_ic_ebcom_port_to_mac_chan(6, &channel);
    kel_ic_ebcom_port_to_mac_chan(0, &channel);
    kel_core_ic_ebcom_qos_handle_dump();
    kel_ic_ebcom_get_global_stats(&global);
    kel_core_ic_ebcom_global_fmt_stats_get(text, sizeof text, 2);
    kel_core_ic_ebcom_fmt_global_stats(text, sizeof text, 0x101);
    kel_core_ic_ebcom_queue_stats_get(path.dst_mac, &stats);
    kel_core_ic_ebcom_queue_fmt_stats_get(path.dst_mac, text, 4096, 0);
    kel_core_ic_ebcom_queue_fmt_stats_get_2(path.dst_mac, text, 5, 0);
    kel_core_ic_ebcom_fmt_queue_stats(path.dst_mac, text, sizeof text, 0);
    kel_ic_ebcom_remove_shaper(&path, &taken);
    kel_core_ic_ebcom_path_rem(&path);
    kel_core_ic_ebcom_stop();
    kel_core_ic_ebcom_interface_delete();
    kel_ic_ebcom_init_qos();
    kel_ic_ebcom_deinit_qos();
}

void use_pcep()
{
    const kel_pcep_config config = {.remote_pcep_id = {9, 1, 0},
                                    .reserved3 = 0,
                                    .local_mac = {2, 0, 0, 3, 0, 1},
                                    .remote_mac = {2, 0, 0, 2, 0, 1},
                                    .vlan_id = 0x1064,
                                    .priority = 5,
                                    .byte19 = 1,
                                    .word20 = 2,
                                    .rest = {}};
    uint32_t location;
    uint32_t type;
    ebcom_pcep_stats stats;
    pcep_stats compact;
    char text[2048];

    kel_ic_pcep_get_location_and_type_from_branch(config.local_mac, &location, &type);
    kel_core_ic_pcep_start();
    kel_core_ic_pcep_create_queue_and_scheduler_for_multicast(nullptr, nullptr, nullptr);
    kel_core_ic_pcep_add(7, &config);
    kel_core_ic_pcep_add(70000, &config);
    kel_core_ic_pcep_mc_group_add(300);
    kel_core_ic_pcep_mc_member_add(300, 7);
    kel_core_ic_pcep_handle_dump(stdout);
    kel_ic_pcep_get_stats(7, &stats);
    kel_core_ic_pcep_stats_get(7, &compact);
    kel_core_ic_pcep_get_stats(7, &compact);
    kel_core_ic_pcep_fmt_stats_get(7, text, sizeof text, 0);
    kel_core_ic_pcep_fmt_stats(7, text, sizeof text, 0);
    kel_core_ic_pcep_mc_member_rem(300, 7);
    kel_core_ic_pcep_mc_group_rem(300);
    kel_core_ic_pcep_rem(7);
    kel_core_ic_pcep_stop();
}

} // namespace

int main()
{
    use_ebcom();
    use_pcep();
    kel_trace_internal_format_str("%s(): ", "bring_up", "port=%d at %.2f", 6, 0.25);
    kel_trace_internal_format_str("<%s>", "it's", "a line\nand more");
    format_list("%d of %d", 1, 2);
    kel_tracepoint();
    kel_abort_internal_abort(12, "main.c", "out of %s", "memory");
    return 0;
}

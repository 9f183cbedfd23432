#include "operations.h"

#include "bare.h"
#include "kel/kel_trace.h"
#include "platform/qol_ng.h"
#include "platform/vorn_tu.h"

#include <cstdarg>
#include <cstdio>

using bare::port;

namespace
{

constexpr kel_ebcom_path_config existing = {{2, 0, 0, 2, 0, 1}, 0, 7, 0, 0, 0};
constexpr kel_ebcom_path_config alone = {{2, 0, 0, 2, 0, 2}, 0, 6, 0, 0, 0};
constexpr kel_ebcom_path_config beside = {{2, 0, 0, 2, 0, 3}, 0, 7, 0, 0, 0};

constexpr kel_ebcom_global_params global_params = {1500, 0x88B5};
constexpr uint8_t settings[2] = {1, 2};

constexpr kel_pcep_config unbound = {{1, 0, 0}, 0, {2, 0, 0x85, 0, 0, 1}, {2, 0, 0, 2, 0, 1}, 100, 5, 0, 0, {}};
constexpr kel_pcep_config bound = {{1, 0, 0}, 0, {2, 0, 0, 3, 0, 1}, {2, 0, 0, 2, 0, 1}, 100, 5, 0, 0, {}};

constexpr uint32_t standing_pcep = 1;
constexpr uint32_t measured_pcep = 2;
constexpr uint32_t standing_group = 300;
constexpr uint32_t measured_group = 301;

constexpr uint8_t plain = 0; // format of text

// What the calls write. Nobody reads it.
char text[1024];
void *handle;
int64_t number;
uint32_t location, type;
uint8_t octet;
uint16_t vsi, half;
ork_ebcom_pcep_path path;
kel_ebcom_capabilities capabilities;
ebcom_global_stats global_stats;
ebcom_queue_stats queue_stats;
ebcom_pcep_stats pcep_record;
pcep_stats pcep_compact;

// ---- The bare counterpart where there is no operation of that name ----

// Of an operation that calls nothing outside: the shortest call there is.
void nothing()
{
    vorn_tu_free_event(nullptr, nullptr);
}

// vsnprintf() is what a message takes; its two parts come one after the other.
[[gnu::format(printf, 3, 4)]] void format_message(const char *prefix, const char *function, const char *format, ...)
{
    const int length = snprintf(text, sizeof text, prefix, function);
    va_list values;
    va_start(values, format);
    vsnprintf(text + length, sizeof text - static_cast<size_t>(length), format, values);
    va_end(values);
}

[[gnu::format(printf, 1, 2)]] void request_restart(const char *format, ...)
{
    char reason[128] = {};
    va_list values;
    va_start(values, format);
    vsnprintf(reason, sizeof reason, format, values);
    va_end(values);
    qol_ng_restart_request_line_and_file(1, "file", 1, reason, 0, nullptr);
}

template <auto Once> void repeat(uint64_t times)
{
    while (times-- > 0)
        Once();
}

// A row: the library's calls, and the bare ones.
#define ROW(name, library, bare, ...)                                                                                  \
    {                                                                                                                  \
        name, repeat<[] { library; }>, repeat<[] { bare; }>, __VA_ARGS__                                               \
    }

constexpr uint64_t few = 50; // every start leaves a thread behind that nobody joins

constexpr operation table[] = {
    ROW("EBCOM start + stop", (kel_core_ic_ebcom_start(), kel_core_ic_ebcom_stop()),
        (bare::ebcom_start(), bare::ebcom_stop()), true, few),
    ROW("QoS set-up + take-down", (kel_ic_ebcom_init_qos(), kel_ic_ebcom_deinit_qos()),
        (bare::init_qos(), bare::deinit_qos()), true),
    ROW("timestamp conversion", kel_ic_ebcom_cycles_to_ork_timestamp_offset(1000, 100, &number), nothing()),
    ROW("global parameters", kel_core_ic_ebcom_global_param_set(&global_params, settings),
        bare::global_param_set(global_params, settings)),
    ROW("capabilities", kel_core_ic_ebcom_capabilities_get(&capabilities), nothing()),
    ROW("interface create + delete",
        (kel_core_ic_ebcom_interface_create(&vsi, &half), kel_core_ic_ebcom_interface_delete()),
        (bare::interface_create(vsi, half), bare::interface_delete())),

    ROW("shaper add + remove, own queue",
        (kel_ic_ebcom_add_shaper(&alone, &path), kel_ic_ebcom_remove_shaper(&alone, &path)),
        (bare::add_shaper(alone, port::empty, path), bare::remove_shaper(alone, port::empty))),
    ROW("shaper add + remove, shared queue",
        (kel_ic_ebcom_add_shaper(&beside, &path), kel_ic_ebcom_remove_shaper(&beside, &path)),
        (bare::add_shaper(beside, port::used, path), bare::remove_shaper(beside, port::used))),
    ROW("path add + remove, own queue", (kel_core_ic_ebcom_path_add(&alone), kel_core_ic_ebcom_path_rem(&alone)),
        (bare::path_add(alone, port::empty), bare::path_rem(alone, port::empty))),
    ROW("path add + remove, shared queue", (kel_core_ic_ebcom_path_add(&beside), kel_core_ic_ebcom_path_rem(&beside)),
        (bare::path_add(beside, port::used), bare::path_rem(beside, port::used))),
    ROW("path add + remove, counted destination",
        (kel_core_ic_ebcom_path_add(&existing), kel_core_ic_ebcom_path_rem(&existing)),
        (bare::path_add(existing, port::used), bare::path_rem(existing, port::used))),
    ROW("MAC channel of a port", kel_ic_ebcom_port_to_mac_chan(7, &octet), nothing()),
    ROW("queue handle", kel_ic_ebcom_queue_handle_get(existing.dst_mac, &handle),
        bare::find_destination(existing.dst_mac)),
    ROW("scheduler handle", kel_ic_ebcom_scheduler_handle_get(existing.dst_mac, &handle),
        bare::find_destination(existing.dst_mac)),
    ROW("QoS handle dump", kel_core_ic_ebcom_qos_handle_dump(), bare::dump_handles()),

    ROW("global statistics", kel_ic_ebcom_get_global_stats(&global_stats), bare::get_global_stats(global_stats)),
    ROW("global statistics, text", kel_core_ic_ebcom_global_fmt_stats_get(text, sizeof text, plain),
        bare::format_global_stats(text, sizeof text, plain)),
    ROW("global statistics, text, second name", kel_core_ic_ebcom_fmt_global_stats(text, sizeof text, plain),
        bare::format_global_stats(text, sizeof text, plain)),
    ROW("queue statistics", kel_core_ic_ebcom_queue_stats_get(existing.dst_mac, &queue_stats),
        bare::get_queue_stats(existing.dst_mac, queue_stats)),
    ROW("queue statistics, text", kel_core_ic_ebcom_queue_fmt_stats_get(existing.dst_mac, text, sizeof text, plain),
        bare::format_queue_stats(existing.dst_mac, text, sizeof text, plain)),
    ROW("queue statistics, text, second name",
        kel_core_ic_ebcom_fmt_queue_stats(existing.dst_mac, text, sizeof text, plain),
        bare::format_queue_stats(existing.dst_mac, text, sizeof text, plain)),
    ROW("queue statistics, text version 2",
        kel_core_ic_ebcom_queue_fmt_stats_get_2(existing.dst_mac, text, sizeof text, plain),
        bare::format_queue_stats_2(existing.dst_mac, text, sizeof text, plain)),
    ROW("burst statistics", kel_ic_ebcom_set_burst_stats(nullptr, nullptr, &queue_stats), nothing()),

    ROW("PCEP start + stop", (kel_core_ic_pcep_start(), kel_core_ic_pcep_stop()),
        (bare::pcep_start(), bare::pcep_stop()), true),
    ROW("location of a MAC address", kel_ic_pcep_get_location_and_type_from_branch(existing.dst_mac, &location, &type),
        nothing()),
    ROW("PCEP add + remove", (kel_core_ic_pcep_add(measured_pcep, &unbound), kel_core_ic_pcep_rem(measured_pcep)),
        (bare::pcep_add(measured_pcep, unbound, false), bare::pcep_rem(measured_pcep, false))),
    ROW("PCEP add + remove, bound", (kel_core_ic_pcep_add(measured_pcep, &bound), kel_core_ic_pcep_rem(measured_pcep)),
        (bare::pcep_add(measured_pcep, bound, true), bare::pcep_rem(measured_pcep, true))),
    ROW("multicast hook", kel_core_ic_pcep_create_queue_and_scheduler_for_multicast(nullptr, nullptr, nullptr),
        nothing()),
    ROW("multicast group add + remove",
        (kel_core_ic_pcep_mc_group_add(measured_group), kel_core_ic_pcep_mc_group_rem(measured_group)),
        (bare::group_add(measured_group), bare::group_rem(measured_group))),
    ROW("multicast member add + remove",
        (kel_core_ic_pcep_mc_member_add(standing_group, standing_pcep),
         kel_core_ic_pcep_mc_member_rem(standing_group, standing_pcep)),
        (bare::member_add(standing_group, standing_pcep), bare::member_rem(standing_group, standing_pcep))),
    ROW("PCEP handle dump", kel_core_ic_pcep_handle_dump(nullptr), bare::dump_pcep_handles(nullptr)),
    ROW("PCEP statistics", kel_ic_pcep_get_stats(standing_pcep, &pcep_record),
        bare::get_pcep_stats(standing_pcep, pcep_record)),
    ROW("PCEP statistics, compact", kel_core_ic_pcep_stats_get(standing_pcep, &pcep_compact),
        bare::get_compact_pcep_stats(standing_pcep, pcep_compact)),
    ROW("PCEP statistics, compact, second name", kel_core_ic_pcep_get_stats(standing_pcep, &pcep_compact),
        bare::get_compact_pcep_stats(standing_pcep, pcep_compact)),
    ROW("PCEP statistics, text", kel_core_ic_pcep_fmt_stats_get(standing_pcep, text, sizeof text, plain),
        bare::format_pcep_stats(standing_pcep, text, sizeof text, plain)),
    ROW("PCEP statistics, text, second name", kel_core_ic_pcep_fmt_stats(standing_pcep, text, sizeof text, plain),
        bare::format_pcep_stats(standing_pcep, text, sizeof text, plain)),

    ROW("trace message",
        kel_trace_internal_format_str("%s(): ", "kel_core_ic_ebcom_interface_create",
                                      "ork_ebcom_interface_create(eth_dev_id=%d)", 7),
        format_message("%s(): ", "kel_core_ic_ebcom_interface_create", "ork_ebcom_interface_create(eth_dev_id=%d)", 7)),
    ROW("trace point of no effect", kel_tracepoint(), nothing()),
    ROW("abort", kel_abort_internal_abort(1, "file", "out of %s", "memory"), request_restart("out of %s", "memory")),
};

} // namespace

std::span<const operation> operations()
{
    return table;
}

void make_tables()
{
    kel_core_ic_ebcom_start();
    kel_core_ic_ebcom_stop();
    bare::ebcom_start();
    bare::ebcom_stop();
}

void services_up()
{
    kel_ic_ebcom_init_qos();
    kel_core_ic_ebcom_path_add(&existing);
    kel_core_ic_pcep_start();
    kel_core_ic_pcep_add(standing_pcep, &unbound);
    kel_core_ic_pcep_mc_group_add(standing_group);

    bare::init_qos();
    bare::path_add(existing, port::used);
    bare::pcep_start();
    bare::pcep_add(standing_pcep, unbound, false);
    bare::group_add(standing_group);
}

void services_down()
{
    kel_core_ic_pcep_mc_group_rem(standing_group);
    kel_core_ic_pcep_stop();
    kel_core_ic_ebcom_path_rem(&existing);
    kel_ic_ebcom_deinit_qos();

    bare::pcep_stop();
    bare::path_rem(existing, port::used);
    bare::deinit_qos();
}

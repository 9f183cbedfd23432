// The exported functions, each with the command that calls it and what writes its arguments down: one table, from which
// a wrapper is put before each function. Four functions that the table does not fit have wrappers of their own. A row's
// arguments are written in the order in which the command takes them.
#include "kel-record/preload/call.h"
#include "kel-record/preload/entry.h"
#include "kel/kel_core_ic_ebcom.h"
#include "kel/kel_core_ic_pcep.h"
#include "kel/kel_node_names.h"
#include "kel/kel_trace.h"
#include "kelctl/values/limits.h"

#include <cstdio>
#include <cstring>

using namespace kelctl; // the ranges of values

namespace kel_record
{
namespace
{

constexpr range any_number = {INT64_MIN, INT64_MAX, ""};
constexpr range port_range = {0, KEL_IELL_PORT_COUNT - 1, ""};
constexpr uint32_t usual_text_length = 4096; // of kelctl

// ---- Arguments ----

// Port 0 has no name of its own.
void port(line &to, const char *option, int32_t port)
{
    if (port > 0 && port_range.holds(port))
        to.add("%s %s", option, kel_branch_name(port));
    else
        to.number(option, port, port_range);
}

// Or has values that count for a shaped path only.
bool is_shaped(const kel_ebcom_path_config &config)
{
    return config.shaping_enabled || config.shaping_rate || config.burst_size || config.buffer_threshold;
}

void path_added(line &to, const kel_ebcom_path_config *config)
{
    if (!to.reads(config))
        return;
    to.mac("", config->dst_mac);
    port(to, " --port", config->iell_port);
    if (!is_shaped(*config))
        return;
    to.number(" --rate", config->shaping_rate, rate_range);
    to.number(" --burst", config->burst_size, burst_range);
    to.number(" --threshold", int64_t{config->buffer_threshold} * threshold_block, threshold_range);
    if (config->shaping_enabled == 1)
        return;
    to.add(" --shaping %u", config->shaping_enabled);
    to.need_raw();
}

// The library reads no shaping of a removal, but traces it.
void path_removed(line &to, const kel_ebcom_path_config *config)
{
    if (!to.reads(config))
        return;
    to.mac("", config->dst_mac);
    port(to, " --port", config->iell_port);
    if (is_shaped(*config))
        to.add(" --configured %u,%u,%u,%u", config->shaping_enabled, config->shaping_rate, config->buffer_threshold,
               config->burst_size);
}

void shaper_added(line &to, const kel_ebcom_path_config *config, ork_ebcom_pcep_path *)
{
    path_added(to, config);
}

void shaper_removed(line &to, const kel_ebcom_path_config *config, ork_ebcom_pcep_path *)
{
    path_removed(to, config);
}

void parameters(line &to, const kel_ebcom_global_params *params, const uint8_t *settings)
{
    if (!to.reads(params) || !to.reads(settings))
        return;
    to.number(" --mtu", params->icPortMTU, mtu_range);
    to.add(" --ether-type 0x%04x --settings %u,%u", params->etherType, settings[0], settings[1]);
    if (!ether_type_range.holds(params->etherType) || !setting_range.holds(settings[0]) ||
        !setting_range.holds(settings[1]))
        to.need_raw();
}

void reading(line &to, int64_t cycles, uint32_t frequency, int64_t *)
{
    to.number(" --cycles", cycles, any_number);
    to.number(" --frequency", frequency, any_number);
}

void channel(line &to, int32_t iell_port, uint8_t *)
{
    port(to, "", iell_port);
}

template <typename Output> void destination(line &to, const uint8_t *mac, Output *)
{
    to.mac("", mac);
}

void location(line &to, const uint8_t *mac, uint32_t *, uint32_t *)
{
    to.mac("", mac);
}

// Only the low octet of a format counts.
void layout(line &to, uint32_t length, uint32_t format)
{
    if ((format & 0xFF) != 0)
        to.add(" --format %u", format & 0xFF);
    if (length != usual_text_length)
        to.number(" --length", length, text_length_range);
}

template <typename Format> void text(line &to, char *, uint32_t length, Format format)
{
    layout(to, length, format);
}

template <typename Format> void queue_text(line &to, const uint8_t *mac, char *, uint32_t length, Format format)
{
    to.mac("", mac);
    layout(to, length, format);
}

template <typename Format> void pcep_text(line &to, uint32_t pcep_id, char *, uint32_t length, Format format)
{
    to.number("", pcep_id, id_range);
    layout(to, length, format);
}

void handles(line &to, void *queue, void *scheduler, ebcom_queue_stats *)
{
    if (queue)
        to.add(" --queue %p", queue);
    if (scheduler)
        to.add(" --scheduler %p", scheduler);
}

void id(line &to, uint32_t id)
{
    to.number("", id, id_range);
}

template <typename Record> void id_of_record(line &to, uint32_t id, Record *)
{
    to.number("", id, id_range);
}

void member(line &to, uint32_t group, uint32_t id)
{
    to.number("", group, id_range);
    to.number("", id, id_range);
}

// What no one reads of a configuration is left out.
void pcep(line &to, uint32_t id, const kel_pcep_config *config)
{
    to.number("", id, id_range);
    if (!to.reads(config))
        return;
    const uint8_t *remote = config->remote_pcep_id;
    to.add(" --remote-id %d", remote[0] | remote[1] << 8 | remote[2] << 16);
    to.mac(" --local", config->local_mac);
    to.mac(" --remote", config->remote_mac);
    to.number(" --vlan", config->vlan_id, vlan_range);
    to.number(" --priority", config->priority, priority_range);
    if (config->byte19)
        to.add(" --byte19 %u", config->byte19);
    if (config->word20)
        to.add(" --word20 %u", config->word20);
}

// ---- Outputs that later calls take: their names are the handles themselves ----

void handle(line &to, const uint8_t *, void **handle)
{
    to.add(" --as %p", *handle);
}

void shaper_handle(line &to, const kel_ebcom_path_config *, ork_ebcom_pcep_path *path)
{
    if (path && path->queue_hdl)
        to.add(" --as %p", path->queue_hdl);
}

// ---- Wrappers ----

template <typename Function> struct row;

template <typename... Parameters> struct row<uint32_t(Parameters...)> {
    const char *function;
    const char *command;
    void (*write)(line &to, Parameters... parameters) = nullptr;         // null: it has no arguments
    void (*write_outputs)(line &to, Parameters... parameters) = nullptr; // after a success; null: none that matter
};

template <const auto &Row, typename Function> struct wrapper;

// The address that the call returns to is asked for here, in the function that the jump reaches: any function in
// between would have one of its own.
template <const auto &Row, typename... Parameters> struct wrapper<Row, uint32_t(Parameters...)> {
    static uint32_t pass_on(Parameters... parameters)
    {
        static constinit next_function<uint32_t(Parameters...)> next(Row.function);
        if (!is_programs_call(__builtin_return_address(0)))
            return next.get()(parameters...);
        call made(Row.command);
        if constexpr (Row.write != nullptr)
            Row.write(made.line, parameters...);
        made.begin();
        const uint32_t code = next.get()(parameters...);
        if constexpr (Row.write_outputs != nullptr)
            if (code == 0)
                Row.write_outputs(made.line, parameters...);
        made.end(code);
        return code;
    }
};

} // namespace

#define ROW(function, ...)                                                                                             \
    constexpr row<decltype(::function)> row_of_##function = {#function, __VA_ARGS__};                                  \
    INTERPOSE(function, &wrapper<row_of_##function, decltype(::function)>::pass_on);

ROW(kel_core_ic_ebcom_start, "ebcom start")
ROW(kel_core_ic_ebcom_stop, "ebcom stop")
ROW(kel_ic_ebcom_cycles_to_ork_timestamp_offset, "ebcom timestamp offset", reading)
ROW(kel_core_ic_ebcom_global_param_set, "ebcom params set", parameters)
ROW(kel_core_ic_ebcom_capabilities_get, "ebcom capabilities")
ROW(kel_core_ic_ebcom_interface_create, "ebcom interface create")
ROW(kel_core_ic_ebcom_interface_delete, "ebcom interface delete")
ROW(kel_ic_ebcom_init_qos, "ebcom qos init")
ROW(kel_ic_ebcom_deinit_qos, "ebcom qos deinit")
ROW(kel_ic_ebcom_add_shaper, "ebcom shaper add", shaper_added, shaper_handle)
ROW(kel_ic_ebcom_remove_shaper, "ebcom shaper remove", shaper_removed)
ROW(kel_core_ic_ebcom_path_add, "ebcom path add", path_added)
ROW(kel_core_ic_ebcom_path_rem, "ebcom path remove", path_removed)
ROW(kel_ic_ebcom_queue_handle_get, "ebcom queue handle", destination, handle)
ROW(kel_ic_ebcom_scheduler_handle_get, "ebcom scheduler handle", destination, handle)
ROW(kel_ic_ebcom_port_to_mac_chan, "ebcom port channel", channel)
ROW(kel_core_ic_ebcom_qos_handle_dump, "ebcom qos dump")
ROW(kel_ic_ebcom_get_global_stats, "ebcom stats --variant record")
ROW(kel_core_ic_ebcom_global_fmt_stats_get, "ebcom stats", text)
ROW(kel_core_ic_ebcom_fmt_global_stats, "ebcom stats --variant text-second-name", text)
ROW(kel_core_ic_ebcom_queue_stats_get, "ebcom queue stats --variant record", destination)
ROW(kel_core_ic_ebcom_queue_fmt_stats_get, "ebcom queue stats", queue_text)
ROW(kel_core_ic_ebcom_queue_fmt_stats_get_2, "ebcom queue stats --variant text-2", queue_text)
ROW(kel_core_ic_ebcom_fmt_queue_stats, "ebcom queue stats --variant text-second-name", queue_text)
ROW(kel_ic_ebcom_set_burst_stats, "ebcom burst stats", handles)
ROW(kel_ic_pcep_get_location_and_type_from_branch, "pcep locate", location)
ROW(kel_core_ic_pcep_start, "pcep start")
ROW(kel_core_ic_pcep_stop, "pcep stop")
ROW(kel_core_ic_pcep_handle_dump, "pcep handles dump")
ROW(kel_core_ic_pcep_create_queue_and_scheduler_for_multicast, "pcep multicast queue")
ROW(kel_core_ic_pcep_add, "pcep add", pcep)
ROW(kel_core_ic_pcep_rem, "pcep remove", id)
ROW(kel_core_ic_pcep_mc_group_add, "group add", id)
ROW(kel_core_ic_pcep_mc_group_rem, "group remove", id)
ROW(kel_core_ic_pcep_mc_member_add, "group member add", member)
ROW(kel_core_ic_pcep_mc_member_rem, "group member remove", member)
ROW(kel_core_ic_pcep_fmt_stats_get, "pcep stats", pcep_text)
ROW(kel_core_ic_pcep_fmt_stats, "pcep stats --variant text-second-name", pcep_text)
ROW(kel_core_ic_pcep_stats_get, "pcep stats --variant record", id_of_record)
ROW(kel_core_ic_pcep_get_stats, "pcep stats --variant record-second-name", id_of_record)
ROW(kel_ic_pcep_get_stats, "pcep stats --variant driver-kit-record", id_of_record)

// ---- Functions of texts: what varies is finished here, and passed on as a text or a list ----

namespace
{

using formatter = char *(const char *, const char *, const char *, va_list);

constinit next_function<formatter> next_formatter("kel_trace_internal_vformat_str");

// A prefix that kelctl has not becomes a part of the text.
void write_message(line &to, const char *prefix_format, const char *prefix, const char *body, va_list values)
{
    char message[1024] = {};
    const bool prefix_of_kelctl = prefix && strcmp(prefix_format, "%s(): ") == 0;
    size_t length = 0;
    if (prefix && !prefix_of_kelctl) {
        snprintf(message, 256, prefix_format, prefix);
        length = strlen(message);
    }
    if (body)
        vsnprintf(message + length, sizeof message - length, body, values);
    if (body || length > 0)
        to.text("", message);
    if (prefix_of_kelctl)
        to.text(" --prefix", prefix);
}

// A list of arguments can be walked through once only, so it is copied for the line.
char *pass_message_on(const char *command, const char *prefix_format, const char *prefix, const char *body,
                      va_list values)
{
    call made(command);
    va_list again;
    va_copy(again, values);
    write_message(made.line, prefix_format, prefix, body, again);
    va_end(again);
    made.begin();
    char *message = next_formatter.get()(prefix_format, prefix, body, values);
    made.end(0);
    return message;
}

} // namespace
} // namespace kel_record

using namespace kel_record;

extern "C" char *kel_trace_internal_vformat_str(const char *prefix_format, const char *prefix, const char *body,
                                                va_list values)
{
    if (is_programs_call(__builtin_return_address(0)))
        return pass_message_on("trace message --variant list", prefix_format, prefix, body, values);
    return next_formatter.get()(prefix_format, prefix, body, values);
}

extern "C" char *kel_trace_internal_format_str(const char *prefix_format, const char *prefix, const char *body, ...)
{
    const bool programs = is_programs_call(__builtin_return_address(0));
    va_list values;
    va_start(values, body);
    char *message = programs ? pass_message_on("trace message", prefix_format, prefix, body, values)
                             : next_formatter.get()(prefix_format, prefix, body, values);
    va_end(values);
    return message;
}

extern "C" void kel_tracepoint()
{
    static constinit next_function<void()> next("kel_tracepoint");
    if (!is_programs_call(__builtin_return_address(0)))
        return next.get()();
    call made("trace point");
    made.begin();
    next.get()();
    made.end(0);
}

extern "C" void kel_abort_internal_abort(uint32_t line, const char *file, const char *reason_format, ...)
{
    static constinit next_function<void(uint32_t, const char *, const char *, ...)> next("kel_abort_internal_abort");
    char reason[128] = {}; // as much as the library takes of it
    va_list values;
    va_start(values, reason_format);
    vsnprintf(reason, sizeof reason, reason_format, values);
    va_end(values);
    if (!is_programs_call(__builtin_return_address(0)))
        return next.get()(line, file, "%s", reason);
    call made("abort");
    made.line.text("", reason);
    made.line.text(" --file", file);
    made.line.number(" --line", line, dword_range);
    made.begin();
    next.get()(line, file, "%s", reason);
    made.end(0);
}

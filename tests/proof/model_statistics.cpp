// Counters as records and as text. The scripted platform counts every record's octets up from 1.
#include "model.h"

#include <algorithm>
#include <cstring>

namespace proof
{
namespace
{

uint64_t field(const octets &record, size_t offset, size_t width)
{
    uint64_t value = 0;
    memcpy(&value, record.data() + offset, width);
    return value;
}

// A counter of one record at a place of another.
struct move {
    size_t to;
    size_t from;
    size_t width;
};

octets moved(const octets &from, size_t size, const std::vector<move> &moves)
{
    octets result(size);
    for (const move &each : moves)
        memcpy(result.data() + each.to, from.data() + each.from, each.width);
    return result;
}

// The 48 octets of the companion library's counters in the order of the 56 of ours.
const std::vector<move> queue_moves = {{0, 28, 4},  {4, 32, 4},  {8, 24, 4}, {12, 36, 4},
                                       {16, 40, 4}, {24, 16, 8}, {32, 0, 8}, {40, 8, 8}};

// The driver kit's 128 octets in the order of the compact 76.
const std::vector<move> pcep_moves = {{0, 64, 8},   {8, 112, 4}, {12, 72, 4}, {16, 116, 4}, {20, 76, 4},
                                      {24, 88, 4},  {28, 80, 8}, {36, 92, 4}, {40, 120, 4}, {44, 96, 8},
                                      {52, 104, 8}, {60, 0, 8},  {68, 8, 8}};

octets empty_text()
{
    octets text(text_buffer_size, soil);
    text[0] = 0;
    return text;
}

} // namespace

// ---- Text ----

// A formatting call; a successful one adds its mark, as far as the caller's length allows.
uint32_t model::format_call(octets &text, const step &step, const char *function, const std::string &arguments,
                            const std::string &mark)
{
    if (const int64_t code = tell_.call(function, format("%u", step.length) + arguments))
        return static_cast<uint32_t>(code);
    const auto limit = text.begin() + static_cast<ptrdiff_t>(step.length);
    auto place = std::find(text.begin(), limit, uint8_t{0});
    if (place == limit)
        return 0;
    for (const char each : mark)
        if (place + 1 != limit)
            *place++ = static_cast<uint8_t>(each);
    *place = 0;
    return 0;
}

void model::end_text(octets &text, const step &step)
{
    tell_.require(format_call(text, step, "kel_fmt_end", "", "end"), "kel_fmt_end");
}

// ---- Global ----

uint32_t model::read_global(octets &record)
{
    return quiet("kel_ic_ebcom_get_global_stats", "EBCOM", [&] {
        record.assign(256, 0);
        tell_.require(static_cast<uint32_t>(tell_.call("kel_init_attach", "")), "kel_init_attach");
        tell_.hand_over("ork_ebcom_global_statistics_get", record);
        if (const int64_t code = tell_.call("ork_ebcom_global_statistics_get", "ork")) {
            tell_.report_driver_kit(code, "ork_ebcom_global_statistics_get");
            throw failure{13};
        }
        record = counted(256);
    });
}

uint32_t model::global_stats(const step &)
{
    octets record;
    const uint32_t code = read_global(record);
    append(outputs_, record.data(), record.size());
    return code;
}

uint32_t model::global_text(const step &step)
{
    octets text = empty_text();
    const uint32_t code = quiet("kel_core_ic_ebcom_global_fmt_stats_get", "EBCOM", [&] {
        octets record;
        tell_.require(read_global(record), "kel_ic_ebcom_get_global_stats");
        tell_.hand_over("kel_fmt_ebcom_global_stats", record);
        format_call(text, step, "kel_fmt_ebcom_global_stats", format(", format %u", step.format & 0xFF), "global ");
        end_text(text, step);
    });
    append(outputs_, text.data(), text.size());
    return code;
}

// ---- Queues ----

uint32_t model::burst_step()
{
    if (const int64_t code = tell_.unseen_call("kel_ic_ebcom_set_burst_stats"))
        return static_cast<uint32_t>(code);
    return operation_of("kel_ic_ebcom_set_burst_stats", "EBCOM", [] {});
}

uint32_t model::set_burst_stats(const step &)
{
    const octets untouched(56, soil);
    append(outputs_, untouched.data(), untouched.size());
    return burst_step();
}

uint32_t model::read_queue(const uint8_t *mac, octets &record)
{
    return operation_of("kel_core_ic_ebcom_queue_stats_get", "EBCOM", [&] {
        record.assign(56, 0);
        tell_.text_call("macAddr2str", text_of_mac(mac));
        tell_.record("FN_PARAM", "dst_mac = " + text_of_mac(mac));
        uint64_t queue = 0;
        uint64_t scheduler = 0;
        tell_.require(look_up("kel_ic_ebcom_queue_handle_get", mac, true, queue), "kel_ic_ebcom_queue_handle_get");
        tell_.announce("kel_init_qos_queue_stats_get()");
        tell_.hand_over("kel_init_qos_queue_stats_get", octets(48));
        tell_.require(static_cast<uint32_t>(tell_.call("kel_init_qos_queue_stats_get", pointer(queue))),
                      "kel_init_qos_queue_stats_get");
        record = moved(counted(48), 56, queue_moves);
        tell_.require(look_up("kel_ic_ebcom_scheduler_handle_get", mac, false, scheduler),
                      "kel_ic_ebcom_scheduler_handle_get");
        tell_.require(burst_step(), "kel_core_ic_set_burst_stats");
    });
}

uint32_t model::queue_stats(const step &step)
{
    octets record;
    const uint32_t code = read_queue(step.path.dst_mac, record);
    append(outputs_, record.data(), record.size());
    return code;
}

uint32_t model::queue_lines(const step &step, const char *operation, const char *title, bool second_layout)
{
    octets text = empty_text();
    const uint32_t code = quiet(operation, "EBCOM", [&] {
        octets record;
        tell_.require(read_queue(step.path.dst_mac, record), "kel_core_ic_ebcom_queue_stats_get");
        const std::string selector = format(", format %u, ", step.format & 0xFF);
        const auto line = [&](const char *label, size_t offset) {
            const auto value = static_cast<uint32_t>(field(record, offset, 4));
            format_call(text, step, "kel_fmt_uint32", selector + format("%s, %u", label, value),
                        format("%s=%u ", label, value));
        };
        format_call(text, step, "kel_fmt_header", selector + title, std::string(title) + ": ");
        line("mem_blks_in_use", 0);
        line("pkts_out_standing", 4);
        line("pkts_dropped", 8);
        line("pkts_tx", 12);
        line(second_layout ? "pkts_rx" : "pkts_rq", 16);
        if (second_layout) {
            line("octets_dropped", 24);
            line("octets_tx", 32);
            line("octets_rx", 40);
            line("max_burst_size", 48);
            line("current_burst_size", 52);
        }
        end_text(text, step);
    });
    append(outputs_, text.data(), text.size());
    return code;
}

uint32_t model::queue_text(const step &step)
{
    return queue_lines(step, "kel_core_ic_ebcom_queue_fmt_stats_get", "EBCOM Queue statistics", false);
}

uint32_t model::queue_text_2(const step &step)
{
    return queue_lines(step, "kel_core_ic_ebcom_queue_fmt_stats_get_2", "EBCOM Queue statistics version 2", true);
}

// ---- PCEPs ----

uint32_t model::read_pcep(uint32_t id, octets &record)
{
    return quiet("kel_ic_pcep_get_stats", "PCEP", [&] {
        record.assign(128, 0);
        if (id < 1 || id > 511)
            tell_.refuse(3, "(pcep_id)");
        const pcep_entry &entry = entry_of(id);
        if (entry.id == 0)
            tell_.refuse(4, "(pcep_id)");
        if (entry.location == 5)
            tell_.refuse(11, "Statistics not supported for Multicast PCEPs");
        if (const int64_t code = tell_.call("ork_ebcom_pcep_statistics_get",
                                            std::string(ork()) + ", " + pcep_handle_text(entry.handle))) {
            tell_.report_driver_kit(code, "ork_ebcom_pcep_statistics_get");
            throw failure{13};
        }
        record = moved(counted(128), 128, {{0, 0, 16}, {64, 64, 64}});
    });
}

uint32_t model::pcep_driver_kit_stats(const step &step)
{
    octets record;
    const uint32_t code = read_pcep(step.id, record);
    append(outputs_, record.data(), record.size());
    return code;
}

uint32_t model::pcep_compact_stats(const step &step)
{
    octets compact(76);
    const uint32_t code = quiet("kel_core_ic_pcep_stats_get", "PCEP", [&] {
        octets record;
        tell_.require(read_pcep(step.id, record), "kel_ic_pcep_get_stats");
        compact = moved(record, 76, pcep_moves);
    });
    append(outputs_, compact.data(), compact.size());
    return code;
}

uint32_t model::pcep_text(const step &step)
{
    octets text = empty_text();
    const uint32_t code = quiet("kel_core_ic_pcep_fmt_stats_get", "PCEP", [&] {
        octets record;
        tell_.require(read_pcep(step.id, record), "kel_ic_pcep_get_stats");
        const std::string selector = format(", format %u", step.format & 0xFF);
        tell_.hand_over("kel_fmt_ebcom_pcep_inbound_stats", {record.begin() + 64, record.end()});
        format_call(text, step, "kel_fmt_ebcom_pcep_inbound_stats", selector, "inbound ");
        tell_.hand_over("kel_fmt_ebcom_pcep_outbound_stats", {record.begin(), record.begin() + 64});
        format_call(text, step, "kel_fmt_ebcom_pcep_outbound_stats", selector, "outbound ");
        end_text(text, step);
    });
    append(outputs_, text.data(), text.size());
    return code;
}

} // namespace proof

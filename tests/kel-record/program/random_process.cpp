// A control process that makes random calls of every exported function, with values that kelctl takes and with others,
// while calls of the closed libraries fail at random. It shows each code and what the node holds at the end on standard
// output, and its trace records on standard error, laid out as kelctl does.
//
//     random-process SEED CALLS
#include "kel/kel_core_ic_ebcom.h"
#include "kel/kel_core_ic_pcep.h"
#include "kel/kel_trace.h"
#include "kelctl/library/trace_log.h"
#include "softnode/softnode.h"

#include <array>
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fmt/core.h>
#include <iterator>
#include <random>
#include <string>

namespace
{

std::mt19937 generator; // whose numbers are the same everywhere, as those of distributions are not

uint32_t number(uint32_t below)
{
    return static_cast<uint32_t>(generator()) % below;
}

template <typename Value, size_t Count> Value one_of(const Value (&values)[Count])
{
    return values[number(Count)];
}

constexpr uint8_t macs[][6] = {{2, 0, 0, 2, 0, 1},    {2, 0, 0, 2, 0, 2}, {2, 0, 0, 9, 0, 4}, {2, 0, 0, 3, 0, 3},
                               {2, 0, 0x94, 0, 0, 5}, {2, 0, 7, 0, 0, 6}, {1, 0, 0, 0, 0, 7}};
constexpr int32_t ports[] = {6, 6, 6, 7, 12, 42, 0, 14, -1, 51};
constexpr uint32_t ids[] = {7, 9, 11, 1, 511, 200, 0, 512, 0xFFFFFFFF};
constexpr uint32_t rates[] = {0, 0, 0, 1000};

const uint8_t *mac()
{
    return macs[number(std::size(macs))];
}

kel_ebcom_path_config path()
{
    const uint32_t rate = one_of(rates);
    kel_ebcom_path_config config = {.dst_mac = {},
                                    .shaping_enabled = static_cast<uint8_t>(rate ? 1 + number(8) / 7 : 0),
                                    .iell_port = one_of(ports),
                                    .shaping_rate = rate,
                                    .buffer_threshold = number(4) * 100,
                                    .burst_size = rate ? rate * 4 : number(8) / 7};
    memcpy(config.dst_mac, mac(), sizeof config.dst_mac);
    return config;
}

kel_pcep_config pcep()
{
    kel_pcep_config config = {.remote_pcep_id = {9, 8, 7},
                              .reserved3 = 1,
                              .local_mac = {},
                              .remote_mac = {},
                              .vlan_id = static_cast<uint16_t>(number(0x10000)),
                              .priority = static_cast<uint8_t>(number(256)),
                              .byte19 = static_cast<uint8_t>(number(2) * 0x5A),
                              .word20 = static_cast<uint16_t>(number(2) * 0x7B6C),
                              .rest = {}};
    memcpy(config.local_mac, mac(), sizeof config.local_mac);
    memcpy(config.remote_mac, mac(), sizeof config.remote_mac);
    return config;
}

// What the node handed out, for calls that take it.
void *queue;
void *scheduler;

// What calls write, shown with their codes: 0 before each.
std::array<char, 1024> out;

template <typename Record> Record *output()
{
    return reinterpret_cast<Record *>(out.data());
}

uint32_t length()
{
    return 1 + number(number(2) ? 60 : static_cast<uint32_t>(out.size()));
}

[[gnu::format(printf, 3, 4)]] char *format_list(const char *before, const char *prefix, const char *body, ...)
{
    va_list values;
    va_start(values, body);
    char *message = kel_trace_internal_vformat_str(before, prefix, body, values);
    va_end(values);
    return message;
}

constexpr const char *words[] = {"plain",  "it's", "two words # no comment", "--json", "a\nline\tand a \\",
                                 "\"\xff", ""};

using call = uint32_t (*)();

constexpr call calls[] = {
    kel_core_ic_ebcom_start,
    kel_core_ic_ebcom_stop,
    [] { return kel_ic_ebcom_cycles_to_ork_timestamp_offset(-40, one_of(ids), output<int64_t>()); },
    [] {
        const kel_ebcom_global_params params = {number(2) ? 1500 : number(0xFFFFFF), number(2) ? 0x88B5 : one_of(ids)};
        const uint8_t settings[] = {static_cast<uint8_t>(number(16)), static_cast<uint8_t>(number(32))};
        return kel_core_ic_ebcom_global_param_set(&params, settings);
    },
    [] { return kel_core_ic_ebcom_capabilities_get(output<kel_ebcom_capabilities>()); },
    [] { return kel_core_ic_ebcom_interface_create(output<kel_vsi_t>(), output<uint16_t>() + 1); },
    kel_core_ic_ebcom_interface_delete,
    [] { return kel_ic_ebcom_queue_handle_get(mac(), &queue); },
    [] { return kel_ic_ebcom_scheduler_handle_get(mac(), &scheduler); },
    kel_ic_ebcom_init_qos,
    kel_ic_ebcom_deinit_qos,
    [] {
        const kel_ebcom_path_config config = path();
        ork_ebcom_pcep_path taken = {};
        const uint32_t rc = kel_ic_ebcom_add_shaper(&config, &taken);
        queue = taken.queue_hdl ? taken.queue_hdl : queue;
        return rc;
    },
    [] {
        const kel_ebcom_path_config config = path();
        return kel_ic_ebcom_remove_shaper(&config, nullptr);
    },
    [] {
        const kel_ebcom_path_config config = path();
        return kel_core_ic_ebcom_path_add(&config);
    },
    [] {
        const kel_ebcom_path_config config = path();
        return kel_core_ic_ebcom_path_rem(&config);
    },
    [] { return kel_ic_ebcom_port_to_mac_chan(one_of(ports), output<uint8_t>()); },
    kel_core_ic_ebcom_qos_handle_dump,
    [] { return kel_ic_ebcom_get_global_stats(output<ebcom_global_stats>()); },
    [] { return kel_core_ic_ebcom_global_fmt_stats_get(out.data(), length(), static_cast<uint8_t>(number(4))); },
    [] { return kel_core_ic_ebcom_fmt_global_stats(out.data(), length(), number(4) + 256); },
    [] { return kel_core_ic_ebcom_queue_stats_get(mac(), output<ebcom_queue_stats>()); },
    [] { return kel_core_ic_ebcom_queue_fmt_stats_get(mac(), out.data(), length(), static_cast<uint8_t>(number(4))); },
    [] {
        return kel_core_ic_ebcom_queue_fmt_stats_get_2(mac(), out.data(), length(), static_cast<uint8_t>(number(4)));
    },
    [] { return kel_core_ic_ebcom_fmt_queue_stats(mac(), out.data(), length(), number(4)); },
    [] { return kel_ic_ebcom_set_burst_stats(queue, scheduler, nullptr); },
    [] { return kel_ic_pcep_get_location_and_type_from_branch(mac(), output<uint32_t>(), output<uint32_t>() + 1); },
    kel_core_ic_pcep_start,
    kel_core_ic_pcep_stop,
    [] { return kel_core_ic_pcep_handle_dump(number(2) ? stdout : nullptr); },
    [] {
        return kel_core_ic_pcep_create_queue_and_scheduler_for_multicast(nullptr, output<uint64_t>(),
                                                                         output<uint64_t>() + 1);
    },
    [] {
        const kel_pcep_config config = pcep();
        return kel_core_ic_pcep_add(one_of(ids), &config);
    },
    [] { return kel_core_ic_pcep_rem(one_of(ids)); },
    [] { return kel_core_ic_pcep_mc_group_add(one_of(ids)); },
    [] { return kel_core_ic_pcep_mc_group_rem(one_of(ids)); },
    [] { return kel_core_ic_pcep_mc_member_add(one_of(ids), one_of(ids)); },
    [] { return kel_core_ic_pcep_mc_member_rem(one_of(ids), one_of(ids)); },
    [] { return kel_ic_pcep_get_stats(one_of(ids), output<ebcom_pcep_stats>()); },
    [] { return kel_core_ic_pcep_stats_get(one_of(ids), output<pcep_stats>()); },
    [] { return kel_core_ic_pcep_get_stats(one_of(ids), output<pcep_stats>()); },
    [] { return kel_core_ic_pcep_fmt_stats_get(one_of(ids), out.data(), length(), static_cast<uint8_t>(number(4))); },
    [] { return kel_core_ic_pcep_fmt_stats(one_of(ids), out.data(), length(), number(4)); },
    [] {
        const char *prefix = number(3) ? one_of(words) : nullptr;
        const char *before = number(2) ? "%s(): " : "<%s> ";
        snprintf(out.data(), out.size(), "%s",
                 number(4) ? kel_trace_internal_format_str(before, prefix, "%s=%.1f, %s, %d, %d, %d", one_of(words),
                                                           number(9) / 2.0, one_of(words), 4, 5, 6)
                           : kel_trace_internal_format_str("%s(): ", "alone", nullptr));
        return 0U;
    },
    [] {
        snprintf(out.data(), out.size(), "%s", format_list("%s(): ", one_of(words), "%s", one_of(words)));
        return 0U;
    },
    [] {
        kel_tracepoint();
        return 0U;
    },
    [] {
        kel_abort_internal_abort(number(100), one_of(words), "%s: %*d", one_of(words), static_cast<int>(number(200)),
                                 5);
        return 0U;
    },
};
static_assert(std::size(calls) == 45);

constexpr uint32_t start = 0;
constexpr uint32_t init_qos = 9;

// The more often a call is listed here, the more often it is made.
constexpr uint32_t frequent[] = {start, 5, 11, 11, 12, 13, 13, 13, 14, 14, 26, 30, 30, 30, 31, 32, 32, 33, 34, 34, 35};

// What the calling thread alone calls, and what both threads call.
constexpr const char *closed[] = {
    "kel_init_attach:{}={},own-thread",
    "kel_init_attach:{}*2={},own-thread",
    "kel_init_qos_queue_add:{}={}",
    "kel_init_qos_queue_rem:{}={}",
    "kel_init_eventdev_dev_id_ebcom_get:{}={}",
    "ork_qos_scheduler_create:{}=-{}",
    "ork_qos_scheduler_delete:{}*3=-{}",
    "ork_qos_queue_get:{}=-{}",
    "ork_ebcom_pcep_path_create:{}=-{}",
    "ork_ebcom_pcep_path_delete:{}=-{}",
    "ork_ebcom_pcep_create:{}=-{}",
    "ork_ebcom_pcep_delete:{}=-{}",
    "ork_bind:{}=-{}",
    "ork_ebcom_multicast_group_create:{}=-{}",
    "ork_ebcom_multicast_member_add:{}=-{}",
    "ork_syshandle_get:{}=-{},own-thread",
    "kel_fmt_end:{}={}",
    "kel_fmt_uint32:{}={}",
    "qol_ng_restart_request_line_and_file:{}=-{}",
};

void let_a_call_fail()
{
    const std::string rule = fmt::format(fmt::runtime(one_of(closed)), 1 + number(number(2) ? 2 : 14), 1 + number(9));
    if (char *wrong = softnode_faults_add(rule.c_str())) {
        fmt::print("{}: {}\n", rule, wrong);
        std::exit(2);
    }
}

void show_output()
{
    for (const char octet : out)
        fmt::print("{:02x}", static_cast<unsigned char>(octet));
    fmt::print("\n");
}

} // namespace

int main(int argc, char **argv)
{
    if (argc != 3)
        return 2;
    kelctl::trace_log log;
    log.pass_to([](const kelctl::trace_entry &entry) { fmt::print(stderr, "{}\n", kelctl::to_text(entry)); });
    generator.seed(static_cast<uint32_t>(std::atoi(argv[1])));
    bool started = false;
    for (int i = 0; i < std::atoi(argv[2]); ++i) {
        if (number(3) == 0)
            let_a_call_fail();
        uint32_t chosen = number(2) ? one_of(frequent) : number(std::size(calls));
        if (i == 0)
            chosen = start;
        else if (chosen == start) // of several threads nothing tells when all are at rest
            chosen = init_qos;
        out.fill(0);
        const uint32_t rc = calls[chosen]();
        started = started || (chosen == start && rc == 0);
        fmt::print("call {}: {}\n", chosen, rc);
        show_output();
    }
    if (started)
        softnode_timing_settle(10'000);
    char *node = softnode_snapshot_json();
    fmt::print("{}\n", node);
    std::free(node);
    return 0;
}

// The EBCOM service: start and stop, the timestamp thread, parameters, the interface, and paths.
#include "model.h"
#include "scripted_platform.h"

#include <cerrno>
#include <cstring>

namespace proof
{
namespace
{

constexpr const char *ebcom = "EBCOM";

const char *branch_name(int32_t port)
{
    static const char *const names[] = {
        "NONE",      "HERON",     "KESP1",    "KESP2",    "KESQ1",    "KESQ2", "RLU1P", "RLU1Q",     "RLU2P",
        "RLU2Q",     "RLU3P",     "RLU3Q",    "RLU4P",    "RLU4Q",    "DEBUG", "MZP",   "MZQ",       "MZR",
        "MZS",       "RLU1R",     "RLU1S",    "RLU1T",    "RLU1U",    "RLU1V", "RLU1W", "RLU2R",     "RLU2S",
        "RLU2T",     "RLU2U",     "RLU2V",    "RLU2W",    "RLU3R",    "RLU3S", "RLU3T", "RLU3U",     "RLU3V",
        "RLU3W",     "RLU4R",     "RLU4S",    "RLU4T",    "RLU4U",    "RLU4V", "RLU4W", "MZ-KES_P1", "MZ-KES_P2",
        "MZ-KES_P3", "MZ-KES_P4", "MZ-KES_Q", "MZ-KES_R", "MZ-KES_S", "MZ_T",
    };
    static_assert(std::size(names) == 51);
    return port >= 0 && port <= 50 ? names[port] : "UNKNOWN";
}

} // namespace

// ---- Start and stop ----

uint32_t model::ebcom_start(const step &step)
{
    return operation_of("kel_core_ic_ebcom_start", ebcom, [&] {
        if (!table_)
            table_ = tell_.unseen_call("g_hash_table_new_full") == 0;
        if (!table_) {
            tell_.record("ERROR", "Failed to allocate memory for dest_mac_addr_count");
            tell_.call("qol_ng_restart_request_line_and_file", "Failed to allocate memory for dest_mac_addr_count");
        }
        tell_.attach();
        start_thread(step);
        tell_.require(build_tree(), "kel_ic_ebcom_init_qos");
    });
}

uint32_t model::ebcom_stop(const step &)
{
    return operation_of("kel_core_ic_ebcom_stop", ebcom, [&] {
        if (!table_)
            tell_.call("g_hash_table_destroy", "null");
        tell_.require(release_tree(), "kel_ic_ebcom_deinit_qos");
    });
}

// Only a negative result is a failure. The naming call is made on any thread ever started.
void model::start_thread(const step &)
{
    tell_.announce("pthread_create(kel-time-stamp)");
    const int64_t created = tell_.call("pthread_create", "default, 0");
    if (created < 0) {
        tell_.report_system("pthread_create(kel-time-stamp)", created, EAGAIN);
        throw failure{13};
    }
    if (created == 0) {
        thread_known_ = true;
        threads_.push_back({account(traced_), false, "", false});
        threads_.back().tell.begin(thread_faults_);
        run_thread(threads_.back(), true, {});
    }
    tell_.announce("pthread_setname_np(kel-time-stamp)");
    if (!thread_known_)
        return;
    if (const int64_t named = tell_.call("pthread_setname_np", "kel-time-stamp"); named < 0)
        tell_.report_system("pthread_setname_np(kel-time-stamp)", named, ERANGE);
}

// ---- The timestamp thread ----

// From its beginning, or from an event, up to the next wait or its end. An event that is a failure has type 0.
void model::run_thread(timestamp_thread &thread, bool first, const vorn_tu_event &event)
{
    account &tell = thread.tell;
    const account::speaker speaker(tell, "timestamp_thread", ebcom);
    thread.ended =
        0 != ended([&] {
            if (first) {
                tell.attach();
                tell.timing_unit("vorn_tu_init()", "vorn_tu_init", "(nil)");
                tell.timing_unit("vorn_tu_subscribe_adjnpuoffs(doamin=0)", "vorn_tu_subscribe_adjnpuoffs", "unit, 0");
                tell.require(ended([&] { update_offset(tell); }), "udpate_timestamp_offset");
            } else if (event.type != 6) {
                tell.record("INFO", format("Ignore unexpected event(%d)", static_cast<int32_t>(event.type)));
            } else if (event.domain != 0) {
                tell.record("INFO", format("Ignore unexpected domain(%d)", event.domain));
            } else {
                tell.require(ended([&] { update_offset(tell); }), "udpate_timestamp_offset");
                tell.announce("vorn_tu_free_event");
                tell.call("vorn_tu_free_event", "unit, type 6, domain 0");
            }
        });
    if (!thread.ended) {
        tell.announce("vorn_tu_wait_event()");
        return;
    }
    tell.text_call("syscall", "gettid");
    tell.record("ERROR", "tid=own terminated (pthread_exit)");
}

void model::update_offset(account &tell)
{
    const account::speaker speaker(tell, "update_timestamp_offset", ebcom);
    tell.timing_unit("vorn_tu_get_nputimeoffset()", "vorn_tu_get_nputimeoffset", "unit, 0");
    int64_t offset = 0;
    tell.require(convert(tell, reading_, offset), "kel_ic_ebcom_cycles_to_ork_timestamp_offset");
    tell.driver_kit(format("ork_ebcom_timestamp_offset_set(timestamp_offset=%ld)", offset),
                    "ork_ebcom_timestamp_offset_set", format("ork, %ld", offset));
}

// 1,000,000 / frequency without its fraction, times the cycles, modulo 2^64.
uint32_t model::convert(account &tell, const vorn_tu_nputimeoffset &reading, int64_t &offset)
{
    const account::speaker speaker(tell, "kel_ic_ebcom_cycles_to_ork_timestamp_offset", ebcom);
    tell.record("FN_ENTER");
    const uint64_t quotient = reading.frequency == 0 ? 0 : 1'000'000 / reading.frequency;
    offset = static_cast<int64_t>(static_cast<uint64_t>(reading.cycles) * quotient);
    tell.record("LAB",
                format("cycles=%ld frequency=%u ork_timestamp_offset=%ld", reading.cycles, reading.frequency, offset));
    tell.record("FN_EXIT");
    return reading.frequency == 0 ? 2 : 0;
}

uint32_t model::timing(const step &step)
{
    for (timestamp_thread &thread : threads_) {
        if (thread.ended)
            continue;
        if (step.what == operation::timing_event) {
            thread.tell.line("vorn_tu_wait_event(unit)");
            run_thread(thread, false, step.event);
        } else {
            fail_wait(thread, step.what == operation::end_threads ? -1 : static_cast<int32_t>(step.event.type));
        }
    }
    return 0;
}

// A wait that succeeds without an event ends the thread without a report.
void model::fail_wait(timestamp_thread &thread, int32_t code)
{
    const account::speaker speaker(thread.tell, "timestamp_thread", ebcom);
    thread.tell.line(format("vorn_tu_wait_event(unit) = %d", code));
    if (code != 0)
        thread.tell.report_timing_unit(code, "vorn_tu_wait_event");
    thread.tell.text_call("syscall", "gettid");
    thread.tell.record("ERROR", "tid=own terminated (pthread_exit)");
    thread.ended = true;
}

uint32_t model::convert_cycles(const step &step)
{
    int64_t offset = 0;
    const uint32_t code = convert(tell_, step.reading, offset);
    output(offset);
    return code;
}

// ---- Parameters and the interface ----

uint32_t model::global_param_set(const step &step)
{
    return operation_of("kel_core_ic_ebcom_global_param_set", ebcom, [&] {
        tell_.attach();
        const auto mtu = static_cast<uint16_t>(step.id);
        const auto ether_type = static_cast<uint16_t>(step.other_id);
        const auto low = static_cast<uint8_t>(step.format & 0x0F);
        const auto high = static_cast<uint8_t>(step.format >> 8 & 0x0F);
        octets record;
        append(record, &mtu, 2);
        append(record, &ether_type, 2);
        record.push_back(static_cast<uint8_t>(low | high << 4));
        record.push_back(0);
        tell_.hand_over("ork_ebcom_global_config_set", record);
        tell_.driver_kit(format("ork_ebcom_global_config_set(icPortMTU=%d, etherType=0x%04x)", mtu, ether_type),
                         "ork_ebcom_global_config_set", "ork");
    });
}

uint32_t model::capabilities_get(const step &)
{
    output(uint32_t{1048575}, uint32_t{511}, uint32_t{30}, uint32_t{16});
    return 0;
}

uint32_t model::interface_create(const step &)
{
    uint16_t vsi = soil << 8 | soil;
    uint16_t out = soil << 8 | soil;
    const uint32_t code = operation_of("kel_core_ic_ebcom_interface_create", ebcom, [&] {
        tell_.attach();
        tell_.event_device();
        tell_.driver_kit("ork_ebcom_interface_create(eth_dev_id=7)", "ork_ebcom_interface_create", "ork, 7");
        tell_.companion("kel_init_eventdev_vsi_ebcom_get", "");
        vsi = scripted::vsi;
        out = 0;
    });
    output(vsi, out);
    return code;
}

uint32_t model::interface_delete(const step &)
{
    return operation_of("kel_core_ic_ebcom_interface_delete", ebcom, [&] {
        tell_.attach();
        tell_.event_device();
        tell_.driver_kit("ork_ebcom_interface_delete(eth_dev_id=7)", "ork_ebcom_interface_delete", "ork, 7");
    });
}

// ---- Paths ----

void model::announce_path(const kel_ebcom_path_config &path)
{
    tell_.call("macAddr2str", text_of_mac(path.dst_mac));
    tell_.record("FN_PARAM",
                 format("dst_mac = %s, shaping_enabled = %u, iell_port = %i (%s), shaping_rate = %u, "
                        "buffer_threshold = %u, burst_size = %u",
                        text_of_mac(path.dst_mac).c_str(), path.shaping_enabled, path.iell_port,
                        branch_name(path.iell_port), path.shaping_rate, path.buffer_threshold, path.burst_size));
}

// The driver kit's 24 octets: MAC, type at 8, channel at 12, queue at 16.
uint32_t model::path_attributes(const kel_ebcom_path_config &path, octets &record, uint32_t &location)
{
    return quiet("set_ork_path_attr", ebcom, [&] {
        uint32_t type = 0;
        memcpy(record.data(), path.dst_mac, 6);
        tell_.require(classified(path.dst_mac, location, type), "kel_ic_pcep_get_location_and_type_from_branch");
        if (location == 0 || location >= 5) {
            tell_.record_in("GENERAL", "ERROR",
                            format("dst_mac=%s: Unsupported location=%d", text_of_mac(path.dst_mac).c_str(),
                                   static_cast<int32_t>(location)));
            tell_.refuse(3, "Unknown location");
        }
        static const uint8_t types[] = {0, 1, 2, 2, 0};
        record[8] = types[location];
        if (location == 4)
            tell_.require(mac_channel(path.iell_port), "kel_ic_ebcom_port_to_mac_chan");
    });
}

uint32_t model::mac_channel(int32_t port)
{
    return operation_of("kel_ic_ebcom_port_to_mac_chan", ebcom, [&] {
        if (port != 0)
            return;
        tell_.record("ERROR", "Unknown iell_port=0");
        tell_.refuse(3, "iell_port");
    });
}

uint32_t model::port_to_mac_chan(const step &step)
{
    output(soil);
    return mac_channel(step.path.iell_port);
}

std::string model::path_call(const char *function, const kel_ebcom_path_config &path, const octets &record,
                             uint32_t location) const
{
    uint64_t queue = 0;
    memcpy(&queue, record.data() + 16, sizeof queue);
    return format("%s(pcepType=%d, macAddr=%s(%s), eioaPort=%d%s, shaping_enabled=%d, queue_hdl=%s)", function,
                  record[8], text_of_mac(path.dst_mac).c_str(), location_name(location), record[12],
                  location == 4 ? "" : " - NOT USED", path.shaping_enabled, pointer(queue).c_str());
}

namespace
{

std::string shown_to_driver_kit(const octets &record)
{
    uint64_t queue = 0;
    memcpy(&queue, record.data() + 16, sizeof queue);
    return format("ork, %s, type %d, eioa %u, queue %s", text_of_mac(record.data()).c_str(), record[8], record[12],
                  pointer(queue).c_str());
}

} // namespace

uint32_t model::path_add(const step &step)
{
    return operation_of("kel_core_ic_ebcom_path_add", ebcom, [&] {
        octets record(24);
        uint32_t location = 0;
        uint64_t queue = 0;
        announce_path(step.path);
        tell_.attach();
        tell_.require(path_attributes(step.path, record, location), "set_ork_path_attr");
        tell_.require(shaper_added(step.path, queue), "kel_ic_ebcom_add_shaper");
        memcpy(record.data() + 16, &queue, sizeof queue);
        tell_.hand_over("ork_ebcom_pcep_path_create", record);
        tell_.driver_kit(path_call("ork_ebcom_pcep_path_create", step.path, record, location),
                         "ork_ebcom_pcep_path_create", shown_to_driver_kit(record));
        if (table_)
            ++counts_[text_of_mac(step.path.dst_mac)];
    });
}

uint32_t model::path_rem(const step &step)
{
    return operation_of("kel_core_ic_ebcom_path_rem", ebcom, [&] {
        octets record(24);
        uint32_t location = 0;
        announce_path(step.path);
        const auto counted = counts_.find(text_of_mac(step.path.dst_mac));
        if (counted == counts_.end())
            tell_.refuse(4, "mac address of port not found to be configured");
        tell_.attach();
        tell_.require(path_attributes(step.path, record, location), "set_ork_path_attr");
        tell_.require(shaper_removed(step.path), "kel_ic_ebcom_remove_shaper");
        if (counted->second >= 2) {
            --counted->second;
            return;
        }
        tell_.hand_over("ork_ebcom_pcep_path_delete", record);
        tell_.driver_kit(path_call("ork_ebcom_pcep_path_delete", step.path, record, location),
                         "ork_ebcom_pcep_path_delete", shown_to_driver_kit(record));
        counts_.erase(counted);
    });
}

} // namespace proof

#include "step.h"

#include <cstdarg>
#include <cstdio>
#include <iterator>

namespace proof
{
namespace
{

// What of a step is worth showing.
enum arguments : uint8_t {
    nothing,
    a_path,
    a_mac,
    a_port,
    one_id,
    two_ids,
    a_pcep,
    an_id_and_text,
    text,
    surroundings
};

struct row {
    const char *name;
    arguments shown;
};

constexpr row rows[] = {
    {"ebcom_start", nothing},
    {"ebcom_stop", nothing},
    {"convert_cycles", surroundings},
    {"global_param_set", two_ids},
    {"capabilities_get", nothing},
    {"interface_create", nothing},
    {"interface_delete", nothing},
    {"queue_handle_get", a_mac},
    {"scheduler_handle_get", a_mac},
    {"init_qos", nothing},
    {"deinit_qos", nothing},
    {"add_shaper", a_path},
    {"remove_shaper", a_path},
    {"path_add", a_path},
    {"path_rem", a_path},
    {"port_to_mac_chan", a_port},
    {"qos_handle_dump", nothing},
    {"global_stats", nothing},
    {"global_text", text},
    {"global_text_second_name", text},
    {"queue_stats", a_mac},
    {"queue_text", a_mac},
    {"queue_text_2", a_mac},
    {"queue_text_second_name", a_mac},
    {"set_burst_stats", nothing},
    {"classify", a_mac},
    {"pcep_start", nothing},
    {"pcep_stop", nothing},
    {"pcep_dump", nothing},
    {"multicast_hook", nothing},
    {"pcep_add", a_pcep},
    {"pcep_rem", one_id},
    {"group_add", one_id},
    {"group_rem", one_id},
    {"member_add", two_ids},
    {"member_rem", two_ids},
    {"pcep_driver_kit_stats", one_id},
    {"pcep_stats", one_id},
    {"pcep_stats_second_name", one_id},
    {"pcep_text", an_id_and_text},
    {"pcep_text_second_name", an_id_and_text},
    {"tracepoint", nothing},
    {"abort", nothing},
    {"timing_event", surroundings},
    {"timing_failure", surroundings},
    {"end_threads", nothing},
    {"set_reading", surroundings},
    {"set_queue_record", surroundings},
    {"set_mpid", surroundings},
    {"classify_all_as", surroundings},
};
static_assert(std::size(rows) == operation_count);

std::string path_text(const kel_ebcom_path_config &path)
{
    return format(" %s port %d shaping %u rate %u threshold %u burst %u", text_of_mac(path.dst_mac).c_str(),
                  path.iell_port, path.shaping_enabled, path.shaping_rate, path.buffer_threshold, path.burst_size);
}

std::string pcep_text(const step &step)
{
    return format(" %u local %s remote %s vlan %#x priority %u", step.id, text_of_mac(step.pcep.local_mac).c_str(),
                  text_of_mac(step.pcep.remote_mac).c_str(), step.pcep.vlan_id, step.pcep.priority);
}

std::string surroundings_text(const step &step)
{
    switch (step.what) {
    case operation::convert_cycles:
    case operation::set_reading:
        return format(" %ld at %u", step.reading.cycles, step.reading.frequency);
    case operation::timing_event:
        return format(" type %u domain %d", step.event.type, step.event.domain);
    case operation::timing_failure:
        return format(" %d", static_cast<int32_t>(step.event.type));
    case operation::set_queue_record:
        return format(" rate %lu burst %u mode %u", step.queue.rate, step.queue.bucketSize, step.queue.shapingMode);
    case operation::set_mpid:
        return " " + step.mpid.value_or("unset");
    default:
        return step.location ? format(" %u", *step.location) : " itself";
    }
}

std::string arguments_text(const step &step)
{
    switch (rows[static_cast<size_t>(step.what)].shown) {
    case a_path:
        return path_text(step.path);
    case a_mac:
        return format(" %s format %#x", text_of_mac(step.path.dst_mac).c_str(), step.format);
    case a_port:
        return format(" %d", step.path.iell_port);
    case one_id:
        return format(" %u", step.id);
    case two_ids:
        return format(" %u %u", step.id, step.other_id);
    case a_pcep:
        return pcep_text(step);
    case an_id_and_text:
        return format(" %u format %#x length %u", step.id, step.format, step.length);
    case text:
        return format(" format %#x length %u", step.format, step.length);
    case surroundings:
        return surroundings_text(step);
    case nothing:
        break;
    }
    return "";
}

std::string faults_text(const char *whose, const std::vector<fault> &faults)
{
    std::string result;
    for (const fault &each : faults)
        result += format("  [%s%s call %u: %ld%s]", whose, each.function.c_str(), each.call, each.result,
                         each.times > 1 ? format(", %u times", each.times).c_str() : "");
    return result;
}

} // namespace

std::string text_of(const step &step)
{
    return rows[static_cast<size_t>(step.what)].name + arguments_text(step) + faults_text("", step.faults) +
           faults_text("thread: ", step.thread_faults);
}

std::string text_of(const script &steps)
{
    std::string result;
    for (const step &each : steps)
        result += "    " + text_of(each) + "\n";
    return result;
}

std::string text_of_mac(const uint8_t *mac)
{
    return format("%02x:%02x:%02x:%02x:%02x:%02x", mac[0], mac[1], mac[2], mac[3], mac[4], mac[5]);
}

std::string format(const char *format, ...)
{
    char buffer[768];
    va_list values;
    va_start(values, format);
    vsnprintf(buffer, sizeof buffer, format, values);
    va_end(values);
    return buffer;
}

} // namespace proof

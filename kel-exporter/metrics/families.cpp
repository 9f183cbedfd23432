// The table, and a reader for each kind of object. Where values come from is nodes/; how they are written,
// metrics_text.cpp. Names are a promise to those who have alerts on them.
#include "kel-exporter/metrics/families.h"

#include <fmt/core.h>

namespace kel_exporter
{
namespace
{

using notation::document;
using time_point = watch_clock::time_point;

constexpr uint64_t memory_block = 256;   // octets
constexpr uint64_t kbit_in_octets = 125; // of rates

std::string seconds_text(std::chrono::duration<double> time)
{
    return fmt::format("{}", time.count());
}

// The counter of this name, in the object itself, in its counters or in a block of them; null: there is none. Each
// platform has blocks of its own, so names are looked for at any depth.
const document *found(const document &object, std::string_view name)
{
    if (const document *here = object.find(name))
        return here->holds() == notation::kind::natural ? here : nullptr;
    for (const auto &[title, block] : object.members())
        if (const document *within = found(block, name))
            return within;
    return nullptr;
}

// Without the counter there is no sample: 0 would be a value.
void add_counter(const family &of, const document &object, const std::vector<label> &labels, const sample_sink &add)
{
    if (const document *value = found(object, of.source))
        add(labels, std::to_string(value->number<uint64_t>() * of.scale));
}

// ---- The node ----

// Written for every node that is known, also for one that does not answer: alerts are made of this.
void node_up(const family &, const known_node &node, time_point, const sample_sink &add)
{
    add({{"node", node.name}}, node.up ? "1" : "0");
}

void values_age(const family &, const known_node &node, time_point now, const sample_sink &add)
{
    if (node.state)
        add({{"node", node.name}}, seconds_text(now - node.read));
}

void node_info(const family &, const known_node &node, time_point, const sample_sink &add)
{
    if (node.up)
        add({{"node", node.name}, {"file", node.file}}, "1");
}

// Both times are of the node's clock; what has passed since is of ours.
void timestamp_age(const family &, const known_node &node, time_point now, const sample_sink &add)
{
    if (!node.up || node.state->at("timestamp").is_null())
        return;
    const auto then = [&node](const char *name) {
        return std::chrono::duration<double, std::nano>(node.state->at(name).number<uint64_t>());
    };
    add({{"node", node.name}}, seconds_text(then("real") - then("timestamp") + (now - node.read)));
}

void operations(const family &, const known_node &node, time_point, const sample_sink &add)
{
    if (!node.up)
        return;
    for (const document &one : node.state->at("operations"))
        add({{"node", node.name},
             {"operation", one.at("operation").text()},
             {"result", std::to_string(one.at("code").number<uint32_t>())}},
            std::to_string(one.at("count").number<uint64_t>()));
}

// ---- Its service, queues and PCEPs ----

void service(const family &of, const known_node &node, time_point, const sample_sink &add)
{
    if (!node.up)
        return;
    add_counter(of, node.state->at("ebcom"), {{"node", node.name}}, add);
}

void queues(const family &of, const known_node &node, time_point, const sample_sink &add)
{
    if (!node.up)
        return;
    for (const document &one : node.state->at("queues"))
        add_counter(of, one,
                    {{"node", node.name}, {"port", one.at("name").text()}, {"unit", one.at("scheduler").text()}}, add);
}

void pceps(const family &of, const known_node &node, time_point, const sample_sink &add)
{
    if (!node.up)
        return;
    for (const document &one : node.state->at("pceps"))
        add_counter(of, one,
                    {{"node", node.name},
                     {"pcep", std::to_string(one.at("id").number<uint32_t>())},
                     {"location", one.at("location").text()}},
                    add);
}

constexpr auto counter = metric_type::counter;
constexpr auto gauge = metric_type::gauge;

constexpr family rows[] = {
    {"kel_node_up", gauge, "", "Whether the node answers: 1 or 0.", node_up},
    {"kel_node", metric_type::info, "", "The file that the node was brought up from.", node_info},
    {"kel_exporter_values_age_seconds", gauge, "seconds", "Age of the values that are shown of the node.", values_age},
    {"kel_operations", counter, "", "Calls of the library by the code that they returned; 0 is success.", operations},
    {"kel_timestamp_update_age_seconds", gauge, "seconds", "Time since the last successful timestamp update.",
     timestamp_age},

    {"kel_ebcom_received_frames", counter, "frames", "Frames that entered the service, with every copy.", service,
     "frames_received"},
    {"kel_ebcom_received_bytes", counter, "bytes", "Octets that entered the service.", service, "octets_received"},
    {"kel_ebcom_sent_frames", counter, "frames", "Frames that left the service.", service, "frames_sent"},
    {"kel_ebcom_sent_bytes", counter, "bytes", "Octets that left the service.", service, "octets_sent"},
    {"kel_ebcom_dropped_frames", counter, "frames", "Frames that the service dropped.", service, "frames_dropped"},
    {"kel_ebcom_dropped_bytes", counter, "bytes", "Octets that the service dropped.", service, "octets_dropped"},
    {"kel_ebcom_paths", gauge, "", "Destinations that have a path.", service, "paths"},
    {"kel_ebcom_pceps", gauge, "", "PCEPs that exist.", service, "pceps"},
    {"kel_ebcom_groups", gauge, "", "Multicast groups that exist.", service, "groups"},

    {"kel_queue_received_frames", counter, "frames", "Frames that entered the queue.", queues, "pkts_rx"},
    {"kel_queue_received_bytes", counter, "bytes", "Octets that entered the queue.", queues, "octets_rx"},
    {"kel_queue_sent_frames", counter, "frames", "Frames that left the queue.", queues, "pkts_tx"},
    {"kel_queue_sent_bytes", counter, "bytes", "Octets that left the queue.", queues, "octets_tx"},
    {"kel_queue_dropped_frames", counter, "frames", "Frames that the queue refused.", queues, "pkts_dropped"},
    {"kel_queue_dropped_bytes", counter, "bytes", "Octets that the queue refused.", queues, "octets_dropped"},
    {"kel_queue_waiting_frames", gauge, "frames", "Frames that wait in the queue.", queues, "pkts_out_standing"},
    {"kel_queue_used_bytes", gauge, "bytes", "Memory that waiting frames use.", queues, "mem_blks_in_use",
     memory_block},
    {"kel_queue_threshold_bytes", gauge, "bytes", "Memory that waiting frames of a shaped queue may use.", queues,
     "threshold"},
    {"kel_queue_rate_bytes_per_second", gauge, "bytes_per_second", "Rate that a shaped queue is shaped to.", queues,
     "rate", kbit_in_octets},

    {"kel_pcep_received_frames", counter, "frames", "Frames that arrived at the PCEP.", pceps, "frames_received"},
    {"kel_pcep_received_bytes", counter, "bytes", "Octets that arrived at the PCEP.", pceps, "octets_received"},
    {"kel_pcep_sent_frames", counter, "frames", "Frames that the PCEP sent.", pceps, "frames_sent"},
    {"kel_pcep_sent_bytes", counter, "bytes", "Octets that the PCEP sent.", pceps, "octets_sent"},
    {"kel_pcep_dropped_frames", counter, "frames", "Frames that the PCEP dropped.", pceps, "frames_dropped"},
    {"kel_pcep_dropped_bytes", counter, "bytes", "Octets that the PCEP dropped.", pceps, "octets_dropped"},
};

} // namespace

std::span<const family> families()
{
    return rows;
}

} // namespace kel_exporter

/*
 * snapshot.cpp - writing the JSON document that snapshot.h describes, one function per part.
 */
#include "softnode/views/snapshot.h"

#include "softnode/common/facts.h"
#include "softnode/common/json_text.h"

namespace softnode
{

namespace
{

Json handle_or_null(Handle handle)
{
    return handle == Handle::null ? Json(nullptr) : Json(text_of(handle));
}

/* The handles of those objects that name `owner` in the given member. */
template <class Object> Json handles_below(const Registry<Object> &objects, Handle Object::*member, Handle owner)
{
    Json handles = Json::array();
    for (const auto &[handle, object] : objects)
        if (object.*member == owner)
            handles.push_back(text_of(handle));
    return handles;
}

Json schedulers(const QosGraph &qos)
{
    Json list = Json::array();
    for (const auto &[handle, scheduler] : qos.schedulers())
        list.push_back({{"handle", text_of(handle)},
                        {"parent", handle_or_null(scheduler.parent)},
                        {"children", handles_below(qos.schedulers(), &TreeScheduler::parent, handle)},
                        {"queues", handles_below(qos.queues(), &Queue::scheduler, handle)},
                        {"peak_rate", scheduler.params.qosRates.peak.rate},
                        {"peak_burst", scheduler.params.qosRates.peak.bucketSize},
                        {"sustain_rate", scheduler.params.qosRates.sr_mr_u.sustain.rate},
                        {"sustain_burst", scheduler.params.qosRates.sr_mr_u.sustain.bucketSize},
                        {"length_correction", scheduler.params.lengthCorrection},
                        {"shaping_mode", scheduler.params.shapingMode},
                        {"scheduling_mode", scheduler.params.schedulingMode},
                        {"arbitration_mode", scheduler.params.arbitrationMode},
                        {"service_quantum", scheduler.params.serviceQuantum},
                        {"root_id", scheduler.params.rootId}});
    return list;
}

Json tally(const Tally &tally)
{
    return {{"frames", tally.frames}, {"octets", tally.octets}};
}

Json counters_of(const Counters &counters)
{
    return {{"received", tally(counters[Fate::received])},
            {"sent", tally(counters[Fate::sent])},
            {"dropped", tally(counters[Fate::dropped])}};
}

Json backlog(const Waiting &waiting)
{
    return {{"frames", waiting.frames}, {"octets", waiting.octets}, {"blocks", waiting.blocks}};
}

Json delays_of(const counting::histogram &delays)
{
    return {{"frames", delays.count()},
            {"sum", delays.sum()},
            {"median", delays.quantile(50)},
            {"p99", delays.quantile(99)},
            {"largest", delays.largest()}};
}

Json queues(const QosGraph &qos)
{
    Json list = Json::array();
    for (const auto &[handle, queue] : qos.queues())
        list.push_back({{"handle", text_of(handle)},
                        {"scheduler", text_of(queue.scheduler)},
                        {"rate", queue.rate},
                        {"threshold", queue.threshold},
                        {"bucket_size", queue.bucket_size},
                        {"shaped", queue.shaped()},
                        {"counters", counters_of(queue.counters)},
                        {"waiting", backlog(queue.waiting())},
                        {"deepest", backlog(queue.deepest)},
                        {"delay", delays_of(queue.delays)}});
    return list;
}

Json paths(const Node &node)
{
    Json list = Json::array();
    for (const auto &[mac, path] : node.ebcom.paths())
        list.push_back({{"mac", text_of(mac).data()},
                        {"type", path.pcep_type},
                        {"eioa_port", path.eioa_port},
                        {"queue", handle_or_null(node.queue_of(path))}});
    return list;
}

Json pceps(const PcepTable &table)
{
    Json list = Json::array();
    for (const auto &[handle, pcep] : table.pceps())
        list.push_back({{"handle", text_of(handle)},
                        {"id", pcep.id()},
                        {"remote_id", pcep.remote_id()},
                        {"local_mac", text_of(pcep.local_mac()).data()},
                        {"remote_mac", text_of(pcep.remote_mac()).data()},
                        {"vlan", pcep.vlan_id()},
                        {"priority", pcep.priority()},
                        {"target", handle_or_null(pcep.target)},
                        {"counters", counters_of(pcep.counters)}});
    return list;
}

Json bindings(const PcepTable &table)
{
    Json list = Json::array();
    for (const auto &[handle, pcep] : table.pceps())
        if (pcep.target != Handle::null)
            list.push_back({{"pcep", pcep.id()}, {"target", text_of(pcep.target)}});
    return list;
}

Json groups(const PcepTable &table)
{
    Json list = Json::array();
    for (const auto &[handle, group] : table.groups())
        list.push_back({{"handle", text_of(handle)},
                        {"id", group.id},
                        {"scheduler", handle_or_null(group.scheduler)},
                        {"members", group.members},
                        {"counters",
                         {{"offered", tally(group.counters.offered)},
                          {"copies", tally(group.counters.copies)},
                          {"dropped", tally(group.counters.dropped)}}}});
    return list;
}

Json interface_of(const EbcomService &ebcom)
{
    if (!ebcom.interface_device())
        return nullptr;
    return {{"eth_dev_id", *ebcom.interface_device()}, {"vsi", facts::event_device_vsi}};
}

Json globals(const EbcomService &ebcom)
{
    if (!ebcom.globals())
        return nullptr;
    const ork_ebcom_global_config &config = *ebcom.globals();
    return {{"mtu", config.icPortMTU},
            {"ether_type", config.etherType},
            {"settings", Json::array({config.nibbles & 0x0f, config.nibbles >> 4})}};
}

Json drops(const EbcomService &ebcom)
{
    return {{"too_long", tally(ebcom.dropped(Drop::too_long))},
            {"no_room", tally(ebcom.dropped(Drop::no_room))},
            {"no_way", tally(ebcom.dropped(Drop::no_way))},
            {"no_queue", tally(ebcom.dropped(Drop::no_queue))}};
}

Json on_the_line(const std::optional<Departure> &departure)
{
    if (!departure)
        return nullptr;
    return {
        {"mac", text_of(departure->frame.destination).data()},
        {"octets", departure->frame.length},
        {"arrives", departure->arrives > end_of_time ? Json(nullptr) : Json(static_cast<Instant>(departure->arrives))}};
}

Json timestamp_offset(const EbcomService &ebcom)
{
    return ebcom.timestamp_offset() ? Json(*ebcom.timestamp_offset()) : Json(nullptr);
}

Json timing_unit(const TimingUnit &timing)
{
    Json connections = Json::array();
    for (const auto &[handle, connection] : timing.connections())
        connections.push_back({{"handle", text_of(handle)},
                               {"subscribed", connection.subscribed},
                               {"state", name_of(timing.state(handle))},
                               {"events_left", connection.events.size()},
                               {"events_outstanding", connection.outstanding.size()}});
    Json blocked = Json::array();
    for (const auto &[user, function] : timing.held())
        blocked.push_back(closed_functions[function]);
    const vorn_tu_nputimeoffset &reading = timing.reading();
    return {{"reading", {{"cycles", reading.cycles}, {"frequency", reading.frequency}}},
            {"connections", std::move(connections)},
            {"blocked", std::move(blocked)}};
}

Json restarts(const std::vector<RestartRequest> &requests)
{
    Json list = Json::array();
    for (const RestartRequest &request : requests)
        list.push_back({{"line", request.line}, {"file", request.file}, {"reason", request.reason}});
    return list;
}

Json calls(const FaultBook &book)
{
    Json counts = Json::object();
    for (std::size_t function = 0; function < closed_functions.size(); ++function)
        if (book.calls()[function] != 0)
            counts[closed_functions[function]] = book.calls()[function];
    return counts;
}

Json faults(const FaultBook &book)
{
    Json list = Json::array();
    for (const FaultBook::Entry &entry : book.entries())
        list.push_back({{"rule", entry.rule.text}, {"hits", entry.hits}});
    return list;
}

} // namespace

std::string snapshot(const Node &node, const FaultBook &book)
{
    const Json document{{"time", node.clock.now()},
                        {"schedulers", schedulers(node.qos)},
                        {"queues", queues(node.qos)},
                        {"paths", paths(node)},
                        {"pceps", pceps(node.pceps)},
                        {"bindings", bindings(node.pceps)},
                        {"groups", groups(node.pceps)},
                        {"interface", interface_of(node.ebcom)},
                        {"globals", globals(node.ebcom)},
                        {"statistics", counters_of(node.ebcom.counters())},
                        {"drops", drops(node.ebcom)},
                        {"on_the_line", on_the_line(node.on_the_line)},
                        {"timestamp_offset", timestamp_offset(node.ebcom)},
                        {"timing_unit", timing_unit(node.timing)},
                        {"restarts", restarts(node.restarts)},
                        {"calls", calls(book)},
                        {"faults", faults(book)}};
    return written(document);
}

std::string queue_list(const Node &node)
{
    return written(queues(node.qos));
}

std::string fault_list(const FaultBook &book)
{
    return written(faults(book));
}

} // namespace softnode

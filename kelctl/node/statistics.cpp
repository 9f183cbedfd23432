// The operations that read counters. Counters of both services come from the library alone; delays from the software
// accelerator, where there is one.
#include "kelctl/node/statistics.h"

#include "kel/kel_core_ic_pcep.h"
#include "kel/kel_node_names.h"
#include "kelctl/accelerator/snapshot.h"
#include "kelctl/library/library_call.h"
#include "kelctl/node/read_back.h"
#include "notation/json.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <utility>

namespace kelctl
{
namespace
{

constexpr uint32_t longest_text = 4096; // octets; one that is longer fails with the formatting library's code

using text_buffer = std::array<char, longest_text>;

const parameter::value<uint8_t> as_json("format", 2); // the formatting library's number

// A platform whose format is another one has its text shown.
fields counters_in(const text_buffer &text)
{
    return notation::try_read_json(text.data()).value_or(text.data());
}

// A read that fails does not end the others: counters of 40 queues are worth showing without the 41st.
bool succeeds(result read, result &all)
{
    std::ranges::move(read.failures, std::back_inserter(all.failures));
    all.status = std::max(all.status, read.status);
    return read.status == exit_done;
}

void read_ebcom(session &session, result &all)
{
    text_buffer text{};
    if (succeeds(session.ask("kel_core_ic_ebcom_global_fmt_stats_get", kel_core_ic_ebcom_global_fmt_stats_get,
                             parameter::text_output(text), as_json),
                 all))
        all.shown["ebcom"] = counters_in(text);
}

void read_queue(int32_t port, const mac_address *found_by, session &session, result &all)
{
    ebcom_queue_stats stats{};
    if (found_by && !succeeds(session.ask("kel_core_ic_ebcom_queue_stats_get", kel_core_ic_ebcom_queue_stats_get,
                                          parameter::input("dst_mac", *found_by), parameter::output(stats)),
                              all))
        return;
    all.shown["queues"].push_back({{"port", port},
                                   {"name", kel_branch_name(port)},
                                   {"counters", found_by ? counters_of(stats) : fields(nullptr)}});
}

void read_pcep(uint32_t id, session &session, result &all)
{
    text_buffer text{};
    if (succeeds(session.ask("kel_core_ic_pcep_fmt_stats_get", kel_core_ic_pcep_fmt_stats_get,
                             parameter::value("pcep_id", id), parameter::text_output(text), as_json),
                 all))
        all.shown["pceps"].push_back({{"id", id}, {"counters", counters_in(text)}});
}

// What the software accelerator counts of the queues, by their ports.
fields delays_of(const fields &held, const port_knowledge &ports, const counted &which)
{
    fields all = fields::array();
    for (const fields &queue : held) {
        const auto port = ports.port_of_queue.find(handle_in(queue.at("handle")));
        if (port == ports.port_of_queue.end() || !which.has_queue(port->second))
            continue;
        fields row = {{"port", port->second}, {"name", kel_branch_name(port->second)}};
        for (const auto &[name, value] : queue.at("delay").members())
            row[name] = value;
        row["deepest_frames"] = queue.at("deepest").at("frames");
        row["deepest_octets"] = queue.at("deepest").at("octets");
        row["waiting_octets"] = queue.at("waiting").at("octets");
        all.push_back(std::move(row));
    }
    return all;
}

} // namespace

fields counters_of(const ebcom_queue_stats &stats)
{
    return {{"mem_blks_in_use", stats.mem_blks_in_use},
            {"pkts_out_standing", stats.pkts_out_standing},
            {"pkts_dropped", stats.pkts_dropped},
            {"pkts_tx", stats.pkts_tx},
            {"pkts_rx", stats.pkts_rx},
            {"octets_dropped", stats.octets_dropped},
            {"octets_tx", stats.octets_tx},
            {"octets_rx", stats.octets_rx},
            {"max_burst_size", stats.max_burst_size},
            {"current_burst_size", stats.current_burst_size}};
}

// One call of the library for each queue and PCEP. Those of the session only: the library's ids of others are not
// known.
result read_counters(const fields &held, const port_knowledge &ports, const counted &which, session &session)
{
    result all = {.shown = {{"queues", fields::array()}, {"pceps", fields::array()}}};
    for (const auto &[queue, port] : ports.port_of_queue) {
        const auto found_by = ports.found_by.find(queue);
        if (which.has_queue(port))
            read_queue(port, found_by == ports.found_by.end() ? nullptr : &found_by->second, session, all);
    }
    for (const made_command *made : session.made.made_by("pcep add"))
        if (const uint32_t id = made->asked.given.id("ID"); which.has_pcep(id))
            read_pcep(id, session, all);
    all.shown["delays"] = delays_of(held, ports, which);
    return all;
}

result read_statistics(const fields &held, const port_knowledge &ports, session &session)
{
    result all = {.shown = {{"ebcom", nullptr}}};
    read_ebcom(session, all);
    result counters = read_counters(held, ports, {}, session);
    for (auto &[name, value] : counters.shown.members())
        all.shown[name] = std::move(value);
    succeeds(std::move(counters), all);
    return all;
}

} // namespace kelctl

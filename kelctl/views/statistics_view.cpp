// The layout of counters.
#include "kelctl/views/statistics_view.h"

#include "kel/kel_node_names.h"
#include "kelctl/terminal/side_by_side.h"
#include "kelctl/values/ic_port.h"

#include <fmt/core.h>

namespace kelctl
{
namespace
{

// Larger counters push their row out of line, which reads better than counters cut short.
constexpr std::string_view queue_columns = "{:<11}{:>8} {:>7} {:>7} {:>7} {:>9} {:>9} {:>9} {:>6}\n";

std::string queue_row(const queue_counters &queue)
{
    const std::string name = port_text(queue.port);
    if (!queue.stats)
        return fmt::format("{:<11}  not known: the library finds its destinations on other queues\n", name);
    const ebcom_queue_stats &stats = *queue.stats;
    return fmt::format(queue_columns, name, stats.pkts_rx, stats.pkts_tx, stats.pkts_dropped, stats.pkts_out_standing,
                       stats.octets_rx, stats.octets_tx, stats.octets_dropped, stats.mem_blks_in_use);
}

std::string queue_table(const std::vector<queue_counters> &queues, const painter &paint)
{
    if (queues.empty())
        return "";
    std::string table = fmt::format("{:<11}{:^32}  {:^28} {:>6}\n", "Queues", "packets", "octets", "blocks");
    table += fmt::format(queue_columns, "", "received", "sent", "dropped", "waiting", "received", "sent", "dropped",
                         "in use");
    table = paint(colour::heading, table.substr(0, table.size() - 1)) + "\n";
    for (const queue_counters &queue : queues)
        table += queue_row(queue);
    return table + "\n";
}

std::string pcep_table(const std::vector<pcep_counters> &pceps, const painter &paint)
{
    if (pceps.empty())
        return "";
    std::vector<titled_text> texts;
    texts.reserve(pceps.size());
    for (const pcep_counters &pcep : pceps)
        texts.push_back({std::to_string(pcep.id), pcep.text});
    return side_by_side("PCEP", texts, paint) + "\n";
}

std::string ebcom_text(const std::string &text)
{
    if (text.empty())
        return "";
    return text + (text.ends_with('\n') ? "\n" : "\n\n");
}

fields queue_fields(const queue_counters &queue)
{
    fields shown = {{"port", queue.port}, {"name", kel_branch_name(queue.port)}};
    shown["counters"] = queue.stats ? counters_of(*queue.stats) : fields(nullptr);
    return shown;
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

fields statistics_fields(const statistics &read)
{
    fields shown = {{"ebcom", read.ebcom}, {"queues", fields::array()}, {"pceps", fields::array()}};
    for (const queue_counters &queue : read.queues)
        shown["queues"].push_back(queue_fields(queue));
    for (const pcep_counters &pcep : read.pceps)
        shown["pceps"].push_back({{"id", pcep.id}, {"text", pcep.text}});
    return shown;
}

std::string statistics_view(const statistics &read, const painter &paint)
{
    return ebcom_text(read.ebcom) + queue_table(read.queues, paint) + pcep_table(read.pceps, paint);
}

} // namespace kelctl

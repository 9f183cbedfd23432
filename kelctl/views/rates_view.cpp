// The layout of rates.
#include "kelctl/views/rates_view.h"

#include "kel/kel_node_names.h"
#include "kelctl/values/ic_port.h"
#include "kelctl/values/quantity.h"

#include <fmt/core.h>

namespace kelctl
{
namespace
{

constexpr std::string_view queue_columns = "{:<11}{:>11}{:>11}{:>12}{:>12}{:>12}\n";
constexpr std::string_view pcep_columns = "{:<5}{:>10}{:>11}{:>11}  {:>10}{:>11}{:>11}{:>9}\n";

// The line without its end is painted.
std::string heading(std::string line, const painter &paint)
{
    line.pop_back();
    return paint(colour::heading, line) + "\n";
}

std::string queue_row(const queue_rates &queue)
{
    if (!queue.known)
        return fmt::format("{:<11}  not known: the library finds its destinations on other queues\n",
                           port_text(queue.port));
    return fmt::format(queue_columns, port_text(queue.port), queue.sent.frames_per_second, queue.sent.kbit_per_second,
                       queue.sent.frames, queue.dropped, queue.waiting);
}

std::string queue_table(const std::vector<queue_rates> &queues, const painter &paint)
{
    if (queues.empty())
        return "";
    std::string table =
        heading(fmt::format(queue_columns, "Queues", "frames/s", "kbit/s", "sent", "dropped", "waiting"), paint);
    for (const queue_rates &queue : queues)
        table += queue_row(queue);
    return table;
}

std::string pcep_row(const pcep_rates &pcep)
{
    return fmt::format(pcep_columns, pcep.id, pcep.sent.frames_per_second, pcep.sent.kbit_per_second, pcep.sent.frames,
                       pcep.received.frames_per_second, pcep.received.kbit_per_second, pcep.received.frames,
                       pcep.dropped);
}

std::string pcep_table(const std::vector<pcep_rates> &pceps, const painter &paint)
{
    if (pceps.empty())
        return "";
    std::string table = heading(
        fmt::format(pcep_columns, "PCEPs", "frames/s", "kbit/s", "sent", "frames/s", "kbit/s", "received", "dropped"),
        paint);
    for (const pcep_rates &pcep : pceps)
        table += pcep_row(pcep);
    return table;
}

fields flow_fields(const flow &shown)
{
    return {{"frames", shown.frames},
            {"frames_per_second", shown.frames_per_second},
            {"kbit_per_second", shown.kbit_per_second}};
}

fields queue_fields(const queue_rates &queue)
{
    fields shown = {{"port", queue.port}, {"name", kel_branch_name(queue.port)}};
    shown["sent"] = queue.known ? flow_fields(queue.sent) : fields(nullptr);
    shown["frames_dropped"] = queue.known ? fields(queue.dropped) : fields(nullptr);
    shown["frames_waiting"] = queue.known ? fields(queue.waiting) : fields(nullptr);
    return shown;
}

} // namespace

std::string rates_view(const rates &shown, uint64_t time, const painter &paint)
{
    return fmt::format("{} {}\n", paint(colour::heading, "Virtual time"), quantity_text(time, duration_units)) +
           queue_table(shown.queues, paint) + pcep_table(shown.pceps, paint);
}

fields rates_fields(const rates &shown, uint64_t time)
{
    fields all = {{"nanoseconds", time}, {"queues", fields::array()}, {"pceps", fields::array()}};
    for (const queue_rates &queue : shown.queues)
        all["queues"].push_back(queue_fields(queue));
    for (const pcep_rates &pcep : shown.pceps)
        all["pceps"].push_back({{"id", pcep.id},
                                {"sent", flow_fields(pcep.sent)},
                                {"received", flow_fields(pcep.received)},
                                {"frames_dropped", pcep.dropped}});
    return all;
}

} // namespace kelctl

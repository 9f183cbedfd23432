// The columns: which value of a document is under which title. Titles say what a column counts and, where it has one,
// its unit.
#include "kelctl/views/counter_tables.h"

#include "kelctl/values/quantity_messages.h"

#include <fmt/core.h>

#include <algorithm>
#include <span>
#include <string_view>
#include <utility>

namespace kelctl
{
namespace
{

// A column, and where its value is in each row of a document: row[block][name].
struct column {
    std::string_view title;
    std::string_view block; // of the row; empty: the row itself
    std::string_view name;
};

constexpr column queue_counters[] = {
    {"queue", "", "name"},
    {"packets in", "counters", "pkts_rx"},
    {"packets out", "counters", "pkts_tx"},
    {"packets dropped", "counters", "pkts_dropped"},
    {"packets waiting", "counters", "pkts_out_standing"},
    {"octets in", "counters", "octets_rx"},
    {"octets out", "counters", "octets_tx"},
    {"octets dropped", "counters", "octets_dropped"},
    {"blocks in use", "counters", "mem_blks_in_use"},
};

constexpr column queue_rates[] = {
    {"queue", "", "name"},
    {"frames/s", "sent", "frames_per_second"},
    {"kbit/s", "sent", "kbit_per_second"},
    {"frames sent", "sent", "frames"},
    {"frames dropped", "", "frames_dropped"},
    {"frames waiting", "", "frames_waiting"},
};

constexpr column pcep_rates[] = {
    {"PCEP", "", "id"},
    {"sent frames/s", "sent", "frames_per_second"},
    {"sent kbit/s", "sent", "kbit_per_second"},
    {"frames sent", "sent", "frames"},
    {"received frames/s", "received", "frames_per_second"},
    {"received kbit/s", "received", "kbit_per_second"},
    {"frames received", "received", "frames"},
    {"frames dropped", "", "frames_dropped"},
};

fields row_of(const fields &described, std::span<const column> columns)
{
    fields row = fields::object();
    for (const auto &[title, block, name] : columns) {
        const fields *found = (block.empty() ? described : described.at(block)).find(name);
        row[title] = found ? *found : fields(nullptr);
    }
    return row;
}

void add_table(fields &shown, std::string_view name, const fields &rows, std::span<const column> columns)
{
    for (const fields &row : rows)
        shown[name].push_back(row_of(row, columns));
}

// `known`: the member that is null for a queue that the library does not find.
void add_queues(fields &shown, const fields &queues, std::span<const column> columns, std::string_view known)
{
    add_table(shown, "queues", queues, columns);
    if (std::any_of(queues.begin(), queues.end(), [known](const fields &queue) { return queue.at(known).is_null(); }))
        shown["-"] = "unknown: the library looks its destinations up on other queues";
}

// One decimal of a microsecond.
double microseconds(const fields &nanoseconds)
{
    const uint64_t tenths = nanoseconds.number<uint64_t>() / 100;
    return static_cast<double>(tenths) / 10;
}

// Only queues that frames have entered.
void add_delay_table(fields &shown, const fields &queues)
{
    for (const fields &queue : queues)
        if (queue.at("deepest_frames").number<uint64_t>() != 0 || queue.at("frames").number<uint64_t>() != 0) {
            fields row = {{"queue", queue.at("name")}};
            add_delays(row, queue);
            row["most frames waiting"] = queue.at("deepest_frames");
            row["most octets waiting"] = queue.at("deepest_octets");
            shown["delays"].push_back(std::move(row));
        }
}

// Nanoseconds without what is less than a millisecond, which says nothing of a time that a clock has measured.
uint64_t in_milliseconds(uint64_t nanoseconds)
{
    constexpr uint64_t millisecond = 1'000'000;
    return nanoseconds / millisecond * millisecond;
}

// With the formatting library's names, which the platform chooses. A name that is in two blocks gets its block's in
// front.
fields pcep_row(const fields &pcep)
{
    fields row = {{"PCEP", pcep.at("id")}};
    for (const auto &[title, block] : pcep.at("counters").members())
        for (const auto &[name, value] : block.members())
            row[row.find(name) ? fmt::format("{} {}", title, name) : name] = value;
    return row;
}

} // namespace

void add_delays(fields &row, const fields &delays)
{
    row["median delay, us"] = microseconds(delays.at("median"));
    row["99 % within, us"] = microseconds(delays.at("p99"));
    row["largest delay, us"] = microseconds(delays.at("largest"));
}

// Blocks of the service go through under the platform's titles; queues get columns that are the same everywhere.
fields statistics_tables(const fields &read)
{
    fields shown = fields::object();
    const fields &ebcom = read.at("ebcom");
    if (ebcom.holds() == notation::kind::text)
        shown["ebcom"] = ebcom;
    for (const auto &[title, block] : ebcom.members())
        shown[title] = block;
    add_queues(shown, read.at("queues"), queue_counters, "counters");
    add_delay_table(shown, read.at("delays"));
    for (const fields &pcep : read.at("pceps"))
        shown["pceps"].push_back(pcep_row(pcep));
    return shown;
}

fields rates_tables(const fields &rates)
{
    const auto nanoseconds = rates.at("nanoseconds").number<uint64_t>();
    const bool is_virtual = rates.at("time").text() == "virtual";
    fields shown = {{is_virtual ? "virtual time" : "time",
                     quantity_text(is_virtual ? nanoseconds : in_milliseconds(nanoseconds), duration_units)}};
    add_queues(shown, rates.at("queues"), queue_rates, "sent");
    add_delay_table(shown, rates.at("delays"));
    if (rates.at("delays").empty() && !rates.at("queues").empty())
        shown["delays"] = "not known on this platform";
    add_table(shown, "pceps", rates.at("pceps"), pcep_rates);
    return shown;
}

} // namespace kelctl

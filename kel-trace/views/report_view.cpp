// Tables of timings per operation and closed call, and the same as a document. The figures are statistics.cpp's.
#include "kel-trace/views/report_view.h"

#include "kel-trace/reading/instant.h"
#include "kel-trace/views/preface.h"
#include "terminal/terminal.h"
#include "text/quantity.h"

#include <fmt/core.h>

#include <algorithm>
#include <vector>

namespace kel_trace
{
namespace
{

using notation::document;
using terminal::colour;
using text::with_separators;

constexpr int64_t second = 1'000'000'000;
constexpr std::string_view other_event = "other events of the library";

std::string_view event_text(size_t event)
{
    return event < std::size(event_names) ? event_names[event] : other_event;
}

std::string text_of(uint64_t nanoseconds)
{
    return duration_text(static_cast<int64_t>(nanoseconds));
}

using table = std::map<std::string, timing, std::less<>>;

// By total time, the longest first; equal ones by name.
std::vector<const table::value_type *> by_total(const table &all)
{
    std::vector<const table::value_type *> sorted;
    for (const auto &row : all)
        if (row.second.lasted.spread.count() > 0)
            sorted.push_back(&row);
    std::ranges::stable_sort(sorted, [](const auto *a, const auto *b) {
        return a->second.lasted.spread.sum() > b->second.lasted.spread.sum();
    });
    return sorted;
}

// `own`: the column of the time without operations within, which closed calls do not have.
std::string table_text(const table &all, std::string_view heading, std::string_view reported, bool own,
                       const terminal::painter &paint)
{
    std::string text = fmt::format(
        "\n{}\n", paint(colour::heading,
                        fmt::format("{:<52} {:>9} {:>9} {:>14} {:>14} {:>13} {:>13} {:>13}  {}", heading, "calls",
                                    reported, "total", own ? "own" : "", "median", "99 %", "largest", "largest at")));
    for (const auto *row : by_total(all)) {
        const auto &[spread, largest_at] = row->second.lasted;
        text +=
            fmt::format("{:<52} {:>9} {:>9} {:>14} {:>14} {:>13} {:>13} {:>13}  {}\n", row->first,
                        with_separators(spread.count()), with_separators(row->second.reported), text_of(spread.sum()),
                        own ? duration_text(row->second.own) : "", text_of(spread.quantile(50)),
                        text_of(spread.quantile(99)), text_of(spread.largest()), instant_text(largest_at));
    }
    return text;
}

// The busiest second is shown without a fraction.
std::string host_report(const host_statistics &one, const terminal::painter &paint)
{
    std::string text = table_text(one.operations, "Operations", "reported", true, paint);
    text += table_text(one.calls, "Closed calls, at most: until the thread's next record", "refused", false, paint);
    text += fmt::format("\n{}\n", paint(colour::heading, fmt::format("{:<52} {:>9}", "Records", "count")));
    for (size_t event = 0; event < event_count; ++event)
        if (one.events[event] > 0)
            text += fmt::format("{:<52} {:>9}\n", event_text(event), with_separators(one.events[event]));
    text += fmt::format("\nBusiest second: {} with {} records.\n",
                        instant_text(one.busiest_second * second).substr(0, 19), with_separators(one.busiest_count));
    return text;
}

document table_document(const table &all, bool own)
{
    document rows = document::array();
    for (const auto *row : by_total(all)) {
        const auto &[spread, largest_at] = row->second.lasted;
        document made = {{"name", row->first},
                         {"calls", spread.count()},
                         {own ? "reported" : "refused", row->second.reported},
                         {"total", spread.sum()}};
        if (own)
            made["own"] = row->second.own;
        made["median"] = spread.quantile(50);
        made["percentile_99"] = spread.quantile(99);
        made["largest"] = spread.largest();
        made["largest_at"] = largest_at;
        rows.push_back(made);
    }
    return rows;
}

document host_document(const host_statistics &one)
{
    document events = document::object();
    for (size_t event = 0; event < event_count; ++event)
        events[event_text(event)] = one.events[event];
    return {{"operations", table_document(one.operations, true)},
            {"closed_calls_at_most", table_document(one.calls, false)},
            {"records", events},
            {"busiest_second", {{"second", one.busiest_second}, {"records", one.busiest_count}}}};
}

} // namespace

std::string report_text(const statistics &all, const recording &found, const terminal::painter &paint)
{
    if (all.hosts().empty())
        return "";
    if (all.hosts().size() == 1)
        return host_report(all.sum(), paint);
    std::string text;
    for (const auto &[host, one] : all.hosts())
        text += fmt::format("\n==== host {} ====\n", host_text(found, host)) + host_report(one, paint);
    return text + "\n==== all hosts ====\n" + host_report(all.sum(), paint);
}

// The sum is there for one host as well, so that programs need not distinguish.
document report_document(const statistics &all, const recording &found)
{
    document hosts = document::array();
    for (const auto &[host, one] : all.hosts()) {
        document made = {{"host", found.hosts.at(host)}};
        const document statistics = host_document(one);
        for (const auto &[name, value] : statistics.members())
            made[name] = value;
        hosts.push_back(made);
    }
    return {{"hosts", hosts}, {"sum", host_document(all.sum())}};
}

} // namespace kel_trace

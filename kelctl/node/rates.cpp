// Differences of counters, divided by the time between. A counter of the live view is chosen here.
#include "kelctl/node/rates.h"

#include <algorithm>
#include <iterator>
#include <optional>

namespace kelctl
{
namespace
{

struct count {
    uint64_t frames;
    uint64_t octets;
};

// Rounded down. A counter that is smaller than before was reset, and counts from 0. Floating point: a count times a
// billion leaves 64 bits.
uint64_t in_a_second(uint64_t before, uint64_t now, double scale, uint64_t passed)
{
    const uint64_t grown = now >= before ? now - before : now;
    return static_cast<uint64_t>(static_cast<double>(grown) * scale * 1e9 / static_cast<double>(passed));
}

fields flow_between(const count &before, const count &now, uint64_t passed)
{
    return {{"frames", now.frames},
            {"frames_per_second", in_a_second(before.frames, now.frames, 1, passed)},
            {"kbit_per_second", in_a_second(before.octets, now.octets, 8e-3, passed)}};
}

fields queue_rates(const fields &before, const fields &now, uint64_t passed)
{
    fields found = {{"port", now.at("port")},
                    {"name", now.at("name")},
                    {"sent", nullptr},
                    {"frames_dropped", nullptr},
                    {"frames_waiting", nullptr}};
    const fields &last = before.at("counters");
    const fields &counters = now.at("counters");
    if (last.is_null() || counters.is_null())
        return found;
    const auto octets = [](const fields &of) { return of.at("octets_tx").number<uint64_t>(); };
    const auto frames = [](const fields &of) { return of.at("pkts_tx").number<uint32_t>(); };
    // The library counts frames in 32 bits: the unsigned difference is right after a wrap-around, too.
    const uint32_t grown = frames(counters) - frames(last);
    found["sent"] = flow_between({0, octets(last)}, {grown, octets(counters)}, passed);
    found["sent"]["frames"] = frames(counters);
    found["frames_dropped"] = counters.at("pkts_dropped");
    found["frames_waiting"] = counters.at("pkts_out_standing");
    return found;
}

// The counter of that name in any of the PCEP's blocks; 0 when there is none.
uint64_t counter(const fields &pcep, const char *name)
{
    for (const auto &[title, block] : pcep.at("counters").members())
        if (const fields *found = block.find(name); found && found->holds() == notation::kind::natural)
            return found->number<uint64_t>();
    return 0;
}

fields pcep_rates(const fields &before, const fields &now, uint64_t passed)
{
    const auto flow_of = [&](const char *frames, const char *octets) {
        return flow_between({counter(before, frames), counter(before, octets)},
                            {counter(now, frames), counter(now, octets)}, passed);
    };
    return {{"id", now.at("id")},
            {"sent", flow_of("frames_sent", "octets_sent")},
            {"received", flow_of("frames_received", "octets_received")},
            {"frames_dropped", counter(now, "frames_dropped")}};
}

// The row of the same object; null: there is none.
const fields *row_of(const fields &object, const char *key, const fields &rows)
{
    const auto *const found =
        std::find_if(rows.begin(), rows.end(), [&](const fields &row) { return row.at(key) == object.at(key); });
    return found == rows.end() ? nullptr : found;
}

// Of each object that both samples have, which its key names.
fields each(const fields &before, const fields &now, const char *key, uint64_t passed,
            fields (*rates_of)(const fields &before, const fields &now, uint64_t passed))
{
    fields rates = fields::array();
    for (const fields &row : now)
        if (const fields *last = row_of(row, key, before))
            rates.push_back(rates_of(*last, row, passed));
    return rates;
}

using sorted_value = std::optional<uint64_t>;

// Of what was sent and, by a PCEP, received.
sorted_value flow(const fields &row, const char *name)
{
    sorted_value sum;
    for (const char *direction : {"sent", "received"})
        if (const fields *found = row.find(direction); found && !found->is_null())
            sum = sum.value_or(0) + found->at(name).number<uint64_t>();
    return sum;
}

sorted_value member(const fields &row, const char *name)
{
    const fields *found = row.find(name);
    return found && !found->is_null() ? sorted_value(found->number<uint64_t>()) : std::nullopt;
}

constexpr struct {
    std::string_view name;
    sorted_value (*value)(const fields &row);
} keys[] = {
    {"rate", [](const fields &row) { return flow(row, "kbit_per_second"); }},
    {"frames", [](const fields &row) { return flow(row, "frames_per_second"); }},
    {"dropped", [](const fields &row) { return member(row, "frames_dropped"); }},
    {"waiting", [](const fields &row) { return member(row, "frames_waiting"); }},
    {"delay", [](const fields &row) { return member(row, "median"); }},
};

} // namespace

// At least a nanosecond of real time, so that two samples of one moment divide by something.
passed_time passed_between(const fields &before, const fields &now)
{
    if (!before.at("virtual").is_null() && !now.at("virtual").is_null())
        if (const uint64_t passed = time_between(before, now, time_base::virtual_time))
            return {time_base::virtual_time, passed};
    return {time_base::real_time, std::max<uint64_t>(time_between(before, now, time_base::real_time), 1)};
}

fields rates_between(const fields &first, const fields &before, const fields &now)
{
    const auto [base, passed] = passed_between(before, now);
    return {{"nanoseconds", time_between(first, now, base)},
            {"time", base == time_base::virtual_time ? "virtual" : "real"},
            {"queues", each(before.at("queues"), now.at("queues"), "port", passed, queue_rates)},
            {"pceps", each(before.at("pceps"), now.at("pceps"), "id", passed, pcep_rates)},
            {"delays", now.at("delays")}};
}

std::vector<std::string> rate_keys()
{
    std::vector<std::string> names;
    for (const auto &key : keys)
        names.emplace_back(key.name);
    return names;
}

fields sorted_rates(fields rates, std::string_view key)
{
    const auto *const chosen = std::ranges::find(keys, key, [](const auto &one) { return one.name; });
    if (chosen == std::end(keys))
        return rates;
    for (const char *list : {"queues", "pceps", "delays"}) {
        std::vector<fields> rows(rates.at(list).begin(), rates.at(list).end());
        std::ranges::stable_sort(rows, std::ranges::greater(), chosen->value);
        rates[list] = rows;
    }
    return rates;
}

} // namespace kelctl

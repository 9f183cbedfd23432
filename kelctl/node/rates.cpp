// Differences of counters, divided by the time between. A counter of the live view is chosen here.
#include "kelctl/node/rates.h"

namespace kelctl
{
namespace
{

struct count {
    uint64_t frames;
    uint64_t octets;
};

// Rounded down. A counter that is smaller than before was reset, and counts from 0.
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

// Of each row of both readings.
fields each(const fields &before, const fields &now, uint64_t passed,
            fields (*rates_of)(const fields &before, const fields &now, uint64_t passed))
{
    fields rates = fields::array();
    for (size_t i = 0; i < now.size() && i < before.size(); ++i)
        rates.push_back(rates_of(before[i], now[i], passed));
    return rates;
}

} // namespace

fields rates_between(const fields &before, const fields &now, uint64_t passed, uint64_t time)
{
    return {{"nanoseconds", time},
            {"queues", each(before.at("queues"), now.at("queues"), passed, queue_rates)},
            {"pceps", each(before.at("pceps"), now.at("pceps"), passed, pcep_rates)},
            {"delays", now.at("delays")}};
}

} // namespace kelctl

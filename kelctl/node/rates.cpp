// Differences of counters by the time between.
#include "kelctl/node/rates.h"

#include "notation/json.h"

#include <string>

namespace kelctl
{
namespace
{

using notation::document;

struct count {
    uint64_t frames;
    uint64_t octets;
};

// Rounded down. A counter that was reset in between counts from 0.
uint64_t in_a_second(uint64_t before, uint64_t now, double scale, uint64_t passed)
{
    const uint64_t grown = now >= before ? now - before : now;
    return static_cast<uint64_t>(static_cast<double>(grown) * scale * 1e9 / static_cast<double>(passed));
}

flow flow_between(const count &before, const count &now, uint64_t passed)
{
    return {.frames = now.frames,
            .frames_per_second = in_a_second(before.frames, now.frames, 1, passed),
            .kbit_per_second = in_a_second(before.octets, now.octets, 8e-3, passed)};
}

queue_rates rates_of(const queue_counters &before, const queue_counters &now, uint64_t passed)
{
    if (!before.stats || !now.stats)
        return {.port = now.port, .known = false, .sent = {}, .dropped = 0, .waiting = 0};
    const ebcom_queue_stats &last = *before.stats;
    const ebcom_queue_stats &stats = *now.stats;
    // Frames are counted in 32 bits, which may have wrapped around.
    const uint32_t frames = stats.pkts_tx - last.pkts_tx;
    flow sent = flow_between({0, last.octets_tx}, {frames, stats.octets_tx}, passed);
    sent.frames = stats.pkts_tx;
    return {.port = now.port,
            .known = true,
            .sent = sent,
            .dropped = stats.pkts_dropped,
            .waiting = stats.pkts_out_standing};
}

// The counter of that name in any of the document's blocks; 0 when there is none.
uint64_t counter(const document &all, const char *name)
{
    for (const auto &[title, block] : all.members())
        if (const document *found = block.find(name); found && found->holds() == notation::kind::natural)
            return found->number<uint64_t>();
    return 0;
}

pcep_rates rates_of(const pcep_counters &before, const pcep_counters &now, uint64_t passed)
{
    const document last = notation::try_read_json(before.text).value_or(nullptr);
    const document stats = notation::try_read_json(now.text).value_or(nullptr);
    const auto flow_of = [&](const char *frames, const char *octets) {
        return flow_between({counter(last, frames), counter(last, octets)},
                            {counter(stats, frames), counter(stats, octets)}, passed);
    };
    return {.id = now.id,
            .sent = flow_of("frames_sent", "octets_sent"),
            .received = flow_of("frames_received", "octets_received"),
            .dropped = counter(stats, "frames_dropped")};
}

} // namespace

rates rates_between(const statistics &before, const statistics &now, uint64_t passed)
{
    rates found;
    for (size_t i = 0; i < now.queues.size() && i < before.queues.size(); ++i)
        found.queues.push_back(rates_of(before.queues[i], now.queues[i], passed));
    for (size_t i = 0; i < now.pceps.size() && i < before.pceps.size(); ++i)
        found.pceps.push_back(rates_of(before.pceps[i], now.pceps[i], passed));
    return found;
}

} // namespace kelctl

// Keys of [[traffic]], and what they must satisfy together.
#include "kelctl/nodefile/traffic_table.h"

#include "kelctl/accelerator/traffic_schedule.h"
#include "kelctl/nodefile/node_keys.h"
#include "kelctl/values/limits.h"

#include <fmt/core.h>

namespace kelctl
{
namespace
{

// Which of the two is there. None, and a problem, when that is not exactly one.
std::string_view either(const table_reader &traffic, std::string_view one, std::string_view other)
{
    if (!traffic.has(one) && !traffic.has(other))
        traffic.note(traffic.at(), fmt::format("[[traffic]]: {} or {} is missing", one, other));
    else if (traffic.has(one) && traffic.has(other))
        traffic.note(traffic.at(other), fmt::format("{}: there is {} already; give one of them", other, one));
    else
        return traffic.has(one) ? one : other;
    return {};
}

void read_end_point(const table_reader &traffic, traffic_entry &entry)
{
    const std::string_view key = either(traffic, "to", "from");
    if (key == "to")
        entry.to = traffic.station("to");
    else if (key == "from")
        entry.from = traffic.number("from", id_range);
}

void read_rate(const table_reader &traffic, traffic_entry &entry)
{
    const std::string_view key = either(traffic, "rate", "frames_per_second");
    if (key == "rate")
        entry.rate = traffic.quantity("rate", rate_units, rate_range);
    else if (key == "frames_per_second")
        entry.frames_per_second = traffic.number("frames_per_second", frames_per_second_range);
    if (!key.empty() && offerings_in_a_second(entry) > most_offerings_a_second)
        traffic.note(traffic.at(key), fmt::format("{}: {}", key, too_many_offerings()));
}

void read_times(const table_reader &traffic, traffic_entry &entry)
{
    if (traffic.has("start"))
        entry.start = traffic.duration("start", duration_range);
    if (!traffic.has("stop"))
        return;
    entry.stop = traffic.duration("stop", period_range);
    if (*entry.stop <= entry.start)
        traffic.note(traffic.at("stop"), fmt::format("stop: {}", stops_too_early));
}

} // namespace

traffic_entry read_traffic(table_reader &traffic)
{
    traffic.allow_only(node_keys_of("traffic"));
    traffic_entry entry;
    read_end_point(traffic, entry);
    entry.octets = traffic.number("octets", frame_length_range);
    if (traffic.has("burst"))
        entry.burst = traffic.number("burst", burst_frames_range);
    read_rate(traffic, entry);
    read_times(traffic, entry);
    entry.at = traffic.at();
    entry.to_at = traffic.at("to");
    entry.from_at = traffic.at("from");
    return entry;
}

} // namespace kelctl

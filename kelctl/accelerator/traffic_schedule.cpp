// Adding intervals up without losing the fractions of a nanosecond that they have.
#include "kelctl/accelerator/traffic_schedule.h"

namespace kelctl
{
namespace
{

constexpr uint64_t second = 1'000'000'000;        // nanoseconds
constexpr uint64_t octet_at_one_kbit = 8'000'000; // nanoseconds

// The time between two offerings: nanoseconds / parts.
struct interval {
    uint64_t nanoseconds; // at most 65535 * 8e6 * 1e6, which 64 bits hold
    uint64_t parts;
};

interval interval_of(const traffic_entry &entry)
{
    if (entry.rate != 0)
        return {entry.octets * octet_at_one_kbit * entry.burst, entry.rate};
    return {second * entry.burst, entry.frames_per_second};
}

} // namespace

void traffic_schedule::add(const traffic_entry &entry, uint64_t now)
{
    const auto [nanoseconds, parts] = interval_of(entry);
    streams_.push_back({.entry = entry,
                        .next = now + entry.start,
                        .fraction = 0,
                        .remainder = nanoseconds % parts,
                        .interval = nanoseconds / parts,
                        .parts = parts});
    if (entry.stop)
        streams_.back().entry.stop = now + *entry.stop;
}

std::optional<offering> traffic_schedule::next_before(uint64_t end)
{
    stream *first = nullptr;
    for (stream &candidate : streams_) {
        const uint64_t stop = candidate.entry.stop.value_or(end);
        if (candidate.next < end && candidate.next < stop && (!first || candidate.next < first->next))
            first = &candidate;
    }
    if (!first)
        return std::nullopt;
    const offering due = {&first->entry, first->next};
    move_on(*first);
    return due;
}

void traffic_schedule::move_on(stream &stream)
{
    stream.next += stream.interval;
    stream.fraction += stream.remainder;
    if (stream.fraction < stream.parts)
        return;
    stream.fraction -= stream.parts;
    ++stream.next;
}

uint64_t offerings_in_a_second(const traffic_entry &entry)
{
    const auto [nanoseconds, parts] = interval_of(entry);
    return (second * parts + nanoseconds - 1) / nanoseconds;
}

} // namespace kelctl

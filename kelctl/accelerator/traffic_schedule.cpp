// Adding intervals up without losing the fractions of a nanosecond that they have.
#include "kelctl/accelerator/traffic_schedule.h"

#include <algorithm>

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

// Exponentially distributed with a mean of 1, in parts of 2^32. By comparing uniform numbers alone, as von Neumann did:
// a logarithm is not the same on every machine. The standard's distributions may differ from library to library; its
// generator may not.
uint64_t drawn(std::mt19937_64 &chance)
{
    for (uint64_t whole = 0;; ++whole) {
        const uint64_t first = chance();
        bool accepted = true;
        for (uint64_t last = first, next = chance(); next < last; next = chance()) {
            last = next;
            accepted = !accepted;
        }
        if (accepted)
            return whole << 32 | first >> 32;
    }
}

// The same with a mean of nanoseconds / parts, to the nearest nanosecond.
uint64_t drawn(std::mt19937_64 &chance, uint64_t nanoseconds, uint64_t parts)
{
    __extension__ using wide = unsigned __int128;
    const wide whole = wide{parts} << 32;
    return static_cast<uint64_t>((wide{nanoseconds} * drawn(chance) + whole / 2) / whole);
}

} // namespace

// Numbers are drawn for constant arrivals, too, and not used: nobody else draws from the stream's generator.
void traffic_schedule::add(const traffic_entry &entry, uint64_t now)
{
    const auto [nanoseconds, parts] = interval_of(entry);
    streams_.push_back({.entry = entry,
                        .next = now + entry.start,
                        .fraction = 0,
                        .remainder = nanoseconds % parts,
                        .interval = nanoseconds / parts,
                        .parts = parts,
                        .chance = std::mt19937_64(entry.seed),
                        .on_until = 0});
    stream &added = streams_.back();
    if (entry.stop)
        added.entry.stop = now + *entry.stop;
    if (entry.spread == arrivals::poisson)
        added.next += drawn(added.chance, nanoseconds, parts);
    added.on_until = added.next + drawn(added.chance, entry.on, 1);
}

// A walk over all streams: there are as many as a person has written down.
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

// Poisson arrivals are rounded one by one, as they are random anyway; of the others the fraction is carried on, or a
// rate would drift by up to a nanosecond for each frame.
void traffic_schedule::move_on(stream &stream)
{
    if (stream.entry.spread == arrivals::poisson) {
        stream.next += drawn(stream.chance, stream.interval * stream.parts + stream.remainder, stream.parts);
        return;
    }
    stream.next += stream.interval;
    stream.fraction += stream.remainder;
    if (stream.fraction >= stream.parts) {
        stream.fraction -= stream.parts;
        ++stream.next;
    }
    if (stream.entry.spread == arrivals::constant || stream.next < stream.on_until)
        return;
    stream.next = std::max(stream.next, stream.on_until + drawn(stream.chance, stream.entry.off, 1));
    stream.on_until = stream.next + drawn(stream.chance, stream.entry.on, 1);
}

bool periods_fit(const traffic_entry &entry)
{
    const bool both = entry.on != 0 && entry.off != 0;
    const bool neither = entry.on == 0 && entry.off == 0;
    return entry.spread == arrivals::on_off ? both : neither;
}

uint64_t offerings_in_a_second(const traffic_entry &entry)
{
    const auto [nanoseconds, parts] = interval_of(entry);
    return (second * parts + nanoseconds - 1) / nanoseconds;
}

} // namespace kelctl

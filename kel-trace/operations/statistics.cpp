// Counts and times operations and closed calls, record by record, in memory that does not grow with the recording. How
// durations spread is kept by counting/histogram.h.
#include "kel-trace/operations/statistics.h"

#include "kel-trace/operations/parameters.h"
#include "text/refusal.h"

#include <tuple>

namespace kel_trace
{
namespace
{

constexpr int64_t second_length = 1'000'000'000;

// The creation of a scheduler is announced by two records; the second one must not end the call.
constexpr std::string_view announcement_goes_on = "ork_qos_scheduler_create(rootId=";

// Names and timings stay where they are in a map, so frames refer to them without copies.
template <typename Table> std::pair<std::string_view, timing *> entry(Table &table, std::string_view name)
{
    auto found = table.find(name);
    if (found == table.end())
        found = table.emplace(name, timing{}).first;
    return {found->first, &found->second};
}

template <typename Table> void add_all(Table &to, const Table &from)
{
    for (const auto &[name, other] : from) {
        timing &sum = to[name];
        sum.reported += other.reported;
        sum.lasted.add(other.lasted);
        sum.own += other.own;
    }
}

} // namespace

void host_statistics::add(const host_statistics &other)
{
    add_all(operations, other.operations);
    add_all(calls, other.calls);
    for (size_t i = 0; i < events.size(); ++i)
        events[i] += other.events[i];
    cut += other.cut;
    if (other.busiest_count > busiest_count) {
        busiest_count = other.busiest_count;
        busiest_second = other.busiest_second;
    }
}

// Records come in order of time, so a second is over when the first record of another one comes.
void statistics::count(const record &record, host_statistics &host)
{
    ++host.events[static_cast<size_t>(record.event)];
    second &now = seconds_[record.of.host];
    const int64_t number = record.time / second_length;
    if (number != now.number)
        now = {number, 0};
    if (++now.count > host.busiest_count) {
        host.busiest_count = now.count;
        host.busiest_second = number;
    }
}

// The next record of the thread ends a call, and reports its refusal if there was one.
void statistics::end_call(thread &of, const record &next)
{
    if (of.call.empty())
        return;
    const auto [function, detail] = text::parts_of(next.message);
    if (next.event == event::api_call && detail.starts_with(announcement_goes_on))
        return;
    bool refused = false;
    if (is_exception(next.event)) {
        const auto refusal = text::refusal_in(detail);
        refused = refusal && called_function(refusal->what) == of.call;
    }
    of.call_timed->reported += refused;
    of.call_timed->lasted.add(next.time - of.call_begin, of.call_begin);
    if (taker_)
        taker_({of.call, true, refused, next.of, of.call_begin, next.time});
    of.call = {};
}

void statistics::announce(thread &of, const record &record, host_statistics &host)
{
    if (!of.call.empty()) // the second record of one announcement
        return;
    const auto called = called_function(text::parts_of(record.message).detail);
    if (called.empty())
        return;
    std::tie(of.call, of.call_timed) = entry(host.calls, called);
    of.call_begin = record.time;
}

// What an operation took is passed to the one around it, whose own time is what is left.
void statistics::leave(thread &of, const record &record, host_statistics &host)
{
    of.open.leave(frame_name(record.message), host.cut, [&](const frame &left) {
        const int64_t took = record.time - left.begin;
        left.timed->lasted.add(took, left.begin);
        left.timed->own += std::max<int64_t>(took - left.within, 0);
        left.timed->reported += left.reported;
        if (!of.open.empty())
            of.open.innermost().within += took;
        if (taker_)
            taker_({left.name, false, left.reported, record.of, left.begin, record.time});
    });
}

// Any record of a thread ends its call, so that is first; what the record itself is comes after.
void statistics::take(const record &record)
{
    host_statistics &host = hosts_[record.of.host];
    count(record, host);
    thread &of = threads_[record.of];
    end_call(of, record);

    if (record.event == event::fn_enter) {
        const auto [name, timed] = entry(host.operations, frame_name(record.message));
        of.open.enter({name, timed, record.time});
    } else if (record.event == event::fn_exit)
        leave(of, record, host);
    else if (record.event == event::api_call)
        announce(of, record, host);
    else if (is_exception(record.event)) {
        if (frame *reporting = of.open.find(text::parts_of(record.message).function))
            reporting->reported = true;
    }
}

void statistics::end()
{
    for (auto &[key, of] : threads_)
        hosts_[key.host].cut.at_end += of.open.size();
}

host_statistics statistics::sum() const
{
    if (hosts_.size() == 1) // nothing to add up
        return hosts_.begin()->second;
    host_statistics sum;
    for (const auto &[host, one] : hosts_)
        sum.add(one);
    return sum;
}

} // namespace kel_trace

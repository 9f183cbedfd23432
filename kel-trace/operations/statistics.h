// How often and how long: each operation, each closed call, each event, of one host or of several.
//
// A closed call has a record before it and none after it: its time ends with the next record of its thread, at the
// latest.
//
//     statistics all;
//     read(folders, {}, found, [&](const record &one) { all.take(one); });
//     all.end();
//     all.sum().operations.at("kel_core_ic_ebcom_start").lasted.spread.largest()
#pragma once

#include "kel-trace/operations/durations.h"
#include "kel-trace/operations/open_operations.h"
#include "kel-trace/reading/record.h"

#include <array>
#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <unordered_map>

namespace kel_trace
{

// Of one operation or one closed call, by name.
struct timing {
    uint64_t reported = 0; // of those, that reported a failure; for a closed call, that were reported to have refused
    durations lasted;
    int64_t own = 0; // without the operations within
};

struct host_statistics {
    std::map<std::string, timing, std::less<>> operations;
    std::map<std::string, timing, std::less<>> calls;
    std::array<uint64_t, event_count> events{};
    cut_operations cut;
    uint64_t busiest_count = 0; // records in the busiest second
    int64_t busiest_second = 0; // since 1970

    void add(const host_statistics &other);
};

// A finished operation or call, for who wants to draw it.
struct span {
    std::string_view name;
    bool is_call;
    bool reported;
    thread_key of;
    int64_t begin;
    int64_t end;
};

class statistics
{
public:
    using span_taker = std::function<void(const span &)>;
    explicit statistics(span_taker taker = {}) : taker_(std::move(taker))
    {
    }

    // Records in the order of their times, of any host. The spans of a thread are handed on as they end, inner ones
    // first.
    void take(const record &record);
    // After the last record: counts what is still open as cut off.
    void end();

    // By thread_key::host.
    const std::map<uint32_t, host_statistics> &hosts() const
    {
        return hosts_;
    }
    host_statistics sum() const;

private:
    struct frame {
        std::string_view name;
        timing *timed;
        int64_t begin;
        int64_t within = 0; // time of the operations within
        bool reported = false;
    };
    struct thread {
        open_operations<frame> open;
        std::string_view call; // announced, and not yet followed by a record; empty for none
        timing *call_timed = nullptr;
        int64_t call_begin = 0;
    };
    struct second {
        int64_t number = INT64_MIN;
        uint64_t count = 0;
    };
    using table = std::map<std::string, timing, std::less<>>;

    void count(const record &record, host_statistics &host);
    void end_call(thread &of, const record &next);
    void announce(thread &of, const record &record, host_statistics &host);
    void leave(thread &of, const record &record, host_statistics &host);

    span_taker taker_;
    std::map<uint32_t, host_statistics> hosts_;
    std::map<uint32_t, second> seconds_;
    std::unordered_map<thread_key, thread> threads_;
};

} // namespace kel_trace

// A trace record as a reader hands it on. Texts are valid until the next one. One that is to be kept is copied:
// kept_record in operations/operation.h.
#pragma once

#include <cstdint>
#include <functional>
#include <string_view>

namespace kel_trace
{

// The nine events; `other` is any other event of the library's providers.
enum class event : uint8_t {
    fn_enter,
    fn_exit,
    fn_param,
    api_call,
    error,
    exception, // of a timing-unit call
    info,
    lab,
    init_exception, // of any other call
    other,
};
inline constexpr size_t event_count = 10;

constexpr bool is_exception(event one)
{
    return one == event::exception || one == event::init_exception;
}

// The beginning of the names of our events, and of what follows it in the names of the nine, by event.
inline constexpr std::string_view our_providers = "com_vantorix_ob_kel_";
inline constexpr std::string_view event_names[] = {"ic:FN_ENTER", "ic:FN_EXIT", "ic:FN_PARAM",
                                                   "ic:API_CALL", "ic:ERROR",   "ic:EXCEPTION",
                                                   "ic:INFO",     "ic:LAB",     "init:EXCEPTION"};

// What a thread is known by. `host` counts the hosts of the recordings; unknown processes and threads are 0.
struct thread_key {
    uint32_t host = 0;
    int64_t process = 0;
    int64_t thread = 0;

    bool operator==(const thread_key &) const = default;
    auto operator<=>(const thread_key &) const = default;
};

struct record {
    int64_t time; // nanoseconds since 1970
    thread_key of;
    kel_trace::event event;
    std::string_view event_name;
    std::string_view location;
    std::string_view domain;
    std::string_view message;
};

using record_taker = std::function<void(const record &)>;

} // namespace kel_trace

template <> struct std::hash<kel_trace::thread_key> {
    size_t operator()(const kel_trace::thread_key &key) const
    {
        return (static_cast<size_t>(key.process) << 32) + static_cast<size_t>(key.thread) * 0x9E3779B97F4A7C15U +
               key.host;
    }
};

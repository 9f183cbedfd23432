// A tracer's event as a record: which of the nine it is, whose, and its three texts. Where they are is looked up once
// for each class of events.
#pragma once

#include "kel-trace/reading/recording.h"

#include <babeltrace2/babeltrace.h>

#include <cstdint>
#include <optional>
#include <string>
#include <unordered_map>

namespace kel_trace
{

// `options` and `found` must outlive it; it adds hosts and processes to `found` as it comes upon them.
class event_decoder
{
public:
    event_decoder(const reading_options &options, recording &found) : options_(options), found_(found)
    {
    }

    // The record of an event message; null when it is not of our providers. Valid until the next call. Throws
    // `unreadable` when it does not say which thread it is of.
    const record *decode(const bt_message *message, int64_t time);

    // Nanoseconds since 1970 of an event message.
    static int64_t time_of(const bt_message *message);

private:
    struct event_kind {
        bool ours = false;
        bool has_texts = false;
        event kind = event::other;
        const char *name = "";
        uint32_t host = 0;
        int64_t trace_process = 0;                                   // of a trace of one process
        std::optional<uint64_t> vtid = {}, vpid = {}, procname = {}; // where they are in the context
        uint64_t location = 0, domain = 0, message = 0;
    };

    const event_kind &kind_of(const bt_event *event);
    event_kind look_up(const bt_event *event);
    uint32_t host_of(const bt_trace *trace);
    void meet(const bt_event *event, const event_kind &kind, int64_t process);

    const reading_options &options_;
    recording &found_;
    std::unordered_map<const bt_event_class *, event_kind> kinds_;
    const bt_event_class *newest_class_ = nullptr;
    const event_kind *newest_kind_ = nullptr;
    std::pair<uint32_t, int64_t> newest_process_{UINT32_MAX, 0};
    record record_{};
};

} // namespace kel_trace

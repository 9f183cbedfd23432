// An operation that reported something, as its records show it. How it is built from records is operation_builder.h.
#pragma once

#include "kel-trace/reading/record.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace kel_trace
{

// A record for keeping.
struct kept_record {
    int64_t time = 0;
    kel_trace::event event = event::other;
    std::string location;
    std::string domain;
    std::string message;
};

// One refusal, and the functions of the library that passed it on.
struct complaint {
    std::string by;              // whose refusal: "driver kit", ... or "library itself"
    std::string what;            // what refused; may be empty
    std::optional<int64_t> code; // none where the records do not carry it
    std::string text;
    int64_t time = 0;
    std::vector<std::string> reporters; // innermost first
    bool ignored = false;               // the operation went on
    size_t times = 1;                   // in a row

    const std::string &reporter() const
    {
        return reporters.back();
    }
    // What its last reporter named.
    const std::string &named_last() const
    {
        return reporters.size() > 1 ? reporters[reporters.size() - 2] : what;
    }
};

// Its memory is used again for the next operation of the thread: a taker that wants to keep one copies it.
struct operation {
    std::string name;
    thread_key of;
    bool framed = false;               // its entry was recorded
    bool whole = false;                // its exit, too
    std::vector<complaint> complaints; // in their order
    std::vector<std::string> errors;   // conditions of the library's own, at most a few
    std::vector<kept_record> kept;     // and room for more
    size_t kept_count = 0;
    size_t records_left_out = 0; // in the middle of a long one

    std::span<const kept_record> records() const
    {
        return std::span(kept).first(kept_count);
    }

    // What it failed of: the complaint that was not ignored; null when there is none.
    const complaint *failure() const
    {
        return !complaints.empty() && !complaints.back().ignored ? &complaints.back() : nullptr;
    }
};

} // namespace kel_trace

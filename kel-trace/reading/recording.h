// What is known of recordings beside their records. Filled while the records are read: complete only after the last
// one.
#pragma once

#include "kel-trace/reading/record.h"

#include <cstdint>
#include <map>
#include <set>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kel_trace
{

// The recording cannot be read, or does not say what is needed. The message says what to do.
struct unreadable : std::runtime_error {
    using std::runtime_error::runtime_error;
};

struct reading_options {
    bool single_thread = false; // records without the context vtid are one thread's of each process
};

// A stream file of which some or all was left out.
struct damaged_file {
    std::string file;
    std::string why;
};

struct recording {
    std::vector<std::string> hosts; // by thread_key::host; "" if a trace does not name it
    std::map<std::pair<uint32_t, int64_t>, std::string> process_names; // by host and process, where they are recorded
    std::set<std::pair<uint32_t, int64_t>> processes;
    std::vector<damaged_file> damaged;
    uint64_t records = 0;
    uint64_t discarded_records = 0; // those that the tracer could count
    uint64_t discarded_packets = 0;
    bool unknown_discarded = false; // and others that it could not
    int64_t first = 0;              // nanoseconds since 1970; of no meaning without records
    int64_t last = 0;

    bool complete() const
    {
        return discarded_records == 0 && discarded_packets == 0 && !unknown_discarded && damaged.empty();
    }
};

} // namespace kel_trace

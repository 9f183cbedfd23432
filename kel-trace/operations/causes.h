// Why operations failed, equal causes together, and what followed from them.
//
// A failure is a consequence when its object's creation failed before, or when the latest start of its service did, in
// the same process. It is likely one only when its records do not name the object, or when no successes are recorded,
// which could have come in between.
//
// Operations are taken in the order in which they ended. What is kept grows with the number of different causes, not
// with the recording.
//
//     causes all([](const thread_key &, int64_t) { return true; });
//     operation_builder builder([&](const operation &done) { all.take(done); });
//     ...
//     for (const cause *one : all.failures())
//         show(one->newest.name, one->count);
#pragma once

#include "kel-trace/operations/operation.h"

#include <cstdint>
#include <functional>
#include <list>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace kel_trace
{

// Operations that failed alike because of another failure.
struct consequence {
    std::string operation;
    complaint why; // of the newest
    uint64_t count = 0;
    bool certain = true;
    int64_t last = 0;
    std::vector<std::string> objects; // the first few
};

// Operations that failed alike.
struct cause {
    operation newest;
    int64_t first = 0; // when the failures were reported
    int64_t last = 0;
    uint64_t count = 0;
    std::vector<std::string> objects; // the first few
    uint64_t more_objects = 0;        // failures of others
    std::map<std::string, consequence> consequences;
};

// What was reported and ignored, or reported without a refusal.
struct aside {
    std::string operation;
    complaint what; // the newest
    std::string error;
    thread_key of;
    uint64_t count = 0;
    int64_t first = 0;
    int64_t last = 0;
};

class causes
{
public:
    // Which failures are asked for. Others have no effect on those.
    using filter = std::function<bool(const thread_key &of, int64_t time)>;
    explicit causes(filter wanted) : wanted_(std::move(wanted))
    {
    }

    // Copies what it keeps of the operation.
    void take(const operation &done);

    // From the one that occurred last longest ago to the newest.
    std::vector<const cause *> failures() const;
    // In the same order. Both lists are valid until the next operation is taken.
    std::vector<const aside *> asides() const;

private:
    struct process_state {
        std::map<std::string, cause *> failed; // by object, and by service
        cause *failed_creation[2] = {};        // the latest of EBCOM and of PCEPs
        bool shows_successes = false;
    };

    void succeed(process_state &state, const operation &done);
    void fail(process_state &state, const operation &done, const complaint &why);
    void put_aside(const operation &done);

    filter wanted_;
    std::map<std::pair<uint32_t, int64_t>, process_state> processes_;
    std::map<std::string, cause> causes_;
    std::map<std::string, aside> asides_;
};

} // namespace kel_trace

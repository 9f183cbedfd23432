// What the library promises about records: in each thread, every operation that was entered exits, innermost first;
// every record has a known event, a domain that matches it, a location in the library's sources and a message of its
// shape; no message is cut. Whether the documentation's promises about the library's behaviour hold is not checked
// here.
//
//     promises kept(false, [](const finding &one) { show(one.time, one.what); });
//     read(folders, {}, found, [&](const record &one) { kept.take(one); });
//     kept.end();
#pragma once

#include "kel-trace/operations/open_operations.h"
#include "kel-trace/reading/record.h"

#include <cstdint>
#include <functional>
#include <map>
#include <string>

namespace kel_trace
{

// A record that breaks a promise.
struct finding {
    int64_t time;
    thread_key of;
    std::string event;
    std::string location;
    std::string what;
};

class promises
{
public:
    using finding_taker = std::function<void(const finding &)>;

    // `partial`: the recording may begin and end within operations.
    promises(bool partial, finding_taker found) : partial_(partial), found_(std::move(found))
    {
    }

    // Records in the order of their times.
    void take(const record &record);
    // After the last record: entries without an exit are findings, unless the recording may be partial.
    void end();

    uint64_t records() const
    {
        return records_;
    }
    uint64_t findings() const
    {
        return findings_;
    }
    // That had operations.
    size_t threads() const
    {
        return open_.size();
    }

private:
    struct entry {
        int64_t time;
        std::string event;
        std::string location;
        std::string message;
    };

    void check_fields(const record &record);
    void check_frame(const record &record);
    void find(const record &record, std::string what);

    bool partial_;
    finding_taker found_;
    uint64_t records_ = 0;
    uint64_t findings_ = 0;
    std::map<thread_key, std::vector<entry>> open_;
};

} // namespace kel_trace

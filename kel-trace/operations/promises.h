// What the library promises about records: in each thread, every operation that was entered exits, innermost first; every
// record has a known event, a domain that matches it, a location in the library's sources and a message of its shape; no
// message is cut.
#pragma once

#include "kel-trace/operations/frames.h"
#include "kel-trace/reading/record.h"

#include <cstdint>
#include <functional>
#include <map>
#include <string>

namespace kel_trace
{

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

    void take(const record &record);
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

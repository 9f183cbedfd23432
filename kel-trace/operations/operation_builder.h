// Makes operations of the records of each thread. An operation is what is between an outermost entry and its exit, and
// what is reported of it right after, by functions around it that have no entry of their own. Records outside of any
// operation, of such functions alone or of a recording without entries, make one for each chain of reports.
//
// An exit carries no code: what an operation reported, and did not go on after, counts as its failure. What it keeps of
// each thread is bounded.
//
//     operation_builder builder([](const operation &done) { show(done.name, done.failure()); });
//     read(folders, {}, found, [&](const record &one) { builder.take(one); });
//     builder.end();
#pragma once

#include "kel-trace/operations/open_operations.h"
#include "kel-trace/operations/operation.h"

#include <deque>
#include <functional>
#include <string>
#include <unordered_map>

namespace kel_trace
{

class operation_builder
{
public:
    using operation_taker = std::function<void(const operation &)>;

    // Each operation is handed on once it is known how it ended.
    explicit operation_builder(operation_taker finished) : finished_(std::move(finished))
    {
    }

    // Records in the order of their times, of any threads.
    void take(const record &record);
    // After the last record: hands on the operations that are still open.
    void end();

    const cut_operations &cut() const
    {
        return cut_;
    }

private:
    struct frame {
        std::string name;
    };
    struct thread {
        open_operations<frame> open;
        kel_trace::operation operation; // what is being made of the records, if `busy`
        bool busy = false;
        std::vector<kept_record> context; // outside of operations, a ring
        size_t context_next = 0;
    };

    void keep(thread &of, const record &record);
    void begin(thread &of, const record &record);
    void begin_loose(thread &of, const record &record);
    void note(thread &of, const record &record);
    void report(thread &of, const record &record);
    bool continues(const thread &of, const record &record) const;
    void finish(thread &of);

    operation_taker finished_;
    std::unordered_map<thread_key, thread> threads_;
    thread *newest_ = nullptr;
    thread_key newest_key_;
    cut_operations cut_;
};

} // namespace kel_trace

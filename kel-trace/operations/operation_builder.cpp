// Follows records of one thread from function to function, and decides which reports the operation continued after.
#include "kel-trace/operations/operation_builder.h"

#include "text/refusal.h"

#include <algorithm>

namespace kel_trace
{
namespace
{

// Bounds on memory: of a longer operation the first 96 records are kept, and the newest ones. The beginning has the
// parameters, the end the failure.
constexpr size_t most_records = 192;
constexpr size_t first_records = 96;
constexpr size_t context_records = 12;
constexpr size_t most_errors = 8;

// Failures after which the library continues: in the take-down of the schedulers, in the roll-back of a queue, and of a
// thread's name. The records after them show that too, but a recording of failures only does not have them.
constexpr struct {
    std::string_view function;
    std::string_view named;
} known_ignored[] = {
    {"kel_ic_ebcom_deinit_qos", "kel_init_qos_queue_rem"},
    {"kel_ic_ebcom_deinit_qos", "remove_scheduler"},
    {"kel_ic_ebcom_add_shaper", "kel_init_qos_queue_rem"},
    {"kel_core_ic_ebcom_start", "pthread_setname_np(kel-time-stamp)"},
};

// Misspelt names in the library's records, which stay as they are.
constexpr struct {
    std::string_view reported;
    std::string_view function;
} other_names[] = {
    {"udpate_timestamp_offset", "update_timestamp_offset"},
    {"kel_core_ic_set_burst_stats", "kel_ic_ebcom_set_burst_stats"},
};

std::string_view own_name(std::string_view reported)
{
    for (const auto &[other, function] : other_names)
        if (reported == other)
            return function;
    return reported;
}

bool is_known_ignored(const complaint &complaint)
{
    return std::ranges::any_of(known_ignored, [&](const auto &row) {
        return row.function == complaint.reporter() && row.named == complaint.named_last();
    });
}

bool is_same(const complaint &a, const complaint &b)
{
    return a.ignored == b.ignored && a.what == b.what && a.code == b.code && a.text == b.text &&
           a.reporters == b.reporters;
}

// A roll-back retries without limit: count equal refusals instead of storing each.
void fold_repeated(std::vector<complaint> &complaints)
{
    const size_t count = complaints.size();
    if (count < 2 || !is_same(complaints[count - 2], complaints[count - 1]))
        return;
    complaints[count - 2].times += complaints[count - 1].times;
    complaints.pop_back();
}

void assign(kept_record &kept, const record &record)
{
    kept.time = record.time;
    kept.event = record.event;
    kept.location = record.location;
    kept.domain = record.domain;
    kept.message = record.message;
}

// The function that made the record: entries and exits contain its name alone.
std::string_view speaker(const record &record)
{
    return frame_name(record.message);
}

} // namespace

// The oldest of the newer half makes room, and its memory is used for the new one.
void operation_builder::keep(thread &of, const record &record)
{
    auto &kept = of.operation.kept;
    size_t &count = of.operation.kept_count;
    if (count == most_records) {
        std::rotate(kept.begin() + first_records, kept.begin() + first_records + 1, kept.end());
        --count;
        ++of.operation.records_left_out;
    }
    if (count == kept.size())
        kept.emplace_back();
    assign(kept[count++], record);
}

// The operation of the thread is used again with its memory: only the counts say what of it is valid.
void operation_builder::begin(thread &of, const record &record)
{
    of.busy = true;
    of.operation.name = speaker(record);
    of.operation.of = record.of;
    of.operation.framed = record.event == event::fn_enter;
    of.operation.whole = false;
    of.operation.complaints.clear();
    of.operation.errors.clear();
    of.operation.kept_count = 0;
    of.operation.records_left_out = 0;
}

// An operation without an entry record, with the thread's latest records as its context. A function without an entry
// may have announced its calls there.
void operation_builder::begin_loose(thread &of, const record &record)
{
    begin(of, record);
    of.operation.kept.resize(std::max(of.operation.kept.size(), of.context.size()));
    for (size_t i = 0; i < of.context.size(); ++i)
        std::swap(of.operation.kept[of.operation.kept_count++], of.context[(of.context_next + i) % of.context.size()]);
    of.context.clear();
    of.context_next = 0;
}

// Whether a record after the outermost exit still belongs to that operation: it reports the operation's failure, or
// another part of the same report.
bool operation_builder::continues(const thread &of, const record &record) const
{
    const auto [function, detail] = text::parts_of(record.message);
    if (record.event == event::error)
        return !of.operation.complaints.empty() && function == of.operation.name;
    if (!is_exception(record.event))
        return false;
    const auto refusal = text::refusal_in(detail);
    if (refusal && own_name(refusal->what) == of.operation.name)
        return true;
    return !of.operation.framed && of.operation.complaints.empty() && function == of.operation.name;
}

// A chain goes from the inside out: each report names what failed underneath. One that names the function that reported
// before it continues that chain; any other begins a new one, and shows that the operation went on after the last.
void operation_builder::report(thread &of, const record &record)
{
    const auto [function, detail] = text::parts_of(record.message);
    const auto refusal = text::refusal_in(detail);
    auto &complaints = of.operation.complaints;
    if (!refusal)
        return;
    if (!complaints.empty() && !complaints.back().ignored && own_name(refusal->what) == complaints.back().reporter())
        complaints.back().reporters.emplace_back(function);
    else {
        if (!complaints.empty())
            complaints.back().ignored = true;
        fold_repeated(complaints);
        complaints.push_back({std::string(refusal->by),
                              std::string(refusal->what),
                              refusal->code,
                              std::string(refusal->text),
                              record.time,
                              {std::string(function)}});
    }
    complaints.back().ignored = is_known_ignored(complaints.back());
    if (of.open.empty())
        of.operation.name = function;
}

// Updates the operation from a record. Any record after a report, except the exit of the reporting function, shows that
// the operation continued.
void operation_builder::note(thread &of, const record &record)
{
    operation &operation = of.operation;
    if (is_exception(record.event))
        return report(of, record);
    if (record.event == event::error) {
        if (operation.errors.size() < most_errors)
            operation.errors.emplace_back(record.message);
        return;
    }
    if (!operation.complaints.empty() &&
        !(record.event == event::fn_exit && speaker(record) == operation.complaints.back().reporter()))
        operation.complaints.back().ignored = true;
}

// A report that did not reach the operation itself was dealt with underneath.
void operation_builder::finish(thread &of)
{
    if (!of.busy)
        return;
    of.busy = false;
    operation &done = of.operation;
    if (!done.complaints.empty() && done.complaints.back().reporter() != done.name)
        done.complaints.back().ignored = true;
    fold_repeated(done.complaints);
    finished_(done);
}

// Outside of operations a record either continues the one that has just ended, begins one, or is kept as context.
void operation_builder::take(const record &record)
{
    if (!newest_ || newest_key_ != record.of) {
        newest_ = &threads_[record.of];
        newest_key_ = record.of;
    }
    thread &of = *newest_; // records of one thread often follow one another: no look-up for these
    const bool enters = record.event == event::fn_enter;
    const bool leaves = record.event == event::fn_exit;

    if (of.open.empty()) {
        if (of.busy && !continues(of, record))
            finish(of);
        if (leaves)
            ++cut_.at_beginning;
        if (!of.busy && enters)
            begin(of, record);
        else if (!of.busy && (is_exception(record.event) || record.event == event::error))
            begin_loose(of, record);
        else if (!of.busy) {
            if (of.context.size() < context_records)
                of.context.emplace_back();
            assign(of.context[of.context_next % of.context.size()], record);
            of.context_next = (of.context_next + 1) % context_records;
            return;
        }
    }
    keep(of, record);

    if (enters)
        of.open.enter({std::string(speaker(record))});
    if (leaves)
        of.open.leave(speaker(record), cut_, [](const frame &) {});
    if (of.open.empty() && leaves)
        of.operation.whole = true;
    note(of, record);
}

void operation_builder::end()
{
    for (auto &[key, of] : threads_) {
        cut_.at_end += of.open.size();
        finish(of);
    }
}

} // namespace kel_trace

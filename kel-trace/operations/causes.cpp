// Which operation starts, creates and needs what, and from that which failure follows from which. Building operations
// from records is in operation_builder.cpp. How they are shown is views/explain_view.cpp.
#include "kel-trace/operations/causes.h"

#include "kel-trace/operations/parameters.h"

#include <fmt/core.h>

#include <algorithm>

namespace kel_trace
{
namespace
{

// Named for each cause, for people; the others are counted.
constexpr size_t most_objects = 8;

enum class role : uint8_t { start, stop, create };

// Operations that others depend on. A start or stop resets its service; what the others create is in their parameters.
constexpr struct {
    std::string_view operation;
    kel_trace::role role;
} roles[] = {
    {"kel_core_ic_ebcom_start", role::start},        {"kel_core_ic_pcep_start", role::start},
    {"kel_core_ic_ebcom_stop", role::stop},          {"kel_core_ic_pcep_stop", role::stop},
    {"kel_core_ic_ebcom_path_add", role::create},    {"kel_core_ic_pcep_add", role::create},
    {"kel_core_ic_pcep_mc_group_add", role::create}, {"kel_core_ic_ebcom_interface_create", role::create},
};

// What the library reports for an id that it does not know: the record does not name the object.
constexpr std::string_view unknown_pcep = "(pcep_id)";

std::optional<role> role_of(std::string_view operation)
{
    for (const auto &row : roles)
        if (row.operation == operation)
            return row.role;
    return std::nullopt;
}

// Names of functions are enough: all operations of PCEPs and groups have it in their names.
std::string service_of(std::string_view operation)
{
    return operation.find("_pcep_") == std::string_view::npos ? "EBCOM" : "PCEP";
}

bool belongs_to(std::string_view object, std::string_view service)
{
    return (object.starts_with("PCEP ") || object.starts_with("group ")) == (service == "PCEP");
}

// What makes two failures alike: the operation and its refusal, not the object.
std::string key_of(std::string_view operation, const complaint &why)
{
    return fmt::format("{}\n{}\n{}\n{}", operation, why.what, why.text, why.code ? std::to_string(*why.code) : "");
}

template <typename Kept> std::vector<const Kept *> by_last(const std::map<std::string, Kept> &all)
{
    std::vector<const Kept *> sorted;
    sorted.reserve(all.size());
    for (const auto &[key, one] : all)
        sorted.push_back(&one);
    std::ranges::stable_sort(sorted, {}, &Kept::last);
    return sorted;
}

// Keeps at most `most_objects`, because a recording can name any number. Returns whether all fit.
bool add_objects(std::vector<std::string> &known, const std::vector<std::string> &objects)
{
    bool room = true;
    for (const std::string &object : objects) {
        if (std::ranges::find(known, object) != known.end())
            continue;
        room = known.size() < most_objects;
        if (room)
            known.push_back(object);
    }
    return room;
}

// One that is only likely once stays so: a certain one later does not prove the first.
void add_consequence(cause &of, const operation &done, const complaint &why, bool certain)
{
    consequence &one = of.consequences[key_of(done.name, why)];
    one.operation = done.name;
    one.why = why;
    one.certain = one.certain && certain;
    one.last = why.time;
    ++one.count;
    add_objects(one.objects, objects_of(done));
}

} // namespace

// A success ends what depended on an earlier failure: the object exists now. An operation that was recorded in part
// proves nothing.
void causes::succeed(process_state &state, const operation &done)
{
    if (!done.framed || !done.whole)
        return;
    const auto role = role_of(done.name);
    if (!role)
        return;
    const std::string service = service_of(done.name);
    if (*role != role::create) { // earlier objects do not exist any more
        std::erase_if(state.failed,
                      [&](const auto &one) { return one.first == service || belongs_to(one.first, service); });
        state.failed_creation[service == "PCEP"] = nullptr;
    }
    if (!state.failed.empty())
        for (const std::string &object : objects_of(done))
            state.failed.erase(object);
}

// A failure is a consequence if its object or its service failed before. Without the object's name, the latest failed
// creation of the same service is the likely cause. A start follows from nothing, and a cause is never its own
// consequence.
void causes::fail(process_state &state, const operation &done, const complaint &why)
{
    const auto role = role_of(done.name);
    const std::string service = service_of(done.name);
    const std::vector<std::string> objects = objects_of(done);
    const std::string key = key_of(done.name, why);

    cause *before = nullptr;
    bool certain = state.shows_successes;
    if (role != role::start) {
        for (const std::string &object : objects)
            if (const auto found = state.failed.find(object); found != state.failed.end())
                before = found->second;
        if (const auto found = state.failed.find(service); found != state.failed.end())
            before = found->second;
        if (!before && role != role::create && why.what == unknown_pcep) {
            before = state.failed_creation[service == "PCEP"];
            certain = false;
        }
    }
    const auto same = causes_.find(key);
    if (before && (same == causes_.end() || &same->second != before))
        return add_consequence(*before, done, why, certain);

    cause &of = causes_[key];
    if (of.count++ == 0)
        of.first = why.time;
    of.last = why.time;
    of.newest = done;
    of.more_objects += !add_objects(of.objects, objects);
    if (role == role::start)
        state.failed[service] = &of;
    if (role == role::create) {
        state.failed_creation[service == "PCEP"] = &of;
        for (const std::string &object : objects)
            state.failed[object] = &of;
    }
}

// All complaints but the one that the operation failed of, and errors of an operation without any.
void causes::put_aside(const operation &done)
{
    const auto add = [&](const std::string &key, const complaint &what, const std::string &error, int64_t time) {
        aside &one = asides_[key];
        if (one.count == 0)
            one.first = time;
        one.count += what.times;
        one.operation = done.name;
        one.what = what;
        one.error = error;
        one.of = done.of;
        one.last = time;
    };
    for (const complaint &one : done.complaints)
        if (&one != done.failure())
            add(key_of(done.name, one), one, "", one.time);
    if (!done.complaints.empty()) // its ERROR records are shown with the failure
        return;
    for (const std::string &error : done.errors)
        add(done.name + "\n" + error, {}, error, done.records().back().time);
}

// Successes are followed even if they are not asked for: they end what later failures could follow from.
void causes::take(const operation &done)
{
    process_state &state = processes_[{done.of.host, done.of.process}];
    state.shows_successes |= done.framed;
    const complaint *why = done.failure();
    if (!why)
        succeed(state, done);
    if (done.complaints.empty() && done.errors.empty())
        return;
    if (!wanted_(done.of, why ? why->time : done.records().back().time))
        return;
    put_aside(done);
    if (why)
        fail(state, done, *why);
}

std::vector<const cause *> causes::failures() const
{
    return by_last(causes_);
}

std::vector<const aside *> causes::asides() const
{
    return by_last(asides_);
}

} // namespace kel_trace

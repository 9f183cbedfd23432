// Finds the library's events, their three strings, and the contexts that name thread and process. Merging is in
// reader.cpp.
#include "kel-trace/reading/event_decoder.h"

#include <algorithm>
#include <iterator>

namespace kel_trace
{
namespace
{

constexpr const char *no_thread =
    "the recording does not say which thread made a record. Record again after\n"
    "    lttng add-context --userspace --type=vpid --type=vtid --type=procname\n"
    "or read it with --single-thread if there was one thread only: add the context vtid otherwise";

// Null: events of this class have no such context. Whoever wrote the recording may have given the name to another type:
// then there is none.
std::optional<uint64_t> member_index(const bt_field_class *structure, const char *name, bt_field_class_type type)
{
    if (!structure)
        return std::nullopt;
    const uint64_t count = bt_field_class_structure_get_member_count(structure);
    for (uint64_t index = 0; index < count; ++index) {
        const auto *member = bt_field_class_structure_borrow_member_by_index_const(structure, index);
        const auto *value = bt_field_class_structure_member_borrow_field_class_const(member);
        if (std::string_view(bt_field_class_structure_member_get_name(member)) == name)
            return bt_field_class_type_is(bt_field_class_get_type(value), type) ? std::optional(index) : std::nullopt;
    }
    return std::nullopt;
}

int64_t whole_number(const bt_field *field)
{
    if (bt_field_class_type_is(bt_field_get_class_type(field), BT_FIELD_CLASS_TYPE_SIGNED_INTEGER))
        return bt_field_integer_signed_get_value(field);
    return static_cast<int64_t>(bt_field_integer_unsigned_get_value(field));
}

std::string_view text_of(const bt_field *field)
{
    return {bt_field_string_get_value(field), bt_field_string_get_length(field)};
}

const bt_field *context_of(const bt_event *event, uint64_t index)
{
    return bt_field_structure_borrow_member_field_by_index_const(bt_event_borrow_common_context_field_const(event),
                                                                 index);
}

std::optional<int64_t> environment_number(const bt_trace *trace, const char *name)
{
    const bt_value *value = bt_trace_borrow_environment_entry_value_by_name_const(trace, name);
    if (!value || !bt_value_is_signed_integer(value))
        return std::nullopt;
    return bt_value_integer_signed_get(value);
}

std::string environment_text(const bt_trace *trace, const char *name)
{
    const bt_value *value = bt_trace_borrow_environment_entry_value_by_name_const(trace, name);
    return value && bt_value_is_string(value) ? bt_value_string_get(value) : "";
}

event event_named(std::string_view name)
{
    name.remove_prefix(our_providers.size());
    return static_cast<event>(std::ranges::find(event_names, name) - std::begin(event_names));
}

} // namespace

// Nanoseconds of a signed number end in the year 2262.
int64_t event_decoder::time_of(const bt_message *message)
{
    int64_t time = 0;
    const bt_clock_snapshot *snapshot = bt_message_event_borrow_default_clock_snapshot_const(message);
    if (bt_clock_snapshot_get_ns_from_origin(snapshot, &time) != BT_CLOCK_SNAPSHOT_GET_NS_FROM_ORIGIN_STATUS_OK)
        throw unreadable("a record's time is out of range");
    return time;
}

// Hosts are few, and looked up once for a class of events.
uint32_t event_decoder::host_of(const bt_trace *trace)
{
    const std::string name = environment_text(trace, "hostname");
    const auto known = std::ranges::find(found_.hosts, name);
    const auto index = static_cast<uint32_t>(known - found_.hosts.begin());
    if (known == found_.hosts.end())
        found_.hosts.push_back(name);
    return index;
}

// The contexts vtid, vpid and procname may be of all events of a stream or of one kind of event, by how they were
// added. With buffers for each process a trace is of one process, whose id is in the trace's environment.
event_decoder::event_kind event_decoder::look_up(const bt_event *event)
{
    const bt_event_class *event_class = bt_event_borrow_class_const(event);
    const char *name = bt_event_class_get_name(event_class);
    if (!name || !std::string_view(name).starts_with(our_providers))
        return {};
    const bt_stream *stream = bt_event_borrow_stream_const(event);
    const bt_trace *trace = bt_stream_borrow_trace_const(stream);
    const bt_field_class *payload = bt_event_class_borrow_payload_field_class_const(event_class);
    const bt_field_class *context =
        bt_stream_class_borrow_event_common_context_field_class_const(bt_stream_borrow_class_const(stream));

    event_kind kind{.ours = true, .kind = event_named(name), .name = name, .host = host_of(trace)};
    kind.trace_process = environment_number(trace, "vpid").value_or(0);
    kind.vtid = member_index(context, "vtid", BT_FIELD_CLASS_TYPE_INTEGER);
    kind.vpid = member_index(context, "vpid", BT_FIELD_CLASS_TYPE_INTEGER);
    kind.procname = member_index(context, "procname", BT_FIELD_CLASS_TYPE_STRING);
    const auto location = member_index(payload, "location", BT_FIELD_CLASS_TYPE_STRING);
    const auto domain = member_index(payload, "domain", BT_FIELD_CLASS_TYPE_STRING);
    const auto message = member_index(payload, "message", BT_FIELD_CLASS_TYPE_STRING);
    kind.has_texts = location && domain && message;
    kind.location = location.value_or(0);
    kind.domain = domain.value_or(0);
    kind.message = message.value_or(0);
    return kind;
}

// Events of one class often follow one another.
const event_decoder::event_kind &event_decoder::kind_of(const bt_event *event)
{
    const bt_event_class *event_class = bt_event_borrow_class_const(event);
    if (event_class == newest_class_)
        return *newest_kind_;
    auto known = kinds_.find(event_class);
    if (known == kinds_.end())
        known = kinds_.emplace(event_class, look_up(event)).first;
    newest_class_ = event_class;
    newest_kind_ = &known->second;
    return known->second;
}

// What the recording says about a process, at its first record.
void event_decoder::meet(const bt_event *event, const event_kind &kind, int64_t process)
{
    newest_process_ = {kind.host, process};
    if (!found_.processes.insert(newest_process_).second)
        return;
    std::string name = environment_text(bt_stream_borrow_trace_const(bt_event_borrow_stream_const(event)), "procname");
    if (kind.procname)
        name = text_of(context_of(event, *kind.procname));
    if (!name.empty())
        found_.process_names[newest_process_] = name;
}

// Runs for every record: what can be looked up once for a class of events is in its kind.
const record *event_decoder::decode(const bt_message *message, int64_t time)
{
    const bt_event *event = bt_message_event_borrow_event_const(message);
    const event_kind &kind = kind_of(event);
    if (!kind.ours)
        return nullptr;
    if (!kind.has_texts)
        throw unreadable(std::string("event ") + kind.name + " lacks the strings location, domain and message");
    if (!kind.vtid && !options_.single_thread)
        throw unreadable(no_thread);

    const auto number_at = [event](std::optional<uint64_t> at, int64_t otherwise) {
        return at ? whole_number(context_of(event, *at)) : otherwise;
    };
    const bt_field *payload = bt_event_borrow_payload_field_const(event);
    const auto text_at = [payload](uint64_t index) {
        return text_of(bt_field_structure_borrow_member_field_by_index_const(payload, index));
    };
    const int64_t process = number_at(kind.vpid, kind.trace_process);
    if (newest_process_ != std::pair(kind.host, process))
        meet(event, kind, process);
    record_ = {.time = time,
               .of = {kind.host, process, options_.single_thread ? 0 : number_at(kind.vtid, 0)},
               .event = kind.kind,
               .event_name = kind.name,
               .location = text_at(kind.location),
               .domain = text_at(kind.domain),
               .message = text_at(kind.message)};
    return &record_;
}

} // namespace kel_trace

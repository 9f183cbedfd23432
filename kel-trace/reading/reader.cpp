// A graph of libbabeltrace2: one source for each trace, and a sink of our own that merges their streams by time: the
// library's muxer ends at the first damaged stream, but here the other streams continue. The meaning of an event is
// event_decoder.cpp's.
#include "kel-trace/reading/reader.h"

#include "kel-trace/reading/bt_handle.h"
#include "kel-trace/reading/event_decoder.h"
#include "kel-trace/reading/trace_folders.h"

#include <algorithm>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <memory>
#include <system_error>

namespace kel_trace
{
namespace
{

namespace fs = std::filesystem;

constexpr const char *newer_format =
    ": it is in a newer trace format than the installed libbabeltrace2 reads. Record in the older one with\n"
    "    lttng create NAME --trace-format=ctf-1.8";

// ---- Merging ----

// One stream of messages: a batch of them, and the next event in it.
struct stream {
    std::string name;
    bt_iterator_handle iterator = {};
    bt_message_array_const batch = nullptr;
    uint64_t count = 0;
    uint64_t next = 0;
    int64_t time = 0; // of the next event
    bool ended = false;
};

class merger
{
public:
    merger(const reading_options &options, recording &found, const record_taker &take)
        : found_(found), take_(take), decoder_(options, found)
    {
    }

    void add_stream(std::string name)
    {
        streams_.push_back({.name = std::move(name)});
    }

    size_t stream_count() const
    {
        return streams_.size();
    }

    void start(bt_self_component_sink *self)
    {
        for (size_t index = 0; index < streams_.size(); ++index) {
            bt_message_iterator *iterator = nullptr;
            if (bt_message_iterator_create_from_sink_component(
                    self, bt_self_component_sink_borrow_input_port_by_index(self, index), &iterator) !=
                BT_MESSAGE_ITERATOR_CREATE_FROM_SINK_COMPONENT_STATUS_OK)
                leave_out(streams_[index]);
            streams_[index].iterator.reset(iterator);
        }
    }

    // Reads all streams. An exception must not pass through libbabeltrace2, which is C: it is kept for the caller of
    // the graph, and the messages that were not taken are given back. A stream stays out of the heap as long as it has
    // the earliest event, because records often come in runs.
    void run()
    try {
        std::vector<stream *> by_time;
        for (stream &one : streams_)
            if (advance(one))
                by_time.push_back(&one);
        const auto later = [](const stream *a, const stream *b) { return a->time > b->time; };
        std::ranges::make_heap(by_time, later);
        while (!by_time.empty()) {
            std::ranges::pop_heap(by_time, later);
            stream &earliest = *by_time.back();
            const int64_t until = by_time.size() > 1 ? by_time.front()->time : INT64_MAX;
            bool more = true;
            while (more && earliest.time <= until) {
                take(earliest);
                more = advance(earliest);
            }
            if (more)
                std::ranges::push_heap(by_time, later);
            else
                by_time.pop_back();
        }
    } catch (...) {
        thrown = std::current_exception();
        for (stream &one : streams_)
            while (one.next < one.count)
                give_back(one);
    }

    std::exception_ptr thrown;

private:
    void leave_out(stream &one)
    {
        one.ended = true;
        found_.damaged.push_back({one.name, taken_reason()});
    }

    // Goes to the stream's next event. False: there is none.
    bool advance(stream &one)
    {
        for (;;) {
            for (; one.next < one.count; give_back(one)) {
                const bt_message *message = one.batch[one.next];
                if (bt_message_get_type(message) == BT_MESSAGE_TYPE_EVENT) {
                    one.time = event_decoder::time_of(message);
                    return true;
                }
                note_loss(message);
            }
            if (!fill(one))
                return false;
        }
    }

    static void give_back(stream &one)
    {
        bt_message_put_ref(one.batch[one.next++]);
    }

    // A stream that fails is noted as damaged and ends; what was read of it counts.
    bool fill(stream &one)
    {
        if (one.ended)
            return false;
        one.next = one.count = 0;
        switch (bt_message_iterator_next(one.iterator.get(), &one.batch, &one.count)) {
        case BT_MESSAGE_ITERATOR_NEXT_STATUS_OK:
            return true;
        case BT_MESSAGE_ITERATOR_NEXT_STATUS_END:
            one.ended = true;
            return false;
        default:
            leave_out(one);
            return false;
        }
    }

    void take(stream &one)
    {
        const bt_message_handle message(one.batch[one.next++]);
        const record *taken = decoder_.decode(message.get(), one.time);
        if (!taken)
            return;
        if (found_.records++ == 0)
            found_.first = taken->time;
        found_.last = taken->time;
        take_(*taken);
    }

    // Losses are messages between the events. Some tracers say that something was lost, but not how much.
    void note_loss(const bt_message *message)
    {
        const bt_message_type type = bt_message_get_type(message);
        if (type == BT_MESSAGE_TYPE_DISCARDED_EVENTS)
            add_loss(message, bt_message_discarded_events_get_count, found_.discarded_records);
        if (type == BT_MESSAGE_TYPE_DISCARDED_PACKETS)
            add_loss(message, bt_message_discarded_packets_get_count, found_.discarded_packets);
    }

    void add_loss(const bt_message *message, bt_property_availability (*count_in)(const bt_message *, uint64_t *),
                  uint64_t &sum)
    {
        uint64_t count = 0;
        if (count_in(message, &count) == BT_PROPERTY_AVAILABILITY_AVAILABLE)
            sum += count;
        else
            found_.unknown_discarded = true;
    }

    recording &found_;
    const record_taker &take_;
    event_decoder decoder_;
    std::vector<stream> streams_;
};

merger &merger_of(bt_self_component_sink *self)
{
    return *static_cast<merger *>(bt_self_component_get_data(bt_self_component_sink_as_self_component(self)));
}

bt_component_class_initialize_method_status
initialize(bt_self_component_sink *self, bt_self_component_sink_configuration *, const bt_value *, void *data)
{
    bt_self_component_set_data(bt_self_component_sink_as_self_component(self), data);
    const auto count = static_cast<merger *>(data)->stream_count();
    for (size_t index = 0; index < count; ++index)
        if (bt_self_component_sink_add_input_port(self, std::to_string(index).c_str(), nullptr, nullptr) !=
            BT_SELF_COMPONENT_ADD_PORT_STATUS_OK)
            return BT_COMPONENT_CLASS_INITIALIZE_METHOD_STATUS_ERROR;
    return BT_COMPONENT_CLASS_INITIALIZE_METHOD_STATUS_OK;
}

bt_component_class_sink_graph_is_configured_method_status configured(bt_self_component_sink *self)
{
    merger_of(self).start(self);
    return BT_COMPONENT_CLASS_SINK_GRAPH_IS_CONFIGURED_METHOD_STATUS_OK;
}

bt_component_class_sink_consume_method_status consume(bt_self_component_sink *self)
{
    merger_of(self).run();
    return BT_COMPONENT_CLASS_SINK_CONSUME_METHOD_STATUS_END;
}

// ---- The graph ----

// A step that fails only when libbabeltrace2 itself is out of something. 0 is OK for all of its functions.
void must_be_ok(int status)
{
    if (status != 0)
        throw unreadable(taken_reason());
}

// In every place where the library looks for plugins. One that does not load is passed over.
bt_plugin_handle ctf_plugin()
{
    const bt_plugin *plugin = nullptr;
    if (bt_plugin_find("ctf", BT_TRUE, BT_TRUE, BT_TRUE, BT_TRUE, BT_FALSE, &plugin) != BT_PLUGIN_FIND_STATUS_OK)
        throw unreadable("libbabeltrace2 has no plugin that reads recordings: is it installed completely?");
    return bt_plugin_handle(plugin);
}

bt_value_handle inputs(const fs::path &folder)
{
    bt_value_handle parameters(bt_value_map_create());
    bt_value *array = nullptr;
    bt_value_map_insert_empty_array_entry(parameters.get(), "inputs", &array);
    bt_value_array_append_string_element(array, folder.c_str());
    return parameters;
}

// Null: the trace does not open, and libbabeltrace2 has an error for this thread, which taken_reason() takes.
const bt_component_source *add_source(bt_graph *graph, const bt_plugin *plugin, const fs::path &trace)
{
    const bt_component_class_source *reader = bt_plugin_borrow_source_component_class_by_name_const(plugin, "fs");
    const bt_component_source *source = nullptr;
    bt_graph_add_source_component(graph, reader, trace.c_str(), inputs(trace).get(), BT_LOGGING_LEVEL_NONE, &source);
    return source;
}

// Why the trace does not open; empty when it does.
std::string problem_with(const bt_plugin *plugin, const fs::path &trace)
{
    bt_graph *graph = bt_graph_create(0);
    const bt_graph_handle owner(graph);
    return add_source(graph, plugin, trace) ? "" : taken_reason();
}

// ---- Damaged traces ----

// A folder that is deleted after the reading.
class scratch_folder
{
public:
    scratch_folder()
    {
        std::string name = (fs::temp_directory_path() / "kel-trace-XXXXXX").string();
        if (!mkdtemp(name.data()))
            throw unreadable("cannot create a temporary folder");
        path = name;
    }
    ~scratch_folder()
    {
        std::error_code ignored;
        fs::remove_all(path, ignored);
    }
    scratch_folder(const scratch_folder &) = delete;
    scratch_folder &operator=(const scratch_folder &) = delete;

    fs::path path;
};

// The same trace without the files that keep it from opening: a folder of links to the others. Files are added one by
// one, and taken out again when the trace does not open with them: the library says that a trace is damaged, but not
// always in which file.
class mended_trace
{
public:
    // Without its metadata a trace cannot be read at all.
    mended_trace(const bt_plugin *plugin, const fs::path &trace, recording &found) : trace_(trace.string())
    {
        link(trace / "metadata");
        if (const std::string why = problem_with(plugin, whole_.path); !why.empty())
            throw unreadable(trace_ + (is_newer_format(trace) ? newer_format : ": " + with_own_name(why)));
        for (const fs::path &file : stream_files(trace)) {
            link(file);
            const std::string why = problem_with(plugin, whole_.path);
            if (why.empty())
                continue;
            found.damaged.push_back({file.string(), why});
            fs::remove(whole_.path / file.filename());
        }
    }

    const fs::path &folder() const
    {
        return whole_.path;
    }

    // A message that may name the folder of links, with the trace's own name instead.
    std::string with_own_name(std::string text) const
    {
        const std::string links = whole_.path.string();
        for (size_t at = text.find(links); at != std::string::npos; at = text.find(links, at + trace_.size()))
            text.replace(at, links.size(), trace_);
        return text;
    }

private:
    void link(const fs::path &file)
    {
        fs::create_symlink(fs::absolute(file), whole_.path / file.filename());
    }

    std::string trace_;
    scratch_folder whole_;
};

std::vector<fs::path> traces_of(const std::vector<std::string> &folders)
{
    std::vector<fs::path> traces;
    for (const std::string &folder : folders) {
        const auto below = trace_folders(folder);
        if (below.empty())
            throw unreadable(folder + ": no recording found");
        traces.insert(traces.end(), below.begin(), below.end());
    }
    return traces;
}

} // namespace

// Each trace is tried in a graph of its own first, so the graph that reads is built of traces that open. Its ports are
// connected after all sources are there: the sink has as many ports as there are streams, from its beginning.
void read(const std::vector<std::string> &folders, const reading_options &options, recording &found,
          const record_taker &take)
{
    bt_logging_set_global_level(BT_LOGGING_LEVEL_NONE);
    const bt_plugin_handle plugin = ctf_plugin();
    std::vector<std::unique_ptr<mended_trace>> mended;
    bt_graph *graph = bt_graph_create(0);
    const bt_graph_handle owner(graph);
    merger merge(options, found, take);
    std::vector<const bt_port_output *> outputs;

    for (fs::path trace : traces_of(folders)) {
        if (!problem_with(plugin.get(), trace).empty())
            trace = mended.emplace_back(std::make_unique<mended_trace>(plugin.get(), trace, found))->folder();
        const bt_component_source *source = add_source(graph, plugin.get(), trace);
        if (!source)
            throw unreadable(trace.string() + ": " + taken_reason());
        const uint64_t count = bt_component_source_get_output_port_count(source);
        for (uint64_t index = 0; index < count; ++index) {
            outputs.push_back(bt_component_source_borrow_output_port_by_index_const(source, index));
            merge.add_stream(bt_port_get_name(bt_port_output_as_port_const(outputs.back())));
        }
    }

    const bt_sink_class_handle sink_class(bt_component_class_sink_create("merger", consume));
    bt_component_class_sink_set_initialize_method(sink_class.get(), initialize);
    bt_component_class_sink_set_graph_is_configured_method(sink_class.get(), configured);
    const bt_component_sink *sink = nullptr;
    must_be_ok(bt_graph_add_sink_component_with_initialize_method_data(graph, sink_class.get(), "merger", nullptr,
                                                                       &merge, BT_LOGGING_LEVEL_NONE, &sink));
    for (size_t index = 0; index < outputs.size(); ++index)
        must_be_ok(bt_graph_connect_ports(graph, outputs[index],
                                          bt_component_sink_borrow_input_port_by_index_const(sink, index), nullptr));
    if (!outputs.empty())
        must_be_ok(bt_graph_run(graph));
    if (merge.thrown)
        std::rethrow_exception(merge.thrown);
    for (damaged_file &one : found.damaged)
        for (const auto &trace : mended)
            one = {trace->with_own_name(one.file), trace->with_own_name(one.why)};
}

} // namespace kel_trace

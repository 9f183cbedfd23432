// What precedes every view: losses, the extent of the recording, processes that it does not distinguish.
#include "kel-trace/views/preface.h"

#include "kel-trace/reading/instant.h"
#include "text/printable.h"
#include "text/wording.h"

#include <fmt/core.h>

namespace kel_trace
{
namespace
{

using text::count_of;

// Each line says what to do about it, where anything can be done.
std::string losses_text(const recording &found)
{
    std::string text;
    if (found.discarded_records > 0 || found.discarded_packets > 0)
        text += fmt::format("The tracer discarded {} and {}: record again with larger buffers.\n",
                            count_of(found.discarded_records, "record"), count_of(found.discarded_packets, "packet"));
    if (found.unknown_discarded)
        text += "The tracer discarded records that it did not count: record again with larger buffers.\n";
    for (const damaged_file &one : found.damaged)
        text += fmt::format("Damaged, the rest of the file is left out: {}: {}\n", one.file,
                            text::without_controls(one.why));
    return text.empty() ? text : text + "The following covers the other records.\n";
}

// Names come from the recorded process, which may be called anything.
std::string process_name(const recording &found, const thread_key &of)
{
    const auto name = found.process_names.find({of.host, of.process});
    return name == found.process_names.end() ? "" : text::without_controls(name->second);
}

} // namespace

std::string preface_text(const recording &found, const cut_operations &cut)
{
    std::string text = losses_text(found);
    if (found.records == 0)
        return text + "No record of the library.\n";
    text += fmt::format("{} of {}{}, from {} to {}.\n", count_of(found.records, "record"),
                        count_of(found.processes.size(), "process", "processes"),
                        found.hosts.size() > 1 ? fmt::format(" on {} hosts", found.hosts.size()) : "",
                        instant_text(found.first), instant_text(found.last));
    if (found.processes.size() == 1 && found.processes.begin()->second == 0)
        text += "The recording does not distinguish processes: lttng add-context --userspace --type=vpid\n";
    if (cut != cut_operations{})
        text += fmt::format("Operations cut off, and not counted: {} by the beginning, {} by the end, {} within.\n",
                            cut.at_beginning, cut.at_end, cut.within);
    return text;
}

notation::document preface_document(const recording &found, const cut_operations *cut)
{
    auto damaged = notation::document::array();
    for (const damaged_file &one : found.damaged)
        damaged.push_back({{"file", one.file}, {"why", one.why}});
    auto hosts = notation::document::array();
    for (const std::string &host : found.hosts)
        hosts.push_back(host);
    notation::document recording = {
        {"complete", found.complete()},
        {"discarded_records", found.discarded_records},
        {"discarded_packets", found.discarded_packets},
        {"uncounted_discarded", found.unknown_discarded},
        {"damaged", damaged},
        {"records", found.records},
        {"hosts", hosts},
        {"processes", found.processes.size()},
        {"first", found.records ? notation::document(found.first) : nullptr},
        {"last", found.records ? notation::document(found.last) : nullptr},
    };
    if (cut)
        recording["cut_operations"] = {
            {"at_beginning", cut->at_beginning}, {"at_end", cut->at_end}, {"within", cut->within}};
    return recording;
}

std::string host_text(const recording &found, uint32_t host)
{
    const std::string &name = found.hosts.at(host);
    return name.empty() ? "unnamed host" : text::without_controls(name);
}

std::string thread_text(const recording &found, const thread_key &of)
{
    const std::string name = process_name(found, of);
    return fmt::format("{}process {}{}, thread {}",
                       found.hosts.size() > 1 ? fmt::format("host {}, ", host_text(found, of.host)) : "",
                       of.process ? std::to_string(of.process) : "unknown", name.empty() ? "" : " (" + name + ")",
                       of.thread ? std::to_string(of.thread) : "unknown");
}

// A thread_key has 0 for what the recording does not say; documents have null.
notation::document thread_document(const recording &found, const thread_key &of)
{
    const std::string name = process_name(found, of);
    return {{"host", found.hosts.at(of.host)},
            {"process", of.process ? notation::document(of.process) : nullptr},
            {"process_name", name.empty() ? notation::document() : notation::document(name)},
            {"thread", of.thread ? notation::document(of.thread) : nullptr}};
}

} // namespace kel_trace

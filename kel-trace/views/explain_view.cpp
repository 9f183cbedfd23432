// Failures as text, one block for each cause (who, what, why, the records), and as a document. Finding causes is
// causes.cpp's.
#include "kel-trace/views/explain_view.h"

#include "kel-trace/operations/parameters.h"
#include "kel-trace/reading/instant.h"
#include "kel-trace/views/preface.h"
#include "terminal/terminal.h"
#include "text/printable.h"
#include "text/quantity.h"
#include "text/refusal.h"
#include "text/wording.h"

#include <fmt/core.h>

#include <algorithm>
#include <span>

namespace kel_trace
{
namespace
{

using notation::document;
using terminal::colour;

std::string_view event_text(event event)
{
    const std::string_view name = event == event::other ? "other" : event_names[static_cast<size_t>(event)];
    return name.substr(name.find(':') + 1);
}

// "ork_bind of the driver kit: still in use, try again (-4)", "the library itself: not found, (pcep_id)"
std::string refusal_text(const complaint &why)
{
    if (why.by == text::library_itself)
        return text::without_controls(
            fmt::format("the {}: {}{}{}", why.by, why.text, why.what.empty() ? "" : ", ", why.what));
    const std::string code = why.code ? fmt::format(" ({})", *why.code) : "";
    return text::without_controls(fmt::format("{} of the {}: {}{}", why.what, why.by, why.text, code));
}

std::string parameters_text(const std::vector<parameter> &parameters)
{
    std::vector<std::string> parts;
    parts.reserve(parameters.size());
    for (const parameter &one : parameters)
        parts.push_back(fmt::format("{}={}", one.name, text::without_controls(one.value)));
    return text::joined(parts, ", ");
}

std::string times_text(uint64_t count)
{
    return count == 1 ? "once" : fmt::format("{} times", text::with_separators(count));
}

// Times count from the operation's first record. The refusal is found again by its time, which is exact enough to mark
// it.
std::string records_text(const operation &operation, const complaint &why, const terminal::painter &paint)
{
    std::string text;
    const int64_t begin = operation.records().front().time;
    for (const kept_record &one : operation.records()) {
        std::string line = fmt::format("    +{:<12} {:<9} {}  ({})", duration_text(one.time - begin),
                                       event_text(one.event), text::without_controls(one.message), one.location);
        const bool refusal = one.time == why.time && is_exception(one.event);
        text += (refusal ? paint(colour::failure, line) : line) + "\n";
    }
    if (operation.records_left_out > 0)
        text += fmt::format("    {} records in the middle are left out\n", operation.records_left_out);
    return text;
}

std::string consequence_text(const consequence &one)
{
    return fmt::format("    {}{}{}, {}: {}{}\n", one.operation, one.objects.empty() ? "" : " ",
                       text::joined(one.objects, ", "), times_text(one.count), refusal_text(one.why),
                       one.certain ? "" : " (likely: the records do not show it)");
}

// From the outside in: when and who, what failed and on what, why, how often, and then the records that show it.
std::string cause_text(const cause &of, const recording &found, const terminal::painter &paint)
{
    const operation &newest = of.newest;
    const complaint &why = *newest.failure();
    std::string text =
        fmt::format("\n{}  {}\n", paint(colour::heading, instant_text(why.time)), thread_text(found, newest.of));
    const auto objects = objects_of(newest);
    text += fmt::format("  {} reported{}\n", newest.name, objects.empty() ? "" : ": " + text::joined(objects, ", "));
    text += fmt::format("  refused by {}\n", paint(colour::failure, refusal_text(why)));
    if (why.reporters.size() > 1)
        text += fmt::format("  passed on by {}\n", text::joined(why.reporters, ", "));
    if (const auto parameters = parameters_of(newest); !parameters.empty())
        text += fmt::format("  with {}\n", parameters_text(parameters));
    if (of.count > 1)
        text += fmt::format("  {} since {}{}{}\n", times_text(of.count), instant_text(of.first),
                            of.objects.size() > 1 ? ": " + text::joined(of.objects, ", ") : "",
                            of.more_objects ? ", ..." : "");
    if (!newest.framed)
        text += "  its entry was not recorded; earlier records are missing\n";
    else if (!newest.whole)
        text += "  its end was not recorded\n";
    text += "  records:\n" + records_text(newest, why, paint);
    if (!of.consequences.empty())
        text += "  consequences:\n";
    for (const auto &[key, one] : of.consequences)
        text += consequence_text(one);
    return text;
}

// Either a refusal that was ignored, or an error that is no refusal.
std::string aside_text(const aside &one, const recording &found)
{
    const std::string what = one.error.empty()
                                 ? fmt::format("{} reported {}", one.what.reporter(), refusal_text(one.what))
                                 : text::without_controls(one.error);
    return fmt::format("  {} {}, {}\n    in {}: {}\n", instant_text(one.last), thread_text(found, one.of),
                       times_text(one.count), one.operation, what);
}

// The newest of them.
template <typename Kept>
std::span<const Kept *const> newest(const std::vector<const Kept *> &all, std::optional<uint64_t> last)
{
    const size_t count = std::min<uint64_t>(last.value_or(all.size()), all.size());
    return std::span(all).last(count);
}

document complaint_document(const complaint &why)
{
    document reporters = document::array();
    for (const std::string &one : why.reporters)
        reporters.push_back(one);
    return {{"by", why.by},
            {"what", why.what},
            {"code", why.code ? document(*why.code) : nullptr},
            {"text", why.text},
            {"passed_on_by", reporters}};
}

document objects_document(const std::vector<std::string> &objects)
{
    document all = document::array();
    for (const std::string &one : objects)
        all.push_back(one);
    return all;
}

document records_document(std::span<const kept_record> records)
{
    document all = document::array();
    for (const kept_record &one : records)
        all.push_back({{"time", one.time},
                       {"event", event_text(one.event)},
                       {"domain", one.domain},
                       {"message", one.message},
                       {"location", one.location}});
    return all;
}

// Times are nanoseconds since 1970: programs compare them with other recordings.
document cause_document(const cause &of, const recording &found)
{
    const operation &newest = of.newest;
    document parameters = document::object();
    for (const parameter &one : parameters_of(newest))
        parameters[one.name] = one.value;
    document consequences = document::array();
    for (const auto &[key, one] : of.consequences)
        consequences.push_back({{"operation", one.operation},
                                {"objects", objects_document(one.objects)},
                                {"refusal", complaint_document(one.why)},
                                {"count", one.count},
                                {"certain", one.certain},
                                {"last", one.last}});
    return {{"operation", newest.name},
            {"time", of.last},
            {"of", thread_document(found, newest.of)},
            {"refusal", complaint_document(*newest.failure())},
            {"parameters", parameters},
            {"objects", objects_document(of.objects)},
            {"more_objects", of.more_objects},
            {"count", of.count},
            {"first", of.first},
            {"entry_recorded", newest.framed},
            {"exit_recorded", newest.whole},
            {"records", records_document(newest.records())},
            {"records_left_out", newest.records_left_out},
            {"consequences", consequences}};
}

} // namespace

// What people look for is last, above the prompt: the newest cause.
std::string explain_text(const causes &all, const recording &found, std::optional<uint64_t> last,
                         const terminal::painter &paint)
{
    const auto failures = all.failures();
    const auto asides = all.asides();
    std::string text;
    if (!asides.empty())
        text += "\nReported by operations that continued, newest last:\n";
    for (const aside *one : newest(asides, last))
        text += aside_text(*one, found);
    uint64_t count = 0;
    for (const cause *one : failures)
        count += one->count;
    if (failures.empty())
        return text + "\nNo operation reported a failure.\n";
    text += fmt::format("\nFailures reported: {}. Causes: {}, the newest last.\n", text::with_separators(count),
                        text::with_separators(failures.size()));
    for (const cause *one : newest(failures, last))
        text += cause_text(*one, found, paint);
    return text;
}

document explain_document(const causes &all, const recording &found, std::optional<uint64_t> last)
{
    document failures = document::array();
    const auto causes = all.failures();
    for (const cause *one : newest(causes, last))
        failures.push_back(cause_document(*one, found));
    document asides = document::array();
    const auto others = all.asides();
    for (const aside *one : newest(others, last))
        asides.push_back({{"operation", one->operation},
                          {"of", thread_document(found, one->of)},
                          {"refusal", one->error.empty() ? complaint_document(one->what) : document()},
                          {"error", one->error.empty() ? document() : document(one->error)},
                          {"count", one->count},
                          {"first", one->first},
                          {"time", one->last}});
    return {{"failures", failures}, {"ignored", asides}};
}

} // namespace kel_trace

// The keys of the document, in their order. Members that hold nothing are null, not left out, where programs ask for
// them in every document.
#include "kelctl/results/result_document.h"

#include "kelctl/library/explanation.h"
#include "notation/json.h"
#include "platform/kei_util.h"

#include <fmt/core.h>

#include <type_traits>
#include <utility>
#include <vector>

namespace kelctl
{
namespace
{

// Handles are texts: their 64 bits do not fit into the numbers of many readers of JSON.
fields json_of(const argument_value &value)
{
    const auto field_of = [](const auto &one) -> fields {
        using Value = std::remove_cvref_t<decltype(one)>;
        if constexpr (std::is_same_v<Value, mac_address>)
            return to_text(one);
        else if constexpr (std::is_same_v<Value, uint64_t>)
            return fmt::format("0x{:x}", one);
        else
            return one;
    };
    return std::visit(field_of, value);
}

// The key of an argument: "ether_type" for "--ether-type", "mac" for "MAC".
std::string key_of(std::string name)
{
    name.erase(0, name.find_first_not_of('-'));
    for (char &c : name)
        c = c == '-' ? '_' : static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return name;
}

fields arguments_of(const invocation &asked)
{
    fields given = fields::object();
    for (const argument &one : asked.row->arguments)
        if (const argument_value *value = asked.given.find(one.name))
            given[key_of(one.name)] = json_of(*value);
    return given;
}

fields refusal_of(const failure &failed)
{
    const auto why = explanation_of(failed);
    if (!why)
        return nullptr;
    return {{"by", why->by},
            {"what", why->what},
            {"code", why->code ? fields(*why->code) : fields(nullptr)},
            {"text", why->text}};
}

fields error_of(const input_error &error)
{
    const auto count = [](uint32_t number) { return number == 0 ? fields(nullptr) : fields(number); };
    return {{"message", error.message},
            {"file", error.file.empty() ? fields(nullptr) : fields(error.file)},
            {"line", count(error.at.line)},
            {"column", count(error.at.column)}};
}

// The first one gets a key of its own: there is hardly ever another, and most readers need no list.
void add_list(fields &document, const char *first_name, const char *others_name, const fields &all)
{
    if (all.empty())
        return;
    document[first_name] = all[0];
    for (size_t i = 1; i < all.size(); ++i)
        document[others_name].push_back(all[i]);
}

} // namespace

// The same keys for every command, whatever its result: a reader looks at "ok" first, and finds the rest where it
// always is.
fields document_of(const result &done, const invocation &asked, const origin &from, bool tracer_installed)
{
    fields document = {{"command", asked.row->name}, {"arguments", arguments_of(asked)}};
    if (!from.file.empty()) {
        document["file"] = from.file;
        document["line"] = from.line;
    }
    document["ok"] = done.status == exit_done;
    document["code"] = done.code ? fields(*done.code) : fields(nullptr);
    document["text"] = done.code ? fields(kei_util_init_rc_str_get(*done.code)) : fields(nullptr);
    if (asked.expected)
        document["expected"] = *asked.expected;
    document["result"] = done.shown;

    const auto failure_with_records = [&](const failure &failed) {
        fields told = failure_fields(failed);
        if (!asked.shown.brief)
            told["records"] = tracer_installed ? list_of(failed.records, record_fields) : fields(nullptr);
        return told;
    };
    add_list(document, "failure", "further_failures", list_of(done.failures, failure_with_records));
    if (!done.warnings.empty())
        document["warnings"] = list_of(done.warnings, error_of);
    if (!done.complaints.empty())
        document["complaints"] = list_of(done.complaints, record_fields);
    add_list(document, "error", "further_errors", list_of(done.errors, error_of));
    return document;
}

fields failure_fields(const failure &failed)
{
    fields told = {{"operation", failed.operation},
                   {"function", failed.operation.substr(0, failed.operation.find('('))},
                   {"code", failed.code},
                   {"text", kei_util_init_rc_str_get(failed.code)},
                   {"refusal", refusal_of(failed)}};
    if (!failed.hint.empty())
        told["hint"] = failed.hint;
    return told;
}

fields record_fields(const trace_entry &entry)
{
    return {{"event", entry.event}, {"domain", entry.domain}, {"message", entry.message}, {"location", entry.location}};
}

fields document_of(const input_error &error)
{
    return {{"command", nullptr},
            {"arguments", fields::object()},
            {"ok", false},
            {"code", nullptr},
            {"text", nullptr},
            {"result", fields::object()},
            {"error", error_of(error)}};
}

std::string json_line(const trace_entry &entry)
{
    return line_of({{"trace", record_fields(entry)}});
}

std::string line_of(const fields &document)
{
    return notation::to_json(document) + "\n";
}

} // namespace kelctl

// The members of a message, each written and read in one place. Another version may add members: what is not known is
// skipped.
#include "kelctl/remote/result_message.h"

#include "kelctl/remote/octets.h"
#include "kelctl/results/result_document.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace kelctl
{
namespace
{

// What has its default is left out, and what is left out is read as its default: most results have few members.
void add(fields &message, std::string_view name, fields value)
{
    if (!value.empty())
        message[name] = std::move(value);
}

void add_text(fields &message, std::string_view name, const std::string &text)
{
    if (!text.empty())
        message[name] = document_of_octets(text);
}

template <typename Read> void take(const fields &message, std::string_view name, Read read)
{
    if (const fields *value = message.find(name))
        read(*value);
}

void take_text(const fields &message, std::string_view name, std::string &text)
{
    take(message, name, [&text](const fields &value) { text = octets_of(value); });
}

template <typename Item>
void take_list(const fields &message, std::string_view name, std::vector<Item> &items, Item (*item_of)(const fields &))
{
    take(message, name, [&](const fields &list) {
        for (const fields &one : list)
            items.push_back(item_of(one));
    });
}

fields message_of_failure(const failure &failed)
{
    fields message = {{"operation", document_of_octets(failed.operation)}, {"code", failed.code}};
    add(message, "records", list_of(failed.records, [](const trace_entry &entry) { return message_of(entry); }));
    add_text(message, "hint", failed.hint);
    return message;
}

failure failure_of(const fields &message)
{
    failure failed = {.operation = octets_of(message.at("operation")), .code = message.at("code").number<uint32_t>()};
    take_list(message, "records", failed.records, entry_of);
    take_text(message, "hint", failed.hint);
    return failed;
}

fields message_of_error(const input_error &error)
{
    fields message = {{"message", document_of_octets(error.message)}};
    add_text(message, "file", error.file);
    if (error.at.line != 0)
        message["line"] = error.at.line;
    if (error.at.column != 0)
        message["column"] = error.at.column;
    return message;
}

input_error error_of(const fields &message)
{
    input_error error = {.message = octets_of(message.at("message"))};
    take_text(message, "file", error.file);
    take(message, "line", [&](const fields &line) { error.at.line = line.number<uint32_t>(); });
    take(message, "column", [&](const fields &column) { error.at.column = column.number<uint32_t>(); });
    return error;
}

// A number from outside is no status before it was checked.
exit_status status_of(const fields &message)
{
    constexpr exit_status statuses[] = {exit_done, exit_operation_failed, exit_wrong_input};
    const auto number = message.number<size_t>();
    if (number >= std::size(statuses))
        throw notation::document_error("a status is 0, 1 or 2");
    return statuses[number];
}

} // namespace

// A text is a string, and values that people are shown instead are put into a list, so that the two can be told apart.
fields message_of(result done)
{
    fields message = {{"status", static_cast<int>(done.status)}};
    if (done.shown != fields::object())
        message["shown"] = std::move(done.shown);
    if (done.text)
        message["text"] = done.text->holds() == notation::kind::text ? document_of_octets(done.text->text())
                                                                     : fields::array({*done.text});
    if (done.code)
        message["code"] = *done.code;
    add(message, "failures", list_of(done.failures, message_of_failure));
    add(message, "errors", list_of(done.errors, message_of_error));
    add(message, "warnings", list_of(done.warnings, message_of_error));
    add(message, "complaints", list_of(done.complaints, [](const trace_entry &entry) { return message_of(entry); }));
    if (done.shown_already)
        message["shown_already"] = true;
    add_text(message, "stage", done.stage);
    add_text(message, "remark", done.remark);
    return message;
}

result result_of(const fields &message)
{
    result done = {.status = status_of(message.at("status"))};
    take(message, "shown", [&](const fields &shown) { done.shown = shown; });
    take(message, "text", [&](const fields &text) {
        done.text = text.is_array() && text.size() == 1 ? text[0] : fields(octets_of(text));
    });
    take(message, "code", [&](const fields &code) { done.code = code.number<uint32_t>(); });
    take_list(message, "failures", done.failures, failure_of);
    take_list(message, "errors", done.errors, error_of);
    take_list(message, "warnings", done.warnings, error_of);
    take_list(message, "complaints", done.complaints, entry_of);
    take(message, "shown_already", [&](const fields &already) { done.shown_already = already.boolean(); });
    take_text(message, "stage", done.stage);
    take_text(message, "remark", done.remark);
    return done;
}

fields message_of(const trace_entry &entry)
{
    return record_fields(entry);
}

trace_entry entry_of(const fields &message)
{
    return {.event = message.at("event").text(),
            .domain = message.at("domain").text(),
            .message = message.at("message").text(),
            .location = message.at("location").text()};
}

} // namespace kelctl

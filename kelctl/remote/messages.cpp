// The members of requests and answers. Results are result_message.cpp. Every message has its writer and its reader next
// to each other: a member that only one of them knows is a mistake.
#include "kelctl/remote/messages.h"

#include "kelctl/remote/octets.h"
#include "kelctl/remote/result_message.h"
#include "kelctl/values/mac_address.h"

#include <string_view>
#include <utility>

namespace kelctl
{
namespace
{

// The node lays texts out, and so has to know for whom.
fields message_of_page(const page &shown_on)
{
    fields message = fields::object();
    if (shown_on.width)
        message["width"] = *shown_on.width;
    message["rows"] = shown_on.most_rows ? fields(*shown_on.most_rows) : fields(nullptr);
    if (shown_on.paint.colours())
        message["colours"] = true;
    return message;
}

// Without a member: lines as long as they are, 20 rows of a list, no colours.
page page_of(const fields &message)
{
    page shown_on = {.paint = terminal::painter(message.find("colours") && message.at("colours").boolean())};
    if (const fields *width = message.find("width"))
        shown_on.width = width->number<uint16_t>();
    if (const fields *rows = message.find("rows"); rows && rows->is_null())
        shown_on.most_rows.reset();
    else if (rows)
        shown_on.most_rows = rows->number<size_t>();
    return shown_on;
}

fields message_of_file(const sent_file &file)
{
    if (!file.problem.empty())
        return {{"problem", document_of_octets(file.problem)}};
    return {{"text", document_of_octets(file.text)}};
}

sent_file file_of(const fields &message)
{
    if (const fields *problem = message.find("problem"))
        return {.text = "", .problem = octets_of(*problem)};
    return {.text = octets_of(message.at("text"))};
}

fields message_of_part(const result_part &one)
{
    fields message = message_of(one.part);
    if (!one.from.file.empty())
        message["from"] = {{"file", document_of_octets(one.from.file)}, {"line", one.from.line}};
    return message;
}

result_part part_of(const fields &message)
{
    result_part one = {.part = result_of(message), .from = {}};
    if (const fields *from = message.find("from"))
        one.from = {octets_of(from->at("file")), from->at("line").number<uint32_t>()};
    return one;
}

template <typename Items> fields numbers(const Items &items)
{
    return list_of(items, [](auto number) { return fields(number); });
}

template <typename Number> void take_numbers(const fields &message, std::string_view name, std::set<Number> &numbers)
{
    for (const fields &one : message.at(name))
        numbers.insert(one.number<Number>());
}

} // namespace

fields message_of(const command_request &asked)
{
    fields message = {{"command", list_of(asked.words, document_of_octets)},
                      {"page", message_of_page(asked.whom.shown_on)}};
    if (asked.whom.traces)
        message["trace"] = true;
    for (const auto &[name, file] : asked.files)
        message["files"].push_back({{"name", document_of_octets(name)}, {"file", message_of_file(file)}});
    return message;
}

// Only the words are required, so that a request can be written by hand.
command_request request_of(const fields &message)
{
    command_request asked;
    for (const fields &word : message.at("command"))
        asked.words.push_back(octets_of(word));
    if (const fields *shown_on = message.find("page"))
        asked.whom.shown_on = page_of(*shown_on);
    if (const fields *traces = message.find("trace"))
        asked.whom.traces = traces->boolean();
    if (const fields *files = message.find("files"))
        for (const fields &one : *files)
            asked.files.insert_or_assign(octets_of(one.at("name")), file_of(one.at("file")));
    return asked;
}

fields message_of(const command_answer &answered)
{
    const answer &given = answered.given;
    fields message = {{"result", message_of(given.done)}, {"tracer", given.tracer_installed}};
    if (!given.parts.empty())
        message["parts"] = list_of(given.parts, message_of_part);
    if (!given.trace.empty())
        message["trace"] = list_of(given.trace, [](const trace_entry &entry) { return message_of(entry); });
    for (const auto &[name, text] : answered.written)
        message["files"].push_back({{"name", document_of_octets(name)}, {"file", message_of_file({text})}});
    return message;
}

command_answer answer_of(const fields &message)
{
    command_answer answered = {.given = {.done = result_of(message.at("result"))}};
    answered.given.tracer_installed = message.at("tracer").boolean();
    if (const fields *parts = message.find("parts"))
        for (const fields &one : *parts)
            answered.given.parts.push_back(part_of(one));
    if (const fields *trace = message.find("trace"))
        for (const fields &one : *trace)
            answered.given.trace.push_back(entry_of(one));
    if (const fields *files = message.find("files"))
        for (const fields &one : *files)
            answered.written.insert_or_assign(octets_of(one.at("name")), file_of(one.at("file")).text);
    return answered;
}

std::string error_in(const fields &message)
{
    const fields *why = message.find("error");
    return why ? octets_of(*why) : "";
}

fields question_of(const counted &which)
{
    fields question = {{"ask", "sample"}};
    if (which.port)
        question["queue"] = *which.port;
    if (which.pcep)
        question["pcep"] = *which.pcep;
    return question;
}

counted counted_of(const fields &question)
{
    counted which;
    if (const fields *port = question.find("queue"))
        which.port = port->number<int32_t>();
    if (const fields *pcep = question.find("pcep"))
        which.pcep = pcep->number<uint32_t>();
    return which;
}

fields message_of(const known_words &known)
{
    return {{"macs", list_of(known.macs, [](const mac_address &mac) { return fields(to_text(mac)); })},
            {"pceps", numbers(known.pceps)},
            {"groups", numbers(known.groups)},
            {"queues", numbers(known.queues)},
            {"schedulers", numbers(known.schedulers)}};
}

known_words known_of(const fields &message)
{
    known_words known;
    for (const fields &mac : message.at("macs"))
        if (const auto read = parse_mac_address(mac.text()))
            known.macs.insert(*read);
    take_numbers(message, "pceps", known.pceps);
    take_numbers(message, "groups", known.groups);
    take_numbers(message, "queues", known.queues);
    take_numbers(message, "schedulers", known.schedulers);
    return known;
}

} // namespace kelctl

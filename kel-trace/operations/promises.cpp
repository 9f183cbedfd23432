// Checks the shape of each record: event, domain, location, message, and the nesting of entries and exits. Which
// failures mean what is in causes.cpp. Nothing is assumed of what the library does, only of how it writes.
#include "kel-trace/operations/promises.h"

#include <fmt/core.h>

#include <algorithm>
#include <cctype>
#include <vector>

namespace kel_trace
{
namespace
{

constexpr size_t longest = 1022; // octets; a message of 1023 filled its buffer and may be cut

constexpr std::string_view ebcom = "EBCOM";
constexpr std::string_view pcep = "PCEP";
constexpr std::string_view general = "GENERAL";

// Which domains an event may have, indexed by event.
constexpr struct {
    bool own;     // EBCOM or PCEP, according to the source file
    bool general; // GENERAL
} domains[] = {{true, false}, {true, false}, {true, false}, {true, false}, {true, true},
               {false, true}, {true, false}, {true, false}, {false, true}};

constexpr std::string_view sources[] = {
    "kel_ic_ebcom.cpp:", "kel_ic_ebcom_g3.cpp:", "kel_ic_ebcom_interface.cpp:", "kel_ic_pcep.cpp:"};

bool is_own(std::string_view domain)
{
    return domain == ebcom || domain == pcep;
}

// The length of a name in C at the beginning; 0 when there is none.
size_t name_length(std::string_view text)
{
    const auto in_name = [](unsigned char c) { return std::isalnum(c) || c == '_'; };
    if (text.empty() || std::isdigit(static_cast<unsigned char>(text.front())))
        return 0;
    return static_cast<size_t>(std::ranges::find_if_not(text, in_name) - text.begin());
}

bool is_line_number(std::string_view text)
{
    return !text.empty() && text.front() != '0' &&
           std::ranges::all_of(text, [](unsigned char c) { return std::isdigit(c) != 0; });
}

// Whether a location is a line of the library's sources: "kel_ic_ebcom.cpp:214".
bool is_source_line(std::string_view location)
{
    return std::ranges::any_of(sources, [location](std::string_view source) {
        return location.starts_with(source) && is_line_number(location.substr(source.size()));
    });
}

bool is_statement(std::string_view message)
{
    const size_t length = name_length(message);
    return length > 0 && message.substr(length).starts_with("(): ");
}

bool is_frame(std::string_view message)
{
    const size_t length = name_length(message);
    return length > 0 && message.substr(length) == "()";
}

} // namespace

void promises::find(const record &record, std::string what)
{
    ++findings_;
    found_({record.time, record.of, std::string(record.event_name), std::string(record.location), std::move(what)});
}

// Each promise by itself: a record may break several.
void promises::check_fields(const record &record)
{
    const auto &allowed = domains[static_cast<size_t>(record.event)];
    if (!(allowed.own && is_own(record.domain)) && !(allowed.general && record.domain == general))
        find(record, fmt::format("domain \"{}\" does not match the event", record.domain));
    if (!is_source_line(record.location))
        find(record, fmt::format("location \"{}\" is not a line of the library's sources", record.location));
    else if (is_own(record.domain) && (record.domain == pcep) != record.location.starts_with(sources[3]))
        find(record, fmt::format("domain \"{}\" is not that of {}", record.domain, record.location));
    if (record.message.size() > longest)
        find(record, "message was cut");
}

// Exits that do not match leave the entries as they are: one broken promise makes one finding.
void promises::check_frame(const record &record)
{
    if (!is_frame(record.message))
        return find(record, fmt::format("message \"{}\" is not the name of an operation", record.message));
    auto &stack = open_[record.of];
    if (record.event == event::fn_enter)
        stack.push_back(
            {record.time, std::string(record.event_name), std::string(record.location), std::string(record.message)});
    else if (!stack.empty() && stack.back().message == record.message)
        stack.pop_back();
    else if (!stack.empty())
        find(record, fmt::format("{} exits in the middle of {}", record.message, stack.back().message));
    else if (!partial_)
        find(record, fmt::format("{} exits but was not entered", record.message));
}

void promises::take(const record &record)
{
    ++records_;
    if (record.event == event::other)
        return find(record, fmt::format("event {} is not one of the nine", record.event_name));
    check_fields(record);
    if (record.event == event::fn_enter || record.event == event::fn_exit)
        check_frame(record);
    else if (!is_statement(record.message))
        find(record, fmt::format("message \"{}\" does not begin with the name of a function", record.message));
}

void promises::end()
{
    if (partial_)
        return;
    for (const auto &[of, stack] : open_)
        for (const entry &one : stack) {
            ++findings_;
            found_({one.time, of, one.event, one.location, one.message + " is entered and never exits"});
        }
}

} // namespace kel_trace

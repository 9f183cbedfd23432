// The table of commands and options, and what else a request needs. How words are parsed and completed is
// options/program.h. Times are read later, when the recording's first day is known.
#include "kel-trace/language/request.h"

#include "text/printable.h"

#include <fmt/core.h>

#include <charconv>

namespace kel_trace
{
namespace
{

using options::into;
using options::wrong_request;

constexpr options::command commands[] = {
    {"explain", "show which operations reported failures and why, the newest last"},
    {"report", "show how often and how long operations and closed calls ran"},
    {"check", "check every record against what the library promises"},
};

constexpr options::meaning statuses[] = {
    {"0", "done; check found nothing"},
    {"1", "check found something; or what was asked for could not be written"},
    {"2", "the command line is wrong, or the recording cannot be read"},
};

// from_chars() takes neither a sign nor blanks.
void set_last(options::request &asked, std::string_view value)
{
    uint64_t number = 0;
    const auto [stop, error] = std::from_chars(value.data(), value.data() + value.size(), number);
    if (error != std::errc{} || stop != value.data() + value.size() || number == 0)
        throw wrong_request(fmt::format("--last: {} is not a number from 1", text::in_quotes(value)));
    static_cast<request &>(asked).last = number;
}

constexpr options::option rows[] = {
    {"--last", "N", "only the last N causes", set_last, "explain"},
    {"--since", "TIME",
     "only failures at or after TIME: \"2026-11-22 05:01:55.978190721\", or 05:01 on the recording's first day",
     into<&request::since>, "explain"},
    {"--until", "TIME", "only failures before TIME", into<&request::until>, "explain"},
    {"--process", "ID", "only failures of the process with this id or name", into<&request::process>, "explain"},
    {"--chrome", "FILE", "also write a flame chart for Chromium's and Perfetto's viewers", into<&request::chrome>,
     "report"},
    {"--partial", "", "the recording may begin and end within operations", into<&request::partial>, "check"},
    {"--single-thread", "", "read a recording without the context vtid as one thread", into<&request::single_thread>},
    {"--json", "", "print one JSON document", into<&request::json>},
    options::help_option,
    options::version_option,
};

} // namespace

constinit const options::program program = {
    .name = "kel-trace",
    .usage = "COMMAND [OPTION]... RECORDING...",
    .about = "Reads recordings of the library's events: folders of \"lttng create --output\", of snapshots, or\nof a "
             "relay daemon.",
    .commands = commands,
    .options = rows,
    .exit_statuses = statuses,
};

request parse_request(std::span<const std::string> words)
{
    request asked;
    asked.folders = options::parse(program, words, asked);
    if (asked.answer)
        return asked;
    if (!asked.command)
        throw wrong_request("a command is required: explain, report or check");
    if (asked.folders.empty())
        throw wrong_request(fmt::format("{} requires the folder of a recording", commands[*asked.command].name));
    asked.view = static_cast<view>(*asked.command);
    return asked;
}

} // namespace kel_trace

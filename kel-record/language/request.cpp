// The table, and what else a request needs. Words after the program's name are its own, whatever they look like
// (`runs_another`).
#include "kel-record/language/request.h"

namespace kel_record
{
namespace
{

constexpr options::option rows[] = {
    {"--output", "FILE", "write the calls to FILE (default: PROGRAM.kel in the current folder)",
     options::into<&request::output>},
    options::help_option,
    options::version_option,
};

constexpr options::meaning statuses[] = {
    {"2", "the command line is wrong, or FILE cannot be written; nothing was run"},
    {"126", "the program cannot be run"},
    {"127", "there is no such program"},
    {"else", "that of the program"},
};

} // namespace

constinit const options::program program = {
    .name = "kel-record",
    .usage = "[OPTION]... [--] PROGRAM [ARGUMENT]...",
    .about =
        "Runs a control process, and writes its calls into libkel-core-ic as a script, which \"kelctl run\"\nrepeats.",
    .options = rows,
    .exit_statuses = statuses,
    .runs_another = true,
};

request parse_request(std::span<const std::string> words)
{
    request asked;
    asked.program = options::parse(program, words, asked);
    if (!asked.answer && asked.program.empty())
        throw options::wrong_request("a program to run is required");
    return asked;
}

} // namespace kel_record

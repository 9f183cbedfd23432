// The result of a command: its values, its status, its failures. Handlers fill it and print nothing; result_view.h
// shows it as text, result_document.h as JSON.
//
//     result done = session.call(asked, kel_core_ic_ebcom_capabilities_get, parameter::output(capabilities));
//     done.shown = {{"max_burst_size", capabilities.max_burst_size}};
//     return done;
#pragma once

#include "kelctl/library/library_call.h"
#include "kelctl/values/exit_status.h"
#include "kelctl/values/problem.h"
#include "notation/document.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kelctl
{

// Named values in the order of their adding: text, numbers, lists of them, and lists of rows with the same names. A
// template says fields{...} where it assigns a list: from bare braces there, Clang 14 never destroys what was replaced.
using fields = notation::document;

// An error in the command line, a script or a file, found before anything was done.
struct input_error {
    std::string message;
    std::string file = {}; // empty: the command line
    position at = whole_file;
};

// What a command says of itself. `status` decides the exit status; the lists say why it is what it is.
struct result {
    exit_status status = exit_done;
    fields shown = fields::object();
    std::optional<fields> text = {};   // what people are shown instead, laid out in the same way; or a text as it is
    std::optional<uint32_t> code = {}; // the library's; none: no function of it was asked
    std::vector<failure> failures = {};
    std::vector<input_error> errors = {};
    std::vector<input_error> warnings = {};   // what is allowed, and hardly meant
    std::vector<trace_entry> complaints = {}; // failures that the library's records report, though it succeeded
    bool shown_already = false;               // all of it was shown as it came up
    std::string stage = {};                   // of a longer command, whose failures these are: "take-down"
    std::string remark = {};                  // last for people, on standard error: "2 problems, nothing was started"
};

// The file and line that a command comes from. No file: the command line or the shell.
struct origin {
    std::string file;
    uint32_t line = 0;
};

// A list of what a function makes of each item.
template <typename Items, typename Function> fields list_of(const Items &items, Function made_of)
{
    fields list = fields::array();
    for (const auto &item : items)
        list.push_back(made_of(item));
    return list;
}

// Adds a part that was shown to the result of its command.
void add_part(result &whole, result part);

// An error or a warning that is about no line of a file.
input_error without_position(std::string message);

// Nothing was done, for a reason outside the words of the command, such as the platform.
result refused(std::string reason, std::string file = {});

// The words of the command do not go together.
result wrong_use(std::string reason);

// A file has errors; the remark is "node.toml: 3 problems, nothing was started", with `consequence` at its end.
result wrong_input(const std::string &file, std::vector<input_error> errors, std::string_view consequence);

} // namespace kelctl

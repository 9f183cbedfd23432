// A node file, read and checked completely: its tables (nodefile/node_file.h) and the rules across them and the
// platform. Carrying the lines out is jobs/bring_up.h.
//
//     auto [lines, errors, warnings] = load_node_file("node.toml", session.table);
//     if (!errors.empty())
//         return wrong_input("node.toml", std::move(errors), "nothing was started");
#pragma once

#include "kelctl/language/command.h"
#include "kelctl/results/result.h"
#include "kelctl/values/problem.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kelctl
{

// The commands of a node file or a script.
struct loaded_lines {
    std::vector<invocation> lines;          // use them only without errors
    std::vector<input_error> errors;        // by line and column
    std::vector<input_error> warnings = {}; // by line and column: what is allowed but probably not meant
};

// The lines bring the node up. Changes nothing in the process, so that several files can be compared. `rows` must
// outlive the lines.
loaded_lines load_node_file(const std::string &file, const command_table &rows);

// The same of a text; `name`: that of its file in errors.
loaded_lines load_node_text(const std::string &name, std::string_view text, const command_table &rows);

// How many destinations the platform takes: one path for each, from however many ports. None: not known.
std::optional<size_t> room_for_destinations();

// What the lines of a node make, without carrying them out.
struct node_size {
    uint64_t paths = 0;
    uint64_t pceps = 0;
    uint64_t groups = 0;
    uint64_t streams = 0; // of traffic
};
node_size size_of(const std::vector<invocation> &lines);

// The problems of a file as errors of a result, by line and column.
std::vector<input_error> errors_of(const std::string &file, problem_list problems);

} // namespace kelctl
